#pragma once

#include "effects/EffectDialogs.h"

class QComboBox;
class QLineEdit;

// A fade's length and shape; fading in and out share it, the caller titles it.
class Window_Fade : public EffectDialog {
    Q_OBJECT
public:
    explicit Window_Fade(QWidget* parent = nullptr);

    QLineEdit* textDurationMS = nullptr;
    QComboBox* comboModulation = nullptr;

    float f_Duration_MS = 500;
    // The shape by its position in the list: linear, quarter sine, half sine,
    // logarithmic, inverted parabola.
    quint64 u_Modulation = 0;

    EffectValues effectValues() const override;

protected:
    QString validate() override;
};
