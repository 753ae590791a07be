#pragma once

#include "widgets/ParameterDialog.h"

class QLineEdit;
class QRadioButton;

// Asks where to trim silence (start, end or both ends) and how long a quiet
// stretch must last to count as silence.
class Window_Silence_Trim : public ParameterDialog {
    Q_OBJECT
public:
    explicit Window_Silence_Trim(QWidget* parent = nullptr);

    QRadioButton* radioStart = nullptr;
    QRadioButton* radioEnd = nullptr;
    QRadioButton* radioEntire = nullptr;
    QLineEdit* textDuration = nullptr;

    // 1 = start, 2 = end, 3 = both ends; set when OK is pressed.
    quint64 u_Start_End_Or_Entire = 0;
    // The minimum silence in milliseconds; set when OK is pressed.
    quint64 u_Miliseconds = 0;

public slots:
    void OnRadioStart();
    void OnRadioEnd();
    void OnRadioEntire();

protected:
    QString validate() override;

private:
    void windowDidLoad();
    void choose(QRadioButton* chosen);
};
