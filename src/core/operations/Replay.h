#pragma once

#include "EffectValues.h"
#include "Places.h"

#include <QString>
#include <optional>

// One whole-track operation as it can be done again to another file: an
// effect with its dialog's values, silence inserted at the start or the end,
// or silence trimmed. Everything else a version can come from depends on this
// track (its selection, its play position, the audio copied from it).
struct RecipeStep {
    enum class Kind { Effect, InsertSilence, TrimSilence };
    Kind kind = Kind::Effect;
    QString label = {};                       // as the history shows it: "Echo", "Insert silence at end"
    QString effect = {};                      // an effect: its catalogue key, "Echo"
    EffectValues values = {};                 // an effect: its dialog's values
    SilencePlace place = SilencePlace::Start; // inserting: Start or End
    quint64 mode = 0;                         // trimming: 1 the start, 2 the end, 3 both ends
    quint64 milliseconds = 0;                 // inserting and trimming
    bool operator==(const RecipeStep&) const = default;
};

// What a version records of the operation that made it: the step that would
// make it again from another file, or why there is none.
struct Replay {
    std::optional<RecipeStep> step;
    QString whyNot;
    bool operator==(const Replay&) const = default;
};

Replay effectReplay(const QString& key, const QString& label, const EffectValues& values);
Replay insertSilenceReplay(const QString& label, SilencePlace place, quint64 milliseconds);
Replay trimSilenceReplay(const QString& label, quint64 mode, quint64 milliseconds);

// Why a version cannot be made again from another file, in the user's words.
namespace notReplayable {
Replay selection();    // the edit or effect worked on the selection
Replay copiedAudio();  // a paste or a mix of the copied audio
Replay playPosition(); // silence inserted at the play position
Replay noiseSample();  // noise reduction learns the noise from a selection
} // namespace notReplayable
