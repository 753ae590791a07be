// Measures what the editor promises about speed, side by side with reference
// commands run on the same machine in the same run:
//   1. waveform points of a 1-hour WAV vs `sox FILE -n stat` and `cat FILE`;
//   2. the peak memory of that computation, and the time to paint one frame
//      of that track's waveform at five zooms (--waveform: these two alone);
//   3. process start to the first window showing the loaded silence track;
//   4. the longest interface-thread stall while a 20 s tool run executes;
//   5. cut, paste, paste mixing and echo on a 2-minute selection of a 10-minute
//      track through the editor's runner beside the same tool runs from a plain
//      shell script;
//   6. exporting a 10-minute and a 1-hour track as WAV and as MP3 the same way,
//      and the longest interface-thread stall during the 1-hour exports;
//   7. the time from Cancel to an idle runner during an echo over a 1-hour track;
//   8. joining three 10-minute tracks end to end (two of them padded) the same
//      way, and the longest interface-thread stall meanwhile;
//   9. a three-step recipe (normalize, echo, fade in, exported as MP3) done to
//      ten 1-minute files as a batch beside its saved script run on each file;
//  10. the echo dialog's Preview on ten seconds of a 1-hour track, from the
//      press to the first sample at the audio output, beside the preview's
//      tool runs from a plain shell script;
//  11. 200 edits with the manifest of the windows beside 200 without it,
//      and a start reopening 10 windows of 20 versions beside a plain start.
// Run it with `make bench` (or one part: --exports, --cancel, --join, --batch,
// --preview, --recovery).

#include "PaintBench.h"
#include "PreviewBench.h"
#include "RecoveryBench.h"
#include "application/AppDelegate.h"
#include "batch/BatchRun.h"
#include "batch/RecipePlans.h"
#include "document/Document.h"
#include "document/ExportPlans.h"
#include "document/Waveform.h"
#include "edit/EditPlans.h"
#include "effects/EffectCatalogue.h"
#include "effects/EffectPlans.h"
#include "effects/PreviewPlans.h"
#include "mixer/MixerTracks.h"
#include "plans/PlanRunner.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <sys/resource.h>
#include <vector>

