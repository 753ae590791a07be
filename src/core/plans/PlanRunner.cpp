#include "PlanRunner.h"

#include <algorithm>

PlanRunner::PlanRunner(ToolPaths tools, QObject* parent)
    : QObject(parent), m_tools(std::move(tools)), m_worker(new QObject) {
    m_thread.setObjectName(QStringLiteral("PlanRunner"));
    m_worker->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
    m_thread.start();
}

PlanRunner::~PlanRunner() {
    m_thread.quit();
    m_thread.wait();
}

void PlanRunner::submit(Plan plan, QObject* receiver, Completion done, PlanProgress progress) {
    m_queue.push_back({std::move(plan), receiver != nullptr, receiver, std::move(done), std::move(progress)});
    setBusy(true);
    if (!m_running)
        startNext();
}

void PlanRunner::startNext() {
    if (m_queue.empty()) {
        setBusy(false);
        return;
    }
    m_running = true;
    m_cancel = false;
    const Job& job = m_queue.front();
    const Plan plan = job.plan;
    const ToolPaths tools = m_tools;
    const PlanProgress told = job.progress;
    const bool hasReceiver = job.hasReceiver;
    const QPointer<QObject> receiver = job.receiver;
    QMetaObject::invokeMethod(m_worker, [this, plan, tools, told, hasReceiver, receiver] {
        const PlanOutcome outcome = executePlan(
            plan, tools,
            [this, told, hasReceiver, receiver](int index, int count, const QString& tool, int percent) {
                QString text = tr("Running %1 (step %2 of %3)…").arg(tool).arg(index + 1).arg(count);
                if (percent >= 0)
                    text += tr(" %1 %").arg(percent);
                QMetaObject::invokeMethod(this, [=, this] {
                    emit progress(text);
                    if (told && (!hasReceiver || receiver))
                        told(index, count, tool, percent);
                });
            },
            &m_cancel, &m_processId);
        QMetaObject::invokeMethod(this, [this, outcome] { finish(outcome); });
    });
}

void PlanRunner::log(const ToolRun& run) {
    m_runs.append(run);
    emit runFinished(run);
}

void PlanRunner::finish(const PlanOutcome& outcome) {
    for (const ToolRun& run : outcome.runs)
        log(run);
    Job job = std::move(m_queue.front());
    m_queue.pop_front();
    m_running = false;
    emit progress(outcome.cancelled ? tr("Cancelled") : QString());
    if (job.done && (!job.hasReceiver || job.receiver))
        job.done(outcome);
    if (!m_running)
        startNext();
}

void PlanRunner::cancel() {
    if (m_running)
        m_cancel = true;
}

void PlanRunner::withdraw(const QObject* receiver) {
    // The running plan stays at the front until it has ended.
    const auto queued = m_queue.begin() + (m_running ? 1 : 0);
    m_queue.erase(std::remove_if(queued, m_queue.end(),
                                 [receiver](const Job& job) { return job.receiver.data() == receiver; }),
                  m_queue.end());
    if (m_running && m_queue.front().receiver.data() == receiver)
        cancel();
    if (!m_running && m_queue.empty())
        setBusy(false);
}

QObject* PlanRunner::currentReceiver() const {
    return m_running && !m_queue.empty() ? m_queue.front().receiver.data() : nullptr;
}

void PlanRunner::setBusy(bool busy) {
    if (busy == m_busy)
        return;
    m_busy = busy;
    emit busyChanged(busy);
}

QStringList PlanRunner::filesOfQueuedPlans() const {
    QStringList files;
    for (const Job& job : m_queue)
        files += filesNamedBy(job.plan);
    return files;
}
