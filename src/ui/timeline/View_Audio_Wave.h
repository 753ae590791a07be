#pragma once

#include <QRectF>
#include <QWidget>

// The waveform area's overlay: selection band, handles and play position over
// a black background, in the units the rest of the editor reads (selection in
// percent of the track, position and length in seconds). Its coordinates have
// their origin at the lower left, y upwards; the hit rectangles are in them.
// The document pulls these values when it needs them.
class View_Audio_Wave : public QWidget {
    Q_OBJECT
public:
    explicit View_Audio_Wave(QWidget* parent = nullptr);

    // The waveform plot lying over this view: kept f_AudioPlot_Width wide (or
    // as wide as the view while that is not known yet) and as high as the view.
    void setPlotView(QWidget* plot);
    void placePlotView();

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
    QRectF rect_Selection_Start;
    QRectF rect_Selection_End;
    QRectF rect_Position_Top;
    QRectF rect_Position_Bottom;

signals:
    // The user moved a marker or the position (for the status bar).
    void markersChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    QPointF toViewCoordinates(const QPointF& widgetPoint) const;
    QWidget* m_plot = nullptr;
};
