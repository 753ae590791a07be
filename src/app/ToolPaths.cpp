#include "ToolPaths.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace {
bool isExecutableFile(const QString& path) {
    const QFileInfo info(path);
    return info.isFile() && info.isExecutable();
}
} // namespace

QString locateTool(const QString& name, const QString& applicationDir) {
    const QDir dir(applicationDir);
    const QStringList candidates = {dir.filePath(name), dir.filePath("../libexec/tanselo/" + name)};
    for (const QString& candidate : candidates) {
        if (isExecutableFile(candidate))
            return QFileInfo(candidate).absoluteFilePath();
    }
    return QStandardPaths::findExecutable(name);
}

ToolPaths locateTools(const QString& applicationDir) {
    return {locateTool("sox", applicationDir), locateTool("ffmpeg", applicationDir)};
}

QString missingToolMessage(const QString& toolName) {
    return QString("Tanselo needs the program \"%1\", which was not found beside the application or on "
                   "the PATH.\n\nInstall the Debian package \"%1\" (sudo apt-get install %1) and start "
                   "Tanselo again.")
        .arg(toolName);
}
