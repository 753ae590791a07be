#pragma once

// What the keyboard does to the markers: the play position in seconds and
// the selection's ends in percent of the track, as the overlay keeps them.
struct Markers {
    float position = 0;       // seconds
    float selectionStart = 0; // percent
    float selectionEnd = 0;   // percent
};

enum class MarkerKey {
    ToStart,              // Home: the play position to the start
    ToEnd,                // End: to the end
    BackSecond,           // Left: one second back
    ForwardSecond,        // Right: one second on
    BackTenth,            // Shift+Left: a tenth of the track back
    ForwardTenth,         // Shift+Right: a tenth of the track on
    ExtendSelectionStart, // Shift+Home: the selection reaches back to the start
    ExtendSelectionEnd,   // Shift+End: the selection reaches on to the end
    SelectionStartHere,   // [: the selection starts at the play position
    SelectionEndHere,     // ]: the selection ends at the play position
};

// The markers after `key` on a track of `length` seconds. The play position
// stays within the track; a selection end set past the other end takes it
// along, so the start never lies after the end.
Markers moveMarkers(Markers markers, MarkerKey key, float length);
