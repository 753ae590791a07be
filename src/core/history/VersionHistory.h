#pragma once

#include "operations/Replay.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

// One version of a track: its file, what made it ("Cut", "Echo on selection",
// "Opened speech.mp3") and when.
struct Version {
    QString path;
    QString label;
    QDateTime made;
    Replay replay; // how the operation that made it could make it again from another file
};

// Every version of a track is a whole file; undo and redo only choose which
// entry is current. The list and its two counters change only through the
// operations below; the read accessors keep the names the document has
// always used for them.
class VersionHistory {
public:
    // Drops the redo tail, then appends `path` as the newest and current version.
    void add(const QString& path, const QString& label, const Replay& replay = {});
    // Move one step back or forward, stopping at either end; the path of the
    // version then current.
    QString undo();
    QString redo();
    // Makes version `index` current, held to the list's ends; the path of the
    // version then current. Nothing changes while the list is empty.
    QString moveTo(qsizetype index);
    // Deletes the file of every entry (failures ignored) and empties the list.
    // The counters are left as they are: the callers below reset them.
    void clear();
    // A load: the old versions' files deleted, and `path` alone as version 0.
    void restart(const QString& path, const QString& label);
    // The end of a recording: the old versions' files deleted and the take
    // alone in the list, with the position one past it. The next append then
    // lands at index 1, and undo and redo both go to the take.
    void takeOverRecording(const QString& path, const QString& label);
    // A history given back after the editor died: these versions, with the
    // position they had (one past the last only in a take-over state) and
    // the version kept outside the editor (-1: none).
    void restore(const QList<Version>& versions, qsizetype position, qsizetype kept = -1);

    // Closing a window loses its versions, so the editor asks first when
    // the version it shows is not one the user has outside it. Kept is the
    // file a load opened (the silence track too: it holds nothing to lose),
    // then whichever version was last exported; a take is kept nowhere until
    // it is exported. An undo back to the kept version has nothing new.
    void markKept();                               // the shown version was exported
    qsizetype keptIndex() const { return m_kept; } // -1: none
    bool hasUnkeptChanges() const;

    QStringList array_WAV_Files() const; // the versions' paths, oldest first
    quint64 u_array_WAV_Files_Position() const { return m_position; }
    quint64 u_array_WAV_Files_Length() const { return m_length; }
    const QList<Version>& versions() const { return m_versions; }
    // The current version's path; empty when the position names no entry
    // (before a load, and while a recording's take-over state lasts).
    QString current() const;

private:
    QList<Version> m_versions;
    quint64 m_position = 0;
    quint64 m_length = 0; // kept apart from the list's size: clearing leaves it
    qsizetype m_kept = -1;
};

// What a load names its version.
QString openedVersionLabel(const QString& path); // "Opened speech.mp3"
QString silentTrackVersionLabel();               // "Silent track"
QString recordedVersionLabel();                  // "Recorded"

// One row of the History window, oldest version first.
struct VersionRow {
    QString marker; // "▶" on the current row, empty on the others
    QString label;  // the version's label, or its file's name when it has none
    QString time;   // when the version was made, "hh:mm:ss" in local time
    bool current = false;
};
// The alerts of a version whose file is gone: removed outside the editor, it
// cannot be read by any operation, nor shown after an undo or a redo.
QString missingTrackMessage(const QString& path);
QString missingVersionMessage(const QString& path);

// The rows of a history. The current row is the one at the position; in a
// recording's take-over state, where the position is one past the take, it
// is the take, the version the window shows.
QList<VersionRow> versionRows(const VersionHistory& history);
// The index of the current row; -1 while the history is empty.
qsizetype currentVersionRow(const VersionHistory& history);
QString versionTimeText(const QDateTime& made);

// The URL a reloaded version is shown from: the shared silence track's own URL
// for "silence.wav", otherwise the file's name inside the work folder, whatever
// folder the entry names.
QString versionUrlText(const QString& path, const QString& workFolder, const QString& silenceUrl);
