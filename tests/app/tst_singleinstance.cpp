#include "application/AppDelegate.h"
#include "application/SingleInstance.h"
#include "document/Document.h"
#include "session/Manifest.h"
#include "support/Fixtures.h"
#include "support/Gui.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>
#include <unistd.h>

namespace {
// The editor as a user starts it, with HOME at `home`, in the folder `in`.
std::unique_ptr<QProcess> startEditor(const QString& home, const QStringList& arguments = {},
                                      const QString& in = {}) {
    auto editor = std::make_unique<QProcess>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("HOME", home);
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    editor->setProcessEnvironment(environment);
    editor->setProcessChannelMode(QProcess::ForwardedChannels);
    if (!in.isEmpty())
        editor->setWorkingDirectory(in);
    editor->start(qEnvironmentVariable("TANSELO_BUILD_DIR") + "/tanselo", arguments);
    return editor;
}

// Every file of a folder with the digest of its bytes, but the manifest of
// the windows, which the first editor itself rewrites as it opens one.
QMap<QString, QByteArray> contents(const QString& folder) {
    QMap<QString, QByteArray> files;
    for (const QString& name : QDir(folder).entryList(QDir::Files | QDir::Hidden))
        if (!name.startsWith(QFileInfo(manifestPath(folder)).fileName())) // the manifest or its next text
            files.insert(name, fixtures::digest(folder + "/" + name));
    return files;
}

// The windows the manifest of `app`'s folder lists, once it is on disk.
qsizetype windowsInManifest(AppDelegate& app) {
    app.settleManifest();
    QFile file(manifestPath(app.session().s_Output_Folder));
    return file.open(QIODevice::ReadOnly) ? readManifest(file.readAll()).windows.size() : 0;
}
} // namespace

// One editor per work folder: a second start hands its window to the first
// instead of emptying the folder under it.
class tst_SingleInstance : public QObject {
    Q_OBJECT
    QTemporaryDir m_root;

private slots:
    void aSecondEditorOpensAWindowInTheFirstAndTouchesNothing() {
        const QString home = m_root.filePath("home-a");
        auto app = gui::startApplication(home);
        QVERIFY(app);
        Document* first = gui::firstDocument(*app);
        QVERIFY(first);
        // The first editor's work: versions of a track in the work folder.
        const QString folder = app->session().s_Output_Folder;
        fixtures::makeTone(folder + "/2026-01-01-10-00-00.wav", 2);
        fixtures::makeTone(folder + "/2026-01-01-10-00-05.wav", 3, 440);
        const QMap<QString, QByteArray> before = contents(folder);
        QVERIFY(before.contains("silence.wav") && before.contains(".tanselo.lock"));
        QCOMPARE(windowsInManifest(*app), 0); // a silence window has nothing to lose

        auto second = startEditor(home);
        QVERIFY(second->waitForStarted(10000));
        // The first editor answers from its event loop, which waiting here runs.
        QTRY_VERIFY_WITH_TIMEOUT(second->state() == QProcess::NotRunning, 30000);
        QCOMPARE(second->exitStatus(), QProcess::NormalExit);
        QCOMPARE(second->exitCode(), 0);

        QCOMPARE(contents(folder), before);
        QCOMPARE(app->documents().size(), 2);
        Document* opened = app->documents().last();
        QSignalSpy loaded(opened, &Document::loaded);
        QVERIFY(opened->b_Audio_Loaded || loaded.wait(20000));
        QCOMPARE(opened->windowTitle(), QString("silence.wav"));
        QVERIFY(opened->isVisible());
        QTRY_COMPARE(QApplication::activeWindow(), opened);
        QVERIFY(gui::waitIdle(*app));
        QCOMPARE(contents(folder), before);
        QCOMPARE(windowsInManifest(*app), 0); // nor has the new one
    }

