#include "Document.h"

#include "HistoryWindow.h"
#include "WaveformPlot.h"
#include "session/WorkFolder.h"
#include "timeline/View_Audio_Wave.h"
#include "timeline/View_Time_Rule.h"
#include "transport/Microphone.h"
#include "transport/SoundPlayer.h"
#include "transport/SoundRecorder.h"
#include "widgets/Alerts.h"
#include "widgets/Icons.h"

#include <QAction>
#include <QCloseEvent>
#include <QColorDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

namespace {
// The name of a toolbar action's icon, kept for redrawing it.
constexpr const char* IconProperty = "tanselo-icon";
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
    connect(m_export, &ExportActions::exported, this, &Document::historyChanged); // the manifest's mark
    m_batch = new BatchActions(m_track, m_session, this, [this] { return m_export->exportChoice(); });
    m_loudness = new LoudnessActions(
        m_track, m_session, *this, [this] { return labelSource->text(); }, this);
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
    labelNotice = new QLabel;
    labelNotice->setObjectName(QStringLiteral("labelNotice"));
    labelNotice->setStyleSheet(QStringLiteral("color: #a04000"));
    labelNotice->hide();
    statusBar()->addWidget(labelSelection);
    statusBar()->addWidget(labelPosition);
    statusBar()->addWidget(labelNotice);
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
    delete m_transport;
    m_transport = nullptr;
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

void Document::handOverPieces(const QStringList& pieces) {
    emit openTracksRequested(pieces, audioPlot->color());
    emit splitHandedOver(pieces);
}

bool Document::recording() const {
    return m_transport && m_transport->recording();
}

void Document::buildTransport() {
    m_transport = new TransportActions(m_track, m_session, *this, u_ID, this);
    connect(btnPlay, &QAction::triggered, m_transport, &TransportActions::OnToolbarPlay);
    connect(btnPause, &QAction::triggered, m_transport, &TransportActions::OnToolbarPause);
    connect(btnStop, &QAction::triggered, m_transport, &TransportActions::OnToolbarStop);
    connect(btnRecord, &QAction::triggered, m_transport, &TransportActions::OnToolbarRecord);
    connect(btnSoundPreferences, &QAction::triggered, m_transport,
            &TransportActions::OnToolbarSoundPreferences);
    connect(m_transport, &TransportActions::buttonsChanged, this, &Document::applyButtons);
    connect(m_transport, &TransportActions::playingChanged, this,
            [this](bool playing) { m_zoom->followPlayback(playing); });
    connect(m_transport, &TransportActions::markersMoved, this, [this] {
        viewAudioPlot->update();
        showMarkers();
    });
    connect(m_transport, &TransportActions::inputLevels, this, [this](const QVector<float>& buffer) {
        audioPlot->updateBuffer(buffer.constData(), int(buffer.size()));
    });
    connect(m_transport, &TransportActions::recordingStarted, this, [this] {
        // The take becomes the track: a load still on its way is dropped, and
        // no other may start until the recording stops.
        beginLoad();
        btnOpen->setEnabled(false);
        viewAudioPlot->b_Recording = true;
        viewAudioPlot->update();
    });
    connect(m_transport, &TransportActions::takeRecorded, this, &Document::takeRecording);
    connect(m_transport, &TransportActions::takeUnusable, this, &Document::refuseRecording);

    btnRecord->setShortcut(Qt::Key_R);
    auto* space = new QAction(tr("Play or Pause"), this);
    space->setShortcut(Qt::Key_Space);
    connect(space, &QAction::triggered, this, &Document::togglePlayback);
    addAction(space);
}

void Document::togglePlayback() {
    m_transport->togglePlayback(b_Audio_Loaded && btnPlay->isEnabled());
}

void Document::applyButtons(const TransportButtons& b) {
    const std::pair<QAction*, std::optional<bool>> buttons[] = {{btnPlay, b.play},
                                                                {btnRecord, b.record},
                                                                {btnPause, b.pause},
                                                                {btnStop, b.stop},
                                                                {btnSoundPreferences, b.soundPreferences},
                                                                {btnZoomPlus, b.zoomPlus},
                                                                {btnZoomMinus, b.zoomMinus},
                                                                {btnSave, b.save},
                                                                {btnTools, b.tools},
                                                                {btnCopy, b.copy},
                                                                {btnCut, b.cut},
                                                                {btnDelete, b.remove}};
    for (const auto& [button, on] : buttons)
        if (on)
            button->setEnabled(*on);
}

bool Document::hasUnexportedChanges() const {
    return m_track.history().hasUnkeptChanges();
}

bool Document::readyToClose() {
    if (!hasUnexportedChanges())
        return true;
    switch (askBeforeClosing(this, {labelSource->text()})) {
    case ClosingAnswer::Export:
        return m_export->SaveWAVFile();
    case ClosingAnswer::CloseWithoutExporting:
        return true;
    case ClosingAnswer::Cancel:
        break;
    }
    return false;
}

void Document::closeEvent(QCloseEvent* event) {
    if (!readyToClose()) {
        event->ignore();
        return;
    }
    m_transport->stopAudio();
    QMainWindow::closeEvent(event);
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

QStringList Document::namesInUse() const {
    QStringList names = m_track.history().array_WAV_Files();
    if (!m_importing.isEmpty())
        names << m_importing;
    if (recording())
        names << m_transport->s_Sound_File_Source;
    return names;
}

bool Document::trackFileIsThere() {
    if (!b_Audio_Loaded || QFileInfo::exists(m_track.s_WAV_File_Path))
        return true;
    showErrorAlert(this, missingTrackMessage(m_track.s_WAV_File_Path));
    return false;
}

void Document::changeColor(const QColor& color) {
    audioPlot->setColor(color);
    emit colourChanged();
}

void Document::chooseColour() {
    const QColor color = QColorDialog::getColor(audioPlot->color(), this, tr("Waveform Colour"));
    if (color.isValid())
        changeColor(color);
}
