#pragma once

#include <QObject>
#include <functional>

class QScrollArea;
class QWidget;
class Track;
class View_Audio_Wave;
class View_Time_Rule;

// Zoom: the whole track spans u_Zoom_Factor visible widths of the scroll
// area, ruler and overlay together, the markers keeping their percentages.
class ZoomActions : public QObject {
    Q_OBJECT
public:
    // `container` holds the ruler above the overlay and is what `scroll`
    // scrolls; `mayZoom` says whether the wheel may zoom now.
    ZoomActions(Track& track, QScrollArea* scroll, QWidget* container, View_Time_Rule* ruler,
                View_Audio_Wave* overlay, std::function<bool()> mayZoom, QObject* parent = nullptr);

    void OnToolbarZoomPlus();
    void OnToolbarZoomMinus();
    void zoomToFit();       // the whole track in the visible width
    void zoomToSelection(); // the smallest factor at which the selection fills half the view, scrolled to it
    void zoomAround(int pointerX, bool in); // one step, keeping the time under the pointer
    void setZoomFactor(quint64 factor);     // from 1 to the largest factor the view can take
    // While playing, a zoomed view pages along with the play marker, until
    // the user scrolls it; the next Play follows again.
    void followPlayback(bool playing);
    bool followsPlayback() const { return m_following; }
    // Scrolls the view so that the stretch from `startPercent` to
    // `endPercent` of the track is in sight (centred when it has to move).
    void reveal(float startPercent, float endPercent);
    quint64 u_Zoom_Factor = 1;

private:
    void layOutZoom();
    void followViewport();
    void followMarker();
    void scrollBy(int wheelDelta); // the mouse wheel without Ctrl

    Track& m_track;
    QScrollArea* m_scroll;
    QWidget* m_container;
    View_Time_Rule* m_ruler;
    View_Audio_Wave* m_overlay;
    bool m_zoomed = false;    // the width has been set by a zoom action
    bool m_following = false; // the view follows the play marker
};