namespace {
double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Wall time of one command, its output discarded.
double timeCommand(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    QElapsedTimer clock;
    clock.start();
    process.start(program, arguments);
    process.waitForFinished(-1);
    return clock.nsecsElapsed() / 1e6;
}

double timeReduction(const QString& path) {
    QElapsedTimer clock;
    clock.start();
    const Waveform w = reduceWaveform(path);
    const double ms = clock.nsecsElapsed() / 1e6;
    if (!w.ok)
        qFatal("could not read %s", qPrintable(path));
    return ms;
}

long peakKilobytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

// Child mode: reduce one file and print the peak resident memory before and after.
int reduceAndReportMemory(const QString& path) {
    const long before = peakKilobytes();
    reduceWaveform(path);
    std::printf("%ld %ld\n", before, peakKilobytes());
    return 0;
}

// Child mode: start as the editor does and say "shown" once the first window
// shows the silence track's waveform.
int startAndReportShown(int argc, char** argv) {
    QApplication application(argc, argv);
    AppDelegate delegate;
    if (delegate.applicationDidFinishLaunching())
        return 1;
    Document* document = delegate.newDocument();
    QObject::connect(document, &Document::plotUpdated, [] {
        std::printf("shown\n");
        std::fflush(stdout);
        std::_Exit(0);
    });
    return QApplication::exec();
}

double timeStartUp(const QString& self, const QString& home) {
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("HOME", home);
    if (!environment.contains("DISPLAY"))
        environment.insert("QT_QPA_PLATFORM", "offscreen");
    child.setProcessEnvironment(environment);
    QElapsedTimer clock;
    clock.start();
    child.start(self, {"--startup"});
    while (child.waitForReadyRead(-1))
        if (child.readAll().contains("shown"))
            break;
    const double ms = clock.nsecsElapsed() / 1e6;
    child.waitForFinished(-1);
    return ms;
}

ToolPaths foundTools() {
    return {QStandardPaths::findExecutable("sox"), QStandardPaths::findExecutable("ffmpeg")};
}

// The plan as a shell script: the same deletions and tool runs, in order.
QString shellScript(const Plan& plan, const ToolPaths& tools) {
    auto quoted = [](const QString& word) { return "'" + QString(word).replace("'", "'\\''") + "'"; };
    QString script;
    for (const Step& s : plan.steps) {
        if (auto* d = std::get_if<step::DeleteFile>(&s)) {
            script += "rm -f " + quoted(d->path) + "\n";
        } else if (auto* r = std::get_if<step::Run>(&s)) {
            script += quoted(r->tool == Tool::Sox ? tools.sox : tools.ffmpeg);
            for (const QString& a : r->arguments)
                script += " " + quoted(a);
            script += " < /dev/null > /dev/null 2>&1\n";
        } else if (auto* q = std::get_if<step::RequireFile>(&s)) {
            script += "test -e " + quoted(q->path) + " || exit 1\n";
        } else if (auto* p = std::get_if<step::ProbeDuration>(&s)) {
            script += quoted(tools.ffmpeg) + " -i " + quoted(p->path) + " < /dev/null > /dev/null 2>&1\n";
        }
    }
    return script;
}

// Wall time of a plan through the runner; with `longestStallMs`, also the
// longest gap between two ticks of a 10 ms timer on this (the interface) thread.
double timeThroughRunner(PlanRunner& runner, const Plan& plan, double* longestStallMs = nullptr) {
    QEventLoop loop;
    QElapsedTimer clock, sinceTick;
    qint64 longest = 0;
    QTimer timer;
    timer.setInterval(10);
    QObject::connect(&timer, &QTimer::timeout, [&] {
        longest = std::max(longest, sinceTick.nsecsElapsed());
        sinceTick.restart();
    });
    clock.start();
    runner.submit(plan, nullptr, [&](const PlanOutcome&) { loop.quit(); });
    if (longestStallMs) {
        sinceTick.start();
        timer.start();
    }
    loop.exec();
    if (longestStallMs)
        *longestStallMs = longest / 1e6;
    return clock.nsecsElapsed() / 1e6;
}

double longestStallDuringToolRun(double seconds) {
    PlanRunner runner(foundTools());
    double stall = 0;
    timeThroughRunner(
        runner,
        {{step::Run{Tool::FFmpeg,
                    {"-re", "-f", "lavfi", "-i", QString("anullsrc=d=%1").arg(seconds), "-f", "null", "-"}}}},
        &stall);
    return stall;
}

struct SideBySide {
    double editor, shell;
};

// Runs a plan `rounds` times through the runner and as a shell script,
// alternating which goes first, each after the disk has been written back.
// Nothing else ticks on the interface thread meanwhile, as in the editor: a
// 10 ms timer there was seen to slow a 3-second ffmpeg run by a tenth.
SideBySide sideBySide(PlanRunner& runner, const Plan& plan, const QString& folder, int rounds) {
    const QString script = folder + "/plan.sh";
    QFile file(script);
    file.open(QIODevice::WriteOnly);
    file.write(shellScript(plan, runner.tools()).toUtf8());
    file.close();
    std::vector<double> editor, shell;
    for (int i = 0; i < rounds; ++i) {
        timeCommand("sync", {});
        if (i % 2 == 0)
            shell.push_back(timeCommand("sh", {script}));
        else
            editor.push_back(timeThroughRunner(runner, plan));
        timeCommand("sync", {});
        if (i % 2 == 0)
            editor.push_back(timeThroughRunner(runner, plan));
        else
            shell.push_back(timeCommand("sh", {script}));
    }
    return {median(editor), median(shell)};
}

void printSideBySide(const char* name, const SideBySide& r) {
    std::printf("  %-26s editor %8.1f ms   shell %8.1f ms   ratio %.3f (target <= 1.05)\n", name, r.editor,
                r.shell, r.editor / r.shell);
    std::fflush(stdout);
}

void makeSine(const QString& path, int seconds) {
    timeCommand("sox", {"-D", "-n", "-r", "44100", "-c", "2", "-b", "16", path, "synth",
                        QString::number(seconds), "sine", "440", "vol", "0.5"});
}

void compareEditsWithAShell(const QString& folder) {
    const QString track = folder + "/ten-minutes.wav", clip = folder + "/clip.wav";
    makeSine(track, 600);
    timeCommand("sox", {"-D", "-n", "-r", "44100", "-c", "2", "-b", "16", clip, "synth", "10", "sine", "880",
                        "vol", "0.5"});
    const EditState state{folder, track, clip, calculateSegmentVariables({600, 40, 60, 300, 600}),
                          600,    40,    60};
    const ResultNames names(folder);
    const QList<QPair<const char*, EditPlan>> edits = {
        {"cut", buildCutPlan(state, names, false)},
        {"paste at position", buildPastePlan(state, names, PastePlace::CurrentPosition)},
        {"paste mixing at position", buildPasteMixPlan(state, names, PastePlace::CurrentPosition)},
        // The selection runs from 40 % to 60 %: two minutes of the ten.
        {"echo on the selection",
         buildEffectSelectionPlan(state, names, {{}, {"echo", "0.80", "0.90", "1000.00", "0.50"}})},
    };
    PlanRunner runner(foundTools());
    std::printf(
        "\nEdits of a 10-minute stereo WAV: the editor's runner beside a shell script (median of 6)\n");
    for (const auto& [name, edit] : edits)
        printSideBySide(name, sideBySide(runner, edit.plan, folder, 6));
}

// The mixer's join of three 10-minute tracks one after another: the second
// and third are padded by 10 and 20 minutes, then all three mixed.
void compareJoinWithAShell(const QString& folder) {
    AudioTracks tracks;
    for (int i = 0; i < 3; ++i) {
        const QString path = folder + QString("/join-%1.wav").arg(i);
        makeSine(path, 600);
        tracks.append({QFileInfo(path).fileName(), path, 600, quint64(600 * i), {}});
    }
    const Plan plan = buildMixPlan(tracks, folder + "/joined.wav").plan;
    PlanRunner runner(foundTools());
    std::printf("\nJoining three 10-minute tracks (two padded): the editor's runner beside a shell script "
                "(median of 7)\n");
    printSideBySide("join", sideBySide(runner, plan, folder, 7));
    double stall = 0;
    timeThroughRunner(runner, plan, &stall);
    std::printf(
        "  longest interface-thread stall during the join: %.1f ms (timer interval 10 ms; target < 50 "
        "ms)\n",
        stall);
    std::fflush(stdout);
}

// The export as the export dialog submits it: default settings, the
// destination watched for the progress shown meanwhile, its length read back.
Plan exportPlan(const QString& wav, const QString& destination) {
    const QStringList arguments = *exporting::exportArguments(wav, {}, destination);
    return exporting::buildExportPlan(destination, arguments,
                                      exporting::expectedBytes(destination, {}, audioSeconds(wav)),
                                      qint64(audioSeconds(wav)));
}

void compareExportsWithAShell(const QString& folder, const QString& hour) {
    const QString ten = folder + "/ten-minutes.wav";
    if (!QFile::exists(ten))
        makeSine(ten, 600);
    PlanRunner runner(foundTools());
    std::printf(
        "\nExports at the default settings (44100 Hz, stereo, 40k): the editor's runner beside the same "
        "ffmpeg run from a shell script (median of 7 for 10 minutes, of 3 for 1 hour)\n");
    for (const auto& [name, wav, rounds] :
         {std::tuple{"10 minutes as WAV", ten, 7}, std::tuple{"10 minutes as MP3", ten, 7},
          std::tuple{"1 hour as WAV", hour, 3}, std::tuple{"1 hour as MP3", hour, 3}}) {
        const QString suffix = QString(name).endsWith("WAV") ? "wav" : "mp3";
        printSideBySide(name,
                        sideBySide(runner, exportPlan(wav, folder + "/exported." + suffix), folder, rounds));
    }
    // The stall on its own run, the longest of them.
    double stall = 0;
    timeThroughRunner(runner, exportPlan(hour, folder + "/exported.mp3"), &stall);
    std::printf(
        "  longest interface-thread stall during the 1-hour MP3 export: %.1f ms (timer interval 10 ms; "
        "target < 50 ms)\n",
        stall);
}

// Cancel pressed a second into an echo over the hour: how long until the
// runner is idle again, the child killed and its files deleted.
void measureCancel(const QString& folder, const QString& hour) {
    PlanRunner runner(foundTools());
    const EditState state{folder, hour, {}, {}, 3600, 40, 60};
    std::vector<double> times;
    for (int i = 0; i < 5; ++i) {
        const EditPlan echo =
            buildEffectPlan(state, ResultNames(folder), {{}, {"echo", "0.8", "0.88", "60", "0.4"}});
        QEventLoop loop;
        bool cancelled = false;
        runner.submit(echo.plan, nullptr, [&](const PlanOutcome& outcome) {
            cancelled = outcome.cancelled;
            loop.quit();
        });
        QElapsedTimer clock;
        QTimer::singleShot(1000, [&] {
            clock.start();
            runner.cancel();
        });
        loop.exec();
        // The completion above runs as the runner turns idle; the runner's
        // own bookkeeping after it is part of the time too.
        while (runner.isBusy())
            QCoreApplication::processEvents();
        times.push_back(clock.nsecsElapsed() / 1e6);
        if (!cancelled || QFile::exists(echo.result))
            std::printf("  round %d: the echo was not cancelled cleanly\n", i + 1);
    }
    std::printf("\nCancel during an echo over a 1-hour track, to an idle runner (median of 5)\n");
    std::printf("  %.1f ms (max %.1f ms; target < 200 ms)\n", median(times),
                *std::max_element(times.begin(), times.end()));
    std::fflush(stdout);
}

// Ten 1-minute files through a three-step recipe: the batch one file at a
// time beside the saved script run on each file by a shell loop, and the
// batch with every processor beside the script fanned out by xargs -P, each
// writing into a fresh folder.
void compareBatchWithTheScript(const QString& folder) {
    QStringList inputs;
    for (int i = 0; i < 10; ++i) {
        inputs << folder + QString("/minute-%1.wav").arg(i);
        makeSine(inputs.last(), 60);
    }
    Recipe recipe;
    for (const char* key : {"Normalize", "Echo", "FadeIn"}) {
        const EffectEntry* entry = findEffect(key);
        recipe.steps << *effectReplay(key, entry->title, startValues(entry->dialog)).step;
    }
    recipe.exportChoice.format = 2; // MP3
    const QString script = folder + "/recipe.sh";
    QFile file(script);
    file.open(QIODevice::WriteOnly);
    file.write(recipeScript(recipe).toUtf8());
    file.close();
    QDir().mkpath(folder + "/work");
    PlanRunner runner(foundTools());
    int round = 0;
    auto freshFolder = [&] {
        const QString out = folder + QString("/batch-out-%1").arg(++round);
        QDir().mkpath(out);
        return out;
    };
    const int processors = std::max(1, QThread::idealThreadCount());
    auto throughTheEditor = [&](int atOnce) {
        const QString out = freshFolder();
        const QStringList outputs =
            outputPaths(inputs, out, "mp3", [](const QString& p) { return QFile::exists(p); });
        BatchRun run(runner, recipe, inputs, outputs, folder + "/work");
        run.setFilesAtOnce(atOnce);
        QEventLoop loop;
        QObject::connect(&run, &BatchRun::finished, &loop, &QEventLoop::quit);
        QElapsedTimer clock;
        clock.start();
        run.start();
        loop.exec();
        const double ms = clock.nsecsElapsed() / 1e6;
        if (run.count(BatchRun::FileResult::Done) != inputs.size())
            std::printf("  the batch did not make every file\n");
        return ms;
    };
    auto throughTheScript = [&] {
        const QStringList loop{"-c",
                               "script=$1; out=$2; shift 2; for f in \"$@\"; do sh \"$script\" \"$f\" "
                               "\"$out/$(basename \"$f\" .wav).mp3\" > /dev/null || exit 1; done",
                               "batch", script, freshFolder()};
        return timeCommand("sh", loop + inputs);
    };
    auto throughTheScriptAtOnce = [&] {
        const QStringList fanned{
            "-c",
            "script=$1; out=$2; n=$3; shift 3; printf '%s\\n' \"$@\" | xargs -P \"$n\" -I{} "
            "sh -c 'sh \"$0\" \"$2\" \"$1/$(basename \"$2\" .wav).mp3\" > /dev/null' "
            "\"$script\" \"$out\" {}",
            "batch",
            script,
            freshFolder(),
            QString::number(processors)};
        return timeCommand("sh", fanned + inputs);
    };
    std::vector<double> editor, shell, editorAtOnce, shellAtOnce;
    for (int i = 0; i < 3; ++i) {
        timeCommand("sync", {});
        if (i % 2 == 0) {
            shell.push_back(throughTheScript());
            editor.push_back(throughTheEditor(1));
            shellAtOnce.push_back(throughTheScriptAtOnce());
            editorAtOnce.push_back(throughTheEditor(processors));
        } else {
            editorAtOnce.push_back(throughTheEditor(processors));
            shellAtOnce.push_back(throughTheScriptAtOnce());
            editor.push_back(throughTheEditor(1));
            shell.push_back(throughTheScript());
        }
    }
    std::printf("\nA three-step recipe (normalize, echo, fade in; MP3) over ten 1-minute files: the batch "
                "beside its saved script (median of 3)\n");
    printSideBySide("one file at a time", {median(editor), median(shell)});
    printSideBySide("all processors at once", {median(editorAtOnce), median(shellAtOnce)});
    std::printf("  the batch with %d processors took %.2f of the time one at a time took\n", processors,
                median(editorAtOnce) / median(editor));
}

// The overview and the peak summaries of a 1-hour WAV beside sox and cat,
// and the memory reading them takes.
void measureWaveform(const QString& self, const QString& hour) {
    timeCommand("cat", {hour}); // warm the page cache for every contender alike

    std::vector<double> points, sox, cat;
    for (int i = 0; i < 3; ++i) {
        points.push_back(timeReduction(hour));
        sox.push_back(timeCommand("sox", {hour, "-n", "stat"}));
        cat.push_back(timeCommand("sh", {"-c", "cat \"$0\" > /dev/null", hour}));
    }
    const double p = median(points), s = median(sox), c = median(cat);
    std::printf("\n1024 waveform points and the peak summaries of a 1-hour WAV, in one pass (median of 3)\n");
    std::printf("  points and peaks  %8.1f ms\n", p);
    std::printf("  sox FILE -n stat  %8.1f ms   points/sox = %.3f (target <= 0.200)\n", s, p / s);
    std::printf("  cat FILE          %8.1f ms   points/cat = %.2f  (target <= 1.10)\n", c, p / c);
    const Waveform w = reduceWaveform(hour);
    std::printf("  peak summaries: %.2f MB for %d channels (target <= 16 MB)\n",
                double(w.peaks.bytes()) / (1024 * 1024), w.peaks.channelCount());

    QProcess child;
    child.start(self, {"--reduce", hour});
    child.waitForFinished(-1);
    const QList<QByteArray> kb = child.readAll().trimmed().split(' ');
    if (kb.size() == 2)
        std::printf(
            "  peak memory: %.1f MB for the whole process (%.1f MB before reading; target < 100 MB)\n",
            kb[1].toDouble() / 1024, kb[0].toDouble() / 1024);

    std::fflush(stdout);
    QProcess painter;
    painter.setProcessChannelMode(QProcess::ForwardedChannels);
    painter.start(self, {"--paint", hour});
    painter.waitForFinished(-1);
}

// Preview's press-to-sound time in a child under a private sound server, then
// the same tool runs from a shell script.
void measurePreview(const QString& self, const QString& folder, const QString& hour) {
    std::printf("\nPreview in the echo dialog on ten seconds of a 1-hour track (median of 7)\n");
    std::fflush(stdout);
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedChannels);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("HOME", folder + "/preview-home");
    if (!environment.contains("DISPLAY"))
        environment.insert("QT_QPA_PLATFORM", "offscreen");
    child.setProcessEnvironment(environment);
    child.start(QStringLiteral(TANSELO_SOURCE_DIR "/scripts/with-audio-server.sh"),
                {self, "--preview", hour});
    child.waitForFinished(-1);

