#pragma once

#include <QString>
#include <optional>

// Edit ▸ Set Selection…: the user types where the selection starts and ends,
// which finds a moment in a long track at once where dragging and zooming
// take many steps.

// A time as a user types it: "HH:MM:SS.CC" as the status bar shows it (also
// "MM:SS" or "MM:SS.CC"), or plain seconds ("449.5"). Empty when the text is
// none of these (letters, a negative time, a minutes or seconds field of 60
// or more after a colon).
std::optional<double> typedSeconds(const QString& text);

// The selection percentage of a track `length` seconds long whose segment
// time string reads `seconds` to the hundredth, as the status bar and the
// tools will read it back: the float nearest to seconds / length that does.
float percentReading(double seconds, float length);

// The selection the two texts ask for, in percent of the track, or the
// problem to tell the user.
struct TypedSelection {
    float start = 0;
    float end = 0;
    QString problem; // empty when the selection stands
};
TypedSelection typedSelection(const QString& start, const QString& end, float length);
