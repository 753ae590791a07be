#include "RulerScale.h"

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

std::vector<Mark> marks(double width, bool loaded, qint64 durationSeconds) {
    std::vector<Mark> result;
    if (!(width > 0.0))
        return result;
    const float step = loaded ? float(durationSeconds) / float(width / Division) : 3.0f;
    float t = 0.0f;
    for (qint64 k = 1;; ++k) {
        const double x = Division * double(k);
        QString text;
        if (loaded) {
            t += step;
            const int m = truncated(t / 60.0f);
            text = label(m, truncated(t - float(m) * 60.0f));
        } else {
            const qint64 n = 3 * k;
            text = label(int(n / 60), int(n - 60 * (n / 60)));
        }
        result.push_back({x - Division, x - LabelGap, text});
        if (x >= width)
            break;
    }
    return result;
}

} // namespace ruler
