#include "Window_DCShift.h"

#include "app/DialogRows.h"
#include "app/TextNumbers.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>

Window_DCShift::Window_DCShift(QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(QStringLiteral("DC Shift"));
    form()->addRow(QStringLiteral("Shift:"),
                   sliderRow(this, sliderShift, labelShift, "sliderShift", "labelShift", -200, 200, 10));
    form()->addRow(QStringLiteral("Limiter gain:"),
                   sliderRow(this, sliderGainLimiter, labelGainLimiter, "sliderGainLimiter",
                             "labelGainLimiter", 0, 100, 5));
    connect(sliderShift, &QSlider::valueChanged, this, &Window_DCShift::OnChangeShift);
    connect(sliderGainLimiter, &QSlider::valueChanged, this, &Window_DCShift::OnChangeGainLimiter);
    OnChangeShift();
    OnChangeGainLimiter();
}

void Window_DCShift::OnChangeShift() {
    showScaled(labelShift, sliderShift, 100, "%.2f");
}
void Window_DCShift::OnChangeGainLimiter() {
    showScaled(labelGainLimiter, sliderGainLimiter, 100, "%.2f");
}

QString Window_DCShift::validate() {
    f_Shift = floatValue(labelShift->text());
    f_Gain_Limiter = floatValue(labelGainLimiter->text());
    return {};
}

EffectValues Window_DCShift::effectValues() const {
    return {{QStringLiteral("f_Shift"), QVariant::fromValue(f_Shift)},
            {QStringLiteral("f_Gain_Limiter"), QVariant::fromValue(f_Gain_Limiter)}};
}
