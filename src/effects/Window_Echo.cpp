#include "Window_Echo.h"

#include "app/DialogRows.h"
#include "app/TextNumbers.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>

Window_Echo::Window_Echo(QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(QStringLiteral("Echo"));

    form()->addRow(QStringLiteral("Gain in (%):"),
                   sliderRow(this, sliderGainIn, labelGainIn, "sliderGainIn", "labelGainIn", 0, 100, 80));
    form()->addRow(QStringLiteral("Gain out (%):"),
                   sliderRow(this, sliderGainOut, labelGainOut, "sliderGainOut", "labelGainOut", 0, 100, 90));

    textDelayMS = new QLineEdit(QStringLiteral("1000"), this);
    textDelayMS->setObjectName(QStringLiteral("textDelayMS"));
    form()->addRow(QStringLiteral("Delay (ms):"), textDelayMS);

    textDecayFactor = new QLineEdit(QStringLiteral("0.5"), this);
    textDecayFactor->setObjectName(QStringLiteral("textDecayFactor"));
    form()->addRow(QStringLiteral("Decay factor:"), textDecayFactor);

    connect(sliderGainIn, &QSlider::valueChanged, this, &Window_Echo::OnChangeGainIn);
    connect(sliderGainOut, &QSlider::valueChanged, this, &Window_Echo::OnChangeGainOut);
    OnChangeGainIn();
    OnChangeGainOut();
}

void Window_Echo::OnChangeGainIn() {
    labelGainIn->setText(QString::asprintf("%d", sliderGainIn->value()));
}

void Window_Echo::OnChangeGainOut() {
    labelGainOut->setText(QString::asprintf("%d", sliderGainOut->value()));
}

QString Window_Echo::validate() {
    f_Gain_In = float(sliderGainIn->value());
    f_Gain_Out = float(sliderGainOut->value());
    f_Delay_MS = floatValue(textDelayMS->text());
    f_Decay_Factor = floatValue(textDecayFactor->text());
    if (f_Decay_Factor == 0)
        return QStringLiteral("Decay factor invalid.");
    if (f_Delay_MS < 0)
        return QStringLiteral("Delay invalid.");
    return {};
}

EffectValues Window_Echo::effectValues() const {
    return {{QStringLiteral("f_Gain_In"), QVariant::fromValue(f_Gain_In)},
            {QStringLiteral("f_Gain_Out"), QVariant::fromValue(f_Gain_Out)},
            {QStringLiteral("f_Delay_MS"), QVariant::fromValue(f_Delay_MS)},
            {QStringLiteral("f_Decay_Factor"), QVariant::fromValue(f_Decay_Factor)}};
}
