#include "EffectPlans.h"

#include "tools/ToolArguments.h"

QStringList soxArguments(const EffectArguments& e, const QString& input, const QString& output) {
    return e.global + QStringList{input, output} + e.effect;
}

QString effectOperationName(const EffectArguments& arguments) {
    QString name = arguments.effect.value(0);
    if (name.isEmpty()) // the global options alone: a gain
        name = arguments.global.join(u' ').contains(QStringLiteral("--norm")) ? QStringLiteral("normalize")
                                                                              : QStringLiteral("amplify");
    return QStringLiteral("The %1 effect").arg(name);
}

EditPlan buildEffectPlan(const EditState& s, const ResultNames& names, const EffectArguments& arguments) {
    const QString result = names.path();
    EditPlan edit;
    edit.plan.steps = {
        step::DeleteFile{result}, step::Run{Tool::Sox, soxArguments(arguments, s.track, result)},
        step::RequireFile{result, parametersNotAcceptedMessage()},
        step::RequireAudio{result, effectOperationName(arguments)}, step::ProbeDuration{result}};
    edit.result = result;
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
        step::Run{Tool::Sox, soxArguments(arguments, selection, processed)},
        step::RequireFile{processed, parametersNotAcceptedMessage()},
        step::DeleteFile{result},
        step::Run{Tool::FFmpeg, joinArguments({before, processed, after}, result)},
        step::RequireAudio{result, effectOperationName(arguments)},
        step::ProbeDuration{result},
    };
    edit.result = result;
    edit.deleteAfterAdopting = {before, selection, after, processed};
    edit.replay = notReplayable::selection();
    return edit;
}
