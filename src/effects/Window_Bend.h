#pragma once

#include "effects/EffectDialogs.h"

class QLabel;
class QLineEdit;
class QSlider;

// One pitch bend: where it starts (ms), by how many cents, over how long (ms).
class Window_Bend : public EffectDialog {
    Q_OBJECT
public:
    explicit Window_Bend(QWidget* parent = nullptr);

    QLineEdit* textStart = nullptr;
    QSlider* sliderCents = nullptr;
    QLabel* labelCents = nullptr;
    QLineEdit* textDuration = nullptr;

    quint64 f_Start = 1000;
    qint64 f_Cents = 0;
    quint64 f_Duration = 2000;

    EffectValues effectValues() const override;

public slots:
    void OnChangeCents();

protected:
    QString validate() override;
};
