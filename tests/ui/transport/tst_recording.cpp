#include "application/AppDelegate.h"
#include "document/Document.h"
#include "document/WaveformPlot.h"
#include "plans/AudioChecks.h"
#include "plans/Plan.h"
#include "plans/PlanRunner.h"
#include "session/WorkFolder.h"
#include "support/Fixtures.h"
#include "support/Gui.h"
#include "support/Listening.h"
#include "timeline/View_Audio_Wave.h"
#include "timeline/View_Time_Rule.h"
#include "transport/TransportRules.h"

#include <QAction>
#include <QApplication>
#include <QAudioDevice>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QMediaDevices>
#include <QMenu>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QStorageInfo>
#include <QTemporaryDir>
#include <QTest>

namespace {
QString buttons(Document* d) {
    QStringList cells;
    for (QAction* b :
         {d->btnPlay, d->btnRecord, d->btnPause, d->btnStop, d->btnSoundPreferences, d->btnZoomPlus,
          d->btnZoomMinus, d->btnSave, d->btnTools, d->btnCopy, d->btnCut, d->btnDelete})
        cells << (b->isEnabled() ? "on" : "off");
    return cells.join(' ');
}

// The microphone of the private server is the null sink's monitor, remapped.
void removeTheMicrophone() {
    QString modules;
    fixtures::run("pactl", {"list", "short", "modules"}, &modules);
    for (const QString& line : modules.split('\n'))
        if (line.contains("module-remap-source"))
            fixtures::run("pactl", {"unload-module", line.section('\t', 0, 0)});
}
void bringBackTheMicrophone() {
    fixtures::run("pactl", {"load-module", "module-remap-source", "master=nullsink.monitor",
                            "source_name=mic", "source_properties=device.description=Mic"});
    fixtures::run("pactl", {"set-default-source", "mic"});
}
// A small disk mounted for one test, and the application's work folder on it
// until the test ends.
struct SmallWorkFolder {
    fixtures::Mount disk;
    AppDelegate& app;
    QString was;
    SmallWorkFolder(AppDelegate& a, const QString& path, const QString& options)
        : disk(path, options), app(a), was(a.session().s_Output_Folder) {
        app.session().s_Output_Folder = disk.folder;
    }
    ~SmallWorkFolder() { app.session().s_Output_Folder = was; }
    SmallWorkFolder(const SmallWorkFolder&) = delete;
    SmallWorkFolder& operator=(const SmallWorkFolder&) = delete;
};
} // namespace

// Recording from the private audio server's microphone, which hears whatever
// is played into its null sink.
class tst_Recording : public QObject {
    Q_OBJECT
    QTemporaryDir m_root;
    std::unique_ptr<AppDelegate> m_app;
    QString m_tone;
    QProcess m_player; // the sound the microphone hears

    Document* open(const QString& path) { return gui::openInNewWindow(*m_app, path); }

    // Plays a steady 1 kHz tone into the sink until the test ends.
    void playIntoTheMicrophone() {
        m_player.start("paplay", {"--device=nullsink", m_tone});
        QVERIFY(m_player.waitForStarted(5000));
        QVERIFY2(!listening::hear(200).empty(), "the tone does not reach the sink");
    }

    bool finish(Document* d) {
        QSignalSpy loaded(d, &Document::loaded);
        d->transportActions().OnToolbarStop();
        return loaded.wait(20000) && gui::waitIdle(*m_app);
    }

private slots:
    void initTestCase() {
        m_app = gui::startApplication(m_root.filePath("home"));
        QVERIFY(m_app && gui::waitIdle(*m_app));
        m_tone = m_root.filePath("tone.wav");
        fixtures::makeTone(m_tone, 60, 1000, 0.5);
        QTRY_VERIFY_WITH_TIMEOUT(!QMediaDevices::defaultAudioInput().isNull(), 5000);
    }
    void cleanup() {
        m_player.kill();
        m_player.waitForFinished();
        for (Document* d : m_app->documents())
            delete d;
        QVERIFY(gui::waitIdle(*m_app));
        if (QMediaDevices::audioInputs().isEmpty())
            bringBackTheMicrophone();
        QTRY_VERIFY_WITH_TIMEOUT(!QMediaDevices::defaultAudioInput().isNull(), 5000);
        if (!QFile::exists(m_app->session().sSilenceWavPath))
            fixtures::run("sox", {"-n", "-r", "44100", "-c", "2", m_app->session().sSilenceWavPath, "trim",
                                  "0.0", "60.0"});
    }

