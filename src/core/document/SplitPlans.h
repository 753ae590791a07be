#pragma once

#include "plans/Plan.h"
#include "timeline/TimeStrings.h"

#include <QString>
#include <QStringList>
#include <functional>

// Splitting cuts the current working WAV into pieces, each to open in a
// window of its own; the track that is split stays as it is.
namespace splitting {

// The working WAV's name without its extension: the base of every piece name.
QString base(const QString& wav);

// work folder + "/" + stem + "_PART_" + n + ".wav", as the two- and three-part
// splits name their pieces; the stem is the base, unless that is taken (below).
QString piecePath(const QString& workFolder, const QString& stem, int n);

// The stem a split of `wav` names its pieces by: its base, as a rule, so that
// splitting again writes the same pieces and the windows showing them are
// refreshed. But a piece of that stem that a window keeps without showing it
// (an earlier version, since edited) or that is the copied audio must not be
// written over: that window would undo to another track's audio. The stem
// then becomes base + " (2)", " (3)", … up to the first with no such piece.
// `kept` holds the versions open windows keep but do not show, and the copied audio.
QString pieceStem(const QString& wav, const QStringList& kept);

// The pieces of a split and the runs that make them.
struct SplitPlan {
    Plan plan;
    QStringList pieces; // in the order they are to open
};

// Two pieces: from the start to the play position, and from there to the end.
// Every piece must come out as long as the stretch it is cut from.
SplitPlan buildSplitAtPositionPlan(const QString& wav, const QString& workFolder, const SegmentVariables& v,
                                   const QString& stem);
// Three pieces: before the selection, the selection, and after it.
SplitPlan buildSplitAroundSelectionPlan(const QString& wav, const QString& workFolder,
                                        const SegmentVariables& v, const QString& stem);

// What the split-on-silence dialog asks for.
struct SilenceSettings {
    float f_Minimum = 0.5f; // seconds of sound before a piece starts
    float f_Maximum = 2.0f; // seconds of silence that end a piece
    qint64 f_Threshold = 1; // the silence level, in percent
};

// "Minimum duration invalid." or "Maximum duration invalid." when a duration
// is below 0.05 s (the minimum checked first); empty when both will do.
QString silenceSettingsProblem(float minimum, float maximum);

// sox writes the pieces beside the working WAV: stem + "_PART_.wav" becomes
// stem + "_PART_001.wav", "_PART_002.wav", …
QString silencePattern(const QString& wav, const QString& stem);
QString silencePiecePath(const QString& wav, const QString& stem, int n);
QStringList silenceArguments(const QString& wav, const SilenceSettings& settings, const QString& stem);
Plan buildSplitOnSilencePlan(const QString& wav, const SilenceSettings& settings, const QString& stem);

// The pieces numbered from 001 up to the first number with no file or with a
// file of no frames, as `frames` says (-1 for no file). Where the track ends
// in silence sox still starts a last piece and writes a bare header: that
// piece is `empty`, for the caller to delete, and no window opens for it;
// nothing after it is this split's. Pieces of an earlier split numbered
// higher than this one's are found as well: sox does not remove them.
struct SilencePieces {
    QStringList pieces;
    QString empty;
};
SilencePieces findSilencePieces(const QString& wav, const QString& stem,
                                const std::function<qint64(const QString&)>& frames);

} // namespace splitting
