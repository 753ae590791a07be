// The document's transport: playing the current version through a sound
// player, moved along by a one-second timer, and recording from the default
// input into a take that becomes the track.

#include "Microphone.h"
#include "SoundPlayer.h"
#include "SoundRecorder.h"
#include "document/Document.h"
#include "document/ImportPlans.h"
#include "document/WaveformPlot.h"
#include "names/Names.h"
#include "session/WorkFolder.h"
#include "text/FileSize.h"
#include "timeline/View_Audio_Wave.h"
#include "timeline/View_Time_Rule.h"
#include "widgets/Alerts.h"

#include <QAction>
#include <QCloseEvent>
#include <QCursor>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>

void Document::buildTransport() {
    popupMenuPlay = new QMenu(tr("Play"), this);
    popupMenuPlay->addAction(tr("Play from Start"), this, &Document::OnPopupMenuPlayFromStart);
    popupMenuPlay->addAction(tr("Play from Current Position"), this,
                             &Document::OnPopupMenuPlayFromCurrentPosition);
    popupMenuPlay->addAction(tr("Play Selection"), this, &Document::OnPopupMenuPlaySelection);

    connect(btnPlay, &QAction::triggered, this, &Document::OnToolbarPlay);
    connect(btnPause, &QAction::triggered, this, &Document::OnToolbarPause);
    connect(btnStop, &QAction::triggered, this, &Document::OnToolbarStop);
    connect(btnRecord, &QAction::triggered, this, &Document::OnToolbarRecord);
    connect(btnSoundPreferences, &QAction::triggered, this, &Document::OnToolbarSoundPreferences);

    btnRecord->setShortcut(Qt::Key_R);
    auto* space = new QAction(tr("Play or Pause"), this);
    space->setShortcut(Qt::Key_Space);
    connect(space, &QAction::triggered, this, &Document::togglePlayback);
    addAction(space);

    ez_Microphone = new Microphone(this);
    connect(ez_Microphone, &Microphone::hasAudioReceived, this, [this](const QVector<float>& buffer) {
        if (m_RecordStatus == StatusRecording)
            audioPlot->updateBuffer(buffer.constData(), int(buffer.size()));
    });
}

void Document::applyButtons(const TransportButtons& b) {
    const std::pair<QAction*, std::optional<bool>> buttons[] = {{btnPlay, b.play},
                                                                {btnRecord, b.record},
                                                                {btnPause, b.pause},
                                                                {btnStop, b.stop},
                                                                {btnSoundPreferences, b.soundPreferences},
                                                                {btnZoomPlus, b.zoomPlus},
                                                                {btnZoomMinus, b.zoomMinus},
                                                                {btnSave, b.save},
                                                                {btnTools, b.tools},
                                                                {btnCopy, b.copy},
                                                                {btnCut, b.cut},
                                                                {btnDelete, b.remove}};
    for (const auto& [button, on] : buttons)
        if (on)
            button->setEnabled(*on);
}

// Playback.

void Document::OnToolbarPlay() {
    if (m_RecordStatus != StatusPlaybackPaused) {
        popupMenuPlay->popup(popupPosition());
        return;
    }
    scheduleAudioPlayingTimer();
    sound->resume();
    applyButtons(buttonsAfter(TransportStep::Resume));
    m_RecordStatus = StatusPlaying;
}

void Document::OnPopupMenuPlayFromStart() {
    b_Play_Selection = false;
    playFromStart();
}
void Document::OnPopupMenuPlayFromCurrentPosition() {
    b_Play_Selection = false;
    playFromCurrent();
}
void Document::OnPopupMenuPlaySelection() {
    b_Play_Selection = true;
    playSelection();
}

void Document::playFromStart() {
    startPlaying(PlayFrom::Start);
}
void Document::playFromCurrent() {
    startPlaying(PlayFrom::Current);
}
void Document::playSelection() {
    startPlaying(PlayFrom::Selection);
}

