#include "View_Audio_Wave.h"

#include "timeline/OverlayGeometry.h"
#include "timeline/ZoomRules.h"
#include "track/Track.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <cmath>

namespace {
// Painting takes any stored value: what is not finite is not drawn, and huge
// coordinates are pinned far outside the view.
bool drawable(double value) {
    return std::isfinite(value);
}
double pinned(double value) {
    return std::clamp(value, -1.0e7, 1.0e7);
}
QRectF pinned(const QRectF& r) {
    return {pinned(r.x()), pinned(r.y()), r.width(), r.height()};
}
bool drawable(const QRectF& r) {
    return drawable(r.x()) && drawable(r.y());
}
} // namespace

View_Audio_Wave::View_Audio_Wave(Track& track, QWidget* parent) : QWidget(parent), m_track(track) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumHeight(60);
    connect(&m_track, &Track::changed, this, qOverload<>(&QWidget::update));
}

void View_Audio_Wave::setPlotView(QWidget* plot) {
    m_plot = plot;
    placePlotView();
}

void View_Audio_Wave::placePlotView() {
    if (!m_plot)
        return;
    const double width = f_AudioPlot_Width > 0.0f && std::isfinite(f_AudioPlot_Width)
                             ? std::min(double(f_AudioPlot_Width), double(zoom::WidestContent))
                             : double(this->width());
    m_plot->setGeometry(0, 0, int(std::lround(width)), height());
}

void View_Audio_Wave::resizeEvent(QResizeEvent*) {
    placePlotView();
}

QPointF View_Audio_Wave::toViewCoordinates(const QPointF& p) const {
    return {p.x(), height() - p.y()};
}

void View_Audio_Wave::paintEvent(QPaintEvent*) {
    // Every redraw the view and the document ask for is a full one.
    QPainter painter(this);
    const double w = width();
    const double h = height();
    painter.fillRect(rect(), Qt::black);
    if (b_Recording)
        return;
    if (!b_Audio_Loaded) {
        QFont font(QStringLiteral("Verdana"));
        font.setPixelSize(24);
        painter.setFont(font);
        painter.setPen(QColor::fromRgbF(1, 0, 0, 1));
        painter.drawText(QPointF(std::trunc(w / 20), h - std::trunc(h / 6)),
                         QStringLiteral("No Audio Loaded"));
        return;
    }

    const overlay::SelectionEdges edges =
        overlay::selectionEdges(m_track.f_Selection_Start, m_track.f_Selection_End, f_AudioPlot_Width, w);
    if (edges.learnedWidth != 0.0f) {
        f_AudioPlot_Width = edges.learnedWidth; // the first pass teaches the view its width
        QMetaObject::invokeMethod(this, &View_Audio_Wave::placePlotView, Qt::QueuedConnection);
    }
    rect_Selection_Start = overlay::handleRect(edges.xs, h);
    rect_Selection_End = overlay::handleRect(edges.xe, h);

    // Drawn in the view's own coordinates: origin at the lower left, y upwards.
    painter.translate(0, h);
    painter.scale(1, -1);
    painter.setRenderHint(QPainter::Antialiasing);
    if (drawable(edges.xs) && drawable(edges.xe)) {
        const double xs = pinned(edges.xs), xe = pinned(edges.xe);
        QPainterPath band(QPointF(xs, 0));
        band.lineTo(xs, h);
        band.lineTo(xe, h);
        band.lineTo(xe, 0);
        band.closeSubpath();
        painter.fillPath(band, Qt::white);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    for (const QRectF& handle : {rect_Selection_Start, rect_Selection_End})
        if (drawable(handle))
            painter.drawEllipse(pinned(handle));

    if (overlay::hasPositionMarker(m_track.f_Audio_Length)) {
        const overlay::PositionMarker marker =
            overlay::positionMarker(m_track.f_Audio_Position, m_track.f_Audio_Length, f_AudioPlot_Width, h);
        rect_Position_Top = marker.top;
        rect_Position_Bottom = marker.bottom;
        if (drawable(marker.bar)) {
            painter.setBrush(QColor(Qt::red));
            painter.drawEllipse(pinned(marker.top));
            painter.drawEllipse(pinned(marker.bottom));
            painter.fillRect(pinned(marker.bar), Qt::red);
        }
    }
}

void View_Audio_Wave::mousePressEvent(QMouseEvent* event) {
    if (!b_Audio_Loaded)
        return;
    const QPointF p = toViewCoordinates(event->position());
    if (overlay::contains(rect_Selection_Start, p.x(), p.y())) {
        b_Mouse_Down_Start = true;
    } else if (overlay::contains(rect_Selection_End, p.x(), p.y())) {
        b_Mouse_Down_End = true;
    } else if (event->modifiers() & Qt::ShiftModifier) {
        // Shift and a click extend the selection to the clicked point.
        const overlay::PercentSpan span = overlay::extendSelection(
            m_track.f_Selection_Start, m_track.f_Selection_End, p.x(), f_AudioPlot_Width);
        m_track.setSelection(span.start, span.end);
        emit markersChanged();
    } else {
        m_track.setPosition(overlay::positionAt(p.x(), f_AudioPlot_Width, m_track.f_Audio_Length));
        emit markersChanged();
        // Held and moved, the press becomes the start of a selection.
        m_pressX = p.x();
        m_mayDragSelect = true;
    }
}

void View_Audio_Wave::mouseMoveEvent(QMouseEvent* event) {
    if (!b_Audio_Loaded)
        return;
    const double x = toViewCoordinates(event->position()).x();
    if (m_mayDragSelect && !m_dragSelecting && std::abs(x - m_pressX) >= QApplication::startDragDistance())
        m_dragSelecting = true;
    if (m_dragSelecting) {
        // Dragging across the waveform selects from the press to the pointer,
        // either way, as every editor does; the play position goes to the
        // selection's start.
        const overlay::PercentSpan span = overlay::dragSelection(m_pressX, x, f_AudioPlot_Width);
        m_track.setSelection(span.start, span.end);
        m_track.setPosition(span.start * m_track.f_Audio_Length / 100.0f);
        emit markersChanged();
        return;
    }
    if (b_Mouse_Down_Start) {
        m_track.setSelectionStart(overlay::dragStartPercent(x, f_AudioPlot_Width));
        emit markersChanged();
    }
    if (b_Mouse_Down_End) {
        m_track.setSelectionEnd(overlay::dragEndPercent(x, f_AudioPlot_Width));
        emit markersChanged();
    }
}

void View_Audio_Wave::mouseReleaseEvent(QMouseEvent*) {
    if (!b_Audio_Loaded)
        return;
    b_Mouse_Down_Start = false;
    b_Mouse_Down_End = false;
    m_mayDragSelect = m_dragSelecting = false;
    if (m_track.f_Selection_Start > m_track.f_Selection_End) {
        m_track.setSelection(m_track.f_Selection_End, m_track.f_Selection_Start);
        emit markersChanged();
    }
}
