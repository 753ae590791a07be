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
    return {locateTool("sox", applicationDir), locateTool("ffmpeg", applicationDir),
            locateToolSignals(applicationDir)};
}

QString locateToolSignals(const QString& applicationDir) {
    const QString name = QStringLiteral("libtanselo-tool-signals.so");
    const QDir dir(applicationDir);
    for (const QString& candidate : {dir.filePath(name), dir.filePath("../libexec/tanselo/" + name),
                                     QStringLiteral(TANSELO_BUILD_TOOL_SIGNALS)})
        if (QFileInfo(candidate).isFile())
            return QFileInfo(candidate).absoluteFilePath();
    return {};
}

QString missingToolMessage(const QString& toolName) {
    return QString("Tanselo needs the program \"%1\", which was not found beside the application or on "
                   "the PATH.\n\nInstall the Debian package \"%1\" (sudo apt-get install %1) and start "
                   "Tanselo again.")
        .arg(toolName);
}