void Document::startPlaying(PlayFrom from) {
    if (!mayStartPlaying(m_RecordStatus))
        return;
    if (!trackFileIsThere())
        return;
    if (const QString problem = SoundPlayer::outputProblem(); !problem.isEmpty()) {
        showErrorAlert(this, problem);
        return;
    }
    const PlayStart start =
        playStart(from, m_track.f_Audio_Position, m_track.f_Selection_Start, m_track.f_Audio_Length);
    m_track.setPosition(start.position);
    sound = std::make_unique<SoundPlayer>(m_track.s_WAV_File_Path);
    connect(sound.get(), &SoundPlayer::failed, this, [this](const QString& reason) {
        stopPlayback();
        showErrorAlert(this, reason == lostSoundOutputMessage()
                                 ? reason
                                 : tr("The track could not be played: %1").arg(reason));
    });
    sound->setCurrentTime(start.playerTime);
    sound->play();
    m_RecordStatus = StatusPlaying;
    applyButtons(buttonsAfter(TransportStep::PlayStart));
    u_Last_Position = 0;
    scheduleAudioPlayingTimer();
    viewAudioPlot->update();
    showMarkers();
}

void Document::invalidateAudioPlayingTimer() {
    if (timerHandleAudioPlaying) {
        timerHandleAudioPlaying->stop();
        timerHandleAudioPlaying->deleteLater(); // it may be the sender of the running tick
        timerHandleAudioPlaying = nullptr;
    }
}

void Document::scheduleAudioPlayingTimer() {
    invalidateAudioPlayingTimer();
    auto* timer = new QTimer(this);
    timer->setInterval(1000);
    timer->setTimerType(Qt::PreciseTimer);
    connect(timer, &QTimer::timeout, this, &Document::TimerHandleAudioPlayingRoutine);
    timer->start();
    timerHandleAudioPlaying = timer;
}

void Document::TimerHandleAudioPlayingRoutine() {
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

void Document::OnToolbarPause() {
    pauseAudio();
}

void Document::pauseAudio() {
    if (m_RecordStatus == StatusPlaying) {
        invalidateAudioPlayingTimer();
        sound->pause();
        applyButtons(buttonsAfter(TransportStep::PausePlayback));
        m_RecordStatus = StatusPlaybackPaused;
    } else if (m_RecordStatus == StatusRecording) {
        soundRecorder->pause();
        applyButtons(buttonsAfter(TransportStep::PauseRecording));
        m_RecordStatus = StatusRecordingPaused;
    }
}

void Document::OnToolbarStop() {
    stopAudio();
}

void Document::stopAudio() {
    if (m_RecordStatus == StatusPlaying || m_RecordStatus == StatusPlaybackPaused)
        stopPlayback();
    else if (m_RecordStatus == StatusRecording || m_RecordStatus == StatusRecordingPaused)
        endRecording();
}

void Document::stopPlayback() {
    invalidateAudioPlayingTimer();
    if (sound)
        sound->stop();
    applyButtons(buttonsAfter(TransportStep::StopPlayback));
    m_RecordStatus = StatusIdle;
}

void Document::togglePlayback() {
    if (m_RecordStatus == StatusPlaying)
        pauseAudio();
    else if (m_RecordStatus == StatusPlaybackPaused)
        OnToolbarPlay();
    else if (m_RecordStatus == StatusIdle && b_Audio_Loaded && btnPlay->isEnabled())
        OnPopupMenuPlayFromCurrentPosition();
}

void Document::closeEvent(QCloseEvent* event) {
    stopAudio();
    QMainWindow::closeEvent(event);
}

// Recording.

void Document::OnToolbarRecord() {
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

void Document::recordAudio() {
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
            showErrorAlert(this, problem);
            return;
        }
        const RecordingLimit limit = recordingLimit(folder);
        auto recorder = std::make_unique<SoundRecorder>(growingTakePath(s_Sound_File_Source, u_ID));
        recorder->setFrameLimit(limit.frames);
        if (!recorder->record()) {
            showErrorAlert(
                this, QStringLiteral("Could not start recording. Change record settings and try again."));
            return;
        }
        soundRecorder = std::move(recorder);
        connect(soundRecorder.get(), &SoundRecorder::inputLost, this, [this] {
            endRecording();
            showErrorAlert(this, tr("The sound input went away, so the recording stopped. What was recorded "
                                    "until then is kept as the track."));
        });
        connect(soundRecorder.get(), &SoundRecorder::limitReached, this, [this, limit, folder] {
            endRecording();
            showErrorAlert(this, recordingLimitMessage(limit, folder));
        });
        connect(soundRecorder.get(), &SoundRecorder::writeFailed, this, [this, folder] {
            endRecording();
            showErrorAlert(this, recordingDiskFullMessage(folder));
        });
        m_RecordStatus = StatusRecording;
        // The take becomes the track: a load still on its way is dropped, and
        // no other may start until the recording stops.
        beginLoad();
        btnOpen->setEnabled(false);
        viewAudioPlot->b_Recording = true;
        viewAudioPlot->update();
        ez_Microphone->startFetchingAudio();
    }
    applyButtons(buttonsAfter(TransportStep::RecordStart));
}

