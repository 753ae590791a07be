// The document's timeline operations: the segment time strings every cutting
// operation reads, the status bar's account of the markers, and zoom.

#include "View_Audio_Wave.h"
#include "View_Time_Rule.h"
#include "document/Document.h"
#include "document/WaveformPlot.h"

#include "timeline/OverlayGeometry.h"
#include "timeline/SpokenText.h"
#include "timeline/ZoomRules.h"

#include <QAction>
#include <QCursor>
#include <QLabel>
#include <QLayout>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolBar>
#include <QWheelEvent>

void Document::showMarkers() {
    const SegmentVariables v = m_track.Calculate_Segment_Variables();
    labelSelection->setText(b_Audio_Loaded ? selectionStatusText(v) : QString());
    labelPosition->setText(b_Audio_Loaded ? positionStatusText(v) : QString());
    describeForAccessibility();
}

void Document::setUpAccessibility() {
    // Every control a screen reader or the Tab key can reach, by name.
    for (QAction* action : m_toolBar->actions())
        if (QWidget* button = m_toolBar->widgetForAction(action); button && !action->isSeparator()) {
            button->setAccessibleName(action->text());
            button->setAccessibleDescription(action->toolTip());
            button->setFocusPolicy(Qt::TabFocus);
        }
    viewAudioPlot->setAccessibleName(tr("Waveform"));
    viewAudioPlot->setFocusPolicy(Qt::StrongFocus);
    viewTimeRule->setAccessibleName(tr("Time ruler"));
    viewTimeRule->setFocusPolicy(Qt::TabFocus);
    const std::pair<QLabel*, QString> labels[] = {{labelSelection, tr("Selection")},
                                                  {labelPosition, tr("Play position")},
                                                  {labelSource, tr("Opened file")},
                                                  {labelDuration, tr("Length")},
                                                  {labelSize, tr("File size")}};
    for (const auto& [label, name] : labels) {
        label->setAccessibleName(name);
        label->setFocusPolicy(Qt::TabFocus);
    }
    describeForAccessibility();
}

void Document::describeForAccessibility() {
    const float length = m_track.f_Audio_Length;
    viewAudioPlot->setAccessibleDescription(
        spoken::waveform(windowTitle(), b_Audio_Loaded, length, m_track.f_Selection_Start * length / 100,
                         m_track.f_Selection_End * length / 100, m_track.f_Audio_Position));
    viewTimeRule->setAccessibleDescription(spoken::ruler(double(m_track.i_Audio_Duration_Seconds)));
    for (QLabel* label : {labelSelection, labelPosition, labelSource, labelDuration, labelSize})
        label->setAccessibleDescription(label->text());
}

void Document::OnToolbarZoomPlus() {
    ++u_Zoom_Factor;
    layOutZoom();
}

void Document::OnToolbarZoomMinus() {
    u_Zoom_Factor = u_Zoom_Factor - 1 <= 1 ? 1 : u_Zoom_Factor - 1;
    layOutZoom();
}

void Document::layOutZoom() {
    // Overlay, container and ruler become Z visible widths wide; the overlay's
    // plot width follows, so the markers keep their percentages at new x.
    m_zoomed = true;
    const int width = int(u_Zoom_Factor) * scrollviewAudioPlot->viewport()->width();
    viewTimePlusAudioPlot->resize(width, scrollviewAudioPlot->viewport()->height());
    viewTimePlusAudioPlot->layout()->activate();
    viewAudioPlot->f_AudioPlot_Width = float(viewAudioPlot->width());
    viewAudioPlot->placePlotView();
    viewTimeRule->update();
    viewAudioPlot->update();
}

void Document::followViewport() {
    // Before the first zoom the container fills the visible area; afterwards
    // only its height follows the window, its width waits for the next zoom.
    const QSize visible = scrollviewAudioPlot->viewport()->size();
    viewTimePlusAudioPlot->resize(m_zoomed ? viewTimePlusAudioPlot->width() : visible.width(),
                                  visible.height());
}

QPoint Document::popupPosition() const {
    // A pop-up opened by a key while the pointer is elsewhere opens at the
    // play marker, in the visible part of the waveform.
    const QPoint pointer = QCursor::pos();
    if (frameGeometry().contains(pointer))
        return pointer;
    const QRectF bar = overlay::hasPositionMarker(m_track.f_Audio_Length)
                           ? overlay::positionMarker(m_track.f_Audio_Position, m_track.f_Audio_Length,
                                                     float(viewAudioPlot->width()), viewAudioPlot->height())
                                 .bar
                           : QRectF(0, 0, 0, viewAudioPlot->height());
    const QPoint marker =
        viewAudioPlot->mapToGlobal(QPoint(int(bar.center().x()), viewAudioPlot->height() / 2));
    const QWidget* viewport = scrollviewAudioPlot->viewport();
    const QRect visible(viewport->mapToGlobal(QPoint(0, 0)), viewport->size());
    return {std::clamp(marker.x(), visible.left(), visible.right()),
            std::clamp(marker.y(), visible.top(), visible.bottom())};
}

void Document::zoomToFit() {
    u_Zoom_Factor = 1;
    layOutZoom();
    scrollviewAudioPlot->horizontalScrollBar()->setValue(0);
}

void Document::zoomToSelection() {
    const int visible = scrollviewAudioPlot->viewport()->width();
    const float start = m_track.f_Selection_Start, end = m_track.f_Selection_End;
    const int factor = zoom::factorForSelection(start, end, visible);
    if (factor == 0) // nothing selected
        return;
    u_Zoom_Factor = quint64(factor);
    layOutZoom();
    scrollviewAudioPlot->horizontalScrollBar()->setValue(
        zoom::offsetCentring(start, end, viewTimePlusAudioPlot->width(), visible));
}

void Document::zoomAround(int pointerX, bool in) {
    // The time under the pointer stays under the pointer.
    QScrollBar* scroll = scrollviewAudioPlot->horizontalScrollBar();
    const double fraction = double(scroll->value() + pointerX) / std::max(1, viewTimePlusAudioPlot->width());
    if (in && u_Zoom_Factor < quint64(zoom::largestFactor(scrollviewAudioPlot->viewport()->width())))
        OnToolbarZoomPlus();
    else if (!in)
        OnToolbarZoomMinus();
    scroll->setValue(zoom::offsetKeeping(fraction, pointerX, viewTimePlusAudioPlot->width(),
                                         scrollviewAudioPlot->viewport()->width()));
}

namespace {
// Ctrl and the mouse wheel over the waveform zoom in and out around the pointer.
class WheelZoom : public QObject {
public:
    WheelZoom(QWidget* viewport, std::function<void(int, bool)> zoomAround)
        : QObject(viewport), m_viewport(viewport), m_zoomAround(std::move(zoomAround)) {
        viewport->installEventFilter(this);
    }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::Wheel)
            return false;
        auto* wheel = static_cast<QWheelEvent*>(event);
        if (!(wheel->modifiers() & Qt::ControlModifier) || wheel->angleDelta().y() == 0)
            return false;
        const QPoint at = m_viewport->mapFromGlobal(wheel->globalPosition().toPoint());
        m_zoomAround(at.x(), wheel->angleDelta().y() > 0);
        return true;
    }

private:
    QWidget* m_viewport;
    std::function<void(int, bool)> m_zoomAround;
};
} // namespace

void Document::enableWheelZoom() {
    new WheelZoom(scrollviewAudioPlot->viewport(), [this](int x, bool in) {
        if (b_Audio_Loaded && !recording())
            zoomAround(x, in);
    });
}
