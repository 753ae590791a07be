#pragma once

#include "effects/GainDialog.h"

class QLineEdit;

// The echo's input and output gains (percent), delay and decay.
class Window_Echo : public GainDialog {
    Q_OBJECT
public:
    explicit Window_Echo(QWidget* parent = nullptr);

    QLineEdit* textDelayMS = nullptr;
    QLineEdit* textDecayFactor = nullptr;

    float f_Delay_MS = 1000;
    float f_Decay_Factor = 0.5f;

    EffectValues effectValues() const override;

protected:
    QString validate() override;
};
