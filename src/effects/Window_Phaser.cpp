#include "Window_Phaser.h"

#include "app/DialogRows.h"
#include "app/TextNumbers.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>

Window_Phaser::Window_Phaser(QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(QStringLiteral("Phaser"));

    form()->addRow(QStringLiteral("Gain in (%):"),
                   sliderRow(this, sliderGainIn, labelGainIn, "sliderGainIn", "labelGainIn", 0, 100, 80));
    form()->addRow(QStringLiteral("Gain out (%):"),
                   sliderRow(this, sliderGainOut, labelGainOut, "sliderGainOut", "labelGainOut", 0, 100, 74));

    textSpeed = textField(this, "textSpeed", "1500");
    form()->addRow(QStringLiteral("Speed (mHz):"), textSpeed);
    textDelay = textField(this, "textDelay", "3000");
    form()->addRow(QStringLiteral("Delay (µs):"), textDelay);
    textDecayFactor = textField(this, "textDecayFactor", "0.5");
    form()->addRow(QStringLiteral("Decay factor:"), textDecayFactor);

    comboModulation = new QComboBox(this);
    comboModulation->setObjectName(QStringLiteral("comboModulation"));
    comboModulation->addItems({QStringLiteral("Triangular"), QStringLiteral("Sinusoidal")});
    comboModulation->setCurrentIndex(0);
    form()->addRow(QStringLiteral("Modulation:"), comboModulation);

    connect(sliderGainIn, &QSlider::valueChanged, this, &Window_Phaser::OnChangeGainIn);
    connect(sliderGainOut, &QSlider::valueChanged, this, &Window_Phaser::OnChangeGainOut);
    OnChangeGainIn();
    OnChangeGainOut();
}

void Window_Phaser::OnChangeGainIn() {
    labelGainIn->setText(QString::asprintf("%d", sliderGainIn->value()));
}

void Window_Phaser::OnChangeGainOut() {
    labelGainOut->setText(QString::asprintf("%d", sliderGainOut->value()));
}

QString Window_Phaser::validate() {
    f_Gain_In = float(sliderGainIn->value());
    f_Gain_Out = float(sliderGainOut->value());
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
    return {{QStringLiteral("f_Gain_In"), QVariant::fromValue(f_Gain_In)},
            {QStringLiteral("f_Gain_Out"), QVariant::fromValue(f_Gain_Out)},
            {QStringLiteral("f_Speed"), QVariant::fromValue(f_Speed)},
            {QStringLiteral("f_Delay"), QVariant::fromValue(f_Delay)},
            {QStringLiteral("f_Decay_Factor"), QVariant::fromValue(f_Decay_Factor)},
            {QStringLiteral("u_Modulation"), QVariant::fromValue(u_Modulation)}};
}
