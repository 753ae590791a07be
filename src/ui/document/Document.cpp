#include "Document.h"

#include "HistoryWindow.h"
#include "WaveformPlot.h"
#include "document/ImportPlans.h"
#include "document/Waveform.h"
#include "names/Names.h"
#include "session/CommandLine.h"
#include "session/WorkFolder.h"
#include "text/FileSize.h"
#include "timeline/View_Audio_Wave.h"
#include "timeline/View_Time_Rule.h"
#include "tools/Duration.h"
#include "transport/Microphone.h"
#include "transport/SoundPlayer.h"
#include "transport/SoundRecorder.h"
#include "widgets/Alerts.h"
#include "widgets/Icons.h"

#include <QAction>
#include <QColorDialog>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QFutureWatcher>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>
#include <QtConcurrent>
#include <cmath>

namespace {
// The name of a toolbar action's icon, kept for redrawing it.
constexpr const char* IconProperty = "tanselo-icon";

QString chooseAudioFile(QWidget* parent, QString& lastFolder) {
    // The dialog starts where the last file of this session came from.
    QStringList patterns;
    for (const QString& extension : openableExtensions())
        patterns << "*." + extension; // the dialog matches names case-insensitively
    QFileDialog dialog(parent, QStringLiteral("Select an audio file."),
                       lastFolder.isEmpty() ? QDir::homePath() : lastFolder);
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setNameFilter(QObject::tr("Audio files (%1)").arg(patterns.join(u' ')));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return {};
    lastFolder = QFileInfo(dialog.selectedFiles().first()).path();
    return dialog.selectedFiles().first();
}

} // namespace

Document::Document(Session& session, quint64 id, const Opening& opening,
                   const std::function<void(QMainWindow*)>& addApplicationMenus)
    : u_ID(id), m_session(session), m_opening(opening) {
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QGuiApplication::applicationDisplayName());
    setMinimumSize(800, 140);
    resize(1000, 380);

    // The ruler stands above the overlay in one container, which the scroll
    // area scrolls once a zoom has made it wider than the visible width.
    viewTimeRule = new View_Time_Rule;
    viewAudioPlot = new View_Audio_Wave(m_track);
    audioPlot = new WaveformPlot(viewAudioPlot);
    viewAudioPlot->setPlotView(audioPlot);
    viewTimeRule->u_ID = id;
    viewAudioPlot->u_ID = id;

    viewTimePlusAudioPlot = new QWidget;
    auto* layout = new QVBoxLayout(viewTimePlusAudioPlot);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(viewTimeRule);
    layout->addWidget(viewAudioPlot, 1);

    scrollviewAudioPlot = new QScrollArea;
    scrollviewAudioPlot->setFrameShape(QFrame::NoFrame);
    scrollviewAudioPlot->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scrollviewAudioPlot->setWidgetResizable(false);
    scrollviewAudioPlot->setWidget(viewTimePlusAudioPlot);
    m_zoom = new ZoomActions(
        m_track, scrollviewAudioPlot, viewTimePlusAudioPlot, viewTimeRule, viewAudioPlot,
        [this] { return b_Audio_Loaded && !recording(); }, this);
    setCentralWidget(scrollviewAudioPlot);
    connect(viewAudioPlot, &View_Audio_Wave::markersChanged, this, &Document::showMarkers);
    connect(&m_track, &Track::changed, this, &Document::showMarkers);

    m_editing = new EditingActions(m_track, m_session, *this, this);
    QMenu* popupMenuTools = m_editing->popupMenuTools;
    m_split = new SplitActions(m_track, m_session, *this, this);
    m_export = new ExportActions(m_track, m_session, *this, this);
    m_batch = new BatchActions(m_track, m_session, this, [this] { return m_export->exportChoice(); });
    popupMenuTools->addMenu(m_split->popupMenuSplit);
    connect(m_split, &SplitActions::piecesMade, this, &Document::handOverPieces);
    m_effects = new EffectActions(*this, this);
    popupMenuTools->addSeparator();
    popupMenuTools->addMenu(m_effects->popupMenuEffects);
    m_toolBar = buildToolBar();
    addToolBar(m_toolBar);
    buildTransport();
    labelSelection = new QLabel;
    labelPosition = new QLabel;
    labelSource = new QLabel;
    labelDuration = new QLabel;
    labelSize = new QLabel;
    statusBar()->addWidget(labelSelection);
    statusBar()->addWidget(labelPosition);
    statusBar()->addPermanentWidget(labelSource);
    statusBar()->addPermanentWidget(labelDuration);
    statusBar()->addPermanentWidget(labelSize);
    if (addApplicationMenus)
        addApplicationMenus(this);
    buildMenuBar();
    connect(this, &Document::loaded, this, &Document::updateMenus);
    connect(btnPlay, &QAction::enabledChanged, this, &Document::updateMenus);

    // Any run can be stopped: the status bar's Cancel while one runs, or Escape
    // in the window whose operation it is.
    PlanRunner& runner = session.runner();
    btnCancel = new QPushButton(tr("Cancel"));
    btnCancel->setToolTip(tr("Stop the running operation and keep the track as it was"));
    statusBar()->addPermanentWidget(btnCancel);
    connect(btnCancel, &QPushButton::clicked, &runner, &PlanRunner::cancel);
    auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    escape->setWhatsThis(tr("Cancel the Running Operation"));
    connect(escape, &QShortcut::activated, this, [this] {
        if (m_session.runner().currentReceiver() == this)
            m_session.runner().cancel();
    });
    connect(&runner, &PlanRunner::busyChanged, this, [this](bool busy) { setEditingEnabled(!busy); });
    connect(&runner, &PlanRunner::progress, this, [this](const QString& text) {
        if (text.isEmpty())
            statusBar()->clearMessage();
        else
            statusBar()->showMessage(text, text == tr("Cancelled") ? 5000 : 0);
    });
    setEditingEnabled(!runner.isBusy());
    setUpAccessibility();

    // Audio files dropped on the window open as those named on the command line.
    setAcceptDrops(true);

    m_session.addTrack(this);
    // Nothing may be pressed before the start-up load begins: Open waits for
    // it, and the rest follow the start-up routine's states from the first
    // moment the window shows.
    setStartupButtons();
    btnOpen->setEnabled(false);
    QTimer::singleShot(100, this, &Document::TimerHandleStartupRoutine);
}

