#pragma once

#include <QString>
#include <QStringList>

// Every version of a track is a whole file; undo and redo only choose which
// entry is current. The fields keep the names the document has always used.
struct VersionHistory {
    QStringList array_WAV_Files;
    quint64 u_array_WAV_Files_Position = 0;
    quint64 u_array_WAV_Files_Length = 0;

    // Drops the redo tail, then appends `path` as the newest and current version.
    void add(const QString& path);
    // Move one step back or forward, stopping at either end; the path of the
    // version then current.
    QString undo();
    QString redo();
    // Deletes the file of every entry (failures ignored) and empties the list.
    // The counters are left as they are: callers reset them.
    void clear();
    // An empty list with both counters at 0, as before a load.
    void restart();

    QString current() const;
};

// The URL a reloaded version is shown from: the shared silence track's own URL
// for "silence.wav", otherwise the file's name inside the work folder, whatever
// folder the entry names.
QString versionUrlText(const QString& path, const QString& workFolder, const QString& silenceUrl);
