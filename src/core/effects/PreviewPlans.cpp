#include "PreviewPlans.h"

#include "effects/EffectCatalogue.h"
#include "names/Names.h"
#include "timeline/TimeStrings.h"
#include "tools/ToolArguments.h"

#include <QRegularExpression>
#include <algorithm>

PreviewStretch previewStretch(const EditState& s, bool selection) {
    PreviewStretch stretch;
    if (!selection) {
        stretch.start = s.seg.sCurrentPosition;
        stretch.duration = hundredthsTimeString(PreviewSeconds);
        return stretch;
    }
    stretch.start = s.seg.sStartSelection;
    const double start = secondsOfTimeString(s.seg.sStartSelection);
    stretch.duration = secondsOfTimeString(s.seg.sDurationSelection) > PreviewSeconds
                           ? hundredthsTimeString(PreviewSeconds)
                           : s.seg.sDurationSelection;
    const double lead = std::min(PreviewLeadSeconds, start);
    if (lead > 0) {
        stretch.leadStart = hundredthsTimeString(start - lead);
        stretch.leadDuration = hundredthsTimeString(lead);
    }
    return stretch;
}

PreviewFiles previewFiles(const QString& workFolder, quint64 windowId, int slot) {
    const auto file = [&](const QString& part, const char* suffix = ".wav") {
        return pathInFolder(workFolder,
                            QStringLiteral(".preview-%1%2%3").arg(windowId).arg(part, QLatin1String(suffix)));
    };
    const QString heard = slot == 0 ? QString() : QStringLiteral("-%1").arg(slot);
    return {file(QStringLiteral("-lead")),      file(QStringLiteral("-part")),
            file(QStringLiteral("-processed")), file(heard),
            file(QStringLiteral("-noise")),     file(QString(), ".prof"),
            file(QStringLiteral("-whole"))};
}

Plan buildPreviewPlan(const EditState& s, const PreviewFiles& files, const EffectArguments& arguments,
                      bool selection) {
    const PreviewStretch stretch = previewStretch(s, selection);
    const bool lead = !stretch.leadStart.isEmpty();
    // Without a lead-in sox writes the preview itself.
    const QString processed = lead ? files.processed : files.preview;
    Plan plan;
    for (const QString& file : files.all())
        plan.steps.push_back(step::DeleteFile{file}); // ffmpeg never overwrites
    if (lead)
        plan.steps.push_back(step::Run{
            Tool::Sox, soxSegmentArguments(s.track, stretch.leadStart, stretch.leadDuration, files.lead)});
    plan.steps.push_back(
        step::Run{Tool::Sox, soxSegmentArguments(s.track, stretch.start, stretch.duration, files.part)});
    // An effect that measures (loudness normalisation) measures what applying
    // it measures: the whole track, or the whole selection, which is the
    // stretch already cut when it fits in a preview.
    QString measured = selection ? files.part : s.track;
    if (arguments.steps && selection && stretch.duration != s.seg.sDurationSelection) {
        plan.steps.push_back(
            step::Run{Tool::Sox, soxSegmentArguments(s.track, s.seg.sStartSelection, s.seg.sDurationSelection,
                                                     files.whole)});
        measured = files.whole;
    }
    for (Step& run : effectSteps(arguments, files.part, processed, measured))
        plan.steps.push_back(std::move(run));
    plan.steps.push_back(step::RequireFile{processed, parametersNotAcceptedMessage()});
    if (lead)
        plan.steps.push_back(step::Run{Tool::FFmpeg, joinArguments({files.lead, processed}, files.preview)});
    plan.steps.push_back(step::RequireAudio{files.preview, effectOperationName(arguments)});
    // Only the preview stays.
    for (const QString& file : lead ? QStringList{files.lead, files.part, files.processed, files.whole}
                                    : QStringList{files.part, files.whole})
        plan.steps.push_back(step::DeleteFile{file});
    return plan;
}

Plan buildNoiseReductionPreviewPlan(const EditState& s, const PreviewFiles& files, float level) {
    const PreviewStretch stretch = previewStretch(s, false);
    Plan plan;
    for (const QString& file : files.all())
        plan.steps.push_back(step::DeleteFile{file});
    plan.steps.push_back(step::Run{Tool::Sox, soxSegmentArguments(s.track, s.seg.sStartSelection,
                                                                  s.seg.sDurationSelection, files.noise)});
    plan.steps.push_back(step::Run{Tool::Sox, {files.noise, "-n", "noiseprof", files.profile}});
    plan.steps.push_back(
        step::Run{Tool::Sox, soxSegmentArguments(s.track, stretch.start, stretch.duration, files.part)});
    plan.steps.push_back(step::Run{.tool = Tool::Sox,
                                   .arguments = {files.part, files.preview, "noisered", files.profile,
                                                 QString::asprintf("%.02f", double(level))},
                                   .writes = files.preview});
    plan.steps.push_back(step::RequireFile{files.preview, noiseNotRemovedMessage()});
    plan.steps.push_back(step::RequireAudio{files.preview, QStringLiteral("The noise reduction")});
    for (const QString& file : files.making())
        plan.steps.push_back(step::DeleteFile{file});
    return plan;
}

QString previewFailure(const PlanOutcome& outcome) {
    // sox says "/usr/bin/sox FAIL echo: echo: decay must be positive!", named
    // as it was started: the words after the effect's name are its own.
    static const QRegularExpression fail(QStringLiteral("^\\S*sox FAIL [^:]*: (.*)$"),
                                         QRegularExpression::MultilineOption);
    for (const ToolRun& run : outcome.runs)
        if (const QRegularExpressionMatch m = fail.match(run.output); m.hasMatch())
            return QStringLiteral("sox refused the values: %1").arg(m.captured(1).trimmed());
    return outcome.alert;
}
