#pragma once

#include "Recipe.h"
#include "edit/EditPlans.h"

// The plan the editor builds for one step of a recipe over the track `s.track`:
// the very plan of the menu command that made the step's version.
EditPlan buildStepPlan(const RecipeStep& step, const EditState& s, const ResultNames& names);

// A recipe done to one file, as one plan: the file imported as File ▸ Open
// imports it, each step by its editor plan, the result exported as the export
// dialog exports it. Its work files go into `folder`, which holds nothing
// else; the export goes to `output`, which must not exist. The probes of the
// durations the editor draws with are left out: nothing is drawn.
struct RecipePlan {
    Plan plan;
    QStringList stages;   // "Opening a.flac", each step's label, "Exporting a.mp3"
    QList<int> runStages; // the stage of each tool run, in order
    QString problem;      // why the recipe cannot be done: the export setting passes nothing
};
// The stage of the export names `shownOutput`, when given, for `output`.
RecipePlan buildRecipePlan(const Recipe& recipe, const QString& input, const QString& folder,
                           const QString& output, const QString& shownOutput = {});

// A POSIX shell script that makes the same tool runs on the file named by its
// first argument, writing the export beside it (or to its second argument),
// so that the recipe runs where the editor is not installed.
QString recipeScript(const Recipe& recipe);

// One word for the shell: the text in single quotes, with its own quotes escaped.
QString shellQuoted(const QString& text);
