#pragma once

#include <QString>
#include <QStringList>
#include <atomic>
#include <functional>

// How a child process ended. Only a normal exit lets the caller go on to judge
// the run by its files; anything else means its output cannot be trusted.
enum class RunEnd {
    Exited,     // the child ended by itself, whatever its exit code
    Crashed,    // a signal stopped it (a crash, an out-of-memory kill, SIGTERM, SIGXFSZ)
    NotStarted, // the executable could not be started
    Cancelled,  // the editor stopped it because the user cancelled
};

// One finished run of an external tool, kept so that a user can see exactly
// which command lines the editor ran and what they printed.
struct ToolRun {
    QString program; // absolute path of the executable
    QStringList arguments;
    QString output;    // standard output and standard error, interleaved, as UTF-8
    int exitCode = -1; // recorded for the log only; success is judged by files
    qint64 milliseconds = 0;
    RunEnd end = RunEnd::Exited;
    int signal = 0;          // the signal that stopped a crashed child
    QString startError = {}; // why a child could not be started
};

// What the caller of a run may do while it goes on: be told of it now and then,
// stop it, and know the child's process id (0 when none runs).
struct RunControl {
    std::function<void()> tick; // called about every `tickMs` while the child runs
    int tickMs = 250;
    const std::atomic<bool>* cancel = nullptr; // set to kill the child at once
    std::atomic<qint64>* processId = nullptr;
    QString preload = {}; // a library the child loads first (LD_PRELOAD)
};

// The sox options every run gets in its SOX_OPTS: "-R", the repeatable mode.
QString repeatableSoxOptions();

// Runs one child process synchronously: exact argument vector (no shell),
// stdout and stderr merged, stdin from the null device, read to the end.
// Blocks the calling thread, so the editor calls it only from the plan runner's worker.
ToolRun runTool(const QString& program, const QStringList& arguments, const RunControl& control = {});

// How a run that did not end normally ended, in the user's words:
// "sox was stopped by signal 9 before it finished."; empty for a normal exit.
QString abnormalEndMessage(const ToolRun& run);

// What a tool printed, line by line; a carriage return (ffmpeg's progress
// lines) ends a line as well. Empty lines are left out.
QStringList outputLines(const QString& output);

// The last line with text of what the tool printed, trimmed; empty when none.
QString lastOutputLine(const QString& output);

// The run as a command line a user can paste into a shell: every element in
// single quotes when it holds anything a shell would read specially.
QString commandLine(const ToolRun& run);

// All runs, oldest first: each command line, its exit code and time, its output.
QString toolLogText(const QList<ToolRun>& runs);
