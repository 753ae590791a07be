#pragma once

#include "effects/EffectDialogs.h"

class QLabel;
class QLineEdit;
class QSlider;

// The echo's input and output gains (percent), delay and decay.
class Window_Echo : public EffectDialog {
    Q_OBJECT
public:
    explicit Window_Echo(QWidget* parent = nullptr);

    QSlider* sliderGainIn = nullptr;
    QLabel* labelGainIn = nullptr;
    QSlider* sliderGainOut = nullptr;
    QLabel* labelGainOut = nullptr;
    QLineEdit* textDelayMS = nullptr;
    QLineEdit* textDecayFactor = nullptr;

    float f_Gain_In = 80;
    float f_Gain_Out = 90;
    float f_Delay_MS = 1000;
    float f_Decay_Factor = 0.5f;

    EffectValues effectValues() const override;

public slots:
    void OnChangeGainIn();
    void OnChangeGainOut();

protected:
    QString validate() override;
};
