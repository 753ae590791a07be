#include "WorkFolder.h"

#include "Plan.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

QString workFolderPath() {
    const QStringList documents = QStandardPaths::standardLocations(QStandardPaths::DocumentsLocation);
    const QString base =
        documents.isEmpty() ? QDir::homePath() + QStringLiteral("/Documents") : documents.first();
    return QDir::cleanPath(base + QStringLiteral("/Tanselo/"));
}

bool ensureWorkFolder(const QString& path) {
    // Only existence counts: a plain file of that name passes as well.
    return QFileInfo::exists(path) || QDir().mkpath(path);
}

QStringList removeAllContentInFolder(const QString& path) {
    QStringList failures;
    const QDir folder(path);
    const auto entries =
        folder.entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QFileInfo& entry : entries) {
        const bool removed = entry.isDir() && !entry.isSymLink() ? QDir(entry.filePath()).removeRecursively()
                                                                 : QFile::remove(entry.filePath());
        if (!removed)
            failures.append(QStringLiteral("could not delete %1").arg(entry.filePath()));
    }
    return failures;
}

Plan buildSilenceTrackPlan(const QString& path) {
    // 60 seconds of silence from the null input, 44100 Hz, 2 channels.
    return {{step::Run{Tool::Sox, {"-n", "-r", "44100", "-c", "2", path, "trim", "0.0", "60.0"}}}};
}
