#pragma once

#include "effects/EffectDialogs.h"

class QLabel;
class QSlider;

// A pitch shift that keeps the tempo. The slider counts cents and sox takes
// them as they are; the label shows semitones.
class Window_Pitch : public EffectDialog {
    Q_OBJECT
public:
    explicit Window_Pitch(QWidget* parent = nullptr);

    QSlider* sliderSemitones = nullptr;
    QLabel* labelSemitones = nullptr;

    float f_Semitones = 0; // the slider's own value, in cents

    EffectValues effectValues() const override;

public slots:
    void OnChangeSemitones();

protected:
    QString validate() override;
};
