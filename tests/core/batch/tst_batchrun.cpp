// A recipe done to several files by the editor's runner, with the real tools:
// results, cancelling, a file that fails, and the saved script.

#include "BatchFixture.h"
#include "batch/BatchRun.h"
#include "batch/RecipePlans.h"
#include "plans/PlanRunner.h"

#include <QDir>
#include <QProcess>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>

namespace {
ToolPaths realTools() {
    return {QStandardPaths::findExecutable("sox"), QStandardPaths::findExecutable("ffmpeg")};
}
} // namespace

class TestBatchRun : public QObject {
    Q_OBJECT
    QTemporaryDir m_root;
    PlanRunner m_runner{realTools()};

    QString path(const QString& name) { return m_root.filePath(name); }
    QString work() { return path("work"); }
    QStringList leftInWork() { return QDir(work()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries); }

    // The results of `inputs` as MP3s in a new folder of `out`.
    QStringList outputsIn(const QString& folder, const QStringList& inputs) {
        QDir().mkpath(path("out/" + folder));
        return outputPaths(inputs, path("out/" + folder), "mp3",
                           [](const QString& p) { return QFile::exists(p); });
    }

    // Runs a batch to its end; `during` may act on it while it goes.
    void process(BatchRun& run, const std::function<void(BatchRun&)>& during = {}) {
        QSignalSpy finished(&run, &BatchRun::finished);
        if (during)
            during(run);
        run.start();
        QVERIFY(finished.size() == 1 || finished.wait(120000));
    }

private slots:
    void initTestCase() {
        QVERIFY(m_root.isValid());
        QDir().mkpath(work());
        QDir().mkpath(path("in"));
        QDir().mkpath(path("out"));
        batchTest::makeAudio(path("in/one.wav"), 3, 440);
        batchTest::makeAudio(path("in/two.flac"), 240, 550); // long enough to cancel within
        batchTest::makeAudio(path("in/three.mp3"), 2, 660);
        QFile notes(path("in/notes.wav"));
        QVERIFY(notes.open(QIODevice::WriteOnly));
        notes.write("These are notes, not audio.\n");
    }

    void cancelDuringTheSecondFileKeepsTheFirstAndStartsNoThird() {
        const QStringList inputs{path("in/one.wav"), path("in/two.flac"), path("in/three.mp3")};
        const QStringList outputs = outputsIn("cancel", inputs);
        BatchRun run(m_runner, batchTest::threeSteps(), inputs, outputs, work());
        run.setFilesAtOnce(1); // one after another, as on a machine of one processor
        QStringList stagesOfTheSecond;
        process(run, [&](BatchRun& r) {
            connect(&r, &BatchRun::stageStarted, &r, [&](int file, int stage, int, const QString& label) {
                if (file != 1 || r.results()[0].state != BatchRun::FileResult::Done)
                    return;
                stagesOfTheSecond << label;
                if (stage == 2) // the echo of the second file: cancel while sox runs
                    QTimer::singleShot(300, &r, [&r] { r.cancel(); });
            });
        });
        QCOMPARE(run.results()[0].state, BatchRun::FileResult::Done);
        QCOMPARE(run.results()[1].state, BatchRun::FileResult::Cancelled);
        QCOMPARE(run.results()[2].state, BatchRun::FileResult::NotStarted);
        QVERIFY(stagesOfTheSecond.contains("Echo"));
        QVERIFY(!stagesOfTheSecond.contains("Exporting two.mp3"));
        QVERIFY(batchTest::decoded(outputs[0]).size() > 44100 * 2 * 2);
        QVERIFY(!QFile::exists(outputs[1]));
        QVERIFY(!QFile::exists(outputs[2]));
        QCOMPARE(QDir(path("out/cancel")).entryList(QDir::Files), QStringList{"one.mp3"});
        QVERIFY2(leftInWork().isEmpty(), qPrintable(leftInWork().join(", ")));
    }