    void recordPauseRecordStopMakesOneTake() {
        Document* d = open(m_tone);
        QVERIFY(d);
        const QString previous = d->track().s_WAV_File_Path;
        QVERIFY(previous.startsWith(m_app->session().s_Output_Folder));
        playIntoTheMicrophone();

        // The take lasts as long as the editor recorded, by the clock; the
        // paused second in the middle is not in it.
        QElapsedTimer recording;
        recording.start();
        d->transportActions().OnToolbarRecord();
        QCOMPARE(d->transportActions().m_RecordStatus, 1u);
        QCOMPARE(buttons(d), QString("off off on on off off off off off on on on"));
        QVERIFY(d->viewAudioPlot->b_Recording);
        const QString take = d->transportActions().s_Sound_File_Source;
        QCOMPARE(QFileInfo(take).path(), m_app->session().s_Output_Folder);
        QVERIFY(QFileInfo(take).fileName().contains(QRegularExpression("^\\d{4}(-\\d\\d){5}\\.wav$")));
        // The overlay is black and the plot shows the live input.
        const auto loudest = [d] {
            const std::vector<float>& live = d->audioPlot->liveBuffer();
            return live.empty() ? 0.0f : *std::max_element(live.begin(), live.end());
        };
        QTRY_VERIFY_WITH_TIMEOUT(d->audioPlot->showsLiveInput() && loudest() > 0.3f, 5000);
        const QImage overlay = d->viewAudioPlot->grab().toImage();
        QCOMPARE(overlay.pixelColor(overlay.width() / 2, 5), QColor(Qt::black));
        QTest::qWait(1000);

        // Playing is refused while recording, and while the recording is paused.
        d->transportActions().OnPopupMenuPlayFromStart();
        QCOMPARE(d->transportActions().m_RecordStatus, 1u);
        QVERIFY(!d->transportActions().sound);
        d->transportActions().OnToolbarPause();
        double recordedSeconds = double(recording.elapsed()) / 1000;
        QCOMPARE(d->transportActions().m_RecordStatus, 2u);
        QCOMPARE(buttons(d), QString("off on off on off off off off off on on on"));
        d->transportActions().OnToolbarPause(); // ignored
        d->transportActions().OnPopupMenuPlaySelection();
        d->transportActions().OnToolbarPlay();
        QCOMPARE(d->transportActions().m_RecordStatus, 2u);
        QVERIFY(!d->transportActions().sound);
        QTest::qWait(1000); // not recorded

        recording.restart();
        d->transportActions().OnToolbarRecord();
        QCOMPARE(d->transportActions().m_RecordStatus, 1u);
        QCOMPARE(d->transportActions().s_Sound_File_Source, take);
        QCOMPARE(buttons(d), QString("off off on on off off off off off on on on"));
        QTest::qWait(1000);
        recordedSeconds += double(recording.elapsed()) / 1000;
        QVERIFY(finish(d));

        QCOMPARE(d->transportActions().m_RecordStatus, 0u);
        QCOMPARE(buttons(d), QString("on on off off on on on on on on on on"));
        QVERIFY(!d->viewAudioPlot->b_Recording);
        QCOMPARE(d->track().s_WAV_File_Path, take);
        QCOMPARE(d->track().s_File_Path, take);
        QCOMPARE(d->windowTitle(), QFileInfo(take).fileName());
        QCOMPARE(d->track().s_WAV_File_URL, "file://" + take);
        QCOMPARE(d->history().array_WAV_Files(), QStringList({take}));
        QCOMPARE(d->history().u_array_WAV_Files_Length(), 1u);
        QCOMPARE(d->history().u_array_WAV_Files_Position(), 1u);
        QCOMPARE(d->history().versions().first().label, QString("Recorded"));
        QVERIFY(!QFile::exists(previous)); // the old history's files are gone

        const fixtures::WavInfo info = fixtures::wavInfo(take);
        QVERIFY(info.isWorkingWav());
        QVERIFY2(recordedSeconds >= 2 && info.seconds() > recordedSeconds - 0.4 &&
                     info.seconds() < recordedSeconds + 0.6,
                 qPrintable(QString("%1 s recorded in %2 s").arg(info.seconds()).arg(recordedSeconds)));
        const std::vector<short> recorded = fixtures::samples(take);
        QVERIFY2(listening::level(recorded) > 0.25, qPrintable(QString::number(listening::level(recorded))));
        const double pitch = listening::frequency(recorded);
        QVERIFY2(std::abs(pitch - 1000) < 15, qPrintable(QString::number(pitch)));
        QCOMPARE(d->track().i_Audio_Duration_Seconds, qint64(info.seconds()));
        QVERIFY(!d->track().s_File_Size.isEmpty());
        QTRY_VERIFY(!d->audioPlot->showsLiveInput() && !d->audioPlot->points().empty());

        // Undo has nothing to go back to.
        d->Operation_Undo();
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(d->track().s_WAV_File_Path, take);
        QVERIFY(QFile::exists(take));
    }

