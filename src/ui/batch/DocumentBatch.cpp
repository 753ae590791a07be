// The document's batch commands: the operations that made its current
// version, offered as a recipe to do to other files, or to save as a script.

#include "BatchDialog.h"
#include "document/Document.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

void Document::buildBatchMenu() {
    // File: after the application's Export, this window's recipe commands.
    auto* file = menuBar()->findChild<QMenu*>(QStringLiteral("menuFile"));
    actionProcessFiles = new QAction(tr("Process Files With This &Recipe…"), this);
    actionProcessFiles->setObjectName(QStringLiteral("actionProcessFiles"));
    connect(actionProcessFiles, &QAction::triggered, this, &Document::processFilesWithRecipe);
    actionSaveRecipeScript = new QAction(tr("Save Recipe As &Script…"), this);
    actionSaveRecipeScript->setObjectName(QStringLiteral("actionSaveRecipeScript"));
    connect(actionSaveRecipeScript, &QAction::triggered, this, &Document::saveRecipeAsScript);
    const QList<QAction*> items = file->actions();
    const auto separator =
        std::find_if(items.begin(), items.end(), [](const QAction* item) { return item->isSeparator(); });
    QAction* before = separator == items.end() ? nullptr : *separator;
    file->insertSeparator(before);
    file->insertActions(before, {actionProcessFiles, actionSaveRecipeScript});
}

Recipe Document::recipe() const {
    return recipeOf(m_track.history(), m_exportChoice);
}

void Document::processFilesWithRecipe() {
    if (!m_batchDialog)
        m_batchDialog = new BatchDialog(m_session.runner(), m_session.s_Output_Folder, recipe(), this);
    else if (!m_batchDialog->run() || m_batchDialog->run()->isFinished())
        m_batchDialog->setRecipe(recipe()); // the recipe as it is now
    m_batchDialog->show();
    m_batchDialog->raise();
    m_batchDialog->activateWindow();
}

void Document::saveRecipeAsScript() {
    saveRecipeScript(this, recipe());
}
