#pragma once

#include <QString>
#include <optional>

// sox warns when an effect clipped samples ("sox WARN vol: vol clipped 109441
// samples; decrease volume?") and writes its result all the same, which the
// editor adopts as always; only the tool log showed the warning, so a user
// never learnt why the result sounded harsh. The editor now says it in words.

// The samples the effect's own warning counts in a sox run's output (for
// Amplify, whose gain is sox's "-v", the input's balancing). Dither,
// which follows every effect into a 16-bit file, clips in the effect's wake
// and is counted only when nothing else is; so is the output file's own
// warning. Empty when nothing clipped.
std::optional<qint64> clippedSamples(const QString& soxOutput);
// The same for a plan: what the first of its runs that clipped says.
struct PlanOutcome;
std::optional<qint64> clippedSamples(const PlanOutcome& outcome);

// The words for it: "Compand clipped 110,482 samples: lower its gain, or Undo".
QString clippingLine(const QString& effectTitle, qint64 samples);
