#include "BatchRun.h"

#include "RecipePlans.h"
#include "plans/PlanRunner.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QThread>
#include <atomic>

BatchRun::BatchRun(PlanRunner& runner, Recipe recipe, const QStringList& inputs, const QStringList& outputs,
                   const QString& workFolder, QObject* parent)
    : QObject(parent), m_log(runner), m_tools(runner.tools()), m_recipe(std::move(recipe)),
      m_work(std::make_unique<QTemporaryDir>(workFolder + QStringLiteral("/batch-XXXXXX"))),
      m_atOnce(std::max(1, QThread::idealThreadCount())) {
    for (qsizetype i = 0; i < inputs.size(); ++i)
        m_results.append({FileResult::Waiting, inputs[i], outputs.value(i), {}});
}

BatchRun::~BatchRun() {
    // A batch closed while files are under way takes them back as a cancel
    // would: each runner kills its tool, and its thread ends before the
    // folder of the work files goes.
    m_cancelled = true;
    for (const auto& runner : m_runners)
        runner->withdraw(this);
    m_runners.clear();
}

int BatchRun::count(FileResult::State state) const {
    return int(std::count_if(m_results.begin(), m_results.end(),
                             [state](const FileResult& r) { return r.state == state; }));
}

void BatchRun::start() {
    const int runners = std::min<int>(m_atOnce, int(m_results.size()));
    for (int i = 0; i < runners; ++i) {
        m_runners.push_back(std::make_unique<PlanRunner>(m_tools));
        connect(m_runners.back().get(), &PlanRunner::runFinished, &m_log, &PlanRunner::log);
    }
    for (const auto& runner : m_runners)
        startNextFile(*runner);
    finishIfIdle();
}

void BatchRun::cancel() {
    if (m_finished)
        return;
    stopRunners();
    finishIfIdle();
}

void BatchRun::stopRunners() {
    m_cancelled = true;
    for (const auto& runner : m_runners)
        runner->cancel();
}

void BatchRun::startNextFile(PlanRunner& runner) {
    while (!m_cancelled && m_next < m_results.size()) {
        const int index = m_next++;
        FileResult& file = m_results[index];
        const QString folder = m_work->filePath(QString::number(index + 1));
        QDir().mkpath(folder);
        // The export is written under a name of this run's own and takes its
        // real name only when it is complete: another file of this batch, another
        // batch, or a script, writing into the same folder meanwhile can neither
        // be overwritten by this one nor have its file removed when this one fails.
        // Files of several batches run at once, so the number is the process's.
        static std::atomic<int> files = 0;
        const QString temporary = temporaryOutputPath(file.output, files++);
        const RecipePlan plan = buildRecipePlan(m_recipe, file.input, folder, temporary, file.output);
        emit fileStarted(index, int(m_results.size()));
        if (!plan.problem.isEmpty()) {
            file.state = FileResult::Failed;
            file.reason = plan.problem;
            emit fileEnded(index);
            continue;
        }
        ++m_running;
        emit stageStarted(index, 0, int(plan.stages.size()), plan.stages.value(0));
        runner.submit(
            plan.plan, this,
            [this, &runner, index, temporary](const PlanOutcome& outcome) {
                endFile(runner, index, temporary, outcome);
            },
            [this, index, plan](int run, int, const QString&, int) {
                const int stage = plan.runStages.value(run);
                emit stageStarted(index, stage, int(plan.stages.size()), plan.stages.value(stage));
            });
        return;
    }
}

void BatchRun::endFile(PlanRunner& runner, int index, const QString& temporary, const PlanOutcome& outcome) {
    --m_running;
    FileResult& file = m_results[index];
    QDir(m_work->filePath(QString::number(index + 1))).removeRecursively();
    exporting::Verdict verdict = outcome.ok && !outcome.runs.isEmpty()
                                     ? exporting::judge(temporary, outcome.runs.last())
                                     : exporting::Verdict{exporting::Verdict::NoFile, outcome.alert};
    if (verdict.kind == exporting::Verdict::Saved) {
        QString error;
        const QString named = claimOutputName(temporary, file.output, &error);
        if (named.isEmpty())
            verdict = {exporting::Verdict::NoFile, error};
        else
            file.output = named;
    }
    // The export's own file is all a failure removes; one of another run
    // at the name it wanted stays.
    if (verdict.kind == exporting::Verdict::Saved) {
        file.state = FileResult::Done;
    } else {
        QFile::remove(temporary);
        file.state = outcome.cancelled ? FileResult::Cancelled : FileResult::Failed;
        file.reason = verdict.message.replace(temporary, file.output);
        if (outcome.cancelled && !m_cancelled) // the others stop with it
            stopRunners();
    }
    emit fileEnded(index);
    startNextFile(runner);
    finishIfIdle();
}

void BatchRun::finishIfIdle() {
    if (m_finished || m_running > 0 || (!m_cancelled && m_next < m_results.size()))
        return;
    for (FileResult& file : m_results)
        if (file.state == FileResult::Waiting)
            file.state = FileResult::NotStarted;
    m_finished = true;
    m_work.reset();
    emit finished();
}

QString failureLine(const BatchRun::FileResult& result) {
    // The first paragraph of the alert, which says what failed, and a full
    // disk when that is why; the rest repeats the file's path.
    const QStringList paragraphs = result.reason.split(QStringLiteral("\n\n"));
    QString line = paragraphs.value(0);
    for (const QString& paragraph : paragraphs.mid(1))
        if (paragraph.startsWith(QStringLiteral("The disk is full")))
            line += u' ' + paragraph;
    return QStringLiteral("%1: %2").arg(QFileInfo(result.input).fileName(), line);
}
