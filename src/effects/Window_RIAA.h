#pragma once

#include "effects/EffectDialogs.h"

class QLabel;

// Asks whether to apply the vinyl playback curve.
// The effect takes no parameters, so OK or Cancel is the only choice.
class Window_RIAA : public EffectDialog {
    Q_OBJECT
public:
    explicit Window_RIAA(QWidget* parent = nullptr);

    QLabel* labelMessage = nullptr;

    EffectValues effectValues() const override;

protected:
    QString validate() override;
};
