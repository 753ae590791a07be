#include "RecipeStep.h"

Replay effectReplay(const QString& key, const QString& label, const EffectValues& values) {
    RecipeStep step;
    step.kind = RecipeStep::Kind::Effect;
    step.label = label;
    step.effect = key;
    step.values = values;
    return {step, {}};
}

Replay insertSilenceReplay(const QString& label, SilencePlace place, quint64 milliseconds) {
    if (place == SilencePlace::CurrentPosition)
        return notReplayable::playPosition();
    RecipeStep step;
    step.kind = RecipeStep::Kind::InsertSilence;
    step.label = label;
    step.place = place;
    step.milliseconds = milliseconds;
    return {step, {}};
}

Replay trimSilenceReplay(const QString& label, quint64 mode, quint64 milliseconds) {
    RecipeStep step;
    step.kind = RecipeStep::Kind::TrimSilence;
    step.label = label;
    step.mode = mode;
    step.milliseconds = milliseconds;
    return {step, {}};
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
