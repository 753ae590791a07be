#include "TransportActions.h"

#include "Microphone.h"
#include "SoundPlayer.h"
#include "SoundRecorder.h"
#include "actions/TrackWindow.h"
#include "document/ImportPlans.h"
#include "names/Names.h"
#include "plans/AudioChecks.h"
#include "session/Session.h"
#include "session/WorkFolder.h"
#include "track/Track.h"
#include "widgets/Alerts.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMenu>
#include <QPoint>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>

TransportActions::TransportActions(Track& track, Session& session, TrackWindow& window, quint64 windowId,
                                   QObject* parent)
    : QObject(parent), m_track(track), m_session(session), m_window(window), m_windowId(windowId) {
    popupMenuPlay = new QMenu(tr("Play"), window.windowWidget());
    popupMenuPlay->addAction(tr("Play from Start"), this, &TransportActions::OnPopupMenuPlayFromStart);
    popupMenuPlay->addAction(tr("Play from Current Position"), this,
                             &TransportActions::OnPopupMenuPlayFromCurrentPosition);
    popupMenuPlay->addAction(tr("Play Selection"), this, &TransportActions::OnPopupMenuPlaySelection);

    ez_Microphone = new Microphone(this);
    connect(ez_Microphone, &Microphone::hasAudioReceived, this, [this](const QVector<float>& buffer) {
        if (m_RecordStatus == StatusRecording)
            emit inputLevels(buffer);
    });
}

// The player and the recorder go with the window; a recorder finishes its file.
TransportActions::~TransportActions() = default;

bool TransportActions::recording() const {
    return m_RecordStatus == StatusRecording || m_RecordStatus == StatusRecordingPaused;
}

// Playback.

void TransportActions::OnToolbarPlay() {
    if (m_RecordStatus != StatusPlaybackPaused) {
        popupMenuPlay->popup(m_window.popupPosition());
        return;
    }
    scheduleAudioPlayingTimer();
    sound->resume();
    emit buttonsChanged(buttonsAfter(TransportStep::Resume));
    m_RecordStatus = StatusPlaying;
    emit playingChanged(true);
}

void TransportActions::OnPopupMenuPlayFromStart() {
    b_Play_Selection = false;
    playFromStart();
}
void TransportActions::OnPopupMenuPlayFromCurrentPosition() {
    b_Play_Selection = false;
    playFromCurrent();
}
void TransportActions::OnPopupMenuPlaySelection() {
    b_Play_Selection = true;
    playSelection();
}

void TransportActions::playFromStart() {
    startPlaying(PlayFrom::Start);
}
void TransportActions::playFromCurrent() {
    startPlaying(PlayFrom::Current);
}
void TransportActions::playSelection() {
    startPlaying(PlayFrom::Selection);
}

void TransportActions::startPlaying(PlayFrom from) {
    if (!mayStartPlaying(m_RecordStatus))
        return;
    if (!m_window.trackFileIsThere())
        return;
    if (const QString problem = SoundPlayer::outputProblem(); !problem.isEmpty()) {
        showErrorAlert(m_window.windowWidget(), problem);
        return;
    }
    const PlayStart start =
        playStart(from, m_track.f_Audio_Position, m_track.f_Selection_Start, m_track.f_Audio_Length);
    m_track.setPosition(start.position);
    sound = std::make_unique<SoundPlayer>(m_track.s_WAV_File_Path);
    connect(sound.get(), &SoundPlayer::failed, this, [this](const QString& reason) {
        stopPlayback();
        showErrorAlert(m_window.windowWidget(), reason == lostSoundOutputMessage()
                                                    ? reason
                                                    : tr("The track could not be played: %1").arg(reason));
    });
    sound->setCurrentTime(start.playerTime);
    sound->play();
    m_RecordStatus = StatusPlaying;
    emit buttonsChanged(buttonsAfter(TransportStep::PlayStart));
    u_Last_Position = 0;
    scheduleAudioPlayingTimer();
    emit markersMoved();
    emit playingChanged(true);
}

