#pragma once

#include "EffectParameters.h"
#include "EffectPlans.h"

#include <functional>
#include <vector>

// One row of the catalogue: everything the menu, the actions, the dialog and
// the tests need to know of an effect. Adding an effect is adding a row.
struct EffectEntry {
    QString group;            // the effects menu keeps a group's rows together
    QString key;              // the action word: "Amplify" for OnPopupAmplifyEntireTrack
    QString title;            // its submenu in the effects menu
    DialogDeclaration dialog; // its parameter dialog, empty when it asks nothing
    QString windowTitle;      // the title the action gives its dialog, if any
    bool selection;           // whether a selection action exists
    std::function<EffectArguments(const EffectValues&)> arguments;
};

const std::vector<EffectEntry>& effectCatalogue();
const EffectEntry* findEffect(const QString& key);

// The dialogs of noise reduction, a procedure of its own outside the catalogue:
// the question whether the selection holds noise only, then the level.
const DialogDeclaration& askNoiseSelectedDialog();
const DialogDeclaration& noiseReductionDialog();

// Any declared dialog by its name ("Window_Echo"), or null.
const DialogDeclaration* findDialog(const QString& name);

// The document action a row stands for: "OnPopupAmplifyEntireTrack",
// "OnPopupAmplifySelection", "OnPopupFadeIn".
QString actionName(const EffectEntry& entry, bool selection);

// What the version an effect makes is called in the history: "Echo", "Echo on selection".
QString effectVersionLabel(const EffectEntry& entry, bool selection);

// An effect's values as its dialog shows them, in the dialog's order and
// words: "Duration (ms): 2000, Shape: Linear (t)".
QString effectValuesText(const EffectEntry& entry, const EffectValues& values);

// Where a row's declarations and its argument builder disagree: a value the
// builder reads that no control declares, or reads as another type, a check
// of an undeclared value, two controls of one name. Empty when they agree.
QStringList declarationProblems(const EffectEntry& entry);

// The sox words of the 20-band equalizer: each band's centre frequency with
// the bandwidth twice (the band gains are read by the dialog, not used).
QStringList equalizerArguments(float bandwidthQ);

// Noise reduction: cut the noise sample, profile it, reduce the whole track.
// Nothing is checked; the result is adopted as it comes.
EditPlan buildNoiseReductionPlan(const EditState& s, const ResultNames& names, float level);
// What it says when sox learnt nothing from the selection or removed nothing.
QString noiseNotRemovedMessage();
