#pragma once

#include <QColor>
#include <QWidget>
#include <vector>

class QPainter;

// Draws a track's reduced points as one filled shape, mirrored about the
// centre line. It lies over the overlay view with the overlay's geometry and a
// partial opacity, so the selection band shows through; mouse events pass
// through to the overlay.
class WaveformPlot : public QWidget {
    Q_OBJECT
public:
    explicit WaveformPlot(QWidget* parent = nullptr);

    void setPoints(std::vector<float> points);
    void clear();
    // The live input while recording: one buffer of samples (-1 to 1), drawn
    // as a trace across the plot until points are set or the plot is cleared.
    void updateBuffer(const float* buffer, int size);
    bool showsLiveInput() const { return m_live; }
    const std::vector<float>& liveBuffer() const { return m_buffer; }
    const std::vector<float>& points() const { return m_points; }

    void setBackgroundColor(const QColor& color);
    void setColor(const QColor& color);
    void setPlotOpacity(qreal opacity);
    QColor backgroundColor() const { return m_background; }
    QColor color() const { return m_color; }
    qreal plotOpacity() const { return m_opacity; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintLiveInput(QPainter& painter);

    std::vector<float> m_points;
    std::vector<float> m_buffer;
    bool m_live = false;
    QColor m_background = Qt::black;
    QColor m_color = Qt::green;
    qreal m_opacity = 1.0;
};