    // A first editor that holds the folder but is stopped cannot answer: the
    // second start says so and ends with a status that tells it failed.
    void aStartThatCannotReachAStalledEditorFails() {
        const QString home = m_root.filePath("home-stalled");
        const QString folder = home + "/Documents/Tanselo";
        auto stalled = startEditor(home);
        QVERIFY(stalled->waitForStarted(10000));
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(folder + "/silence.wav"), 30000);
        QTest::qWait(500); // past its start, listening
        QCOMPARE(::kill(pid_t(stalled->processId()), SIGSTOP), 0);
        const auto resume = qScopeGuard([&] {
            ::kill(pid_t(stalled->processId()), SIGKILL);
            ::kill(pid_t(stalled->processId()), SIGCONT);
            stalled->waitForFinished(10000);
        });
        fixtures::useTemporaryHome(home);
        const auto alert = gui::answerAlert();
        AppDelegate second;
        const std::optional<int> status = second.applicationDidFinishLaunching();
        QVERIFY(status.has_value());
        QCOMPARE(*status, 1);
        QVERIFY(alert->shown);
        QVERIFY2(alert->informativeText.contains("already running") &&
                     alert->informativeText.contains("does not answer"),
                 qPrintable(alert->informativeText));
    }

    void aLockLeftByAKilledEditorDoesNotBlockTheNextStart() {
        const QString home = m_root.filePath("home-b");
        const QString folder = home + "/Documents/Tanselo";
        auto killed = startEditor(home);
        QVERIFY(killed->waitForStarted(10000));
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(folder + "/silence.wav"), 30000);
        QVERIFY(QFile::exists(folder + "/.tanselo.lock"));
        QCOMPARE(::kill(pid_t(killed->processId()), SIGKILL), 0);
        QVERIFY(killed->waitForFinished(10000));
        QCOMPARE(killed->exitStatus(), QProcess::CrashExit);
        QVERIFY(QFile::exists(folder + "/.tanselo.lock")); // left behind, as by any crash
        fixtures::makeTone(folder + "/left-by-the-killed-editor.wav", 1);

        auto app = gui::startApplication(home);
        QVERIFY(app);
        QVERIFY(gui::waitIdle(*app));
        QVERIFY(!QFile::exists(folder + "/left-by-the-killed-editor.wav"));
        QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList({"silence.wav"}));

        // The new editor owns the folder now: a later start asks it for a window.
        auto later = startEditor(home);
        QVERIFY(later->waitForStarted(10000));
        QTRY_VERIFY_WITH_TIMEOUT(later->state() == QProcess::NotRunning, 30000);
        QCOMPARE(later->exitCode(), 0);
        QCOMPARE(app->documents().size(), 1);
        QVERIFY(gui::waitIdle(*app));
    }

    // A later start with files: the running editor opens each in a new
    // window, in order, and the files of its work folder stay as they were.
    void aSecondEditorHandsItsFilesToTheFirst() {
        const QString home = m_root.filePath("home-e");
        auto app = gui::startApplication(home);
        QVERIFY(app);
        QVERIFY(gui::firstDocument(*app));
        const QString folder = app->session().s_Output_Folder;
        const QMap<QString, QByteArray> before = contents(folder);
        const QString music = m_root.filePath("music");
        QVERIFY(QDir().mkpath(music));
        fixtures::makeTone(music + "/x.wav", 2, 440);
        QCOMPARE(fixtures::run("ffmpeg", {"-v", "error", "-i", music + "/x.wav", music + "/x.flac"}), 0);
        fixtures::makeTone(music + "/y z.wav", 3, 880);

        auto second = startEditor(home, {"x.flac", music + "/y z.wav"}, music);
        QVERIFY(second->waitForStarted(10000));
        QTRY_VERIFY_WITH_TIMEOUT(second->state() == QProcess::NotRunning, 30000);
        QCOMPARE(second->exitStatus(), QProcess::NormalExit);
        QCOMPARE(second->exitCode(), 0);
        QTRY_COMPARE_WITH_TIMEOUT(app->documents().size(), 3, 10000);
        const QList<Document*> opened = app->documents().mid(1);
        for (Document* d : opened)
            QTRY_VERIFY_WITH_TIMEOUT(d->b_Audio_Loaded, 20000);
        QVERIFY(gui::waitIdle(*app));
        QCOMPARE(opened[0]->track().s_File_Path, music + "/x.flac");
        QCOMPARE(opened[1]->track().s_File_Path, music + "/y z.wav");
        for (Document* d : opened) {
            QCOMPARE(d->windowTitle(), QFileInfo(d->track().s_WAV_File_Path).fileName());
            QVERIFY(fixtures::wavInfo(d->track().s_WAV_File_Path).isWorkingWav());
        }
        QTRY_COMPARE(QApplication::activeWindow(), opened[1]);
        const QMap<QString, QByteArray> after = contents(folder);
        for (auto it = before.cbegin(); it != before.cend(); ++it)
            QCOMPARE(after.value(it.key()), it.value());
        QCOMPARE(windowsInManifest(*app), 2); // the first editor's windows of the two files
    }

    // `tanselo a.flac missing.wav b.mp3`: the editor converts a.flac and then
    // b.mp3 into working WAVs of their own, in that order (their names are
    // stamps, so the earlier name holds the first file); the missing file
    // does not stop the other.
    void theCommandLineOpensEachFileInOrder() {
        const QString home = m_root.filePath("home-g");
        const QString folder = home + "/Documents/Tanselo";
        const QString music = m_root.filePath("music-g");
        QVERIFY(QDir().mkpath(music));
        fixtures::makeTone(music + "/a.wav", 2, 440);
        QCOMPARE(fixtures::run("ffmpeg", {"-v", "error", "-i", music + "/a.wav", music + "/a.flac"}), 0);
        fixtures::makeTone(music + "/b.wav", 4, 880);
        QCOMPARE(fixtures::run("ffmpeg", {"-v", "error", "-i", music + "/b.wav", music + "/b.mp3"}), 0);
        const QByteArray flac = fixtures::digest(music + "/a.flac");

        auto editor = startEditor(home, {"a.flac", "missing.wav", music + "/b.mp3"}, music);
        QVERIFY(editor->waitForStarted(10000));
        const auto tracks = [&] {
            return QDir(folder).entryList({"[0-9][0-9][0-9][0-9]-*.wav"}, QDir::Files, QDir::Name);
        };
        // Both are written, each in full, while the missing file's alert waits.
        QTRY_VERIFY_WITH_TIMEOUT(tracks().size() == 2 &&
                                     std::abs(fixtures::wavInfo(folder + "/" + tracks()[1]).seconds() - 4) <
                                         0.1,
                                 30000);
        QCOMPARE(editor->state(), QProcess::Running);
        const QStringList made = tracks();
        QVERIFY(std::abs(fixtures::wavInfo(folder + "/" + made[0]).seconds() - 2) < 0.01);
        QVERIFY(fixtures::wavInfo(folder + "/" + made[0]).isWorkingWav());
        QVERIFY(fixtures::wavInfo(folder + "/" + made[1]).isWorkingWav());
        QCOMPARE(fixtures::digest(music + "/a.flac"), flac);
        editor->kill();
        QVERIFY(editor->waitForFinished(10000));
    }

    void helpAndVersionPrintAndEnd() {
        for (const QString option : {"--version", "--help"}) {
            QProcess editor;
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.remove("QT_QPA_PLATFORM"); // no display is needed to print
            environment.remove("DISPLAY");
            environment.insert("HOME", m_root.filePath("home-f"));
            editor.setProcessEnvironment(environment);
            editor.start(qEnvironmentVariable("TANSELO_BUILD_DIR") + "/tanselo", {option});
            QVERIFY(editor.waitForFinished(10000));
            QCOMPARE(editor.exitStatus(), QProcess::NormalExit);
            QCOMPARE(editor.exitCode(), 0);
            const QString printed = QString::fromUtf8(editor.readAllStandardOutput());
            if (option == "--version") {
                QVERIFY2(printed.contains(QRegularExpression("^Tanselo \\d+\\.\\d+\\.\\d+\n$")),
                         qPrintable(printed));
            } else {
                QVERIFY2(printed.contains("[FILE…]") && printed.contains("--version"), qPrintable(printed));
            }
            // Nothing was started: no work folder was made.
            QVERIFY(!QFile::exists(m_root.filePath("home-f/Documents/Tanselo")));
        }
    }

    void editorsOfOtherFoldersRunSideBySide() {
        auto a = gui::startApplication(m_root.filePath("home-c"));
        auto b = gui::startApplication(m_root.filePath("home-d"));
        QVERIFY(a && b);
        QVERIFY(gui::waitIdle(*a) && gui::waitIdle(*b));
        QVERIFY(QFile::exists(a->session().sSilenceWavPath) && QFile::exists(b->session().sSilenceWavPath));
        const QString name = SingleInstance::serverName(a->session().s_Output_Folder);
        QVERIFY(name.startsWith(QString("tanselo-%1-").arg(::getuid())));
        QVERIFY(name != SingleInstance::serverName(b->session().s_Output_Folder));
        QCOMPARE(SingleInstance::serverName(a->session().s_Output_Folder + "/"), name);
    }
};

QTEST_MAIN(tst_SingleInstance)
#include "tst_singleinstance.moc"
