#include "AppDelegate.h"

#include "application/SingleInstance.h"
#include "document/Document.h"
#include "session/Manifest.h"
#include "session/WorkFolder.h"
#include "widgets/Alerts.h"
#include "widgets/Icons.h"

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QMainWindow>
#include <QTimer>

AppDelegate::AppDelegate() : b_Starting(true), u_Doc_Index(0) {
    // Sound plays through Qt's FFmpeg media backend unless the user has chosen
    // one: with the GStreamer backend of Qt 6.4, playback can fall silent after
    // a seek, which every click on the waveform during playback is.
    if (!qEnvironmentVariableIsSet("QT_MEDIA_BACKEND"))
        qputenv("QT_MEDIA_BACKEND", "ffmpeg");
    actionNew = makeAction(tr("&New"), QKeySequence::New);
    actionOpen = makeAction(tr("&Open…"), QKeySequence::Open);
    actionExport = makeAction(tr("&Export…"), QKeySequence::Save);
    actionQuit = makeAction(tr("&Quit"), QKeySequence::Quit);
    actionUndo = makeAction(tr("&Undo"), QKeySequence::Undo);
    actionRedo = makeAction(tr("&Redo"), QKeySequence::Redo);
    actionCut = makeAction(tr("Cu&t"), QKeySequence::Cut);
    actionCopy = makeAction(tr("&Copy"), QKeySequence::Copy);
    actionPaste = makeAction(tr("&Paste"), QKeySequence::Paste);
    actionDelete = makeAction(tr("&Delete"), QKeySequence::Delete);
    actionHomePage = makeAction(tr("Tanselo &Home Page"));
    actionMakers = makeAction(tr("About the &Makers"));
    actionPrivacy = makeAction(tr("&Privacy Policy"));
    actionSupport = makeAction(tr("&Report a Problem"));
    actionToolRuns = makeAction(tr("&Tool Runs"));
    actionShortcuts = makeAction(tr("&Keyboard Shortcuts"));
    actionJoinTracks = makeAction(tr("&Join Open Tracks…"));
    actionJoinTracks->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_J));

    connect(actionNew, &QAction::triggered, this, [this] { newDocument(); });
    connect(actionOpen, &QAction::triggered, this, &AppDelegate::open);
    connect(actionQuit, &QAction::triggered, this, &AppDelegate::OnMenuQuit);
    connect(actionUndo, &QAction::triggered, this, &AppDelegate::undo);
    connect(actionRedo, &QAction::triggered, this, &AppDelegate::redo);
    connect(actionHomePage, &QAction::triggered, this, &AppDelegate::OnMenuAppHomePage);
    connect(actionMakers, &QAction::triggered, this, &AppDelegate::OnMenuCompanyHomePage);
    connect(actionPrivacy, &QAction::triggered, this, &AppDelegate::OnMenuPrivacyPolicy);
    connect(actionSupport, &QAction::triggered, this, &AppDelegate::OnMenuSubmitTicket);
    connect(actionToolRuns, &QAction::triggered, this, &AppDelegate::OnMenuToolRuns);
    connect(actionShortcuts, &QAction::triggered, this, &AppDelegate::OnMenuShortcuts);
    connect(actionCopy, &QAction::triggered, this, &AppDelegate::copy);
    connect(actionCut, &QAction::triggered, this, &AppDelegate::cut);
    connect(actionPaste, &QAction::triggered, this, &AppDelegate::paste);
    connect(actionDelete, &QAction::triggered, this, &AppDelegate::deleteSelection);
    connect(actionExport, &QAction::triggered, this, &AppDelegate::save);
    connect(actionJoinTracks, &QAction::triggered, this, &AppDelegate::OnMultipleTrackConcatenate);
}

AppDelegate::~AppDelegate() {
    for (const QPointer<Document>& document : std::as_const(m_documents))
        delete document.data();
    removeManifest(); // a clean end: the next start asks nothing
}

void AppDelegate::keepManifest() {
    if (!m_manifest || !m_keepsManifest)
        return;
    Manifest manifest;
    // A window that holds nothing but the silence track has nothing to lose.
    const QStringList untouched{m_session.sSilenceWavPath};
    for (const QPointer<Document>& document : std::as_const(m_documents))
        if (document && !document->history().versions().isEmpty() &&
            document->history().array_WAV_Files() != untouched)
            manifest.windows.append(document->manifestEntry());
    if (!m_session.s_Copied_WAV_File.isEmpty())
        manifest.clipboard = QFileInfo(m_session.s_Copied_WAV_File).fileName();
    m_manifest->write(std::move(manifest));
}

void AppDelegate::settleManifest() {
    if (m_manifest)
        m_manifest->settle();
}

void AppDelegate::removeManifest() {
    if (m_manifest)
        m_manifest->remove();
}

