#pragma once

#include <QString>
#include <limits>
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
    QString text;    // "00:MM:SS", or "HH:MM:SS.CC" where seconds would repeat
};

// Every division drawn for a ruler W wide: up to and including the first whose
// right end reaches W. A loaded ruler spreads the duration over W; before a
// track is loaded each division stands for 3 seconds.
//
// Only the divisions that meet the stretch [from, to] of the ruler are
// returned (their texts are the same as in the whole list): a zoomed ruler
// is millions of points wide, and only what is seen is drawn.
//
// Zoomed in far enough, a division stands for less than a second and
// neighbouring labels would read the same ("00:00:03 00:00:03"). Then every
// label names the time at its tick to the nearest hundredth, in the segment
// time strings' form ("00:00:03.25"), so that each tick can be told from the
// next; wherever a division is a second or more the labels stay as they are.
std::vector<Mark> marks(double width, bool loaded, qint64 durationSeconds, double from = 0,
                        double to = std::numeric_limits<double>::infinity());

} // namespace ruler
