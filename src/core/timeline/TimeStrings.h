#pragma once

#include <QString>
#include <cstdint>

// Truncates a float toward zero into an unsigned 64-bit integer the way the
// x86-64 conversion does, for every input and without undefined behaviour:
// values in (-2^63, 2^64) wrap as two's complement (-1.5 gives 2^64 - 1),
// NaN and values at or below -2^63 give 2^63, values of 2^64 and more give 0.
std::uint64_t truncateToUnsigned(float value);

// "HH:MM:SS.CC" of a time in seconds, computed in single precision with every
// float-to-integer step truncating as above: hundredths are truncated, hours
// are not wrapped, and each field prints as the signed 32-bit integer of its
// low 32 bits (so -1.5 s reads "00:00:-1.00").
QString timeString(float seconds);

// "HH:MM:SS.CC" of a time to the nearest hundredth, hours and all fields
// plain: for times the editor names itself (ruler labels, a typed selection,
// where a preview begins), which have no single-precision steps to follow.
QString hundredthsTimeString(double seconds);

// The seconds a time string stands for, as the tools read it: "00:01:02.50"
// is 62.5, "00:00:-1.00" is -1, a plain number is that many seconds.
double secondsOfTimeString(const QString& text);

// What the document needs to cut a track: the markers and the position in
// seconds, and the time strings every cutting operation hands to the tools.
struct SegmentInputs {
    float f_Audio_Length = 0;    // track length in seconds
    float f_Selection_Start = 0; // percent of the track
    float f_Selection_End = 0;   // percent of the track
    float f_Audio_Position = 0;  // seconds
    qint64 i_Audio_Duration_Seconds = 0;
};

struct SegmentVariables {
    float f_StartSelection = 0;
    float f_EndSelection = 0;
    float f_CurrentPosition = 0;
    QString sStart;
    QString sStartSelection;
    QString sEndSelection;
    QString sCurrentPosition;
    QString sDurationSelection;
    QString sDurationLastSegment;                 // from the selection's end to the track's end
    QString sDurationSegmentAfterStartSelection;  // from the selection's start to the track's end
    QString sDurationSegmentAfterCurrentPosition; // from the position to the track's end
};

// The remainders count from the whole-second duration, not the fractional
// length, so they may fall up to a second short: that is intended.
SegmentVariables calculateSegmentVariables(const SegmentInputs& in);

// The status bar's account of the markers: "Selection 00:00:04.00 – 00:00:06.00
// (00:00:02.00)" and "Position 00:00:01.50".
QString selectionStatusText(const SegmentVariables& v);
QString positionStatusText(const SegmentVariables& v);
