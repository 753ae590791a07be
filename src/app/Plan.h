#pragma once

#include "ToolRunner.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>
#include <variant>
#include <vector>

enum class Tool { Sox, FFmpeg };

// The steps an operation is made of. A plan is built by a pure function and
// executed by the PlanRunner, step by step, strictly in order.
namespace step {
struct DeleteFile { // delete whatever is at the path; a failure is ignored
    QString path;
};
struct Run { // one run of a tool with exactly these arguments
    Tool tool;
    QStringList arguments;
    // A file the run writes and the size it should end at: while the run goes
    // on, its progress is told as the share of that size written so far.
    QString growingFile = {};
    qint64 expectedBytes = 0;
};
struct RequireFile { // end the plan with an alert unless the file exists
    QString path;
    QString alert;
};
struct ProbeDuration { // ffmpeg "-i" path; the parsed whole seconds go into the outcome
    QString path;
};
} // namespace step

using Step = std::variant<step::DeleteFile, step::Run, step::RequireFile, step::ProbeDuration>;

struct Plan {
    std::vector<Step> steps;
};

struct PlanOutcome {
    bool ok = true;
    QString alert;                 // set when a RequireFile step failed
    std::optional<qint64> seconds; // the last probed duration
    QList<ToolRun> runs;           // every tool run the plan made, in order
};

// The tool runs of a plan in order, as (tool, arguments): what tests compare.
struct PlannedRun {
    Tool tool;
    QStringList arguments;
    bool operator==(const PlannedRun&) const = default;
};
QList<PlannedRun> plannedRuns(const Plan& plan);

QString toolName(Tool tool);

struct ToolPaths;

// Executes a plan on the calling thread. `progress` is told before each tool
// run: its index among the plan's runs, their count and the tool's name, with
// `percent` -1; during a run with an expected output, a few times a second,
// with the share of it written so far (0 to 99).
using PlanProgress = std::function<void(int index, int count, const QString& tool, int percent)>;

// The share of `expectedBytes` that `writtenBytes` is, held below 100 while the
// run goes on (the estimate may fall short); -1 when nothing is expected.
int progressPercent(qint64 writtenBytes, qint64 expectedBytes);
PlanOutcome executePlan(const Plan& plan, const ToolPaths& tools, const PlanProgress& progress = {});
