#include "application/AppDelegate.h"
#include "document/Document.h"
#include "support/Fixtures.h"
#include "support/Gui.h"
#include "support/Listening.h"
#include "timeline/View_Audio_Wave.h"
#include "transport/SoundPlayer.h"
#include "transport/TransportRules.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileDialog>
#include <QPushButton>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>

namespace {
// Names carry the second they were made in: waits until it is past every name
// in the folder, as it is for a user who takes a moment between two edits.
void waitPastEveryStamp(const QString& folder) {
    QString newest;
    for (const QString& name : QDir(folder).entryList({"2*.wav"}, QDir::Files))
        newest = std::max(newest, name.left(19));
    QVERIFY(QTest::qWaitFor(
        [&] { return QDateTime::currentDateTime().toString("yyyy-MM-dd-HH-mm-ss") > newest; }, 5000));
}

void select(Document* d, float start, float end) {
    d->track().f_Selection_Start = start;
    d->track().f_Selection_End = end;
}

// What must not change when an operation fails: the current version, its
// bytes, the history and the files of the work folder.
struct Snapshot {
    QString path;
    QByteArray digest;
    QStringList versions;
    quint64 position = 0;
    QStringList files;
    bool operator==(const Snapshot&) const = default;
};
} // namespace

// Nothing the user made is lost or silently replaced: runs that are killed,
// crash or are cancelled, results that are not audio, a work folder that takes
// no file or has no room, and an Open that would discard a history.
class tst_NothingLost : public QObject {
    Q_OBJECT
    QTemporaryDir m_root;
    std::unique_ptr<AppDelegate> m_app;
    Document* m_hour = nullptr; // an hour of a 440 Hz tone
    QString m_tone;             // two seconds of a 1 kHz tone

    QStringList workFiles() const {
        return QDir(m_app->session().s_Output_Folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    Snapshot snapshot(Document* d) const {
        return {d->track().s_WAV_File_Path, fixtures::digest(d->track().s_WAV_File_Path),
                d->history().array_WAV_Files(), d->history().u_array_WAV_Files_Position(), workFiles()};
    }

    // Waits until a tool of the running plan has worked for a moment, and
    // returns its process id.
    qint64 runningTool(int afterMs = 700) {
        if (!QTest::qWaitFor([&] { return m_app->runner().runningProcessId() != 0; }, 30000))
            return 0;
        QTest::qWait(afterMs);
        return m_app->runner().runningProcessId();
    }

    // A short window of its own, with `versions` versions made by reversing.
    Document* shortTrack(int versions) {
        Document* d = gui::openInNewWindow(*m_app, m_tone);
        for (int v = 1; d && v < versions; ++v) {
            waitPastEveryStamp(m_app->session().s_Output_Folder);
            QSignalSpy adopted(d, &Document::adopted);
            d->effectActions().OnPopupReverseEntireTrack();
            if (!adopted.wait(20000) || !gui::waitIdle(*m_app))
                return nullptr;
        }
        if (d)
            waitPastEveryStamp(m_app->session().s_Output_Folder);
        return d;
    }

    void checkStillEdits(Document* d) {
        const int versions = int(d->history().array_WAV_Files().size());
        waitPastEveryStamp(m_app->session().s_Output_Folder);
        select(d, 0, 1);
        QSignalSpy adopted(d, &Document::adopted);
        d->editingActions().Operation_Delete();
        QVERIFY(adopted.wait(60000));
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(d->history().array_WAV_Files().size(), versions + 1);
        QVERIFY(fixtures::wavInfo(d->track().s_WAV_File_Path).isWorkingWav());
        waitPastEveryStamp(m_app->session().s_Output_Folder);
    }

private slots:
    void initTestCase() {
        m_app = gui::startApplication(m_root.filePath("home"));
        QVERIFY(m_app && gui::waitIdle(*m_app));
        m_tone = m_root.filePath("tone.wav");
        fixtures::makeTone(m_tone, 2);
        const QString ten = m_root.filePath("ten.wav"), hour = m_root.filePath("hour.wav");
        fixtures::makeTone(ten, 10, 440);
        QCOMPARE(fixtures::run("sox", {ten, hour, "repeat", "359"}), 0);
        m_hour = gui::openInNewWindow(*m_app, hour);
        QVERIFY(m_hour);
        QCOMPARE(m_hour->track().i_Audio_Duration_Seconds, 3600);
        QFile::remove(hour);
        waitPastEveryStamp(m_app->session().s_Output_Folder);
    }

    void aKilledEffectLeavesTheTrackAsItWas_data() {
        QTest::addColumn<int>("signal");
        QTest::newRow("SIGKILL") << SIGKILL;
        QTest::newRow("SIGTERM") << SIGTERM;
    }
    void aKilledEffectLeavesTheTrackAsItWas() {
        QFETCH(int, signal);
        const Snapshot before = snapshot(m_hour);
        const auto alert = gui::answerAlert();
        m_hour->effectActions().applyEffect({{}, {"echo", "0.8", "0.88", "60", "0.4"}}, false);
        const qint64 sox = runningTool();
        QVERIFY(sox > 0);
        QCOMPARE(::kill(pid_t(sox), signal), 0);
        QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 20000);
        QCOMPARE(alert->text, QString("Error"));
        QCOMPARE(alert->informativeText,
                 QString("sox was stopped by signal %1 before it finished.").arg(signal));
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(snapshot(m_hour), before);
        QCOMPARE(m_hour->windowTitle(), QFileInfo(before.path).fileName());
    }

    void aKilledJoinOfADeleteLeavesTheTrackAsItWas_data() {
        QTest::addColumn<int>("signal");
        QTest::newRow("SIGKILL") << SIGKILL;
        QTest::newRow("SIGTERM") << SIGTERM;
    }
    void aKilledJoinOfADeleteLeavesTheTrackAsItWas() {
        QFETCH(int, signal);
        const Snapshot before = snapshot(m_hour);
        select(m_hour, 40, 60);
        QSignalSpy progress(&m_app->runner(), &PlanRunner::progress);
        const auto alert = gui::answerAlert();
        m_hour->editingActions().Operation_Delete();
        // The before- and after-parts are cut; the third run joins them.
        QTRY_VERIFY_WITH_TIMEOUT(
            !progress.isEmpty() && progress.last()[0].toString() == "Running ffmpeg (step 3 of 4)…", 60000);
        const qint64 join = runningTool(500);
        QVERIFY(join > 0);
        QCOMPARE(::kill(pid_t(join), signal), 0);
        QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 20000);
        QCOMPARE(alert->informativeText,
                 QString("ffmpeg was stopped by signal %1 before it finished.").arg(signal));
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(snapshot(m_hour), before); // the Before, After and joined files are gone too
    }

