#include "Replay.h"

Replay effectReplay(const QString& key, const QString& label, const EffectValues& values) {
    return {RecipeStep{.kind = RecipeStep::Kind::Effect, .label = label, .effect = key, .values = values},
            {}};
}

Replay insertSilenceReplay(const QString& label, SilencePlace place, quint64 milliseconds) {
    if (place == SilencePlace::CurrentPosition)
        return notReplayable::playPosition();
    return {RecipeStep{.kind = RecipeStep::Kind::InsertSilence,
                       .label = label,
                       .place = place,
                       .milliseconds = milliseconds},
            {}};
}

Replay trimSilenceReplay(const QString& label, quint64 mode, quint64 milliseconds) {
    return {RecipeStep{.kind = RecipeStep::Kind::TrimSilence,
                       .label = label,
                       .mode = mode,
                       .milliseconds = milliseconds},
            {}};
}

namespace notReplayable {
Replay selection() {
    return {{}, QStringLiteral("It worked on a selection, which another file does not have.")};
}
Replay copiedAudio() {
    return {{}, QStringLiteral("It used the copied audio, which belongs to this session.")};
}
Replay playPosition() {
    return {{}, QStringLiteral("It depended on the play position in this track.")};
}
Replay noiseSample() {
    return {{}, QStringLiteral("It learned the noise from a selection of this track.")};
}
} // namespace notReplayable
