#include "Window_Reverb.h"

#include "app/DialogRows.h"
#include "app/TextNumbers.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>

Window_Reverb::Window_Reverb(QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(QStringLiteral("Reverb"));
    form()->addRow(QStringLiteral("Reverberance (%):"),
                   sliderRow(this, sliderReverberence, labelReverberence, "sliderReverberence",
                             "labelReverberence", 0, 100, 50));
    form()->addRow(QStringLiteral("High-frequency damping (%):"),
                   sliderRow(this, sliderHiFreqDamping, labelHiFreqDamping, "sliderHiFreqDamping",
                             "labelHiFreqDamping", 0, 100, 50));
    form()->addRow(
        QStringLiteral("Room size (%):"),
        sliderRow(this, sliderRoomSize, labelRoomSize, "sliderRoomSize", "labelRoomSize", 0, 100, 100));
    form()->addRow(QStringLiteral("Stereo depth (%):"),
                   sliderRow(this, sliderStereoDepth, labelStereoDepth, "sliderStereoDepth",
                             "labelStereoDepth", 0, 100, 100));
    form()->addRow(
        QStringLiteral("Pre-delay (ms):"),
        sliderRow(this, sliderPreDelay, labelPreDelay, "sliderPreDelay", "labelPreDelay", 0, 500, 0));
    form()->addRow(QStringLiteral("Wet gain (dB):"),
                   sliderRow(this, sliderWetGain, labelWetGain, "sliderWetGain", "labelWetGain", -10, 10, 0));

    connect(sliderReverberence, &QSlider::valueChanged, this, &Window_Reverb::OnChangeReverberence);
    connect(sliderHiFreqDamping, &QSlider::valueChanged, this, &Window_Reverb::OnChangeHiFreqDamping);
    connect(sliderRoomSize, &QSlider::valueChanged, this, &Window_Reverb::OnChangeRoomSize);
    connect(sliderStereoDepth, &QSlider::valueChanged, this, &Window_Reverb::OnChangeStereoDepth);
    connect(sliderPreDelay, &QSlider::valueChanged, this, &Window_Reverb::OnChangePreDelay);
    connect(sliderWetGain, &QSlider::valueChanged, this, &Window_Reverb::OnChangeWetGain);
    OnChangeReverberence();
    OnChangeHiFreqDamping();
    OnChangeRoomSize();
    OnChangeStereoDepth();
    OnChangePreDelay();
    OnChangeWetGain();
}

void Window_Reverb::OnChangeReverberence() {
    showWhole(labelReverberence, sliderReverberence);
}
void Window_Reverb::OnChangeHiFreqDamping() {
    showWhole(labelHiFreqDamping, sliderHiFreqDamping);
}
void Window_Reverb::OnChangeRoomSize() {
    showWhole(labelRoomSize, sliderRoomSize);
}
void Window_Reverb::OnChangeStereoDepth() {
    showWhole(labelStereoDepth, sliderStereoDepth);
}
void Window_Reverb::OnChangePreDelay() {
    showWhole(labelPreDelay, sliderPreDelay);
}
void Window_Reverb::OnChangeWetGain() {
    showWhole(labelWetGain, sliderWetGain);
}

QString Window_Reverb::validate() {
    f_Reverberence = intValue(labelReverberence->text());
    f_HF_Damping = intValue(labelHiFreqDamping->text());
    f_Room_Size = intValue(labelRoomSize->text());
    f_Stereo_Depth = intValue(labelStereoDepth->text());
    f_Pre_Delay = intValue(labelPreDelay->text());
    f_Wet_Gain = intValue(labelWetGain->text());
    return {};
}

EffectValues Window_Reverb::effectValues() const {
    return {{QStringLiteral("f_Reverberence"), QVariant::fromValue(f_Reverberence)},
            {QStringLiteral("f_HF_Damping"), QVariant::fromValue(f_HF_Damping)},
            {QStringLiteral("f_Room_Size"), QVariant::fromValue(f_Room_Size)},
            {QStringLiteral("f_Stereo_Depth"), QVariant::fromValue(f_Stereo_Depth)},
            {QStringLiteral("f_Pre_Delay"), QVariant::fromValue(f_Pre_Delay)},
            {QStringLiteral("f_Wet_Gain"), QVariant::fromValue(f_Wet_Gain)}};
}
