#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;

// Edit ▸ Set Selection…: where the selection starts and ends, typed as time
// strings or seconds. A text that is no time keeps the dialog open and says
// why under the fields.
class SetSelectionDialog : public QDialog {
    Q_OBJECT
public:
    // Opens on the selection from `start` to `end` seconds of a track
    // `length` seconds long.
    SetSelectionDialog(float start, float end, float length, QWidget* parent = nullptr);

    // The selection asked for, in percent of the track, once accepted.
    float startPercent() const { return m_start; }
    float endPercent() const { return m_end; }

    QLineEdit* fieldStart;
    QLineEdit* fieldEnd;
    QLabel* labelProblem;

    void accept() override;

private:
    float m_length;
    float m_start = 0, m_end = 0;
};
