#include "Loudness.h"

#include <QRegularExpression>
#include <cmath>
#include <limits>

namespace {
// A number as ffmpeg prints it: "-23.0", "0.0", "-inf", "inf" or "nan".
std::optional<double> figure(const QString& text) {
    if (text == u"-inf")
        return -std::numeric_limits<double>::infinity();
    if (text == u"inf")
        return std::numeric_limits<double>::infinity();
    bool ok = false;
    const double value = text.toDouble(&ok);
    if (!ok || std::isnan(value))
        return std::nullopt;
    return value;
}

std::optional<double> capture(const QString& summary, const QRegularExpression& pattern) {
    const QRegularExpressionMatch match = pattern.match(summary);
    return match.hasMatch() ? figure(match.captured(1)) : std::nullopt;
}
} // namespace

std::optional<LoudnessReading> readLoudnessSummary(const QString& output) {
    const qsizetype at = output.lastIndexOf(QStringLiteral("Summary:"));
    if (at < 0)
        return std::nullopt;
    const QString summary = output.mid(at);
    static const QString number = QStringLiteral("(-?inf|nan|[-+]?\\d+(?:\\.\\d+)?)");
    static const QRegularExpression integrated(QStringLiteral("Integrated loudness:\\s*\\n\\s*I:\\s+") +
                                               number + QStringLiteral(" LUFS"));
    static const QRegularExpression range(QStringLiteral("Loudness range:\\s*\\n\\s*LRA:\\s+") + number +
                                          QStringLiteral(" LU\\b"));
    static const QRegularExpression samplePeak(QStringLiteral("Sample peak:\\s*\\n\\s*Peak:\\s+") + number +
                                               QStringLiteral(" dBFS"));
    static const QRegularExpression truePeak(QStringLiteral("True peak:\\s*\\n\\s*Peak:\\s+") + number +
                                             QStringLiteral(" dBFS"));
    const auto i = capture(summary, integrated), lra = capture(summary, range),
               sample = capture(summary, samplePeak), peak = capture(summary, truePeak);
    if (!i || !lra || !sample || !peak)
        return std::nullopt;
    return LoudnessReading{*i, *lra, *peak, *sample};
}

QStringList loudnessMeasureArguments(const QString& track, const QString& start, const QString& duration) {
    QStringList arguments{QStringLiteral("-hide_banner"), QStringLiteral("-nostats")};
    if (!start.isEmpty())
        arguments << QStringLiteral("-ss") << start;
    if (!duration.isEmpty())
        arguments << QStringLiteral("-t") << duration;
    // framelog=verbose keeps the ten lines a second it logs out of the output.
    arguments << QStringLiteral("-i") << track << QStringLiteral("-af")
              << QStringLiteral("ebur128=peak=true+sample:framelog=verbose") << QStringLiteral("-f")
              << QStringLiteral("null") << QStringLiteral("-");
    return arguments;
}

Plan buildLoudnessMeasurePlan(const QString& track, const QString& start, const QString& duration) {
    return {{step::RequireFile{track, QStringLiteral("The track's file \"%1\" is missing.").arg(track)},
             step::Run{Tool::FFmpeg, loudnessMeasureArguments(track, start, duration)},
             step::Check{[](const PlanOutcome& sofar) {
                 return !sofar.runs.isEmpty() && readLoudnessSummary(sofar.runs.last().output)
                            ? QString()
                            : QStringLiteral("ffmpeg did not say how loud the track is.");
             }}}};
}

const QList<LoudnessTarget>& loudnessTargets() {
    static const QList<LoudnessTarget> targets{{QStringLiteral("Podcast, stereo"), -16, -1},
                                               {QStringLiteral("Podcast, mono"), -19, -1},
                                               {QStringLiteral("Streaming"), -14, -1},
                                               {QStringLiteral("Broadcast (EBU R128)"), -23, -1}};
    return targets;
}

QString targetDistanceText(const LoudnessReading& reading, const LoudnessTarget& target) {
    const double off = reading.integrated - target.lufs;
    QString text = std::abs(off) <= 0.5 ? QStringLiteral("on target")
                   : off < 0            ? QStringLiteral("%1 LU too quiet").arg(-off, 0, 'f', 1)
                                        : QStringLiteral("%1 LU too loud").arg(off, 0, 'f', 1);
    if (reading.truePeak > target.ceiling)
        text += QStringLiteral("; true peak %1 dB over %2 dBTP")
                    .arg(reading.truePeak - target.ceiling, 0, 'f', 1)
                    .arg(target.ceiling, 0, 'f', 0);
    return text;
}

QString loudnessFigureText(double value, const QString& unit) {
    if (std::isinf(value))
        return (value < 0 ? QStringLiteral("-inf ") : QStringLiteral("inf ")) + unit;
    return QStringLiteral("%1 %2").arg(value, 0, 'f', 1).arg(unit);
}
