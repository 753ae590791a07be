#pragma once

#include <QColor>
#include <QWidget>
#include <vector>

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
    std::vector<float> m_points;
    QColor m_background = Qt::black;
    QColor m_color = Qt::green;
    qreal m_opacity = 1.0;
};
