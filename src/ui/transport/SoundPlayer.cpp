#include "SoundPlayer.h"

#include "transport/TransportRules.h"

#include <QUrl>
#include <cmath>

SoundPlayer::SoundPlayer(const QString& path, QObject* parent) : QObject(parent) {
    m_player.setAudioOutput(&m_output);
    connect(&m_player, &QMediaPlayer::mediaStatusChanged, this, &SoundPlayer::onStatus);
    connect(&m_player, &QMediaPlayer::seekableChanged, this, [this](bool seekable) {
        if (seekable && m_loaded && m_pendingMs)
            settle();
    });
    connect(&m_player, &QMediaPlayer::playbackStateChanged, this, [this](QMediaPlayer::PlaybackState state) {
        emit playingChanged(state == QMediaPlayer::PlayingState);
    });
    connect(&m_player, &QMediaPlayer::errorOccurred, this,
            [this](QMediaPlayer::Error, const QString& text) { emit failed(text); });
    // An output that goes away (the sound server stopped) ends the playback
    // at once, before the back end writes to a device that is no more.
    connect(&m_devices, &QMediaDevices::audioOutputsChanged, this, [this] {
        if (QMediaDevices::defaultAudioOutput().isNull()) {
            m_wantsToPlay = false;
            m_player.stop();
            emit failed(lostSoundOutputMessage());
        }
    });
    m_player.setSource(QUrl::fromLocalFile(path));
}

QString SoundPlayer::outputProblem() {
    return QMediaDevices::defaultAudioOutput().isNull() ? noSoundOutputMessage() : QString();
}

void SoundPlayer::onStatus(QMediaPlayer::MediaStatus status) {
    if (status == QMediaPlayer::InvalidMedia) {
        emit failed(m_player.errorString());
        return;
    }
    if (m_loaded || status != QMediaPlayer::LoadedMedia)
        return;
    m_loaded = true;
    // Some backends can seek only once the stream is prerolled: a pending seek
    // waits for that, paused, so that nothing before it is heard.
    if (m_pendingMs && !m_player.isSeekable())
        m_player.pause();
    else
        settle();
}

void SoundPlayer::settle() {
    if (m_pendingMs)
        m_player.setPosition(*std::exchange(m_pendingMs, std::nullopt));
    if (m_wantsToPlay)
        m_player.play();
}

void SoundPlayer::setCurrentTime(double seconds) {
    const qint64 ms = std::llround(std::max(0.0, seconds) * 1000);
    if (m_loaded && m_player.isSeekable())
        m_player.setPosition(ms);
    else
        m_pendingMs = ms;
}

double SoundPlayer::currentTime() const {
    return double(m_player.position()) / 1000;
}

void SoundPlayer::play() {
    m_wantsToPlay = true;
    if (m_loaded && !m_pendingMs)
        m_player.play();
}

void SoundPlayer::pause() {
    m_wantsToPlay = false;
    m_player.pause();
}

void SoundPlayer::resume() {
    play();
}

void SoundPlayer::stop() {
    m_wantsToPlay = false;
    m_player.stop();
}

bool SoundPlayer::isPlaying() const {
    return m_player.playbackState() == QMediaPlayer::PlayingState;
}
