#include "PaintBench.h"

#include "document/Waveform.h"
#include "document/WaveformPlot.h"
#include "timeline/ZoomRules.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QRegion>
#include <QThread>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

namespace {
constexpr int Visible = 1000;
constexpr int Height = 300;
constexpr int Positions = 50;

double medianOf(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

double worstOf(const std::vector<double>& values) {
    return values.empty() ? 0 : *std::max_element(values.begin(), values.end());
}

// One full-width frame of the plot from `offset`, as a scroll there paints it.
double paintAt(WaveformPlot& plot, QImage& frame, int offset) {
    QElapsedTimer clock;
    clock.start();
    plot.render(&frame, QPoint(), QRegion(offset, 0, Visible, Height));
    return double(clock.nsecsElapsed()) / 1e6;
}
} // namespace

int paintAndReport(int argc, char** argv, const QString& hour) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    Waveform waveform = reduceWaveform(hour);
    if (!waveform.ok)
        return 1;
    WaveformPlot plot;
    plot.setPoints(waveform.channels.front());
    plot.setSummary(std::make_shared<const PeakSummary>(std::move(waveform.peaks)), hour);
    QImage frame(Visible, Height, QImage::Format_ARGB32_Premultiplied);

    std::printf("\nPainting one %d-pixel frame of a 1-hour track, %d scroll positions a zoom "
                "(target <= 8 ms)\n",
                Visible, Positions);
    std::printf("  %-9s %-15s %-20s %-26s %s\n", "zoom", "frames/column", "paint median/worst",
                "with samples median/worst", "samples read median");
    const int largest = zoom::largestFactor(Visible);
    for (int step = 0; step <= 4; ++step) {
        const int factor = std::max(1, int(std::lround(std::pow(double(largest), step / 4.0))));
        plot.resize(Visible * factor, Height);
        std::vector<double> first, again, reads;
        for (int i = 0; i < Positions; ++i) {
            const int offset = int(qint64(plot.width() - Visible) * i / (Positions - 1));
            first.push_back(paintAt(plot, frame, offset));
            // Where the samples are read, the time until they are there, and
            // the frame painted from them.
            if (plot.readingSamples()) {
                QElapsedTimer wait;
                wait.start();
                while (plot.readingSamples()) {
                    QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
                    QThread::usleep(200);
                }
                reads.push_back(double(wait.nsecsElapsed()) / 1e6);
                again.push_back(paintAt(plot, frame, offset));
            }
        }
        const double perColumn = double(waveform.frames) / plot.width();
        std::printf("  %-9d %-15.1f %6.2f / %-11.2f", factor, perColumn, medianOf(first), worstOf(first));
        if (again.empty())
            std::printf(" %-26s %s\n", "(from the summaries)", "-");
        else
            std::printf(" %6.2f / %-17.2f %.1f ms\n", medianOf(again), worstOf(again), medianOf(reads));
    }
    std::fflush(stdout);
    return 0;
}
