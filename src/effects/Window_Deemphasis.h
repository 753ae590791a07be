#pragma once

#include "effects/EffectDialogs.h"

class QLabel;

// Asks whether to undo the treble boost of pre-emphasized recordings.
// The effect takes no parameters, so OK or Cancel is the only choice.
class Window_Deemphasis : public EffectDialog {
    Q_OBJECT
public:
    explicit Window_Deemphasis(QWidget* parent = nullptr);

    QLabel* labelMessage = nullptr;

    EffectValues effectValues() const override;

protected:
    QString validate() override;
};
