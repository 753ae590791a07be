#include "EffectDialogs.h"

#include "effects/Window_Amplify.h"
#include "effects/Window_Bend.h"
#include "effects/Window_Chorus.h"
#include "effects/Window_Deemphasis.h"
#include "effects/Window_Earwax.h"
#include "effects/Window_Echo.h"
#include "effects/Window_Fade.h"
#include "effects/Window_Normalize.h"
#include "effects/Window_OOPS.h"
#include "effects/Window_Phaser.h"
#include "effects/Window_RIAA.h"

#include <functional>
#include <utility>

std::unique_ptr<EffectDialog> makeEffectDialog(const QString& dialogClass, QWidget* parent) {
    using Maker = std::function<std::unique_ptr<EffectDialog>(QWidget*)>;
    static const std::pair<const char*, Maker> makers[] = {
        {"Window_Amplify", [](QWidget* p) { return std::make_unique<Window_Amplify>(p); }},
        {"Window_Normalize", [](QWidget* p) { return std::make_unique<Window_Normalize>(p); }},
        {"Window_Echo", [](QWidget* p) { return std::make_unique<Window_Echo>(p); }},
        {"Window_Phaser", [](QWidget* p) { return std::make_unique<Window_Phaser>(p); }},
        {"Window_Chorus", [](QWidget* p) { return std::make_unique<Window_Chorus>(p); }},
        {"Window_Fade", [](QWidget* p) { return std::make_unique<Window_Fade>(p); }},
        {"Window_Bend", [](QWidget* p) { return std::make_unique<Window_Bend>(p); }},
        {"Window_Deemphasis", [](QWidget* p) { return std::make_unique<Window_Deemphasis>(p); }},
        {"Window_Earwax", [](QWidget* p) { return std::make_unique<Window_Earwax>(p); }},
        {"Window_OOPS", [](QWidget* p) { return std::make_unique<Window_OOPS>(p); }},
        {"Window_RIAA", [](QWidget* p) { return std::make_unique<Window_RIAA>(p); }},
    };
    for (const auto& [name, make] : makers)
        if (dialogClass == QLatin1String(name))
            return make(parent);
    return nullptr;
}
