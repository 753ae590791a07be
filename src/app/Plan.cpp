#include "Plan.h"

#include "Duration.h"
#include "ToolPaths.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>

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

PlanOutcome executePlan(const Plan& plan, const ToolPaths& tools, const PlanProgress& progress) {
    PlanOutcome outcome;
    const int count = int(plannedRuns(plan).size());
    auto run = [&](Tool tool, const QStringList& arguments, const QString& growing = {},
                   qint64 expected = 0) -> const ToolRun& {
        const int index = int(outcome.runs.size());
        if (progress)
            progress(index, count, toolName(tool), -1);
        std::function<void()> tick;
        if (progress && expected > 0)
            tick = [&] {
                progress(index, count, toolName(tool), progressPercent(QFileInfo(growing).size(), expected));
            };
        outcome.runs.append(runTool(tool == Tool::Sox ? tools.sox : tools.ffmpeg, arguments, tick));
        return outcome.runs.last();
    };
    for (const Step& s : plan.steps) {
        const bool carryOn =
            std::visit(Overloaded{[&](const step::DeleteFile& d) {
                                      QFile::remove(d.path);
                                      return true;
                                  },
                                  [&](const step::Run& r) {
                                      run(r.tool, r.arguments, r.growingFile, r.expectedBytes);
                                      return true;
                                  },
                                  [&](const step::RequireFile& r) {
                                      if (QFileInfo::exists(r.path))
                                          return true;
                                      outcome.ok = false;
                                      outcome.alert = r.alert;
                                      return false;
                                  },
                                  [&](const step::ProbeDuration& p) {
                                      outcome.seconds = secondsFromProbeOutput(
                                          run(Tool::FFmpeg, probeArguments(p.path)).output);
                                      return true;
                                  }},
                       s);
        if (!carryOn)
            break;
    }
    return outcome;
}
