#include "TypedSelection.h"

#include "TimeStrings.h"

#include <QRegularExpression>
#include <QStringList>
#include <cmath>

std::optional<double> typedSeconds(const QString& text) {
    static const QRegularExpression form(
        QStringLiteral("^\\s*(?:(?:(\\d+):)?(\\d+):)?(\\d+(?:\\.\\d*)?|\\.\\d+)\\s*$"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const bool hasHours = match.hasCaptured(1), hasMinutes = match.hasCaptured(2);
    const double hours = match.captured(1).toDouble(), minutes = match.captured(2).toDouble(),
                 seconds = match.captured(3).toDouble();
    if ((hasMinutes && seconds >= 60) || (hasHours && minutes >= 60))
        return std::nullopt;
    return hours * 3600 + minutes * 60 + seconds;
}

namespace {
// The segment time string of `percent` of a track `length` seconds long, as
// the segment time strings compute it.
QString readingOf(float percent, float length) {
    return timeString((percent * length) / 100.0f);
}

} // namespace

float percentReading(double seconds, float length) {
    if (!(length > 0))
        return 0;
    const float nearest = float(seconds / double(length) * 100.0);
    const QString wanted = hundredthsTimeString(seconds);
    // The product truncates to hundredths, so the nearest float may read a
    // hundredth short: look a few representable values either side.
    float below = nearest, above = nearest;
    for (int step = 0; step < 4096; ++step) {
        if (readingOf(above, length) == wanted)
            return above;
        if (readingOf(below, length) == wanted)
            return below;
        above = std::nextafter(above, 1000.0f);
        below = std::nextafter(below, -1000.0f);
    }
    return nearest;
}

TypedSelection typedSelection(const QString& start, const QString& end, float length) {
    TypedSelection selection;
    const std::optional<double> from = typedSeconds(start), to = typedSeconds(end);
    for (const auto& [text, value] : {std::pair(start, from), std::pair(end, to)})
        if (!value) {
            selection.problem = QStringLiteral("“%1” is not a time. Type it as hours, minutes, seconds and "
                                               "hundredths (00:07:29.50) or as seconds (449.5).")
                                    .arg(text.trimmed());
            return selection;
        }
    if (*to <= *from) {
        selection.problem = QStringLiteral("The selection must end after it starts.");
        return selection;
    }
    if (*to > double(length) + 0.005) {
        selection.problem = QStringLiteral("The track is only %1 long.").arg(hundredthsTimeString(length));
        return selection;
    }
    selection.start = percentReading(*from, length);
    selection.end = percentReading(*to, length);
    // The length of the selection is the difference of the two products:
    // among the ends that read right, the first whose difference does too.
    const float startSeconds = (selection.start * length) / 100.0f;
    const QString endText = readingOf(selection.end, length), lengthText = hundredthsTimeString(*to - *from);
    for (float end = selection.end; readingOf(end, length) == endText; end = std::nextafter(end, 1000.0f))
        if (timeString((end * length) / 100.0f - startSeconds) == lengthText) {
            selection.end = end;
            break;
        }
    return selection;
}
