#include "Plan.h"

#include "Duration.h"
#include "RemovedFiles.h"
#include "ToolPaths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <algorithm>
#include <sndfile.h>

namespace {
template <class... Ts> struct Overloaded : Ts... { using Ts::operator()...; };
} // namespace

QString toolName(Tool tool) {
    return tool == Tool::Sox ? QStringLiteral("sox") : QStringLiteral("ffmpeg");
}

QList<PlannedRun> plannedRuns(const Plan& plan) {
    QList<PlannedRun> runs;
    for (const Step& s : plan.steps) {
        std::visit(Overloaded{[&](const step::Run& r) {
                                  runs.append({r.tool, r.arguments});
                              },
                              [&](const step::ProbeDuration& p) {
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

NewFiles filesNotYetThere(const Plan& plan) {
    QStringList named;
    NewFiles files;
    for (const Step& s : plan.steps)
        std::visit(Overloaded{[&](const step::DeleteFile& d) { named << d.path; },
                              [&](const step::Run& r) { namedByRun(r, named, files.numberedStems); },
                              [&](const step::RequireFile& r) { named << r.path; },
                              [&](const step::RequireAudio& r) { named << r.path; },
                              [](const step::ProbeDuration&) {}},
                   s);
    named.removeDuplicates();
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

bool isReadableAudio(const QString& path, bool needFrames) {
    SF_INFO info{};
    SNDFILE* file = sf_open(QFile::encodeName(path).constData(), SFM_READ, &info);
    if (!file)
        return false;
    sf_close(file);
    return !needFrames || info.frames > 0;
}

QString unusableAudioMessage(const QString& operation, const ToolRun* lastRun) {
    QString text = QStringLiteral("%1 produced no usable audio.").arg(operation);
    if (lastRun) {
        if (const QString line = lastOutputLine(lastRun->output); !line.isEmpty())
            text += QStringLiteral("\n\n%1 said: “%2”").arg(QFileInfo(lastRun->program).fileName(), line);
    }
    return text;
}

QString asideName(const QString& path) {
    const QFileInfo info(path);
    return info.dir().filePath(QStringLiteral(".") + info.completeBaseName() +
                               QStringLiteral("-replaced.wav"));
}

void SetAside::replace(const QString& path) {
    if (!QFileInfo::exists(path))
        return;
    const QString aside = asideName(path);
    QFile::remove(aside);
    if (!QFile::rename(path, aside)) {
        QFile::remove(path);
        return;
    }
    m_files.append({path, aside});
    m_pendingReads.insert(path, aside);
}

QStringList SetAside::arguments(QStringList arguments) {
    // A set-aside file that a run has written again is read from its new self.
    m_pendingReads.removeIf(
        [](QHash<QString, QString>::iterator entry) { return QFileInfo::exists(entry.key()); });
    qsizetype output = -1; // the last path a run names is what it writes
    for (qsizetype i = 0; i < arguments.size(); ++i)
        if (looksLikePath(arguments[i]))
            output = i;
    for (qsizetype i = 0; i < arguments.size(); ++i)
        if (i != output)
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
    auto run = [&](Tool tool, const QStringList& arguments, const QString& growing = {},
                   qint64 expected = 0) -> bool {
        const int index = int(outcome.runs.size());
        if (progress)
            progress(index, count, toolName(tool), -1);
        RunControl control;
        if (progress && expected > 0)
            control.tick = [&] {
                progress(index, count, toolName(tool), progressPercent(QFileInfo(growing).size(), expected));
            };
        control.cancel = cancel;
        control.processId = processId;
        control.preload = tools.signalGuard;
        outcome.runs.append(
            runTool(tool == Tool::Sox ? tools.sox : tools.ffmpeg, replaced.arguments(arguments), control));
        const ToolRun& last = outcome.runs.last();
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
            Overloaded{
                [&](const step::DeleteFile& d) {
                    replaced.replace(d.path);
                    return true;
                },
                [&](const step::Run& r) { return run(r.tool, r.arguments, r.growingFile, r.expectedBytes); },
                [&](const step::RequireFile& r) { return QFileInfo::exists(r.path) || fail(r.alert); },
                [&](const step::RequireAudio& r) {
                    if (isReadableAudio(r.path, !r.mayBeEmpty))
                        return true;
                    takeBack = true;
                    return fail(unusableAudioMessage(
                        r.operation, outcome.runs.isEmpty() ? nullptr : &outcome.runs.last()));
                },
                [&](const step::ProbeDuration& p) {
                    if (!run(Tool::FFmpeg, probeArguments(p.path)))
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
