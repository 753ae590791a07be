#include "Window_Normalize.h"

#include "app/TextNumbers.h"

#include <QFormLayout>
#include <QLineEdit>

Window_Normalize::Window_Normalize(QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(QStringLiteral("Normalize"));

    textdB = new QLineEdit(QStringLiteral("-1.0"), this);
    textdB->setObjectName(QStringLiteral("textdB"));
    form()->addRow(QStringLiteral("Peak level (dB):"), textdB);
}

QString Window_Normalize::validate() {
    // Any level is acceptable, positive ones included.
    f_dB = floatValue(textdB->text());
    return {};
}

EffectValues Window_Normalize::effectValues() const {
    return {{QStringLiteral("f_dB"), QVariant::fromValue(f_dB)}};
}
