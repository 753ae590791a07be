#pragma once

#include "plans/Plan.h"

#include <QString>
#include <QStringList>
#include <vector>

// Loudness normalisation to a platform's target: ffmpeg's `loudnorm` measures
// the audio in a first pass and, given what it measured, applies one gain in a
// second (its linear mode), so the track keeps its dynamics and lands on the
// target. Where the gain would push the true peak over the ceiling or the
// range is wider than asked, ffmpeg falls back to its dynamic mode, which
// compresses; the editor says so. The filter works at 192 kHz: its result is
// resampled to the working format.

struct LoudnessGoal {
    double integrated = -16; // LUFS
    double truePeak = -1;    // dBTP
    double range = 11;       // LU
};

// The figures the first pass prints and the second is given back.
const QStringList& loudnormMeasuredFigures(); // input_i, input_tp, input_lra, input_thresh, target_offset

// "loudnorm=I=-16.0:TP=-1.0:LRA=11.0"
QString loudnormFilter(const LoudnessGoal& goal);
// The first pass: ffmpeg reading `measured` through the filter into nothing,
// printing its figures.
QStringList loudnormMeasureArguments(const LoudnessGoal& goal, const QString& measured);
// The second pass, from `input` into `output` in the working format, with the
// first pass's figures where their marks are.
QStringList loudnormApplyArguments(const LoudnessGoal& goal, const QString& input, const QString& output);

// Both passes, measuring `measured` and normalising `input` into `output`;
// a measurement without plain figures (silence reads -inf) ends the plan
// with silentTrackMessage().
std::vector<Step> loudnessNormalizeSteps(const LoudnessGoal& goal, const QString& input,
                                         const QString& output, const QString& measured);
QString silentTrackMessage();

// The line said under the track when ffmpeg fell back to its dynamic mode;
// empty when it kept the linear one.
QString dynamicModeNotice(const PlanOutcome& outcome);
