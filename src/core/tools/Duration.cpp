#include "Duration.h"

namespace {
// Reads a field the lenient way: leading blanks, an optional sign, then as many
// digits as there are. Anything else reads as 0.
qint64 leadingInteger(QStringView field) {
    qsizetype i = 0;
    while (i < field.size() && field[i].isSpace())
        ++i;
    bool negative = false;
    if (i < field.size() && (field[i] == u'-' || field[i] == u'+'))
        negative = field[i++] == u'-';
    qint64 value = 0;
    for (; i < field.size() && field[i] >= u'0' && field[i] <= u'9'; ++i)
        value = value * 10 + (field[i].unicode() - u'0');
    return negative ? -value : value;
}

qint64 fieldAt(const QString& text, qsizetype position) {
    return position < text.size() ? leadingInteger(QStringView(text).mid(position, 2)) : 0;
}
} // namespace

QStringList probeArguments(const QString& path) {
    return {QStringLiteral("-i"), path};
}

QString durationTextFromOutput(const QString& output) {
    static const QString marker = QStringLiteral("Duration:");
    const qsizetype at = output.indexOf(marker);
    if (at < 0)
        return {};
    return output.mid(at + marker.size(), 11);
}

qint64 secondsFromDurationText(const QString& text) {
    return fieldAt(text, 1) * 3600 + fieldAt(text, 4) * 60 + fieldAt(text, 7);
}

qint64 secondsFromProbeOutput(const QString& output) {
    return secondsFromDurationText(durationTextFromOutput(output));
}

QString clockText(qint64 seconds) {
    return QString::asprintf("%02lld:%02lld:%02lld", seconds / 3600, seconds / 60 % 60, seconds % 60);
}
