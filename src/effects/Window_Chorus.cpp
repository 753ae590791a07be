#include "Window_Chorus.h"

#include "app/DialogRows.h"
#include "app/TextNumbers.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>

Window_Chorus::Window_Chorus(QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(QStringLiteral("Chorus"));

    form()->addRow(QStringLiteral("Gain in (%):"),
                   sliderRow(this, sliderGainIn, labelGainIn, "sliderGainIn", "labelGainIn", 0, 100, 70));
    form()->addRow(QStringLiteral("Gain out (%):"),
                   sliderRow(this, sliderGainOut, labelGainOut, "sliderGainOut", "labelGainOut", 0, 100, 90));

    textDelay = textField(this, "textDelay", "50");
    form()->addRow(QStringLiteral("Delay (ms):"), textDelay);
    textDecayFactor = textField(this, "textDecayFactor", "0.5");
    form()->addRow(QStringLiteral("Decay factor:"), textDecayFactor);
    textDepth = textField(this, "textDepth", "2");
    form()->addRow(QStringLiteral("Depth (ms):"), textDepth);

    form()->addRow(QStringLiteral("Speed (Hz):"),
                   sliderRow(this, sliderSpeed, labelSpeed, "sliderSpeed", "labelSpeed", 1, 50, 3));

    comboModulation = new QComboBox(this);
    comboModulation->setObjectName(QStringLiteral("comboModulation"));
    comboModulation->addItems({QStringLiteral("Triangular"), QStringLiteral("Sinusoidal")});
    comboModulation->setCurrentIndex(0);
    form()->addRow(QStringLiteral("Modulation:"), comboModulation);

    connect(sliderGainIn, &QSlider::valueChanged, this, &Window_Chorus::OnChangeGainIn);
    connect(sliderGainOut, &QSlider::valueChanged, this, &Window_Chorus::OnChangeGainOut);
    connect(sliderSpeed, &QSlider::valueChanged, this, &Window_Chorus::OnChangeSpeed);
    OnChangeGainIn();
    OnChangeGainOut();
    OnChangeSpeed();
}

void Window_Chorus::OnChangeGainIn() {
    labelGainIn->setText(QString::asprintf("%d", sliderGainIn->value()));
}

void Window_Chorus::OnChangeGainOut() {
    labelGainOut->setText(QString::asprintf("%d", sliderGainOut->value()));
}

void Window_Chorus::OnChangeSpeed() {
    labelSpeed->setText(QString::asprintf("%.2f", double(sliderSpeed->value()) / 10));
}

QString Window_Chorus::validate() {
    f_Gain_In = float(sliderGainIn->value());
    f_Gain_Out = float(sliderGainOut->value());
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
    return {{QStringLiteral("f_Gain_In"), QVariant::fromValue(f_Gain_In)},
            {QStringLiteral("f_Gain_Out"), QVariant::fromValue(f_Gain_Out)},
            {QStringLiteral("f_Delay"), QVariant::fromValue(f_Delay)},
            {QStringLiteral("f_Decay_Factor"), QVariant::fromValue(f_Decay_Factor)},
            {QStringLiteral("f_Depth"), QVariant::fromValue(f_Depth)},
            {QStringLiteral("f_Speed"), QVariant::fromValue(f_Speed)},
            {QStringLiteral("u_Modulation"), QVariant::fromValue(u_Modulation)}};
}