void TransportActions::invalidateAudioPlayingTimer() {
    if (timerHandleAudioPlaying) {
        timerHandleAudioPlaying->stop();
        timerHandleAudioPlaying->deleteLater(); // it may be the sender of the running tick
        timerHandleAudioPlaying = nullptr;
    }
}

void TransportActions::scheduleAudioPlayingTimer() {
    invalidateAudioPlayingTimer();
    auto* timer = new QTimer(this);
    timer->setInterval(1000);
    timer->setTimerType(Qt::PreciseTimer);
    connect(timer, &QTimer::timeout, this, &TransportActions::TimerHandleAudioPlayingRoutine);
    timer->start();
    timerHandleAudioPlaying = timer;
}

void TransportActions::TimerHandleAudioPlayingRoutine() {
    const TickOutcome tick = playingTick({m_track.f_Audio_Position, u_Last_Position, b_Play_Selection},
                                         m_track.f_Selection_End, m_track.f_Audio_Length);
    if (tick.seekTo && sound)
        sound->setCurrentTime(*tick.seekTo);
    if (tick.stop) {
        stopAudio();
        return;
    }
    u_Last_Position = tick.clock.u_Last_Position;
    m_track.setPosition(tick.clock.f_Audio_Position);
}

void TransportActions::OnToolbarPause() {
    pauseAudio();
}

void TransportActions::pauseAudio() {
    if (m_RecordStatus == StatusPlaying) {
        invalidateAudioPlayingTimer();
        sound->pause();
        emit buttonsChanged(buttonsAfter(TransportStep::PausePlayback));
        m_RecordStatus = StatusPlaybackPaused;
        emit playingChanged(false);
    } else if (m_RecordStatus == StatusRecording) {
        soundRecorder->pause();
        emit buttonsChanged(buttonsAfter(TransportStep::PauseRecording));
        m_RecordStatus = StatusRecordingPaused;
    }
}

void TransportActions::OnToolbarStop() {
    stopAudio();
}

void TransportActions::stopAudio() {
    if (m_RecordStatus == StatusPlaying || m_RecordStatus == StatusPlaybackPaused)
        stopPlayback();
    else if (m_RecordStatus == StatusRecording || m_RecordStatus == StatusRecordingPaused)
        endRecording();
}

void TransportActions::stopPlayback() {
    invalidateAudioPlayingTimer();
    if (sound)
        sound->stop();
    emit buttonsChanged(buttonsAfter(TransportStep::StopPlayback));
    m_RecordStatus = StatusIdle;
    emit playingChanged(false);
}

void TransportActions::togglePlayback(bool playable) {
    if (m_RecordStatus == StatusPlaying)
        pauseAudio();
    else if (m_RecordStatus == StatusPlaybackPaused)
        OnToolbarPlay();
    else if (m_RecordStatus == StatusIdle && playable)
        OnPopupMenuPlayFromCurrentPosition();
}

// Recording.

void TransportActions::OnToolbarRecord() {
    // A stopped take restarts the history and deletes its versions' files: a
    // window holding versions of the user's asks first, as Open does. R (the
    // button's key) then records at once only where nothing can be lost.
    const qsizetype versions = m_track.history().versions().size();
    if (m_RecordStatus == StatusIdle && versions > 1 &&
        showAlert(
            m_window.windowWidget(),
            tr("Record into this window? Its %1 versions will be deleted when the take stops.").arg(versions),
            {}, {tr("Record"), tr("Cancel")}) != 0)
        return;
    recordAudio();
}

namespace {
// Hidden, and named after the window too: two windows that start recording in
// one second would otherwise write into one file.
QString growingTakePath(const QString& take, quint64 window) {
    const QFileInfo info(take);
    return info.dir().filePath(QStringLiteral(".recording-%1-%2").arg(window).arg(info.fileName()));
}
} // namespace

