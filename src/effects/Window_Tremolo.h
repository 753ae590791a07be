#pragma once

#include "effects/EffectDialogs.h"

class QLabel;
class QSlider;

// The tremolo's speed (the slider counts hundredths of a hertz) and depth (percent).
class Window_Tremolo : public EffectDialog {
    Q_OBJECT
public:
    explicit Window_Tremolo(QWidget* parent = nullptr);

    QSlider* sliderSpeed = nullptr;
    QLabel* labelSpeed = nullptr;
    QSlider* sliderDepth = nullptr;
    QLabel* labelDepth = nullptr;

    float f_Speed = 5;
    qint64 f_Depth = 40;

    EffectValues effectValues() const override;

public slots:
    void OnChangeSpeed();
    void OnChangeDepth();

protected:
    QString validate() override;
};