QAction* AppDelegate::makeAction(const QString& text, QKeySequence::StandardKey key) {
    auto* action = new QAction(text, this);
    if (key != QKeySequence::UnknownKey)
        action->setShortcuts(key);
    return action;
}

std::optional<int> AppDelegate::applicationDidFinishLaunching(const QStringList& files) {
    s_Title_Bar_Text = QStringLiteral("Tanselo");
    u_Open_New_Document = 0;
    QApplication::setApplicationDisplayName(s_Title_Bar_Text);
    // The desktop entry's name, by which a desktop matches the windows to the
    // launcher, and the icon they share with it.
    QGuiApplication::setDesktopFileName(QStringLiteral("org.tanselo.Tanselo"));
    QApplication::setWindowIcon(applicationIcon());

    QString& s_Output_Folder = m_session.s_Output_Folder;
    s_Output_Folder = workFolderPath();
    // A work folder that cannot be made ends the start with status 0, as it
    // always has; any other start that fails ends with 1, so that a script or
    // a desktop launching the editor can tell it did not start.
    const auto cannotStart = [](const QString& why, int status = 0) {
        showErrorAlert(nullptr, QStringLiteral("Error #0001. Application will exit.\n\n") + why);
        return status;
    };
    if (const QString why = prepareWorkFolder(s_Output_Folder); !why.isEmpty())
        return cannotStart(why);
    // An editor already running on this folder opens the window instead, and
    // its files stay untouched.
    m_instance = std::make_unique<SingleInstance>(s_Output_Folder);
    switch (m_instance->start(files)) {
    case SingleInstance::Role::Forwarded:
        return 0;
    case SingleInstance::Role::Failed:
        return cannotStart(m_instance->error(), 1);
    case SingleInstance::Role::First:
        connect(m_instance.get(), &SingleInstance::openRequested, this, &AppDelegate::openFiles);
        m_ownsFolder = true;
        break;
    }
    // A manifest left in the folder means the editor that owned it died:
    // its files are set aside before the folder is emptied, and the user is
    // asked about them once the start is done.
    m_recovery = setAsideForRecovery(s_Output_Folder);
    RemoveAllContentInFolder(s_Output_Folder);
    m_manifest = std::make_unique<ManifestWriter>(s_Output_Folder);

    const ToolPaths tools = locateTools(QCoreApplication::applicationDirPath());
    for (const auto& [name, path] : {std::pair{"sox", tools.sox}, std::pair{"ffmpeg", tools.ffmpeg}}) {
        if (path.isEmpty()) {
            showErrorAlert(nullptr, missingToolMessage(name));
            return 1;
        }
    }
    m_session.startRunner(tools);
    connect(&m_session.runner(), &PlanRunner::busyChanged, this, [this](bool busy) {
        for (QAction* edit :
             {actionUndo, actionRedo, actionCut, actionCopy, actionPaste, actionDelete, actionExport})
            edit->setEnabled(!busy);
    });

    m_session.sSilenceWavPath = pathInFolder(s_Output_Folder, QStringLiteral("silence.wav"));
    m_session.sSilenceWavURL = fileUrlText(s_Output_Folder, QStringLiteral("silence.wav"));
    // Queued first, so every document's first load finds the track made. A
    // track that could not be made whole (a full disk) is not left to pass for
    // one: the user is told why, and the windows say the file is missing.
    m_session.runner().submit(buildSilenceTrackPlan(m_session.sSilenceWavPath), nullptr,
                              [this](const PlanOutcome& outcome) {
                                  if (!outcome.ok && !outcome.cancelled)
                                      showErrorAlert(currentDocument(), outcome.alert);
                              });

    u_Current_ID = 0;
    b_Starting = false;
    u_Doc_Index = 0;
    return std::nullopt;
}

void AppDelegate::RemoveAllContentInFolder(const QString& path) {
    for (const QString& failure : removeAllContentInFolder(path, {workFolderLockName()}))
        qWarning("oops: %s", qPrintable(failure));
}

Document* AppDelegate::newDocument() {
    return newDocument(std::nullopt);
}

Document* AppDelegate::newDocument(const std::optional<Opening>& opening) {
    // At most one document comes into being before start-up has finished.
    if (b_Starting && ++u_Doc_Index >= 2)
        return nullptr;
    return makeDocument(opening ? *opening : nextOpening());
}

Opening AppDelegate::nextOpening() {
    switch (u_Open_New_Document) {
    case 0:
        return Opening::silence();
    case 1:
        return Opening::askForFile();
    case 2: {
        // The window takes its entry now rather than when its load begins, so
        // that windows made within each other's start-up wait never share one.
        // A window made after an empty batch finds no entry.
        const quint64 index = u_Pre_Generated_Docs_Index++;
        if (u_Pre_Generated_Docs_Index >= quint64(array_Pre_Generated_Docs.size()))
            u_Open_New_Document = 0;
        if (index >= quint64(array_Pre_Generated_Docs.size()))
            return Opening::piece({}, color_Pre_Generated_Docs);
        return Opening::piece(array_Pre_Generated_Docs.at(qsizetype(index)), color_Pre_Generated_Docs);
    }
    default:
        return {Opening::Kind::Nothing, {}, {}};
    }
}

