#pragma once

#include "document/ExportPlans.h"

#include <QObject>
#include <QPointer>

class QTimer;
class Session;
class Track;
class TrackWindow;

// Export: the toolbar's Export opens the export dialog at once, the
// application's save command 0.1 s after its last press.
class ExportActions : public QObject {
    Q_OBJECT
public:
    ExportActions(Track& track, Session& session, TrackWindow& window, QObject* parent = nullptr);

    void OnToolbarSave();
    void Operation_Save();
    void TimerSaveAudioTrackRoutine();
    // Shows the export dialog; true when a file was exported before it closed.
    bool SaveWAVFile();
    QPointer<QTimer> timerSave;

    // The setting of this window's last export, which its recipe exports as.
    const exporting::Choice& exportChoice() const { return m_exportChoice; }

signals:
    // The version shown is now kept outside the editor.
    void exported();

private:
    Track& m_track;
    Session& m_session;
    TrackWindow& m_window;
    exporting::Choice m_exportChoice;
};
