#include "RulerScale.h"

#include "TimeStrings.h"

#include <cmath>
#include <limits>

namespace ruler {
namespace {
// Truncation toward zero into a printable int; values beyond its range pin to
// its ends and NaN reads 0 (durations are whole seconds, so this only guards).
int truncated(float value) {
    if (std::isnan(value))
        return 0;
    if (value >= 2147483647.0f)
        return std::numeric_limits<int>::max();
    if (value <= -2147483648.0f)
        return std::numeric_limits<int>::min();
    return int(value);
}

QString label(int minutes, int seconds) {
    return QString::asprintf("00:%02d:%02d", minutes, seconds);
}
} // namespace

std::vector<Mark> marks(double width, bool loaded, qint64 durationSeconds, double from, double to) {
    std::vector<Mark> result;
    if (!(width > 0.0))
        return result;
    const float step = loaded ? float(durationSeconds) / float(width / Division) : 3.0f;
    // The label of division k names t_k, summed step by step in single
    // precision; the whole-second labels truncate it.
    const auto seconds = [](float t) {
        const int m = truncated(t / 60.0f);
        return std::pair(m, truncated(t - float(m) * 60.0f));
    };
    const auto lastDivision = [&](qint64 k) { return Division * double(k) >= width; };
    bool repeats = false;
    if (loaded && step > 0.0f) {
        float t = step;
        for (qint64 k = 1; !lastDivision(k) && !repeats; ++k, t += step)
            repeats = seconds(t) == seconds(t + step);
    }
    float t = 0.0f;
    for (qint64 k = 1;; ++k) {
        const double x = Division * double(k);
        if (loaded)
            t += step;
        if (x >= from && x - Division <= to) {
            QString text;
            if (repeats) {
                // The time at x, x × duration / W: the whole-second labels' running
                // sum in single precision would read 9.99 for 10.
                text = hundredthsTimeString(x * double(durationSeconds) / width);
            } else if (loaded) {
                const auto [m, sec] = seconds(t);
                text = label(m, sec);
            } else {
                const qint64 n = 3 * k;
                text = label(int(n / 60), int(n - 60 * (n / 60)));
            }
            result.push_back({x - Division, x - LabelGap, text});
        }
        if (lastDivision(k))
            break;
    }
    return result;
}

} // namespace ruler
