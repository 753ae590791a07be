#pragma once

#include <QString>
#include <QStringList>

// The work folder holds every file the editor makes: the user's Documents
// folder plus "Tanselo".
QString workFolderPath();

// Creates the folder and its missing parents when nothing is at the path.
// Returns why it cannot serve as the work folder, in the user's words, or an
// empty text: "/home/a/Documents/Tanselo is a file, not a folder." A plain
// file of that name is refused here rather than left for every import to fail.
QString prepareWorkFolder(const QString& path);

// The lock a running editor holds inside its work folder; emptying the folder
// leaves it alone.
QString workFolderLockName();

// Deletes everything inside the folder, which itself stays, except entries
// named in `keep`. Returns one message per entry that could not be deleted.
QStringList removeAllContentInFolder(const QString& path, const QStringList& keep = {});

// Whether the work folder has room for an operation on a track of `trackBytes`:
// it must take a new file and have three times the track plus 50 MB free.
// Returns the alert's text when it has not, else an empty text.
qint64 requiredFreeBytes(qint64 trackBytes);
QString roomToWorkProblem(const QString& folder, qint64 trackBytes);
// The same judgement with the free space given, for the message alone.
QString notEnoughRoomMessage(const QString& folder, qint64 trackBytes, qint64 freeBytes);

// One sox run that makes the shared 60-second silence track at `path`.
struct Plan;
Plan buildSilenceTrackPlan(const QString& path);
