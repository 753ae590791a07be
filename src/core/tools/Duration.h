#pragma once

#include <QString>
#include <QStringList>

// The duration probe: ffmpeg given "-i" and the path only prints the input's
// description, which holds a line like "Duration: 00:03:25.47, start: ...".
QStringList probeArguments(const QString& path);

// The 11 characters that follow "Duration:" (a blank, then HH:MM:SS.C), or fewer
// when the text ends sooner; empty when the marker is absent.
QString durationTextFromOutput(const QString& output);

// Whole seconds from the 11-character duration text: the two-character fields at
// positions 1, 4 and 7 are hours, minutes and seconds; the fraction is dropped.
// A field that is missing or not a number counts 0.
qint64 secondsFromDurationText(const QString& text);

// Both of the above: 0 when the output holds no duration.
qint64 secondsFromProbeOutput(const QString& output);

// "HH:MM:SS" of whole seconds, as the status bar shows a track's length.
QString clockText(qint64 seconds);
