#include "TextNumbers.h"

#include <limits>

int intValue(QStringView text) {
    qsizetype at = 0;
    while (at < text.size() && text[at].isSpace())
        ++at;

    bool negative = false;
    if (at < text.size() && (text[at] == u'+' || text[at] == u'-')) {
        negative = text[at] == u'-';
        ++at;
    }

    // Accumulated in 64 bits and clamped as soon as it leaves int's range, so a
    // long run of digits can never overflow.
    constexpr qint64 limitPositive = std::numeric_limits<int>::max();
    constexpr qint64 limitNegative = -qint64(std::numeric_limits<int>::min());
    const qint64 limit = negative ? limitNegative : limitPositive;
    qint64 magnitude = 0;
    for (; at < text.size(); ++at) {
        const char16_t c = text[at].unicode();
        if (c < u'0' || c > u'9')
            break;
        magnitude = magnitude * 10 + (c - u'0');
        if (magnitude > limit)
            magnitude = limit;
    }
    return int(negative ? -magnitude : magnitude);
}
