#pragma once

#include "effects/EffectDialogs.h"

class QLabel;
class QSlider;

// Boost or cut of the bass and the treble. The sliders count tenths of a
// decibel; the labels show decibels.
class Window_Bass_And_Treble : public EffectDialog {
    Q_OBJECT
public:
    explicit Window_Bass_And_Treble(QWidget* parent = nullptr);

    QSlider* sliderBass = nullptr;
    QLabel* labelBass = nullptr;
    QSlider* sliderTreble = nullptr;
    QLabel* labelTreble = nullptr;

    float f_Bass = 0;
    float f_Treble = 0;

    EffectValues effectValues() const override;

public slots:
    void OnSliderChangeBass();
    void OnSliderChangeTreble();

protected:
    QString validate() override;
};
