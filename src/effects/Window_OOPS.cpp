#include "Window_OOPS.h"

#include <QFormLayout>
#include <QLabel>

Window_OOPS::Window_OOPS(QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(QStringLiteral("OOPS"));

    labelMessage = new QLabel(
        QStringLiteral("Apply out-of-phase stereo (OOPS), leaving the difference between the channels?"),
        this);
    labelMessage->setObjectName(QStringLiteral("labelMessage"));
    labelMessage->setWordWrap(true);
    form()->addRow(labelMessage);
}

QString Window_OOPS::validate() {
    return {};
}

EffectValues Window_OOPS::effectValues() const {
    return {};
}
