#include "PreviewBench.h"

#include "application/AppDelegate.h"
#include "document/Document.h"
#include "effects/EffectCatalogue.h"
#include "effects/EffectDialogs.h"
#include "effects/EffectPreview.h"
#include "plans/PlanRunner.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QMenu>
#include <QProcess>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {
constexpr int Presses = 7;

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Runs the event loop until `done` holds or `timeoutMs` have passed.
bool waitFor(const std::function<bool()>& done, int timeoutMs) {
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        if (clock.elapsed() > timeoutMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
    }
    return true;
}

// What the null sink plays, read from its monitor in 5 ms pieces.
class Monitor {
public:
    Monitor() {
        m_parec.start("parec", {"--latency-msec=5", "--device=nullsink.monitor", "--format=s16le",
                                "--rate=44100", "--channels=2"});
        m_parec.waitForStarted(5000);
    }
    ~Monitor() {
        m_parec.kill();
        m_parec.waitForFinished(5000);
    }
    void forget() { m_parec.readAllStandardOutput(); }
    // Whether a sample louder than a twentieth of full scale came since the last look.
    bool heardSound() {
        const QByteArray bytes = m_parec.readAllStandardOutput();
        const auto* samples = reinterpret_cast<const short*>(bytes.constData());
        return std::any_of(samples, samples + bytes.size() / 2, [](short s) { return std::abs(s) > 1638; });
    }

private:
    QProcess m_parec;
};

void measure(EffectDialog* echo) {
    EffectPreview* preview = echo->findChild<EffectPreview*>();
    Monitor monitor;
    std::vector<double> toSound, toMade;
    for (int i = 0; i < Presses; ++i) {
        waitFor([] { return false; }, 300); // the last preview's sound has left the sink
        monitor.forget();
        double made = -1;
        QElapsedTimer clock;
        const auto connection =
            QObject::connect(preview, &EffectPreview::started, [&] { made = clock.nsecsElapsed() / 1e6; });
        clock.start();
        echo->buttonPreview->click();
        const bool heard = waitFor([&] { return monitor.heardSound(); }, 10000);
        const double ms = clock.nsecsElapsed() / 1e6;
        QObject::disconnect(connection);
        if (!heard || made < 0) {
            std::printf("  run %d: nothing was heard\n", i + 1);
            continue;
        }
        toSound.push_back(ms);
        toMade.push_back(made);
        echo->buttonPreview->click(); // stops it
    }
    if (toSound.empty())
        return;
    std::printf(
        "  Preview pressed to the first sample at the output: %.0f ms median (target <= 300 ms; runs:",
        median(toSound));
    for (double ms : toSound)
        std::printf(" %.0f", ms);
    std::printf(")\n  of which the preview's tool runs through the runner: %.0f ms median (runs:",
                median(toMade));
    for (double ms : toMade)
        std::printf(" %.0f", ms);
    std::printf(")\n");
    std::fflush(stdout);
}
} // namespace

int previewAndReport(int argc, char** argv, const QString& hour) {
    QApplication application(argc, argv);
    AppDelegate delegate;
    if (delegate.applicationDidFinishLaunching())
        return 1;
    delegate.openFiles({hour});
    Document* d = nullptr;
    if (!waitFor(
            [&] {
                d = delegate.documents().isEmpty() ? nullptr : delegate.documents().last();
                return d && d->track().s_File_Path == hour && d->track().i_Audio_Duration_Seconds > 0 &&
                       !delegate.runner().isBusy();
            },
            120000)) {
        std::printf("  the hour did not open\n");
        return 1;
    }
    // Ten seconds from the half hour.
    d->track().f_Selection_Start = 50.0f;
    d->track().f_Selection_End = 50.0f + 10.0f / 36.0f;
    d->effectActions().fillEffectsMenu();
    QAction* item =
        d->effectActions().popupMenuEffects->findChild<QAction*>(QStringLiteral("OnPopupEchoSelection"));
    QTimer poll;
    poll.setInterval(10);
    QObject::connect(&poll, &QTimer::timeout, [&] {
        auto* echo = qobject_cast<EffectDialog*>(QApplication::activeModalWidget());
        if (!echo)
            return;
        poll.stop();
        measure(echo);
        echo->OnCancel();
    });
    poll.start();
    item->trigger();
    return 0;
}
