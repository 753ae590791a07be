#pragma once

#include "effects/EffectDialogs.h"

class QLabel;
class QSlider;

// The centre frequency (the slider counts hundredths of a hertz) and the
// width (steps of 6 Hz) of a band-pass or band-reject filter; the action
// names which in the window title.
class Window_Band_Pass_Reject : public EffectDialog {
    Q_OBJECT
public:
    explicit Window_Band_Pass_Reject(QWidget* parent = nullptr);

    QSlider* sliderFrequency = nullptr;
    QLabel* labelFrequency = nullptr;
    QSlider* sliderWidth = nullptr;
    QLabel* labelWidth = nullptr;

    quint64 f_Frequency = 1000;
    qint64 f_Width_dB = 600;

    EffectValues effectValues() const override;

public slots:
    void OnChangeFrequency();
    void OnChangeWidth();

protected:
    QString validate() override;
};
