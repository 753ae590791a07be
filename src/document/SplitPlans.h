#pragma once

#include "app/Plan.h"
#include "timeline/TimeStrings.h"

#include <QString>
#include <QStringList>
#include <functional>

// Splitting cuts the current working WAV into pieces, each to open in a
// window of its own; the track that is split stays as it is.
namespace splitting {

// The working WAV's name without its extension: the base of every piece name.
QString base(const QString& wav);

// work folder + "/" + base + "_PART_" + n + ".wav", as the two- and three-part splits name their pieces.
QString piecePath(const QString& workFolder, const QString& wav, int n);

// The pieces of a split and the runs that make them.
struct SplitPlan {
    Plan plan;
    QStringList pieces; // in the order they are to open
};

// Two pieces: from the start to the play position, and from there to the end.
SplitPlan buildSplitAtPositionPlan(const QString& wav, const QString& workFolder, const SegmentVariables& v);
// Three pieces: before the selection, the selection, and after it.
SplitPlan buildSplitAroundSelectionPlan(const QString& wav, const QString& workFolder,
                                        const SegmentVariables& v);

// What the split-on-silence dialog asks for.
struct SilenceSettings {
    float f_Minimum = 0.5f; // seconds of sound before a piece starts
    float f_Maximum = 2.0f; // seconds of silence that end a piece
    qint64 f_Threshold = 1; // the silence level, in percent
};

// "Minimum duration invalid." or "Maximum duration invalid." when a duration
// is below 0.05 s (the minimum checked first); empty when both will do.
QString silenceSettingsProblem(float minimum, float maximum);

// sox writes the pieces beside the working WAV: base + "_PART_.wav" becomes
// base + "_PART_001.wav", "_PART_002.wav", …
QString silencePattern(const QString& wav);
QString silencePiecePath(const QString& wav, int n);
QStringList silenceArguments(const QString& wav, const SilenceSettings& settings);
Plan buildSplitOnSilencePlan(const QString& wav, const SilenceSettings& settings);

// The pieces numbered from 001 up to the first number with no file, as
// `exists` says. Pieces of an earlier split numbered higher than this one's
// are found as well: sox does not remove them.
QStringList findSilencePieces(const QString& wav, const std::function<bool(const QString&)>& exists);

} // namespace splitting