// The player and the recorder go with the window; a recorder finishes its file.
Document::~Document() {
    m_session.removeTrack(this);
    // Before the track goes: a recorder finishing its file still reports to the window.
    soundRecorder.reset();
    sound.reset();
}

QToolBar* Document::buildToolBar() {
    auto* bar = new QToolBar(tr("Track"), this);
    bar->setMovable(false);
    bar->setIconSize(QSize(24, 24));
    auto add = [this, bar](const QString& icon, const QString& text, const QString& tip) {
        QAction* action = bar->addAction(toolbarIcon(icon, palette()), text);
        action->setToolTip(tip);
        action->setProperty(IconProperty, icon);
        return action;
    };
    btnOpen = add("open", tr("Open"), tr("Open an audio file in this window"));
    bar->addSeparator();
    btnPlay = add("play", tr("Play"), tr("Play the track"));
    btnPause = add("pause", tr("Pause"), tr("Pause playback"));
    btnStop = add("stop", tr("Stop"), tr("Stop playback"));
    btnRecord = add("record", tr("Record"), tr("Record from the microphone"));
    btnSoundPreferences = add("sound-settings", tr("Sound Settings"), tr("Open the system's sound settings"));
    bar->addSeparator();
    btnZoomPlus = add("zoom-in", tr("Zoom In"), tr("Widen the waveform"));
    btnZoomMinus = add("zoom-out", tr("Zoom Out"), tr("Narrow the waveform"));
    bar->addSeparator();
    btnUndo = add("undo", tr("Undo"), tr("Go back to the previous version of the track"));
    btnRedo = add("redo", tr("Redo"), tr("Go forward to the next version of the track"));
    btnCopy = add("copy", tr("Copy"), tr("Copy the selection"));
    btnCut = add("cut", tr("Cut"), tr("Cut the selection out"));
    btnPaste = add("paste", tr("Paste"), tr("Paste the copied audio"));
    btnDelete = add("delete", tr("Delete"), tr("Delete the selection"));
    btnTools = add("tools", tr("Effects"), tr("Apply an effect"));
    bar->addSeparator();
    btnSave = add("export", tr("Export"), tr("Export the track as WAV, M4A or MP3"));
    btnColour = add("colour", tr("Colour"), tr("Choose the waveform's colour"));

    connect(btnOpen, &QAction::triggered, this, &Document::OnToolbarOpen);
    connect(btnCopy, &QAction::triggered, m_editing, &EditingActions::Operation_Copy);
    connect(btnCut, &QAction::triggered, m_editing, &EditingActions::Operation_Cut);
    connect(btnDelete, &QAction::triggered, m_editing, &EditingActions::Operation_Delete);
    connect(btnPaste, &QAction::triggered, m_editing, &EditingActions::Operation_Paste);
    connect(btnTools, &QAction::triggered, m_editing, &EditingActions::OnToolbarTools);
    connect(btnUndo, &QAction::triggered, this, &Document::Operation_Undo);
    connect(btnRedo, &QAction::triggered, this, &Document::Operation_Redo);
    connect(btnColour, &QAction::triggered, this, &Document::chooseColour);
    connect(btnSave, &QAction::triggered, m_export, &ExportActions::OnToolbarSave);
    btnZoomPlus->setShortcuts(QKeySequence::ZoomIn);
    btnZoomMinus->setShortcuts(QKeySequence::ZoomOut);
    connect(btnZoomPlus, &QAction::triggered, m_zoom, &ZoomActions::OnToolbarZoomPlus);
    connect(btnZoomMinus, &QAction::triggered, m_zoom, &ZoomActions::OnToolbarZoomMinus);
    return bar;
}

