#include "SplitActions.h"

#include "Window_Split_Silence.h"
#include "actions/TrackWindow.h"
#include "plans/AudioChecks.h"
#include "plans/RemovedFiles.h"
#include "session/Session.h"
#include "track/Track.h"

#include <QMenu>

SplitActions::SplitActions(Track& track, Session& session, TrackWindow& window, QObject* parent)
    : QObject(parent), m_track(track), m_session(session), m_window(window) {
    popupMenuSplit = new QMenu(tr("Split into Parts"), window.windowWidget());
    auto add = [this](const QString& text, const char* name, void (SplitActions::*action)()) {
        popupMenuSplit->addAction(text, this, action)->setObjectName(QLatin1String(name));
    };
    add(tr("Split at Play Position"), "OnPopupSplit2PartsCurrentPosition",
        &SplitActions::OnPopupSplit2PartsCurrentPosition);
    add(tr("Split Around Selection"), "OnPopupSplit3PartsBeforeSelectionAfter",
        &SplitActions::OnPopupSplit3PartsBeforeSelectionAfter);
    add(tr("Split on Silence…"), "OnPopupSplitOnSilence", &SplitActions::OnPopupSplitOnSilence);
}

void SplitActions::OnPopupSplit2PartsCurrentPosition() {
    runSplit(splitting::buildSplitAtPositionPlan(m_track.s_WAV_File_Path, m_session.s_Output_Folder,
                                                 m_track.Calculate_Segment_Variables(), pieceStem()));
}

void SplitActions::OnPopupSplit3PartsBeforeSelectionAfter() {
    runSplit(splitting::buildSplitAroundSelectionPlan(m_track.s_WAV_File_Path, m_session.s_Output_Folder,
                                                      m_track.Calculate_Segment_Variables(), pieceStem()));
}

QObject* SplitActions::receiver() {
    return m_window.windowWidget();
}

QString SplitActions::pieceStem() const {
    return splitting::pieceStem(m_track.s_WAV_File_Path, m_session.namesKeptUnshown());
}

void SplitActions::OnPopupSplitOnSilence() {
    Window_Split_Silence dialog(m_window.windowWidget());
    dialog.exec();
    if (!dialog.bOK)
        return;
    const QString wav = m_track.s_WAV_File_Path;
    if (!m_window.trackFileIsThere() || !m_window.readyToWrite())
        return;
    const QString stem = pieceStem();
    m_session.runner().submit(splitting::buildSplitOnSilencePlan(wav, dialog.settings(), stem), receiver(),
                              [this, wav, stem](const PlanOutcome& outcome) {
                                  if (m_window.failed(outcome))
                                      return;
                                  // What sox wrote is found by name; no piece, nothing more happens.
                                  const splitting::SilencePieces found =
                                      splitting::findSilencePieces(wav, stem, audioFrames);
                                  if (!found.empty.isEmpty())
                                      removedFiles::remove(found.empty);
                                  if (!found.pieces.isEmpty())
                                      emit piecesMade(found.pieces);
                              });
}

void SplitActions::runSplit(const splitting::SplitPlan& split) {
    if (!m_window.trackFileIsThere() || !m_window.readyToWrite())
        return;
    // Each piece is checked for being the stretch it was cut from: one that
    // is missing, damaged or cut short is not passed off as part of the
    // track. The plan then takes back every piece and the alert says why;
    // the windows for the pieces' paths open all the same, as they always
    // have for a split whose runs failed. Only a run that was killed,
    // crashed or cancelled stops them.
    m_session.runner().submit(
        split.plan, receiver(), [this, pieces = split.pieces](const PlanOutcome& outcome) {
            const bool stopped = outcome.cancelled ||
                                 std::any_of(outcome.runs.begin(), outcome.runs.end(),
                                             [](const ToolRun& run) { return run.end != RunEnd::Exited; });
            m_window.failed(outcome);
            if (!stopped)
                emit piecesMade(pieces);
        });
}
