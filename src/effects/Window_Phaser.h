#pragma once

#include "effects/EffectDialogs.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QSlider;

// The phaser's gains (percent), delay (µs), decay, speed (mHz) and modulation.
class Window_Phaser : public EffectDialog {
    Q_OBJECT
public:
    explicit Window_Phaser(QWidget* parent = nullptr);

    QSlider* sliderGainIn = nullptr;
    QLabel* labelGainIn = nullptr;
    QSlider* sliderGainOut = nullptr;
    QLabel* labelGainOut = nullptr;
    QLineEdit* textSpeed = nullptr;
    QLineEdit* textDelay = nullptr;
    QLineEdit* textDecayFactor = nullptr;
    QComboBox* comboModulation = nullptr;

    float f_Gain_In = 80;
    float f_Gain_Out = 74;
    float f_Speed = 1500;
    float f_Delay = 3000;
    float f_Decay_Factor = 0.5f;
    quint64 u_Modulation = 0; // 0 triangular, 1 sinusoidal

    EffectValues effectValues() const override;

public slots:
    void OnChangeGainIn();
    void OnChangeGainOut();

protected:
    QString validate() override;
};
