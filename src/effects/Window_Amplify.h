#pragma once

#include "effects/EffectDialogs.h"

class QLineEdit;

// Asks by how many percent to scale the volume.
class Window_Amplify : public EffectDialog {
    Q_OBJECT
public:
    explicit Window_Amplify(QWidget* parent = nullptr);

    QLineEdit* textPercentage = nullptr;
    quint64 u_Percentage = 100;

    EffectValues effectValues() const override;

protected:
    QString validate() override;
};
