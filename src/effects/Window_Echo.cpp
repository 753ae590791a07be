#include "Window_Echo.h"

#include "app/TextNumbers.h"

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
} // namespace

Window_Echo::Window_Echo(QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(QStringLiteral("Echo"));

    form()->addRow(QStringLiteral("Gain in (%):"),
                   gainRow(this, sliderGainIn, labelGainIn, "sliderGainIn", "labelGainIn", 80));
    form()->addRow(QStringLiteral("Gain out (%):"),
                   gainRow(this, sliderGainOut, labelGainOut, "sliderGainOut", "labelGainOut", 90));

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
