#include "VersionHistory.h"

#include "app/Names.h"
#include "app/RemovedFiles.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>

void VersionHistory::add(const QString& path) {
    while (u_array_WAV_Files_Length > u_array_WAV_Files_Position + 1) {
        array_WAV_Files.removeLast();
        --u_array_WAV_Files_Length;
    }
    array_WAV_Files.insert(qsizetype(u_array_WAV_Files_Length), path);
    u_array_WAV_Files_Position = u_array_WAV_Files_Length;
    ++u_array_WAV_Files_Length;
}

QString VersionHistory::undo() {
    // Tested as a signed number: at the oldest version undo stays there.
    const qint64 position = qint64(u_array_WAV_Files_Position) - 1;
    u_array_WAV_Files_Position = position < 0 ? 0 : quint64(position);
    return current();
}

QString VersionHistory::redo() {
    // Compared as unsigned numbers, as the counters are.
    u_array_WAV_Files_Position = std::min(u_array_WAV_Files_Position + 1, u_array_WAV_Files_Length - 1);
    return current();
}

void VersionHistory::clear() {
    for (const QString& path : std::as_const(array_WAV_Files))
        removedFiles::remove(path);
    array_WAV_Files.clear();
}

void VersionHistory::restart() {
    clear();
    u_array_WAV_Files_Length = 0;
    u_array_WAV_Files_Position = 0;
}

QString VersionHistory::current() const {
    return u_array_WAV_Files_Position < quint64(array_WAV_Files.size())
               ? array_WAV_Files.at(qsizetype(u_array_WAV_Files_Position))
               : QString();
}

QString versionUrlText(const QString& path, const QString& workFolder, const QString& silenceUrl) {
    const QString name = QFileInfo(path).fileName();
    return name == QStringLiteral("silence.wav") ? silenceUrl : fileUrlText(workFolder, name);
}