    // As many files at once as asked: the short ones are done beside the
    // long one, each in its own work folder, and the editor's runner is
    // never used. Cancel stops every file under way and keeps the done ones.
    void filesRunSideBySideAndCancelStopsThemAll() {
        const QStringList inputs{path("in/two.flac"), path("in/one.wav"), path("in/three.mp3"),
                                 path("in/two.flac")};
        const QStringList outputs =
            outputsIn("parallel", {inputs[0], inputs[1], inputs[2], path("in/again.flac")});
        BatchRun run(m_runner, batchTest::threeSteps(), inputs, outputs, work());
        run.setFilesAtOnce(3);
        int running = 0, most = 0;
        QStringList folders;
        QSignalSpy editorBusy(&m_runner, &PlanRunner::busyChanged);
        const qsizetype logged = m_runner.runs().size();
        connect(&run, &BatchRun::fileStarted, this, [&] { most = std::max(most, ++running); });
        connect(&run, &BatchRun::fileEnded, this, [&] { --running; });
        connect(&run, &BatchRun::stageStarted, this, [&](int file, int stage, int, const QString&) {
            if (stage == 1)
                for (const QString& entry : QDir(work()).entryList(QDir::Dirs | QDir::NoDotAndDotDot))
                    folders << QDir(work() + "/" + entry).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
            // The long file at its echo once both short ones are done: cancel.
            if (file == 0 && stage == 2 && run.count(BatchRun::FileResult::Done) == 2)
                QTimer::singleShot(300, &run, [&run] { run.cancel(); });
        });
        process(run);
        QCOMPARE(most, 3);
        // The editor's runner ran nothing, and lists the batch's runs in its log.
        QCOMPARE(editorBusy.count(), 0);
        QVERIFY(m_runner.runs().size() > logged + 8);
        folders.removeDuplicates();
        QVERIFY2(folders.size() >= 2, qPrintable(folders.join(", "))); // a work folder per file
        QCOMPARE(run.results()[0].state, BatchRun::FileResult::Cancelled);
        QCOMPARE(run.results()[1].state, BatchRun::FileResult::Done);
        QCOMPARE(run.results()[2].state, BatchRun::FileResult::Done);
        // The fourth started once a short one was done, and went with the cancel.
        QVERIFY(run.results()[3].state == BatchRun::FileResult::Cancelled ||
                run.results()[3].state == BatchRun::FileResult::NotStarted);
        QCOMPARE(QDir(path("out/parallel")).entryList(QDir::Files | QDir::Hidden),
                 QStringList({"one.mp3", "three.mp3"}));
        QVERIFY(batchTest::decoded(outputs[1]).size() > 44100 * 2 * 2);
        QVERIFY2(leftInWork().isEmpty(), qPrintable(leftInWork().join(", ")));
    }

    void anUnreadableFileIsListedAndTheOthersAreDone() {
        const QStringList inputs{path("in/one.wav"), path("in/notes.wav"), path("in/three.mp3")};
        const QStringList outputs = outputsIn("unreadable", inputs);
        BatchRun run(m_runner, batchTest::threeSteps(), inputs, outputs, work());
        process(run);
        QCOMPARE(run.results()[0].state, BatchRun::FileResult::Done);
        QCOMPARE(run.results()[1].state, BatchRun::FileResult::Failed);
        QCOMPARE(run.results()[2].state, BatchRun::FileResult::Done);
        QCOMPARE(
            failureLine(run.results()[1]),
            QString("notes.wav: The file \"notes.wav\" could not be read as audio. It may be damaged, empty "
                    "or of a kind that cannot be converted."));
        QVERIFY(QFile::exists(outputs[0]) && QFile::exists(outputs[2]));
        QVERIFY(!QFile::exists(outputs[1]));
        QVERIFY(QFile::exists(path("in/notes.wav"))); // an input is only ever read
        QVERIFY(leftInWork().isEmpty());
    }

    void aFileWhoseStepsWouldNotFitInTheWorkFolderIsRefusedAndTheOthersAreDone() {
        // 60 s open into 10.6 MB and fit; three steps of as much each do not.
        fixtures::Mount small(path("small-work"), "size=60m");
        QVERIFY2(small.mounted, "the tests run as root and mount a small disk");
        batchTest::makeAudio(path("in/minute.wav"), 60, 330);
        const QStringList inputs{path("in/minute.wav"), path("in/one.wav")};
        const QStringList outputs = outputsIn("room", inputs);
        BatchRun run(m_runner, batchTest::threeSteps(), inputs, outputs, small.folder);
        process(run);
        QCOMPARE(run.results()[0].state, BatchRun::FileResult::Failed);
        const QString line = failureLine(run.results()[0]);
        QVERIFY2(
            line.startsWith("minute.wav: There is not enough free space in the work folder " + small.folder),
            qPrintable(line));
        QVERIFY(!QFile::exists(outputs[0]));
        QCOMPARE(run.results()[1].state, BatchRun::FileResult::Done);
        QVERIFY(batchTest::decoded(outputs[1]).size() > 44100 * 2 * 2);
        const QStringList left = QDir(small.folder).entryList(QDir::NoDotAndDotDot | QDir::AllEntries);
        QVERIFY2(left.isEmpty(), qPrintable(left.join(", ")));
    }