    const EditState state{
        folder, hour,           {}, calculateSegmentVariables({3600, 50, 50 + 10.0f / 36, 0, 3600}), 3600,
        50,     50 + 10.0f / 36};
    const Plan plan =
        buildPreviewPlan(state, previewFiles(folder, 0),
                         findEffect("Echo")->arguments(startValues(*findDialog("Window_Echo"))), true);
    std::vector<double> shell;
    for (int i = 0; i < 7; ++i)
        shell.push_back(timeCommand("sh", {"-c", shellScript(plan, foundTools())}));
    std::printf("  the same tool runs from a shell script: %.0f ms median\n", median(shell));
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 3 && QByteArray(argv[1]) == "--reduce")
        return reduceAndReportMemory(QString::fromLocal8Bit(argv[2]));
    if (argc == 3 && QByteArray(argv[1]) == "--paint")
        return paintAndReport(argc, argv, QString::fromLocal8Bit(argv[2]));
    if (argc == 2 && QByteArray(argv[1]) == "--startup")
        return startAndReportShown(argc, argv);
    if (argc == 3 && QByteArray(argv[1]) == "--preview")
        return previewAndReport(argc, argv, QString::fromLocal8Bit(argv[2]));
    if (argc == 3 && QByteArray(argv[1]) == "--edits")
        return editAndReport(argc, argv, QString::fromLocal8Bit(argv[2]));
    if (argc == 2 && QByteArray(argv[1]) == "--startup-recovered")
        return startRecoveredAndReport(argc, argv);

    QCoreApplication application(argc, argv);
    const QString self = QCoreApplication::applicationFilePath();
    QTemporaryDir dir;
    if (argc == 2 && QByteArray(argv[1]) == "--batch") {
        compareBatchWithTheScript(dir.path());
        return 0;
    }
    if (argc == 2 && QByteArray(argv[1]) == "--recovery") {
        measureRecovery(self, dir.path());
        return 0;
    }
    const QString hour = dir.filePath("one-hour.wav");
    std::printf("Making a 1-hour 44.1 kHz stereo 16-bit WAV…\n");
    std::fflush(stdout);
    makeSine(hour, 3600);
    if (argc == 2 && QByteArray(argv[1]) == "--exports") { // the exports alone
        compareExportsWithAShell(dir.path(), hour);
        return 0;
    }
    if (argc == 2 && QByteArray(argv[1]) == "--join") {
        compareJoinWithAShell(dir.path());
        return 0;
    }
    if (argc == 2 && QByteArray(argv[1]) == "--waveform") {
        measureWaveform(self, hour);
        return 0;
    }
    if (argc == 2 && QByteArray(argv[1]) == "--cancel") {
        measureCancel(dir.path(), hour);
        return 0;
    }
    if (argc == 2 && QByteArray(argv[1]) == "--preview") {
        measurePreview(self, dir.path(), hour);
        return 0;
    }
    measureWaveform(self, hour);

    std::vector<double> startUps;
    for (int i = 0; i < 5; ++i)
        startUps.push_back(timeStartUp(self, dir.filePath(QString("home%1").arg(i))));
    std::printf("\nProcess start to the first window showing the silence track (median of 5)\n");
    std::printf("  %.0f ms (runs:", median(startUps));
    for (double ms : startUps)
        std::printf(" %.0f", ms);
    std::printf("; target < 500 ms; the two 0.1 s start-up timers are part of it)\n");

    std::printf("\nLongest interface-thread stall while a 20 s tool run executes\n");
    std::fflush(stdout);
    std::printf("  %.1f ms (timer interval 10 ms; target < 50 ms)\n", longestStallDuringToolRun(20));
    std::fflush(stdout);

    compareEditsWithAShell(dir.path());
    compareExportsWithAShell(dir.path(), hour);
    measureCancel(dir.path(), hour);
    compareJoinWithAShell(dir.path());
    compareBatchWithTheScript(dir.path());
    measurePreview(self, dir.path(), hour);
    measureRecovery(self, dir.path());
    return 0;
}
