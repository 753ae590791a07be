#include "application/AppDelegate.h"
#include "document/Document.h"
#include "support/Fixtures.h"
#include "support/Gui.h"

#include <QAction>
#include <QApplication>
#include <QDesktopServices>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QUrl>
#include <sndfile.h>

namespace {
void touch(const QString& path) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("old");
}
} // namespace

class tst_Startup : public QObject {
    Q_OBJECT
    QTemporaryDir m_root;
    QList<QUrl> m_opened;

public slots:
    void openUrl(const QUrl& url) { m_opened.append(url); }

private:
    // Starts with HOME at `home` where start-up must fail: the alert it showed,
    // after checking that it ends the application with status 0.
    gui::AlertSeen startRefused(const QString& home) {
        fixtures::useTemporaryHome(home);
        AppDelegate app;
        const auto alert = gui::answerAlert();
        const std::optional<int> status = app.applicationDidFinishLaunching();
        [&] {
            QVERIFY(alert->shown);
            QCOMPARE(alert->text, QString("Error"));
            QCOMPARE(status, std::optional<int>(0));
        }();
        return *alert;
    }

private slots:
    void startCreatesAndEmptiesTheWorkFolderAndMakesSilence() {
        const QString home = m_root.filePath("home-a");
        const QString folder = home + "/Documents/Tanselo";
        touch(folder + "/stale.wav");
        touch(folder + "/sub/deeper/file.wav");
        auto app = gui::startApplication(home);
        QVERIFY(app);
        QCOMPARE(app->session().s_Output_Folder, folder);
        QCOMPARE(app->s_Title_Bar_Text, QString("Tanselo"));
        QCOMPARE(app->session().sSilenceWavPath, folder + "/silence.wav");
        QCOMPARE(app->session().sSilenceWavURL, "file://" + folder + "/silence.wav");
        QCOMPARE(app->u_Current_ID, 0u);
        QCOMPARE(app->u_Open_New_Document, 0u);
        QVERIFY(!app->b_Starting);
        QVERIFY(gui::waitIdle(*app));
        QCOMPARE(QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList({"silence.wav"}));
        const fixtures::WavInfo silence = fixtures::wavInfo(folder + "/silence.wav");
        // For exactly these arguments sox writes the null input's own 32-bit
        // precision (as an extensible WAV); every edit later writes 16-bit.
        QVERIFY(silence.ok);
        QCOMPARE(silence.sampleRate, 44100);
        QCOMPARE(silence.channels, 2);
        QCOMPARE(silence.format & SF_FORMAT_SUBMASK, SF_FORMAT_PCM_32);
        QVERIFY((silence.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_WAV ||
                (silence.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_WAVEX);
        QCOMPARE(silence.frames, qint64(60 * 44100));
        QCOMPARE(fixtures::rms(folder + "/silence.wav", 0, 60), 0.0);
        QCOMPARE(
            app->runner().runs().first().arguments,
            QStringList({"-n", "-r", "44100", "-c", "2", folder + "/silence.wav", "trim", "0.0", "60.0"}));
    }

    void startingAgainEmptiesTheFolderAgain() {
        const QString home = m_root.filePath("home-b");
        {
            auto first = gui::startApplication(home);
            QVERIFY(first && gui::waitIdle(*first));
        }
        touch(home + "/Documents/Tanselo/left-by-the-last-run.wav");
        auto second = gui::startApplication(home);
        QVERIFY(second && gui::waitIdle(*second));
        QVERIFY(!QFile::exists(home + "/Documents/Tanselo/left-by-the-last-run.wav"));
        QVERIFY(QFile::exists(home + "/Documents/Tanselo/silence.wav"));
    }

    void anUncreatableWorkFolderEndsTheApplication() {
        const QString home = m_root.filePath("home-c");
        touch(home + "/Documents"); // a file where the folder should be
        const gui::AlertSeen alert = startRefused(home);
        QCOMPARE(alert.informativeText, "Error #0001. Application will exit.\n\n" + home +
                                            "/Documents/Tanselo could not be made: Not a directory.");
        QCOMPARE(alert.buttons, QStringList({"Close"}));
    }

    void aWorkFolderThatIsAFileIsToldAsSuch() {
        const QString home = m_root.filePath("home-file");
        touch(home + "/Documents/Tanselo"); // a file of the folder's name
        const gui::AlertSeen alert = startRefused(home);
        QCOMPARE(alert.informativeText, "Error #0001. Application will exit.\n\n" + home +
                                            "/Documents/Tanselo is a file, not a folder.");
        QVERIFY(QFileInfo(home + "/Documents/Tanselo").isFile()); // left as it was
    }

    void aMissingToolIsNamedWithItsPackage() {
        const QByteArray path = qgetenv("PATH");
        QTemporaryDir emptyBin;
        QTemporaryDir bin;
        // Only ffmpeg is missing: sox is reachable through a link.
        QVERIFY(QFile::link(QStandardPaths::findExecutable("sox"), bin.filePath("sox")));
        qputenv("PATH", QFile::encodeName(bin.path()));
        fixtures::useTemporaryHome(m_root.filePath("home-d"));
        AppDelegate app;
        const auto alert = gui::answerAlert();
        const std::optional<int> status = app.applicationDidFinishLaunching();
        qputenv("PATH", path);
        QVERIFY(alert->shown);
        QCOMPARE(alert->text, QString("Error"));
        QVERIFY2(alert->informativeText.contains("\"ffmpeg\""), qPrintable(alert->informativeText));
        QVERIFY(alert->informativeText.contains("apt-get install ffmpeg"));
        QVERIFY(status.has_value());
        QVERIFY(*status != 0);
    }

    void aSecondDocumentDuringStartUpClosesItself() {
        auto app = gui::startApplication(m_root.filePath("home-e"));
        QVERIFY(app);
        app->b_Starting = true;
        app->u_Doc_Index = 0;
        Document* first = app->newDocument();
        QVERIFY(first);
        QCOMPARE(app->newDocument(), nullptr);
        QCOMPARE(app->u_Doc_Index, 2u);
        QCOMPARE(app->documents().size(), 1);
        app->b_Starting = false;
        Document* later = app->newDocument();
        QVERIFY(later);
        QCOMPARE(first->u_ID, 0u);
        QCOMPARE(later->u_ID, 1u);
        QCOMPARE(app->u_Current_ID, 2u);
        QVERIFY(gui::waitIdle(*app));
    }

    void menuCommandsGoToTheActiveDocumentOrNowhere() {
        auto app = gui::startApplication(m_root.filePath("home-f"));
        QVERIFY(app);
        app->undo(); // no document: nothing happens
        app->redo();
        QCOMPARE(app->currentDocument(), nullptr);

        Document* document = gui::firstDocument(*app);
        QVERIFY(document);
        document->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(document));
        QCOMPARE(app->currentDocument(), document);
        QSignalSpy reloaded(document, &Document::loaded);
        app->actionUndo->trigger();
        QVERIFY(reloaded.wait(10000));
        QCOMPARE(document->history().u_array_WAV_Files_Position(), 0u);
        app->actionRedo->trigger();
        QVERIFY(reloaded.wait(10000));
        QCOMPARE(app->actionUndo->shortcut(), QKeySequence(QKeySequence::Undo));
        QCOMPARE(app->actionOpen->shortcut(), QKeySequence(QKeySequence::Open));
    }

    // With no window open, every command of the menus that works on a
    // window's track (undo, redo, cut, copy, paste, delete, export) does
    // nothing: no run, no window, no question, no file, the clipboard as it
    // was.
    void trackCommandsWithNoWindowOpenDoNothing() {
        auto app = gui::startApplication(m_root.filePath("home-n"));
        QVERIFY(app && gui::waitIdle(*app));
        Document* first = gui::firstDocument(*app);
        QVERIFY(first);
        first->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(first));
        first->editingActions().Operation_Copy(); // a clipboard to keep
        QVERIFY(gui::waitIdle(*app));
        const QString clipboard = app->session().s_Copied_WAV_File;
        QVERIFY(QFile::exists(clipboard));
        QVERIFY(gui::closeAllWindows(*app));
        QVERIFY(app->documents().isEmpty());
        QCOMPARE(app->currentDocument(), nullptr);

        const QDir work(app->session().s_Output_Folder);
        const QStringList files = work.entryList(QDir::Files | QDir::Hidden);
        const qsizetype runs = app->runner().runs().size();
        bool asked = false;
        const auto anyDialog = std::make_shared<bool>(true);
        const std::function<void()> watch = [&asked, anyDialog, &watch] {
            QTimer::singleShot(5, [&asked, anyDialog, &watch] {
                if (!*anyDialog)
                    return;
                if (QWidget* modal = QApplication::activeModalWidget()) {
                    asked = true;
                    modal->close();
                }
                watch();
            });
        };
        watch();
        for (QAction* command : {app->actionUndo, app->actionRedo, app->actionCut, app->actionCopy,
                                 app->actionPaste, app->actionDelete, app->actionExport}) {
            command->trigger();
            QTest::qWait(150); // the export's command waits a tenth of a second for a second press
            QVERIFY2(!asked, qPrintable(command->text()));
        }
        // And called as the keys call them.
        app->undo();
        app->redo();
        app->cut();
        app->copy();
        app->paste();
        app->deleteSelection();
        app->save();
        QTest::qWait(300);
        *anyDialog = false;
        QVERIFY(!asked);
        QVERIFY(gui::waitIdle(*app));
        QVERIFY(app->documents().isEmpty());
        QCOMPARE(app->runner().runs().size(), runs);
        QCOMPARE(app->session().s_Copied_WAV_File, clipboard);
        QCOMPARE(work.entryList(QDir::Files | QDir::Hidden), files);
    }

