#pragma once

#include "effects/EffectPlans.h"

// Preview: an effect's dialog lets the user hear its current values on a
// stretch of the track before committing to them, where applying, listening,
// undoing and trying again made a version of every attempt. The stretch goes
// through the very sox arguments the effect applies, into files of the
// window's own outside the history; nothing is adopted.

// A preview is at most this long; before a selection this much of the track
// leads into it, untouched, so that the change is heard in its context.
constexpr double PreviewSeconds = 10.0;
constexpr double PreviewLeadSeconds = 1.0;

// Where a preview's stretch lies in the track: time strings as ffmpeg cuts
// by them (the lead-in empty where there is none).
struct PreviewStretch {
    QString leadStart, leadDuration;
    QString start, duration;
};
// For a selection action: the selection's first 10 s at most, from the very
// time string the effect cuts at, with the second before it; for a
// whole-track action: 10 s from the play position.
PreviewStretch previewStretch(const EditState& s, bool selection);

// The files of one window's preview, hidden in the work folder and named
// after the window, so that two windows' previews never meet. A preview
// made while another plays goes to the other of two slots: the one heard is
// never rewritten under the player.
struct PreviewFiles {
    QString lead, part, processed, preview;
    QString noise, profile; // noise reduction's sample of the noise and what sox learnt of it
    QString whole;          // the whole selection, where the effect measures it
    QStringList all() const { return {lead, part, processed, preview, noise, profile, whole}; }
    // Everything but the preview, which is gone only when it is no longer heard.
    QStringList making() const { return {lead, part, processed, noise, profile, whole}; }
};
PreviewFiles previewFiles(const QString& workFolder, quint64 windowId, int slot = 0);

// Cuts the lead-in and the stretch out of the track (with sox, which cuts
// the same samples as the effect's own ffmpeg cuts in far less time), runs the effect over
// the stretch and joins the lead-in before it into `files.preview`, which
// the dialog then plays; the other files go when it succeeds. sox refusing the values ends the plan with the
// effect's alert, as applying it would.
Plan buildPreviewPlan(const EditState& s, const PreviewFiles& files, const EffectArguments& arguments,
                      bool selection);

// Noise reduction heard before it is applied: the noise is learnt from the
// selection as applying it does, and removed from ten seconds from the play
// position at the level given.
Plan buildNoiseReductionPreviewPlan(const EditState& s, const PreviewFiles& files, float level);

// Why a preview was not made, for its dialog: where sox refused the values,
// its own words ("sox refused the values: decay must be positive!"); else the
// plan's alert.
QString previewFailure(const PlanOutcome& outcome);
