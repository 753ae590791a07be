#pragma once

#include "plans/Plan.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

// Loudness as the platforms ask for it: podcasts, streaming services and
// broadcasters each name an integrated loudness (EBU R128, in LUFS) with a
// true-peak ceiling, not a peak level, so two episodes normalised to one
// peak can still sound unequally loud. ffmpeg's `ebur128` filter measures it.

// What ffmpeg's EBU R128 measurement says of a stretch of audio. Silence
// reads as -70 LUFS and peaks of -inf.
struct LoudnessReading {
    double integrated = 0; // LUFS
    double range = 0;      // LU
    double truePeak = 0;   // dBTP
    double samplePeak = 0; // dBFS
    bool operator==(const LoudnessReading&) const = default;
};

// The summary ffmpeg prints when an `ebur128` run with true and sample peaks
// ends ("Integrated loudness: I: -23.0 LUFS … True peak: Peak: -22.9 dBFS");
// the last one where there are several. Nothing unless all four figures are there.
std::optional<LoudnessReading> readLoudnessSummary(const QString& output);

// ffmpeg reading the track, or the stretch of `duration` from `start` (time
// strings), through the measurement into nothing.
QStringList loudnessMeasureArguments(const QString& track, const QString& start = {},
                                     const QString& duration = {});
Plan buildLoudnessMeasurePlan(const QString& track, const QString& start = {}, const QString& duration = {});

// The targets the platforms ask for, each with a true-peak ceiling of -1 dBTP.
struct LoudnessTarget {
    QString name;
    double lufs = 0;
    double ceiling = -1;
};
const QList<LoudnessTarget>& loudnessTargets(); // Podcast stereo, Podcast mono, Streaming, Broadcast EBU R128

// How far a reading is from a target: "3.2 LU too quiet", "1.0 LU too loud"
// or "on target" (within 0.5 LU), and where the true peak passes the
// ceiling, "; true peak 0.4 dB over -1 dBTP".
QString targetDistanceText(const LoudnessReading& reading, const LoudnessTarget& target);

// A figure as the window shows it: "-23.0 LUFS", "-inf dBTP".
QString loudnessFigureText(double value, const QString& unit);
