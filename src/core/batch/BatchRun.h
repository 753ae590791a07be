#pragma once

#include "Recipe.h"

#include "plans/Plan.h"

#include <QObject>
#include <QTemporaryDir>
#include <memory>

class PlanRunner;

// A recipe done to a list of files, one after another, each as one plan on
// the editor's runner (so a batch never runs beside an edit). Every file's
// work files live in a folder of their own inside the work folder, gone when
// the file is done. A file that fails is noted and the next one goes on.
class BatchRun : public QObject {
    Q_OBJECT
public:
    struct FileResult {
        enum State { Waiting, Done, Failed, Cancelled, NotStarted } state = Waiting;
        QString input;
        QString output;
        QString reason; // why it failed
    };

    // `outputs` as outputPaths() gives them, one per input.
    BatchRun(PlanRunner& runner, Recipe recipe, const QStringList& inputs, const QStringList& outputs,
             const QString& workFolder, QObject* parent = nullptr);
    ~BatchRun() override;

    void start();
    // Stops the batch: the running tool is killed and the file under way
    // leaves nothing behind; the files already done stay; the rest are not started.
    void cancel();
    bool isFinished() const { return m_finished; }
    const QList<FileResult>& results() const { return m_results; }
    int count(FileResult::State state) const;

signals:
    void fileStarted(int index, int count);
    // A stage of the file under way began ("Echo"), or a tool run went on.
    void stageStarted(int index, int count, const QString& stage);
    void finished();

private:
    void startFile(int index);
    void fileEnded(int index, const QString& temporary, const PlanOutcome& outcome);
    void finish();

    PlanRunner& m_runner;
    Recipe m_recipe;
    QList<FileResult> m_results;
    std::unique_ptr<QTemporaryDir> m_work;
    bool m_cancelled = false;
    bool m_finished = false;
    int m_current = -1;
};

// A failed file as the batch's summary lists it: "name.flac: why".
QString failureLine(const BatchRun::FileResult& result);