    void toolRunsShowsTheCommandLinesOfTheSession() {
        auto app = gui::startApplication(m_root.filePath("home-h"));
        QVERIFY(app && gui::waitIdle(*app));
        QString shown;
        gui::whenModal<QDialog>([&](QDialog* dialog) {
            shown = dialog->findChild<QPlainTextEdit*>()->toPlainText();
            dialog->reject();
        });
        app->actionToolRuns->trigger();
        QVERIFY2(shown.startsWith("$ " + app->session().sSoxPath + " -n -r 44100 -c 2 " +
                                  app->session().s_Output_Folder +
                                  "/silence.wav trim 0.0 60.0\n# exit code 0, "),
                 qPrintable(shown));
    }

    void theFourHelpPagesOpenLocally() {
        auto app = gui::startApplication(m_root.filePath("home-g"));
        QVERIFY(app);
        for (const char* page : {"product.html", "makers.html", "privacy.html", "support.html"})
            QVERIFY2(!AppDelegate::helpPagePath(page).isEmpty(), page);
        QDesktopServices::setUrlHandler("file", this, "openUrl");
        m_opened.clear();
        for (QAction* item : {app->actionHomePage, app->actionMakers, app->actionPrivacy, app->actionSupport})
            item->trigger();
        QDesktopServices::unsetUrlHandler("file");
        QCOMPARE(m_opened.size(), 4);
        QStringList names;
        for (const QUrl& url : std::as_const(m_opened)) {
            QVERIFY(url.isLocalFile());
            QFile page(url.toLocalFile());
            QVERIFY2(page.open(QIODevice::ReadOnly), qPrintable(url.toString()));
            QVERIFY(page.readAll().contains("<title>"));
            names << QFileInfo(page).fileName();
        }
        QCOMPARE(names, QStringList({"product.html", "makers.html", "privacy.html", "support.html"}));
        QVERIFY(gui::waitIdle(*app));
    }
};

QTEST_MAIN(tst_Startup)
#include "tst_startup.moc"