void Document::changeEvent(QEvent* event) {
    // A new palette (a dark theme) or icon theme redraws the toolbar's icons.
    if (m_toolBar && (event->type() == QEvent::PaletteChange || event->type() == QEvent::ThemeChange))
        for (QAction* action : m_toolBar->actions())
            if (const QString icon = action->property(IconProperty).toString(); !icon.isEmpty())
                action->setIcon(toolbarIcon(icon, palette()));
    QMainWindow::changeEvent(event);
}

void Document::setEditingEnabled(bool enabled) {
    m_toolBar->setEnabled(enabled);
    scrollviewAudioPlot->setEnabled(enabled);
    btnCancel->setVisible(!enabled);
    if (m_historyWindow)
        m_historyWindow->setChoosingEnabled(enabled);
    updateMenus();
}

void Document::setStartupButtons() {
    for (QAction* on : {btnRecord, btnSoundPreferences, btnUndo, btnRedo, btnPaste})
        on->setEnabled(true);
    for (QAction* off : {btnPlay, btnPause, btnStop, btnZoomPlus, btnZoomMinus, btnSave, btnCopy, btnCut,
                         btnDelete, btnTools})
        off->setEnabled(false);
}

void Document::TimerHandleStartupRoutine() {
    if (!recording())
        setStartupButtons();
    audioPlot->setBackgroundColor(QColor::fromRgbF(0, 0, 0, 1));
    audioPlot->setColor(QColor::fromRgbF(0, 1, 0, 1));
    audioPlot->setPlotOpacity(0.5);
    m_track.setSelection(40, 60);
    QTimer::singleShot(100, this, &Document::TimerOpenFilePanelRoutine);
}

void Document::TimerOpenFilePanelRoutine() {
    m_starting = false;
    btnOpen->setEnabled(!recording());
    // A recording started meanwhile makes the track when it stops, and a file
    // the user opened in the meantime is the track already.
    const bool busy = recording() || m_loadRequest > 0;
    if (!busy) {
        switch (m_opening.kind) {
        case Opening::Kind::GeneratedPiece:
            Open_Pre_Generated_Audio_File();
            break;
        case Opening::Kind::AskForFile:
            Open_And_Select_An_Audio_File();
            break;
        case Opening::Kind::Silence:
            Open_And_Select_Silence_File();
            break;
        case Opening::Kind::GivenFile:
            importGivenFile(m_opening.path);
            break;
        case Opening::Kind::Nothing:
            break;
        }
    }
    emit openingTaken(m_opening.kind);
}

