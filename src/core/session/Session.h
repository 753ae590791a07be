#pragma once

#include "names/Names.h"
#include "plans/PlanRunner.h"
#include "tools/ToolPaths.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <memory>

// What one open track keeps in the work folder, as the session asks it.
class TrackFiles {
public:
    virtual QString shownFile() const = 0;        // the working WAV on screen
    virtual QStringList versionFiles() const = 0; // every version of the history
    // The versions, an import under way and the take being recorded.
    virtual QStringList namesInUse() const = 0;

protected:
    ~TrackFiles() = default;
};

// What every window of one run shares: the work folder, the tools and the one
// runner of their plans, the copied audio, the silence track, the folder last
// opened from, and the files each open track holds there. Windows are given
// the session; it knows them only as the files they register.
class Session {
public:
    Session();
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // The runner exists from here on; the tool paths are kept beside it.
    void startRunner(const ToolPaths& tools);
    PlanRunner& runner() const { return *m_runner; }

    // An open track's files count from its registration to its removal.
    void addTrack(const TrackFiles* track);
    void removeTrack(const TrackFiles* track);

    // The work files the open tracks hold or are about to make: every version
    // of every track, imports still under way and recordings' names, the files
    // of queued plans and the copied audio's name. Imports, takes and joins
    // are named past all of them, so that two windows opening files in one
    // second never share a working WAV.
    QStringList namesInUse() const;
    // What the names of an operation of `asking` must keep clear of: the other
    // tracks' names, the files of queued plans and the silence track; its own
    // versions; the copied audio.
    NamesInUse namesAround(const TrackFiles* asking) const;
    // The work files open tracks keep without showing them (earlier and later
    // versions, imports and takes under way), and the copied audio: a split
    // must not write its pieces over any of them.
    QStringList namesKeptUnshown() const;
    // The files an export must never replace: every version of every open
    // track, the clipboard and the silence track.
    QStringList protectedFiles() const;
    // Copy and cut delete the old clipboard file first, unless a version of an
    // open track is that file (as it is after a cut), or a queued plan names
    // it: then it stays.
    bool mayDeleteClipboardFile() const;

    QString s_Output_Folder; // the work folder
    QString sSoxPath;
    QString sFFmpegPath;
    QString sSilenceWavPath;
    QString sSilenceWavURL;
    QString s_Copied_WAV_File; // the clipboard
    // The folder the last file was opened from in this run; empty before.
    QString lastOpenFolder;

private:
    QStringList filesOfQueuedPlans() const;

    std::unique_ptr<PlanRunner> m_runner;
    QList<const TrackFiles*> m_tracks;
};
