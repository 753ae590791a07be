#pragma once

#include "edit/EditPlans.h"

class PlanRunner;
class QPoint;
class QWidget;
struct PlanOutcome;

// What a window's action objects ask of the window they serve: where their
// dialogs and alerts go, and the checks and the account of failure every
// plan they run goes through.
class TrackWindow {
public:
    virtual QWidget* windowWidget() = 0;      // the parent of dialogs and alerts
    virtual QPoint popupPosition() const = 0; // where a pop-up menu opens
    // Whether the window records: the take is then to replace the track.
    virtual bool recording() const = 0;
    // Whether the current version's file is there; says so when it has gone.
    virtual bool trackFileIsThere() = 0;
    // Before a plan that writes audio: false, with the alert shown, when the
    // work folder takes no file or lacks the room; false while recording.
    virtual bool readyToWrite() = 0;
    // Shows why a plan failed, unless the user cancelled it; true when it failed.
    virtual bool failed(const PlanOutcome& outcome) = 0;
    // What an edit reads: the files and the markers as they stand now.
    virtual EditState editState() const = 0;
    // The names of an operation begun now, clear of every other window's files.
    virtual ResultNames resultNames(Writes writes = Writes::Version) const = 0;
    // Runs an edit after the checks above; its result becomes the current
    // version, its clip the copied audio.
    virtual void runEdit(const EditPlan& edit) = 0;
    // The session's runner, for runs that make no version (a preview).
    virtual PlanRunner& runner() = 0;
    // Tells this window's files from another's made in the same second.
    virtual quint64 windowId() const = 0;

protected:
    ~TrackWindow() = default;
};
