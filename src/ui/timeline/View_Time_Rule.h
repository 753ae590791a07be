#pragma once

#include <QStringList>
#include <QWidget>
#include <limits>

// The strip above the waveform: a baseline, a tick every 81 points and before
// each next tick the time there, spread over the track's whole duration (or 3
// seconds a division before a track is loaded).
class View_Time_Rule : public QWidget {
    Q_OBJECT
public:
    explicit View_Time_Rule(QWidget* parent = nullptr);

    bool b_Audio_Loaded = false;
    qint64 i_Audio_Duration_Seconds = 0;
    quint64 u_ID = 0;

    // The labels drawn between `from` and `to` (the whole ruler by default),
    // as the paint draws them from the fields above.
    QStringList labels(double from = 0, double to = std::numeric_limits<double>::infinity()) const;

protected:
    void paintEvent(QPaintEvent* event) override;
};
