// The document's timeline operations: the segment time strings every cutting
// operation reads, the status bar's account of the markers, and zoom.

#include "document/Document.h"
#include "document/WaveformPlot.h"
#include "timeline/View_Audio_Wave.h"
#include "timeline/View_Time_Rule.h"

#include <QLabel>
#include <QLayout>
#include <QScrollArea>

SegmentVariables Document::segmentVariables() const {
    return calculateSegmentVariables({viewAudioPlot->f_Audio_Length, viewAudioPlot->f_Selection_Start,
                                      viewAudioPlot->f_Selection_End, viewAudioPlot->f_Audio_Position,
                                      i_Audio_Duration_Seconds});
}

void Document::Calculate_Segment_Variables() {
    const SegmentVariables v = segmentVariables();
    f_StartSelection = v.f_StartSelection;
    f_EndSelection = v.f_EndSelection;
    f_CurrentPosition = v.f_CurrentPosition;
    sStart = v.sStart;
    sStartSelection = v.sStartSelection;
    sEndSelection = v.sEndSelection;
    sCurrentPosition = v.sCurrentPosition;
    sDurationSelection = v.sDurationSelection;
    sDurationLastSegment = v.sDurationLastSegment;
    sDurationSegmentAfterStartSelection = v.sDurationSegmentAfterStartSelection;
    sDurationSegmentAfterCurrentPosition = v.sDurationSegmentAfterCurrentPosition;
}

void Document::showMarkers() {
    const SegmentVariables v = segmentVariables();
    labelSelection->setText(b_Audio_Loaded ? selectionStatusText(v) : QString());
    labelPosition->setText(b_Audio_Loaded ? positionStatusText(v) : QString());
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
