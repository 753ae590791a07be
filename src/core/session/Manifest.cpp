#include "Manifest.h"

#include "names/Names.h"
#include "plans/AudioChecks.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <filesystem>
#include <optional>

namespace {
// A name the work folder can hold: no folder, nothing that leads out of it.
bool plainName(const QString& name) {
    return !name.isEmpty() && name != u"." && name != u".." && !name.contains(u'/') &&
           !name.contains(QChar(0));
}

QJsonObject windowObject(const ManifestWindow& window) {
    QJsonArray versions;
    for (const ManifestVersion& v : window.versions) // when made: milliseconds since 1970, UTC
        versions.append(
            QJsonObject{{"file", v.file}, {"label", v.label}, {"made", double(v.made.toMSecsSinceEpoch())}});
    return {{"source", window.source},
            {"colour", window.colour},
            {"position", double(window.position)},
            {"kept", double(window.kept)},
            {"versions", versions}};
}

std::optional<ManifestWindow> readWindow(const QJsonValue& value) {
    const QJsonObject object = value.toObject();
    ManifestWindow window;
    window.source = object.value("source").toString();
    window.colour = object.value("colour").toString();
    for (const QJsonValue& v : object.value("versions").toArray()) {
        const QJsonObject version = v.toObject();
        const QString file = version.value("file").toString();
        if (!plainName(file))
            return std::nullopt; // a history with a hole is not this window's
        window.versions.append({file, version.value("label").toString(),
                                QDateTime::fromMSecsSinceEpoch(qint64(version.value("made").toDouble()))});
    }
    const double position = object.value("position").toDouble(-1);
    if (window.versions.isEmpty() || !(position >= 0 && position <= double(window.versions.size())) ||
        position != double(qsizetype(position)))
        return std::nullopt;
    window.position = qsizetype(position);
    const double kept = object.value("kept").toDouble(-1);
    if (kept >= 0 && kept < double(window.versions.size()) && kept == double(qsizetype(kept)))
        window.kept = qsizetype(kept);
    return window;
}
} // namespace

QString manifestPath(const QString& workFolder) {
    return pathInFolder(workFolder, QStringLiteral(".windows.json"));
}

QByteArray manifestText(const Manifest& manifest) {
    QJsonArray windows;
    for (const ManifestWindow& window : manifest.windows)
        windows.append(windowObject(window));
    return QJsonDocument(QJsonObject{{"windows", windows}, {"clipboard", manifest.clipboard}})
        .toJson(QJsonDocument::Compact);
}

Manifest readManifest(const QByteArray& text) {
    const QJsonObject object = QJsonDocument::fromJson(text).object();
    Manifest manifest;
    for (const QJsonValue& value : object.value("windows").toArray())
        if (std::optional<ManifestWindow> window = readWindow(value))
            manifest.windows.append(*window);
    if (const QString clipboard = object.value("clipboard").toString(); plainName(clipboard))
        manifest.clipboard = clipboard;
    return manifest;
}

bool writeManifest(const QString& workFolder, const Manifest& manifest) {
    // Whole or not at all: a new file, renamed over the old one. It is not
    // synced to the disk first, as QSaveFile would: a sync after every edit
    // cost two per cent of the edits' time, and a killed editor loses nothing
    // the kernel already holds (ext4 also writes a file renamed over another
    // before the rename, so a power cut leaves the old manifest or the new).
    const QString path = manifestPath(workFolder), fresh = path + QStringLiteral(".new");
    const QByteArray text = manifestText(manifest);
    QFile file(fresh);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(text) != text.size() ||
        !file.flush()) {
        file.remove();
        return false;
    }
    file.close();
    std::error_code failed;
    std::filesystem::rename(QFile::encodeName(fresh).toStdString(), QFile::encodeName(path).toStdString(),
                            failed);
    if (failed)
        QFile::remove(fresh);
    return !failed;
}

QStringList Recovery::files() const {
    QStringList all;
    for (const ManifestWindow& window : windows)
        for (const ManifestVersion& v : window.versions)
            all.append(v.file);
    if (!clipboard.isEmpty())
        all.append(clipboard);
    all.removeDuplicates();
    return all;
}

