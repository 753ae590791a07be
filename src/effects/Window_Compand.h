#pragma once

#include "effects/EffectDialogs.h"

class QLabel;
class QSlider;

// The compander's attack, decay and look-ahead delay (the sliders count
// hundredths of a second), its make-up gain and initial volume (dB). The
// transfer function is fixed.
class Window_Compand : public EffectDialog {
    Q_OBJECT
public:
    explicit Window_Compand(QWidget* parent = nullptr);

    QSlider* sliderAttack = nullptr;
    QLabel* labelAttack = nullptr;
    QSlider* sliderDecay = nullptr;
    QLabel* labelDecay = nullptr;
    QSlider* sliderDelay = nullptr;
    QLabel* labelDelay = nullptr;
    QSlider* sliderGain = nullptr;
    QLabel* labelGain = nullptr;
    QSlider* sliderInitialVolume = nullptr;
    QLabel* labelInitialVolume = nullptr;

    float f_Attack = 0.3f;
    float f_Decay = 1;
    float f_Delay = 0.2f;
    qint64 f_Gain = -5;
    qint64 f_Initial_Volume = -90;

    EffectValues effectValues() const override;

public slots:
    void OnChangeAttack();
    void OnChangeDecay();
    void OnChangeDelay();
    void OnChangeGain();
    void OnChangeInitialVolume();

protected:
    QString validate() override;
};
