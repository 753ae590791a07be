#pragma once

#include "session/Manifest.h"
#include "session/ManifestWriter.h"

#include "document/Opening.h"
#include "mixer/MixerTracks.h"
#include "session/Session.h"

#include <QColor>
#include <QKeySequence>
#include <QList>
#include <QObject>
#include <QPointer>
#include <memory>
#include <optional>

class Document;
class QAction;
class QMainWindow;
class QMenu;
class SingleInstance;

// The application: it starts the run, owns the session every window works in,
// keeps the window list, turns the windows' requests into new windows, and
// forwards the application's menu commands to the active document.
class AppDelegate : public QObject {
    Q_OBJECT
public:
    AppDelegate(); // the start phase begins here
    ~AppDelegate() override;

    // Prepares the work folder, finds the tools and makes the silence track.
    // Returns an exit status when the application must end instead of running.
    // `files` are those the editor was started with: an editor already running
    // on the work folder is handed them instead (or asked for a new window).
    std::optional<int> applicationDidFinishLaunching(const QStringList& files = {});

    // Deletes everything inside the folder but the running editor's lock; what
    // cannot be deleted is logged.
    static void RemoveAllContentInFolder(const QString& path);

    Session& session() { return m_session; }
    PlanRunner& runner() { return m_session.runner(); }

    // A new window, opening as the opening mode says (u_Open_New_Document).
    Document* newDocument();
    // One new window for each file, in order, each importing its file; with
    // none, one new window as File ▸ New makes. The windows come one after
    // another from the event loop, so hundreds of files never freeze it.
    void openFiles(const QStringList& files);
    // After a start that found the windows of an editor that died: asks
    // whether to reopen them, and does. True when windows were reopened.
    bool offerRecovery();
    // Returns once the manifest on disk lists the windows as they are now
    // (it is written on a thread of its own).
    void settleManifest();
    // Off only to measure what keeping the manifest costs (the benchmark).
    void setKeepsManifest(bool keeps) { m_keepsManifest = keeps; }
    // A new window that asks for the file to open.
    void openDocument();
    // File ▸ Open: into the current window when it still shows its untouched
    // silence track, as a drop there does, else as openDocument().
    void open();
    void openPreGeneratedDocuments();
    Document* currentDocument() const;
    QList<Document*> documents() const;
    // The open windows' tracks, as the mixer lists them.
    QList<OpenTrack> openTracks() const;

    // Gives a document window the application's menus.
    void installMenus(QMainWindow* window);

    // Commands forwarded to the current document; nothing happens without one.
    void undo();
    void redo();
    void copy();
    void cut();
    void paste();
    void deleteSelection(); // the Edit menu's Delete
    void save();            // the File menu's Export…
    // The Tracks menu's Join Open Tracks…: the track mixer, whose joined track
    // opens as a new green window.
    void OnMultipleTrackConcatenate();

    void OnMenuQuit();
    // Quit ends at once, losing every window's versions: windows holding
    // versions made since they were opened or last exported are asked about
    // first, once for all of them. True when quitting may go on.
    bool readyToQuit();
    [[noreturn]] static void Terminate_App();
    void OnMenuAppHomePage();
    void OnMenuCompanyHomePage();
    void OnMenuPrivacyPolicy();
    void OnMenuSubmitTicket();
    void OnMenuToolRuns();
    void OnMenuShortcuts(); // Help ▸ Keyboard Shortcuts, for the active window

    // The local page behind one of the four help items.
    static QString helpPagePath(const QString& page);

    bool b_Starting = false;
    QString s_Title_Bar_Text;
    quint64 u_Current_ID = 0;
    // What the next new window opens: 0 the silence track, 1 a file the user
    // chooses, 2 the next entry of array_Pre_Generated_Docs.
    quint64 u_Open_New_Document = 0;
    quint64 u_Doc_Index = 0;
    QStringList array_Pre_Generated_Docs;
    quint64 u_Pre_Generated_Docs_Index = 0;
    QColor color_Pre_Generated_Docs = Qt::green;
    QString s_Mixed_WAV_File; // the mixer's last joined track

    QAction* actionNew;
    QAction* actionOpen;
    QAction* actionExport;
    QAction* actionQuit;
    QAction* actionUndo;
    QAction* actionRedo;
    QAction* actionCut;
    QAction* actionCopy;
    QAction* actionPaste;
    QAction* actionDelete;
    QAction* actionHomePage;
    QAction* actionMakers;
    QAction* actionPrivacy;
    QAction* actionSupport;
    QAction* actionToolRuns;
    QAction* actionShortcuts;
    QAction* actionJoinTracks;

private:
    Document* loadedCurrentDocument() const;
    QAction* makeAction(const QString& text, QKeySequence::StandardKey key = QKeySequence::UnknownKey);
    void openHelpPage(const QString& page);

    void openNextFile();
    // A new window opening as `opening` says, or as the mode says without one.
    Document* newDocument(const std::optional<Opening>& opening);
    Document* makeDocument(const Opening& opening);
    // The opening the mode gives a window made now; a batch's entry is taken
    // (and the mode ends with the batch) when the window is made.
    Opening nextOpening();
    void openingTaken(Opening::Kind kind);
    // Writes the manifest of the windows open now, for a start after this
    // editor dies; removed when it ends cleanly. Only by the folder's owner.
    void keepManifest();
    void removeManifest();
    bool m_ownsFolder = false;
    std::optional<Recovery> m_recovery;         // what a dead editor left, set aside until asked
    std::unique_ptr<ManifestWriter> m_manifest; // while this editor owns the work folder
    bool m_keepsManifest = true;

    std::unique_ptr<SingleInstance> m_instance;
    QStringList m_filesToOpen;
    Session m_session;
    QList<QPointer<Document>> m_documents;
};
