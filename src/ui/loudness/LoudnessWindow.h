#pragma once

#include "loudness/Loudness.h"

#include <QDialog>
#include <optional>

class QLabel;
class QGridLayout;

// Tracks ▸ Measure Loudness…: the EBU R128 figures of the track, and of the
// selection beside them, with how far the track is from each platform's
// target. It stays open beside its window (one per document) and is
// measured again whenever it is asked for.
class LoudnessWindow : public QDialog {
    Q_OBJECT
public:
    explicit LoudnessWindow(QWidget* parent);

    // "Measuring…" until the figures come; `selection` names the stretch
    // measured beside the track ("00:00:04.40 – 00:00:06.59"), empty when
    // only the track is.
    void showMeasuring(const QString& source, const QString& selection);
    void showTrack(const LoudnessReading& reading);
    void showSelection(const LoudnessReading& reading);
    void showFailure(const QString& why);

    // The figures as shown, by row and column, for the user and for tests.
    QLabel* figure(int row, int column) const { return m_figures[row][column]; }
    QLabel* distance(int target) const { return m_distances.at(target); }
    QLabel* labelStatus;
    enum Row { RowIntegrated, RowRange, RowTruePeak, RowSamplePeak, Rows };
    enum Column { ColumnTrack, ColumnSelection, Columns };

private:
    void showReading(int column, const LoudnessReading& reading);

    QLabel* m_headers[Columns];
    QLabel* m_figures[Rows][Columns];
    QList<QLabel*> m_distances;
};