void Document::handOverPieces(const QStringList& pieces) {
    emit openTracksRequested(pieces, audioPlot->color());
    emit splitHandedOver(pieces);
}

bool Document::recording() const {
    return m_RecordStatus == StatusRecording || m_RecordStatus == StatusRecordingPaused;
}

int Document::beginLoad() {
    return ++m_loadRequest;
}

void Document::OnToolbarOpen() {
    if (recording())
        return;
    // Opening here starts a fresh history and deletes the old one's files: a
    // history of several versions is the user's work, so ask first.
    const qsizetype versions = m_track.history().versions().size();
    if (versions > 1 &&
        showAlert(this, tr("Open a file in this window? Its %1 versions will be deleted.").arg(versions), {},
                  {tr("Open…"), tr("Cancel")}) != 0)
        return;
    Open_And_Select_An_Audio_File();
}

void Document::openGivenFile(const QString& path) {
    m_opening = Opening::givenFile(path);
}

void Document::importGivenFile(const QString& path) {
    if (const QString problem = givenFileProblem(path); !problem.isEmpty()) {
        showErrorAlert(this, problem);
        if (!b_Audio_Loaded)
            Open_And_Select_Silence_File();
        return;
    }
    m_session.lastOpenFolder = QFileInfo(path).absolutePath();
    importFile(path);
}

bool Document::showsUntouchedSilence() const {
    return b_Audio_Loaded && !recording() &&
           m_track.history().array_WAV_Files() == QStringList{m_session.sSilenceWavPath};
}

void Document::dragEnterEvent(QDragEnterEvent* event) {
    if (!droppedFiles(event->mimeData()->urls()).isEmpty())
        event->acceptProposedAction();
}

void Document::dropEvent(QDropEvent* event) {
    QStringList files = droppedFiles(event->mimeData()->urls());
    if (files.isEmpty())
        return;
    event->acceptProposedAction();
    // A window still on its first, silent track takes the first file itself.
    if (showsUntouchedSilence())
        importGivenFile(files.takeFirst());
    if (!files.isEmpty())
        emit filesDropped(files);
}

void Document::Open_And_Select_An_Audio_File() {
    const QString path = chooseAudioFile(this, m_session.lastOpenFolder);
    if (recording()) // R was pressed while the dialog was up: the take wins
        return;
    if (path.isEmpty())
        Open_And_Select_Silence_File();
    else
        importFile(path);
}

bool Document::readyToWrite() {
    // The menu's edit commands still reach a recording window: an edit then
    // would be dropped with the old history when the take replaces it.
    if (recording())
        return false;
    const QString problem =
        roomToWorkProblem(m_session.s_Output_Folder, QFileInfo(m_track.s_WAV_File_Path).size());
    if (problem.isEmpty())
        return true;
    showErrorAlert(this, problem);
    return false;
}

void Document::importFile(const QString& path) {
    if (!readyToWrite())
        return;
    const QFileInfo source(path);
    const qint64 size = source.size();
    const ResultNames names = importNames(m_session.s_Output_Folder, m_session.namesInUse());
    const int request = beginLoad();
    m_importing = names.path();
    m_session.runner().submit(
        buildImportPlan(path, names.path()), this, [=, this](const PlanOutcome& outcome) {
            if (m_importing == names.path())
                m_importing.clear();
            if (request != m_loadRequest)
                return;
            if (failed(outcome)) {
                // A window that never held a track falls back to the silence track,
                // as when its file dialog is cancelled, rather than stay empty.
                if (!b_Audio_Loaded)
                    Open_And_Select_Silence_File();
                return;
            }
            m_track.s_File_URL = fileUrlText(path);
            m_track.s_File_Path = path;
            m_track.s_File_Extension = source.suffix();
            m_track.s_File_Name_Without_Extension = source.completeBaseName();
            m_track.s_Folder_Path = source.path();
            m_track.s_File_Size = fileSizeText(size);
            m_track.s_WAV_File_Path = names.path();
            m_track.s_WAV_File_URL = fileUrlText(m_session.s_Output_Folder, names.name());
            setWindowTitle(names.name());
            finishLoading(outcome.seconds.value_or(0), openedVersionLabel(path));
        });
}

