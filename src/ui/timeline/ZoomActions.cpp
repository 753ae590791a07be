#include "ZoomActions.h"

#include "View_Audio_Wave.h"
#include "View_Time_Rule.h"
#include "timeline/ZoomRules.h"
#include "track/Track.h"

#include <QApplication>
#include <QLayout>
#include <QScrollArea>
#include <QScrollBar>
#include <QWheelEvent>
#include <functional>

namespace {
// Calls back whenever a widget is resized.
class ResizeWatcher : public QObject {
public:
    ResizeWatcher(QWidget* watched, std::function<void()> resized)
        : QObject(watched), m_resized(std::move(resized)) {
        watched->installEventFilter(this);
    }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Resize)
            m_resized();
        return false;
    }

private:
    std::function<void()> m_resized;
};

// Ctrl and the mouse wheel over the waveform zoom in and out around the
// pointer; the wheel alone scrolls a zoomed track sideways, since the view
// has nothing to scroll up or down.
class WheelZoom : public QObject {
public:
    WheelZoom(QWidget* viewport, std::function<void(int, bool)> zoomAround, std::function<void(int)> scroll)
        : QObject(viewport), m_viewport(viewport), m_zoomAround(std::move(zoomAround)),
          m_scroll(std::move(scroll)) {
        viewport->installEventFilter(this);
    }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::Wheel)
            return false;
        auto* wheel = static_cast<QWheelEvent*>(event);
        const int delta = wheel->angleDelta().y();
        if (delta == 0)
            return false; // a sideways wheel scrolls as it always has
        if (wheel->modifiers() & Qt::ControlModifier) {
            const QPoint at = m_viewport->mapFromGlobal(wheel->globalPosition().toPoint());
            m_zoomAround(at.x(), delta > 0);
        } else {
            m_scroll(delta);
        }
        return true;
    }

private:
    QWidget* m_viewport;
    std::function<void(int, bool)> m_zoomAround;
    std::function<void(int)> m_scroll;
};
} // namespace

ZoomActions::ZoomActions(Track& track, QScrollArea* scroll, QWidget* container, View_Time_Rule* ruler,
                         View_Audio_Wave* overlay, std::function<bool()> mayZoom, QObject* parent)
    : QObject(parent), m_track(track), m_scroll(scroll), m_container(container), m_ruler(ruler),
      m_overlay(overlay) {
    new ResizeWatcher(scroll->viewport(), [this] { followViewport(); });
    new WheelZoom(
        scroll->viewport(),
        [this, mayZoom = std::move(mayZoom)](int x, bool in) {
            if (mayZoom())
                zoomAround(x, in);
        },
        [this](int delta) { scrollBy(delta); });
    // The user's own scrolling (the bar, its keys, the wheel) ends following.
    connect(scroll->horizontalScrollBar(), &QScrollBar::actionTriggered, this,
            [this] { m_following = false; });
    connect(&m_track, &Track::changed, this, &ZoomActions::followMarker);
}

void ZoomActions::followPlayback(bool playing) {
    m_following = playing;
    followMarker();
}

void ZoomActions::followMarker() {
    if (!m_following || m_track.f_Audio_Length <= 0)
        return;
    QScrollBar* bar = m_scroll->horizontalScrollBar();
    const double x = double(m_track.f_Audio_Position) / double(m_track.f_Audio_Length) * m_container->width();
    bar->setValue(
        zoom::offsetFollowing(x, bar->value(), m_container->width(), m_scroll->viewport()->width()));
}

void ZoomActions::scrollBy(int wheelDelta) {
    // As many lines a notch as the desktop says, like every scrolled view.
    QScrollBar* bar = m_scroll->horizontalScrollBar();
    const int lines = QApplication::wheelScrollLines() * wheelDelta / 120;
    bar->setValue(bar->value() - lines * bar->singleStep());
    m_following = false;
}

void ZoomActions::reveal(float startPercent, float endPercent) {
    QScrollBar* bar = m_scroll->horizontalScrollBar();
    const int content = m_container->width(), visible = m_scroll->viewport()->width();
    const double from = double(startPercent) / 100.0 * content, to = double(endPercent) / 100.0 * content;
    if (from >= bar->value() && to <= bar->value() + visible)
        return;
    bar->setValue(zoom::offsetCentring(startPercent, endPercent, content, visible));
}

void ZoomActions::OnToolbarZoomPlus() {
    ++u_Zoom_Factor;
    layOutZoom();
}

void ZoomActions::OnToolbarZoomMinus() {
    u_Zoom_Factor = u_Zoom_Factor - 1 <= 1 ? 1 : u_Zoom_Factor - 1;
    layOutZoom();
}

void ZoomActions::setZoomFactor(quint64 factor) {
    const quint64 largest = quint64(zoom::largestFactor(m_scroll->viewport()->width()));
    u_Zoom_Factor = std::clamp<quint64>(factor, 1, std::max<quint64>(1, largest));
    layOutZoom();
}

void ZoomActions::layOutZoom() {
    // Overlay, container and ruler become Z visible widths wide; the overlay's
    // plot width follows, so the markers keep their percentages at new x.
    m_zoomed = true;
    const int width = int(u_Zoom_Factor) * m_scroll->viewport()->width();
    m_container->resize(width, m_scroll->viewport()->height());
    m_container->layout()->activate();
    m_overlay->f_AudioPlot_Width = float(m_overlay->width());
    m_overlay->placePlotView();
    m_ruler->update();
    m_overlay->update();
}

void ZoomActions::followViewport() {
    // Before the first zoom the container fills the visible area; afterwards
    // only its height follows the window, its width waits for the next zoom.
    const QSize visible = m_scroll->viewport()->size();
    m_container->resize(m_zoomed ? m_container->width() : visible.width(), visible.height());
}

void ZoomActions::zoomToFit() {
    u_Zoom_Factor = 1;
    layOutZoom();
    m_scroll->horizontalScrollBar()->setValue(0);
}

void ZoomActions::zoomToSelection() {
    const int visible = m_scroll->viewport()->width();
    const float start = m_track.f_Selection_Start, end = m_track.f_Selection_End;
    const int factor = zoom::factorForSelection(start, end, visible);
    if (factor == 0) // nothing selected
        return;
    setZoomFactor(quint64(factor)); // no deeper than the view can go
    m_scroll->horizontalScrollBar()->setValue(
        zoom::offsetCentring(start, end, m_container->width(), visible));
}

void ZoomActions::zoomAround(int pointerX, bool in) {
    // The time under the pointer stays under the pointer.
    QScrollBar* scroll = m_scroll->horizontalScrollBar();
    const double fraction = double(scroll->value() + pointerX) / std::max(1, m_container->width());
    if (in && u_Zoom_Factor < quint64(zoom::largestFactor(m_scroll->viewport()->width())))
        OnToolbarZoomPlus();
    else if (!in)
        OnToolbarZoomMinus();
    scroll->setValue(
        zoom::offsetKeeping(fraction, pointerX, m_container->width(), m_scroll->viewport()->width()));
}
