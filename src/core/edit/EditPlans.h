#pragma once

#include "names/Names.h"
#include "operations/Replay.h"
#include "plans/Plan.h"
#include "timeline/TimeStrings.h"

// What an edit reads of its document and of the application.
struct EditState {
    QString workFolder;
    QString track;        // the current working WAV
    QString clip;         // the clipboard file
    SegmentVariables seg; // the time strings, fresh when the edit needs them
    float f_Audio_Length = 0;
    float f_Selection_Start = 0;
    float f_Selection_End = 0;
};

// An edit as the runner executes it and the document then adopts it.
struct EditPlan {
    Plan plan;                       // the tool runs, ending with the result's duration probe
    QString result;                  // the new current version; empty when the track stays
    QString clipboard;               // the new clipboard file; empty when it stays
    QStringList deleteBeforeShowing; // removed once the title is set, before the result is shown
    QStringList deleteAfterAdopting; // removed once the overlay has the new length
    QString label;                   // what the new version is called in the history: "Cut", "Paste at end"
    Replay replay;                   // how it could be done to another file, or why it cannot
    QString clippingName;            // an effect's title, said with the samples its run clipped
    std::function<QString(const PlanOutcome&)> notice = {}; // a line said under the result, or empty
};

// The clipboard's old file is only deleted when `deleteOldClip` says so: the
// document leaves it alone while a version of an open track is that file.
EditPlan buildCopyPlan(const EditState& s, const ResultNames& names, bool deleteOldClip);
EditPlan buildCutPlan(const EditState& s, const ResultNames& names, bool deleteOldClip);
EditPlan buildDeletePlan(const EditState& s, const ResultNames& names);
EditPlan buildPastePlan(const EditState& s, const ResultNames& names, PastePlace place);
// Mixing takes PastePlace::Start, CurrentPosition, StartOfSelection or EndOfSelection.
EditPlan buildPasteMixPlan(const EditState& s, const ResultNames& names, PastePlace place);
EditPlan buildSilenceInsertPlan(const EditState& s, const ResultNames& names, SilencePlace place,
                                quint64 milliseconds);
EditPlan buildSilenceSelectionPlan(const EditState& s, const ResultNames& names);
// Mode 1 trims the start, 2 the start and then reverses the track, 3 both ends.
EditPlan buildSilenceTrimPlan(const EditState& s, const ResultNames& names, quint64 mode,
                              quint64 milliseconds);

// The history's label of a version made over the whole track ("Echo") or
// over the selection only ("Echo on selection").
QString versionLabel(const QString& title, bool selectionOnly);

// The alert of an edit whose tool wrote no result.
QString parametersNotAcceptedMessage();
