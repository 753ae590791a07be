#pragma once

#include "Recipe.h"

#include "plans/Plan.h"
#include "tools/ToolPaths.h"

#include <QObject>
#include <QTemporaryDir>
#include <algorithm>
#include <memory>
#include <vector>

class PlanRunner;

// A recipe done to a list of files, each as one plan. Files run side by side,
// as many at once as the machine has processors: each on a runner of the
// batch's own, with its steps in order and its work files in a folder of its
// own inside the work folder, gone when the file is done. The editor's runner
// is left to the open windows, so editing stays responsive during a batch. A
// file that fails is noted and the others go on.
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

    // How many files run at once: the processors by default; set before start().
    void setFilesAtOnce(int count) { m_atOnce = std::max(1, count); }
    int filesAtOnce() const { return m_atOnce; }

    void start();
    // Stops the batch: the running tools are killed and the files under way
    // leave nothing behind; the files already done stay; the rest are not started.
    void cancel();
    bool isFinished() const { return m_finished; }
    const QList<FileResult>& results() const { return m_results; }
    int count(FileResult::State state) const;

signals:
    void fileStarted(int index, int count);
    // A stage of the file `file` began ("Echo"), or a tool run went on.
    void stageStarted(int file, int index, int count, const QString& stage);
    // The file `index` ended, done, failed or cancelled.
    void fileEnded(int index);
    void finished();

private:
    void startNextFile(PlanRunner& runner);
    void endFile(PlanRunner& runner, int index, const QString& temporary, const PlanOutcome& outcome);
    void finishIfIdle();
    void stopRunners(); // every file under way is cancelled, and none starts

    PlanRunner& m_log; // the editor's runner, whose log lists the batch's runs too
    const ToolPaths m_tools;
    Recipe m_recipe;
    QList<FileResult> m_results;
    std::unique_ptr<QTemporaryDir> m_work;
    std::vector<std::unique_ptr<PlanRunner>> m_runners;
    int m_atOnce;
    int m_next = 0;    // the next file to start
    int m_running = 0; // files under way
    bool m_cancelled = false;
    bool m_finished = false;
};

// A failed file as the batch's summary lists it: "name.flac: why".
QString failureLine(const BatchRun::FileResult& result);