    void aFullDiskIsSaidInTheFailureLine() {
        const BatchRun::FileResult failed{BatchRun::FileResult::Failed, "/in/a.wav", "/out/a.mp3",
                                          "Echo failed: sox ended with an error while writing “x.wav”.\n\n"
                                          "The disk is full: /w has 0 MB free."};
        QCOMPARE(failureLine(failed), QString("a.wav: Echo failed: sox ended with an error while writing "
                                              "“x.wav”. The disk is full: /w has 0 MB free."));
        const BatchRun::FileResult other{BatchRun::FileResult::Failed, "/in/b.wav", "/out/b.mp3",
                                         "The export produced no file.\n\n/out/b.mp3"};
        QCOMPARE(failureLine(other), QString("b.wav: The export produced no file."));
    }

    void theSameStepsOnTheSameAudioMakeTheSameFile() {
        // sox's dither would differ on every run but for its repeatable mode.
        Recipe recipe = batchTest::threeSteps();
        recipe.exportChoice.format = 0; // WAV: the samples sox wrote, unchanged
        const QString out = path("out/twice");
        QDir().mkpath(out);
        for (const char* name : {"first.wav", "second.wav"}) {
            BatchRun run(m_runner, recipe, {path("in/one.wav")}, {out + "/" + name}, work());
            process(run);
            QCOMPARE(run.results()[0].state, BatchRun::FileResult::Done);
        }
        QVERIFY(fixtures::samples(out + "/first.wav").size() > 44100);
        QCOMPARE(fixtures::digest(out + "/first.wav"), fixtures::digest(out + "/second.wav"));
    }

    // Two batches into one folder at once, each on its own runners: both
    // chose "one.mp3", the first to finish takes it, and neither result
    // replaces or removes the other.
    void twoBatchesIntoOneFolderKeepBothResults() {
        Recipe recipe = batchTest::threeSteps();
        const QStringList outputs = outputsIn("together", {path("in/one.wav")});
        QCOMPARE(outputs, outputsIn("together", {path("in/three.mp3")}).replaceInStrings("three", "one"));
        BatchRun first(m_runner, recipe, {path("in/one.wav")}, outputs, work());
        BatchRun second(m_runner, recipe, {path("in/three.mp3")}, outputs, work());
        QSignalSpy firstDone(&first, &BatchRun::finished), secondDone(&second, &BatchRun::finished);
        first.start();
        second.start();
        QVERIFY(firstDone.size() == 1 || firstDone.wait(120000));
        QVERIFY(secondDone.size() == 1 || secondDone.wait(120000));
        QCOMPARE(first.results()[0].state, BatchRun::FileResult::Done);
        QCOMPARE(second.results()[0].state, BatchRun::FileResult::Done);
        const QString folder = path("out/together");
        const QStringList names{first.results()[0].output, second.results()[0].output};
        QCOMPARE(QSet<QString>(names.begin(), names.end()),
                 QSet<QString>({folder + "/one.mp3", folder + "/one (2).mp3"}));
        const auto seconds = [](const QString& f) { return batchTest::decoded(f).size() / 2.0 / 44100; };
        // Each holds its own input's audio: the 3 s one a second longer than the 2 s one.
        const double difference = seconds(first.results()[0].output) - seconds(second.results()[0].output);
        QVERIFY2(std::abs(difference - 1) < 0.1, qPrintable(QString::number(difference)));
        // Nothing of either is left under a name of its own.
        QCOMPARE(QDir(folder).entryList(QDir::Files | QDir::Hidden), QStringList({"one (2).mp3", "one.mp3"}));
    }

