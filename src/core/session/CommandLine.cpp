#include "CommandLine.h"

#include <QUrl>

QStringList givenFiles(const QStringList& arguments, const QString& workingFolder) {
    QStringList files;
    for (const QString& argument : arguments) {
        const QString path =
            argument.startsWith(QLatin1String("file://")) ? QUrl(argument).toLocalFile() : argument;
        if (!path.isEmpty())
            files << QDir::cleanPath(QDir(workingFolder).absoluteFilePath(path));
    }
    return files;
}

QStringList droppedFiles(const QList<QUrl>& urls) {
    QStringList files;
    for (const QUrl& url : urls)
        if (url.isLocalFile() && !url.toLocalFile().isEmpty())
            files << QDir::cleanPath(url.toLocalFile());
    return files;
}
