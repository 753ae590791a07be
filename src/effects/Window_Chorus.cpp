#include "Window_Chorus.h"

#include "app/DialogRows.h"
#include "app/TextNumbers.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>

Window_Chorus::Window_Chorus(QWidget* parent) : GainDialog(QStringLiteral("Chorus"), 70, 90, parent) {
    textDelay = textField(this, "textDelay", "50");
    form()->addRow(QStringLiteral("Delay (ms):"), textDelay);
    textDecayFactor = textField(this, "textDecayFactor", "0.5");
    form()->addRow(QStringLiteral("Decay factor:"), textDecayFactor);
    textDepth = textField(this, "textDepth", "2");
    form()->addRow(QStringLiteral("Depth (ms):"), textDepth);
    form()->addRow(QStringLiteral("Speed (Hz):"),
                   sliderRow(this, sliderSpeed, labelSpeed, "sliderSpeed", "labelSpeed", 1, 50, 3));
    comboModulation = addModulationRow();

    connect(sliderSpeed, &QSlider::valueChanged, this, &Window_Chorus::OnChangeSpeed);
    OnChangeSpeed();
}

void Window_Chorus::OnChangeSpeed() {
    showScaled(labelSpeed, sliderSpeed, 10, "%.2f");
}

QString Window_Chorus::validate() {
    readGains();
    f_Delay = floatValue(textDelay->text());
    f_Decay_Factor = floatValue(textDecayFactor->text());
    f_Depth = floatValue(textDepth->text());
    // The speed is taken as the label shows it, rounded to hundredths.
    f_Speed = floatValue(labelSpeed->text());
    u_Modulation = quint64(qMax(0, comboModulation->currentIndex()));
    if (f_Delay < 0)
        return QStringLiteral("Delay invalid.");
    if (f_Decay_Factor == 0)
        return QStringLiteral("Decay factor invalid.");
    if (f_Depth < 0)
        return QStringLiteral("Depth invalid.");
    return {};
}

EffectValues Window_Chorus::effectValues() const {
    return withGains({{QStringLiteral("f_Delay"), QVariant::fromValue(f_Delay)},
                      {QStringLiteral("f_Decay_Factor"), QVariant::fromValue(f_Decay_Factor)},
                      {QStringLiteral("f_Depth"), QVariant::fromValue(f_Depth)},
                      {QStringLiteral("f_Speed"), QVariant::fromValue(f_Speed)},
                      {QStringLiteral("u_Modulation"), QVariant::fromValue(u_Modulation)}});
}