    // A failing file of a batch takes away only what it wrote itself.
    void aFailingFileRemovesOnlyItsOwnFile() {
        const QString folder = path("out/failing");
        QDir().mkpath(folder);
        const QString taken = folder + "/notes.mp3";
        BatchRun run(m_runner, batchTest::threeSteps(), {path("in/notes.wav")}, {taken}, work());
        // Another program's file appears under the name as the file starts.
        connect(&run, &BatchRun::fileStarted, this, [&] { batchTest::makeAudio(taken, 1, 880); });
        process(run);
        QCOMPARE(run.results()[0].state, BatchRun::FileResult::Failed);
        QVERIFY(batchTest::decoded(taken).size() > 44100); // theirs, whole
        QCOMPARE(QDir(folder).entryList(QDir::Files | QDir::Hidden), QStringList({"notes.mp3"}));
    }

    // The saved script run twice at once over two inputs of one name: each
    // result gets a name of its own, and neither run removes the other's.
    void twoRunsOfTheScriptAtOnceKeepBothResults() {
        const QString folder = path("race");
        QDir().mkpath(folder);
        batchTest::makeAudio(folder + "/talk.flac", 3, 330);
        batchTest::makeAudio(folder + "/talk.mp3", 4, 440);
        const QByteArray input = fixtures::digest(folder + "/talk.mp3");
        const QString script = path("race.sh");
        QFile file(script);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(recipeScript(batchTest::threeSteps()).toUtf8());
        file.close();
        QProcess xargs;
        xargs.setWorkingDirectory(folder);
        xargs.setProcessChannelMode(QProcess::MergedChannels);
        xargs.start("sh",
                    {"-c", "printf 'talk.flac\\ntalk.mp3\\n' | xargs -P2 -n1 sh " + shellQuoted(script)});
        QVERIFY(xargs.waitForFinished(120000));
        QVERIFY2(xargs.exitCode() == 0, xargs.readAll().constData());
        QCOMPARE(fixtures::digest(folder + "/talk.mp3"), input); // an input is only ever read
        const QStringList made = QDir(folder).entryList(QDir::Files | QDir::Hidden);
        QCOMPARE(made, QStringList({"talk (2).mp3", "talk (3).mp3", "talk.flac", "talk.mp3"}));
        QList<int> lengths;
        for (const char* name : {"talk (2).mp3", "talk (3).mp3"})
            lengths << qRound(batchTest::decoded(folder + "/" + name).size() / 2.0 / 44100);
        // One of each input: the 4 s input's result a second longer.
        std::sort(lengths.begin(), lengths.end());
        QCOMPARE(lengths[1] - lengths[0], 1);
    }

    // Shortened pauses and a loudness measured in the script itself: the
    // script reads ffmpeg's figures in the shell and makes the batch's audio.
    void pausesAndLoudnessAreDoneAgainByTheScript() {
        const QString phrase = path("in/phrase.wav"), gap = path("in/gap.wav"), talk = path("in/talk.wav");
        fixtures::makeTone(phrase, 1.5, 440, 0.05);
        fixtures::makeSilence(gap, 3);
        fixtures::join({phrase, gap, phrase, gap, phrase}, talk);
        Recipe recipe;
        recipe.steps = {batchTest::effectStep("ShortenPauses"), batchTest::effectStep("LoudnessNormalize")};
        recipe.exportChoice = {0, exporting::DefaultSampleRate, exporting::DefaultChannels,
                               exporting::DefaultBitRate}; // WAV
        const QString out = path("out/loudness");
        QDir().mkpath(out);
        BatchRun run(m_runner, recipe, {talk}, {out + "/batch.wav"}, work());
        process(run);
        QCOMPARE(run.results()[0].state, BatchRun::FileResult::Done);
        const QString batch = out + "/batch.wav";
        QVERIFY2(std::abs(fixtures::wavInfo(batch).seconds() - (3 * 1.5 + 2 * 1.0)) <= 0.1,
                 qPrintable(QString::number(fixtures::wavInfo(batch).seconds())));

        const QString script = path("loudness.sh");
        QFile file(script);
        QVERIFY(file.open(QIODevice::WriteOnly));
        const QString text = recipeScript(recipe);
        QVERIFY(text.contains("figure_input_i=$(figure input_i)"));
        file.write(text.toUtf8());
        file.close();
        QString said;
        QCOMPARE(fixtures::run("sh", {script, talk, out + "/script.wav"}, &said), 0);
        QCOMPARE(fixtures::samples(out + "/script.wav"), fixtures::samples(batch));
        // Silence has no loudness: the script stops with the editor's words.
        const QString silence = path("in/silence.wav");
        fixtures::makeSilence(silence, 2);
        QVERIFY(fixtures::run("sh", {script, silence, out + "/silence.wav"}, &said) != 0);
        QVERIFY2(said.contains("could not measure the audio: it is silent"), qPrintable(said));
        QVERIFY(!QFile::exists(out + "/silence.wav"));
    }