void Document::endRecording() {
    soundRecorder->stop();
    m_RecordStatus = StatusIdle;
    btnOpen->setEnabled(true);
    ez_Microphone->stopFetchingAudio();
    // Taken meanwhile by another window's file: the next free second.
    if (const QStringList taken = m_session.namesInUse();
        taken.contains(s_Sound_File_Source) || QFileInfo::exists(s_Sound_File_Source))
        s_Sound_File_Source = importNames(m_session.s_Output_Folder, taken).path();
    const QString grown = soundRecorder->path();
    soundRecorder.release()->deleteLater(); // this may run inside its own signal
    if (!isReadableAudio(grown) || !QFile::rename(grown, s_Sound_File_Source)) {
        QFile::remove(grown);
        // Nothing a reader can open was written: the track stays as it was.
        viewAudioPlot->b_Recording = false;
        viewAudioPlot->update();
        applyButtons(buttonsAfter(TransportStep::StopRecording));
        showErrorAlert(this, unusableAudioMessage(tr("The recording"), nullptr));
        // A window that never held a track shows the silence track instead,
        // as when its first file is refused.
        if (!b_Audio_Loaded)
            Open_And_Select_Silence_File();
        return;
    }

    m_track.s_File_Path = m_track.s_WAV_File_Path = s_Sound_File_Source;
    const QFileInfo take(m_track.s_File_Path);
    m_track.s_File_Extension = take.suffix();
    m_track.s_File_Name_Without_Extension = take.completeBaseName();
    m_track.s_WAV_File_URL = fileUrlText(m_session.s_Output_Folder, m_track.s_File_Name_Without_Extension +
                                                                        u'.' + m_track.s_File_Extension);
    setWindowTitle(m_track.s_File_Name_Without_Extension + "." + m_track.s_File_Extension);
    m_track.s_File_Size = fileSizeText(take.size());
    openFileWithFilePathURL(m_track.s_WAV_File_URL);
    // The buttons follow the status at once, so that nothing pressed while the
    // take's length is measured meets a stale toolbar.
    viewAudioPlot->b_Recording = false;
    applyButtons(buttonsAfter(TransportStep::StopRecording));
    const int request = beginLoad();
    const QString path = m_track.s_WAV_File_Path;
    m_session.runner().submit(buildProbePlan(path), this, [this, request, path](const PlanOutcome& outcome) {
        if (request != m_loadRequest)
            return;
        // A fresh history holding the take alone, its position one past it.
        m_track.s_WAV_File_Path = path;
        finishLoading(shownSeconds(outcome, m_track.s_WAV_File_Path), recordedVersionLabel(),
                      LoadEnd::RecordingTaken);
    });
}

// Sound settings.

void Document::OnToolbarSoundPreferences() {
    OnUserShowSoundPreferences();
}

void Document::OnUserShowSoundPreferences() {
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
    showErrorAlert(this, tr("No sound settings program was found. Install pavucontrol (PulseAudio Volume "
                            "Control) to choose the input and output devices."));
}
