#include "Window_Deemphasis.h"

#include <QFormLayout>
#include <QLabel>

Window_Deemphasis::Window_Deemphasis(QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(QStringLiteral("De-emphasis"));

    labelMessage = new QLabel(QStringLiteral("Apply the de-emphasis filter to the audio?"), this);
    labelMessage->setObjectName(QStringLiteral("labelMessage"));
    labelMessage->setWordWrap(true);
    form()->addRow(labelMessage);
}

QString Window_Deemphasis::validate() {
    return {};
}

EffectValues Window_Deemphasis::effectValues() const {
    return {};
}