    void stopRightAfterRecordStillGivesATrack() {
        Document* d = open(m_tone);
        QVERIFY(d);
        d->show();
        d->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(d));
        QTest::keyClick(d, Qt::Key_R); // Record's key
        QCOMPARE(d->transportActions().m_RecordStatus, 1u);
        QVERIFY(finish(d));
        QVERIFY(fixtures::wavInfo(d->track().s_WAV_File_Path).isWorkingWav());
        QVERIFY(fixtures::wavInfo(d->track().s_WAV_File_Path).seconds() < 1);
        QCOMPARE(d->track().i_Audio_Duration_Seconds, 0);
        QCOMPARE(d->history().u_array_WAV_Files_Length(), 1u);
        // The ruler spreads those 0 seconds over its width: every label it
        // draws reads 00:00:00 (and it no longer says no audio is loaded).
        QVERIFY(d->viewTimeRule->b_Audio_Loaded);
        QCOMPARE(d->viewTimeRule->i_Audio_Duration_Seconds, 0);
        const QStringList labels = d->viewTimeRule->labels();
        QVERIFY2(labels.size() >= d->viewTimeRule->width() / 81, qPrintable(labels.join(' ')));
        QCOMPARE(labels, QStringList(labels.size(), "00:00:00"));
    }

    // Another window's result of the take's second, made while it records,
    // neither replaces the take nor is replaced by it: the take, recorded
    // beside it, gets the next free name when it stops.
    void aFileMadeUnderTheTakesNameWhileItRecordsIsKept() {
        Document* d = open(m_tone);
        QVERIFY(d);
        playIntoTheMicrophone();
        d->transportActions().OnToolbarRecord();
        QCOMPARE(d->transportActions().m_RecordStatus, 1u);
        const QString named = d->transportActions().s_Sound_File_Source;
        QTest::qWait(300);
        fixtures::makeTone(named, 2, 440); // as a same-second result would be
        const std::vector<short> other = fixtures::samples(named);
        QTest::qWait(1700);
        QVERIFY(finish(d));
        const QString take = d->track().s_WAV_File_Path;
        QVERIFY(take != named);
        QCOMPARE(QFileInfo(take).path(), m_app->session().s_Output_Folder);
        QVERIFY(QFileInfo(take).fileName().contains(QRegularExpression("^\\d{4}(-\\d\\d){5}\\.wav$")));
        QCOMPARE(d->history().array_WAV_Files(), QStringList({take}));
        QCOMPARE(fixtures::samples(named), other); // untouched
        // All of the two seconds it recorded, not only what the input held at Stop.
        const std::vector<short> recorded = fixtures::samples(take);
        QVERIFY2(std::abs(listening::frequency(recorded) - 1000) < 15 &&
                     fixtures::wavInfo(take).seconds() > 1.5,
                 qPrintable(QString("the take is not what was recorded: %1 Hz over %2 s")
                                .arg(listening::frequency(recorded))
                                .arg(fixtures::wavInfo(take).seconds())));
        QVERIFY(QDir(m_app->session().s_Output_Folder)
                    .entryList({".recording-*"}, QDir::Hidden | QDir::Files)
                    .isEmpty());
    }

    // A recording makes the track when it stops: a load still on its way is
    // dropped, and nothing opens, reloads or exports into the window meanwhile.
    void nothingLoadsIntoARecordingWindow() {
        Document* d = open(m_tone);
        QVERIFY(d);
        const QString before = d->track().s_WAV_File_Path;
        // The runner is busy for a second, so the silence track's load waits.
        m_app->runner().submit(
            {{step::Run{Tool::FFmpeg, {"-re", "-f", "lavfi", "-i", "anullsrc=d=1", "-f", "null", "-"}}}},
            nullptr, {});
        d->Open_And_Select_Silence_File();
        d->transportActions().OnToolbarRecord();
        QCOMPARE(d->transportActions().m_RecordStatus, 1u);
        const QString recording = buttons(d);
        QCOMPARE(recording, QString("off off on on off off off off off on on on"));
        QVERIFY(!d->btnOpen->isEnabled());
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(d->transportActions().m_RecordStatus, 1u);
        QCOMPARE(buttons(d), recording); // Pause and Stop still work
        QVERIFY(!d->btnOpen->isEnabled());
        QVERIFY(!d->b_Audio_Loaded || d->history().array_WAV_Files() == QStringList({before}));

        const auto dialog = gui::answerFileDialog({});
        d->OnToolbarOpen();
        d->Refresh_Audio_Plot(Qt::green);
        d->exportActions().Operation_Save();
        QTest::qWait(400); // the save command's wait is 0.1 s
        QVERIFY(!dialog->shown);
        dialog->stop = true;
        QVERIFY(!QApplication::activeModalWidget());
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(d->transportActions().m_RecordStatus, 1u);

        const QString take = d->transportActions().s_Sound_File_Source;
        QVERIFY(finish(d));
        QCOMPARE(d->track().s_WAV_File_Path, take);
        QCOMPARE(d->history().array_WAV_Files(), QStringList({take}));
        QCOMPARE(d->windowTitle(), QFileInfo(take).fileName());
        QVERIFY(d->btnOpen->isEnabled());
    }

    // Record pressed in a window still starting up: its start-up load never
    // comes, and the take is its first track.
    void aWindowThatRecordsBeforeItHasLoadedKeepsRecording() {
        m_app->u_Open_New_Document = 0;
        Document* d = m_app->newDocument();
        QVERIFY(d);
        QVERIFY(!d->btnOpen->isEnabled()); // until the start-up load begins
        QVERIFY(!d->btnPlay->isEnabled());
        QVERIFY(d->btnRecord->isEnabled());
        d->transportActions().OnToolbarRecord();
        QCOMPARE(d->transportActions().m_RecordStatus, 1u);
        QTest::qWait(500);
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(d->transportActions().m_RecordStatus, 1u);
        // Pause and Stop, as in any recording; nothing to copy yet.
        QCOMPARE(buttons(d), QString("off off on on off off off off off off off off"));
        QVERIFY(!d->b_Audio_Loaded);
        const QString take = d->transportActions().s_Sound_File_Source;
        QVERIFY(finish(d));
        QCOMPARE(d->track().s_WAV_File_Path, take);
        QCOMPARE(d->windowTitle(), QFileInfo(take).fileName());
        QVERIFY(d->b_Audio_Loaded);
        QVERIFY(d->btnOpen->isEnabled());
    }

    // Two windows recording in the same second each keep their own take.
    void twoWindowsRecordingAtOnceKeepTwoTakes() {
        Document* first = open(m_tone);
        Document* second = open(m_tone);
        QVERIFY(first && second);
        playIntoTheMicrophone();
        first->transportActions().OnToolbarRecord();
        second->transportActions().OnToolbarRecord();
        QCOMPARE(first->transportActions().m_RecordStatus, 1u);
        QCOMPARE(second->transportActions().m_RecordStatus, 1u);
        QTest::qWait(600);
        QVERIFY(finish(first));
        QTest::qWait(600);
        QVERIFY(finish(second));
        QVERIFY(first->track().s_WAV_File_Path != second->track().s_WAV_File_Path);
        for (Document* d : {first, second}) {
            QCOMPARE(d->history().array_WAV_Files(), QStringList({d->track().s_WAV_File_Path}));
            QCOMPARE(d->windowTitle(), QFileInfo(d->track().s_WAV_File_Path).fileName());
            const fixtures::WavInfo take = fixtures::wavInfo(d->track().s_WAV_File_Path);
            QVERIFY(take.isWorkingWav());
            QVERIFY2(take.seconds() > 0.4, qPrintable(QString::number(take.seconds())));
            QVERIFY(std::abs(listening::frequency(fixtures::samples(d->track().s_WAV_File_Path)) - 1000) <
                    15);
        }
        // The second take went on after the first had stopped: it is the longer.
        QVERIFY(fixtures::wavInfo(second->track().s_WAV_File_Path).seconds() >
                fixtures::wavInfo(first->track().s_WAV_File_Path).seconds() + 0.3);
        QVERIFY(QDir(m_app->session().s_Output_Folder)
                    .entryList({".recording-*"}, QDir::Hidden | QDir::Files)
                    .isEmpty());
    }

    // A window that recorded before it ever held a track, and whose take is
    // then lost, shows the silence track rather than stay empty.
    void aFirstTakeThatIsLostLeavesTheSilenceTrack() {
        m_app->u_Open_New_Document = 0;
        Document* d = m_app->newDocument();
        QVERIFY(d);
        d->transportActions().OnToolbarRecord();
        QCOMPARE(d->transportActions().m_RecordStatus, 1u);
        QTest::qWait(500);
        const QStringList growing =
            QDir(m_app->session().s_Output_Folder).entryList({".recording-*"}, QDir::Hidden | QDir::Files);
        QCOMPARE(growing.size(), 1);
        QVERIFY(QFile::remove(QDir(m_app->session().s_Output_Folder).filePath(growing.first())));
        const auto alert = gui::answerAlert();
        QSignalSpy loaded(d, &Document::loaded);
        d->transportActions().OnToolbarStop();
        QVERIFY(alert->shown);
        QCOMPARE(alert->informativeText.section('\n', 0, 0),
                 QString("The recording produced no usable audio."));
        QVERIFY(loaded.wait(20000));
        QCOMPARE(d->transportActions().m_RecordStatus, 0u);
        QCOMPARE(d->track().s_WAV_File_Path, m_app->session().sSilenceWavPath);
        QCOMPARE(d->windowTitle(), QString("silence.wav"));
        QCOMPARE(d->history().array_WAV_Files(), QStringList({m_app->session().sSilenceWavPath}));
        QCOMPARE(d->track().i_Audio_Duration_Seconds, 60);
    }

    void withoutAnInputRecordSaysSoAndChangesNothing() {
        Document* d = open(m_tone);
        QVERIFY(d);
        removeTheMicrophone();
        QTRY_VERIFY_WITH_TIMEOUT(QMediaDevices::audioInputs().isEmpty(), 5000);
        const QString before = buttons(d), current = d->track().s_WAV_File_Path;
        const QStringList files = QDir(m_app->session().s_Output_Folder).entryList(QDir::Files);
        const auto alert = gui::answerAlert();
        d->transportActions().OnToolbarRecord();
        QVERIFY(alert->shown);
        QCOMPARE(alert->text, QString("Error"));
        QCOMPARE(alert->informativeText,
                 QString("Could not start recording. Change record settings and try again."));
        QCOMPARE(alert->buttons, QStringList({"Close"}));
        QCOMPARE(d->transportActions().m_RecordStatus, 0u);
        QCOMPARE(buttons(d), before);
        QCOMPARE(d->track().s_WAV_File_Path, current);
        QVERIFY(!d->viewAudioPlot->b_Recording);
        QCOMPARE(QDir(m_app->session().s_Output_Folder).entryList(QDir::Files), files);
    }

    void losingTheInputWhileRecordingKeepsWhatWasRecorded() {
        Document* d = open(m_tone);
        QVERIFY(d);
        playIntoTheMicrophone();
        d->transportActions().OnToolbarRecord();
        QCOMPARE(d->transportActions().m_RecordStatus, 1u);
        QTest::qWait(800);
        const auto alert = gui::answerAlert();
        QSignalSpy loaded(d, &Document::loaded);
        removeTheMicrophone();
        QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 10000);
        QVERIFY(alert->informativeText.contains("recording stopped"));
        QVERIFY(loaded.wait(20000) || loaded.count() > 0);
        QCOMPARE(d->transportActions().m_RecordStatus, 0u);
        QCOMPARE(d->history().array_WAV_Files(), QStringList({d->transportActions().s_Sound_File_Source}));
        QVERIFY(fixtures::wavInfo(d->track().s_WAV_File_Path).seconds() > 0.3);
    }

    void aRecordingStopsWhereTheWorkFolderWouldRunOutOfRoom() {
        Document* d = open(m_tone);
        QVERIFY(d);
        // A work folder of 50.7 MB: about four seconds past the 50 MB kept free.
        const SmallWorkFolder small(*m_app, m_root.filePath("small-work"), "size=49500k");
        QVERIFY2(small.disk.mounted, "the tests run as root and mount a small disk");
        const RecordingLimit limit = recordingLimit(small.disk.folder);
        QVERIFY(limit.byRoom && limit.frames > 44100 && limit.frames < 10 * 44100);
        playIntoTheMicrophone();
        const auto alert = gui::answerAlert();
        QSignalSpy loaded(d, &Document::loaded);
        d->transportActions().OnToolbarRecord();
        QCOMPARE(d->transportActions().m_RecordStatus, 1u);
        QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 30000);
        QCOMPARE(alert->informativeText, recordingLimitMessage(limit, small.disk.folder));
        QVERIFY(loaded.wait(20000) || loaded.count() > 0);
        QCOMPARE(d->transportActions().m_RecordStatus, 0u);
        QCOMPARE(d->history().array_WAV_Files(), QStringList({d->track().s_WAV_File_Path}));
        QCOMPARE(QFileInfo(d->track().s_WAV_File_Path).path(), small.disk.folder);
        QCOMPARE(fixtures::wavInfo(d->track().s_WAV_File_Path).frames, limit.frames);
        QVERIFY(fixtures::rms(d->track().s_WAV_File_Path, 1.0, 2.0) > 0.05); // the tone was taken
        delete d;
        QVERIFY(gui::waitIdle(*m_app));
    }

    void aDiskThatFillsWhileRecordingStopsItAndKeepsTheTake() {
        Document* d = open(m_tone);
        QVERIFY(d);
        const SmallWorkFolder small(*m_app, m_root.filePath("filling-work"), "size=60m");
        QVERIFY2(small.disk.mounted, "the tests run as root and mount a small disk");
        playIntoTheMicrophone();
        const auto alert = gui::answerAlert();
        QSignalSpy loaded(d, &Document::loaded);
        d->transportActions().OnToolbarRecord();
        QCOMPARE(d->transportActions().m_RecordStatus, 1u);
        QTest::qWait(1000);
        // Another program fills the disk but for a second's worth of audio.
        {
            QFile filler(small.disk.folder + "/other-program.bin");
            QVERIFY(filler.open(QIODevice::WriteOnly));
            const QByteArray block(1 << 20, 'x');
            while (QStorageInfo(small.disk.folder).bytesAvailable() > 2 * (1 << 20))
                QVERIFY(filler.write(block) == block.size());
        }
        QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 30000);
        QVERIFY2(alert->informativeText.startsWith("The recording stopped: what came in could no longer be "
                                                   "written to the work folder " +
                                                   small.disk.folder) &&
                     alert->informativeText.contains("The disk is full") &&
                     alert->informativeText.endsWith("What was recorded until then is kept as the track."),
                 qPrintable(alert->informativeText));
        QVERIFY(loaded.wait(20000) || loaded.count() > 0);
        QCOMPARE(d->transportActions().m_RecordStatus, 0u);
        const fixtures::WavInfo take = fixtures::wavInfo(d->track().s_WAV_File_Path);
        QVERIFY(take.ok && take.seconds() > 1.0);
        QCOMPARE(wavHeaderProblem(d->track().s_WAV_File_Path), QString());
        delete d;
        QVERIFY(gui::waitIdle(*m_app));
    }

    // The transport buttons pressed in any order, as fast as a user could (only
    // enabled buttons respond): the status stays one of the five and the
    // buttons always agree with it.
    void randomPressesKeepTheStateMachineWhole() {
        Document* d = open(m_tone);
        QVERIFY(d);
        playIntoTheMicrophone();
        QRandomGenerator random(221126);
        for (int i = 0; i < 300; ++i) {
            switch (random.bounded(6)) {
            case 0:
                d->btnRecord->trigger();
                break;
            case 1:
                d->btnPause->trigger();
                break;
            case 2:
                d->btnStop->trigger();
                break;
            case 3: // Play: resumes, or a choice of its menu
                if (d->btnPlay->isEnabled() && d->transportActions().m_RecordStatus != 4)
                    d->transportActions().popupMenuPlay->actions().at(random.bounded(3))->trigger();
                else
                    d->btnPlay->trigger();
                break;
            case 4:
                d->togglePlayback();
                break;
            default:
                QTest::qWait(random.bounded(30));
            }
            const quint64 s = d->transportActions().m_RecordStatus;
            QVERIFY2(s <= 4, qPrintable(QString::number(s)));
            const QString where = QString("press %1, status %2").arg(i).arg(s);
            QVERIFY2(d->btnPlay->isEnabled() == (s == 0 || s == 4), qPrintable(where));
            QVERIFY2(d->btnRecord->isEnabled() == (s == 0 || s == 2), qPrintable(where));
            QVERIFY2(d->btnPause->isEnabled() == (s == 1 || s == 3), qPrintable(where));
            QVERIFY2(d->btnStop->isEnabled() == (s != 0), qPrintable(where));
            QCOMPARE(d->viewAudioPlot->b_Recording, s == 1 || s == 2);
        }
        d->btnStop->trigger();
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(d->transportActions().m_RecordStatus, 0u);
        // Whatever was recorded last is the track, alone in its history.
        QCOMPARE(d->history().array_WAV_Files().size(), 1);
        QVERIFY(fixtures::wavInfo(d->track().s_WAV_File_Path).ok);
    }

    void recordingOverVersionsAsksFirst() {
        Document* d = open(m_tone);
        QVERIFY(d);
        for (float start : {10.0f, 50.0f}) { // two deletes in seconds of their own
            QTest::qWait(1100);
            d->track().f_Selection_Start = start;
            d->track().f_Selection_End = start + 5;
            QSignalSpy adopted(d, &Document::adopted);
            d->editingActions().Operation_Delete();
            QVERIFY(adopted.wait(20000));
        }
        QVERIFY(gui::waitIdle(*m_app));
        const QStringList versions = d->history().array_WAV_Files();
        QCOMPARE(versions.size(), 3);
        playIntoTheMicrophone();
        const auto pressR = [d] { // keys go to the active window, as for a user
            d->activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(d));
            QTest::keyClick(d, Qt::Key_R);
        };
        // R, answered Cancel: nothing is recorded and the versions stay.
        auto asked = gui::answerAlert("Cancel");
        pressR();
        QTRY_VERIFY_WITH_TIMEOUT(asked->shown, 5000);
        QCOMPARE(asked->text,
                 QString("Record into this window? Its 3 versions will be deleted when the take stops."));
        QCOMPARE(asked->buttons, QStringList({"Record", "Cancel"}));
        QTest::qWait(300);
        QCOMPARE(d->transportActions().m_RecordStatus, quint64(StatusIdle));
        QCOMPARE(d->history().array_WAV_Files(), versions);
        for (const QString& version : versions)
            QVERIFY(QFile::exists(version));
        QVERIFY(QDir(m_app->session().s_Output_Folder)
                    .entryList({".recording-*"}, QDir::Hidden | QDir::Files)
                    .isEmpty());
        // Answered Record, it records; the take is then the track, alone.
        asked = gui::answerAlert("Record");
        pressR();
        QTRY_COMPARE_WITH_TIMEOUT(d->transportActions().m_RecordStatus, quint64(StatusRecording), 5000);
        QVERIFY(asked->shown);
        QTest::qWait(500);
        QVERIFY(finish(d));
        QCOMPARE(d->history().array_WAV_Files().size(), 1);
        // A window of one version records at once, without a question.
        asked = gui::answerAlert();
        pressR();
        QTRY_COMPARE_WITH_TIMEOUT(d->transportActions().m_RecordStatus, quint64(StatusRecording), 5000);
        QTest::qWait(300);
        QVERIFY(!asked->shown);
        asked->stop = true;
        QVERIFY(finish(d));
    }

    void soundSettingsOpenTheMixer() {
        Document* d = open(m_tone);
        QVERIFY(d);
        const QByteArray path = qgetenv("PATH");
        QTemporaryDir bin;
        const QString called = bin.filePath("called");
        QFile mixer(bin.filePath("pavucontrol"));
        QVERIFY(mixer.open(QIODevice::WriteOnly));
        mixer.write(QString("#!/bin/sh\necho \"$@\" > '%1'\n").arg(called).toUtf8());
        mixer.close();
        mixer.setPermissions(mixer.permissions() | QFileDevice::ExeUser);
        qputenv("PATH", bin.path().toUtf8());
        d->transportActions().OnToolbarSoundPreferences();
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(called), 5000);

        QVERIFY(QFile::remove(mixer.fileName()));
        const auto alert = gui::answerAlert();
        d->transportActions().OnToolbarSoundPreferences();
        qputenv("PATH", path);
        QVERIFY(alert->shown);
        QVERIFY2(alert->informativeText.contains("pavucontrol"), qPrintable(alert->informativeText));
    }
};

QTEST_MAIN(tst_Recording)
#include "tst_recording.moc"
