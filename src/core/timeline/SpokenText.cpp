#include "SpokenText.h"

#include <QStringList>
#include <cmath>

namespace spoken {

namespace {
QString counted(qint64 count, const char* one, const char* many) {
    return QStringLiteral("%1 %2").arg(count).arg(QLatin1String(count == 1 ? one : many));
}
} // namespace

QString time(double seconds) {
    const qint64 tenths = std::isfinite(seconds) ? std::llround(std::max(0.0, seconds) * 10) : 0;
    const qint64 hours = tenths / 36000, minutes = tenths / 600 % 60, rest = tenths % 600;
    QStringList parts;
    if (hours > 0)
        parts << counted(hours, "hour", "hours");
    if (minutes > 0)
        parts << counted(minutes, "minute", "minutes");
    if (rest > 0 || parts.isEmpty()) {
        const QString number =
            rest % 10 == 0 ? QString::number(rest / 10) : QString::number(double(rest) / 10, 'f', 1);
        parts << number + (rest == 10 ? QStringLiteral(" second") : QStringLiteral(" seconds"));
    }
    return parts.join(u' ');
}

QString waveform(const QString& track, bool loaded, double length, double selectionStart, double selectionEnd,
                 double position) {
    if (!loaded)
        return QStringLiteral("No track is loaded yet.");
    return QStringLiteral("Track “%1”, %2 long; selected from %3 to %4; play position at %5.")
        .arg(track, time(length), time(selectionStart), time(selectionEnd), time(position));
}

QString ruler(double length) {
    return QStringLiteral("Time from 0 seconds to %1.").arg(time(length));
}

} // namespace spoken
