#pragma once

#include "document/SplitPlans.h"
#include "widgets/ParameterDialog.h"

class QLabel;
class QLineEdit;
class QSlider;

// Asks how a track is to be split at its silences: how long a piece must sound
// before it starts, how long a silence must last to end it, and how quiet
// counts as silence.
class Window_Split_Silence : public ParameterDialog {
    Q_OBJECT
public:
    explicit Window_Split_Silence(QWidget* parent = nullptr);

    QLineEdit* textMinimum;
    QLineEdit* textMaximum;
    QSlider* sliderThreshold;
    QLabel* labelThreshold;

    float f_Minimum = 0;
    float f_Maximum = 0;
    qint64 f_Threshold = 0; // percent, read from the label when OK is pressed

    splitting::SilenceSettings settings() const { return {f_Minimum, f_Maximum, f_Threshold}; }

public slots:
    void OnChangeThreshold();

protected:
    QString validate() override;

private:
    void windowDidLoad();
};
