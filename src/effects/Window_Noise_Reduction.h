#pragma once

#include "effects/EffectDialogs.h"

class QLabel;
class QSlider;

// How strongly the noise is reduced; the slider counts hundredths.
class Window_Noise_Reduction : public EffectDialog {
    Q_OBJECT
public:
    explicit Window_Noise_Reduction(QWidget* parent = nullptr);

    QSlider* sliderLevel = nullptr;
    QLabel* labelLevel = nullptr;

    float f_Level = 0.25f;

    EffectValues effectValues() const override;

public slots:
    void OnChangeLevel();

protected:
    QString validate() override;
};
