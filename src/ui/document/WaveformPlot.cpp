#include "WaveformPlot.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>

WaveformPlot::WaveformPlot(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void WaveformPlot::setPoints(std::vector<float> points) {
    m_points = std::move(points);
    m_live = false;
    m_buffer.clear();
    update();
}

void WaveformPlot::updateBuffer(const float* buffer, int size) {
    m_buffer.assign(buffer, buffer + std::max(0, size));
    m_live = true;
    update();
}

void WaveformPlot::paintLiveInput(QPainter& painter) {
    // The buffer's samples from left to right, about the centre line.
    if (m_buffer.size() < 2)
        return;
    const qreal mid = height() / 2.0;
    const qreal step = qreal(width()) / qreal(m_buffer.size() - 1);
    QPainterPath path(QPointF(0, mid - std::clamp(qreal(m_buffer[0]), -1.0, 1.0) * mid));
    for (std::size_t i = 1; i < m_buffer.size(); ++i)
        path.lineTo(qreal(i) * step, mid - std::clamp(qreal(m_buffer[i]), -1.0, 1.0) * mid);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(m_color, 1.5));
    painter.drawPath(path);
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
    if (m_live) {
        paintLiveInput(painter);
        return;
    }
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
