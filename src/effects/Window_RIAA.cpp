#include "Window_RIAA.h"

#include <QFormLayout>
#include <QLabel>

Window_RIAA::Window_RIAA(QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(QStringLiteral("RIAA"));

    labelMessage = new QLabel(
        QStringLiteral("Apply the RIAA playback equalization for vinyl records to the audio?"), this);
    labelMessage->setObjectName(QStringLiteral("labelMessage"));
    labelMessage->setWordWrap(true);
    form()->addRow(labelMessage);
}

QString Window_RIAA::validate() {
    return {};
}

EffectValues Window_RIAA::effectValues() const {
    return {};
}
