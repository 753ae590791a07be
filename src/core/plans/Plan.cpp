#include "Plan.h"

#include "AudioChecks.h"
#include "PrintedFigures.h"
#include "RemovedFiles.h"
#include "tools/Duration.h"
#include "tools/ToolPaths.h"
#include "tools/WorkingFormat.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <algorithm>
#include <cmath>

namespace {
template <class... Ts> struct Overloaded : Ts... { using Ts::operator()...; };
} // namespace

QString toolName(Tool tool) {
    return tool == Tool::Sox ? QStringLiteral("sox") : QStringLiteral("ffmpeg");
}

namespace {
bool measuredWithoutARun(const step::ProbeDuration& p) {
    return p.headerFirst && secondsFromHeader(p.path).has_value();
}
} // namespace

QList<PlannedRun> plannedRuns(const Plan& plan) {
    QList<PlannedRun> runs;
    for (const Step& s : plan.steps) {
        std::visit(Overloaded{[&](const step::Run& r) {
                                  runs.append({r.tool, r.arguments});
                              },
                              [&](const step::ProbeDuration& p) {
                                  if (!measuredWithoutARun(p))
                                      runs.append({Tool::FFmpeg, probeArguments(p.path)});
                              },
                              [](const auto&) {}},
                   s);
    }
    return runs;
}

int progressPercent(qint64 writtenBytes, qint64 expectedBytes) {
    if (expectedBytes <= 0)
        return -1;
    return int(std::clamp<qint64>(writtenBytes * 100 / expectedBytes, 0, 99));
}

namespace {
bool looksLikePath(const QString& text) {
    return text.startsWith(u'/');
}

QString lastPathOf(const QStringList& arguments) {
    for (auto argument = arguments.crbegin(); argument != arguments.crend(); ++argument)
        if (looksLikePath(*argument))
            return *argument;
    return {};
}

// Files named stem + digits + ".wav" beside the stem.
QStringList numberedFiles(const QString& stem) {
    const QFileInfo info(stem);
    const QRegularExpression numbered(QRegularExpression::anchoredPattern(
        QRegularExpression::escape(info.fileName()) + QStringLiteral("[0-9]+\\.wav")));
    QStringList found;
    for (const QString& name : QDir(info.path()).entryList(QDir::Files))
        if (numbered.match(name).hasMatch())
            found << info.dir().filePath(name);
    return found;
}

// The paths a run names; for a sox run that splits with "newfile", also the
// stems of the outputs it numbers (an output path that is not there yet).
void namedByRun(const step::Run& r, QStringList& named, QStringList& numberedStems) {
    const bool numbers = r.tool == Tool::Sox && r.arguments.contains(QStringLiteral("newfile"));
    for (const QString& argument : r.arguments) {
        if (!looksLikePath(argument))
            continue;
        named << argument;
        if (numbers && argument.endsWith(QStringLiteral(".wav")) && !QFileInfo::exists(argument))
            numberedStems << argument.chopped(4);
    }
}
} // namespace

QString step::outputOf(const step::Run& run) {
    if (!run.writes.isEmpty())
        return run.writes;
    return run.arguments.value(run.arguments.size() - 1) == QLatin1String("-") ? QString()
                                                                               : lastPathOf(run.arguments);
}

namespace {
QStringList namedBy(const Plan& plan, QStringList& numberedStems) {
    QStringList named;
    for (const Step& s : plan.steps)
        std::visit(Overloaded{[&](const step::DeleteFile& d) { named << d.path; },
                              [&](const step::Run& r) { namedByRun(r, named, numberedStems); },
                              [&](const step::RequireFile& r) { named << r.path; },
                              [&](const step::RequireAudio& r) { named << r.path; },
                              [](const step::ProbeDuration&) {}, [](const step::Check&) {},
                              [](const step::ReadFigures&) {}},
                   s);
    named.removeDuplicates();
    return named;
}
} // namespace

QStringList filesNamedBy(const Plan& plan) {
    QStringList numberedStems;
    return namedBy(plan, numberedStems);
}

NewFiles filesNotYetThere(const Plan& plan) {
    NewFiles files;
    const QStringList named = namedBy(plan, files.numberedStems);
    for (const QString& path : std::as_const(named))
        if (!QFileInfo::exists(path))
            files.paths << path;
    for (const QString& stem : std::as_const(files.numberedStems))
        files.numberedExisting << numberedFiles(stem);
    return files;
}

void deleteWrittenFiles(const NewFiles& files) {
    for (const QString& path : files.paths)
        QFile::remove(path);
    for (const QString& stem : files.numberedStems)
        for (const QString& path : numberedFiles(stem))
            if (!files.numberedExisting.contains(path))
                QFile::remove(path);
}

