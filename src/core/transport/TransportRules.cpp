#include "TransportRules.h"

#include "timeline/TimeStrings.h"

TransportButtons buttonsAfter(TransportStep step) {
    TransportButtons b;
    switch (step) {
    case TransportStep::PlayStart:
        b.play = b.record = false;
        b.pause = b.stop = true;
        b.soundPreferences = b.zoomPlus = b.zoomMinus = b.tools = false;
        break;
    case TransportStep::PausePlayback:
        b.play = true;
        b.pause = false;
        b.stop = true;
        break;
    case TransportStep::Resume:
        b.play = false;
        b.pause = b.stop = true;
        break;
    case TransportStep::StopPlayback:
        b.play = b.record = true;
        b.pause = b.stop = false;
        b.soundPreferences = b.zoomPlus = b.zoomMinus = b.save = b.tools = true;
        break;
    case TransportStep::RecordStart:
        b.play = b.record = false;
        b.pause = b.stop = true;
        b.soundPreferences = b.zoomPlus = b.zoomMinus = b.save = b.tools = false;
        break;
    case TransportStep::PauseRecording:
        b.record = true;
        b.pause = false;
        b.stop = true;
        break;
    case TransportStep::StopRecording:
        b.play = b.record = b.soundPreferences = b.zoomPlus = b.zoomMinus = b.save = true;
        b.copy = b.cut = b.remove = b.tools = true;
        b.pause = b.stop = false;
        break;
    }
    return b;
}

bool mayStartPlaying(quint64 status) {
    return status == StatusIdle || status == StatusPlaybackPaused;
}

PlayStart playStart(PlayFrom from, float f_Audio_Position, float f_Selection_Start, float f_Audio_Length) {
    switch (from) {
    case PlayFrom::Start:
        return {0.0f, 0.0};
    case PlayFrom::Current:
        return {f_Audio_Position, double(f_Audio_Position)};
    case PlayFrom::Selection: {
        const float start = f_Selection_Start * f_Audio_Length / 100;
        return {start, double(start)};
    }
    }
    return {f_Audio_Position, double(f_Audio_Position)};
}

TickOutcome playingTick(const PlayingClock& clock, float f_Selection_End, float f_Audio_Length) {
    TickOutcome out;
    out.clock = clock;
    // A position other than the one the last tick set was put there by a click.
    if (clock.u_Last_Position != 0 && clock.f_Audio_Position != float(clock.u_Last_Position))
        out.seekTo = double(clock.f_Audio_Position);
    if (clock.b_Play_Selection && clock.f_Audio_Position >= f_Selection_End * f_Audio_Length / 100) {
        out.stop = true;
        return out;
    }
    out.clock.f_Audio_Position = clock.f_Audio_Position + 1.0f;
    out.clock.u_Last_Position = truncateToUnsigned(out.clock.f_Audio_Position);
    return out;
}

QString noSoundOutputMessage() {
    return QStringLiteral(
        "No sound output is available, so nothing can be played. Tanselo plays through the "
        "desktop's sound server: start PulseAudio or PipeWire (log out and in again, or run "
        "“pulseaudio --start”), or connect a sound device, then press Play again.");
}

QString lostSoundOutputMessage() {
    return QStringLiteral(
        "The sound output went away while playing, so playback has stopped. Start the sound "
        "server again, or connect a sound device, then press Play again.");
}
