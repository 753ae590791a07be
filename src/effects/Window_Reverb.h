#pragma once

#include "effects/EffectDialogs.h"

class QLabel;
class QSlider;

// The reverberation's amount, high-frequency damping, room size and stereo
// depth (percent), pre-delay (ms) and wet gain (dB).
class Window_Reverb : public EffectDialog {
    Q_OBJECT
public:
    explicit Window_Reverb(QWidget* parent = nullptr);

    QSlider* sliderReverberence = nullptr;
    QLabel* labelReverberence = nullptr;
    QSlider* sliderHiFreqDamping = nullptr;
    QLabel* labelHiFreqDamping = nullptr;
    QSlider* sliderRoomSize = nullptr;
    QLabel* labelRoomSize = nullptr;
    QSlider* sliderStereoDepth = nullptr;
    QLabel* labelStereoDepth = nullptr;
    QSlider* sliderPreDelay = nullptr;
    QLabel* labelPreDelay = nullptr;
    QSlider* sliderWetGain = nullptr;
    QLabel* labelWetGain = nullptr;

    qint64 f_Reverberence = 50;
    qint64 f_HF_Damping = 50;
    qint64 f_Room_Size = 100;
    qint64 f_Stereo_Depth = 100;
    qint64 f_Pre_Delay = 0;
    qint64 f_Wet_Gain = 0;

    EffectValues effectValues() const override;

public slots:
    void OnChangeReverberence();
    void OnChangeHiFreqDamping();
    void OnChangeRoomSize();
    void OnChangeStereoDepth();
    void OnChangePreDelay();
    void OnChangeWetGain();

protected:
    QString validate() override;
};