namespace {

// How a plan names itself in an alert: as its result check does.
QString operationOf(const Plan& plan) {
    for (const Step& s : plan.steps)
        if (const auto* audio = std::get_if<step::RequireAudio>(&s))
            return audio->operation;
    return QStringLiteral("The operation");
}

double secondsOf(qint64 frames) {
    return double(frames) / workingFormat::SampleRate;
}

// What a run read in place of the paths it was given: the files set aside
// before the run, keyed by the path the plan named.
using ReadInstead = QHash<QString, QString>;

// The frames a result must hold, when the step knows it; -1 when it does not.
qint64 expectedFrames(const step::RequireAudio& r, const ReadInstead& read) {
    if (!r.joined.isEmpty()) {
        qint64 sum = 0;
        for (const QString& input : r.joined) {
            const qint64 frames = audioFrames(read.value(input, input));
            if (frames < 0)
                return -1;
            sum += frames;
        }
        return sum;
    }
    if (!r.source.isEmpty() && r.duration >= 0) {
        const qint64 frames = audioFrames(read.value(r.source, r.source));
        if (frames < 0)
            return -1;
        const double available = std::max(0.0, secondsOf(frames) - std::max(0.0, r.start));
        return std::llround(std::clamp(r.duration, 0.0, available) * workingFormat::SampleRate);
    }
    if (r.duration >= 0 && r.source.isEmpty())
        return std::llround(r.duration * workingFormat::SampleRate);
    return -1;
}

QString withDiskReason(const QString& text, const QString& path) {
    const QString disk = fullDiskReason(QFileInfo(path).path());
    return disk.isEmpty() ? text : text + QStringLiteral("\n\n") + disk;
}

QString damagedFileMessage(const QString& operation, const QString& path) {
    const QString header = wavHeaderProblem(path);
    if (header.isEmpty())
        return {};
    return withDiskReason(QStringLiteral("%1 produced a damaged file, “%2”: %3. A tool was stopped or the "
                                         "disk filled while it was written.")
                              .arg(operation, QFileInfo(path).fileName(), header),
                          path);
}

// A result that is audio may still be cut off: its header disagrees with its
// size, or it is shorter or longer than what it was made from.
QString resultProblem(const step::RequireAudio& r, const ReadInstead& read) {
    const QString name = QFileInfo(r.path).fileName();
    if (const QString damaged = damagedFileMessage(r.operation, r.path); !damaged.isEmpty())
        return damaged;
    const qint64 expected = expectedFrames(r, read);
    if (expected < 0)
        return {};
    const qint64 frames = audioFrames(r.path);
    const qint64 tolerance = qint64(std::ceil(secondsOf(expected))) + 1;
    if (std::abs(frames - expected) <= tolerance)
        return {};
    return withDiskReason(QStringLiteral("%1 produced %2 s of audio in “%3” where %4 s were expected.")
                              .arg(r.operation)
                              .arg(secondsOf(frames), 0, 'f', 2)
                              .arg(name)
                              .arg(secondsOf(expected), 0, 'f', 2),
                          r.path);
}
} // namespace

QString asideName(const QString& path, int number) {
    const QFileInfo info(path);
    const QString count = number > 1 ? QStringLiteral("-%1").arg(number) : QString();
    const QString suffix = info.suffix().isEmpty() ? QString() : u'.' + info.suffix();
    return info.dir().filePath(QStringLiteral(".") + info.completeBaseName() + QStringLiteral("-replaced") +
                               count + suffix);
}

void SetAside::replace(const QString& path) {
    if (!QFileInfo::exists(path))
        return;
    // Beside a file of the user's (an export's destination) the hidden name
    // may be taken already: that file is left alone and another name used.
    QString aside = asideName(path);
    for (int n = 2; QFileInfo::exists(aside); ++n)
        aside = asideName(path, n);
    if (!QFile::rename(path, aside)) {
        QFile::remove(path);
        return;
    }
    m_files.append({path, aside});
    m_pendingReads.insert(path, aside);
}

QStringList SetAside::arguments(QStringList arguments, const QString& output) {
    // A set-aside file that a run has written again is read from its new self.
    m_pendingReads.removeIf(
        [](QHash<QString, QString>::iterator entry) { return QFileInfo::exists(entry.key()); });
    const qsizetype written = output.isEmpty() ? -1 : arguments.lastIndexOf(output);
    for (qsizetype i = 0; i < arguments.size(); ++i)
        if (i != written)
            arguments[i] = m_pendingReads.value(arguments[i], arguments[i]);
    return arguments;
}

void SetAside::finish(bool restore, const QStringList& madeByThePlan) {
    for (auto it = m_files.crbegin(); it != m_files.crend(); ++it) {
        if (restore && !madeByThePlan.contains(it->first)) {
            QFile::remove(it->first);
            QFile::rename(it->second, it->first);
        } else {
            QFile::remove(it->second);
            removedFiles::note(it->first);
        }
    }
    m_files.clear();
    m_pendingReads.clear();
}

