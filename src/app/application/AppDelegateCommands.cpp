// The application's menu commands: its menus on every window, the edit
// commands forwarded to the active window, the help pages and windows, and
// the mixer's join.

#include "AppDelegate.h"

#include "document/Document.h"
#include "document/ExportActions.h"
#include "mixer/Window_Multiple_Tracks.h"
#include "widgets/Alerts.h"
#include "windows/ShortcutsWindow.h"
#include "windows/ToolLog.h"

#include <QAction>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QPointer>
#include <QUrl>
#include <cstdio>
#include <cstdlib>

void AppDelegate::installMenus(QMainWindow* window) {
    QMenuBar* bar = window->menuBar();
    QMenu* file = bar->addMenu(tr("&File"));
    file->setObjectName(QStringLiteral("menuFile"));
    file->addActions({actionNew, actionOpen, actionExport});
    file->addSeparator();
    file->addAction(actionQuit);
    QMenu* edit = bar->addMenu(tr("&Edit"));
    edit->setObjectName(QStringLiteral("menuEdit"));
    edit->addActions({actionUndo, actionRedo});
    edit->addSeparator();
    edit->addActions({actionCut, actionCopy, actionPaste, actionDelete});
    QMenu* tracks = bar->addMenu(tr("&Tracks"));
    tracks->setObjectName(QStringLiteral("menuTracks"));
    tracks->addAction(actionJoinTracks);
    QMenu* help = bar->addMenu(tr("&Help"));
    help->setObjectName(QStringLiteral("menuHelp"));
    help->addActions({actionHomePage, actionMakers, actionPrivacy, actionSupport});
    help->addSeparator();
    help->addActions({actionShortcuts, actionToolRuns});
}

Document* AppDelegate::loadedCurrentDocument() const {
    Document* document = currentDocument();
    return document && document->b_Audio_Loaded ? document : nullptr;
}

void AppDelegate::undo() {
    if (Document* document = currentDocument())
        document->Operation_Undo();
}

void AppDelegate::redo() {
    if (Document* document = currentDocument())
        document->Operation_Redo();
}

void AppDelegate::copy() {
    if (Document* document = loadedCurrentDocument())
        document->editingActions().Operation_Copy();
}

void AppDelegate::cut() {
    if (Document* document = loadedCurrentDocument())
        document->editingActions().Operation_Cut();
}

void AppDelegate::paste() {
    if (Document* document = loadedCurrentDocument())
        document->editingActions().Operation_Paste();
}

void AppDelegate::deleteSelection() {
    if (Document* document = loadedCurrentDocument())
        document->editingActions().Operation_Delete();
}

void AppDelegate::save() {
    if (Document* document = loadedCurrentDocument())
        document->exportActions().Operation_Save();
}

void AppDelegate::OnMenuQuit() {
    if (!readyToQuit())
        return;
    removeManifest(); // an end that was meant: the next start asks nothing
    Terminate_App();
}

bool AppDelegate::readyToQuit() {
    QList<QPointer<Document>> unexported;
    QStringList sources;
    for (Document* document : documents())
        if (document->hasUnexportedChanges()) {
            unexported.append(document);
            sources.append(document->labelSource->text());
        }
    if (unexported.isEmpty())
        return true;
    switch (askBeforeClosing(currentDocument(), sources)) {
    case ClosingAnswer::Export:
        // Each in turn, in window order; one left unexported stops the quit.
        for (const QPointer<Document>& document : unexported) {
            if (!document)
                continue;
            document->raise();
            document->activateWindow();
            if (!document->exportActions().SaveWAVFile())
                return false;
        }
        return true;
    case ClosingAnswer::CloseWithoutExporting:
        return true;
    case ClosingAnswer::Cancel:
        break;
    }
    return false;
}

void AppDelegate::Terminate_App() {
    // Ends at once: no saving, and the work folder keeps its files until the next start.
    std::fflush(nullptr);
    std::_Exit(0);
}

QString AppDelegate::helpPagePath(const QString& page) {
    const QDir app(QCoreApplication::applicationDirPath());
    for (const QString& folder :
         {QStringLiteral("help"), QStringLiteral("../help"), QStringLiteral("../share/tanselo/help")}) {
        const QString path = app.filePath(folder + u'/' + page);
        if (QFileInfo::exists(path))
            return QFileInfo(path).absoluteFilePath();
    }
    return {};
}

void AppDelegate::openHelpPage(const QString& page) {
    const QString path = helpPagePath(page);
    if (path.isEmpty()) {
        showErrorAlert(currentDocument(), tr("The page \"%1\" is missing from this installation.").arg(page));
        return;
    }
    QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

void AppDelegate::OnMenuAppHomePage() {
    openHelpPage(QStringLiteral("product.html"));
}
void AppDelegate::OnMenuCompanyHomePage() {
    openHelpPage(QStringLiteral("makers.html"));
}
void AppDelegate::OnMenuPrivacyPolicy() {
    openHelpPage(QStringLiteral("privacy.html"));
}
void AppDelegate::OnMenuSubmitTicket() {
    openHelpPage(QStringLiteral("support.html"));
}

void AppDelegate::OnMenuShortcuts() {
    const QList<Document*> open = documents();
    if (Document* window = currentDocument() ? currentDocument() : (open.isEmpty() ? nullptr : open.first()))
        showShortcuts(window);
}

void AppDelegate::OnMenuToolRuns() {
    showToolLog(currentDocument(), m_session.runner());
}

void AppDelegate::OnMultipleTrackConcatenate() {
    if (documents().size() < 2) {
        showErrorAlert(currentDocument(),
                       QStringLiteral("You need more than one audio track to be able to open the mixer."));
        return;
    }
    Window_Multiple_Tracks mixer(
        m_session, [this] { return openTracks(); }, currentDocument());
    mixer.exec();
    if (!mixer.mixedFile().isEmpty())
        s_Mixed_WAV_File = mixer.mixedFile();
    if (!mixer.bOK)
        return;
    array_Pre_Generated_Docs = {s_Mixed_WAV_File};
    u_Pre_Generated_Docs_Index = 0;
    color_Pre_Generated_Docs = QColor::fromRgbF(0.0f, 1.0f, 0.0f, 1.0f);
    openPreGeneratedDocuments();
}
