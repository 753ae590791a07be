#pragma once

#include <QString>
#include <QStringList>

// Argument forms that many operations share.

// Placed just before the output path of every ffmpeg run that writes a working
// WAV: 16-bit PCM, 44100 Hz, 2 channels.
QStringList conversionTail();

// "-i" source, the conversion tail, result.
QStringList importArguments(const QString& source, const QString& result);
