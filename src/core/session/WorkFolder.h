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

// A WAV's sizes are 32-bit numbers, so a working WAV holds at most 4 GiB:
// 6 h 45 min 47 s of audio.
constexpr qint64 LargestWavBytes = 0xFFFFFFFFLL;
qint64 workingWavBytes(double seconds); // header included
// Why a track of `seconds` cannot be made, when it would pass that limit;
// `what` is what would be that long ("“talk.mp3” lasts", "The pasted track would last").
QString tooLongForAWavProblem(const QString& what, double seconds);
// The seconds a working WAV of `bytes` holds, from its size alone.
double workingWavSeconds(qint64 bytes);
// Why an operation that writes `bytes` into `folder` cannot run there: it
// needs them and 50 MB more free; empty when they are free.
QString roomForBytesProblem(const QString& folder, qint64 bytes);
// Why `source`, lasting `seconds`, cannot be opened into `folder`: its working
// WAV would pass the limit, or not fit with 50 MB to spare; empty when it can.
QString importRoomProblem(const QString& source, const QString& folder, qint64 seconds);

// How far a recording into a folder may grow. Its length is not known
// before it starts, so it is stopped where its WAV would pass the limit above
// or leave less than 50 MB free in the folder, rather than run into either.
struct RecordingLimit {
    qint64 frames = 0;
    bool byRoom = false; // the folder's room ends it before the WAV's limit does
};
// `freeBytes` negative: the room is not known, and only the WAV's limit counts.
RecordingLimit recordingLimit(qint64 freeBytes);
RecordingLimit recordingLimit(const QString& folder);
// The alert of a recording that reached its limit in `folder`.
QString recordingLimitMessage(const RecordingLimit& limit, const QString& folder);
// The alert of a recording the disk stopped (filled by something else meanwhile).
QString recordingDiskFullMessage(const QString& folder);

// One sox run that makes the shared 60-second silence track at `path`.
struct Plan;
Plan buildSilenceTrackPlan(const QString& path);
