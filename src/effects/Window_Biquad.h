#pragma once

#include "effects/EffectDialogs.h"

class QLabel;
class QSlider;

// The six coefficients of a biquad filter, b0 b1 b2 over a0 a1 a2. The
// sliders count ten-millionths.
class Window_Biquad : public EffectDialog {
    Q_OBJECT
public:
    explicit Window_Biquad(QWidget* parent = nullptr);

    QSlider* sliderb0 = nullptr;
    QLabel* labelb0 = nullptr;
    QSlider* sliderb1 = nullptr;
    QLabel* labelb1 = nullptr;
    QSlider* sliderb2 = nullptr;
    QLabel* labelb2 = nullptr;
    QSlider* slidera0 = nullptr;
    QLabel* labela0 = nullptr;
    QSlider* slidera1 = nullptr;
    QLabel* labela1 = nullptr;
    QSlider* slidera2 = nullptr;
    QLabel* labela2 = nullptr;

    float f_b0 = 0.5f;
    float f_b1 = 0.5f;
    float f_b2 = 0;
    float f_a0 = 1;
    float f_a1 = 0;
    float f_a2 = 0;

    EffectValues effectValues() const override;

public slots:
    void OnChangeb0();
    void OnChangeb1();
    void OnChangeb2();
    void onChangea0();
    void OnChangea1();
    void OnChangea2();

protected:
    QString validate() override;
};
