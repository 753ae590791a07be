#pragma once

#include "effects/EffectDialogs.h"

class QLabel;
class QSlider;

// A playback rate in percent of the original: 100 leaves the track as it is.
class RateDialog : public EffectDialog {
    Q_OBJECT
public:
    RateDialog(const QString& title, QWidget* parent);

    QSlider* sliderPercentage = nullptr;
    QLabel* labelPercentage = nullptr;

    float f_Percentage = 100;

    EffectValues effectValues() const override;

public slots:
    void OnChangePercentage();

protected:
    QString validate() override;
};

// Faster or slower, and higher or lower with it, like a tape run at another speed.
class Window_Speed : public RateDialog {
    Q_OBJECT
public:
    explicit Window_Speed(QWidget* parent = nullptr);
};

// Faster or slower at the same pitch.
class Window_Tempo : public RateDialog {
    Q_OBJECT
public:
    explicit Window_Tempo(QWidget* parent = nullptr);
};
