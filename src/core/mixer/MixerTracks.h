#pragma once

#include "plans/Plan.h"

#include <QList>
#include <QString>

// One row of the track mixer: an open document's track on the joint time line.
struct Object_Audio_Track {
    QString s_Name;                  // the last path component of the working WAV
    QString s_Path;                  // the working WAV; the padded copy once a mix has padded it
    quint64 f_Duration = 0;          // whole seconds
    quint64 f_Position_To_Start = 0; // whole seconds on the joint time line
    QString s_Source;                // the file the track came from, as its window's status bar names it
    bool operator==(const Object_Audio_Track&) const = default;
};
using AudioTracks = QList<Object_Audio_Track>;

// What the mixer takes from one open document.
struct OpenTrack {
    QString wavPath;
    qint64 seconds = 0;
    QString source; // the file the track came from ("interview.mp3"), as the status bar names it
};

// The rows of the open documents in their order, each starting where the one
// before it ends (the running sum is kept in 32 signed bits).
AudioTracks tracksOfDocuments(const QList<OpenTrack>& documents);
// A row's tooltip: its working file, and the file it came from when that
// is another ("2026-11-26-10-00-00.wav, from interview.mp3").
QString mixerTrackTip(const Object_Audio_Track& track);
// Every row starts again where the one before it ends.
void restackTracks(AudioTracks& tracks);

// The row changes; each returns whether it changed anything. A row index that
// names no row (−1 for none selected) changes nothing.
bool moveTrackUp(AudioTracks& tracks, qint64 row);
// Guarded by the row count, not the last index: on the last row there is no
// row below to exchange with, and nothing changes.
bool moveTrackDown(AudioTracks& tracks, qint64 row);
enum class RemoveOutcome { Removed, TooFew, NoRow };
// Removes the row and restacks, as long as more than two remain before it.
RemoveOutcome removeTrack(AudioTracks& tracks, qint64 row);
// Gives the row its own start; if then no row starts at 0, row 0 does.
bool setTrackStart(AudioTracks& tracks, qint64 row, quint64 start);

// Seconds as "%02d:%02d:%02d" (hours, minutes, seconds, each truncated).
QString Get_Time_String_From_Seconds(float seconds);

// The join: every row that does not start at 0 is padded with that many
// seconds of silence into its padded copy (which the row then names), from the
// smallest start to the largest, and sox mixes all of them into `result`.
struct MixPlan {
    Plan plan;
    AudioTracks tracksAfter; // the rows as the mix leaves them: padded rows name their copies
    QStringList inputs;      // what sox mixes, in order
};
MixPlan buildMixPlan(const AudioTracks& tracks, const QString& result);
