#include "Window_Earwax.h"

#include <QFormLayout>
#include <QLabel>

Window_Earwax::Window_Earwax(QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(QStringLiteral("Earwax"));

    labelMessage = new QLabel(
        QStringLiteral("Apply earwax to make stereo audio sound more natural on headphones?"), this);
    labelMessage->setObjectName(QStringLiteral("labelMessage"));
    labelMessage->setWordWrap(true);
    form()->addRow(labelMessage);
}

QString Window_Earwax::validate() {
    return {};
}

EffectValues Window_Earwax::effectValues() const {
    return {};
}
