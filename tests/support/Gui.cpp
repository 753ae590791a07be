#include "Gui.h"

#include "Fixtures.h"
#include "application/AppDelegate.h"
#include "document/Document.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

namespace gui {

std::unique_ptr<AppDelegate> startApplication(const QString& home) {
    fixtures::useTemporaryHome(home);
    auto app = std::make_unique<AppDelegate>();
    if (app->applicationDidFinishLaunching())
        return nullptr;
    return app;
}

bool waitIdle(AppDelegate& app, int timeoutMs) {
    return QTest::qWaitFor([&] { return !app.runner().isBusy(); }, timeoutMs);
}

Document* firstDocument(AppDelegate& app) {
    Document* document = app.newDocument();
    QSignalSpy loaded(document, &Document::loaded);
    if (!loaded.wait(20000))
        return nullptr;
    waitIdle(app);
    return document;
}

namespace {
void answer(QFileDialog* dialog, const QString& path, const std::shared_ptr<FileDialogSeen>& seen) {
    seen->shown = true;
    seen->title = dialog->windowTitle();
    seen->nameFilters = dialog->nameFilters();
    seen->fileMode = dialog->fileMode();
    seen->proposed = dialog->selectedFiles().value(0);
    if (path.isEmpty()) {
        dialog->reject();
        return;
    }
    // Typed as a user would, then closed with done() rather than accept():
    // accept() checks the name against a directory listing the dialog may
    // still be gathering in the background.
    // A path into folders that are not there yet is typed from the nearest
    // one that is ("new/season two/episode.mp3"), as a user does to make them.
    QString folder = QFileInfo(path).absolutePath();
    while (!QFileInfo(folder).isDir() && QFileInfo(folder).path() != folder)
        folder = QFileInfo(folder).path();
    dialog->setDirectory(folder);
    auto* name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    QVERIFY(name);
    name->setText(QDir(folder).relativeFilePath(QFileInfo(path).absoluteFilePath()));
    QCOMPARE(dialog->selectedFiles(), QStringList({QFileInfo(path).absoluteFilePath()}));
    static_cast<QDialog*>(dialog)->done(QDialog::Accepted);
}

void pollForFileDialog(const std::shared_ptr<FileDialogSeen>& seen, const QString& path, int triesLeft) {
    QTimer::singleShot(10, [seen, path, triesLeft] {
        if (seen->stop)
            return;
        if (auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget()))
            answer(dialog, path, seen);
        else if (triesLeft > 0)
            pollForFileDialog(seen, path, triesLeft - 1);
    });
}
} // namespace

std::shared_ptr<FileDialogSeen> answerFileDialog(const QString& path) {
    auto seen = std::make_shared<FileDialogSeen>();
    pollForFileDialog(seen, path, 3000);
    return seen;
}

namespace {
void pollForAlert(const std::shared_ptr<AlertSeen>& seen, const QString& press, int triesLeft) {
    QTimer::singleShot(10, [seen, press, triesLeft] {
        if (seen->stop)
            return;
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            seen->shown = true;
            seen->text = box->text();
            seen->informativeText = box->informativeText();
            QAbstractButton* pressed = box->buttons().first();
            for (QAbstractButton* button : box->buttons()) {
                seen->buttons << button->text();
                if (button->text() == press)
                    pressed = button;
            }
            pressed->click();
        } else if (triesLeft > 0) {
            pollForAlert(seen, press, triesLeft - 1);
        }
    });
}
} // namespace

std::shared_ptr<AlertSeen> answerAlert(const QString& press) {
    auto seen = std::make_shared<AlertSeen>();
    pollForAlert(seen, press, 3000);
    return seen;
}

bool openInto(Document* document, const QString& path, const std::function<void()>& open) {
    QSignalSpy loaded(document, &Document::loaded);
    QSignalSpy plotted(document, &Document::plotUpdated);
    answerFileDialog(path);
    open();
    return (loaded.size() > 0 || loaded.wait(30000)) && (plotted.size() > 0 || plotted.wait(30000));
}

bool closeAllWindows(AppDelegate& app) {
    for (Document* d : app.documents())
        delete d;
    const bool idle = waitIdle(app);
    if (!QFile::exists(app.session().sSilenceWavPath))
        fixtures::run("sox",
                      {"-n", "-r", "44100", "-c", "2", app.session().sSilenceWavPath, "trim", "0.0", "60.0"});
    return idle;
}

bool closeDocument(Document* d, const QString& press) {
    const auto alert = d->hasUnexportedChanges() ? answerAlert(press) : nullptr;
    const bool closed = d->close();
    if (alert && !alert->shown)
        alert->stop = true;
    return closed;
}

Document* openInNewWindow(AppDelegate& app, const QString& path) {
    answerFileDialog(path);
    app.openDocument();
    Document* d = app.documents().last();
    QSignalSpy loaded(d, &Document::loaded);
    if (!loaded.wait(30000) || !waitIdle(app))
        return nullptr;
    return d;
}

} // namespace gui
