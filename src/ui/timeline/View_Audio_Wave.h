#pragma once

#include <QRectF>
#include <QWidget>

class Track;

// The waveform area's overlay: a track's selection band, handles and play
// position over a black background. The selection and position belong to the
// track, which the overlay shows and the user's drags and clicks change. Its
// coordinates have their origin at the lower left, y upwards; the hit
// rectangles are in them.
class View_Audio_Wave : public QWidget {
    Q_OBJECT
public:
    explicit View_Audio_Wave(Track& track, QWidget* parent = nullptr);

    // The waveform plot lying over this view: kept f_AudioPlot_Width wide (or
    // as wide as the view while that is not known yet) and as high as the view.
    void setPlotView(QWidget* plot);
    void placePlotView();

    bool b_Audio_Loaded = false;
    bool b_Recording = false;
    bool b_Mouse_Down_Start = false;
    bool b_Mouse_Down_End = false;
    bool b_Mouse_Down_Position = false;
    float f_AudioPlot_Width = 0.0f;
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
    Track& m_track;
    QWidget* m_plot = nullptr;
    double m_pressX = 0;          // where a press that may become a drag-select began
    bool m_mayDragSelect = false; // the button is held after such a press
    bool m_dragSelecting = false; // it has moved far enough to be selecting
};
