#pragma once

#include "widgets/ParameterDialog.h"

class QLineEdit;

// Asks how many milliseconds of silence to insert.
class Window_Silence_Insert : public ParameterDialog {
    Q_OBJECT
public:
    explicit Window_Silence_Insert(QWidget* parent = nullptr);

    QLineEdit* textLengthInMS = nullptr;
    // The confirmed length; 0 after the dialog was cancelled.
    quint64 u_Length_In_MS = 1000;

protected:
    QString validate() override;
    void cancelled() override;

private:
    void windowDidLoad();
};
