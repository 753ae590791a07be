#include "MarkerKeys.h"

#include <algorithm>

Markers moveMarkers(Markers m, MarkerKey key, float length) {
    const auto clampPosition = [length](float seconds) {
        return std::clamp(seconds, 0.0f, std::max(length, 0.0f));
    };
    const float here = length > 0 ? 100.0f * m.position / length : 0.0f;
    switch (key) {
    case MarkerKey::ToStart:
        m.position = 0;
        break;
    case MarkerKey::ToEnd:
        m.position = clampPosition(length);
        break;
    case MarkerKey::BackSecond:
        m.position = clampPosition(m.position - 1);
        break;
    case MarkerKey::ForwardSecond:
        m.position = clampPosition(m.position + 1);
        break;
    case MarkerKey::BackTenth:
        m.position = clampPosition(m.position - length / 10);
        break;
    case MarkerKey::ForwardTenth:
        m.position = clampPosition(m.position + length / 10);
        break;
    case MarkerKey::ExtendSelectionStart:
        m.selectionStart = 0;
        break;
    case MarkerKey::ExtendSelectionEnd:
        m.selectionEnd = 100;
        break;
    case MarkerKey::SelectionStartHere:
        m.selectionStart = here;
        m.selectionEnd = std::max(m.selectionEnd, here);
        break;
    case MarkerKey::SelectionEndHere:
        m.selectionEnd = here;
        m.selectionStart = std::min(m.selectionStart, here);
        break;
    }
    return m;
}
