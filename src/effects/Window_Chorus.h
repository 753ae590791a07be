#pragma once

#include "effects/GainDialog.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QSlider;

// The chorus's gains (percent), delay and depth (ms), decay, speed (Hz) and
// modulation.
class Window_Chorus : public GainDialog {
    Q_OBJECT
public:
    explicit Window_Chorus(QWidget* parent = nullptr);

    QLineEdit* textDelay = nullptr;
    QLineEdit* textDecayFactor = nullptr;
    QLineEdit* textDepth = nullptr;
    // Tenths of a hertz; the label shows the speed in hertz.
    QSlider* sliderSpeed = nullptr;
    QLabel* labelSpeed = nullptr;
    QComboBox* comboModulation = nullptr;

    float f_Delay = 50;
    float f_Decay_Factor = 0.5f;
    float f_Depth = 2;
    float f_Speed = 0.3f;
    quint64 u_Modulation = 0; // 0 triangular, 1 sinusoidal

    EffectValues effectValues() const override;

public slots:
    void OnChangeSpeed();

protected:
    QString validate() override;
};
