#pragma once

// What the loudness tests share: a file's loudness as ffmpeg measures it.

#include "loudness/Loudness.h"
#include "support/Fixtures.h"

#include <optional>

namespace loudnessTest {

// ffmpeg's EBU R128 reading of the track, or of `duration` from `start`.
inline std::optional<LoudnessReading> measure(const QString& track, const QString& start = {},
                                              const QString& duration = {}) {
    QString said;
    if (fixtures::run("ffmpeg", loudnessMeasureArguments(track, start, duration), &said) != 0)
        return std::nullopt;
    return readLoudnessSummary(said);
}

} // namespace loudnessTest