Document* AppDelegate::makeDocument(const Opening& opening) {
    auto* document = new Document(m_session, u_Current_ID++, opening,
                                  [this](QMainWindow* window) { installMenus(window); });
    m_documents.append(document);
    connect(document, &Document::openTracksRequested, this,
            [this](const QStringList& paths, const QColor& colour) {
                array_Pre_Generated_Docs = paths;
                u_Pre_Generated_Docs_Index = 0;
                color_Pre_Generated_Docs = colour;
                openPreGeneratedDocuments();
            });
    connect(document, &Document::filesDropped, this, &AppDelegate::openFiles);
    for (auto changed : {&Document::historyChanged, &Document::copied, &Document::colourChanged})
        connect(document, changed, this, &AppDelegate::keepManifest);
    // Once the window has left the list.
    connect(document, &QObject::destroyed, this,
            [this] { QTimer::singleShot(0, this, &AppDelegate::keepManifest); });
    connect(document, &Document::openingTaken, this, &AppDelegate::openingTaken);
    document->show();
    return document;
}

void AppDelegate::openingTaken(Opening::Kind kind) {
    // The open dialog's mode lasts until its window's load begins.
    if (kind == Opening::Kind::AskForFile && u_Open_New_Document == 1)
        u_Open_New_Document = 0;
}

bool AppDelegate::offerRecovery() {
    if (!m_recovery)
        return false;
    Recovery recovery = *std::exchange(m_recovery, std::nullopt);
    const QString& folder = m_session.s_Output_Folder;
    if (showAlert(nullptr, recoveryQuestion(recovery), recoveryDetails(recovery),
                  {tr("Reopen"), tr("Discard")}) != 0) {
        discardRecovery(folder);
        return false;
    }
    if (!bringBackRecovery(folder, recovery))
        showErrorAlert(nullptr,
                       tr("Some versions could not be moved back into the work folder. They are kept in "
                          "%1.")
                           .arg(recoveryFolderPath(folder)));
    if (!recovery.clipboard.isEmpty())
        m_session.s_Copied_WAV_File = pathInFolder(folder, recovery.clipboard);
    for (const ManifestWindow& window : recovery.windows)
        makeDocument(Opening::recoveredWindow(window));
    keepManifest();
    return true;
}

void AppDelegate::openFiles(const QStringList& files) {
    if (files.isEmpty()) {
        if (Document* document = newDocument()) {
            document->raise();
            document->activateWindow();
        }
        return;
    }
    const bool waiting = !m_filesToOpen.isEmpty();
    m_filesToOpen += files;
    if (!waiting)
        openNextFile();
}

void AppDelegate::openNextFile() {
    if (m_filesToOpen.isEmpty())
        return;
    if (Document* document = newDocument(Opening::givenFile(m_filesToOpen.first()))) {
        document->raise();
        document->activateWindow();
    }
    m_filesToOpen.removeFirst();
    if (!m_filesToOpen.isEmpty())
        QTimer::singleShot(0, this, &AppDelegate::openNextFile);
}

void AppDelegate::openDocument() {
    u_Open_New_Document = 1;
    newDocument();
}

void AppDelegate::open() {
    // A new window beside one that holds nothing yet would leave that one
    // empty on the screen: the file goes where the user is.
    if (Document* here = currentDocument(); here && here->openHere())
        return;
    openDocument();
}

void AppDelegate::openPreGeneratedDocuments() {
    u_Open_New_Document = 2;
    // Entries shown by an open document are reloaded there; the others open in
    // new documents, which take their entries from the list in order.
    for (const QString& entry : std::as_const(array_Pre_Generated_Docs)) {
        const QList<Document*> open = documents();
        const auto shown = std::find_if(open.begin(), open.end(),
                                        [&](Document* d) { return d->track().s_WAV_File_Path == entry; });
        if (shown != open.end())
            (*shown)->Refresh_Audio_Plot(color_Pre_Generated_Docs);
        else
            newDocument();
    }
}

QList<Document*> AppDelegate::documents() const {
    QList<Document*> open;
    for (const QPointer<Document>& document : m_documents)
        if (document)
            open.append(document.data());
    return open;
}

QList<OpenTrack> AppDelegate::openTracks() const {
    QList<OpenTrack> open;
    for (const Document* document : documents())
        open.append({document->track().s_WAV_File_Path, document->track().i_Audio_Duration_Seconds,
                     document->labelSource->text()});
    return open;
}

Document* AppDelegate::currentDocument() const {
    for (Document* document : documents())
        if (document->isActiveWindow())
            return document;
    return nullptr;
}
