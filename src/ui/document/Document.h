#pragma once

#include "ExportActions.h"
#include "Opening.h"
#include "SplitActions.h"
#include "actions/TrackWindow.h"
#include "batch/BatchActions.h"
#include "batch/Recipe.h"
#include "document/SplitPlans.h"
#include "edit/EditPlans.h"
#include "edit/EditingActions.h"
#include "effects/EffectActions.h"
#include "effects/EffectCatalogue.h"
#include "history/VersionHistory.h"
#include "loudness/LoudnessActions.h"
#include "session/Manifest.h"
#include "session/Session.h"
#include "timeline/MarkerKeys.h"
#include "timeline/TimeStrings.h"
#include "timeline/ZoomActions.h"
#include "tools/WorkingFormat.h"
#include "track/Track.h"
#include "transport/TransportActions.h"
#include "transport/TransportRules.h"

#include <QColor>
#include <QMainWindow>
#include <QPointer>
#include <functional>
#include <memory>

class HistoryWindow;
class QAction;
class QLabel;
class QMenu;
class QPushButton;
class QScrollArea;
class QTimer;
class QToolBar;
class View_Audio_Wave;
class View_Time_Rule;
class WaveformPlot;
struct PlanOutcome;

// One window holding one audio track. Whatever the user opens is converted
// into a working WAV in the work folder; every later version is a new file, and
// the version history chooses which one is current. The window knows the
// session it works in, never the application: what it asks of the
// application (windows for pieces, for dropped files) it asks by signals.
class Document : public QMainWindow, public TrackFiles, private TrackWindow {
    Q_OBJECT
public:
    // `addApplicationMenus` gives the window the application's menus, before
    // its own items go in among them.
    Document(Session& session, quint64 id, const Opening& opening = {},
             const std::function<void(QMainWindow*)>& addApplicationMenus = {});
    ~Document() override;

    // Loading, as `opening` says, 0.2 s after creation. Until then the window
    // is starting: it shows no track and has not asked for one.
    bool isStarting() const { return m_starting; }
    void TimerHandleStartupRoutine();
    void TimerOpenFilePanelRoutine();
    void Open_And_Select_An_Audio_File();
    void Open_And_Select_Silence_File();
    void Open_Pre_Generated_Audio_File();
    void OnToolbarOpen();
    // Asks for a file and opens it in this window when the window still shows
    // its untouched silence track (File ▸ Open there); false, asking nothing,
    // in any other window.
    bool openHere();
    void openFileWithFilePathURL(const QString& url);
    // Shows the current working WAV again in `colour`, as a fresh history.
    void Refresh_Audio_Plot(const QColor& colour);

    // The files this track holds in the work folder, for the session.
    QString shownFile() const override { return m_track.s_WAV_File_Path; }
    QStringList versionFiles() const override { return m_track.history().array_WAV_Files(); }
    // Every version, the import under way and the take being recorded.
    QStringList namesInUse() const override;

    // The track this window shows: its files, length, history, selection and position.
    Track& track() { return m_track; }
    const Track& track() const { return m_track; }

    // Version history. Every change to it, and every move to another version,
    // is told by historyChanged().
    const VersionHistory& history() const { return m_track.history(); }
    // Appends the current working WAV as the newest version, called `label`.
    void Add_WAV_File_To_Undo_Redo_Array(const QString& label, const Replay& replay = {});
    void Operation_Undo();
    void Operation_Redo();
    // Makes version `index` current (held to the list's ends) and reloads it,
    // as undoing or redoing that many steps would.
    void moveToVersion(qsizetype index);
    void Clear_Array_Of_WAV_Files();
    // Edit ▸ History…: this window's versions, one window per document.
    void showHistory();
    QAction* actionHistory;

    void changeColor(const QColor& color);

    // This window as the manifest keeps it: its source, colour and history.
    ManifestWindow manifestEntry() const;

    // Editing: copy and cut fill the session's clipboard; every other edit
    // makes a new version.
    EditingActions& editingActions() { return *m_editing; }

