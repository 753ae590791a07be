#include "SplitPlans.h"

#include <QFileInfo>
#include <QRegularExpression>

namespace splitting {

QString base(const QString& wav) {
    return QFileInfo(wav).completeBaseName();
}

QString piecePath(const QString& workFolder, const QString& stem, int n) {
    return QStringLiteral("%1/%2").arg(workFolder, stem + QStringLiteral("_PART_%1.wav").arg(n));
}

QString pieceStem(const QString& wav, const QStringList& kept) {
    const auto taken = [&](const QString& stem) {
        const QRegularExpression piece(QRegularExpression::anchoredPattern(
            QRegularExpression::escape(stem) + QStringLiteral("_PART_[0-9]+\\.wav")));
        return std::any_of(kept.begin(), kept.end(), [&](const QString& file) {
            return piece.match(QFileInfo(file).fileName()).hasMatch();
        });
    };
    QString stem = base(wav);
    for (int n = 2; taken(stem); ++n)
        stem = base(wav) + QStringLiteral(" (%1)").arg(n);
    return stem;
}

namespace {
// ffmpeg's cut of `duration` from `start` into `piece`, after deleting what
// was there; the piece must hold that stretch of the track.
void addCut(Plan& plan, const QString& wav, const QString& start, const QString& duration,
            const QString& piece) {
    plan.steps.push_back(step::DeleteFile{piece});
    plan.steps.push_back(step::Run{Tool::FFmpeg, {"-i", wav, "-ss", start, "-t", duration, piece}});
    plan.steps.push_back(step::RequireAudio{piece,
                                            QStringLiteral("Split into parts"),
                                            true,
                                            {},
                                            wav,
                                            secondsOfTimeString(start),
                                            secondsOfTimeString(duration)});
}
} // namespace

SplitPlan buildSplitAtPositionPlan(const QString& wav, const QString& workFolder, const SegmentVariables& v,
                                   const QString& stem) {
    SplitPlan split;
    split.pieces = {piecePath(workFolder, stem, 1), piecePath(workFolder, stem, 2)};
    addCut(split.plan, wav, "0", v.sCurrentPosition, split.pieces[0]);
    addCut(split.plan, wav, v.sCurrentPosition, v.sDurationSegmentAfterCurrentPosition, split.pieces[1]);
    return split;
}

SplitPlan buildSplitAroundSelectionPlan(const QString& wav, const QString& workFolder,
                                        const SegmentVariables& v, const QString& stem) {
    SplitPlan split;
    split.pieces = {piecePath(workFolder, stem, 1), piecePath(workFolder, stem, 2),
                    piecePath(workFolder, stem, 3)};
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

QString silencePattern(const QString& wav, const QString& stem) {
    return QFileInfo(wav).path() + u'/' + stem + QStringLiteral("_PART_.wav");
}

QString silencePiecePath(const QString& wav, const QString& stem, int n) {
    return QFileInfo(wav).path() + u'/' + stem + QStringLiteral("_PART_") + QString::asprintf("%03d", n) +
           QStringLiteral(".wav");
}

QStringList silenceArguments(const QString& wav, const SilenceSettings& settings, const QString& stem) {
    const QString minimum = QString::asprintf("%.2f", double(settings.f_Minimum));
    const QString maximum = QString::asprintf("%.2f", double(settings.f_Maximum));
    const QString threshold = QString::asprintf("%d", int(settings.f_Threshold)) + u'%';
    return {wav,       silencePattern(wav, stem),
            "silence", "1",
            minimum,   threshold,
            "1",       maximum,
            threshold, ":",
            "newfile", ":",
            "restart"};
}

Plan buildSplitOnSilencePlan(const QString& wav, const SilenceSettings& settings, const QString& stem) {
    return {{step::Run{Tool::Sox, silenceArguments(wav, settings, stem)}}};
}

SilencePieces findSilencePieces(const QString& wav, const QString& stem,
                                const std::function<qint64(const QString&)>& frames) {
    SilencePieces found;
    for (int n = 1;; ++n) {
        const QString piece = silencePiecePath(wav, stem, n);
        const qint64 count = frames(piece);
        if (count == 0)
            found.empty = piece;
        if (count <= 0)
            return found;
        found.pieces.append(piece);
    }
}

} // namespace splitting
