#pragma once

#include <QDateTime>
#include <QString>

// Result files are named by the local date and time, to the second, plus an
// optional suffix: "2024-03-05-14-07-59Before.wav". Every name of one operation
// comes from one ResultNames, so they all share one stamp.
class ResultNames {
public:
    ResultNames(const QString& workFolder, const QDateTime& when = QDateTime::currentDateTime());
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
ResultNames editNames(const QString& workFolder, const QString& track,
                      const QDateTime& now = QDateTime::currentDateTime());

// "%@/%@": a file name inside a folder.
QString pathInFolder(const QString& folder, const QString& name);
// "file://%@/%@": the same as a URL text, the path not percent-escaped.
QString fileUrlText(const QString& folder, const QString& name);
// The copy of a WAV that is padded with leading silence before a mix: beside
// it, its name without the extension followed by "_PAD.wav".
QString paddedPath(const QString& wav);
