#include "application/AppDelegate.h"
#include "application/SingleInstance.h"
#include "document/Document.h"
#include "document/ImportPlans.h"
#include "session/CommandLine.h"
#include "support/Fixtures.h"
#include "support/Gui.h"

#include <QDir>
#include <QDropEvent>
#include <QFile>
#include <QLabel>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QSet>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace {
// Drops `urls` on the middle of `window` as a file manager would.
bool drop(Document* window, const QList<QUrl>& urls) {
    QMimeData data;
    data.setUrls(urls);
    const QPoint middle = window->rect().center();
    QDragEnterEvent enter(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window, &enter);
    if (!enter.isAccepted())
        return false;
    QDropEvent dropped(QPointF(middle), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window, &dropped);
    return dropped.isAccepted();
}

// Answers the next `count` alerts with their first button, keeping what each said.
void answerAlerts(QStringList& said, int count) {
    gui::whenModal<QMessageBox>([&said, count](QMessageBox* box) {
        said << box->informativeText();
        box->buttons().first()->click();
        if (said.size() < count)
            answerAlerts(said, count);
    });
}
} // namespace

// Files handed to the editor by name: on its command line, by a later start
// and by drag and drop. Each opens in a window of its own through the same
// import as File ▸ Open.
class tst_CommandLine : public QObject {
    Q_OBJECT
    QTemporaryDir m_root;
    std::unique_ptr<AppDelegate> m_app;
    QString m_flac, m_mp3;

    QList<Document*> windowsAfter(qsizetype count) const { return m_app->documents().mid(count); }

    // Waits until every window after the first `count` has loaded its track.
    bool allLoaded(qsizetype count, qsizetype expected) {
        return QTest::qWaitFor(
                   [&] {
                       const QList<Document*> made = windowsAfter(count);
                       return made.size() == expected &&
                              std::all_of(made.begin(), made.end(),
                                          [](Document* d) { return d->b_Audio_Loaded; });
                   },
                   60000) &&
               gui::waitIdle(*m_app);
    }

private slots:
    void initTestCase() {
        m_app = gui::startApplication(m_root.filePath("home"));
        QVERIFY(m_app && gui::waitIdle(*m_app));
        const QString sources = m_root.filePath("sources");
        QVERIFY(QDir().mkpath(sources));
        const QString wav = sources + "/tone.wav";
        fixtures::makeTone(wav, 2, 440);
        m_flac = sources + "/a tone.flac";
        m_mp3 = sources + "/b.mp3";
        QCOMPARE(fixtures::run("ffmpeg", {"-v", "error", "-i", wav, m_flac}), 0);
        fixtures::makeTone(wav, 3, 880);
        QCOMPARE(fixtures::run("ffmpeg", {"-v", "error", "-y", "-i", wav, m_mp3}), 0);
    }
    void cleanup() { QVERIFY(gui::closeAllWindows(*m_app)); }

    void namesBecomeAbsolutePathsInTheirOrder() {
        QCOMPARE(
            givenFiles({"b.mp3", "/music/a.flac", "../up/c.wav", "file:///tmp/with%20blank.ogg", ""},
                       "/home/me/rec"),
            QStringList({"/home/me/rec/b.mp3", "/music/a.flac", "/home/me/up/c.wav", "/tmp/with blank.ogg"}));
        QCOMPARE(droppedFiles({QUrl("file:///tmp/a.wav"), QUrl("https://example.org/b.mp3"),
                               QUrl::fromLocalFile("/tmp/c d.flac"), QUrl("ftp://host/e.wav")}),
                 QStringList({"/tmp/a.wav", "/tmp/c d.flac"}));
        QVERIFY(droppedFiles({QUrl("https://example.org/b.mp3")}).isEmpty());
    }

