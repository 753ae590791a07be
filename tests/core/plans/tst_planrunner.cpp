#include "effects/EffectCatalogue.h"
#include "plans/AudioChecks.h"
#include "plans/PlanRunner.h"
#include "support/Fixtures.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <csignal>

namespace {
ToolPaths realTools() {
    return {QStandardPaths::findExecutable("sox"), QStandardPaths::findExecutable("ffmpeg")};
}

// A stand-in tool named `name` in its own folder, running a shell script.
QString standIn(const QString& folder, const QString& name, const QByteArray& script) {
    QDir().mkpath(folder);
    const QString path = folder + "/" + name;
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return {};
    file.write("#!/bin/sh\n" + script);
    file.close();
    file.setPermissions(file.permissions() | QFileDevice::ExeOwner);
    return path;
}

void writeFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QString readAll(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}
} // namespace

class tst_PlanRunner : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;

private slots:
    void queuedPlansRunInOrderWithoutOverlap() {
        // Stand-in tools that log their start and end around a pause.
        const QString log = m_dir.filePath("order.log");
        const QString script = m_dir.filePath("logging-tool.sh");
        QFile file(script);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\necho \"start $1\" >> \"$2\"\nsleep 0.3\necho \"end $1\" >> \"$2\"\n");
        file.close();
        QVERIFY(file.setPermissions(file.permissions() | QFileDevice::ExeOwner));

        PlanRunner runner({script, script});
        QStringList completions;
        runner.submit({{step::Run{Tool::Sox, {"a1", log}}, step::Run{Tool::FFmpeg, {"a2", log}}}}, nullptr,
                      [&](const PlanOutcome& o) { completions << QString("A:%1").arg(o.runs.size()); });
        runner.submit({{step::Run{Tool::Sox, {"b1", log}}}}, nullptr,
                      [&](const PlanOutcome& o) { completions << QString("B:%1").arg(o.runs.size()); });
        QTRY_COMPARE_WITH_TIMEOUT(completions.size(), 2, 10000);
        QCOMPARE(completions, QStringList({"A:2", "B:1"}));
        QCOMPARE(readAll(log), QString("start a1\nend a1\nstart a2\nend a2\nstart b1\nend b1\n"));
        QCOMPARE(runner.runs().size(), 3);
        QCOMPARE(runner.runs()[2].arguments.first(), QString("b1"));
    }

    void aLaterPlanSeesTheFilesOfAnEarlierOne() {
        // The second plan requires the file the first one writes in real time.
        PlanRunner runner(realTools());
        const QString made = m_dir.filePath("made-in-real-time.wav");
        bool firstDone = false;
        PlanOutcome second;
        runner.submit({{step::Run{Tool::FFmpeg,
                                  {"-re", "-f", "lavfi", "-i", "anullsrc=r=44100:cl=stereo:d=1", "-acodec",
                                   "pcm_s16le", made}}}},
                      nullptr, [&](const PlanOutcome&) { firstDone = true; });
        runner.submit({{step::RequireFile{made, "missing"}, step::ProbeDuration{made}}}, nullptr,
                      [&](const PlanOutcome& o) {
                          QVERIFY(firstDone);
                          second = o;
                      });
        QTRY_VERIFY_WITH_TIMEOUT(second.seconds.has_value(), 15000);
        QVERIFY(second.ok);
        QCOMPARE(*second.seconds, qint64(1));
    }

    void busyAndProgressAreReported() {
        PlanRunner runner(realTools());
        QSignalSpy busy(&runner, &PlanRunner::busyChanged);
        QSignalSpy progress(&runner, &PlanRunner::progress);
        const QString out = m_dir.filePath("busy.wav");
        bool done = false;
        runner.submit({{step::DeleteFile{out},
                        step::Run{Tool::Sox, {"-n", "-r", "44100", "-c", "2", out, "trim", "0", "1"}},
                        step::ProbeDuration{out}}},
                      nullptr, [&](const PlanOutcome&) {
                          QVERIFY(runner.isBusy());
                          done = true;
                      });
        QVERIFY(runner.isBusy());
        QTRY_VERIFY_WITH_TIMEOUT(done, 10000);
        QTRY_COMPARE(busy.size(), 2);
        QCOMPARE(busy[0][0].toBool(), true);
        QCOMPARE(busy[1][0].toBool(), false);
        QVERIFY(!runner.isBusy());
        QCOMPARE(progress.size(), 3);
        QCOMPARE(progress[0][0].toString(), QString("Running sox (step 1 of 2)…"));
        QCOMPARE(progress[1][0].toString(), QString("Running ffmpeg (step 2 of 2)…"));
        QCOMPARE(progress[2][0].toString(), QString()); // the plan's end clears the text
    }

    void aRunWithAnExpectedOutputTellsTheShareWrittenWhileItGoes() {
        // ffmpeg writes 2 s of silence at the pace of playback: 176400 bytes a second.
        PlanRunner runner(realTools());
        QSignalSpy progress(&runner, &PlanRunner::progress);
        const QString out = m_dir.filePath("growing.wav");
        bool done = false;
        runner.submit({{step::Run{Tool::FFmpeg,
                                  {"-re", "-f", "lavfi", "-i", "anullsrc=r=44100:cl=stereo:d=2", "-c:a",
                                   "pcm_s16le", out},
                                  out,
                                  44 + 2 * 176400}}},
                      nullptr, [&](const PlanOutcome&) { done = true; });
        QTRY_VERIFY_WITH_TIMEOUT(done, 15000);
        QList<int> shares;
        static const QRegularExpression percent("^Running ffmpeg \\(step 1 of 1\\)… (\\d+) %$");
        for (const QList<QVariant>& signal : std::as_const(progress))
            if (const auto match = percent.match(signal[0].toString()); match.hasMatch())
                shares.append(match.captured(1).toInt());
        QCOMPARE(progress[0][0].toString(), QString("Running ffmpeg (step 1 of 1)…"));
        QVERIFY2(shares.size() >= 4, qPrintable(QString::number(shares.size())));
        QVERIFY(std::is_sorted(shares.begin(), shares.end()));
        QVERIFY(shares.first() < 50 && shares.last() >= 50 && shares.last() <= 99);
    }

    void aFailedRequirementEndsThePlanWithItsAlert() {
        PlanRunner runner(realTools());
        PlanOutcome outcome;
        bool done = false;
        const QString nowhere = m_dir.filePath("never-written.wav");
        runner.submit({{step::RequireFile{nowhere, "Nothing there."}, step::ProbeDuration{nowhere}}}, nullptr,
                      [&](const PlanOutcome& o) {
                          outcome = o;
                          done = true;
                      });
        QTRY_VERIFY(done);
        QVERIFY(!outcome.ok);
        QCOMPARE(outcome.alert, QString("Nothing there."));
        QVERIFY(outcome.runs.isEmpty());
    }

    void aDestroyedReceiverIsNotCalledBack() {
        PlanRunner runner(realTools());
        auto* receiver = new QObject;
        bool called = false;
        runner.submit({{step::ProbeDuration{m_dir.filePath("x.wav")}}}, receiver,
                      [&](const PlanOutcome&) { called = true; });
        delete receiver;
        QTRY_VERIFY(!runner.isBusy());
        QVERIFY(!called);
        QCOMPARE(runner.runs().size(), 1);
    }

    void aKilledToolEndsThePlanAndTakesBackWhatItWrote_data() {
        QTest::addColumn<int>("signal");
        QTest::newRow("SIGKILL") << SIGKILL;
        QTest::newRow("SIGTERM") << SIGTERM;
    }
    void aKilledToolEndsThePlanAndTakesBackWhatItWrote() {
        QFETCH(int, signal);
        // The stand-in sox writes half a result, says so and works on; its
        // process is found by its id and killed, as a crash or the OOM killer would.
        const QString folder = m_dir.filePath(QString("killed-%1").arg(signal));
        const QString sox =
            standIn(folder + "/bin", "sox", "echo half > \"$2\"; echo working; exec sleep 30\n");
        const QString input = folder + "/input.wav", result = folder + "/result.wav",
                      earlier = folder + "/earlier.wav";
        writeFile(input, "the track");
        writeFile(earlier, "made before the plan");
        PlanRunner runner({sox, sox});
        std::optional<PlanOutcome> outcome;
        runner.submit({{step::DeleteFile{earlier}, step::Run{Tool::Sox, {input, result}},
                        step::RequireFile{result, "no result"}, step::ProbeDuration{result}}},
                      nullptr, [&](const PlanOutcome& o) { outcome = o; });
        QTRY_VERIFY(runner.runningProcessId() != 0 && QFile::exists(result));
        QCOMPARE(::kill(pid_t(runner.runningProcessId()), signal), 0);
        QTRY_VERIFY_WITH_TIMEOUT(outcome.has_value(), 10000);
        QVERIFY(!outcome->ok);
        QVERIFY(!outcome->cancelled);
        QCOMPARE(outcome->alert, QString("sox was stopped by signal %1 before it finished.").arg(signal));
        QCOMPARE(outcome->runs.size(), 1); // nothing ran after it
        QCOMPARE(outcome->runs[0].end, RunEnd::Crashed);
        QCOMPARE(outcome->runs[0].signal, signal);
        QVERIFY(!QFile::exists(result)); // written by the plan: taken back
        QCOMPARE(readAll(input), QString("the track"));
        // Deleted before the run, as planned, and put back as the plan failed:
        // it may be another version's file of the same second.
        QCOMPARE(readAll(earlier), QString("made before the plan"));
        QVERIFY(QDir(folder).entryList(QDir::Hidden | QDir::Files).filter("replaced").isEmpty());
        QCOMPARE(runner.runningProcessId(), 0);
    }

    void aToolThatCannotStartEndsThePlan() {
        const QString missing = m_dir.filePath("no-such-dir/ffmpeg");
        PlanRunner runner({missing, missing});
        std::optional<PlanOutcome> outcome;
        const QString out = m_dir.filePath("never.wav");
        runner.submit({{step::Run{Tool::FFmpeg, {"-i", "x", out}}, step::ProbeDuration{out}}}, nullptr,
                      [&](const PlanOutcome& o) { outcome = o; });
        QTRY_VERIFY(outcome.has_value());
        QVERIFY(!outcome->ok);
        QVERIFY2(outcome->alert.startsWith("ffmpeg could not be started: "), qPrintable(outcome->alert));
        QCOMPARE(outcome->runs.size(), 1);
        QCOMPARE(outcome->runs[0].end, RunEnd::NotStarted);
    }

    void cancelStopsTheRunningToolAtOnceAndSkipsTheRest() {
        const QString folder = m_dir.filePath("cancel");
        const QString log = folder + "/log.txt";
        const QString sox =
            standIn(folder + "/bin", "sox", "echo \"$1\" >> \"$3\"; echo part > \"$2\"; exec sleep 30\n");
        const QString first = folder + "/first.wav", second = folder + "/second.wav",
                      kept = folder + "/kept.wav";
        writeFile(kept, "an earlier version");
        writeFile(log, "");
        PlanRunner runner({sox, sox});
        QSignalSpy progress(&runner, &PlanRunner::progress);
        std::optional<PlanOutcome> outcome;
        bool laterPlanRan = false;
        runner.submit({{step::Run{Tool::Sox, {"one", first, log}}, step::Run{Tool::Sox, {"two", second, log}},
                        step::ProbeDuration{kept}}},
                      nullptr, [&](const PlanOutcome& o) { outcome = o; });
        runner.submit({{step::DeleteFile{folder + "/nothing"}}}, nullptr,
                      [&](const PlanOutcome& o) { laterPlanRan = o.ok; });
        QTRY_VERIFY(runner.runningProcessId() != 0 && QFile::exists(first));
        QElapsedTimer clock;
        clock.start();
        runner.cancel();
        QTRY_VERIFY_WITH_TIMEOUT(outcome.has_value(), 10000);
        QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
        QVERIFY(!outcome->ok);
        QVERIFY(outcome->cancelled);
        QVERIFY(outcome->alert.isEmpty());
        QCOMPARE(outcome->runs.size(), 1);
        QCOMPARE(outcome->runs[0].end, RunEnd::Cancelled);
        QCOMPARE(readAll(log), QString("one\n")); // the second run never started
        QVERIFY(!QFile::exists(first));
        QVERIFY(QFile::exists(kept));
        QStringList texts;
        for (const QList<QVariant>& signal : std::as_const(progress))
            texts << signal[0].toString();
        QVERIFY2(texts.contains("Cancelled"), qPrintable(texts.join(" | ")));
        QTRY_VERIFY(laterPlanRan); // plans queued behind a cancelled one still run
        QVERIFY(!runner.isBusy());
        runner.cancel(); // with nothing running, nothing happens
    }

    void withdrawingTakesBackOneReceiversPlansOnly() {
        const QString folder = m_dir.filePath("withdraw");
        const QString sox = standIn(folder + "/bin", "sox", "echo part > \"$1\"; exec sleep 30\n");
        PlanRunner runner({sox, sox});
        QObject preview, other;
        QStringList ended; // the plans called back, in order, with how they ended
        const auto plan = [&](const QString& name, QObject* receiver) {
            runner.submit({{step::Run{Tool::Sox, {folder + "/" + name + ".wav"}}}}, receiver,
                          [&ended, name](const PlanOutcome& o) {
                              ended << name + (o.cancelled ? " cancelled" : o.ok ? " ok" : " failed");
                          });
        };
        plan("running", &preview);
        plan("queued", &preview);
        plan("another's", &other);
        plan("queued later", &preview);
        QTRY_VERIFY(runner.runningProcessId() != 0 && QFile::exists(folder + "/running.wav"));
        runner.withdraw(&preview);
        QTRY_COMPARE(ended, QStringList({"running cancelled"}));
        QVERIFY(!QFile::exists(folder + "/running.wav")); // what it wrote is taken back
        // Only the other receiver's plan is left, and it runs.
        QTRY_VERIFY(runner.runningProcessId() != 0 && QFile::exists(folder + "/another's.wav"));
        runner.withdraw(&preview); // nothing of it is left: nothing happens
        QVERIFY(runner.isBusy());
        runner.withdraw(&other);
        QTRY_COMPARE(ended, QStringList({"running cancelled", "another's cancelled"}));
        QTRY_VERIFY(!runner.isBusy());
        QVERIFY(!QFile::exists(folder + "/queued.wav"));
        QVERIFY(!QFile::exists(folder + "/queued later.wav"));
    }

    void aResultThatIsNotAudioIsRefusedQuotingTheTool_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("random bytes") << QByteArray::fromHex("8a3f00c1d2e5ffee0102030405060708090a0b0c");
        QTest::newRow("truncated header") << QByteArray("RIFF\x24\x00\x00\x00WAVEfmt ", 16);
    }
    void aResultThatIsNotAudioIsRefusedQuotingTheTool() {
        QFETCH(QByteArray, bytes);
        const QString folder =
            m_dir.filePath("unusable-" + QString(QTest::currentDataTag()).replace(' ', '-'));
        const QString stub = folder + "/stub.bin";
        QDir().mkpath(folder);
        writeFile(stub, bytes);
        const QString ffmpeg = standIn(folder + "/bin", "ffmpeg",
                                       "cp \"$1\" \"$2\"\necho 'Stream #0:0: Audio: pcm_s16le'\n"
                                       "echo '[wav @ 0x1] Invalid data found when processing input'\necho\n");
        const QString result = folder + "/result.wav";
        PlanRunner runner({ffmpeg, ffmpeg});
        std::optional<PlanOutcome> outcome;
        runner.submit({{step::DeleteFile{result}, step::Run{Tool::FFmpeg, {stub, result}},
                        step::RequireFile{result, "no file"}, step::RequireAudio{result, "Delete"},
                        step::ProbeDuration{result}}},
                      nullptr, [&](const PlanOutcome& done) { outcome = done; });
        QTRY_VERIFY(outcome.has_value());
        QVERIFY(!outcome->ok);
        QCOMPARE(outcome->alert, QString("Delete produced no usable audio.\n\nffmpeg said: "
                                         "“[wav @ 0x1] Invalid data found when processing input”"));
        QCOMPARE(outcome->runs.size(), 1); // no probe of what is not audio
        QVERIFY(!QFile::exists(result));
        QVERIFY(QFile::exists(stub));
    }

    void aValidEmptyWavIsUsableAudio() {
        const QString empty = m_dir.filePath("no-frames.wav");
        QCOMPARE(fixtures::run("sox", {"-n", "-r", "44100", "-c", "2", "-b", "16", empty, "trim", "0", "0"}),
                 0);
        QCOMPARE(fixtures::wavInfo(empty).frames, 0);
        QVERIFY(isReadableAudio(empty));
        QVERIFY(!isReadableAudio(m_dir.filePath("absent.wav")));
    }

    void theFilesAPlanMayWriteAreTheNamedOnesNotYetThere() {
        const QString folder = m_dir.filePath("named");
        QDir().mkpath(folder);
        writeFile(folder + "/track.wav", "x");
        writeFile(folder + "/track_PART_001.wav", "from an earlier split");
        const Plan plan{{step::DeleteFile{folder + "/out.wav"},
                         step::Run{Tool::Sox,
                                   {folder + "/track.wav", folder + "/track_PART_.wav", "silence", "1",
                                    "0.50", "1%", ":", "newfile", ":", "restart"}},
                         step::RequireFile{folder + "/req.wav", "x"}}};
        const NewFiles files = filesNotYetThere(plan);
        QCOMPARE(files.paths,
                 QStringList({folder + "/out.wav", folder + "/track_PART_.wav", folder + "/req.wav"}));
        QCOMPARE(files.numberedStems, QStringList({folder + "/track_PART_"}));
        QCOMPARE(files.numberedExisting, QStringList({folder + "/track_PART_001.wav"}));
        writeFile(folder + "/track_PART_002.wav", "written by this plan");
        writeFile(folder + "/out.wav", "written by this plan");
        deleteWrittenFiles(files);
        QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList({"track.wav", "track_PART_001.wav"}));
    }

    void aRunThatNamesAFileAfterItsOutputStillWritesItsOutput() {
        // Noise reduction of the same second as the edit that made its track:
        // the result bears the track's name, and sox names the noise profile
        // after the output. The track is read from where it was set aside and
        // the result written under its name; the old file is not written into.
        const QString folder = m_dir.filePath("same-second-noise");
        QDir().mkpath(folder);
        const ResultNames names(folder, QDateTime(QDate(2024, 3, 5), QTime(14, 7, 59)));
        const QString track = names.path();
        QCOMPARE(fixtures::run("sox", {"-n", "-r", "44100", "-c", "2", "-b", "16", track, "synth", "3",
                                       "whitenoise", "vol", "0.1"}),
                 0);
        const double before = fixtures::rms(track, 0, 3);
        const EditState s{folder, track, {},        calculateSegmentVariables({3, 0, 100.0f / 3, 0, 3}),
                          3,      0,     100.0f / 3};
        const EditPlan edit = buildNoiseReductionPlan(s, names, 0.21f);
        QCOMPARE(edit.result, track);
        const PlanOutcome outcome = executePlan(edit.plan, realTools());
        QVERIFY2(outcome.ok, qPrintable(outcome.alert));
        const fixtures::WavInfo result = fixtures::wavInfo(track);
        QVERIFY(result.isWorkingWav());
        // noisered ends a few windows early (some 1,100 frames here).
        QVERIFY2(result.seconds() > 2.95 && result.seconds() <= 3,
                 qPrintable(QString::number(result.seconds())));
        QCOMPARE(outcome.seconds.value_or(-1), qint64(result.seconds()));
        QVERIFY2(fixtures::rms(track, 0, 3) < before / 4,
                 qPrintable(QString("%1 against %2").arg(fixtures::rms(track, 0, 3)).arg(before)));
        QVERIFY(QDir(folder).entryList(QDir::Hidden | QDir::Files).filter("replaced").isEmpty());
    }

    void theInterfaceThreadKeepsRunningDuringAFiveSecondSoxRun() {
        // sox plays five seconds into the audio server, in real time.
        PlanRunner runner(realTools());
        int ticks = 0;
        qint64 longestGap = 0;
        QElapsedTimer sinceTick;
        QTimer timer;
        timer.setInterval(10);
        connect(&timer, &QTimer::timeout, [&] {
            if (ticks++ > 0)
                longestGap = std::max(longestGap, sinceTick.elapsed());
            sinceTick.restart();
        });
        PlanOutcome outcome;
        bool done = false;
        QElapsedTimer clock;
        clock.start();
        timer.start();
        sinceTick.start();
        runner.submit({{step::Run{Tool::Sox,
                                  {"-q", "-n", "-t", "pulseaudio", "default", "synth", "5", "sine", "440",
                                   "vol", "0.1"}}}},
                      nullptr, [&](const PlanOutcome& o) {
                          outcome = o;
                          done = true;
                      });
        QTRY_VERIFY_WITH_TIMEOUT(done, 20000);
        timer.stop();
        QVERIFY2(outcome.runs.value(0).milliseconds >= 4500,
                 qPrintable("the sox run did not play for five seconds: " + outcome.runs.value(0).output));
        QVERIFY2(ticks >= 200, qPrintable(QString("only %1 ticks in %2 ms").arg(ticks).arg(clock.elapsed())));
        QVERIFY2(longestGap < 1000,
                 qPrintable(QString("the interface thread stalled %1 ms").arg(longestGap)));
    }
};

QTEST_GUILESS_MAIN(tst_PlanRunner)
#include "tst_planrunner.moc"
