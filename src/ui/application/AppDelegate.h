#pragma once

#include "names/Names.h"
#include "plans/PlanRunner.h"

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

// The one object all document windows share: it starts the application,
// owns the work folder, the tool runner and the state documents read, and
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

    PlanRunner& runner() { return *m_runner; }

    Document* newDocument();
    // One new window for each file, in order, each importing its file; with
    // none, one new window as File ▸ New makes. The windows come one after
    // another from the event loop, so hundreds of files never freeze it.
    void openFiles(const QStringList& files);
    void openDocument();
    void openPreGeneratedDocuments();
    Document* currentDocument() const;
    QList<Document*> documents() const;

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

    // Copy and cut delete the old clipboard file first, unless a version of an
    // open track is that file (as it is after a cut), or a queued plan names
    // it: then it stays.
    bool mayDeleteClipboardFile() const;

    // The work files the open windows hold or are about to make: every version
    // of every track, imports still under way and recordings' names, the
    // files of queued plans and the copied audio's name. Imports,
    // takes and joins are named past all of them, so that two windows opening
    // files in one second never share a working WAV.
    QStringList namesInUse() const;
    // What the names of an operation of `asking` must keep clear of: the
    // other windows' names, the files of queued plans and the silence track;
    // its own versions; the copied audio.
    NamesInUse namesAround(const Document* asking) const;
    // The work files open windows keep without showing them (earlier and
    // later versions, imports and takes under way), and the copied audio: a
    // split must not write its pieces over any of them.
    QStringList namesKeptUnshown() const;

    // The files an export must never replace: every version of every open
    // track, the clipboard and the silence track.
    QStringList protectedFiles() const;

    void OnMenuQuit();
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
    QString s_Output_Folder;
    QString sSoxPath;
    QString sFFmpegPath;
    QString sSilenceWavPath;
    QString sSilenceWavURL;
    quint64 u_Current_ID = 0;
    QString s_Copied_WAV_File;
    quint64 u_Open_New_Document = 0;
    quint64 u_Doc_Index = 0;
    QStringList array_Pre_Generated_Docs;
    quint64 u_Pre_Generated_Docs_Index = 0;
    QColor color_Pre_Generated_Docs = Qt::green;
    QString s_Mixed_WAV_File;
    // The folder the last file was opened from in this run; empty before.
    QString lastOpenFolder;

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

    std::unique_ptr<SingleInstance> m_instance;
    QStringList m_filesToOpen;
    std::unique_ptr<PlanRunner> m_runner;
    QList<QPointer<Document>> m_documents;
};
