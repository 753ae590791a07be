#include "Window_Phaser.h"

#include "app/DialogRows.h"
#include "app/TextNumbers.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>

Window_Phaser::Window_Phaser(QWidget* parent) : GainDialog(QStringLiteral("Phaser"), 80, 74, parent) {
    textSpeed = textField(this, "textSpeed", "1500");
    form()->addRow(QStringLiteral("Speed (mHz):"), textSpeed);
    textDelay = textField(this, "textDelay", "3000");
    form()->addRow(QStringLiteral("Delay (µs):"), textDelay);
    textDecayFactor = textField(this, "textDecayFactor", "0.5");
    form()->addRow(QStringLiteral("Decay factor:"), textDecayFactor);
    comboModulation = addModulationRow();
}

QString Window_Phaser::validate() {
    readGains();
    f_Speed = floatValue(textSpeed->text());
    f_Delay = floatValue(textDelay->text());
    f_Decay_Factor = floatValue(textDecayFactor->text());
    u_Modulation = quint64(qMax(0, comboModulation->currentIndex()));
    if (f_Speed < 0)
        return QStringLiteral("Speed invalid.");
    if (f_Decay_Factor == 0)
        return QStringLiteral("Decay factor invalid.");
    if (f_Delay < 0)
        return QStringLiteral("Delay invalid.");
    return {};
}

EffectValues Window_Phaser::effectValues() const {
    return withGains({{QStringLiteral("f_Speed"), QVariant::fromValue(f_Speed)},
                      {QStringLiteral("f_Delay"), QVariant::fromValue(f_Delay)},
                      {QStringLiteral("f_Decay_Factor"), QVariant::fromValue(f_Decay_Factor)},
                      {QStringLiteral("u_Modulation"), QVariant::fromValue(u_Modulation)}});
}
