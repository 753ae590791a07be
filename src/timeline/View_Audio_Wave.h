#pragma once

#include <QRectF>
#include <QWidget>

// The waveform area's overlay: selection band, handles and play position over
// a black background, in the units the rest of the editor reads (selection in
// percent of the track, position and length in seconds). The document pulls
// these values; the view never notifies it.
class View_Audio_Wave : public QWidget {
    Q_OBJECT
public:
    explicit View_Audio_Wave(QWidget* parent = nullptr);

    bool b_Audio_Loaded = false;
    bool b_Recording = false;
    bool b_Mouse_Down_Start = false;
    bool b_Mouse_Down_End = false;
    bool b_Mouse_Down_Position = false;
    float f_Selection_Start = 40.0f;
    float f_Selection_End = 60.0f;
    float f_AudioPlot_Width = 0.0f;
    float f_Audio_Position = 0.0f;
    float f_Audio_Length = 0.0f;
    quint64 u_ID = 0;

protected:
    void paintEvent(QPaintEvent* event) override;
};
