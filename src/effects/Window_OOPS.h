#pragma once

#include "effects/EffectDialogs.h"

class QLabel;

// Asks whether to mix the channels out of phase.
// The effect takes no parameters, so OK or Cancel is the only choice.
class Window_OOPS : public EffectDialog {
    Q_OBJECT
public:
    explicit Window_OOPS(QWidget* parent = nullptr);

    QLabel* labelMessage = nullptr;

    EffectValues effectValues() const override;

protected:
    QString validate() override;
};
