#pragma once

#include "tools/WorkingFormat.h"
#include "transport/TransportRules.h"

#include <QObject>
#include <QPointer>
#include <QVector>
#include <memory>

class Microphone;
class QMenu;
class QTimer;
class Session;
class SoundPlayer;
class SoundRecorder;
class Track;
class TrackWindow;

// The transport: playing the current version through a sound player, moved
// along by a one-second timer, and recording from the default input into a
// take that becomes the track. Playback and recording share one status.
class TransportActions : public QObject {
    Q_OBJECT
public:
    // `windowId` tells apart the takes two windows record in one second.
    TransportActions(Track& track, Session& session, TrackWindow& window, quint64 windowId,
                     QObject* parent = nullptr);
    ~TransportActions() override;

    void OnToolbarPlay(); // resumes a paused playback, otherwise pops up the play menu
    void OnPopupMenuPlayFromStart();
    void OnPopupMenuPlayFromCurrentPosition();
    void OnPopupMenuPlaySelection();
    void playFromStart();
    void playFromCurrent();
    void playSelection();
    void OnToolbarPause();
    void OnToolbarStop();
    void OnToolbarRecord();
    void pauseAudio();
    void stopAudio();
    void recordAudio();
    void TimerHandleAudioPlayingRoutine(); // one tick of the playing timer
    void OnToolbarSoundPreferences();
    void OnUserShowSoundPreferences();
    // Space: play from the position, or pause; `playable` says whether Play
    // is offered at all.
    void togglePlayback(bool playable);

    bool recording() const;
    quint64 m_RecordStatus = 0; // see RecordStatus
    std::unique_ptr<SoundPlayer> sound;
    QPointer<QTimer> timerHandleAudioPlaying;
    quint64 u_Last_Position = 0;
    bool b_Play_Selection = false;
    QMenu* popupMenuPlay;
    std::unique_ptr<SoundRecorder> soundRecorder;
    Microphone* ez_Microphone;
    QString s_Sound_File_Source;
    // The record settings as declared; the recorder always uses its fixed format.
    qint64 m_RecordFormat = 0, m_RecordSampleRate = workingFormat::SampleRate,
           m_RecordNumberOfChannels = workingFormat::Channels, m_RecordQuality = 127;

signals:
    void buttonsChanged(const TransportButtons& buttons); // the toolbar's states after a step
    void markersMoved();                                  // playback moved the position
    void playingChanged(bool playing);                    // playback started or resumed, paused or stopped
    // A recording began: the take is to become the track, so no load may take
    // the window until it stops.
    void recordingStarted();
    void takeRecorded(const QString& path);         // the stopped take, readable and named
    void takeUnusable();                            // the stopped take held nothing a reader can open
    void inputLevels(const QVector<float>& buffer); // what the input hears while recording

private:
    void startPlaying(PlayFrom from);
    void scheduleAudioPlayingTimer();
    void invalidateAudioPlayingTimer();
    void stopPlayback();
    void endRecording();

    Track& m_track;
    Session& m_session;
    TrackWindow& m_window;
    quint64 m_windowId;
};
