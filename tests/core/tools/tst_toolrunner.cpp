#include "document/ImportPlans.h"
#include "plans/Plan.h"
#include "support/Fixtures.h"
#include "tools/ToolPaths.h"
#include "tools/ToolRunner.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>
#include <sys/resource.h>
#include <thread>

namespace {
ToolPaths realTools() {
    return {QStandardPaths::findExecutable("sox"), QStandardPaths::findExecutable("ffmpeg")};
}

void writeScript(const QString& path, const QByteArray& body) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("#!/bin/sh\n" + body);
    file.close();
    QVERIFY(file.setPermissions(file.permissions() | QFileDevice::ExeOwner));
}
} // namespace

class tst_ToolRunner : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;

private slots:
    void initTestCase() {
        QVERIFY(!realTools().sox.isEmpty());
        QVERIFY(!realTools().ffmpeg.isEmpty());
    }

    void outputAndErrorArriveInterleavedInOneText() {
        const QString script = m_dir.filePath("both.sh");
        writeScript(script, "echo one\necho two >&2\necho three\n");
        const ToolRun run = runTool(script, {});
        QCOMPARE(run.output, QString("one\ntwo\nthree\n"));
        QCOMPARE(run.exitCode, 0);
    }

    void argumentsArePassedElementByElementWithoutAShell() {
        const QString script = m_dir.filePath("args.sh");
        writeScript(script, "for a in \"$@\"; do printf '[%s]' \"$a\"; done\n");
        const ToolRun run = runTool(script, {"a b", "$(echo no)", "x;y", "'q'", "\"d\"", "ünï"});
        QCOMPARE(run.output, QString("[a b][$(echo no)][x;y]['q'][\"d\"][ünï]"));
    }

    void standardInputIsTheNullDevice() {
        // ffmpeg asks before overwriting; with no input it must answer "no" at
        // once instead of waiting forever.
        const QString tone = m_dir.filePath("stdin-tone.wav");
        fixtures::makeTone(tone, 1);
        const QString existing = m_dir.filePath("existing.wav");
        QVERIFY(QFile::copy(tone, existing));
        const qint64 sizeBefore = QFileInfo(existing).size();
        QFile::resize(existing, sizeBefore / 2);
        QElapsedTimer clock;
        clock.start();
        const ToolRun run = runTool(realTools().ffmpeg, {"-i", tone, existing});
        QVERIFY(clock.elapsed() < 20000);
        QVERIFY(run.output.contains("already exists"));
        QCOMPARE(QFileInfo(existing).size(), sizeBefore / 2);
    }

    void aChildThatWritesNothingGivesEmptyOutput() {
        const ToolRun run = runTool(QStandardPaths::findExecutable("true"), {});
        QVERIFY(run.output.isEmpty());
        QCOMPARE(run.exitCode, 0);
    }

    void aTickIsCalledWhileAChildRunsEvenOneThatClosedItsOutput() {
        // The child prints once, closes its output and sleeps on: the runner
        // keeps ticking until it ends, without spinning meanwhile.
        rusage before{}, after{};
        getrusage(RUSAGE_SELF, &before);
        int ticks = 0;
        QElapsedTimer clock;
        clock.start();
        const ToolRun run =
            runTool("/bin/sh", {"-c", "echo early; exec >&- 2>&-; sleep 1.2"}, {[&] { ++ticks; }, 100});
        const qint64 elapsed = clock.elapsed();
        getrusage(RUSAGE_SELF, &after);
        const double cpu = (after.ru_utime.tv_sec - before.ru_utime.tv_sec) +
                           (after.ru_utime.tv_usec - before.ru_utime.tv_usec) / 1e6 +
                           (after.ru_stime.tv_sec - before.ru_stime.tv_sec) +
                           (after.ru_stime.tv_usec - before.ru_stime.tv_usec) / 1e6;
        QCOMPARE(run.output, QString("early\n"));
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(elapsed >= 1100, qPrintable(QString::number(elapsed)));
        QVERIFY2(ticks >= 4, qPrintable(QString::number(ticks)));
        QVERIFY2(cpu < 0.5, qPrintable(QString("%1 s of processor time while waiting").arg(cpu)));
    }

    void aTerminatedToolEndsByItsSignalAndNotWithACutOffFile_data() {
        QTest::addColumn<bool>("guarded");
        QTest::newRow("as the editor runs it") << true;
        QTest::newRow("without the preloaded library") << false;
    }
    void aTerminatedToolEndsByItsSignalAndNotWithACutOffFile() {
        // Left to itself, sox ends a SIGTERM by closing its output as if it
        // were complete and exiting 0; the library the editor preloads keeps
        // the signal's default action, so the run shows it was stopped.
        QFETCH(bool, guarded);
        const QString guard = locateToolSignals(qEnvironmentVariable("TANSELO_BUILD_DIR"));
        QVERIFY2(!guard.isEmpty(), "the preloaded library was not built");
        const QString out = m_dir.filePath(QString("terminated-%1.wav").arg(guarded));
        std::atomic<qint64> pid = 0;
        std::thread killer([&] {
            while (pid.load() == 0)
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
            ::kill(pid_t(pid.load()), SIGTERM);
        });
        RunControl control;
        control.processId = &pid;
        if (guarded)
            control.preload = guard;
        const ToolRun run = runTool(
            realTools().sox, {"-n", "-r", "44100", "-c", "2", out, "synth", "3600", "sine", "440"}, control);
        killer.join();
        if (guarded) {
            QCOMPARE(run.end, RunEnd::Crashed);
            QCOMPARE(run.signal, SIGTERM);
            QCOMPARE(abnormalEndMessage(run), QString("sox was stopped by signal 15 before it finished."));
        } else {
            QCOMPARE(run.end, RunEnd::Exited);
            QCOMPARE(run.exitCode, 0);
            QVERIFY(fixtures::wavInfo(out).ok); // a valid file, far short of the hour
            QVERIFY(fixtures::wavInfo(out).seconds() < 3600);
        }
    }

    void aMissingProgramGivesEmptyOutput() {
        const ToolRun run = runTool(m_dir.filePath("no-such-tool"), {"x"});
        QVERIFY(run.output.isEmpty());
        QCOMPARE(run.exitCode, -1);
    }

    void importAndProbeArgumentLists() {
        const Plan plan = buildImportPlan("/in/My Song.mp3", "/w/2024-03-05-14-07-59.wav");
        const QList<PlannedRun> expected = {
            {Tool::FFmpeg, {"-i", "/in/My Song.mp3"}}, // its length, for the room it needs
            {Tool::FFmpeg,
             {"-i", "/in/My Song.mp3", "-acodec", "pcm_s16le", "-ar", "44100", "-ac", "2",
              "/w/2024-03-05-14-07-59.wav"}},
            {Tool::FFmpeg, {"-i", "/w/2024-03-05-14-07-59.wav"}},
        };
        QCOMPARE(plannedRuns(plan), expected);
        QVERIFY(std::holds_alternative<step::Check>(plan.steps[1]));
        // The result is deleted before ffmpeg writes it, and required afterwards.
        QVERIFY(std::holds_alternative<step::DeleteFile>(plan.steps[2]));
        QCOMPARE(std::get<step::DeleteFile>(plan.steps[2]).path, QString("/w/2024-03-05-14-07-59.wav"));
        QVERIFY(std::holds_alternative<step::RequireFile>(plan.steps[4]));
        QCOMPARE(plannedRuns(buildProbePlan("/w/a b.wav")),
                 QList<PlannedRun>({{Tool::FFmpeg, {"-i", "/w/a b.wav"}}}));
    }

    void aHostilePathReachesFfmpegIntactAndConverts_data() {
        QTest::addColumn<QString>("extension");
        QTest::addColumn<int>("runs");
        // An MP3's length is measured by ffmpeg first; a FLAC's is read from
        // its header, with the same path, without a run.
        QTest::newRow("mp3") << "mp3" << 3;
        QTest::newRow("flac") << "flac" << 2;
    }
    void aHostilePathReachesFfmpegIntactAndConverts() {
        QFETCH(QString, extension);
        QFETCH(int, runs);
        const QString folder = m_dir.filePath("dir with blanks ; $(touch pwned) 'q' \"d\" ünïcødé");
        QVERIFY(QDir().mkpath(folder));
        const QString source = folder + "/to ne $(rm -rf x); 'it''s' \"ok\" – ïß." + extension;
        const QString wav = m_dir.filePath("hostile-source.wav");
        fixtures::makeTone(wav, 2);
        QFile::remove(source);
        QCOMPARE(fixtures::run("ffmpeg", {"-i", wav, source}), 0);
        const QString result = folder + "/rés ult; $(x).wav";
        QFile::remove(result);
        const PlanOutcome outcome = executePlan(buildImportPlan(source, result), realTools());
        QVERIFY2(outcome.ok, qPrintable(outcome.alert));
        QCOMPARE(outcome.runs.size(), runs);
        for (int i = 0; i + 1 < runs; ++i)
            QCOMPARE(outcome.runs[i].arguments[1], source);
        QCOMPARE(outcome.runs.last().arguments, QStringList({"-i", result}));
        const fixtures::WavInfo info = fixtures::wavInfo(result);
        QVERIFY(info.isWorkingWav());
        QVERIFY(qAbs(info.seconds() - 2.0) < 0.06);
        QCOMPARE(outcome.seconds, std::optional<qint64>(2));
        QVERIFY(!QFile::exists(QDir::current().filePath("pwned")));
        QVERIFY(!QFile::exists(folder + "/pwned"));
    }

    // A plan's deletions wait for its end: a failed plan leaves every file
    // that was there as it was, one that succeeds leaves nothing set aside.
    void aPlanPutsBackWhatItDeletedWhenItFailsAndReadsWhatItReplaces() {
        QTemporaryDir folder;
        const QString other = folder.filePath("other.wav"), track = folder.filePath("track.wav");
        fixtures::makeTone(other, 1, 440);
        fixtures::makeTone(track, 2);
        const std::vector<short> otherWas = fixtures::samples(other), trackWas = fixtures::samples(track);
        const auto leftAside = [&] {
            return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).filter("replaced");
        };

        const PlanOutcome failed =
            executePlan({{step::DeleteFile{other}, step::Run{Tool::Sox, {track, other, "no-such-effect"}},
                          step::RequireFile{other, "no result"}}},
                        realTools());
        QVERIFY(!failed.ok);
        QCOMPARE(failed.alert, QString("no result"));
        QCOMPARE(fixtures::samples(other), otherWas);
        QVERIFY(leftAside().isEmpty());

        // The result's name is the input's: sox reads the old file from aside.
        const PlanOutcome reversed =
            executePlan({{step::DeleteFile{track}, step::Run{Tool::Sox, {track, track, "reverse"}},
                          step::RequireAudio{track, "Reverse"}}},
                        realTools());
        QVERIFY2(reversed.ok, qPrintable(reversed.alert));
        QCOMPARE(reversed.runs[0].arguments[0], asideName(track));
        QCOMPARE(reversed.runs[0].arguments[1], track);
        const std::vector<short> is = fixtures::samples(track);
        QCOMPARE(is.size(), trackWas.size());
        QCOMPARE(is.front(), trackWas[trackWas.size() - 2]);
        QVERIFY(leftAside().isEmpty());
    }

    void locatesToolsBesideTheExecutableThenLibexecThenPath() {
        const QString app = m_dir.filePath("install/bin");
        QVERIFY(QDir().mkpath(app));
        QVERIFY(QDir().mkpath(m_dir.filePath("install/libexec/tanselo")));
        QCOMPARE(locateTool("sox", app), realTools().sox);
        writeScript(m_dir.filePath("install/libexec/tanselo/sox"), "exit 0\n");
        QCOMPARE(locateTool("sox", app), m_dir.filePath("install/libexec/tanselo/sox"));
        writeScript(app + "/sox", "exit 0\n");
        QCOMPARE(locateTool("sox", app), app + "/sox");
        QVERIFY(locateTool("tanselo-no-such-tool", app).isEmpty());
    }

    void theLogShowsCommandLinesAUserCanPaste() {
        ToolRun run{"/usr/bin/ffmpeg", {"-i", "/w/it's a $(test).wav", "-ac", "2"}, "Duration: x\n", 1, 12};
        QCOMPARE(commandLine(run), QString("/usr/bin/ffmpeg -i '/w/it'\\''s a $(test).wav' -ac 2"));
        QCOMPARE(toolLogText({run}), QString("$ /usr/bin/ffmpeg -i '/w/it'\\''s a $(test).wav' -ac 2\n# exit "
                                             "code 1, 12 ms\nDuration: x\n\n"));
        // Pasted into a shell, the line gives the program exactly these arguments.
        const QString script = m_dir.filePath("echo-args.sh");
        writeScript(script, "for a in \"$@\"; do printf '[%s]' \"$a\"; done\n");
        run.program = script;
        QString output;
        QCOMPARE(fixtures::run("sh", {"-c", commandLine(run)}, &output), 0);
        QCOMPARE(output, QString("[-i][/w/it's a $(test).wav][-ac][2]"));
    }

    // The duration probe ends with status 1 by its nature: the log marks it
    // as a probe with the duration it found.
    void theDurationProbeIsMarkedAsAProbe() {
        const ToolRun probe{
            "/usr/bin/ffmpeg",
            {"-i", "/w/talk.wav"},
            "Input #0, wav, from '/w/talk.wav':\n  Duration: 00:15:02.47, bitrate: 1411 kb/s\n"
            "At least one output file must be specified\n",
            1,
            40};
        QVERIFY(toolLogText({probe}).startsWith("$ /usr/bin/ffmpeg -i /w/talk.wav\n"
                                                "# duration probe: duration 00:15:02, 40 ms\n"));
        ToolRun nothing = probe;
        nothing.output = "/w/talk.wav: No such file or directory\n";
        QVERIFY(toolLogText({nothing}).contains("# duration probe, no duration found, 40 ms\n"));
        // The same arguments to another program, or more of them, are a run like any other.
        ToolRun sox = probe;
        sox.program = "/usr/bin/sox";
        QVERIFY(toolLogText({sox}).contains("# exit code 1, 40 ms\n"));
    }

    void missingToolMessageNamesProgramAndPackage() {
        const QString text = missingToolMessage("ffmpeg");
        QVERIFY(text.contains("\"ffmpeg\""));
        QVERIFY(text.contains("apt-get install ffmpeg"));
    }
};

QTEST_GUILESS_MAIN(tst_ToolRunner)
#include "tst_toolrunner.moc"
