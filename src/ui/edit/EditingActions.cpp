#include "EditingActions.h"

#include "Window_Silence_Insert.h"
#include "Window_Silence_Trim.h"
#include "actions/TrackWindow.h"
#include "session/Session.h"
#include "session/WorkFolder.h"
#include "track/Track.h"
#include "widgets/Alerts.h"

#include <QFileInfo>
#include <QMenu>
#include <QPoint>

EditingActions::EditingActions(Track& track, Session& session, TrackWindow& window, QObject* parent)
    : QObject(parent), m_track(track), m_session(session), m_window(window) {
    QWidget* const menuParent = window.windowWidget();
    popupMenuPaste = new QMenu(tr("Paste"), menuParent);
    popupMenuPaste->addAction(tr("Paste at Start"), this, &EditingActions::OnPopupMenuPasteAtStart);
    popupMenuPaste->addAction(tr("Paste at Play Position"), this,
                              &EditingActions::OnPopupMenuPasteAtCurrentPosition);
    popupMenuPaste->addAction(tr("Paste at Start of Selection"), this,
                              &EditingActions::OnPopupMenuPasteAtStartOfSelection);
    popupMenuPaste->addAction(tr("Paste at End of Selection"), this,
                              &EditingActions::OnPopupMenuPasteAtEndOfSelection);
    popupMenuPaste->addAction(tr("Paste at End"), this, &EditingActions::OnPopupMenuPasteAtEnd);

    popupMenuPasteMixing = new QMenu(tr("Mix Copied Audio In"), menuParent);
    popupMenuPasteMixing->addAction(tr("Mix at Start"), this, &EditingActions::OnPopupPasteMixingAtStart);
    popupMenuPasteMixing->addAction(tr("Mix at Play Position"), this,
                                    &EditingActions::OnPopupPasteMixingAtCurrentPosition);
    popupMenuPasteMixing->addAction(tr("Mix at Start of Selection"), this,
                                    &EditingActions::OnPopupPasteMixingAtStartOfSelection);
    popupMenuPasteMixing->addAction(tr("Mix at End of Selection"), this,
                                    &EditingActions::OnPopupPasteMixingAtEndOfSelection);

    popupMenuSilence = new QMenu(tr("Silence"), menuParent);
    popupMenuSilence->addAction(tr("Insert Silence at Start…"), this,
                                &EditingActions::OnPopupSilenceInsertAtStart);
    popupMenuSilence->addAction(tr("Insert Silence at End…"), this,
                                &EditingActions::OnPopupSilenceInsertAtEnd);
    popupMenuSilence->addAction(tr("Insert Silence at Play Position…"), this,
                                &EditingActions::OnPopupSilenceInsertAtCurrentPosition);
    popupMenuSilence->addAction(tr("Silence the Selection"), this, &EditingActions::OnPopupSilenceSelection);
    popupMenuSilence->addAction(tr("Trim Silence…"), this, &EditingActions::OnPopupSilenceTrim);

    popupMenuTools = new QMenu(tr("Tools"), menuParent);
    popupMenuTools->addMenu(popupMenuPaste);
    popupMenuTools->addMenu(popupMenuPasteMixing);
    popupMenuTools->addMenu(popupMenuSilence);
}

void EditingActions::OnToolbarTools() {
    popupMenuTools->popup(m_window.popupPosition());
}

void EditingActions::Operation_Copy() {
    const EditState state = m_window.editState();
    m_window.runEdit(
        buildCopyPlan(state, m_window.resultNames(Writes::Clip), m_session.mayDeleteClipboardFile()));
}

void EditingActions::Operation_Cut() {
    const EditState state = m_window.editState();
    m_window.runEdit(buildCutPlan(state, m_window.resultNames(Writes::VersionAndClip),
                                  m_session.mayDeleteClipboardFile()));
}

void EditingActions::Operation_Delete() {
    m_window.runEdit(buildDeletePlan(m_window.editState(), m_window.resultNames()));
}

bool EditingActions::haveCopiedContent() {
    if (!m_session.s_Copied_WAV_File.isEmpty() && QFileInfo::exists(m_session.s_Copied_WAV_File))
        return true;
    showErrorAlert(m_window.windowWidget(), QStringLiteral("There is no copied content."));
    return false;
}

void EditingActions::Operation_Paste() {
    if (!haveCopiedContent())
        return;
    popupMenuPaste->popup(m_window.popupPosition());
}