    void aLaterStartsRequestCarriesAnyPath() {
        const QStringList files = {"/tmp/a.wav", "/tmp/with\nnewline.mp3", "/tmp/100% ünï cödé.flac",
                                   "/tmp/open"};
        const QByteArray request = SingleInstance::openRequest(files);
        QCOMPARE(request.count("\n\n"), 1);
        QVERIFY(request.endsWith("\n\n"));
        QCOMPARE(SingleInstance::filesOfRequest(request), std::optional<QStringList>(files));
        QCOMPARE(SingleInstance::filesOfRequest(SingleInstance::openRequest({})),
                 std::optional<QStringList>(QStringList()));
        // Not whole yet, or not a request at all.
        QVERIFY(!SingleInstance::filesOfRequest(request.chopped(1)));
        QVERIFY(!SingleInstance::filesOfRequest("open\n/tmp/a.wav\n"));
        QVERIFY(!SingleInstance::filesOfRequest("new-window\n\n"));
    }

    void eachFileOpensInAWindowOfItsOwnInOrder() {
        const QByteArray flacBytes = fixtures::digest(m_flac);
        const qsizetype before = m_app->documents().size();
        m_app->openFiles({m_flac, m_mp3});
        QVERIFY(allLoaded(before, 2));
        const QList<Document*> made = windowsAfter(before);
        QCOMPARE(made[0]->track().s_File_Path, m_flac);
        QCOMPARE(made[1]->track().s_File_Path, m_mp3);
        for (Document* d : made) {
            QCOMPARE(QFileInfo(d->track().s_WAV_File_Path).path(), m_app->session().s_Output_Folder);
            QCOMPARE(d->windowTitle(), QFileInfo(d->track().s_WAV_File_Path).fileName());
            QVERIFY(fixtures::wavInfo(d->track().s_WAV_File_Path).isWorkingWav());
            QCOMPARE(d->history().array_WAV_Files(), QStringList({d->track().s_WAV_File_Path}));
        }
        QVERIFY(std::abs(fixtures::wavInfo(made[0]->track().s_WAV_File_Path).seconds() - 2.0) < 0.01);
        QVERIFY(std::abs(fixtures::wavInfo(made[1]->track().s_WAV_File_Path).seconds() - 3.0) < 0.06);
        QCOMPARE(made[0]->track().i_Audio_Duration_Seconds, 2);
        QCOMPARE(fixtures::digest(m_flac), flacBytes); // only read
        QCOMPARE(m_app->session().lastOpenFolder, QFileInfo(m_mp3).path());
    }

    void aFileThatCannotBeOpenedIsNamedAndTheOthersStillOpen() {
        const QString missing = m_root.filePath("sources/not there.wav");
        const QString folder = m_root.filePath("sources");
        const QString notAudio = m_root.filePath("sources/notes.mp3");
        QFile text(notAudio);
        QVERIFY(text.open(QIODevice::WriteOnly));
        text.write("these are words, not sound\n");
        text.close();

        QStringList said;
        answerAlerts(said, 3);
        const qsizetype before = m_app->documents().size();
        m_app->openFiles({missing, m_mp3, folder, notAudio});
        QVERIFY(allLoaded(before, 4));
        QTRY_COMPARE_WITH_TIMEOUT(said.size(), 3, 20000);
        // The windows start side by side, so their alerts may come in any order.
        said.sort();
        QCOMPARE(said.mid(0, 2), QStringList({"\"sources\" is a folder, not an audio file.\n\n" + folder,
                                              "The file \"not there.wav\" does not exist.\n\n" + missing}));
        // Text named .mp3 is refused by the import itself, as in the open dialog.
        QVERIFY2(said[2] == unreadableFileMessage(notAudio) ||
                     said[2].startsWith("Opening “notes.mp3” produced no usable audio."),
                 qPrintable(said[2]));

        const QList<Document*> made = windowsAfter(before);
        for (int i : {0, 2, 3}) {
            QCOMPARE(made[i]->track().s_WAV_File_Path, m_app->session().sSilenceWavPath);
            QCOMPARE(made[i]->windowTitle(), QString("silence.wav"));
        }
        QCOMPARE(made[1]->track().s_File_Path, m_mp3);
        QVERIFY(fixtures::wavInfo(made[1]->track().s_WAV_File_Path).isWorkingWav());
    }

