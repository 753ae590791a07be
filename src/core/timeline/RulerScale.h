#pragma once

#include <QString>
#include <vector>

// The time ruler's divisions: a tick every 81 points and, before each next
// tick, a label naming the time there. Coordinates have their origin at the
// lower left, y upwards, like the overlay's.
namespace ruler {

constexpr double Division = 81.0;
constexpr double LabelGap = 5.0;

struct Mark {
    double tickX;    // the tick of this division, at its left end
    double labelEnd; // the label ends here, 5 points before the next tick
    QString text;    // "00:MM:SS"
};

// Every division drawn for a ruler W wide: up to and including the first whose
// right end reaches W. A loaded ruler spreads the duration over W; before a
// track is loaded each division stands for 3 seconds.
std::vector<Mark> marks(double width, bool loaded, qint64 durationSeconds);

} // namespace ruler