    // The saved script fanned out as the README shows, four runs at once over
    // four files with xargs -P: each result is the batch's for that file.
    void fourRunsOfTheScriptAtOnceMakeTheBatchsFiles() {
        const QString inputs = path("four"), out = path("out/four");
        QDir().mkpath(inputs);
        QDir().mkpath(out);
        QStringList files;
        for (int i = 0; i < 4; ++i) {
            files << inputs + QString("/take %1.%2").arg(i + 1).arg(i % 2 ? "flac" : "wav");
            batchTest::makeAudio(files.last(), 2 + i, 300 + 100 * i);
        }
        QStringList outputs;
        for (const QString& file : files)
            outputs << out + "/" + QFileInfo(file).completeBaseName() + ".mp3";
        BatchRun run(m_runner, batchTest::threeSteps(), files, outputs, work());
        run.setFilesAtOnce(4);
        process(run);
        QCOMPARE(run.count(BatchRun::FileResult::Done), 4);

        const QString script = path("fan-out.sh");
        QFile file(script);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(recipeScript(batchTest::threeSteps()).toUtf8());
        file.close();
        QString said;
        QCOMPARE(fixtures::run("sh",
                               {"-c", "cd " + shellQuoted(inputs) +
                                          " && printf '%s\\0' *.wav *.flac | xargs -0 -P4 -n1 sh " +
                                          shellQuoted(script)},
                               &said),
                 0);
        for (int i = 0; i < 4; ++i) {
            const QString scripted = inputs + "/" + QFileInfo(files[i]).completeBaseName() + ".mp3";
            QVERIFY2(batchTest::sameAudio(outputs[i], scripted), qPrintable(scripted + "\n" + said));
        }
    }

    void theSavedScriptMakesTheSameAudioAsTheBatch() {
        const QString fourth = path("in/it's the fourth.flac");
        batchTest::makeAudio(fourth, 5, 330);
        const QString out = path("out/script");
        QDir().mkpath(out);
        BatchRun run(m_runner, batchTest::threeSteps(), {fourth}, {out + "/batch.mp3"}, work());
        process(run);
        QCOMPARE(run.results()[0].state, BatchRun::FileResult::Done);

        const QString script = path("recipe.sh");
        QFile file(script);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(recipeScript(batchTest::threeSteps()).toUtf8());
        file.close();
        const QString scriptTemp = path("script-temp");
        QDir().mkpath(scriptTemp);
        qputenv("TMPDIR", scriptTemp.toUtf8());
        QString said;
        QCOMPARE(fixtures::run("sh", {script, fourth, out + "/script.mp3"}, &said), 0);
        QVERIFY(batchTest::sameAudio(out + "/batch.mp3", out + "/script.mp3"));
        // Without an output it writes beside the input, never over a file.
        QCOMPARE(fixtures::run("sh", {script, fourth}), 0);
        QCOMPARE(fixtures::run("sh", {script, fourth}), 0);
        QVERIFY(batchTest::sameAudio(out + "/batch.mp3", path("in/it's the fourth.mp3")));
        QVERIFY(batchTest::sameAudio(out + "/batch.mp3", path("in/it's the fourth (2).mp3")));
        const QByteArray before = fixtures::digest(out + "/script.mp3");
        QCOMPARE(fixtures::run("sh", {script, fourth, out + "/script.mp3"}, &said), 1);
        QVERIFY(said.contains("exists already"));
        QCOMPARE(fixtures::digest(out + "/script.mp3"), before);
        // A file it cannot read leaves nothing behind.
        QVERIFY(fixtures::run("sh", {script, path("in/notes.wav"), out + "/notes.mp3"}, &said) != 0);
        QVERIFY(said.contains("Opening the input failed."));
        QVERIFY(!QFile::exists(out + "/notes.mp3"));
        QVERIFY(QDir(scriptTemp).isEmpty());
        qunsetenv("TMPDIR");
    }
};

QTEST_GUILESS_MAIN(TestBatchRun)
#include "tst_batchrun.moc"