bool EditingActions::resultFitsAWav(double seconds) {
    const QString problem = tooLongForAWavProblem(tr("The track would then last"), seconds);
    if (!problem.isEmpty())
        showErrorAlert(m_window.windowWidget(), problem);
    return problem.isEmpty();
}

void EditingActions::paste(PastePlace place) {
    // A track longer than a WAV can hold would be cut off by the join.
    if (!resultFitsAWav(workingWavSeconds(QFileInfo(m_track.s_WAV_File_Path).size()) +
                        workingWavSeconds(QFileInfo(m_session.s_Copied_WAV_File).size())))
        return;
    m_window.runEdit(buildPastePlan(m_window.editState(), m_window.resultNames(), place));
}

void EditingActions::OnPopupMenuPasteAtStart() {
    paste(PastePlace::Start);
}
void EditingActions::OnPopupMenuPasteAtCurrentPosition() {
    paste(PastePlace::CurrentPosition);
}
void EditingActions::OnPopupMenuPasteAtStartOfSelection() {
    paste(PastePlace::StartOfSelection);
}
void EditingActions::OnPopupMenuPasteAtEndOfSelection() {
    paste(PastePlace::EndOfSelection);
}
void EditingActions::OnPopupMenuPasteAtEnd() {
    paste(PastePlace::End);
}

void EditingActions::pasteMix(PastePlace place) {
    // With nothing copied, sox would be asked to pad and mix a file that is
    // not there (and to write the padded copy beside it, outside the work
    // folder): say so, as Paste does, instead.
    if (!haveCopiedContent())
        return;
    const EditState state = m_window.editState();
    const double offset = place == PastePlace::Start              ? 0
                          : place == PastePlace::CurrentPosition  ? state.seg.f_CurrentPosition
                          : place == PastePlace::StartOfSelection ? state.seg.f_StartSelection
                                                                  : state.seg.f_EndSelection;
    if (!resultFitsAWav(std::max(workingWavSeconds(QFileInfo(m_track.s_WAV_File_Path).size()),
                                 std::max(0.0, offset) +
                                     workingWavSeconds(QFileInfo(m_session.s_Copied_WAV_File).size()))))
        return;
    const ResultNames names = m_window.resultNames();
    m_window.runEdit(buildPasteMixPlan(state, names, place));
}

void EditingActions::OnPopupPasteMixingAtStart() {
    pasteMix(PastePlace::Start);
}
void EditingActions::OnPopupPasteMixingAtCurrentPosition() {
    pasteMix(PastePlace::CurrentPosition);
}
void EditingActions::OnPopupPasteMixingAtStartOfSelection() {
    pasteMix(PastePlace::StartOfSelection);
}
void EditingActions::OnPopupPasteMixingAtEndOfSelection() {
    pasteMix(PastePlace::EndOfSelection);
}

quint64 EditingActions::Get_Silence_Duration_In_MS() {
    Window_Silence_Insert dialog(m_window.windowWidget());
    dialog.exec();
    return dialog.u_Length_In_MS;
}

void EditingActions::insertSilence(SilencePlace place) {
    const quint64 milliseconds = Get_Silence_Duration_In_MS();
    if (milliseconds == 0)
        return;
    const EditState state = m_window.editState();
    m_window.runEdit(buildSilenceInsertPlan(state, m_window.resultNames(), place, milliseconds));
}

void EditingActions::OnPopupSilenceInsertAtStart() {
    insertSilence(SilencePlace::Start);
}
void EditingActions::OnPopupSilenceInsertAtEnd() {
    insertSilence(SilencePlace::End);
}
void EditingActions::OnPopupSilenceInsertAtCurrentPosition() {
    insertSilence(SilencePlace::CurrentPosition);
}

void EditingActions::OnPopupSilenceSelection() {
    m_window.runEdit(buildSilenceSelectionPlan(m_window.editState(), m_window.resultNames()));
}

void EditingActions::OnPopupSilenceTrim() {
    Window_Silence_Trim dialog(m_window.windowWidget());
    dialog.exec();
    if (!dialog.bOK)
        return;
    m_window.runEdit(buildSilenceTrimPlan(m_window.editState(), m_window.resultNames(),
                                          dialog.u_Start_End_Or_Entire, dialog.u_Miliseconds));
}
