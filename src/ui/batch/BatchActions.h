#pragma once

#include "batch/Recipe.h"

#include <QObject>
#include <QPointer>
#include <functional>

class BatchDialog;
class QAction;
class QWidget;
class Session;
class Track;

// The window's recipe commands: the operations that made its current version,
// offered as a recipe to do to other files, or to save as a script.
class BatchActions : public QObject {
    Q_OBJECT
public:
    // `exportChoice` gives the setting the window last exported with.
    BatchActions(Track& track, Session& session, QWidget* window,
                 std::function<exporting::Choice()> exportChoice);

    // The recipe of the current version, exported as this window last
    // exported (or as the export dialog starts).
    Recipe recipe() const;
    // File ▸ Process Files With This Recipe…: one batch window per document.
    void processFilesWithRecipe();
    // File ▸ Save Recipe As Script…
    void saveRecipeAsScript();
    QAction* actionProcessFiles;
    QAction* actionSaveRecipeScript;

private:
    Track& m_track;
    Session& m_session;
    QWidget* m_window;
    std::function<exporting::Choice()> m_exportChoice;
    QPointer<BatchDialog> m_batchDialog;
};
