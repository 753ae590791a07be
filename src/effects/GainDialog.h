#pragma once

#include "effects/EffectDialogs.h"

class QComboBox;
class QLabel;
class QSlider;

// What the echo, the phaser and the chorus share: an input and an output gain
// in percent, each a slider whose label shows its value, and the sliders'
// own values as the effect's gains.
class GainDialog : public EffectDialog {
    Q_OBJECT
public:
    GainDialog(const QString& title, int gainIn, int gainOut, QWidget* parent);

    QSlider* sliderGainIn = nullptr;
    QLabel* labelGainIn = nullptr;
    QSlider* sliderGainOut = nullptr;
    QLabel* labelGainOut = nullptr;

    float f_Gain_In;
    float f_Gain_Out;

public slots:
    void OnChangeGainIn();
    void OnChangeGainOut();

protected:
    // Takes the gains from the sliders.
    void readGains();
    // The gains by property name, with the subclass's own values added.
    EffectValues withGains(EffectValues values) const;
    // The list of modulation shapes: triangular (0), sinusoidal (1).
    QComboBox* addModulationRow();
};