PlanOutcome executePlan(const Plan& plan, const ToolPaths& tools, const PlanProgress& progress,
                        const std::atomic<bool>* cancel, std::atomic<qint64>* processId) {
    PlanOutcome outcome;
    const NewFiles newFiles = filesNotYetThere(plan);
    SetAside replaced;
    bool takeBack = false; // the plan's own files go when it ends this way
    const int count = int(plannedRuns(plan).size());
    // Runs one tool; false when it did not end normally, which ends the plan.
    const QString operation = operationOf(plan);
    QHash<QString, ReadInstead> readBy; // by the file a run wrote
    auto run = [&](const step::Run& r) -> bool {
        const Tool tool = r.tool;
        const QStringList arguments = fillFigures(r.arguments, outcome.figures);
        const int index = int(outcome.runs.size());
        if (progress)
            progress(index, count, toolName(tool), -1);
        RunControl control;
        if (progress && r.expectedBytes > 0)
            control.tick = [&] {
                progress(index, count, toolName(tool),
                         progressPercent(QFileInfo(r.growingFile).size(), r.expectedBytes));
            };
        control.cancel = cancel;
        control.processId = processId;
        control.preload = tools.signalGuard;
        const QString output = outputOf(r);
        const bool outputWasThere = QFileInfo::exists(output);
        const QStringList actual = replaced.arguments(arguments, output);
        ReadInstead& read = readBy[output];
        read.clear();
        for (qsizetype i = 0; i < arguments.size(); ++i)
            if (actual[i] != arguments[i])
                read.insert(arguments[i], actual[i]);
        outcome.runs.append(runTool(tool == Tool::Sox ? tools.sox : tools.ffmpeg, actual, control));
        const ToolRun& last = outcome.runs.last();
        // A tool that refuses its arguments writes nothing, and the steps after
        // it say so in the operation's own words. One that fails and leaves a
        // file, or leaves a WAV whose header disagrees with its size (sox ends
        // normally on a full disk), has stopped partway: that file is not to be
        // taken for a result, and the reason is told now.
        if (last.end == RunEnd::Exited && !r.judgedLater && !output.isEmpty() && !outputWasThere &&
            QFileInfo::exists(output)) {
            // (What is no audio at all is left to the step that requires audio.)
            const QString problem = last.exitCode != 0        ? failedWriteMessage(operation, last, output)
                                    : isReadableAudio(output) ? damagedFileMessage(operation, output)
                                                              : QString();
            if (!problem.isEmpty()) {
                takeBack = true;
                outcome.ok = false;
                outcome.alert = problem;
                return false;
            }
        }
        if (last.end == RunEnd::Exited)
            return true;
        outcome.ok = false;
        takeBack = true;
        outcome.cancelled = last.end == RunEnd::Cancelled;
        outcome.alert = outcome.cancelled ? QString() : abnormalEndMessage(last);
        return false;
    };
    auto fail = [&](const QString& alert) {
        outcome.ok = false;
        outcome.alert = alert;
        return false;
    };
    for (const Step& s : plan.steps) {
        if (cancel && cancel->load()) { // cancelled between two runs
            outcome.ok = false;
            outcome.cancelled = takeBack = true;
            break;
        }
        const bool carryOn = std::visit(
            Overloaded{[&](const step::DeleteFile& d) {
                           replaced.replace(d.path);
                           return true;
                       },
                       [&](const step::Run& r) { return run(r); },
                       [&](const step::RequireFile& r) { return QFileInfo::exists(r.path) || fail(r.alert); },
                       [&](const step::RequireAudio& r) {
                           QString problem;
                           if (!isReadableAudio(r.path, !r.mayBeEmpty))
                               problem = unusableAudioMessage(
                                   r.operation, outcome.runs.isEmpty() ? nullptr : &outcome.runs.last());
                           else
                               problem = resultProblem(r, readBy.value(r.path));
                           if (problem.isEmpty())
                               return true;
                           takeBack = true;
                           return fail(problem);
                       },
                       [&](const step::ReadFigures& f) {
                           const QHash<QString, QString> read = readPrintedFigures(
                               outcome.runs.isEmpty() ? QString() : outcome.runs.last().output, f.names);
                           outcome.figures.insert(read);
                           const bool allPlain =
                               std::all_of(f.names.cbegin(), f.names.cend(),
                                           [&](const QString& n) { return isPlainNumber(read.value(n)); });
                           if (f.alert.isEmpty() || allPlain)
                               return true;
                           takeBack = true;
                           return fail(f.alert);
                       },
                       [&](const step::Check& c) {
                           const QString problem = c.problem ? c.problem(outcome) : QString();
                           if (problem.isEmpty())
                               return true;
                           takeBack = true;
                           return fail(problem);
                       },
                       [&](const step::ProbeDuration& p) {
                           if (p.headerFirst)
                               if (const std::optional<qint64> seconds = secondsFromHeader(p.path)) {
                                   outcome.seconds = seconds;
                                   return true;
                               }
                           if (!run(step::Run{Tool::FFmpeg, probeArguments(p.path)}))
                               return false;
                           outcome.seconds = secondsFromProbeOutput(outcome.runs.last().output);
                           return true;
                       }},
            s);
        if (!carryOn)
            break;
    }
    // A plan that ended abnormally or found no usable audio takes back what it
    // wrote. A missing file (RequireFile) is judged as before: the parts made so
    // far stay, as every edit's own rules say.
    replaced.finish(!outcome.ok, newFiles.paths);
    if (takeBack)
        deleteWrittenFiles(newFiles);
    return outcome;
}
