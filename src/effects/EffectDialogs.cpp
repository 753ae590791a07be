#include "EffectDialogs.h"

#include "effects/ConfirmationDialogs.h"
#include "effects/RateDialogs.h"
#include "effects/Window_Amplify.h"
#include "effects/Window_Band_Pass_Reject.h"
#include "effects/Window_Bass_And_Treble.h"
#include "effects/Window_Bend.h"
#include "effects/Window_Biquad.h"
#include "effects/Window_Chorus.h"
#include "effects/Window_Compand.h"
#include "effects/Window_DCShift.h"
#include "effects/Window_Echo.h"
#include "effects/Window_Equalizer.h"
#include "effects/Window_Fade.h"
#include "effects/Window_Flanger.h"
#include "effects/Window_HL_Pass.h"
#include "effects/Window_Noise_Reduction.h"
#include "effects/Window_Normalize.h"
#include "effects/Window_Percentage.h"
#include "effects/Window_Phaser.h"
#include "effects/Window_Pitch.h"
#include "effects/Window_Reverb.h"
#include "effects/Window_Tremolo.h"

#include <utility>

namespace {
template <typename D> std::unique_ptr<EffectDialog> make(QWidget* parent) {
    return std::make_unique<D>(parent);
}
} // namespace

std::unique_ptr<EffectDialog> makeEffectDialog(const QString& dialogClass, QWidget* parent) {
    using Maker = std::unique_ptr<EffectDialog> (*)(QWidget*);
    static const std::pair<const char*, Maker> makers[] = {
        {"Window_Amplify", &make<Window_Amplify>},
        {"Window_Normalize", &make<Window_Normalize>},
        {"Window_Bass_And_Treble", &make<Window_Bass_And_Treble>},
        {"Window_Pitch", &make<Window_Pitch>},
        {"Window_Speed", &make<Window_Speed>},
        {"Window_Tempo", &make<Window_Tempo>},
        {"Window_Echo", &make<Window_Echo>},
        {"Window_Fade", &make<Window_Fade>},
        {"Window_Phaser", &make<Window_Phaser>},
        {"Window_Flanger", &make<Window_Flanger>},
        {"Window_Chorus", &make<Window_Chorus>},
        {"Window_Reverb", &make<Window_Reverb>},
        {"Window_Tremolo", &make<Window_Tremolo>},
        {"Window_Compand", &make<Window_Compand>},
        {"Window_HL_Pass", &make<Window_HL_Pass>},
        {"Window_Band_Pass_Reject", &make<Window_Band_Pass_Reject>},
        {"Window_Bend", &make<Window_Bend>},
        {"Window_DCShift", &make<Window_DCShift>},
        {"Window_Percentage", &make<Window_Percentage>},
        {"Window_Biquad", &make<Window_Biquad>},
        {"Window_Deemphasis", &make<Window_Deemphasis>},
        {"Window_Earwax", &make<Window_Earwax>},
        {"Window_OOPS", &make<Window_OOPS>},
        {"Window_RIAA", &make<Window_RIAA>},
        {"Window_Equalizer", &make<Window_Equalizer>},
        {"Window_Ask_Noise_Selected", &make<Window_Ask_Noise_Selected>},
        {"Window_Noise_Reduction", &make<Window_Noise_Reduction>},
    };
    for (const auto& [name, make] : makers)
        if (dialogClass == QLatin1String(name))
            return make(parent);
    return nullptr;
}
