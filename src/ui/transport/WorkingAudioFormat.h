#pragma once

#include "tools/WorkingFormat.h"

#include <QAudioFormat>

// The working format as an audio input is asked to deliver it, for the
// recorder and the live input alike.
inline QAudioFormat workingAudioFormat() {
    QAudioFormat format;
    format.setSampleRate(workingFormat::SampleRate);
    format.setChannelCount(workingFormat::Channels);
    format.setSampleFormat(QAudioFormat::Int16);
    return format;
}
