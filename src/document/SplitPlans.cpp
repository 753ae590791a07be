#include "SplitPlans.h"

#include <QFileInfo>

namespace splitting {

QString base(const QString& wav) {
    return QFileInfo(wav).completeBaseName();
}

QString piecePath(const QString& workFolder, const QString& wav, int n) {
    return QStringLiteral("%1/%2").arg(workFolder, base(wav) + QStringLiteral("_PART_%1.wav").arg(n));
}

namespace {
// ffmpeg's cut of `duration` from `start` into `piece`, after deleting what was there.
void addCut(Plan& plan, const QString& wav, const QString& start, const QString& duration,
            const QString& piece) {
    plan.steps.push_back(step::DeleteFile{piece});
    plan.steps.push_back(step::Run{Tool::FFmpeg, {"-i", wav, "-ss", start, "-t", duration, piece}});
}
} // namespace

SplitPlan buildSplitAtPositionPlan(const QString& wav, const QString& workFolder, const SegmentVariables& v) {
    SplitPlan split;
    split.pieces = {piecePath(workFolder, wav, 1), piecePath(workFolder, wav, 2)};
    addCut(split.plan, wav, "0", v.sCurrentPosition, split.pieces[0]);
    addCut(split.plan, wav, v.sCurrentPosition, v.sDurationSegmentAfterCurrentPosition, split.pieces[1]);
    return split;
}

SplitPlan buildSplitAroundSelectionPlan(const QString& wav, const QString& workFolder,
                                        const SegmentVariables& v) {
    SplitPlan split;
    split.pieces = {piecePath(workFolder, wav, 1), piecePath(workFolder, wav, 2),
                    piecePath(workFolder, wav, 3)};
    addCut(split.plan, wav, "0", v.sStartSelection, split.pieces[0]);
    addCut(split.plan, wav, v.sStartSelection, v.sDurationSelection, split.pieces[1]);
    addCut(split.plan, wav, v.sEndSelection, v.sDurationLastSegment, split.pieces[2]);
    return split;
}

QString silenceSettingsProblem(float minimum, float maximum) {
    // Compared in double precision: a typed 0.05 is stored as a float just
    // above the limit and is accepted.
    if (double(minimum) < 0.05)
        return QStringLiteral("Minimum duration invalid.");
    if (double(maximum) < 0.05)
        return QStringLiteral("Maximum duration invalid.");
    return {};
}

QString silencePattern(const QString& wav) {
    return QFileInfo(wav).path() + u'/' + base(wav) + QStringLiteral("_PART_.wav");
}

QString silencePiecePath(const QString& wav, int n) {
    return QFileInfo(wav).path() + u'/' + base(wav) + QStringLiteral("_PART_") +
           QString::asprintf("%03d", n) + QStringLiteral(".wav");
}

QStringList silenceArguments(const QString& wav, const SilenceSettings& settings) {
    const QString minimum = QString::asprintf("%.2f", double(settings.f_Minimum));
    const QString maximum = QString::asprintf("%.2f", double(settings.f_Maximum));
    const QString threshold = QString::asprintf("%d", int(settings.f_Threshold)) + u'%';
    return {wav,     silencePattern(wav), "silence", "1",       minimum, threshold, "1",
            maximum, threshold,           ":",       "newfile", ":",     "restart"};
}

Plan buildSplitOnSilencePlan(const QString& wav, const SilenceSettings& settings) {
    return {{step::Run{Tool::Sox, silenceArguments(wav, settings)}}};
}

QStringList findSilencePieces(const QString& wav, const std::function<bool(const QString&)>& exists) {
    QStringList pieces;
    for (int n = 1;; ++n) {
        const QString piece = silencePiecePath(wav, n);
        if (!exists(piece))
            return pieces;
        pieces.append(piece);
    }
}

} // namespace splitting
