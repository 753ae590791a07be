#pragma once

#include <QtGlobal>
#include <optional>

// The rules of the transport, shared by playback and recording: one status
// per document, so it either plays, records, or does neither.

// m_RecordStatus.
enum RecordStatus : quint64 {
    StatusIdle = 0,
    StatusRecording = 1,
    StatusRecordingPaused = 2,
    StatusPlaying = 3,
    StatusPlaybackPaused = 4,
};

// What a transport step does to the toolbar: each button is switched on, off,
// or left as it is (empty).
struct TransportButtons {
    std::optional<bool> play, record, pause, stop, soundPreferences, zoomPlus, zoomMinus, save, tools;
    std::optional<bool> copy, cut, remove; // only a finished recording touches these
};

enum class TransportStep {
    PlayStart,
    PausePlayback,
    Resume,
    StopPlayback,
    RecordStart, // also when a paused recording records again
    PauseRecording,
    StopRecording,
};

TransportButtons buttonsAfter(TransportStep step);

// A play choice may start only while idle or paused (a paused playback can be
// restarted from any of the three choices).
bool mayStartPlaying(quint64 status);

enum class PlayFrom { Start, Current, Selection };

// Where a playback starts: the marker's new position (seconds) and the
// player's time. From the start both are 0; from the current position the
// marker stays; a selection starts at its start marker.
struct PlayStart {
    float position;
    double playerTime;
};
PlayStart playStart(PlayFrom from, float f_Audio_Position, float f_Selection_Start, float f_Audio_Length);

// Why nothing can be played: no sound server runs and no sound card is there.
// Said before a player is made; one made with no output may crash the media
// back end's audio thread.
QString noSoundOutputMessage();
// What a playback that lost its output on the way says.
QString lostSoundOutputMessage();

// One tick of the one-second playing timer.
struct PlayingClock {
    float f_Audio_Position = 0;
    quint64 u_Last_Position = 0; // 0: no position set yet
    bool b_Play_Selection = false;
};
struct TickOutcome {
    std::optional<double> seekTo; // the marker was moved: the player follows it
    bool stop = false;            // a selection playback reached its end
    PlayingClock clock;           // the clock after the tick
};
// The marker moves by exactly one second a tick, whatever the player does, and
// keeps going past the end of the track until the user stops (only a
// selection playback stops by itself).
TickOutcome playingTick(const PlayingClock& clock, float f_Selection_End, float f_Audio_Length);
