#pragma once

#include <QWidget>

// The strip above the waveform that carries the time scale.
class View_Time_Rule : public QWidget {
    Q_OBJECT
public:
    explicit View_Time_Rule(QWidget* parent = nullptr);

    bool b_Audio_Loaded = false;
    qint64 i_Audio_Duration_Seconds = 0;
    quint64 u_ID = 0;

protected:
    void paintEvent(QPaintEvent* event) override;
};