    // Effects: one sox effect over the whole track or over the selection only.
    EffectActions& effectActions() { return *m_effects; }

    // The recipe commands of the File menu.
    BatchActions& batchActions() { return *m_batch; }

    // Tracks ▸ Measure Loudness…
    LoudnessActions& loudnessActions() { return *m_loudness; }

    // The menu bar's own menus of this window (besides the application's
    // File, Edit, Tracks and Help items): the pop-up menus' actions again.
    QAction* actionSelectAll;
    QMenu* menuPasteAt;
    QMenu* menuPasteMixing;
    QMenu* menuSilence;
    QMenu* menuPlay;
    QMenu* menuView;
    QAction* actionZoomToFit;
    QAction* actionZoomToSelection;
    QAction* actionSetSelection;
    void selectAll(); // the markers at 0 and 100 %
    // Edit ▸ Set Selection…: the selection typed as times; the play position
    // goes to its start and the view scrolls to it.
    void setSelectionByTyping();
    // Moves the play position or a selection end as the keys do (Home, End,
    // the arrows, Shift with them, [ and ]).
    void pressMarkerKey(MarkerKey key);

    // Transport: playback of the current version and recording from the
    // default input, sharing one status.
    TransportActions& transportActions() { return *m_transport; }
    void togglePlayback(); // Space: play from the position, or pause

    // Export: the toolbar's Export opens the dialog at once, the
    // application's save command 0.1 s after its last press.
    ExportActions& exportActions() { return *m_export; }
    // Whether closing would lose versions the user has nowhere else: the
    // one shown was made since the track was opened or last exported.
    bool hasUnexportedChanges() const;
    // Asks before such a window closes: Export… (closing goes on after a
    // file was exported), Close Without Exporting or Cancel. True when
    // closing may go on; true at once when there is nothing to ask about.
    bool readyToClose();

    // Split into parts: every piece opens in a window of its own, in this
    // window's waveform colour.
    SplitActions& splitActions() { return *m_split; }

    // Zoom: the whole track spans u_Zoom_Factor visible widths.
    ZoomActions& zoomActions() { return *m_zoom; }

    quint64 u_ID;
    bool b_Audio_Loaded = false;

    WaveformPlot* audioPlot;
    View_Audio_Wave* viewAudioPlot;
    View_Time_Rule* viewTimeRule;
    QScrollArea* scrollviewAudioPlot;
    QWidget* viewTimePlusAudioPlot;

    QAction* btnOpen;
    QAction* btnPlay;
    QAction* btnRecord;
    QAction* btnPause;
    QAction* btnStop;
    QAction* btnSoundPreferences;
    QAction* btnZoomPlus;
    QAction* btnZoomMinus;
    QAction* btnSave;
    QAction* btnUndo;
    QAction* btnRedo;
    QAction* btnCopy;
    QAction* btnCut;
    QAction* btnPaste;
    QAction* btnDelete;
    QAction* btnTools;
    QAction* btnColour;

