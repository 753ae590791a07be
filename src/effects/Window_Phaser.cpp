#include "Window_Phaser.h"

#include "app/TextNumbers.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>

namespace {
// A 0..100 slider with its value shown in a label to its right.
QHBoxLayout* gainRow(QWidget* owner, QSlider*& slider, QLabel*& label, const char* sliderName,
                     const char* labelName, int start) {
    slider = new QSlider(Qt::Horizontal, owner);
    slider->setObjectName(QLatin1String(sliderName));
    slider->setRange(0, 100);
    slider->setValue(start);
    label = new QLabel(owner);
    label->setObjectName(QLatin1String(labelName));
    label->setMinimumWidth(label->fontMetrics().horizontalAdvance(QStringLiteral("0000")));
    auto* row = new QHBoxLayout;
    row->addWidget(slider);
    row->addWidget(label);
    return row;
}

QLineEdit* textField(QWidget* owner, const char* name, const char* text) {
    auto* field = new QLineEdit(QLatin1String(text), owner);
    field->setObjectName(QLatin1String(name));
    return field;
}
} // namespace

Window_Phaser::Window_Phaser(QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(QStringLiteral("Phaser"));

    form()->addRow(QStringLiteral("Gain in (%):"),
                   gainRow(this, sliderGainIn, labelGainIn, "sliderGainIn", "labelGainIn", 80));
    form()->addRow(QStringLiteral("Gain out (%):"),
                   gainRow(this, sliderGainOut, labelGainOut, "sliderGainOut", "labelGainOut", 74));

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
