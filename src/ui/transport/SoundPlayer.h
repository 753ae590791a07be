#pragma once

#include <QAudioDevice>
#include <QAudioOutput>
#include <QMediaDevices>
#include <QMediaPlayer>
#include <QObject>
#include <optional>

// The simple sound player of one playback: opens a WAV by its path, seeks to a
// time in seconds, plays, pauses, resumes and stops. The file loads in the
// background; a seek or a play asked for before it has loaded is carried out
// once it has.
class SoundPlayer : public QObject {
    Q_OBJECT
public:
    explicit SoundPlayer(const QString& path, QObject* parent = nullptr);

    // Why nothing can be played now (no sound output at all); empty when a
    // player may be made. Asked before every playback: the media back end
    // must not be started without an output.
    static QString outputProblem();

    void setCurrentTime(double seconds);
    double currentTime() const;
    void play();
    void pause();
    void resume();
    void stop();
    bool isPlaying() const;
    // Asked to play but not yet playing: the file still loads, or the seek
    // before it waits.
    bool isStarting() const { return m_wantsToPlay && (!m_loaded || m_pendingMs); }

signals:
    // The file could not be played; the text says why, in the player's words.
    void failed(const QString& reason);
    // Playing began, or ended (paused, stopped or at the file's end).
    void playingChanged(bool playing);

private:
    void onStatus(QMediaPlayer::MediaStatus status);
    void settle(); // carries out the pending seek, then plays if asked to

    QMediaPlayer m_player;
    QAudioOutput m_output;
    QMediaDevices m_devices;
    bool m_loaded = false;
    bool m_wantsToPlay = false;
    std::optional<qint64> m_pendingMs;
};
