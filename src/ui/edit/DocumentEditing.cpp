// The document's editing operations: each gathers the document's state, has
// the edit built as a plan, runs it and adopts the result.

#include "Window_Silence_Insert.h"
#include "Window_Silence_Trim.h"
#include "document/Document.h"
#include "document/WaveformPlot.h"
#include "plans/RemovedFiles.h"
#include "session/WorkFolder.h"
#include "timeline/View_Audio_Wave.h"
#include "timeline/View_Time_Rule.h"
#include "widgets/Alerts.h"

#include <QCursor>
#include <QFile>
#include <QFileInfo>
#include <QMenu>

void Document::buildEditMenus() {
    popupMenuPaste = new QMenu(tr("Paste"), this);
    popupMenuPaste->addAction(tr("Paste at Start"), this, &Document::OnPopupMenuPasteAtStart);
    popupMenuPaste->addAction(tr("Paste at Play Position"), this,
                              &Document::OnPopupMenuPasteAtCurrentPosition);
    popupMenuPaste->addAction(tr("Paste at Start of Selection"), this,
                              &Document::OnPopupMenuPasteAtStartOfSelection);
    popupMenuPaste->addAction(tr("Paste at End of Selection"), this,
                              &Document::OnPopupMenuPasteAtEndOfSelection);
    popupMenuPaste->addAction(tr("Paste at End"), this, &Document::OnPopupMenuPasteAtEnd);

    popupMenuPasteMixing = new QMenu(tr("Mix Copied Audio In"), this);
    popupMenuPasteMixing->addAction(tr("Mix at Start"), this, &Document::OnPopupPasteMixingAtStart);
    popupMenuPasteMixing->addAction(tr("Mix at Play Position"), this,
                                    &Document::OnPopupPasteMixingAtCurrentPosition);
    popupMenuPasteMixing->addAction(tr("Mix at Start of Selection"), this,
                                    &Document::OnPopupPasteMixingAtStartOfSelection);
    popupMenuPasteMixing->addAction(tr("Mix at End of Selection"), this,
                                    &Document::OnPopupPasteMixingAtEndOfSelection);

    popupMenuSilence = new QMenu(tr("Silence"), this);
    popupMenuSilence->addAction(tr("Insert Silence at Start…"), this, &Document::OnPopupSilenceInsertAtStart);
    popupMenuSilence->addAction(tr("Insert Silence at End…"), this, &Document::OnPopupSilenceInsertAtEnd);
    popupMenuSilence->addAction(tr("Insert Silence at Play Position…"), this,
                                &Document::OnPopupSilenceInsertAtCurrentPosition);
    popupMenuSilence->addAction(tr("Silence the Selection"), this, &Document::OnPopupSilenceSelection);
    popupMenuSilence->addAction(tr("Trim Silence…"), this, &Document::OnPopupSilenceTrim);

    popupMenuTools = new QMenu(tr("Tools"), this);
    popupMenuTools->addMenu(popupMenuPaste);
    popupMenuTools->addMenu(popupMenuPasteMixing);
    popupMenuTools->addMenu(popupMenuSilence);
}

void Document::OnToolbarTools() {
    popupMenuTools->popup(popupPosition());
}

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
    });
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

void Document::Operation_Copy() {
    const EditState state = editState();
    runEdit(buildCopyPlan(state, resultNames(Writes::Clip), m_session.mayDeleteClipboardFile()));
}

void Document::Operation_Cut() {
    const EditState state = editState();
    runEdit(buildCutPlan(state, resultNames(Writes::VersionAndClip), m_session.mayDeleteClipboardFile()));
}

void Document::Operation_Delete() {
    runEdit(buildDeletePlan(editState(), resultNames()));
}

bool Document::haveCopiedContent() {
    if (!m_session.s_Copied_WAV_File.isEmpty() && QFileInfo::exists(m_session.s_Copied_WAV_File))
        return true;
    showErrorAlert(this, QStringLiteral("There is no copied content."));
    return false;
}

