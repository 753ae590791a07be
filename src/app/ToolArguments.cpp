#include "ToolArguments.h"

QStringList conversionTail() {
    return {"-acodec", "pcm_s16le", "-ar", "44100", "-ac", "2"};
}

QStringList importArguments(const QString& source, const QString& result) {
    return QStringList{"-i", source} + conversionTail() + QStringList{result};
}
