#pragma once

#include <QRectF>

// The overlay's geometry, in its own coordinates: origin at the lower left,
// y growing upwards. The selection is in percent of the track, the position
// and the length in seconds; x and the plot width in points.
namespace overlay {

// x of the two selection edges. With a plot width of 0 the view's own width
// W is used instead, and becomes the plot width (`learnedWidth`).
struct SelectionEdges {
    float xs = 0;
    float xe = 0;
    float learnedWidth = 0; // 0 when the plot width was already known
};
SelectionEdges selectionEdges(float start, float end, float plotWidth, double viewWidth);

// The 20-point square of a selection handle, centred on an edge at half height.
QRectF handleRect(float x, double height);

// The play marker: circles at the bottom and top edges and a 2-point bar.
struct PositionMarker {
    QRectF top;    // centred at y = 0
    QRectF bottom; // centred at y = H
    QRectF bar;
};
// Only defined for a track length above 0; otherwise no marker is drawn.
bool hasPositionMarker(float length);
PositionMarker positionMarker(float position, float length, float plotWidth, double height);

// A rectangle contains a point on its left and bottom edges, not on its right and top ones.
bool contains(const QRectF& rect, double x, double y);

// The play position a press at x sets: x / plot width × length seconds.
float positionAt(double x, float plotWidth, float length);
// The percentages a drag of the start or the end handle to x sets.
float dragStartPercent(double x, float plotWidth);
float dragEndPercent(double x, float plotWidth);

// Selecting by dragging across the waveform, as in every editor: a drag from
// x0 to x1 selects between the two, whichever way it went, held to the track
// (0 to 100 %). Shift and a click at x extend a selection from `start` to
// `end` to x: the nearer edge moves there.
struct PercentSpan {
    float start = 0;
    float end = 0;
};
PercentSpan dragSelection(double fromX, double toX, float plotWidth);
PercentSpan extendSelection(float start, float end, double x, float plotWidth);

} // namespace overlay
