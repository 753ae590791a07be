// The window's edit service, through which every action object runs its
// edits: what an edit reads, its result names, and the adoption of its result
// as the current version.

#include "Document.h"

#include "effects/Clipping.h"
#include "names/Names.h"
#include "plans/RemovedFiles.h"

#include <QFileInfo>
#include <QLabel>

ResultNames Document::resultNames(Writes writes) const {
    return editNames(m_session.s_Output_Folder, m_track.s_WAV_File_Path, m_session.namesAround(this), writes);
}

EditState Document::editState() const {
    return {m_session.s_Output_Folder,   m_track.s_WAV_File_Path,
            m_session.s_Copied_WAV_File, m_track.Calculate_Segment_Variables(),
            m_track.f_Audio_Length,      m_track.f_Selection_Start,
            m_track.f_Selection_End};
}

void Document::runEdit(const EditPlan& edit) {
    if (!trackFileIsThere() || !readyToWrite())
        return;
    m_session.runner().submit(edit.plan, this, [this, edit](const PlanOutcome& outcome) {
        if (failed(outcome))
            return;
        if (!edit.clipboard.isEmpty()) {
            m_session.s_Copied_WAV_File = edit.clipboard;
            emit copied();
        }
        if (!edit.result.isEmpty())
            adoptResult(edit, outcome.seconds.value_or(0));
        // sox writes a clipped result all the same, and it is adopted as ever;
        // the status bar says so until the next version is shown.
        if (const std::optional<qint64> clipped = clippedSamples(outcome);
            clipped && !edit.clippingName.isEmpty()) {
            labelNotice->setText(clippingLine(edit.clippingName, *clipped));
            labelNotice->show();
        }
        if (const QString notice = edit.notice ? edit.notice(outcome) : QString(); !notice.isEmpty()) {
            labelNotice->setText(notice);
            labelNotice->show();
        }
    });
}

PlanRunner& Document::runner() {
    return m_session.runner();
}

void Document::adoptResult(const EditPlan& edit, qint64 seconds) {
    const QString name = QFileInfo(edit.result).fileName();
    m_track.s_WAV_File_Path = edit.result;
    setWindowTitle(name);
    m_track.s_WAV_File_URL = fileUrlText(m_session.s_Output_Folder, name);
    for (const QString& path : edit.deleteBeforeShowing)
        removedFiles::remove(path);
    openFileWithFilePathURL(m_track.s_WAV_File_URL);
    Add_WAV_File_To_Undo_Redo_Array(edit.label, edit.replay);
    for (const QString& path : edit.deleteAfterAdopting)
        removedFiles::remove(path);
    takeDuration(seconds);
    emit adopted();
}
