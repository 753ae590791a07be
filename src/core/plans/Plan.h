#pragma once

#include "tools/ToolRunner.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <atomic>
#include <functional>
#include <optional>
#include <variant>
#include <vector>

enum class Tool { Sox, FFmpeg };

struct PlanOutcome;

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
    // A run that exits with an error but leaves its output behind ends the
    // plan, unless a later Check step judges it (an export, in its own words).
    bool judgedLater = false;
    // The file the run writes, where that is not the last path it names (sox's
    // "noisered" names its profile after its output). Where it names this file
    // more than once, the last of them is the output and the others are read.
    QString writes = {};
};
// The file a run writes: `writes`, or else the last path it names; nothing
// for a run whose last word is "-" (it writes to its standard output).
QString outputOf(const step::Run& run);
struct RequireFile { // end the plan with an alert unless the file exists
    QString path;
    QString alert;
};
struct ProbeDuration { // ffmpeg "-i" path; the parsed whole seconds go into the outcome
    QString path;
    // For a length that is only measured, never shown (the room an import
    // needs): a WAV, FLAC or AIFF file's is read from its header instead, in
    // a moment and without a run.
    bool headerFirst = false;
};
// End the plan with an alert unless the file is audio a WAV reader can open: a
// tool may leave an empty file or a stub behind and still exit normally.
struct RequireAudio {
    QString path;
    QString operation; // named in the alert: "Delete", "The echo effect", "Opening “a.mp3”"
    // A track of no length is audio where an edit makes one (deleting
    // everything); a file that was opened must hold at least one frame.
    bool mayBeEmpty = true;
    // How long the result must be, when that is known before it is made: the
    // sum of the files it joins; `duration` seconds of `source` from `start`
    // (ending at the source's end at the latest); or, with neither, exactly
    // `duration` seconds. A negative duration: not known. Checked from the
    // headers, to within a frame per second of audio.
    QStringList joined = {};
    QString source = {};
    double start = 0, duration = -1;
};
// End the plan, taking back what it wrote and putting back what it replaced,
// when `problem` finds something wrong with what the plan did so far (its
// runs, the duration it last probed); its text is the alert.
struct Check {
    std::function<QString(const PlanOutcome& sofar)> problem;
};
// Read the figures `names` from what the last run printed (see
// PrintedFigures.h) into the outcome, where later runs' marks take them.
// With an alert, the plan ends with it unless every one is a plain number.
struct ReadFigures {
    QStringList names;
    QString alert = {};
};
} // namespace step

using Step = std::variant<step::DeleteFile, step::Run, step::RequireFile, step::ProbeDuration,
                          step::RequireAudio, step::Check, step::ReadFigures>;

struct Plan {
    std::vector<Step> steps;
};

struct PlanOutcome {
    bool ok = true;
    bool cancelled = false;          // the user cancelled: no alert, the plan's files are gone
    QString alert;                   // why the plan failed, for the user; empty when cancelled
    std::optional<qint64> seconds;   // the last probed duration
    QList<ToolRun> runs;             // every tool run the plan made, in order
    QHash<QString, QString> figures; // what its ReadFigures steps read, by name
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
// What a plan deletes is only set aside until the plan ends: results are named
// by the second, so an operation of the same second as the one before it
// replaces that one's file, and that file may be the very one it reads (the
// current version, or the copied audio). Until the plan writes such a file
// again, a run that names it anywhere but as its output reads the old file from where it was set aside. A
// plan that succeeds deletes what it set aside; one that fails puts back every file that was there before it
// began, so it leaves the work folder, and every document's files, as they were.
class SetAside {
public:
    void replace(const QString& path); // the plan deletes `path`
    // A run's arguments with every set-aside file it reads taken from where
    // it was set aside; its output (the last place it names `output`) stays.
    QStringList arguments(QStringList arguments, const QString& output);
    void finish(bool restore, const QStringList& madeByThePlan);

private:
    QList<std::pair<QString, QString>> m_files; // (path, where it is set aside)
    QHash<QString, QString> m_pendingReads;
};
// The hidden name beside `path` that it is set aside under: ".<name>-replaced.wav"
// for "<name>.wav", or with `number` ".<name>-replaced-2.wav" and so on, when
// that one is taken.
QString asideName(const QString& path, int number = 1);

// A run that does not end normally (a crash, a kill, a failed start, or a cancel
// through `cancel`) ends the plan: what it wrote is deleted and the outcome
// says what happened. So does a RequireAudio step that finds no usable audio.
// `processId` holds the running child's id while there is one.
PlanOutcome executePlan(const Plan& plan, const ToolPaths& tools, const PlanProgress& progress = {},
                        const std::atomic<bool>* cancel = nullptr, std::atomic<qint64>* processId = nullptr);

// The files a plan may write that do not exist yet: every path it names that
// is missing now, and for a sox run that splits with "newfile", the numbered
// names sox would make from its output's name. What of these exists after a
// failed run was written by the plan.
struct NewFiles {
    QStringList paths;
    QStringList numberedStems;    // sox writes stem + "001" + ".wav", ...
    QStringList numberedExisting; // such numbered files that were there before
};
NewFiles filesNotYetThere(const Plan& plan);
// Every path a plan names: what it reads, writes, deletes or checks.
QStringList filesNamedBy(const Plan& plan);
void deleteWrittenFiles(const NewFiles& files);
