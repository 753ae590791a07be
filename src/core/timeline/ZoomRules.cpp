#include "ZoomRules.h"

#include <algorithm>
#include <cmath>

namespace zoom {

namespace {
int withinContent(double offset, int contentWidth, int visibleWidth) {
    return int(std::lround(std::clamp(offset, 0.0, double(std::max(0, contentWidth - visibleWidth)))));
}
} // namespace

int largestFactor(int visibleWidth) {
    return std::max(1, WidestContent / std::max(1, visibleWidth));
}

int factorForSelection(float startPercent, float endPercent, int visibleWidth) {
    const double share = (double(endPercent) - double(startPercent)) / 100.0;
    if (!(share > 0))
        return 0;
    const double factor = std::ceil(0.5 / std::min(share, 1.0) - 1e-9);
    return int(std::clamp(factor, 1.0, double(largestFactor(visibleWidth))));
}

int offsetCentring(float startPercent, float endPercent, int contentWidth, int visibleWidth) {
    const double start = double(startPercent) / 100.0 * contentWidth;
    const double end = double(endPercent) / 100.0 * contentWidth;
    return withinContent((start + end - visibleWidth) / 2.0, contentWidth, visibleWidth);
}

int offsetKeeping(double fraction, int pointerX, int contentWidth, int visibleWidth) {
    return withinContent(fraction * contentWidth - pointerX, contentWidth, visibleWidth);
}

int offsetFollowing(double markerX, int offset, int contentWidth, int visibleWidth) {
    if (!std::isfinite(markerX) || (markerX >= offset && markerX < double(offset) + visibleWidth))
        return offset;
    return withinContent(markerX, contentWidth, visibleWidth);
}

} // namespace zoom
