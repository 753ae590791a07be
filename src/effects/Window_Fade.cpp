#include "Window_Fade.h"

#include "app/TextNumbers.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>

Window_Fade::Window_Fade(QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(QStringLiteral("Fade"));

    textDurationMS = new QLineEdit(QStringLiteral("500"), this);
    textDurationMS->setObjectName(QStringLiteral("textDurationMS"));
    form()->addRow(QStringLiteral("Duration (ms):"), textDurationMS);

    comboModulation = new QComboBox(this);
    comboModulation->setObjectName(QStringLiteral("comboModulation"));
    comboModulation->addItems({QStringLiteral("Linear (t)"), QStringLiteral("Quarter sine (q)"),
                               QStringLiteral("Half sine (h)"), QStringLiteral("Logarithmic (l)"),
                               QStringLiteral("Inverted parabola (p)")});
    comboModulation->setCurrentIndex(0);
    form()->addRow(QStringLiteral("Shape:"), comboModulation);
}

QString Window_Fade::validate() {
    f_Duration_MS = floatValue(textDurationMS->text());
    u_Modulation = quint64(qMax(0, comboModulation->currentIndex()));
    if (!(f_Duration_MS > 0))
        return QStringLiteral("Duration invalid.");
    return {};
}

EffectValues Window_Fade::effectValues() const {
    return {{QStringLiteral("f_Duration_MS"), QVariant::fromValue(f_Duration_MS)},
            {QStringLiteral("u_Modulation"), QVariant::fromValue(u_Modulation)}};
}
