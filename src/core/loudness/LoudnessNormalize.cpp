#include "LoudnessNormalize.h"

#include "plans/PrintedFigures.h"
#include "tools/ToolArguments.h"
#include "tools/WorkingFormat.h"

namespace {
QString tenths(double value) {
    return QString::asprintf("%.1f", value);
}
} // namespace

const QStringList& loudnormMeasuredFigures() {
    static const QStringList names = {QStringLiteral("input_i"), QStringLiteral("input_tp"),
                                      QStringLiteral("input_lra"), QStringLiteral("input_thresh"),
                                      QStringLiteral("target_offset")};
    return names;
}

QString loudnormFilter(const LoudnessGoal& goal) {
    return QStringLiteral("loudnorm=I=%1:TP=%2:LRA=%3")
        .arg(tenths(goal.integrated), tenths(goal.truePeak), tenths(goal.range));
}

QStringList loudnormMeasureArguments(const LoudnessGoal& goal, const QString& measured) {
    return {QStringLiteral("-hide_banner"),
            QStringLiteral("-nostats"),
            QStringLiteral("-i"),
            measured,
            QStringLiteral("-af"),
            loudnormFilter(goal) + QStringLiteral(":print_format=json"),
            QStringLiteral("-f"),
            QStringLiteral("null"),
            QStringLiteral("-")};
}

QStringList loudnormApplyArguments(const LoudnessGoal& goal, const QString& input, const QString& output) {
    const QStringList& f = loudnormMeasuredFigures();
    const QString filter =
        loudnormFilter(goal) +
        QStringLiteral(":measured_I=%1:measured_TP=%2:measured_LRA=%3:measured_thresh=%4:offset=%5")
            .arg(figureMark(f[0]), figureMark(f[1]), figureMark(f[2]), figureMark(f[3]), figureMark(f[4])) +
        QStringLiteral(":linear=true:print_format=json,aresample=") + workingFormat::sampleRateText();
    return QStringList{QStringLiteral("-hide_banner"), QStringLiteral("-nostats"),
                       QStringLiteral("-i"),           input,
                       QStringLiteral("-af"),          filter} +
           conversionTail() + QStringList{output};
}

std::vector<Step> loudnessNormalizeSteps(const LoudnessGoal& goal, const QString& input,
                                         const QString& output, const QString& measured) {
    return {step::Run{Tool::FFmpeg, loudnormMeasureArguments(goal, measured)},
            step::ReadFigures{loudnormMeasuredFigures(), silentTrackMessage()},
            step::Run{Tool::FFmpeg, loudnormApplyArguments(goal, input, output)},
            step::ReadFigures{{QStringLiteral("normalization_type")}}};
}

QString silentTrackMessage() {
    return QStringLiteral("Loudness Normalize could not measure the audio: it is silent, or ffmpeg could not "
                          "read it.");
}

QString dynamicModeNotice(const PlanOutcome& outcome) {
    if (outcome.figures.value(QStringLiteral("normalization_type")) != QLatin1String("dynamic"))
        return {};
    return QStringLiteral("Loudness Normalize compressed the track to reach its target: ffmpeg could not "
                          "bring it there with one gain under the true-peak ceiling and the loudness range.");
}
