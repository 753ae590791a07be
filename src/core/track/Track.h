#pragma once

#include "history/VersionHistory.h"
#include "timeline/TimeStrings.h"

#include <QObject>
#include <QString>

// One window's track: the file it was opened from, the working WAV it shows,
// its length and version history, and the selection and play position the
// operations read. The waveform's overlay shows and edits the selection and
// position here; the window reads them when an operation needs them.
class Track : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    // The opened file, and the working WAV of the current version.
    QString s_File_URL, s_File_Path, s_Folder_Path, s_File_Name_Without_Extension, s_File_Extension,
        s_File_Size;
    QString s_WAV_File_Path, s_WAV_File_URL;
    // The whole seconds of the current version.
    qint64 i_Audio_Duration_Seconds = 0;

    VersionHistory& history() { return m_history; }
    const VersionHistory& history() const { return m_history; }

    // The selection in percent of the track; the play position and the
    // track's length in seconds, as the overlay draws them.
    float f_Selection_Start = 40.0f;
    float f_Selection_End = 60.0f;
    float f_Audio_Position = 0.0f;
    float f_Audio_Length = 0.0f;

    // Each of these sets its values and tells changed().
    void setSelection(float startPercent, float endPercent);
    void setSelectionStart(float percent);
    void setSelectionEnd(float percent);
    void setPosition(float seconds);
    // A new current version of `seconds`: the length, the overlay's length
    // and the play position at 0.
    void setDuration(qint64 seconds);

    // The markers in seconds and as the time strings every cutting operation
    // passes to the tools, computed from the values above.
    SegmentVariables Calculate_Segment_Variables() const;

signals:
    void changed(); // the selection, the position or the length moved

private:
    VersionHistory m_history;
};