void Document::Operation_Paste() {
    if (!haveCopiedContent())
        return;
    popupMenuPaste->popup(popupPosition());
}

bool Document::resultFitsAWav(double seconds) {
    const QString problem = tooLongForAWavProblem(tr("The track would then last"), seconds);
    if (!problem.isEmpty())
        showErrorAlert(this, problem);
    return problem.isEmpty();
}

void Document::paste(PastePlace place) {
    // A track longer than a WAV can hold would be cut off by the join.
    if (!resultFitsAWav(workingWavSeconds(QFileInfo(m_track.s_WAV_File_Path).size()) +
                        workingWavSeconds(QFileInfo(m_session.s_Copied_WAV_File).size())))
        return;
    runEdit(buildPastePlan(editState(), resultNames(), place));
}

void Document::OnPopupMenuPasteAtStart() {
    paste(PastePlace::Start);
}
void Document::OnPopupMenuPasteAtCurrentPosition() {
    paste(PastePlace::CurrentPosition);
}
void Document::OnPopupMenuPasteAtStartOfSelection() {
    paste(PastePlace::StartOfSelection);
}
void Document::OnPopupMenuPasteAtEndOfSelection() {
    paste(PastePlace::EndOfSelection);
}
void Document::OnPopupMenuPasteAtEnd() {
    paste(PastePlace::End);
}

void Document::pasteMix(PastePlace place) {
    // With nothing copied, sox would be asked to pad and mix a file that is
    // not there (and to write the padded copy beside it, outside the work
    // folder): say so, as Paste does, instead.
    if (!haveCopiedContent())
        return;
    const EditState state = editState();
    const double offset = place == PastePlace::Start              ? 0
                          : place == PastePlace::CurrentPosition  ? state.seg.f_CurrentPosition
                          : place == PastePlace::StartOfSelection ? state.seg.f_StartSelection
                                                                  : state.seg.f_EndSelection;
    if (!resultFitsAWav(std::max(workingWavSeconds(QFileInfo(m_track.s_WAV_File_Path).size()),
                                 std::max(0.0, offset) +
                                     workingWavSeconds(QFileInfo(m_session.s_Copied_WAV_File).size()))))
        return;
    const ResultNames names = resultNames();
    runEdit(buildPasteMixPlan(state, names, place));
}

void Document::OnPopupPasteMixingAtStart() {
    pasteMix(PastePlace::Start);
}
void Document::OnPopupPasteMixingAtCurrentPosition() {
    pasteMix(PastePlace::CurrentPosition);
}
void Document::OnPopupPasteMixingAtStartOfSelection() {
    pasteMix(PastePlace::StartOfSelection);
}
void Document::OnPopupPasteMixingAtEndOfSelection() {
    pasteMix(PastePlace::EndOfSelection);
}

quint64 Document::Get_Silence_Duration_In_MS() {
    Window_Silence_Insert dialog(this);
    dialog.exec();
    return dialog.u_Length_In_MS;
}

void Document::insertSilence(SilencePlace place) {
    const quint64 milliseconds = Get_Silence_Duration_In_MS();
    if (milliseconds == 0)
        return;
    const EditState state = editState();
    runEdit(buildSilenceInsertPlan(state, resultNames(), place, milliseconds));
}

void Document::OnPopupSilenceInsertAtStart() {
    insertSilence(SilencePlace::Start);
}
void Document::OnPopupSilenceInsertAtEnd() {
    insertSilence(SilencePlace::End);
}
void Document::OnPopupSilenceInsertAtCurrentPosition() {
    insertSilence(SilencePlace::CurrentPosition);
}

void Document::OnPopupSilenceSelection() {
    runEdit(buildSilenceSelectionPlan(editState(), resultNames()));
}

void Document::OnPopupSilenceTrim() {
    Window_Silence_Trim dialog(this);
    dialog.exec();
    if (!dialog.bOK)
        return;
    runEdit(
        buildSilenceTrimPlan(editState(), resultNames(), dialog.u_Start_End_Or_Entire, dialog.u_Miliseconds));
}
