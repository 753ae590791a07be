#pragma once

#include <QString>

// The waveform and the ruler as a screen reader says them, in words rather
// than as time strings.
namespace spoken {

// "0 seconds", "3.5 seconds", "1 minute 5 seconds", "1 hour 2 minutes 5.2 seconds":
// tenths of a second, and units that are 0 left out.
QString time(double seconds);

// "Track “x.wav”, 10 seconds long; selected from 2 seconds to 5 seconds; play
// position at 3 seconds." Before a track is loaded: "No track is loaded yet."
QString waveform(const QString& track, bool loaded, double length, double selectionStart, double selectionEnd,
                 double position);

// "Time from 0 seconds to 10 seconds."
QString ruler(double length);

} // namespace spoken
