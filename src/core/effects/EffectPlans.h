#pragma once

#include "edit/EditPlans.h"

// What one effect adds to a sox run: global options before the input path
// (amplify and normalise use these) and the effect's own words after the
// input and output paths.
struct EffectArguments {
    QStringList global;
    QStringList effect;
    // An effect that is not one sox run (loudness normalisation's two ffmpeg
    // passes) gives its own steps instead: from `input` into `output`,
    // measuring `measured`, which is the input itself but in a preview, whose
    // short stretch stands for the whole track or selection.
    std::function<std::vector<Step>(const QString& input, const QString& output, const QString& measured)>
        steps = {};
    QString operation = {}; // its name in alerts, where no sox word names it
    // A line said under the track once the result is shown, or empty.
    std::function<QString(const PlanOutcome&)> notice = {};
};

// The steps of the effect from `input` into `output`: its sox run, or its own.
std::vector<Step> effectSteps(const EffectArguments& e, const QString& input, const QString& output,
                              const QString& measured = {});

// One sox run of the effect from `input` into `output`: global options, the
// two paths, the effect's words. Applying and previewing both use it.
QStringList soxArguments(const EffectArguments& e, const QString& input, const QString& output);

// How an effect is named to the user: "The echo effect".
QString effectOperationName(const EffectArguments& arguments);

// The whole track: sox from the current version into the result, which is
// adopted if sox wrote it and refused with the parameters alert otherwise.
EditPlan buildEffectPlan(const EditState& s, const ResultNames& names, const EffectArguments& arguments);

// The selection only: the track is cut into Before, Selection and After; sox
// processes the selection into "SelectionAfterAmplify" (the one name every
// effect uses); the three parts are joined into the result. When sox writes
// nothing, the plan ends with the alert and the three cut parts stay.
EditPlan buildEffectSelectionPlan(const EditState& s, const ResultNames& names,
                                  const EffectArguments& arguments);
