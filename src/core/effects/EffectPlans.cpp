#include "EffectPlans.h"

#include "tools/ToolArguments.h"

QStringList soxArguments(const EffectArguments& e, const QString& input, const QString& output) {
    return e.global + QStringList{input, output} + e.effect;
}

std::vector<Step> effectSteps(const EffectArguments& e, const QString& input, const QString& output,
                              const QString& measured) {
    if (e.steps)
        return e.steps(input, output, measured.isEmpty() ? input : measured);
    return {step::Run{Tool::Sox, soxArguments(e, input, output)}};
}

QString effectOperationName(const EffectArguments& arguments) {
    if (!arguments.operation.isEmpty())
        return arguments.operation;
    QString name = arguments.effect.value(0);
    if (name.isEmpty()) // the global options alone: a gain
        name = arguments.global.join(u' ').contains(QStringLiteral("--norm")) ? QStringLiteral("normalize")
                                                                              : QStringLiteral("amplify");
    return QStringLiteral("The %1 effect").arg(name);
}

EditPlan buildEffectPlan(const EditState& s, const ResultNames& names, const EffectArguments& arguments) {
    const QString result = names.path();
    EditPlan edit;
    edit.plan.steps = {step::DeleteFile{result}};
    for (Step& run : effectSteps(arguments, s.track, result))
        edit.plan.steps.push_back(std::move(run));
    edit.plan.steps.insert(edit.plan.steps.end(), {step::RequireFile{result, parametersNotAcceptedMessage()},
                                                   step::RequireAudio{result, effectOperationName(arguments)},
                                                   step::ProbeDuration{result}});
    edit.result = result;
    edit.notice = arguments.notice;
    return edit;
}

EditPlan buildEffectSelectionPlan(const EditState& s, const ResultNames& names,
                                  const EffectArguments& arguments) {
    const QString before = names.path("Before"), selection = names.path("Selection"),
                  after = names.path("After"), processed = names.path("SelectionAfterAmplify"),
                  result = names.path();
    const SegmentVariables& v = s.seg;
    EditPlan edit;
    // ffmpeg never overwrites, so each part's old file goes before the part is cut.
    edit.plan.steps = {
        step::DeleteFile{before},
        step::Run{Tool::FFmpeg, segmentArguments(s.track, "0", v.sStartSelection, before)},
        step::DeleteFile{selection},
        step::Run{Tool::FFmpeg,
                  segmentArguments(s.track, v.sStartSelection, v.sDurationSelection, selection)},
        step::DeleteFile{after},
        step::Run{Tool::FFmpeg, segmentArguments(s.track, v.sEndSelection, v.sDurationLastSegment, after)},
        step::DeleteFile{processed},
    };
    for (Step& run : effectSteps(arguments, selection, processed))
        edit.plan.steps.push_back(std::move(run));
    edit.plan.steps.insert(
        edit.plan.steps.end(),
        {step::RequireFile{processed, parametersNotAcceptedMessage()}, step::DeleteFile{result},
         step::Run{Tool::FFmpeg, joinArguments({before, processed, after}, result)},
         step::RequireAudio{result, effectOperationName(arguments)}, step::ProbeDuration{result}});
    edit.result = result;
    edit.notice = arguments.notice;
    edit.deleteAfterAdopting = {before, selection, after, processed};
    edit.replay = notReplayable::selection();
    return edit;
}
