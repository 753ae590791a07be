#include "Window_Flanger.h"

#include "app/DialogRows.h"
#include "app/TextNumbers.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>

Window_Flanger::Window_Flanger(QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(QStringLiteral("Flanger"));
    form()->addRow(QStringLiteral("Delay (ms):"),
                   sliderRow(this, sliderDelay, labelDelay, "sliderDelay", "labelDelay", 0, 30, 0));
    form()->addRow(QStringLiteral("Depth (ms):"),
                   sliderRow(this, sliderDepth, labelDepth, "sliderDepth", "labelDepth", 0, 10, 2));
    form()->addRow(QStringLiteral("Regeneration (%):"),
                   sliderRow(this, sliderRegeneration, labelRegeneration, "sliderRegeneration",
                             "labelRegeneration", -95, 95, 0));
    form()->addRow(QStringLiteral("Width (%):"),
                   sliderRow(this, sliderWidth, labelWidth, "sliderWidth", "labelWidth", 0, 100, 71));
    form()->addRow(QStringLiteral("Speed (Hz):"),
                   sliderRow(this, sliderSpeed, labelSpeed, "sliderSpeed", "labelSpeed", 1, 100, 5));
    form()->addRow(QStringLiteral("Phase (%):"),
                   sliderRow(this, sliderPhase, labelPhase, "sliderPhase", "labelPhase", 0, 100, 25));

    connect(sliderDelay, &QSlider::valueChanged, this, &Window_Flanger::OnChangeDelay);
    connect(sliderDepth, &QSlider::valueChanged, this, &Window_Flanger::OnChangeDepth);
    connect(sliderRegeneration, &QSlider::valueChanged, this, &Window_Flanger::OnChangeRegeneration);
    connect(sliderWidth, &QSlider::valueChanged, this, &Window_Flanger::OnChangeWidth);
    connect(sliderSpeed, &QSlider::valueChanged, this, &Window_Flanger::OnChangeSpeed);
    connect(sliderPhase, &QSlider::valueChanged, this, &Window_Flanger::OnChangePhase);
    OnChangeDelay();
    OnChangeDepth();
    OnChangeRegeneration();
    OnChangeWidth();
    OnChangeSpeed();
    OnChangePhase();
}

void Window_Flanger::OnChangeDelay() {
    showWhole(labelDelay, sliderDelay);
}
void Window_Flanger::OnChangeDepth() {
    showWhole(labelDepth, sliderDepth);
}
void Window_Flanger::OnChangeRegeneration() {
    showWhole(labelRegeneration, sliderRegeneration);
}
void Window_Flanger::OnChangeWidth() {
    showWhole(labelWidth, sliderWidth);
}
void Window_Flanger::OnChangeSpeed() {
    showScaled(labelSpeed, sliderSpeed, 10, "%.2f");
}
void Window_Flanger::OnChangePhase() {
    showWhole(labelPhase, sliderPhase);
}

QString Window_Flanger::validate() {
    f_Delay = intValue(labelDelay->text());
    f_Depth = intValue(labelDepth->text());
    f_Regen = intValue(labelRegeneration->text());
    f_Width = intValue(labelWidth->text());
    f_Speed = floatValue(labelSpeed->text());
    f_Phase = intValue(labelPhase->text());
    return {};
}

EffectValues Window_Flanger::effectValues() const {
    return {{QStringLiteral("f_Delay"), QVariant::fromValue(f_Delay)},
            {QStringLiteral("f_Depth"), QVariant::fromValue(f_Depth)},
            {QStringLiteral("f_Regen"), QVariant::fromValue(f_Regen)},
            {QStringLiteral("f_Width"), QVariant::fromValue(f_Width)},
            {QStringLiteral("f_Speed"), QVariant::fromValue(f_Speed)},
            {QStringLiteral("f_Phase"), QVariant::fromValue(f_Phase)}};
}
