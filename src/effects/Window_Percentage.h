#pragma once

#include "effects/EffectDialogs.h"

class QLabel;
class QSlider;

// A whole percentage; the contrast effect's amount.
class Window_Percentage : public EffectDialog {
    Q_OBJECT
public:
    explicit Window_Percentage(QWidget* parent = nullptr);

    QSlider* sliderPercentage = nullptr;
    QLabel* labelPercentage = nullptr;

    quint64 f_Percentage = 75;

    EffectValues effectValues() const override;

public slots:
    void OnChangePercentage();

protected:
    QString validate() override;
};
