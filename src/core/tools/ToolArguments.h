#pragma once

#include <QString>
#include <QStringList>

// Argument forms that many operations share.

// Placed just before the output path of every ffmpeg run that writes a working
// WAV (16-bit PCM at the working rate and channel count).
QStringList conversionTail();

// "-i" source, the conversion tail, result.
QStringList importArguments(const QString& source, const QString& result);

// "-i" track "-ss" start "-t" duration segment: one stretch of a track, no codec options.
QStringList segmentArguments(const QString& track, const QString& start, const QString& duration,
                             const QString& segment);
// sox's arguments for the same stretch of a working WAV, sample for sample
// (a stretch starts and ends at a hundredth, a whole number of frames): sox
// seeks in the file and starts in a tenth of ffmpeg's time, where ffmpeg
// reads everything before the start (half a second half an hour in).
QStringList soxSegmentArguments(const QString& track, const QString& start, const QString& duration,
                                const QString& segment);

// One "-i" per input in playing order, ffmpeg's concat filter over all of them,
// the conversion tail, result.
QStringList joinArguments(const QStringList& inputs, const QString& result);

// Silence from ffmpeg's null source, `duration` long (a time string), no codec options.
QStringList silenceArguments(const QString& duration, const QString& result);
