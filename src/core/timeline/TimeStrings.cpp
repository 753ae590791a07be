#include "TimeStrings.h"

#include <algorithm>

#include <QStringList>
#include <cmath>

namespace {
constexpr float TwoTo63 = 9223372036854775808.0f;
constexpr float TwoTo64 = 18446744073709551616.0f;
constexpr std::uint64_t Indefinite = std::uint64_t(1) << 63; // what the hardware returns out of range

// A field printed with "%02d": the low 32 bits as a signed integer.
QString field(std::uint64_t value) {
    return QString::asprintf("%02d", std::int32_t(std::uint32_t(value & 0xffffffffu)));
}
} // namespace

std::uint64_t truncateToUnsigned(float value) {
    if (std::isnan(value) || value <= -TwoTo63)
        return Indefinite;
    if (value >= TwoTo64)
        return 0; // the high half's conversion overflows, and its sign bit is then cleared
    if (value >= TwoTo63)
        return std::uint64_t(value - TwoTo63) ^ Indefinite;
    return std::uint64_t(std::int64_t(value)); // two's complement for negatives
}

QString timeString(float x) {
    const std::uint64_t h = truncateToUnsigned(x / 3600.0f);
    const std::uint64_t m = truncateToUnsigned(x / 60.0f - float(h * 60));
    const std::uint64_t s = truncateToUnsigned((x - float(m * 60)) - float(h * 3600));
    const std::uint64_t c = truncateToUnsigned((x - float(truncateToUnsigned(std::floor(x)))) * 100.0f);
    return field(h) + u':' + field(m) + u':' + field(s) + u'.' + field(c);
}

QString hundredthsTimeString(double seconds) {
    const qint64 hundredths = std::llround(std::max(0.0, seconds) * 100.0);
    const qint64 s = hundredths / 100;
    return QString::asprintf("%02lld:%02lld:%02lld.%02lld", s / 3600, s / 60 % 60, s % 60, hundredths % 100);
}

double secondsOfTimeString(const QString& text) {
    double seconds = 0;
    for (const QString& field : text.split(u':'))
        seconds = seconds * 60 + field.toDouble();
    return seconds;
}

SegmentVariables calculateSegmentVariables(const SegmentInputs& in) {
    SegmentVariables out;
    out.f_StartSelection = (in.f_Selection_Start * in.f_Audio_Length) / 100.0f;
    out.f_EndSelection = (in.f_Selection_End * in.f_Audio_Length) / 100.0f;
    out.f_CurrentPosition = in.f_Audio_Position;
    const float duration = float(in.i_Audio_Duration_Seconds);
    out.sStart = QStringLiteral("00:00:00.00");
    out.sStartSelection = timeString(out.f_StartSelection);
    out.sEndSelection = timeString(out.f_EndSelection);
    out.sCurrentPosition = timeString(out.f_CurrentPosition);
    out.sDurationSelection = timeString(out.f_EndSelection - out.f_StartSelection);
    out.sDurationLastSegment = timeString(duration - out.f_EndSelection);
    out.sDurationSegmentAfterStartSelection = timeString(duration - out.f_StartSelection);
    out.sDurationSegmentAfterCurrentPosition = timeString(duration - out.f_CurrentPosition);
    return out;
}

QString selectionStatusText(const SegmentVariables& v) {
    return QStringLiteral("Selection %1 – %2 (%3)")
        .arg(v.sStartSelection, v.sEndSelection, v.sDurationSelection);
}

QString positionStatusText(const SegmentVariables& v) {
    return QStringLiteral("Position %1").arg(v.sCurrentPosition);
}
