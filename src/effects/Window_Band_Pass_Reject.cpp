#include "Window_Band_Pass_Reject.h"

#include "app/DialogRows.h"
#include "app/TextNumbers.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>

Window_Band_Pass_Reject::Window_Band_Pass_Reject(QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(QStringLiteral("Band Pass or Reject"));
    form()->addRow(QStringLiteral("Centre frequency (Hz):"),
                   sliderRow(this, sliderFrequency, labelFrequency, "sliderFrequency", "labelFrequency", 100,
                             2000000, 100000));
    sliderFrequency->setSingleStep(100);
    sliderFrequency->setPageStep(10000);
    labelFrequency->setMinimumWidth(
        labelFrequency->fontMetrics().horizontalAdvance(QStringLiteral("00000.00")));
    form()->addRow(QStringLiteral("Width (Hz):"),
                   sliderRow(this, sliderWidth, labelWidth, "sliderWidth", "labelWidth", 1, 3000, 100));
    connect(sliderFrequency, &QSlider::valueChanged, this, &Window_Band_Pass_Reject::OnChangeFrequency);
    connect(sliderWidth, &QSlider::valueChanged, this, &Window_Band_Pass_Reject::OnChangeWidth);
    OnChangeFrequency();
    OnChangeWidth();
}

void Window_Band_Pass_Reject::OnChangeFrequency() {
    showScaled(labelFrequency, sliderFrequency, 100, "%.2f");
}
void Window_Band_Pass_Reject::OnChangeWidth() {
    showWhole(labelWidth, sliderWidth, 6);
}

QString Window_Band_Pass_Reject::validate() {
    // Both are taken as whole numbers: the frequency's hundredths are dropped.
    f_Frequency = quint64(intValue(labelFrequency->text()));
    f_Width_dB = intValue(labelWidth->text());
    return {};
}

EffectValues Window_Band_Pass_Reject::effectValues() const {
    return {{QStringLiteral("f_Frequency"), QVariant::fromValue(f_Frequency)},
            {QStringLiteral("f_Width_dB"), QVariant::fromValue(f_Width_dB)}};
}