    // The status bar's texts, for the user and for tests.
    QLabel* labelSelection;
    QLabel* labelPosition;
    QLabel* labelSource; // the name of the file that was opened
    QLabel* labelDuration;
    QLabel* labelSize;
    QLabel* labelNotice;    // what the last effect's run said of its result: that it clipped
    QPushButton* btnCancel; // shown while a run goes on

signals:
    void loaded();         // a load or reload has finished
    void adopted();        // an edit's result has become the current version
    void historyChanged(); // a version was added, the list restarted, or another version made current
    void copied();         // a copy has filled the clipboard
    void colourChanged();  // the waveform has another colour
    void plotUpdated();    // new waveform points are on screen
    void splitHandedOver(const QStringList& pieces); // a split's pieces have gone to the application
    // Asks the application for new windows showing `paths` in place, in `colour`.
    void openTracksRequested(const QStringList& paths, const QColor& colour);
    void filesDropped(const QStringList& paths); // to open as files named on the command line
    void openingTaken(Opening::Kind kind);       // the start-up load has begun as its opening says

private:
    QToolBar* buildToolBar();
    void buildTransport();
    void applyButtons(const TransportButtons& buttons);
    // A stopped recording's take becomes the track, as a load does.
    void takeRecording(const QString& path);
    void refuseRecording(); // the take was unusable: the track stays as it was
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    bool showsUntouchedSilence() const;
    void setEditingEnabled(bool enabled);
    void setLoadedButtons();
    // Before a plan that writes audio: false, with the alert shown, when the
    // work folder takes no file or lacks the room the operation needs; false
    // without a word while recording, as the take is to replace the track.
    bool readyToWrite() override;
    // Whether the current version's file is there; when it has been removed
    // outside the editor, says so (rather than leave a tool to fail over it).
    bool trackFileIsThere() override;
    // Moves the history as `move` does to a copy of it, unless the version it
    // would make current has gone: then says so and stays.
    bool moveHistory(const std::function<void(VersionHistory&)>& move);
    // The whole seconds a load shows: the probe's, or the file's own when the
    // probe was cancelled.
    static qint64 shownSeconds(const PlanOutcome& outcome, const QString& path);
    // Shows why a plan failed, unless the user cancelled it; true when it failed.
    bool failed(const PlanOutcome& outcome) override;
    QWidget* windowWidget() override { return this; }
    void importFile(const QString& path);
    void importGivenFile(const QString& path);
    // How a load ends: the file to show, or shown already (a batch's file, a
    // recording's take); the history restarted with the load, or taken over
    // by the take.
    enum class LoadEnd { ShowFile, FileShown, RecordingTaken, Recovered };
    void reopenRecovered();
    // The one ending of every load: the duration, the buttons, the views, the
    // status bar and the history, whose one version is called `label`.
    void finishLoading(qint64 seconds, const QString& label, LoadEnd end = LoadEnd::ShowFile);
    void takeDuration(qint64 seconds);
    void reloadCurrentVersion();
    void chooseColour();
    QPoint popupPosition() const override; // where a pop-up menu opens
    void setUpAccessibility();
    void describeForAccessibility(); // the waveform, ruler and status texts in words
    void showMarkers();
    void buildMenuBar();
    void updateMenus();
    void addMarkerKey(QMenu* menu, const QString& text, const QKeySequence& keys, MarkerKey key);
    QList<QAction*> m_markerKeys;
    QList<QPair<QAction*, QAction*>> m_followedButtons; // a menu item and the toolbar button it follows
    EditingActions* m_editing = nullptr;
    EffectActions* m_effects = nullptr;
    ZoomActions* m_zoom = nullptr;
    TransportActions* m_transport = nullptr;
    void handOverPieces(const QStringList& pieces);
    SplitActions* m_split = nullptr;
    EditState editState() const override;
    // The names of an operation begun now, clear of every other window's files.
    ResultNames resultNames(Writes writes = Writes::Version) const override;
    void runEdit(const EditPlan& edit) override;
    PlanRunner& runner() override;
    quint64 windowId() const override { return u_ID; }
    void adoptResult(const EditPlan& edit, qint64 seconds);

    Session& m_session;
    Track m_track;
    QPointer<HistoryWindow> m_historyWindow;
    ExportActions* m_export = nullptr;
    BatchActions* m_batch = nullptr;
    LoudnessActions* m_loudness = nullptr;
    QToolBar* m_toolBar = nullptr;
    int m_plotRequest = 0;

    // Loading. Every load is numbered when it starts; a load that finishes
    // after a newer one began, or after a recording began, is dropped, so two
    // loads in one window never both take it.
    bool recording() const override;
    int beginLoad();
    int m_loadRequest = 0;
    // How this window opens its first track, given when the window is made: a
    // window made within another's start-up wait would otherwise take that
    // one's opening (a batch's windows a file dialog).
    Opening m_opening;
    bool m_starting = true;
    QString m_importing; // the working WAV an import under way will make
    void setStartupButtons();
};