void TransportActions::recordAudio() {
    if (m_RecordStatus == StatusRecordingPaused) {
        soundRecorder->record();
        m_RecordStatus = StatusRecording;
    } else if (m_RecordStatus == StatusIdle) {
        // Named by the second it starts in, or the next second no file has
        // taken, so that a take never replaces a file it does not own.
        s_Sound_File_Source = importNames(m_session.s_Output_Folder, m_session.namesInUse()).path();
        QFile::remove(s_Sound_File_Source);
        // The take grows in a hidden file of its own and gets its name when it
        // stops: a result of another window named by the same second can then
        // neither replace the take while it is recorded nor be replaced by it.
        // A take never grows past what a WAV holds, nor fills the work folder:
        // with too little room it does not start, and it stops at the limit.
        const QString folder = m_session.s_Output_Folder;
        if (const QString problem = roomForBytesProblem(folder, workingWavBytes(1.0)); !problem.isEmpty()) {
            showErrorAlert(m_window.windowWidget(), problem);
            return;
        }
        const RecordingLimit limit = recordingLimit(folder);
        auto recorder = std::make_unique<SoundRecorder>(growingTakePath(s_Sound_File_Source, m_windowId));
        recorder->setFrameLimit(limit.frames);
        if (!recorder->record()) {
            showErrorAlert(
                m_window.windowWidget(),
                QStringLiteral("Could not start recording. Change record settings and try again."));
            return;
        }
        soundRecorder = std::move(recorder);
        connect(soundRecorder.get(), &SoundRecorder::inputLost, this, [this] {
            endRecording();
            showErrorAlert(m_window.windowWidget(),
                           tr("The sound input went away, so the recording stopped. What was recorded "
                              "until then is kept as the track."));
        });
        connect(soundRecorder.get(), &SoundRecorder::limitReached, this, [this, limit, folder] {
            endRecording();
            showErrorAlert(m_window.windowWidget(), recordingLimitMessage(limit, folder));
        });
        connect(soundRecorder.get(), &SoundRecorder::writeFailed, this, [this, folder] {
            endRecording();
            showErrorAlert(m_window.windowWidget(), recordingDiskFullMessage(folder));
        });
        m_RecordStatus = StatusRecording;
        emit recordingStarted();
        ez_Microphone->startFetchingAudio();
    }
    emit buttonsChanged(buttonsAfter(TransportStep::RecordStart));
}

void TransportActions::endRecording() {
    soundRecorder->stop();
    m_RecordStatus = StatusIdle;
    ez_Microphone->stopFetchingAudio();
    // Taken meanwhile by another window's file: the next free second.
    if (const QStringList taken = m_session.namesInUse();
        taken.contains(s_Sound_File_Source) || QFileInfo::exists(s_Sound_File_Source))
        s_Sound_File_Source = importNames(m_session.s_Output_Folder, taken).path();
    const QString grown = soundRecorder->path();
    soundRecorder.release()->deleteLater(); // this may run inside its own signal
    if (!isReadableAudio(grown) || !QFile::rename(grown, s_Sound_File_Source)) {
        QFile::remove(grown);
        emit takeUnusable();
        return;
    }
    emit takeRecorded(s_Sound_File_Source);
}

// Sound settings.

void TransportActions::OnToolbarSoundPreferences() {
    OnUserShowSoundPreferences();
}

void TransportActions::OnUserShowSoundPreferences() {
    // PulseAudio's own mixer first, then the desktops' sound panels.
    const QList<QPair<QString, QStringList>> programs = {
        {QStringLiteral("pavucontrol"), {}},
        {QStringLiteral("gnome-control-center"), {QStringLiteral("sound")}},
        {QStringLiteral("systemsettings"), {QStringLiteral("kcm_pulseaudio")}},
        {QStringLiteral("xfce4-mixer"), {}},
    };
    for (const auto& [program, arguments] : programs) {
        const QString path = QStandardPaths::findExecutable(program);
        if (!path.isEmpty() && QProcess::startDetached(path, arguments))
            return;
    }
    showErrorAlert(m_window.windowWidget(),
                   tr("No sound settings program was found. Install pavucontrol (PulseAudio Volume "
                      "Control) to choose the input and output devices."));
}
