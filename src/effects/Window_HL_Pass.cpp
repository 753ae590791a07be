#include "Window_HL_Pass.h"

#include "app/DialogRows.h"
#include "app/TextNumbers.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>

Window_HL_Pass::Window_HL_Pass(QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(QStringLiteral("High or Low Pass"));
    // 6 Hz to 21.6 kHz, below half of the track's 44.1 kHz rate.
    form()->addRow(
        QStringLiteral("Frequency (Hz):"),
        sliderRow(this, sliderRolloff, labelRolloff, "sliderRolloff", "labelRolloff", 1, 3600, 150));
    connect(sliderRolloff, &QSlider::valueChanged, this, &Window_HL_Pass::OnChangeRolloff);
    OnChangeRolloff();
}

void Window_HL_Pass::OnChangeRolloff() {
    showWhole(labelRolloff, sliderRolloff, 6);
}

QString Window_HL_Pass::validate() {
    f_Rolloff_dB = intValue(labelRolloff->text());
    return {};
}

EffectValues Window_HL_Pass::effectValues() const {
    return {{QStringLiteral("f_Rolloff_dB"), QVariant::fromValue(f_Rolloff_dB)}};
}
