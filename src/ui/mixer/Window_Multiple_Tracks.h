#pragma once

#include "mixer/MixerTracks.h"

#include <QDialog>
#include <QPointer>
#include <functional>
#include <memory>

class Session;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;
class QTimer;
class SoundPlayer;
class TracksModel;
class MixerStripView;

// The track mixer: the open documents' tracks as rows on one time line, which
// the user orders, trims to at least two, gives starts, previews, and joins.
class Window_Multiple_Tracks : public QDialog {
    Q_OBJECT
public:
    // `openTracks` lists the open windows' tracks whenever the list is refreshed.
    Window_Multiple_Tracks(Session& session, std::function<QList<OpenTrack>()> openTracks,
                           QWidget* parent = nullptr);
    ~Window_Multiple_Tracks() override;

    AudioTracks arrayTracks;
    quint64 Status_Play = 0; // 0 nothing loaded, 1 playing, 2 paused, 3 stopped
    quint64 u_Current_Index_Selected = ~quint64(0);
    bool bOK = false;
    std::unique_ptr<SoundPlayer> sound;
    QTableView* tableAudioTracks;
    QPushButton* btnPlay;
    QPushButton* btnPause;
    QPushButton* btnStop;
    QPushButton* btnMix;
    QLineEdit* textPosition;
    QLabel* labelClosing; // while the window waits to close: the joined track opens in N s
    MixerStripView* strip;
    QPointer<QTimer> timerCloseWindowOK;

    void Refresh_List();
    void OnRefresh();
    void OnPlay();
    void OnPause();
    void OnStop();
    void OnMoveUp();
    void OnMoveDown();
    void OnRemove();
    void OnUpdatePosition();
    void OnMix();
    void refreshTableAudioTracks();
    void tableViewSelectionDidChange();
    void TimerCloseWindowOKRoutine();

    // The last join's file; empty before one.
    const QString& mixedFile() const { return m_mixedFile; }

    // Seconds until the window closes with its joined track; 0 when it does not wait.
    int secondsUntilClose() const;

signals:
    void mixed(); // the join's runs have ended and the close timer runs

protected:
    void done(int result) override;

private:
    void reload();
    qint64 selectedRow() const;
    void setPreviewButtons(bool play, bool pause, bool stop);
    void showCountdown();

    Session& m_session;
    std::function<QList<OpenTrack>()> m_openTracks;
    QString m_mixedFile;
    TracksModel* m_model;
    QTimer* m_countdown;
};