void Document::Open_And_Select_Silence_File() {
    m_track.s_File_Path = m_track.s_WAV_File_Path = m_session.sSilenceWavPath;
    m_track.s_File_URL = m_track.s_WAV_File_URL = m_session.sSilenceWavURL;
    m_track.s_File_Extension = QFileInfo(m_track.s_File_Path).suffix();
    m_track.s_File_Size.clear();
    setWindowTitle(QStringLiteral("silence.wav"));
    const int request = beginLoad();
    m_session.runner().submit(
        buildProbePlan(m_track.s_WAV_File_Path), this, [this, request](const PlanOutcome& outcome) {
            if (request == m_loadRequest)
                finishLoading(shownSeconds(outcome, m_track.s_WAV_File_Path), silentTrackVersionLabel());
        });
}

void Document::Open_Pre_Generated_Audio_File() {
    if (m_opening.path.isEmpty()) { // only after an empty batch
        Open_And_Select_Silence_File();
        return;
    }
    m_track.s_File_Path = m_track.s_WAV_File_Path = m_opening.path;
    m_track.s_File_URL = m_track.s_WAV_File_URL = fileUrlText(m_track.s_File_Path);
    m_track.s_File_Extension = QFileInfo(m_track.s_File_Path).suffix();
    m_track.s_File_Size.clear();
    setWindowTitle(QFileInfo(m_track.s_File_Path).fileName());
    Refresh_Audio_Plot(m_opening.colour);
}

void Document::Refresh_Audio_Plot(const QColor& colour) {
    // A window that records keeps recording: its take replaces the track.
    if (recording())
        return;
    openFileWithFilePathURL(m_track.s_WAV_File_URL);
    changeColor(colour);
    const int request = beginLoad();
    m_session.runner().submit(
        buildProbePlan(m_track.s_WAV_File_Path), this, [this, request](const PlanOutcome& outcome) {
            if (request == m_loadRequest)
                finishLoading(shownSeconds(outcome, m_track.s_WAV_File_Path),
                              openedVersionLabel(m_track.s_WAV_File_Path), LoadEnd::FileShown);
        });
}

void Document::finishLoading(qint64 seconds, const QString& label, LoadEnd end) {
    if (end == LoadEnd::ShowFile)
        openFileWithFilePathURL(m_track.s_WAV_File_URL);
    takeDuration(seconds);
    // A recording's stop has set the buttons already, the moment it stopped.
    if (end != LoadEnd::RecordingTaken)
        setLoadedButtons();
    b_Audio_Loaded = viewAudioPlot->b_Audio_Loaded = viewTimeRule->b_Audio_Loaded = true;
    viewTimeRule->update();
    viewAudioPlot->update();
    // The loaded file becomes version 0 of a fresh history; a take stands
    // alone in it with the position one past it.
    if (end == LoadEnd::RecordingTaken)
        m_track.history().takeOverRecording(m_track.s_WAV_File_Path, label);
    else
        m_track.history().restart(m_track.s_WAV_File_Path, label);
    emit historyChanged();
    showMarkers();
    labelSource->setText(QFileInfo(m_track.s_File_Path).fileName());
    labelSize->setText(m_track.s_File_Size);
    labelSize->setVisible(!m_track.s_File_Size.isEmpty());
    describeForAccessibility();
    emit loaded();
}

qint64 Document::shownSeconds(const PlanOutcome& outcome, const QString& path) {
    if (outcome.seconds)
        return *outcome.seconds;
    // The probe of a load was cancelled (or could not run): the window still
    // shows what its file holds, read from the WAV's header as ffmpeg would
    // say it (hundredths, rounded, then whole seconds), never a length of 0.
    const qint64 frames = audioFrames(path);
    return frames > 0 ? qint64(std::floor(std::round(double(frames) / workingFormat::SampleRate * 100) / 100))
                      : 0;
}

bool Document::failed(const PlanOutcome& outcome) {
    if (outcome.ok)
        return false;
    if (!outcome.cancelled) // a cancel is told in the status bar alone
        showErrorAlert(this, outcome.alert);
    return true;
}

