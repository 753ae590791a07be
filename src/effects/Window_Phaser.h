#pragma once

#include "effects/GainDialog.h"

class QComboBox;
class QLineEdit;

// The phaser's gains (percent), delay (µs), decay, speed (mHz) and modulation.
class Window_Phaser : public GainDialog {
    Q_OBJECT
public:
    explicit Window_Phaser(QWidget* parent = nullptr);

    QLineEdit* textSpeed = nullptr;
    QLineEdit* textDelay = nullptr;
    QLineEdit* textDecayFactor = nullptr;
    QComboBox* comboModulation = nullptr;

    float f_Speed = 1500;
    float f_Delay = 3000;
    float f_Decay_Factor = 0.5f;
    quint64 u_Modulation = 0; // 0 triangular, 1 sinusoidal

    EffectValues effectValues() const override;

protected:
    QString validate() override;
};
