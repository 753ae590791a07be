#include "Clipping.h"

#include "plans/Plan.h"

#include <QLocale>
#include <QRegularExpression>

std::optional<qint64> clippedSamples(const QString& soxOutput) {
    // sox names itself as it was started: "sox WARN …" or "/usr/bin/sox WARN …".
    static const QRegularExpression warning(
        QStringLiteral("^\\S*sox WARN ([^:]+):.*\\bclipped (\\d+) samples"),
        QRegularExpression::MultilineOption);
    std::optional<qint64> effect, output, dither;
    for (const QRegularExpressionMatch& match : warning.globalMatch(soxOutput)) {
        const QString who = match.captured(1).trimmed();
        const qint64 count = match.captured(2).toLongLong();
        // Amplify's gain ("-v") is sox's own: "sox WARN sox: `in.wav' balancing clipped …".
        std::optional<qint64>& slot = who == QLatin1String("dither")                        ? dither
                                      : match.captured(0).contains(QLatin1String("output")) ? output
                                                                                            : effect;
        if (!slot) // the first word of each kind
            slot = count;
    }
    return effect ? effect : output ? output : dither;
}

std::optional<qint64> clippedSamples(const PlanOutcome& outcome) {
    for (const ToolRun& run : outcome.runs) // ffmpeg never says "clipped"
        if (const std::optional<qint64> count = clippedSamples(run.output))
            return count;
    return std::nullopt;
}

QString clippingLine(const QString& effectTitle, qint64 samples) {
    return QStringLiteral("%1 clipped %2 samples: lower its gain, or Undo")
        .arg(effectTitle, QLocale(QLocale::English).toString(samples));
}
