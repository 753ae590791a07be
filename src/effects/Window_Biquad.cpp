#include "Window_Biquad.h"

#include "app/DialogRows.h"
#include "app/TextNumbers.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>

namespace {
constexpr int unit = 10000000; // one, in the sliders' ten-millionths
}

Window_Biquad::Window_Biquad(QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(QStringLiteral("Biquad"));
    // Every coefficient runs from -2 to 2, except a0: sox divides by it, so it
    // stays between 0.1 and 2. The start is a gentle two-point average, which
    // softens the highest frequencies.
    form()->addRow(QStringLiteral("b0:"),
                   sliderRow(this, sliderb0, labelb0, "sliderb0", "labelb0", -2 * unit, 2 * unit, unit / 2));
    form()->addRow(QStringLiteral("b1:"),
                   sliderRow(this, sliderb1, labelb1, "sliderb1", "labelb1", -2 * unit, 2 * unit, unit / 2));
    form()->addRow(QStringLiteral("b2:"),
                   sliderRow(this, sliderb2, labelb2, "sliderb2", "labelb2", -2 * unit, 2 * unit, 0));
    form()->addRow(QStringLiteral("a0:"),
                   sliderRow(this, slidera0, labela0, "slidera0", "labela0", unit / 10, 2 * unit, unit));
    form()->addRow(QStringLiteral("a1:"),
                   sliderRow(this, slidera1, labela1, "slidera1", "labela1", -2 * unit, 2 * unit, 0));
    form()->addRow(QStringLiteral("a2:"),
                   sliderRow(this, slidera2, labela2, "slidera2", "labela2", -2 * unit, 2 * unit, 0));
    for (QSlider* slider : {sliderb0, sliderb1, sliderb2, slidera0, slidera1, slidera2}) {
        slider->setSingleStep(unit / 1000);
        slider->setPageStep(unit / 10);
    }
    for (QLabel* label : {labelb0, labelb1, labelb2, labela0, labela1, labela2})
        label->setMinimumWidth(label->fontMetrics().horizontalAdvance(QStringLiteral("-0.0000000")));

    connect(sliderb0, &QSlider::valueChanged, this, &Window_Biquad::OnChangeb0);
    connect(sliderb1, &QSlider::valueChanged, this, &Window_Biquad::OnChangeb1);
    connect(sliderb2, &QSlider::valueChanged, this, &Window_Biquad::OnChangeb2);
    connect(slidera0, &QSlider::valueChanged, this, &Window_Biquad::onChangea0);
    connect(slidera1, &QSlider::valueChanged, this, &Window_Biquad::OnChangea1);
    connect(slidera2, &QSlider::valueChanged, this, &Window_Biquad::OnChangea2);
    OnChangeb0();
    OnChangeb1();
    OnChangeb2();
    onChangea0();
    OnChangea1();
    OnChangea2();
}

void Window_Biquad::OnChangeb0() {
    showScaled(labelb0, sliderb0, unit, "%.7f");
}
void Window_Biquad::OnChangeb1() {
    showScaled(labelb1, sliderb1, unit, "%.7f");
}
void Window_Biquad::OnChangeb2() {
    showScaled(labelb2, sliderb2, unit, "%.7f");
}
void Window_Biquad::onChangea0() {
    showScaled(labela0, slidera0, unit, "%.7f");
}
void Window_Biquad::OnChangea1() {
    showScaled(labela1, slidera1, unit, "%.7f");
}
void Window_Biquad::OnChangea2() {
    showScaled(labela2, slidera2, unit, "%.7f");
}

QString Window_Biquad::validate() {
    f_b0 = floatValue(labelb0->text());
    f_b1 = floatValue(labelb1->text());
    f_b2 = floatValue(labelb2->text());
    f_a0 = floatValue(labela0->text());
    f_a1 = floatValue(labela1->text());
    f_a2 = floatValue(labela2->text());
    return {};
}

EffectValues Window_Biquad::effectValues() const {
    return {{QStringLiteral("f_b0"), QVariant::fromValue(f_b0)},
            {QStringLiteral("f_b1"), QVariant::fromValue(f_b1)},
            {QStringLiteral("f_b2"), QVariant::fromValue(f_b2)},
            {QStringLiteral("f_a0"), QVariant::fromValue(f_a0)},
            {QStringLiteral("f_a1"), QVariant::fromValue(f_a1)},
            {QStringLiteral("f_a2"), QVariant::fromValue(f_a2)}};
}
