// The document's splits: each cuts the current version into pieces and hands
// them to the application, which opens every piece in a window of its own.
// The track that is split and its history stay as they are.

#include "Document.h"
#include "WaveformPlot.h"
#include "Window_Split_Silence.h"
#include "application/AppDelegate.h"
#include "document/SplitPlans.h"

#include <QFileInfo>
#include <QMenu>

void Document::buildSplitMenu() {
    popupMenuSplit = new QMenu(tr("Split into Parts"), this);
    auto add = [this](const QString& text, const char* name, void (Document::*action)()) {
        popupMenuSplit->addAction(text, this, action)->setObjectName(QLatin1String(name));
    };
    add(tr("Split at Play Position"), "OnPopupSplit2PartsCurrentPosition",
        &Document::OnPopupSplit2PartsCurrentPosition);
    add(tr("Split Around Selection"), "OnPopupSplit3PartsBeforeSelectionAfter",
        &Document::OnPopupSplit3PartsBeforeSelectionAfter);
    add(tr("Split on Silence…"), "OnPopupSplitOnSilence", &Document::OnPopupSplitOnSilence);
    popupMenuTools->addMenu(popupMenuSplit);
}

void Document::OnPopupSplit2PartsCurrentPosition() {
    runSplit(splitting::buildSplitAtPositionPlan(s_WAV_File_Path, m_app.s_Output_Folder, editState(true).seg,
                                                 pieceStem()));
}

void Document::OnPopupSplit3PartsBeforeSelectionAfter() {
    runSplit(splitting::buildSplitAroundSelectionPlan(s_WAV_File_Path, m_app.s_Output_Folder,
                                                      editState(true).seg, pieceStem()));
}

QString Document::pieceStem() const {
    return splitting::pieceStem(s_WAV_File_Path, m_app.namesKeptUnshown());
}

void Document::OnPopupSplitOnSilence() {
    Window_Split_Silence dialog(this);
    dialog.exec();
    if (!dialog.bOK)
        return;
    const QString wav = s_WAV_File_Path;
    if (!trackFileIsThere() || !readyToWrite())
        return;
    const QString stem = pieceStem();
    m_app.runner().submit(splitting::buildSplitOnSilencePlan(wav, dialog.settings(), stem), this,
                          [this, wav, stem](const PlanOutcome& outcome) {
                              if (failed(outcome))
                                  return;
                              // What sox wrote is found by name; no piece, nothing more happens.
                              const QStringList pieces = splitting::findSilencePieces(
                                  wav, stem, [](const QString& path) { return QFileInfo::exists(path); });
                              if (!pieces.isEmpty())
                                  handOverPieces(pieces);
                          });
}

void Document::runSplit(const splitting::SplitPlan& split) {
    if (!trackFileIsThere() || !readyToWrite())
        return;
    // Each piece is checked for being the stretch it was cut from: one that
    // is missing, damaged or cut short is not passed off as part of the
    // track. The plan then takes back every piece and the alert says why;
    // the windows for the pieces' paths open all the same, as they always
    // have for a split whose runs failed. Only a run that was killed,
    // crashed or cancelled stops them.
    m_app.runner().submit(split.plan, this, [this, pieces = split.pieces](const PlanOutcome& outcome) {
        const bool stopped =
            outcome.cancelled || std::any_of(outcome.runs.begin(), outcome.runs.end(),
                                             [](const ToolRun& run) { return run.end != RunEnd::Exited; });
        failed(outcome);
        if (!stopped)
            handOverPieces(pieces);
    });
}

void Document::handOverPieces(const QStringList& pieces) {
    m_app.array_Pre_Generated_Docs = pieces;
    m_app.u_Pre_Generated_Docs_Index = 0;
    m_app.color_Pre_Generated_Docs = audioPlot->color();
    m_app.openPreGeneratedDocuments();
    emit splitHandedOver(pieces);
}
