#pragma once

#include "effects/EffectDialogs.h"

class QLabel;
class QSlider;

// The DC shift (full scale is 1) and the limiter's gain; both sliders count hundredths.
class Window_DCShift : public EffectDialog {
    Q_OBJECT
public:
    explicit Window_DCShift(QWidget* parent = nullptr);

    QSlider* sliderShift = nullptr;
    QLabel* labelShift = nullptr;
    QSlider* sliderGainLimiter = nullptr;
    QLabel* labelGainLimiter = nullptr;

    float f_Shift = 0.1f;
    float f_Gain_Limiter = 0.05f;

    EffectValues effectValues() const override;

public slots:
    void OnChangeShift();
    void OnChangeGainLimiter();

protected:
    QString validate() override;
};