Recovery planRecovery(const Manifest& manifest, const std::function<bool(const QString& file)>& usable) {
    Recovery recovery;
    QHash<QString, bool> known; // a file may stand in several places
    const auto check = [&](const QString& file) {
        auto it = known.find(file);
        if (it == known.end())
            it = known.insert(file, usable(file));
        return *it;
    };
    for (const ManifestWindow& window : manifest.windows) {
        ManifestWindow kept = window;
        kept.versions.clear();
        const bool onePast = window.position == window.versions.size();
        qsizetype position = -1, firstAfter = -1;
        kept.kept = -1; // unless the kept version itself survives
        for (qsizetype i = 0; i < window.versions.size(); ++i) {
            if (!check(window.versions[i].file)) {
                ++recovery.leftOut;
                continue;
            }
            if (i == window.kept)
                kept.kept = kept.versions.size();
            if (i <= window.position)
                position = kept.versions.size();
            else if (firstAfter < 0)
                firstAfter = kept.versions.size();
            kept.versions.append(window.versions[i]);
        }
        if (kept.versions.isEmpty())
            continue;
        kept.position = onePast ? kept.versions.size() : position >= 0 ? position : firstAfter;
        recovery.windows.append(kept);
    }
    if (!manifest.clipboard.isEmpty() && check(manifest.clipboard))
        recovery.clipboard = manifest.clipboard;
    return recovery;
}

QString recoveryQuestion(const Recovery& recovery) {
    const qsizetype n = recovery.windows.size();
    return n == 1 ? QStringLiteral("Tanselo quit unexpectedly. Reopen the track that was open?")
                  : QStringLiteral("Tanselo quit unexpectedly. Reopen the %1 tracks that were open?").arg(n);
}

QString recoveryDetails(const Recovery& recovery) {
    if (recovery.leftOut == 0)
        return {};
    return recovery.leftOut == 1 ? QStringLiteral("One version is missing or unreadable and is left out.")
                                 : QStringLiteral("%1 versions are missing or unreadable and are left out.")
                                       .arg(recovery.leftOut);
}

QString recoveryFolderPath(const QString& workFolder) {
    const QFileInfo folder(QDir::cleanPath(workFolder));
    return folder.dir().filePath(u'.' + folder.fileName() + QStringLiteral("-recovery"));
}

std::optional<Recovery> setAsideForRecovery(const QString& workFolder) {
    QFile file(manifestPath(workFolder));
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const Manifest manifest = readManifest(file.read(1 << 24));
    const Recovery readable = planRecovery(
        manifest, [&](const QString& name) { return isReadableAudio(pathInFolder(workFolder, name)); });
    if (readable.windows.isEmpty())
        return std::nullopt;
    const QString aside = recoveryFolderPath(workFolder);
    QDir(aside).removeRecursively(); // what an earlier start left there is older still
    if (!QDir().mkpath(aside))
        return std::nullopt;
    const QStringList moved = readable.files();
    for (const QString& name : moved)
        QFile::rename(pathInFolder(workFolder, name), pathInFolder(aside, name));
    // What is given back is what did get there.
    const Recovery recovery = planRecovery(manifest, [&](const QString& name) {
        return moved.contains(name) && QFileInfo::exists(pathInFolder(aside, name));
    });
    if (recovery.windows.isEmpty()) {
        discardRecovery(workFolder);
        return std::nullopt;
    }
    writeManifest(aside, {recovery.windows, recovery.clipboard});
    return recovery;
}

QString recoveredName(const QString& file) {
    const QString prefix = QStringLiteral("recovered-");
    return file.startsWith(prefix) ? file : prefix + file; // a second recovery keeps the name
}

bool bringBackRecovery(const QString& workFolder, Recovery& recovery) {
    const QString aside = recoveryFolderPath(workFolder);
    bool all = true;
    QHash<QString, QString> renamed;
    for (const QString& name : recovery.files()) {
        if (QFileInfo::exists(pathInFolder(workFolder, name)))
            continue; // made by this start: that file is the one
        const QString back = recoveredName(name);
        if (QFile::rename(pathInFolder(aside, name), pathInFolder(workFolder, back)))
            renamed.insert(name, back);
        else
            all = false;
    }
    for (ManifestWindow& window : recovery.windows)
        for (ManifestVersion& version : window.versions)
            version.file = renamed.value(version.file, version.file);
    recovery.clipboard = renamed.value(recovery.clipboard, recovery.clipboard);
    if (all)
        QDir(aside).removeRecursively();
    return all;
}

void discardRecovery(const QString& workFolder) {
    QDir(recoveryFolderPath(workFolder)).removeRecursively();
}