    void hundredsOfFilesOpenOneAfterAnother() {
        const QString tiny = m_root.filePath("sources/tiny.wav");
        fixtures::makeTone(tiny, 0.1, 440);
        const QStringList files(120, tiny);
        const qsizetype before = m_app->documents().size();
        m_app->openFiles(files);
        // One window at once; the rest follow from the event loop, which
        // meanwhile keeps answering.
        QCOMPARE(m_app->documents().size(), before + 1);
        bool ticked = false;
        QTimer::singleShot(0, [&] { ticked = true; });
        QTRY_VERIFY(ticked);
        QVERIFY(m_app->documents().size() < before + qsizetype(files.size()));
        QVERIFY(allLoaded(before, files.size()));
        QSet<QString> tracks;
        for (Document* d : windowsAfter(before)) {
            QCOMPARE(d->track().s_File_Path, tiny);
            tracks.insert(d->track().s_WAV_File_Path);
            QVERIFY(QFile::exists(d->track().s_WAV_File_Path));
        }
        QCOMPARE(tracks.size(), files.size()); // each its own working WAV
    }

    void droppedFilesOpenAndOtherDropsDoNothing() {
        Document* first = gui::firstDocument(*m_app);
        QVERIFY(first);
        QCOMPARE(first->track().s_WAV_File_Path, m_app->session().sSilenceWavPath);
        const qsizetype before = m_app->documents().size();
        const qsizetype runs = m_app->runner().runs().size();

        // Not local files: the window refuses the drag, and nothing runs.
        QVERIFY(!drop(first, {QUrl("https://example.org/song.mp3")}));
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(m_app->documents().size(), before);
        QCOMPARE(m_app->runner().runs().size(), runs);
        QCOMPARE(first->track().s_WAV_File_Path, m_app->session().sSilenceWavPath);

        // The silent window takes the first file, a new window the second.
        QSignalSpy loaded(first, &Document::loaded);
        QVERIFY(drop(first, {QUrl::fromLocalFile(m_flac), QUrl("https://example.org/x.mp3"),
                             QUrl::fromLocalFile(m_mp3)}));
        QVERIFY(loaded.wait(20000));
        QVERIFY(allLoaded(before, 1));
        QCOMPARE(first->track().s_File_Path, m_flac);
        QCOMPARE(first->windowTitle(), QFileInfo(first->track().s_WAV_File_Path).fileName());
        QCOMPARE(windowsAfter(before).first()->track().s_File_Path, m_mp3);

        // A window with a track of its own keeps it: every dropped file opens anew.
        QVERIFY(drop(first, {QUrl::fromLocalFile(m_mp3)}));
        QVERIFY(allLoaded(before, 2));
        QCOMPARE(first->track().s_File_Path, m_flac);
        QCOMPARE(windowsAfter(before).last()->track().s_File_Path, m_mp3);
    }

