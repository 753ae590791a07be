#include "Window_Echo.h"

#include "app/DialogRows.h"
#include "app/TextNumbers.h"

#include <QFormLayout>
#include <QLineEdit>

Window_Echo::Window_Echo(QWidget* parent) : GainDialog(QStringLiteral("Echo"), 80, 90, parent) {
    textDelayMS = textField(this, "textDelayMS", "1000");
    form()->addRow(QStringLiteral("Delay (ms):"), textDelayMS);
    textDecayFactor = textField(this, "textDecayFactor", "0.5");
    form()->addRow(QStringLiteral("Decay factor:"), textDecayFactor);
}

QString Window_Echo::validate() {
    readGains();
    f_Delay_MS = floatValue(textDelayMS->text());
    f_Decay_Factor = floatValue(textDecayFactor->text());
    if (f_Decay_Factor == 0)
        return QStringLiteral("Decay factor invalid.");
    if (f_Delay_MS < 0)
        return QStringLiteral("Delay invalid.");
    return {};
}

EffectValues Window_Echo::effectValues() const {
    return withGains({{QStringLiteral("f_Delay_MS"), QVariant::fromValue(f_Delay_MS)},
                      {QStringLiteral("f_Decay_Factor"), QVariant::fromValue(f_Decay_Factor)}});
}
