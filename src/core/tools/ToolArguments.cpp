#include "ToolArguments.h"
#include "tools/WorkingFormat.h"

QStringList conversionTail() {
    return {
        "-acodec", "pcm_s16le", "-ar", workingFormat::sampleRateText(), "-ac", workingFormat::channelsText()};
}

QStringList importArguments(const QString& source, const QString& result) {
    return QStringList{"-i", source} + conversionTail() + QStringList{result};
}

QStringList segmentArguments(const QString& track, const QString& start, const QString& duration,
                             const QString& segment) {
    return {"-i", track, "-ss", start, "-t", duration, segment};
}

QStringList soxSegmentArguments(const QString& track, const QString& start, const QString& duration,
                                const QString& segment) {
    return {track, segment, "trim", start, duration};
}

QStringList joinArguments(const QStringList& inputs, const QString& result) {
    QStringList arguments;
    for (const QString& input : inputs)
        arguments << "-i" << input;
    arguments << "-lavfi" << QString::asprintf("concat=n=%d:a=1:v=0", int(inputs.size()));
    return arguments + conversionTail() + QStringList{result};
}

QStringList silenceArguments(const QString& duration, const QString& result) {
    const QString source = QStringLiteral("anullsrc=channel_layout=%1:sample_rate=%2")
                               .arg(workingFormat::channelsText(), workingFormat::sampleRateText());
    return {"-f", "lavfi", "-i", source, "-t", duration, result};
}