    // A file whose name has no extension: the open dialog's filter leaves it
    // out, as it lists audio by extension; given on the command line or
    // dropped, audio opens whatever its name, and anything else is refused
    // with a message that names the file.
    void aFileWithoutAnExtension() {
        const QString folder = m_root.filePath("bare");
        QVERIFY(QDir().mkpath(folder));
        const QString audio = folder + "/interview", text = folder + "/notes";
        QVERIFY(QFile::copy(m_mp3, audio));
        QFile words(text);
        QVERIFY(words.open(QIODevice::WriteOnly));
        words.write("these are words, not sound\n");
        words.close();
        QVERIFY(QFile::copy(m_mp3, folder + "/named.mp3"));

        // The open dialog, as the toolbar's Open shows it: its filter takes
        // the named copy and neither bare name.
        Document* first = gui::firstDocument(*m_app);
        QVERIFY(first);
        const auto seen = gui::answerFileDialog({});
        first->OnToolbarOpen();
        QTRY_VERIFY(seen->shown);
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(seen->nameFilters.size(), 1);
        // "Audio files (*.ac3 *.aifc …)": the patterns between the brackets.
        const QString filter = seen->nameFilters.first();
        const QStringList patterns =
            filter.section(u'(', 1).section(u')', 0, 0).split(u' ', Qt::SkipEmptyParts);
        QVERIFY(patterns.contains("*.mp3"));
        QCOMPARE(QDir(folder).entryList(patterns, QDir::Files), QStringList({"named.mp3"}));

        // The command line: the audio opens, under its own name.
        const qsizetype before = m_app->documents().size();
        m_app->openFiles({audio});
        QVERIFY(allLoaded(before, 1));
        Document* opened = windowsAfter(before).first();
        QCOMPARE(opened->track().s_File_Path, audio);
        QCOMPARE(opened->labelSource->text(), QString("interview"));
        QVERIFY(fixtures::wavInfo(opened->track().s_WAV_File_Path).isWorkingWav());
        QVERIFY(std::abs(fixtures::wavInfo(opened->track().s_WAV_File_Path).seconds() - 3.0) < 0.06);

        // A drop on a window with a track: a new window, the audio in it.
        QVERIFY(drop(opened, {QUrl::fromLocalFile(audio)}));
        QVERIFY(allLoaded(before, 2));
        QCOMPARE(windowsAfter(before).last()->track().s_File_Path, audio);

        // Text without an extension, given or dropped: refused in words that name it.
        QStringList said;
        answerAlerts(said, 2);
        m_app->openFiles({text});
        QVERIFY(allLoaded(before, 3));
        QVERIFY(drop(opened, {QUrl::fromLocalFile(text)}));
        QVERIFY(allLoaded(before, 4));
        QTRY_COMPARE_WITH_TIMEOUT(said.size(), 2, 20000);
        for (const QString& message : said) {
            QVERIFY2(message == unreadableFileMessage(text) ||
                         message.startsWith("Opening “notes” produced no usable audio."),
                     qPrintable(message));
            QVERIFY(message.contains("notes"));
        }
        for (Document* refused : windowsAfter(before).mid(2))
            QCOMPARE(refused->track().s_WAV_File_Path, m_app->session().sSilenceWavPath);
        QCOMPARE(opened->track().s_File_Path, audio); // the window dropped on keeps its track
    }

    // File ▸ Open in a window still on its untouched silence track opens the
    // file there, as a drop does; in a window with a track, in a new one.
    void fileOpenInAnUntouchedSilenceWindowLoadsThere() {
        Document* first = gui::firstDocument(*m_app);
        QVERIFY(first);
        first->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(first));
        const qsizetype before = m_app->documents().size();
        const qsizetype runs = m_app->runner().runs().size();

        // Cancelled: the window stays on its silence, and nothing runs.
        auto seen = gui::answerFileDialog({});
        m_app->actionOpen->trigger();
        QTRY_VERIFY(seen->shown);
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(m_app->documents().size(), before);
        QCOMPARE(first->track().s_WAV_File_Path, m_app->session().sSilenceWavPath);
        QCOMPARE(m_app->runner().runs().size(), runs);

        first->activateWindow(); // as it is again once the dialog has gone
        QVERIFY(QTest::qWaitForWindowActive(first));
        QSignalSpy loaded(first, &Document::loaded);
        seen = gui::answerFileDialog(m_flac);
        m_app->actionOpen->trigger();
        QVERIFY(loaded.wait(20000));
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(m_app->documents().size(), before); // no empty window left behind
        QCOMPARE(first->track().s_File_Path, m_flac);
        QCOMPARE(first->labelSource->text(), QFileInfo(m_flac).fileName());
        QCOMPARE(first->history().array_WAV_Files(), QStringList({first->track().s_WAV_File_Path}));

        // Now it holds a track: File ▸ Open makes a new window, as ever.
        first->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(first));
        seen = gui::answerFileDialog(m_mp3);
        m_app->actionOpen->trigger();
        QVERIFY(allLoaded(before, 1));
        QCOMPARE(windowsAfter(before).first()->track().s_File_Path, m_mp3);
        QCOMPARE(first->track().s_File_Path, m_flac);
    }
};

QTEST_MAIN(tst_CommandLine)
#include "tst_commandline.moc"
