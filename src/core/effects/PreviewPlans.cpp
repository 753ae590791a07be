#include "PreviewPlans.h"

#include "names/Names.h"
#include "timeline/TimeStrings.h"
#include "tools/ToolArguments.h"

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

PreviewFiles previewFiles(const QString& workFolder, quint64 windowId) {
    const auto file = [&](const char* part) {
        return pathInFolder(workFolder,
                            QStringLiteral(".preview-%1%2.wav").arg(windowId).arg(QLatin1String(part)));
    };
    return {file("-lead"), file("-part"), file("-processed"), file("")};
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
            Tool::FFmpeg, segmentArguments(s.track, stretch.leadStart, stretch.leadDuration, files.lead)});
    plan.steps.push_back(
        step::Run{Tool::FFmpeg, segmentArguments(s.track, stretch.start, stretch.duration, files.part)});
    plan.steps.push_back(step::Run{Tool::Sox, soxArguments(arguments, files.part, processed)});
    plan.steps.push_back(step::RequireFile{processed, parametersNotAcceptedMessage()});
    if (lead)
        plan.steps.push_back(step::Run{Tool::FFmpeg, joinArguments({files.lead, processed}, files.preview)});
    plan.steps.push_back(step::RequireAudio{files.preview, effectOperationName(arguments)});
    // Only the preview stays.
    for (const QString& file :
         lead ? QStringList{files.lead, files.part, files.processed} : QStringList{files.part})
        plan.steps.push_back(step::DeleteFile{file});
    return plan;
}
