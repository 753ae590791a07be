#include "OverlayGeometry.h"

#include <algorithm>
#include <cmath>

namespace overlay {

SelectionEdges selectionEdges(float start, float end, float plotWidth, double viewWidth) {
    if (plotWidth != 0.0f)
        return {start * plotWidth / 100.0f, end * plotWidth / 100.0f, 0.0f};
    return {float(viewWidth * start / 100.0), float(viewWidth * end / 100.0), float(viewWidth)};
}

QRectF handleRect(float x, double height) {
    return {double(x) - 10.0, height * 0.5 - 10.0, 20.0, 20.0};
}

bool hasPositionMarker(float length) {
    return length > 0.0f;
}

PositionMarker positionMarker(float position, float length, float plotWidth, double height) {
    const float percent = position * 100.0f / length;
    const double xp = double(percent * plotWidth / 100.0f);
    return {QRectF(xp - 10.0, -10.0, 20.0, 20.0), QRectF(xp - 10.0, height - 10.0, 20.0, 20.0),
            QRectF(xp - 1.0, 0.0, 2.0, height)};
}

bool contains(const QRectF& rect, double x, double y) {
    return rect.left() <= x && x < rect.right() && rect.top() <= y && y < rect.bottom();
}

float positionAt(double x, float plotWidth, float length) {
    const float r = float(x * 100.0 / double(plotWidth));
    return r * length / 100.0f;
}

float dragStartPercent(double x, float plotWidth) {
    return float(100.0 * x / double(plotWidth));
}

float dragEndPercent(double x, float plotWidth) {
    return float(x * 100.0 / double(plotWidth));
}

namespace {
float percentWithin(double x, float plotWidth) {
    const double percent = plotWidth > 0 ? 100.0 * x / double(plotWidth) : 0.0;
    return float(std::clamp(std::isfinite(percent) ? percent : 0.0, 0.0, 100.0));
}
} // namespace

PercentSpan dragSelection(double fromX, double toX, float plotWidth) {
    const float a = percentWithin(fromX, plotWidth), b = percentWithin(toX, plotWidth);
    return {std::min(a, b), std::max(a, b)};
}

PercentSpan extendSelection(float start, float end, double x, float plotWidth) {
    const float p = percentWithin(x, plotWidth);
    if (p < start || (p <= end && p - start < end - p))
        return {p, end};
    return {start, p};
}

} // namespace overlay
