#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <functional>

// The time every result name is made from: the local date and time, unless a
// test has fixed it (to make names of one second meet on purpose).
QDateTime namingNow();
void setNamingClock(std::function<QDateTime()> clock); // an empty function: the real clock again

// Result files are named by the local date and time, to the second, plus an
// optional suffix: "2024-03-05-14-07-59Before.wav". Every name of one operation
// comes from one ResultNames, so they all share one stamp.
class ResultNames {
public:
    ResultNames(const QString& workFolder, const QDateTime& when = namingNow());
    // Names of a fixed stamp, for files that live in a folder of their own.
    ResultNames(const QString& workFolder, const QString& stamp);

    const QString& stamp() const { return m_stamp; }
    QString name(const QString& suffix = {}) const; // stamp + suffix + ".wav"
    QString path(const QString& suffix = {}) const; // work folder + "/" + name

private:
    QString m_folder;
    QString m_stamp;
};

// The names of an edit or effect of `track`, begun at `now`: those of `now`,
// or of the next second when the track is itself one of this second's
// working parts. A paste at the start or the end names its result like a
// before-part ("…Before.wav"), so an edit of the same second would otherwise
// write its own before-part over the very track it is cutting. A track that is
// this second's plain name is not moved: that result is replaced, as always.
ResultNames editNames(const QString& workFolder, const QString& track, const QDateTime& now = namingNow());

// What an operation's names must keep clear of, besides its own track.
struct NamesInUse {
    QStringList
        others;      // other windows' versions, imports and takes; files queued plans name; the silence track
    QStringList own; // this window's versions
    QString clipboard; // the copied audio's file
};
// What the operation's plain name ("…-59.wav") becomes.
enum class Writes { Version, Clip, VersionAndClip };

// The names of an operation begun at `now`, as above, and moved on a second
// at a time until no name of that second belongs to anything else. Results
// are named by the second, so in one window two results of one second share
// a name and the second replaces the first, as it always has; so do two
// clips of one second. But a version, a working part or a clip never takes a
// name that another window's history, an operation still queued or the
// copied audio uses: that would put one track's audio into another's file.
// (After a cut the copied audio is the window's own version, and is replaced
// as one.)
ResultNames editNames(const QString& workFolder, const QString& track, const NamesInUse& inUse, Writes writes,
                      const QDateTime& now = namingNow());

// "%@/%@": a file name inside a folder.
QString pathInFolder(const QString& folder, const QString& name);
// "file://%@/%@": the same as a URL text, the path not percent-escaped.
QString fileUrlText(const QString& folder, const QString& name);
// "file://%@": a path as a URL text, not percent-escaped.
QString fileUrlText(const QString& path);
// The path inside such a URL text (any other text is taken as a path). The
// text is not escaped, so a "%" or "#" in a name is part of the path; a real
// URL (from a desktop or the command line) goes through QUrl instead.
QString pathOfFileUrlText(const QString& url);
// The copy of a WAV that is padded with leading silence before a mix: beside
// it, its name without the extension followed by "_PAD.wav".
QString paddedPath(const QString& wav);