    void cancellingAnHourOfEchoKeepsThePreviousVersionPlaying() {
        const Snapshot before = snapshot(m_hour);
        const auto alert = gui::answerAlert();
        m_hour->effectActions().applyEffect({{}, {"echo", "0.8", "0.88", "60", "0.4"}}, false);
        QVERIFY(runningTool() > 0);
        QVERIFY(m_hour->btnCancel->isVisible());
        QElapsedTimer clock;
        clock.start();
        QTest::mouseClick(m_hour->btnCancel, Qt::LeftButton);
        QVERIFY(gui::waitIdle(*m_app));
        qInfo("idle %lld ms after Cancel", clock.elapsed());
        QCOMPARE(m_hour->statusBar()->currentMessage(), QString("Cancelled"));
        QVERIFY(!m_hour->btnCancel->isVisible());
        QTest::qWait(300);
        QVERIFY(!alert->shown); // a cancel is no error
        alert->stop = true;
        QCOMPARE(snapshot(m_hour), before);

        m_hour->transportActions().OnPopupMenuPlayFromStart();
        // The hour-long track can take the media backend a while to open when
        // the machine is busy with other tests: allow it 20 s to be heard.
        const std::vector<short> heard = listening::hear(500, 20000);
        m_hour->transportActions().stopAudio();
        QVERIFY2(listening::level(heard) > 0.2, qPrintable(QString::number(listening::level(heard))));
        QVERIFY2(std::abs(listening::frequency(heard) - 440) < 10,
                 qPrintable(QString::number(listening::frequency(heard))));
    }

