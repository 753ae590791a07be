#pragma once

#include <QObject>
#include <QPointer>
#include <functional>

class LoudnessWindow;
class QAction;
class Session;
class Track;
class TrackWindow;

// Tracks ▸ Measure Loudness…: ffmpeg's EBU R128 measurement of the current
// version, and of the selection when it is a stretch of the track, shown in
// a window that stays open beside the document.
class LoudnessActions : public QObject {
    Q_OBJECT
public:
    // `source` names the track as the status bar does.
    LoudnessActions(Track& track, Session& session, TrackWindow& window, std::function<QString()> source,
                    QObject* parent = nullptr);

    QAction* actionMeasureLoudness;
    void measureLoudness();
    LoudnessWindow* loudnessWindow() const; // null until first measured

private:
    Track& m_track;
    Session& m_session;
    TrackWindow& m_window;
    std::function<QString()> m_source;
    QPointer<LoudnessWindow> m_loudness;
};
