#pragma once

#include <QString>
#include <QStringList>
#include <functional>

// One finished run of an external tool, kept so that a user can see exactly
// which command lines the editor ran and what they printed.
struct ToolRun {
    QString program; // absolute path of the executable
    QStringList arguments;
    QString output;    // standard output and standard error, interleaved, as UTF-8
    int exitCode = -1; // recorded for the log only; success is judged by files
    qint64 milliseconds = 0;
};

// Runs one child process synchronously: exact argument vector (no shell),
// stdout and stderr merged, stdin from the null device, read to the end.
// Blocks the calling thread, so the editor calls it only from the plan runner's worker.
// While the child runs, `tick` (when given) is called about every `tickMs`.
ToolRun runTool(const QString& program, const QStringList& arguments, const std::function<void()>& tick = {},
                int tickMs = 250);

// The run as a command line a user can paste into a shell: every element in
// single quotes when it holds anything a shell would read specially.
QString commandLine(const ToolRun& run);

// All runs, oldest first: each command line, its exit code and time, its output.
QString toolLogText(const QList<ToolRun>& runs);
