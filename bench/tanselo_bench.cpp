// Measures what the editor promises about speed, side by side with reference
// commands run on the same machine in the same run:
//   1. waveform points of a 1-hour WAV vs `sox FILE -n stat` and `cat FILE`;
//   2. the peak memory of that computation;
//   3. process start to the first window showing the loaded silence track;
//   4. the longest interface-thread stall while a 20 s tool run executes.
// Run it with `make bench`.

#include "app/AppDelegate.h"
#include "app/PlanRunner.h"
#include "document/Document.h"
#include "document/Waveform.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
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

double longestStallDuringToolRun(double seconds) {
    PlanRunner runner({QStandardPaths::findExecutable("sox"), QStandardPaths::findExecutable("ffmpeg")});
    QElapsedTimer sinceTick;
    qint64 longest = 0;
    QTimer timer;
    timer.setInterval(10);
    QObject::connect(&timer, &QTimer::timeout, [&] {
        longest = std::max(longest, sinceTick.nsecsElapsed());
        sinceTick.restart();
    });
    bool done = false;
    runner.submit(
        {{step::Run{Tool::FFmpeg,
                    {"-re", "-f", "lavfi", "-i", QString("anullsrc=d=%1").arg(seconds), "-f", "null", "-"}}}},
        nullptr, [&](const PlanOutcome&) { done = true; });
    sinceTick.start();
    timer.start();
    while (!done)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    return longest / 1e6;
}
} // namespace

int main(int argc, char** argv) {
    if (argc == 3 && QByteArray(argv[1]) == "--reduce")
        return reduceAndReportMemory(QString::fromLocal8Bit(argv[2]));
    if (argc == 2 && QByteArray(argv[1]) == "--startup")
        return startAndReportShown(argc, argv);

    QCoreApplication application(argc, argv);
    const QString self = QCoreApplication::applicationFilePath();
    QTemporaryDir dir;
    const QString hour = dir.filePath("one-hour.wav");
    std::printf("Making a 1-hour 44.1 kHz stereo 16-bit WAV…\n");
    std::fflush(stdout);
    timeCommand("sox", {"-D", "-n", "-r", "44100", "-c", "2", "-b", "16", hour, "synth", "3600", "sine",
                        "440", "vol", "0.5"});
    timeCommand("cat", {hour}); // warm the page cache for every contender alike

    std::vector<double> points, sox, cat;
    for (int i = 0; i < 3; ++i) {
        points.push_back(timeReduction(hour));
        sox.push_back(timeCommand("sox", {hour, "-n", "stat"}));
        cat.push_back(timeCommand("sh", {"-c", "cat \"$0\" > /dev/null", hour}));
    }
    const double p = median(points), s = median(sox), c = median(cat);
    std::printf("\n1024 waveform points of a 1-hour WAV (median of 3)\n");
    std::printf("  waveform points   %8.1f ms\n", p);
    std::printf("  sox FILE -n stat  %8.1f ms   points/sox = %.3f (target <= 0.200)\n", s, p / s);
    std::printf("  cat FILE          %8.1f ms   points/cat = %.2f  (target <= 3.00)\n", c, p / c);

    QProcess child;
    child.start(self, {"--reduce", hour});
    child.waitForFinished(-1);
    const QList<QByteArray> kb = child.readAll().trimmed().split(' ');
    if (kb.size() == 2)
        std::printf(
            "  peak memory: %.1f MB for the whole process (%.1f MB before reading; target < 100 MB)\n",
            kb[1].toDouble() / 1024, kb[0].toDouble() / 1024);

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
    return 0;
}
