#pragma once

// What the mixer tests read off a list of rows, and the pitch of a stretch of
// a joined track.

#include "mixer/MixerTracks.h"
#include "support/Listening.h"

#include <QList>
#include <vector>

namespace tracklists {
inline QList<quint64> starts(const AudioTracks& tracks) {
    QList<quint64> list;
    for (const Object_Audio_Track& t : tracks)
        list << t.f_Position_To_Start;
    return list;
}
inline QList<quint64> durations(const AudioTracks& tracks) {
    QList<quint64> list;
    for (const Object_Audio_Track& t : tracks)
        list << t.f_Duration;
    return list;
}
// The pitch of the stretch from `from` to `to` seconds of stereo 44.1 kHz samples.
inline double pitch(const std::vector<short>& all, double from, double to) {
    const auto first = std::ptrdiff_t(from * 44100) * 2, last = std::ptrdiff_t(to * 44100) * 2;
    return listening::frequency(std::vector<short>(all.begin() + first, all.begin() + last));
}
} // namespace tracklists
