#pragma once

#include "batch/BatchRun.h"
#include "widgets/ExportLists.h"

#include <QDialog>
#include <QMap>
#include <QPointer>

class PlanRunner;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

// File ▸ Process Files With This Recipe…: the recipe's steps (any of which
// may be removed), the files to process, the folder the results go to and the
// export setting. Process does the recipe to every file, one after another,
// with a progress window that can cancel it.
class BatchDialog : public QDialog {
    Q_OBJECT
public:
    BatchDialog(PlanRunner& runner, const QString& workFolder, const Recipe& recipe, QWidget* parent);

    // The steps left in the list and the export setting chosen.
    Recipe recipe() const;
    void setRecipe(const Recipe& recipe);
    QStringList inputs() const;
    void setInputs(const QStringList& files);
    void setOutputFolder(const QString& folder);
    // Starts the batch, or says what is missing; the run under way, if any.
    void process();
    BatchRun* run() const { return m_run; }

    QListWidget* listSteps;
    QListWidget* listSkipped;
    QListWidget* listFiles;
    QLineEdit* textOutputFolder;
    ExportLists exportLists;
    QPushButton* btnRemoveStep;
    QPushButton* btnAddFiles;
    QPushButton* btnRemoveFiles;
    QPushButton* btnChooseFolder;
    QPushButton* btnLoadRecipe;
    QPushButton* btnSaveRecipe;
    QPushButton* btnSaveScript;
    QPushButton* btnProcess;
    QPushButton* btnClose;

signals:
    void batchFinished();

private:
    void removeSteps();
    void addFiles();
    void removeFiles();
    void chooseFolder();
    void loadRecipe();
    void saveRecipe();

    PlanRunner& m_runner;
    QString m_workFolder;
    Recipe m_recipe; // the skipped steps and what the step list shows
    QPointer<BatchRun> m_run;
};

// Shows a batch as it goes: file i of n, the step under way, a Cancel button;
// at the end, how many files were made and why the others failed.
class BatchProgressDialog : public QDialog {
    Q_OBJECT
public:
    BatchProgressDialog(BatchRun& run, QWidget* parent);

    QLabel* labelFile;
    QLabel* labelStage;
    QLabel* labelSummary;
    QListWidget* listFailures;
    QPushButton* btnCancel;
    QPushButton* btnClose;

private:
    void showStages();
    void showSummary();
    void reject() override; // Escape and the close button cancel a batch under way
    BatchRun& m_run;
    QMap<int, QString> m_stages; // each running file's line, by its index
};

// Asks where, then writes the recipe as a shell script (the export setting's
// arguments must exist), never into the work folder; false when nothing was
// written.
bool saveRecipeScript(QWidget* parent, const Recipe& recipe, const QString& workFolder);
