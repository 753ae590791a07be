#include "RemovedFiles.h"

#include <QFile>
#include <QMutex>
#include <QSet>

namespace {
// Plans delete on the runner's thread, documents on the interface's.
QMutex mutex;
QSet<QString>& removed() {
    static QSet<QString> paths;
    return paths;
}
} // namespace

namespace removedFiles {
void remove(const QString& path) {
    QFile::remove(path);
    note(path);
}

void note(const QString& path) {
    const QMutexLocker lock(&mutex);
    removed().insert(path);
}

bool wasRemoved(const QString& path) {
    const QMutexLocker lock(&mutex);
    return removed().contains(path);
}
} // namespace removedFiles
