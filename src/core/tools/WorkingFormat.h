#pragma once

#include <QString>

// The one format of every working WAV: what an import is converted to, what
// every edit and effect writes and what a recording is taken in. 16-bit PCM.
namespace workingFormat {
constexpr int SampleRate = 44100;
constexpr int Channels = 2;
constexpr int BytesPerFrame = Channels * 2;

// The rate and the channel count as the tools' arguments spell them.
inline QString sampleRateText() {
    return QString::number(SampleRate);
}
inline QString channelsText() {
    return QString::number(Channels);
}

// The bytes of `ms` milliseconds of working audio.
constexpr int bytesFor(int ms) {
    return SampleRate * BytesPerFrame * ms / 1000;
}
} // namespace workingFormat
