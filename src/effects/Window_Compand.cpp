#include "Window_Compand.h"

#include "app/DialogRows.h"
#include "app/TextNumbers.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>

Window_Compand::Window_Compand(QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(QStringLiteral("Compand"));
    form()->addRow(QStringLiteral("Attack (s):"),
                   sliderRow(this, sliderAttack, labelAttack, "sliderAttack", "labelAttack", 0, 100, 30));
    form()->addRow(QStringLiteral("Decay (s):"),
                   sliderRow(this, sliderDecay, labelDecay, "sliderDecay", "labelDecay", 0, 200, 100));
    form()->addRow(QStringLiteral("Delay (s):"),
                   sliderRow(this, sliderDelay, labelDelay, "sliderDelay", "labelDelay", 0, 100, 20));
    form()->addRow(QStringLiteral("Gain (dB):"),
                   sliderRow(this, sliderGain, labelGain, "sliderGain", "labelGain", -20, 20, -5));
    form()->addRow(QStringLiteral("Initial volume (dB):"),
                   sliderRow(this, sliderInitialVolume, labelInitialVolume, "sliderInitialVolume",
                             "labelInitialVolume", -100, 0, -90));
    connect(sliderAttack, &QSlider::valueChanged, this, &Window_Compand::OnChangeAttack);
    connect(sliderDecay, &QSlider::valueChanged, this, &Window_Compand::OnChangeDecay);
    connect(sliderDelay, &QSlider::valueChanged, this, &Window_Compand::OnChangeDelay);
    connect(sliderGain, &QSlider::valueChanged, this, &Window_Compand::OnChangeGain);
    connect(sliderInitialVolume, &QSlider::valueChanged, this, &Window_Compand::OnChangeInitialVolume);
    OnChangeAttack();
    OnChangeDecay();
    OnChangeDelay();
    OnChangeGain();
    OnChangeInitialVolume();
}

void Window_Compand::OnChangeAttack() {
    showScaled(labelAttack, sliderAttack, 100, "%.2f");
}
void Window_Compand::OnChangeDecay() {
    showScaled(labelDecay, sliderDecay, 100, "%.2f");
}
void Window_Compand::OnChangeDelay() {
    showScaled(labelDelay, sliderDelay, 100, "%.2f");
}
void Window_Compand::OnChangeGain() {
    showWhole(labelGain, sliderGain);
}
void Window_Compand::OnChangeInitialVolume() {
    showWhole(labelInitialVolume, sliderInitialVolume);
}

QString Window_Compand::validate() {
    f_Attack = floatValue(labelAttack->text());
    f_Decay = floatValue(labelDecay->text());
    f_Delay = floatValue(labelDelay->text());
    f_Gain = intValue(labelGain->text());
    f_Initial_Volume = intValue(labelInitialVolume->text());
    return {};
}

EffectValues Window_Compand::effectValues() const {
    return {{QStringLiteral("f_Attack"), QVariant::fromValue(f_Attack)},
            {QStringLiteral("f_Decay"), QVariant::fromValue(f_Decay)},
            {QStringLiteral("f_Delay"), QVariant::fromValue(f_Delay)},
            {QStringLiteral("f_Gain"), QVariant::fromValue(f_Gain)},
            {QStringLiteral("f_Initial_Volume"), QVariant::fromValue(f_Initial_Volume)}};
}
