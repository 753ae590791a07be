#pragma once

#include "effects/EffectDialogs.h"

class QLabel;

// Asks whether to apply earwax, which moves the stereo image for headphones.
// The effect takes no parameters, so OK or Cancel is the only choice.
class Window_Earwax : public EffectDialog {
    Q_OBJECT
public:
    explicit Window_Earwax(QWidget* parent = nullptr);

    QLabel* labelMessage = nullptr;

    EffectValues effectValues() const override;

protected:
    QString validate() override;
};
