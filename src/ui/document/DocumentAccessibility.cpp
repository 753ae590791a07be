// The window's account of its track for the eye and for assistive
// technology: the status bar's markers, the names and descriptions a screen
// reader reads, and where a pop-up menu opens.

#include "Document.h"
#include "timeline/OverlayGeometry.h"
#include "timeline/SpokenText.h"
#include "timeline/View_Audio_Wave.h"
#include "timeline/View_Time_Rule.h"

#include <QAction>
#include <QCursor>
#include <QLabel>
#include <QScrollArea>
#include <QToolBar>

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
