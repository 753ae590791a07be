#include "VersionHistory.h"

#include "names/Names.h"
#include "plans/RemovedFiles.h"

#include <QFileInfo>
#include <algorithm>

void VersionHistory::add(const QString& path, const QString& label, const Replay& replay) {
    // Drops every version after the current one: an edit that follows an undo
    // ends the redo tail. The dropped files stay on disk until the next start.
    while (m_length > m_position + 1) {
        if (!m_versions.isEmpty()) // only a cleared list is shorter than its length
            m_versions.removeLast();
        --m_length;
    }
    const qsizetype at = std::min(qsizetype(m_length), m_versions.size());
    if (m_kept >= at) // the exported version went with the redo tail
        m_kept = -1;
    m_versions.insert(at, Version{path, label, QDateTime::currentDateTime(), replay});
    m_position = m_length;
    ++m_length;
}

QString VersionHistory::undo() {
    // Tested as a signed number: at the oldest version undo stays there.
    const qint64 position = qint64(m_position) - 1;
    m_position = position < 0 ? 0 : quint64(position);
    return current();
}

QString VersionHistory::redo() {
    // Compared as unsigned numbers, as the counters are.
    m_position = std::min(m_position + 1, m_length - 1);
    return current();
}

QString VersionHistory::moveTo(qsizetype index) {
    if (!m_versions.isEmpty())
        m_position = quint64(std::clamp(index, qsizetype(0), m_versions.size() - 1));
    return current();
}

void VersionHistory::clear() {
    for (const Version& version : std::as_const(m_versions))
        removedFiles::remove(version.path);
    m_versions.clear();
    m_kept = -1;
}

void VersionHistory::restart(const QString& path, const QString& label) {
    clear();
    m_length = 0;
    m_position = 0;
    add(path, label);
    m_kept = 0;
}

void VersionHistory::takeOverRecording(const QString& path, const QString& label) {
    clear();
    m_versions = {Version{path, label, QDateTime::currentDateTime(), {}}};
    m_length = 1;
    m_position = 1;
}

void VersionHistory::restore(const QList<Version>& versions, qsizetype position, qsizetype kept) {
    m_versions = versions;
    m_length = quint64(versions.size());
    m_position = quint64(std::clamp<qsizetype>(position, 0, versions.size()));
    m_kept = kept >= 0 && kept < versions.size() ? kept : -1;
}

void VersionHistory::markKept() {
    m_kept = currentVersionRow(*this);
}

bool VersionHistory::hasUnkeptChanges() const {
    return !m_versions.isEmpty() && currentVersionRow(*this) != m_kept;
}

QStringList VersionHistory::array_WAV_Files() const {
    QStringList paths;
    paths.reserve(m_versions.size());
    for (const Version& version : m_versions)
        paths << version.path;
    return paths;
}

QString VersionHistory::current() const {
    return m_position < quint64(m_versions.size()) ? m_versions.at(qsizetype(m_position)).path : QString();
}

QString openedVersionLabel(const QString& path) {
    return QStringLiteral("Opened %1").arg(QFileInfo(path).fileName());
}

QString silentTrackVersionLabel() {
    return QStringLiteral("Silent track");
}

QString recordedVersionLabel() {
    return QStringLiteral("Recorded");
}

qsizetype currentVersionRow(const VersionHistory& history) {
    const qsizetype count = history.versions().size();
    if (count == 0)
        return -1;
    return qsizetype(std::min(history.u_array_WAV_Files_Position(), quint64(count - 1)));
}

QString versionTimeText(const QDateTime& made) {
    return made.toLocalTime().toString(QStringLiteral("HH:mm:ss"));
}

QList<VersionRow> versionRows(const VersionHistory& history) {
    const qsizetype current = currentVersionRow(history);
    QList<VersionRow> rows;
    for (qsizetype i = 0; i < history.versions().size(); ++i) {
        const Version& version = history.versions().at(i);
        // A version that came without a name goes by its file's.
        const QString label = version.label.isEmpty() ? QFileInfo(version.path).fileName() : version.label;
        rows.append({i == current ? QStringLiteral("▶") : QString(), label, versionTimeText(version.made),
                     i == current});
    }
    return rows;
}

QString versionUrlText(const QString& path, const QString& workFolder, const QString& silenceUrl) {
    const QString name = QFileInfo(path).fileName();
    return name == QStringLiteral("silence.wav") ? silenceUrl : fileUrlText(workFolder, name);
}

QString missingTrackMessage(const QString& path) {
    return QStringLiteral(
               "The track's file “%1” is no longer there; it was removed outside Tanselo. Undo to an "
               "earlier version, or open the file again.\n\n%2")
        .arg(QFileInfo(path).fileName(), path);
}

QString missingVersionMessage(const QString& path) {
    return QStringLiteral(
               "The version “%1” is no longer there; it was removed outside Tanselo. The track stays "
               "at the version it shows.\n\n%2")
        .arg(QFileInfo(path).fileName(), path);
}
