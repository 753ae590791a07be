#include "RecoveryBench.h"

#include "application/AppDelegate.h"
#include "document/Document.h"
#include "effects/EffectActions.h"
#include "session/Manifest.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QMessageBox>
#include <QProcess>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <unistd.h>
#include <vector>

namespace {
constexpr int Edits = 200, Windows = 10, VersionsEach = 20;

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void run(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished(-1);
}

QProcessEnvironment childEnvironment(const QString& home) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("HOME", home);
    if (!environment.contains("DISPLAY"))
        environment.insert("QT_QPA_PLATFORM", "offscreen");
    return environment;
}

void waitUntil(const std::function<bool()>& done) {
    while (!done()) {
        QEventLoop loop;
        QTimer::singleShot(10, &loop, &QEventLoop::quit);
        loop.exec();
    }
}

// Starts a child and returns the milliseconds until it prints "shown".
double timeUntilShown(const QString& self, const QString& home, const QString& mode) {
    QProcess child;
    child.setProcessEnvironment(childEnvironment(home));
    QElapsedTimer clock;
    clock.start();
    child.start(self, {mode});
    bool shown = false;
    while (!shown && child.waitForReadyRead(-1))
        shown = child.readAll().contains("shown");
    const double ms = clock.nsecsElapsed() / 1e6;
    child.waitForFinished(-1);
    if (!shown)
        qFatal("the child (%s) ended without showing its windows", qPrintable(mode));
    return ms;
}

// A dead editor's work folder: 10 windows of 20 versions of a 10 s track
// (hard links of one file) and the manifest that lists them.
void makeDeadEditorsFolder(const QString& home, const QString& base) {
    QDir(home).removeRecursively();
    const QString work = home + "/Documents/Tanselo";
    QDir().mkpath(work);
    Manifest manifest;
    const QDateTime made = QDateTime::currentDateTime().addDays(-1);
    for (int w = 0; w < Windows; ++w) {
        ManifestWindow window{QString("track %1.wav").arg(w + 1), "#3070c0", {}, VersionsEach - 1, 0};
        for (int v = 0; v < VersionsEach; ++v) {
            const QString file = made.addSecs(w * 100 + v).toString("yyyy-MM-dd-HH-mm-ss") + ".wav";
            ::link(QFile::encodeName(base).constData(), QFile::encodeName(work + "/" + file).constData());
            window.versions.append({file, v == 0 ? QString("Opened track.wav") : QString("Echo"), made});
        }
        manifest.windows.append(window);
    }
    writeManifest(work, manifest);
}
} // namespace

int editAndReport(int argc, char** argv, const QString& track) {
    QApplication application(argc, argv);
    AppDelegate delegate;
    if (delegate.applicationDidFinishLaunching())
        return 1;
    delegate.openFiles({track});
    waitUntil([&] {
        return !delegate.documents().isEmpty() && delegate.documents().last()->b_Audio_Loaded &&
               !delegate.runner().isBusy();
    });
    Document* d = delegate.documents().last();
    // Blocks of 50 edits with the manifest and without it, taking turns, so
    // that a drift of the machine falls on both alike.
    double with = 0, without = 0;
    QElapsedTimer clock;
    for (int block = 0; block < 2 * Edits / 50; ++block) {
        const bool keeps = block % 2 == 0;
        delegate.setKeepsManifest(keeps);
        clock.start();
        for (int i = 0; i < 50; ++i) {
            QEventLoop adopted;
            QObject::connect(d, &Document::adopted, &adopted, &QEventLoop::quit);
            d->effectActions().OnPopupReverseEntireTrack();
            adopted.exec();
        }
        delegate.settleManifest();
        (keeps ? with : without) += clock.nsecsElapsed() / 1e6;
    }
    std::printf("%.1f %.1f %lld\n", with, without, qlonglong(d->history().versions().size()));
    std::fflush(stdout);
    std::_Exit(0);
}
int startRecoveredAndReport(int argc, char** argv) {
    QApplication application(argc, argv);
    AppDelegate delegate;
    if (delegate.applicationDidFinishLaunching())
        return 1;
    // Reopen is pressed as soon as the question shows.
    QTimer answer;
    answer.setInterval(5);
    QObject::connect(&answer, &QTimer::timeout, [] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
            for (QAbstractButton* button : box->buttons())
                if (button->text() == "Reopen")
                    button->click();
    });
    answer.start();
    if (!delegate.offerRecovery())
        return 1;
    int shown = 0;
    for (Document* d : delegate.documents())
        QObject::connect(d, &Document::plotUpdated, [&shown, d] {
            if (!d->property("benchShown").toBool()) {
                d->setProperty("benchShown", true);
                if (++shown == Windows) {
                    std::printf("shown\n");
                    std::fflush(stdout);
                    std::_Exit(0);
                }
            }
        });
    return QApplication::exec();
}

void measureRecovery(const QString& self, const QString& folder) {
    std::printf("\nThe manifest of the windows: 200 edits (reverse) of a 10 s track with it, 200 without\n");
    std::fflush(stdout);
    const QString track = folder + "/ten-seconds.wav";
    run("sox", {"-D", "-n", "-r", "44100", "-c", "2", "-b", "16", track, "synth", "10", "sine", "440", "vol",
                "0.5"});
    QProcess child;
    child.setProcessEnvironment(childEnvironment(folder + "/edits-home"));
    child.start(self, {"--edits", track});
    child.waitForFinished(-1);
    const QStringList figures = QString::fromLatin1(child.readAllStandardOutput()).split(' ');
    if (figures.size() == 3) {
        const double with = figures[0].toDouble(), without = figures[1].toDouble();
        std::printf("  %.0f ms with the manifest, %.0f ms without it (%d versions at the end): %.4f× "
                    "(target ≤ 1.02×)\n",
                    with, without, figures[2].toInt(), with / without);
    } else {
        std::printf("  the editing child failed\n");
    }

    std::printf("\nA start reopening 10 windows of 20 versions each, beside a plain start (median of 5)\n");
    std::fflush(stdout);
    const QString base = folder + "/base.wav";
    QFile::copy(track, base);
    std::vector<double> plain, recovered;
    for (int i = 0; i < 5; ++i) {
        const QString home = folder + QString("/start-home%1").arg(i);
        QDir(home).removeRecursively();
        plain.push_back(timeUntilShown(self, home, "--startup"));
        makeDeadEditorsFolder(home, base);
        recovered.push_back(timeUntilShown(self, home, "--startup-recovered"));
        QDir(home).removeRecursively();
    }
    std::printf("  plain start %.0f ms; reopening start %.0f ms: %.0f ms more (target ≤ 1000 ms)\n",
                median(plain), median(recovered), median(recovered) - median(plain));
}
