#include "Window_Tremolo.h"

#include "app/DialogRows.h"
#include "app/TextNumbers.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>

Window_Tremolo::Window_Tremolo(QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(QStringLiteral("Tremolo"));
    form()->addRow(QStringLiteral("Speed (Hz):"),
                   sliderRow(this, sliderSpeed, labelSpeed, "sliderSpeed", "labelSpeed", 10, 2000, 500));
    // sox refuses a depth of 0.
    form()->addRow(QStringLiteral("Depth (%):"),
                   sliderRow(this, sliderDepth, labelDepth, "sliderDepth", "labelDepth", 1, 100, 40));
    connect(sliderSpeed, &QSlider::valueChanged, this, &Window_Tremolo::OnChangeSpeed);
    connect(sliderDepth, &QSlider::valueChanged, this, &Window_Tremolo::OnChangeDepth);
    OnChangeSpeed();
    OnChangeDepth();
}

void Window_Tremolo::OnChangeSpeed() {
    showScaled(labelSpeed, sliderSpeed, 100, "%.2f");
}
void Window_Tremolo::OnChangeDepth() {
    showWhole(labelDepth, sliderDepth);
}

QString Window_Tremolo::validate() {
    f_Speed = floatValue(labelSpeed->text());
    f_Depth = intValue(labelDepth->text());
    return {};
}

EffectValues Window_Tremolo::effectValues() const {
    return {{QStringLiteral("f_Speed"), QVariant::fromValue(f_Speed)},
            {QStringLiteral("f_Depth"), QVariant::fromValue(f_Depth)}};
}
