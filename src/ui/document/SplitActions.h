#pragma once

#include "document/SplitPlans.h"

#include <QObject>

class QMenu;
class Session;
class Track;
class TrackWindow;

// Split into Parts: each cuts the current version into pieces and hands them
// on, to open every piece in a window of its own. The track that is split and
// its history stay as they are.
class SplitActions : public QObject {
    Q_OBJECT
public:
    SplitActions(Track& track, Session& session, TrackWindow& window, QObject* parent = nullptr);

    void OnPopupSplit2PartsCurrentPosition();
    void OnPopupSplit3PartsBeforeSelectionAfter();
    void OnPopupSplitOnSilence();
    // The three commands, each action named after its operation.
    QMenu* popupMenuSplit;

signals:
    void piecesMade(const QStringList& pieces); // in order, to be opened

private:
    void runSplit(const splitting::SplitPlan& split);
    // The plans run as the window's: Escape there cancels them, and they end
    // with it.
    QObject* receiver();
    // The pieces' stem, clear of every file a window keeps without showing it.
    QString pieceStem() const;

    Track& m_track;
    Session& m_session;
    TrackWindow& m_window;
};
