#include "Track.h"

void Track::setSelection(float startPercent, float endPercent) {
    f_Selection_Start = startPercent;
    f_Selection_End = endPercent;
    emit changed();
}

void Track::setSelectionStart(float percent) {
    f_Selection_Start = percent;
    emit changed();
}

void Track::setSelectionEnd(float percent) {
    f_Selection_End = percent;
    emit changed();
}

void Track::setPosition(float seconds) {
    f_Audio_Position = seconds;
    emit changed();
}

void Track::setDuration(qint64 seconds) {
    i_Audio_Duration_Seconds = seconds;
    f_Audio_Length = float(seconds);
    f_Audio_Position = 0;
    emit changed();
}

SegmentVariables Track::Calculate_Segment_Variables() const {
    return calculateSegmentVariables(
        {f_Audio_Length, f_Selection_Start, f_Selection_End, f_Audio_Position, i_Audio_Duration_Seconds});
}
