#include "ExportActions.h"

#include "Window_AF_WAV.h"
#include "actions/TrackWindow.h"
#include "session/Session.h"
#include "track/Track.h"

#include <QTimer>

ExportActions::ExportActions(Track& track, Session& session, TrackWindow& window, QObject* parent)
    : QObject(parent), m_track(track), m_session(session), m_window(window) {}

void ExportActions::OnToolbarSave() {
    SaveWAVFile();
}

void ExportActions::Operation_Save() {
    // Every press restarts the wait, so presses within 0.1 s open one dialog.
    if (!timerSave) {
        timerSave = new QTimer(this);
        timerSave->setSingleShot(true);
        timerSave->setInterval(100);
        connect(timerSave, &QTimer::timeout, this, &ExportActions::TimerSaveAudioTrackRoutine);
    }
    timerSave->start();
}

void ExportActions::TimerSaveAudioTrackRoutine() {
    SaveWAVFile();
}

bool ExportActions::SaveWAVFile() {
    // Export is off while the window records (its button is disabled); the
    // menu's save command, which has no button state, follows it.
    if (m_window.recording() || !m_window.trackFileIsThere())
        return false;
    Window_AF_WAV dialog(m_session, m_session.protectedFiles(), m_window.windowWidget());
    dialog.s_WAV_File_Path = m_track.s_WAV_File_Path;
    dialog.i_Track_Seconds = m_track.i_Audio_Duration_Seconds;
    bool saved = false;
    // The recipe exports as this window last exported; the version exported
    // is one the user now has outside the editor, so closing asks nothing.
    connect(&dialog, &Window_AF_WAV::exportEnded, this, [this, &dialog, &saved](const QString&, bool ok) {
        if (!ok)
            return;
        saved = true;
        m_exportChoice = dialog.choice();
        m_track.history().markKept();
        emit exported();
    });
    dialog.exec();
    return saved;
}