void Document::setLoadedButtons() {
    for (QAction* on : {btnPlay, btnRecord, btnSoundPreferences, btnZoomPlus, btnZoomMinus, btnSave, btnCopy,
                        btnCut, btnDelete, btnTools})
        on->setEnabled(true);
    for (QAction* off : {btnPause, btnStop})
        off->setEnabled(false);
}

void Document::takeDuration(qint64 seconds) {
    m_track.setDuration(seconds);
    viewTimeRule->i_Audio_Duration_Seconds = seconds;
    labelDuration->setText(tr("Length %1").arg(clockText(seconds)));
    viewTimeRule->update();
    viewAudioPlot->update();
    showMarkers();
}

void Document::openFileWithFilePathURL(const QString& url) {
    const QString path = pathOfFileUrlText(url);
    audioPlot->clear();
    const int request = ++m_plotRequest;
    auto* watcher = new QFutureWatcher<Waveform>(this);
    connect(watcher, &QFutureWatcher<Waveform>::finished, this, [this, watcher, request] {
        watcher->deleteLater();
        if (request != m_plotRequest) // a newer file has been asked for meanwhile
            return;
        const Waveform waveform = watcher->result();
        audioPlot->setPoints(waveform.ok && !waveform.channels.empty() ? waveform.channels.front()
                                                                       : std::vector<float>());
        viewAudioPlot->update();
        emit plotUpdated();
    });
    watcher->setFuture(QtConcurrent::run(reduceWaveform, path, 1024));
}

QStringList Document::namesInUse() const {
    QStringList names = m_track.history().array_WAV_Files();
    if (!m_importing.isEmpty())
        names << m_importing;
    if (recording())
        names << s_Sound_File_Source;
    return names;
}

void Document::Add_WAV_File_To_Undo_Redo_Array(const QString& label, const Replay& replay) {
    m_track.history().add(m_track.s_WAV_File_Path, label, replay);
    emit historyChanged();
}

void Document::Clear_Array_Of_WAV_Files() {
    m_track.history().clear();
    emit historyChanged();
}

bool Document::trackFileIsThere() {
    if (!b_Audio_Loaded || QFileInfo::exists(m_track.s_WAV_File_Path))
        return true;
    showErrorAlert(this, missingTrackMessage(m_track.s_WAV_File_Path));
    return false;
}

bool Document::moveHistory(const std::function<void(VersionHistory&)>& move) {
    if (m_track.history().versions().isEmpty()) // nothing loaded yet
        return false;
    VersionHistory moved = m_track.history();
    move(moved);
    // A version whose file is gone would show as an empty track of no length.
    if (const QString target = moved.current(); !target.isEmpty() && !QFileInfo::exists(target)) {
        showErrorAlert(this, missingVersionMessage(target));
        return false;
    }
    m_track.history() = moved;
    emit historyChanged();
    reloadCurrentVersion();
    return true;
}

void Document::Operation_Undo() {
    moveHistory([](VersionHistory& history) { history.undo(); });
}

void Document::Operation_Redo() {
    moveHistory([](VersionHistory& history) { history.redo(); });
}

void Document::moveToVersion(qsizetype index) {
    moveHistory([index](VersionHistory& history) { history.moveTo(index); });
}

void Document::reloadCurrentVersion() {
    // Markers, zoom, buttons and the history itself stay as they are.
    m_track.s_WAV_File_Path = m_track.history().current();
    setWindowTitle(QFileInfo(m_track.s_WAV_File_Path).fileName());
    m_track.s_WAV_File_URL =
        versionUrlText(m_track.s_WAV_File_Path, m_session.s_Output_Folder, m_session.sSilenceWavURL);
    openFileWithFilePathURL(m_track.s_WAV_File_URL);
    m_session.runner().submit(buildProbePlan(m_track.s_WAV_File_Path), this,
                              [this](const PlanOutcome& outcome) {
                                  takeDuration(shownSeconds(outcome, m_track.s_WAV_File_Path));
                                  emit loaded();
                              });
}

void Document::changeColor(const QColor& color) {
    audioPlot->setColor(color);
}

void Document::chooseColour() {
    const QColor color = QColorDialog::getColor(audioPlot->color(), this, tr("Waveform Colour"));
    if (color.isValid())
        changeColor(color);
}
