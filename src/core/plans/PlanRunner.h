#pragma once

#include "Plan.h"
#include "tools/ToolPaths.h"

#include <QObject>
#include <QPointer>
#include <QThread>
#include <atomic>
#include <deque>
#include <functional>

// The one place where tool runs happen. Plans queue up and run on a worker
// thread one at a time, in the order they were submitted, so no two tool runs
// ever overlap and the interface thread never waits for a child process.
// Each plan's completion is called back on the interface thread.
class PlanRunner : public QObject {
    Q_OBJECT
public:
    using Completion = std::function<void(const PlanOutcome&)>;

    explicit PlanRunner(ToolPaths tools, QObject* parent = nullptr);
    ~PlanRunner() override;

    // Queues a plan. `done` runs on this object's thread when the plan has
    // ended, unless `receiver` was given and has been destroyed by then;
    // `progress`, with the same condition, whenever the plan's progress is told.
    void submit(Plan plan, QObject* receiver, Completion done, PlanProgress progress = {});

    bool isBusy() const { return m_busy; }
    // Stops the running plan: its child is killed, its remaining steps are
    // skipped and what it wrote is deleted; its completion sees `cancelled`.
    // Plans queued behind it still run.
    void cancel();
    // Takes back every plan `receiver` submitted: those still queued never
    // run, and the running one, if it is the receiver's, is cancelled.
    void withdraw(const QObject* receiver);
    // The window whose plan runs now, if it is still there.
    QObject* currentReceiver() const;
    // The process id of the tool running now; 0 between runs.
    qint64 runningProcessId() const { return m_processId.load(); }
    const ToolPaths& tools() const { return m_tools; }
    // Every file the plans queued or running now name: a name an operation
    // is about to write is not free for another, though it is not there yet.
    QStringList filesOfQueuedPlans() const;
    // Every run of this session, oldest first.
    const QList<ToolRun>& runs() const { return m_runs; }
    // Keeps a run another runner made for this session (a batch's) with this
    // one's, so that Help ▸ Tool Runs lists it.
    void log(const ToolRun& run);

signals:
    void busyChanged(bool busy);
    // Before each tool run: "Running ffmpeg (step 2 of 3)…"; during a run that
    // writes an expected amount, a few times a second with the share written:
    // "Running ffmpeg (step 1 of 1)… 42 %". When a plan ends: "Cancelled" if
    // it was cancelled, else an empty text.
    void progress(const QString& text);
    void runFinished(const ToolRun& run);

private:
    struct Job {
        Plan plan;
        bool hasReceiver;
        QPointer<QObject> receiver;
        Completion done;
        PlanProgress progress;
    };
    void startNext();
    void finish(const PlanOutcome& outcome);
    void setBusy(bool busy);

    ToolPaths m_tools;
    QThread m_thread;
    QObject* m_worker; // lives on m_thread
    std::deque<Job> m_queue;
    bool m_running = false;
    bool m_busy = false;
    QList<ToolRun> m_runs;
    std::atomic<bool> m_cancel = false;
    std::atomic<qint64> m_processId = 0;
};
