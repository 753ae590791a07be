#pragma once

#include "effects/EffectDialogs.h"

class QLineEdit;

// Asks for the peak level, in dB, to normalize to.
class Window_Normalize : public EffectDialog {
    Q_OBJECT
public:
    explicit Window_Normalize(QWidget* parent = nullptr);

    QLineEdit* textdB = nullptr;
    float f_dB = -1.0f;

    EffectValues effectValues() const override;

protected:
    QString validate() override;
};
