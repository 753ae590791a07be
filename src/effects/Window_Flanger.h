#pragma once

#include "effects/EffectDialogs.h"

class QLabel;
class QSlider;

// The flanger's delay and depth (ms), regeneration, width and phase (percent)
// and sweep speed. The speed slider counts tenths of a hertz.
class Window_Flanger : public EffectDialog {
    Q_OBJECT
public:
    explicit Window_Flanger(QWidget* parent = nullptr);

    QSlider* sliderDelay = nullptr;
    QLabel* labelDelay = nullptr;
    QSlider* sliderDepth = nullptr;
    QLabel* labelDepth = nullptr;
    QSlider* sliderRegeneration = nullptr;
    QLabel* labelRegeneration = nullptr;
    QSlider* sliderWidth = nullptr;
    QLabel* labelWidth = nullptr;
    QSlider* sliderSpeed = nullptr;
    QLabel* labelSpeed = nullptr;
    QSlider* sliderPhase = nullptr;
    QLabel* labelPhase = nullptr;

    qint64 f_Delay = 0;
    qint64 f_Depth = 2;
    qint64 f_Regen = 0;
    qint64 f_Width = 71;
    float f_Speed = 0.5f;
    qint64 f_Phase = 25;

    EffectValues effectValues() const override;

public slots:
    void OnChangeDelay();
    void OnChangeDepth();
    void OnChangeRegeneration();
    void OnChangeWidth();
    void OnChangeSpeed();
    void OnChangePhase();

protected:
    QString validate() override;
};
