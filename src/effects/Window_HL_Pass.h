#pragma once

#include "effects/EffectDialogs.h"

class QLabel;
class QSlider;

// The cut-off of a two-pole high- or low-pass filter; the action names which
// in the window title. The slider moves in steps of 6 Hz.
class Window_HL_Pass : public EffectDialog {
    Q_OBJECT
public:
    explicit Window_HL_Pass(QWidget* parent = nullptr);

    QSlider* sliderRolloff = nullptr;
    QLabel* labelRolloff = nullptr;

    qint64 f_Rolloff_dB = 900;

    EffectValues effectValues() const override;

public slots:
    void OnChangeRolloff();

protected:
    QString validate() override;
};
