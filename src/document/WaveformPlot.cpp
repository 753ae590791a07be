#include "WaveformPlot.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>

WaveformPlot::WaveformPlot(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void WaveformPlot::setPoints(std::vector<float> points) {
    m_points = std::move(points);
    update();
}

void WaveformPlot::clear() {
    setPoints({});
}

void WaveformPlot::setBackgroundColor(const QColor& color) {
    m_background = color;
    update();
}

void WaveformPlot::setColor(const QColor& color) {
    m_color = color;
    update();
}

void WaveformPlot::setPlotOpacity(qreal opacity) {
    m_opacity = opacity;
    update();
}

void WaveformPlot::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setOpacity(m_opacity);
    painter.fillRect(rect(), m_background);
    if (m_points.empty())
        return;

    // Upper edge from left to right, then the mirrored lower edge back.
    const qreal mid = height() / 2.0;
    const qreal step = m_points.size() > 1 ? qreal(width()) / qreal(m_points.size() - 1) : 0.0;
    QPainterPath path(QPointF(0, mid));
    for (std::size_t i = 0; i < m_points.size(); ++i)
        path.lineTo(qreal(i) * step, mid - std::clamp(qreal(m_points[i]), 0.0, 1.0) * mid);
    for (std::size_t i = m_points.size(); i-- > 0;)
        path.lineTo(qreal(i) * step, mid + std::clamp(qreal(m_points[i]), 0.0, 1.0) * mid);
    path.closeSubpath();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(path, m_color);
}
