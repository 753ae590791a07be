#include "BatchActions.h"

#include "BatchDialog.h"
#include "session/Session.h"
#include "track/Track.h"

#include <QAction>
#include <QWidget>

BatchActions::BatchActions(Track& track, Session& session, QWidget* window,
                           std::function<exporting::Choice()> exportChoice)
    : QObject(window), m_track(track), m_session(session), m_window(window),
      m_exportChoice(std::move(exportChoice)) {
    actionProcessFiles = new QAction(tr("Process Files With This &Recipe…"), window);
    actionProcessFiles->setObjectName(QStringLiteral("actionProcessFiles"));
    connect(actionProcessFiles, &QAction::triggered, this, &BatchActions::processFilesWithRecipe);
    actionSaveRecipeScript = new QAction(tr("Save Recipe As &Script…"), window);
    actionSaveRecipeScript->setObjectName(QStringLiteral("actionSaveRecipeScript"));
    connect(actionSaveRecipeScript, &QAction::triggered, this, &BatchActions::saveRecipeAsScript);
}

Recipe BatchActions::recipe() const {
    return recipeOf(m_track.history(), m_exportChoice());
}

void BatchActions::processFilesWithRecipe() {
    if (!m_batchDialog)
        m_batchDialog = new BatchDialog(m_session.runner(), m_session.s_Output_Folder, recipe(), m_window);
    else if (!m_batchDialog->run() || m_batchDialog->run()->isFinished())
        m_batchDialog->setRecipe(recipe()); // the recipe as it is now
    m_batchDialog->show();
    m_batchDialog->raise();
    m_batchDialog->activateWindow();
}

void BatchActions::saveRecipeAsScript() {
    saveRecipeScript(m_window, recipe(), m_session.s_Output_Folder);
}
