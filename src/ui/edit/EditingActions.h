#pragma once

#include "operations/Places.h"

#include <QObject>

class QMenu;
class Session;
class Track;
class TrackWindow;

// The editing operations: each gathers the track's state, has the edit built
// as a plan and runs it through the window, which adopts the result. Copy and
// cut fill the session's clipboard; every other edit makes a new version.
class EditingActions : public QObject {
    Q_OBJECT
public:
    EditingActions(Track& track, Session& session, TrackWindow& window, QObject* parent = nullptr);

    void Operation_Copy();
    void Operation_Cut();
    void Operation_Delete();
    void Operation_Paste(); // pops up the paste menu, or says there is nothing to paste
    void OnPopupMenuPasteAtStart();
    void OnPopupMenuPasteAtCurrentPosition();
    void OnPopupMenuPasteAtStartOfSelection();
    void OnPopupMenuPasteAtEndOfSelection();
    void OnPopupMenuPasteAtEnd();
    void OnPopupPasteMixingAtStart();
    void OnPopupPasteMixingAtCurrentPosition();
    void OnPopupPasteMixingAtStartOfSelection();
    void OnPopupPasteMixingAtEndOfSelection();
    quint64 Get_Silence_Duration_In_MS();
    void OnPopupSilenceInsertAtStart();
    void OnPopupSilenceInsertAtEnd();
    void OnPopupSilenceInsertAtCurrentPosition();
    void OnPopupSilenceSelection();
    void OnPopupSilenceTrim();
    void OnToolbarTools(); // pops up the tools menu

    QMenu* popupMenuTools; // the three menus below, then whatever the window adds
    QMenu* popupMenuPaste;
    QMenu* popupMenuPasteMixing;
    QMenu* popupMenuSilence;

private:
    // False, with the alert shown, when a result of `seconds` would pass what a WAV holds.
    bool resultFitsAWav(double seconds);
    void paste(PastePlace place);
    void pasteMix(PastePlace place);
    bool haveCopiedContent(); // or says "There is no copied content."
    void insertSilence(SilencePlace place);

    Track& m_track;
    Session& m_session;
    TrackWindow& m_window;
};
