#include "BatchRun.h"

#include "RecipePlans.h"
#include "plans/PlanRunner.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

BatchRun::BatchRun(PlanRunner& runner, Recipe recipe, const QStringList& inputs, const QStringList& outputs,
                   const QString& workFolder, QObject* parent)
    : QObject(parent), m_runner(runner), m_recipe(std::move(recipe)),
      m_work(std::make_unique<QTemporaryDir>(workFolder + QStringLiteral("/batch-XXXXXX"))) {
    for (qsizetype i = 0; i < inputs.size(); ++i)
        m_results.append({FileResult::Waiting, inputs[i], outputs.value(i), {}});
}

BatchRun::~BatchRun() {
    // A batch closed while a file is under way takes that file back as a cancel would.
    if (!m_finished && m_current >= 0 && m_runner.currentReceiver() == this)
        m_runner.cancel();
}

int BatchRun::count(FileResult::State state) const {
    return int(std::count_if(m_results.begin(), m_results.end(),
                             [state](const FileResult& r) { return r.state == state; }));
}

void BatchRun::start() {
    startFile(0);
}

void BatchRun::cancel() {
    if (m_finished)
        return;
    m_cancelled = true;
    if (m_runner.currentReceiver() == this)
        m_runner.cancel();
}

void BatchRun::startFile(int index) {
    if (m_cancelled || index >= m_results.size()) {
        finish();
        return;
    }
    m_current = index;
    FileResult& file = m_results[index];
    const QString folder = m_work->filePath(QString::number(index + 1));
    QDir().mkpath(folder);
    // The export is written under a name of this run's own and takes its
    // real name only when it is complete: another batch, or a script, writing
    // into the same folder meanwhile can neither be overwritten by this one
    // nor have its file removed when this one fails.
    const QString temporary = temporaryOutputPath(file.output, index);
    const RecipePlan plan = buildRecipePlan(m_recipe, file.input, folder, temporary, file.output);
    emit fileStarted(index, int(m_results.size()));
    if (!plan.problem.isEmpty()) {
        file.state = FileResult::Failed;
        file.reason = plan.problem;
        startFile(index + 1);
        return;
    }
    emit stageStarted(0, int(plan.stages.size()), plan.stages.value(0));
    m_runner.submit(
        plan.plan, this,
        [this, index, temporary](const PlanOutcome& outcome) { fileEnded(index, temporary, outcome); },
        [this, plan](int run, int, const QString&, int) {
            const int stage = plan.runStages.value(run);
            emit stageStarted(stage, int(plan.stages.size()), plan.stages.value(stage));
        });
}

void BatchRun::fileEnded(int index, const QString& temporary, const PlanOutcome& outcome) {
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
        m_cancelled = m_cancelled || outcome.cancelled;
    }
    startFile(index + 1);
}

void BatchRun::finish() {
    if (m_finished)
        return;
    for (FileResult& file : m_results)
        if (file.state == FileResult::Waiting)
            file.state = FileResult::NotStarted;
    m_current = -1;
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
