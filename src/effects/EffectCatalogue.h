#pragma once

#include "effects/EffectPlans.h"

#include <QVariantMap>
#include <functional>
#include <vector>

// A dialog's accepted values by property name ("u_Percentage", "f_Delay_MS",
// …): plain values, so an effect can be built, repeated and tested as data.
using EffectValues = QVariantMap;

// One row of the catalogue: everything the menu, the actions and the tests
// need to know of an effect.
struct EffectEntry {
    QString group;       // the effects menu keeps a group's rows together
    QString key;         // the action word: "Amplify" for OnPopupAmplifyEntireTrack
    QString title;       // its submenu in the effects menu
    QString dialog;      // the parameter dialog's class, empty when there is none
    QString windowTitle; // the title the action gives its dialog, if any
    bool selection;      // whether a selection action exists
    std::function<EffectArguments(const EffectValues&)> arguments;
};

const std::vector<EffectEntry>& effectCatalogue();
const EffectEntry* findEffect(const QString& key);

// The document action a row stands for: "OnPopupAmplifyEntireTrack",
// "OnPopupAmplifySelection", "OnPopupFadeIn".
QString actionName(const EffectEntry& entry, bool selection);

// The sox words of the 20-band equalizer: each band's centre frequency with
// the bandwidth twice (the band gains are read by the dialog, not used).
QStringList equalizerArguments(float bandwidthQ);

// Noise reduction: cut the noise sample, profile it, reduce the whole track.
// Nothing is checked; the result is adopted as it comes.
EditPlan buildNoiseReductionPlan(const EditState& s, const ResultNames& names, float level);
