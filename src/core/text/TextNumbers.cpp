#include "TextNumbers.h"

#include <QByteArray>
#include <cfloat>
#include <charconv>
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

namespace {
bool isDigit(QChar c) {
    return c.unicode() >= u'0' && c.unicode() <= u'9';
}
} // namespace

float floatValue(QStringView text) {
    qsizetype at = 0;
    while (at < text.size() && text[at].isSpace())
        ++at;

    // The accepted characters are gathered as ASCII for from_chars, which reads
    // with '.' whatever the process locale says.
    QByteArray number;
    bool negative = false;
    if (at < text.size() && (text[at] == u'+' || text[at] == u'-')) {
        negative = text[at] == u'-';
        ++at;
    }

    // The decimal position of the first significant digit, to tell an overflow
    // from an underflow should from_chars report the value out of range.
    qint64 magnitude = 0;
    bool significant = false;
    qsizetype digits = 0;
    for (; at < text.size() && isDigit(text[at]); ++at, ++digits) {
        number += char(text[at].unicode());
        if (text[at] != u'0')
            significant = true;
        if (significant)
            ++magnitude;
    }
    if (at < text.size() && text[at] == u'.') {
        qsizetype fraction = at + 1;
        QByteArray fractionDigits;
        for (; fraction < text.size() && isDigit(text[fraction]); ++fraction) {
            fractionDigits += char(text[fraction].unicode());
            if (!significant && text[fraction] == u'0')
                --magnitude;
            else
                significant = true;
        }
        // A lone '.' with digits on neither side is not a number.
        if (digits > 0 || !fractionDigits.isEmpty()) {
            number += '.';
            number += fractionDigits;
            digits += fractionDigits.size();
            at = fraction;
        }
    }
    if (digits == 0)
        return 0.0f;

    // An exponent counts only when at least one digit follows the 'e' and sign.
    if (at < text.size() && (text[at] == u'e' || text[at] == u'E')) {
        qsizetype exponentAt = at + 1;
        bool exponentNegative = false;
        if (exponentAt < text.size() && (text[exponentAt] == u'+' || text[exponentAt] == u'-')) {
            exponentNegative = text[exponentAt] == u'-';
            ++exponentAt;
        }
        if (exponentAt < text.size() && isDigit(text[exponentAt])) {
            number += exponentNegative ? "e-" : "e";
            qint64 exponent = 0;
            for (; exponentAt < text.size() && isDigit(text[exponentAt]); ++exponentAt) {
                number += char(text[exponentAt].unicode());
                // Far beyond any double's range, and beyond any count of
                // digits a text can hold; saturating keeps the estimate from
                // overflowing.
                exponent =
                    qMin<qint64>(exponent * 10 + (text[exponentAt].unicode() - u'0'), 1'000'000'000'000);
            }
            magnitude += exponentNegative ? -exponent : exponent;
        }
    }

    if (!significant)
        return 0.0f;

    double value = 0;
    const auto [end, error] = std::from_chars(number.constData(), number.constData() + number.size(), value);
    Q_UNUSED(end);
    if (error == std::errc::result_out_of_range)
        value = magnitude > 0 ? std::numeric_limits<double>::max() : 0.0;
    else if (error != std::errc())
        value = 0;

    // Saturated before narrowing: a double beyond float's range must not
    // become infinity.
    const double limit = double(FLT_MAX);
    if (value > limit)
        value = limit;
    const float result = float(value);
    return negative ? -result : result;
}
