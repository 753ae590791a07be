// The document's export: the toolbar's Export opens the export dialog at once,
// the application's save command 0.1 s later.

#include "Document.h"
#include "Window_AF_WAV.h"

#include <QTimer>

void Document::OnToolbarSave() {
    SaveWAVFile();
}

void Document::Operation_Save() {
    // Every press restarts the wait, so presses within 0.1 s open one dialog.
    if (!timerSave) {
        timerSave = new QTimer(this);
        timerSave->setSingleShot(true);
        timerSave->setInterval(100);
        connect(timerSave, &QTimer::timeout, this, &Document::TimerSaveAudioTrackRoutine);
    }
    timerSave->start();
}

void Document::TimerSaveAudioTrackRoutine() {
    SaveWAVFile();
}

void Document::SaveWAVFile() {
    // Export is off while the window records (its button is disabled); the
    // menu's save command, which has no button state, follows it.
    if (recording() || !trackFileIsThere())
        return;
    Window_AF_WAV dialog(m_session, m_session.protectedFiles(), this);
    dialog.s_WAV_File_Path = m_track.s_WAV_File_Path;
    dialog.i_Track_Seconds = m_track.i_Audio_Duration_Seconds;
    // The recipe exports as this window last exported.
    connect(&dialog, &Window_AF_WAV::exportEnded, this, [this, &dialog](const QString&, bool saved) {
        if (saved)
            m_exportChoice = dialog.choice();
    });
    dialog.exec();
}