    void escapeCancelsInTheWindowThatStartedTheRun() {
        const Snapshot before = snapshot(m_hour);
        select(m_hour, 10, 20);
        m_hour->editingActions().Operation_Delete();
        QVERIFY(runningTool(300) > 0);
        m_hour->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_hour));
        QTest::keyClick(m_hour, Qt::Key_Escape);
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(m_hour->statusBar()->currentMessage(), QString("Cancelled"));
        QCOMPARE(snapshot(m_hour), before);
    }

    void theHourWindowStillEdits() { checkStillEdits(m_hour); }

    void aResultThatIsNotAudioIsRefused_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        QByteArray random(64 * 1024, '\0');
        for (int i = 0; i < random.size(); ++i)
            random[i] = char((i * 7919 + 13) % 251);
        QTest::newRow("random bytes named .mp3") << "noise.mp3" << random;
        QTest::newRow("an empty file") << "empty.mp3" << QByteArray();
        QTest::newRow("a truncated WAV header") << "cut.wav"
                                                << QByteArray("RIFF") + QByteArray::fromHex("24100000") +
                                                       "WAVEfmt " + QByteArray::fromHex("1000");
    }
    void aResultThatIsNotAudioIsRefused() {
        QFETCH(QString, name);
        QFETCH(QByteArray, bytes);
        Document* d = shortTrack(1);
        QVERIFY(d);
        const QString path = m_root.filePath(name);
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        const Snapshot before = snapshot(d);
        const auto alert = gui::answerAlert();
        gui::answerFileDialog(path);
        d->OnToolbarOpen();
        QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 20000);
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(alert->text, QString("Error"));
        QVERIFY2(alert->informativeText.contains("Opening “" + name + "” produced no usable audio.") ||
                     alert->informativeText.contains("\"" + name + "\" could not be read as audio"),
                 qPrintable(alert->informativeText));
        QCOMPARE(snapshot(d), before);
        QCOMPARE(fixtures::digest(path), QCryptographicHash::hash(bytes, QCryptographicHash::Sha256));
        QVERIFY(gui::closeDocument(d));
    }

    void aDeleteOverAVanishedVersionAdoptsNothing() {
        Document* d = shortTrack(2);
        QVERIFY(d);
        QVERIFY(QFile::remove(d->track().s_WAV_File_Path)); // gone from disk, still current
        const Snapshot before = snapshot(d);
        const auto alert = gui::answerAlert();
        d->editingActions().Operation_Delete();
        QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 20000);
        QVERIFY(gui::waitIdle(*m_app));
        // Said as what it is, before anything runs.
        QVERIFY2(alert->informativeText.startsWith(
                     QString("The track's file “%1” is no longer there; it was removed outside Tanselo.")
                         .arg(QFileInfo(before.path).fileName())),
                 qPrintable(alert->informativeText));
        QCOMPARE(snapshot(d), before);
        QVERIFY(gui::closeDocument(d)); // its versions are not exported
    }

    void aWorkFolderThatTakesNoFileIsNamed() {
        Document* d = shortTrack(1);
        QVERIFY(d);
        const Snapshot before = snapshot(d);
        const qsizetype runs = m_app->runner().runs().size();
        gui::AlertSeen alert;
        {
            fixtures::Immutable frozen(m_app->session().s_Output_Folder);
            QVERIFY(frozen.made);
            const auto seen = gui::answerAlert();
            d->effectActions().OnPopupReverseEntireTrack();
            QTRY_VERIFY_WITH_TIMEOUT(seen->shown, 20000);
            alert = *seen;
        }
        QVERIFY(gui::waitIdle(*m_app));
        QVERIFY2(alert.informativeText.startsWith("The work folder " + m_app->session().s_Output_Folder +
                                                  " cannot be written"),
                 qPrintable(alert.informativeText));
        QCOMPARE(m_app->runner().runs().size(), runs); // refused before anything ran
        QCOMPARE(snapshot(d), before);
        checkStillEdits(d);
        QVERIFY(gui::closeDocument(d));
    }

    void aFullWorkDiskIsRefusedBeforeAnyRun() {
        const QString home = m_root.filePath("small-home");
        fixtures::Mount small(home, "size=40m");
        QVERIFY(small.mounted);
        {
            auto app = gui::startApplication(home);
            QVERIFY(app);
            Document* d = gui::firstDocument(*app); // the 21 MB silence track fits, barely
            QVERIFY(d);
            const qsizetype runs = app->runner().runs().size();
            const QStringList files = QDir(app->session().s_Output_Folder).entryList(QDir::Files);
            const auto alert = gui::answerAlert();
            d->effectActions().OnPopupReverseEntireTrack();
            QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 20000);
            QVERIFY2(alert->informativeText.startsWith("There is not enough free space in the work folder " +
                                                       app->session().s_Output_Folder + "."),
                     qPrintable(alert->informativeText));
            QVERIFY2(alert->informativeText.contains(" MB free"), qPrintable(alert->informativeText));
            QCOMPARE(app->runner().runs().size(), runs);
            QCOMPARE(QDir(app->session().s_Output_Folder).entryList(QDir::Files), files);
            QCOMPARE(d->history().array_WAV_Files().size(), 1);
        }
    }

    void openAsksBeforeItDiscardsAHistory() {
        Document* d = shortTrack(3);
        QVERIFY(d);
        const Snapshot before = snapshot(d);
        const QStringList versions = d->history().array_WAV_Files();
        // Cancel: nothing changes, and no file dialog comes.
        const auto asked = gui::answerAlert("Cancel");
        const auto dialog = gui::answerFileDialog({});
        d->OnToolbarOpen();
        QVERIFY(asked->shown);
        QCOMPARE(asked->informativeText, QString());
        QCOMPARE(asked->text, QString("Open a file in this window? Its 3 versions will be deleted."));
        QCOMPARE(asked->buttons, QStringList({"Open…", "Cancel"}));
        QTest::qWait(200);
        QVERIFY(!dialog->shown);
        dialog->stop = true;
        QCOMPARE(snapshot(d), before);
        for (const QString& version : versions)
            QVERIFY(QFile::exists(version));

        // Open…, then Escape in the file dialog: the silence track, as always.
        gui::answerAlert("Open…");
        gui::answerFileDialog({});
        QSignalSpy loaded(d, &Document::loaded);
        d->OnToolbarOpen();
        QVERIFY(loaded.wait(20000));
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(d->windowTitle(), QString("silence.wav"));
        QCOMPARE(d->history().array_WAV_Files(), QStringList({m_app->session().sSilenceWavPath}));
        for (const QString& version : versions)
            QVERIFY2(!QFile::exists(version), qPrintable(version));
        QVERIFY(gui::closeDocument(d));
    }

    void aHistoryOfOneVersionOpensWithoutAsking() {
        Document* d = shortTrack(1);
        QVERIFY(d);
        const auto asked = gui::answerAlert();
        const auto dialog = gui::answerFileDialog(m_tone);
        QSignalSpy loaded(d, &Document::loaded);
        d->OnToolbarOpen();
        QVERIFY(loaded.wait(20000));
        QVERIFY(dialog->shown);
        QTest::qWait(100);
        QVERIFY(!asked->shown);
        asked->stop = true;
        QVERIFY(gui::waitIdle(*m_app));
        QVERIFY(gui::closeDocument(d));
    }

    void editsDoNothingWhileAWindowRecords() {
        // The menu's Cut still reaches a recording window; a result named in
        // the take's second would overwrite the take, and the stop drops the
        // old history anyway.
        Document* d = shortTrack(1);
        QVERIFY(d);
        d->transportActions().OnToolbarRecord();
        QTRY_COMPARE(d->transportActions().m_RecordStatus, quint64(StatusRecording));
        const qsizetype runs = m_app->runner().runs().size();
        const QStringList versions = d->history().array_WAV_Files();
        m_app->cut();
        d->editingActions().Operation_Delete();
        d->effectActions().OnPopupReverseEntireTrack();
        QTest::qWait(300);
        QVERIFY(!m_app->runner().isBusy());
        QCOMPARE(m_app->runner().runs().size(), runs);
        QCOMPARE(d->history().array_WAV_Files(), versions);
        QSignalSpy loaded(d, &Document::loaded);
        d->transportActions().OnToolbarStop();
        QVERIFY(loaded.wait(20000));
        QVERIFY(gui::waitIdle(*m_app));
        QVERIFY(QFile::exists(d->track().s_WAV_File_Path));
        QCOMPARE(d->history().array_WAV_Files(), QStringList({d->track().s_WAV_File_Path}));
        QVERIFY(gui::closeDocument(d)); // its versions are not exported
    }

    void cleanupTestCase() {
        if (m_app)
            QVERIFY(gui::waitIdle(*m_app));
    }
};

QTEST_MAIN(tst_NothingLost)
#include "tst_nothinglost.moc"
