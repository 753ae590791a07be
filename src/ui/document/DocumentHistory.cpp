// The window's versions: adding one, undo, redo and moving to any version,
// each reloading the file it makes current.

#include "Document.h"

#include "document/ImportPlans.h"
#include "document/WaveformPlot.h"
#include "widgets/Alerts.h"

#include <QFileInfo>
#include <QLabel>

void Document::Add_WAV_File_To_Undo_Redo_Array(const QString& label, const Replay& replay) {
    m_track.history().add(m_track.s_WAV_File_Path, label, replay);
    emit historyChanged();
}

ManifestWindow Document::manifestEntry() const {
    ManifestWindow entry{labelSource->text(),
                         audioPlot->color().name(),
                         {},
                         qsizetype(history().u_array_WAV_Files_Position()),
                         history().keptIndex()};
    for (const Version& v : history().versions())
        entry.versions.append({QFileInfo(v.path).fileName(), v.label, v.made});
    return entry;
}

void Document::Clear_Array_Of_WAV_Files() {
    m_track.history().clear();
    emit historyChanged();
}

bool Document::moveHistory(const std::function<void(VersionHistory&)>& move) {
    if (m_track.history().versions().isEmpty()) // nothing loaded yet
        return false;
    VersionHistory moved = m_track.history();
    move(moved);
    // A version whose file is gone would show as an empty track of no length.
    if (const QString target = moved.current(); !target.isEmpty() && !QFileInfo::exists(target)) {
        showErrorAlert(this, missingVersionMessage(target));
        return false;
    }
    m_track.history() = moved;
    emit historyChanged();
    reloadCurrentVersion();
    return true;
}

void Document::Operation_Undo() {
    moveHistory([](VersionHistory& history) { history.undo(); });
}

void Document::Operation_Redo() {
    moveHistory([](VersionHistory& history) { history.redo(); });
}

void Document::moveToVersion(qsizetype index) {
    moveHistory([index](VersionHistory& history) { history.moveTo(index); });
}

void Document::reloadCurrentVersion() {
    // Markers, zoom, buttons and the history itself stay as they are.
    m_track.s_WAV_File_Path = m_track.history().current();
    setWindowTitle(QFileInfo(m_track.s_WAV_File_Path).fileName());
    m_track.s_WAV_File_URL =
        versionUrlText(m_track.s_WAV_File_Path, m_session.s_Output_Folder, m_session.sSilenceWavURL);
    openFileWithFilePathURL(m_track.s_WAV_File_URL);
    m_session.runner().submit(buildProbePlan(m_track.s_WAV_File_Path), this,
                              [this](const PlanOutcome& outcome) {
                                  takeDuration(shownSeconds(outcome, m_track.s_WAV_File_Path));
                                  emit loaded();
                              });
}
