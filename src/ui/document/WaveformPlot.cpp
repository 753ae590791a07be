#include "WaveformPlot.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QtMath>
#include <algorithm>

WaveformPlot::WaveformPlot(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    connect(&m_samples, &PlotSamples::arrived, this, qOverload<>(&QWidget::update));
}

void WaveformPlot::setSummary(std::shared_ptr<const PeakSummary> summary, const QString& path) {
    m_summary = std::move(summary);
    m_samples.setFile(path);
    update();
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
    m_summary.reset();
    m_samples.setFile({});
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

void WaveformPlot::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setOpacity(m_opacity);
    // Only what can be seen: a repaint of the whole plot asks for all of its
    // width, millions of pixels when it is zoomed.
    // (A hidden widget, drawn into an image, has no visible region.)
    const QRect exposed =
        isVisible() ? event->rect() & visibleRegion().boundingRect() : event->rect() & rect();
    painter.fillRect(exposed, m_background);
    if (m_live)
        paintLiveInput(painter);
    else if (m_summary && m_summary->frames > 0 && m_summary->channelCount() > 0 && !exposed.isEmpty())
        paintColumns(painter, exposed);
    else
        paintPoints(painter);
}

void WaveformPlot::paintPoints(QPainter& painter) {
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

void WaveformPlot::paintColumns(QPainter& painter, const QRect& exposed) {
    const PeakSummary& summary = *m_summary;
    const qint64 frames = summary.frames;
    const qreal ratio = devicePixelRatioF();
    const qint64 contentWidth = std::max<qint64>(1, qRound64(width() * ratio));
    const qint64 first = std::clamp<qint64>(qFloor(exposed.left() * ratio), 0, contentWidth - 1);
    const qint64 end = std::clamp<qint64>(qCeil((exposed.right() + 1) * ratio), first + 1, contentWidth);
    // Drawn relative to the exposed part's left edge: a zoomed plot's own
    // coordinates grow past what the rasteriser resolves finely.
    painter.translate(qreal(first) / ratio, 0);
    const PeakLevel level = levelForColumns(frames, contentWidth);
    const SampleStretch* samples = nullptr;
    if (level == PeakLevel::Samples) {
        const bool line = contentWidth >= frames;
        const qint64 from = line ? std::max<qint64>(0, first * frames / contentWidth - 1)
                                 : columnSpan(first, contentWidth, frames, level).first;
        const qint64 to = line ? std::min(frames, (end * frames + contentWidth - 1) / contentWidth + 1)
                               : columnSpan(end - 1, contentWidth, frames, level).end;
        samples = m_samples.samplesFor(from, to, to - from);
        if (samples && line) {
            paintSampleLine(painter, *samples, contentWidth, first, end);
            return;
        }
    }
    const std::vector<float> peaks =
        columnPeaks(summary, samples, first, int(end - first), contentWidth).front();
    // Each column a bar from its peak above the centre line to its mirror
    // below; neighbours of one height make one bar. (Bars fill far faster
    // than one jagged polygon of every column's corners.)
    const qreal mid = height() / 2.0;
    QList<QRectF> bars;
    bars.reserve(qsizetype(peaks.size()));
    for (std::size_t i = 0; i < peaks.size();) {
        std::size_t next = i + 1;
        while (next < peaks.size() && peaks[next] == peaks[i])
            ++next;
        const qreal half = std::clamp(qreal(peaks[i]), 0.0, 1.0) * mid;
        if (half > 0)
            bars.append(QRectF(qreal(i) / ratio, mid - half, qreal(next - i) / ratio, 2 * half));
        i = next;
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_color);
    painter.drawRects(bars);
}

void WaveformPlot::paintSampleLine(QPainter& painter, const SampleStretch& samples, qint64 contentWidth,
                                   qint64 firstColumn, qint64 endColumn) {
    // A frame or less per device pixel: each sample a point of a line at the
    // middle of the columns it spans.
    const qint64 frames = m_summary->frames;
    const qreal ratio = devicePixelRatioF();
    const double columnsPerFrame = double(contentWidth) / double(frames);
    const qint64 from = std::max(samples.firstFrame, firstColumn * frames / contentWidth - 1);
    const qint64 to = std::min(samples.firstFrame + samples.frameCount(),
                               (endColumn * frames + contentWidth - 1) / contentWidth + 1);
    const qreal mid = height() / 2.0;
    QPolygonF line;
    line.reserve(std::max<qint64>(0, to - from));
    for (qint64 f = from; f < to; ++f) {
        const short sample = samples.samples[std::size_t((f - samples.firstFrame) * samples.channels)];
        const double x = ((double(f) + 0.5) * columnsPerFrame - double(firstColumn)) / ratio;
        line << QPointF(x, mid - qreal(sample) / 32768.0 * mid);
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(m_color, 1.5));
    painter.drawPolyline(line);
}
