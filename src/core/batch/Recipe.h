#pragma once

#include "document/ExportPlans.h"
#include "operations/Replay.h"

#include <QByteArray>
#include <QList>
#include <functional>
#include <optional>

class VersionHistory;

// An operation of the history that a recipe leaves out, and why.
struct SkippedStep {
    QString label;
    QString reason;
    bool operator==(const SkippedStep&) const = default;
};

// What was done to a track, to be done to other files: the whole-track
// operations that made its current version, in order, and how to export the
// result. Nothing has to be written by hand: every version already knows the
// operation that made it.
struct Recipe {
    QList<RecipeStep> steps;
    QList<SkippedStep> skipped;
    exporting::Choice exportChoice;
    bool operator==(const Recipe&) const = default;
};

// The recipe of a history's current version: every version after the first
// (the opened file, the silence track or the recording) up to the current one.
Recipe recipeOf(const VersionHistory& history, const exporting::Choice& exportChoice = {});

// The extension of the recipe's export format: "wav", "m4a" or "mp3".
QString exportExtension(const Recipe& recipe);

// A recipe as a small JSON document, and back. Reading checks every step
// against the effect catalogue and the export lists; a file that does not hold
// a usable recipe gives the reason in `error`.
QByteArray recipeJson(const Recipe& recipe);
std::optional<Recipe> recipeFromJson(const QByteArray& json, QString* error);

// Why a recipe or a script may not be saved at `path`, in words; empty when
// it may. The work folder holds every track's versions, the copied audio and
// the silence track, and is emptied at every start: a file saved there could
// replace one of them, and would itself be gone the next time.
QString recipeFileProblem(const QString& path, const QString& workFolder);

// Where each input's export goes: its base name with `extension` inside
// `folder`, or "name (2).ext", "name (3).ext", … when the name is taken by an
// existing file (an input among them), or by an earlier input of the list.
QStringList outputPaths(const QStringList& inputs, const QString& folder, const QString& extension,
                        const std::function<bool(const QString&)>& exists);

// Where a result is written before it takes its name: a hidden name of this
// process's own beside `wanted`, with its extension (the encoder follows it);
// `index` tells apart the files of this process that run at once.
QString temporaryOutputPath(const QString& wanted, int index);

// Gives the finished file at `temporary` the name `wanted`, or the next of
// "name (2).ext", "name (3).ext", … that is free at that moment, and returns
// the name it took. A hard link never replaces a file, so two runs that chose
// one name (two batches, or a batch and a script, writing into one folder)
// never overwrite each other, whichever finishes first. Empty, with the
// reason in `error`, when the folder takes no name at all.
QString claimOutputName(const QString& temporary, const QString& wanted, QString* error);
