// The waveform of a one-hour track at every zoom: painted column by column
// from the track's summary of peaks, the samples of a deeply zoomed view read
// on a worker thread, so that no paint waits for the disk.

#include "application/AppDelegate.h"
#include "document/Document.h"
#include "document/Waveform.h"
#include "document/WaveformPlot.h"
#include "support/Fixtures.h"
#include "support/Gui.h"
#include "timeline/ZoomActions.h"
#include "timeline/ZoomRules.h"

#include <QElapsedTimer>
#include <QImage>
#include <QScrollArea>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <atomic>
#include <cmath>

namespace {
constexpr int Rate = 44100;
std::atomic<int> readsOnInterfaceThread{0};
std::atomic<int> readsOnWorkers{0};
QThread* interfaceThread = nullptr;

// A minute of a 200 ms burst each second, the bursts' loudness rising and
// falling over the minute, so that neighbouring columns differ.
std::vector<short> minuteOfBursts() {
    std::vector<short> samples(std::size_t(60 * Rate * 2), 0);
    for (int second = 0; second < 60; ++second) {
        const double level = 0.1 + 0.8 * std::abs(std::sin(second * M_PI / 60.0));
        for (int i = 0; i < Rate / 5; ++i) {
            const auto value = short(std::lround(level * 32767 * std::sin(i * 2 * M_PI * 440 / Rate)));
            const std::size_t at = std::size_t((second * Rate + i) * 2);
            samples[at] = samples[at + 1] = value;
        }
    }
    return samples;
}

// How many pixels of each column of `image` differ from its top row's colour.
std::vector<int> paintedHeights(const QImage& image) {
    std::vector<int> heights(std::size_t(image.width()), 0);
    for (int x = 0; x < image.width(); ++x)
        for (int y = 0; y < image.height(); ++y)
            if (image.pixel(x, y) != image.pixel(x, 0))
                ++heights[std::size_t(x)];
    return heights;
}
} // namespace

class tst_WaveformPlot : public QObject {
    Q_OBJECT
    QTemporaryDir m_root;
    std::unique_ptr<AppDelegate> m_app;
    Document* m_document = nullptr;

private slots:
    void initTestCase() {
        interfaceThread = QThread::currentThread();
        setSampleReadWatcher([] {
            if (QThread::currentThread() == interfaceThread)
                ++readsOnInterfaceThread;
            else
                ++readsOnWorkers;
        });
        const QString hour = m_root.filePath("interview.wav");
        QVERIFY(fixtures::writeWav(hour, minuteOfBursts(), 60));
        m_app = gui::startApplication(m_root.filePath("home"));
        m_document = gui::openInNewWindow(*m_app, hour);
        QVERIFY(m_document);
        QTRY_VERIFY_WITH_TIMEOUT(m_document->audioPlot->summary() != nullptr, 120000);
        QCOMPARE(m_document->audioPlot->summary()->frames, qint64(3600) * Rate);
        m_document->resize(1000, 400);
        m_document->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_document));
    }

    void cleanupTestCase() {
        m_app.reset();
        setSampleReadWatcher({});
    }

    void atZoomOneEachColumnIsThePeakUnderIt() {
        // An hour over some thousand columns: each is 3.6 s, drawn from the
        // coarse level, as high as its loudest burst.
        Document* d = m_document;
        d->zoomActions().setZoomFactor(1);
        WaveformPlot* plot = d->audioPlot;
        const QImage image = plot->grab().toImage();
        const std::vector<int> heights = paintedHeights(image);
        const qint64 width = image.width();
        const std::vector<float> peaks = columnPeaks(*plot->summary(), nullptr, 0, int(width), width).front();
        const double mid = image.height() / 2.0;
        int differing = 0;
        for (qint64 x = 0; x < width; ++x) {
            const double expected = 2 * std::round(peaks[std::size_t(x)] * mid);
            QVERIFY2(std::abs(heights[std::size_t(x)] - expected) <= 2,
                     qPrintable(QString("column %1: %2 pixels painted, %3 expected")
                                    .arg(x)
                                    .arg(heights[std::size_t(x)])
                                    .arg(expected)));
            differing += x > 0 && std::abs(peaks[std::size_t(x)] - peaks[std::size_t(x - 1)]) > 0.01f;
        }
        QVERIFY2(differing > width / 4, "the columns should follow the bursts' loudness");
    }

    void atAFramePerPixelOrLessTheSamplesAreALine() {
        // Half a second of a 441 Hz tone at half scale, 30 pixels a frame and
        // more: each sample a point of the line at the middle of its pixels.
        std::vector<short> tone(std::size_t(Rate / 2 * 2));
        for (std::size_t f = 0; f < tone.size() / 2; ++f)
            tone[2 * f] = tone[2 * f + 1] =
                short(std::lround(16384 * std::sin(double(f) * 2 * M_PI * 441 / Rate)));
        const QString path = m_root.filePath("tone.wav");
        QVERIFY(fixtures::writeWav(path, tone));
        Waveform waveform = reduceWaveform(path);
        QVERIFY(waveform.ok);
        const qint64 frames = waveform.frames;
        const int interfaceReadsBefore = readsOnInterfaceThread; // the test's reading above
        WaveformPlot plot;
        plot.setColor(Qt::green);
        plot.setBackgroundColor(Qt::black);
        plot.setPoints(waveform.channels.front());
        plot.setSummary(std::make_shared<const PeakSummary>(std::move(waveform.peaks)), path);
        constexpr int Height = 200, Width = 1000;
        plot.resize(int(frames) * 30 + 7, Height);
        const int from = plot.width() / 2;
        QImage frame(Width, Height, QImage::Format_ARGB32);
        const auto paint = [&] {
            frame.fill(Qt::black);
            plot.render(&frame, QPoint(), QRegion(from, 0, Width, Height));
        };
        paint(); // asks for the samples; the finer peaks stand in meanwhile
        QTRY_VERIFY(!plot.readingSamples());
        paint();
        const double mid = Height / 2.0, perFrame = double(plot.width()) / double(frames);
        int points = 0;
        for (qint64 f = qint64(from / perFrame); (double(f) + 0.5) * perFrame < from + Width; ++f) {
            const double x = (double(f) + 0.5) * perFrame - from;
            if (x < 1 || x > Width - 2)
                continue;
            const double y = mid - tone[std::size_t(2 * f)] / 32768.0 * mid;
            bool drawn = false;
            for (int dx = -1; dx <= 1; ++dx)
                for (int dy = -1; dy <= 1; ++dy)
                    drawn = drawn ||
                            qGreen(frame.pixel(int(x) + dx, std::clamp(int(y) + dy, 0, Height - 1))) > 60;
            QVERIFY2(drawn, qPrintable(QString("frame %1 at %2, %3").arg(f).arg(x).arg(y)));
            ++points;
        }
        QVERIFY(points >= Width / 31);
        QCOMPARE(readsOnInterfaceThread.load(), interfaceReadsBefore);
        // A line, not a filled shape: the mirror of a loud sample is not painted.
        const qint64 loud = qint64((from + Width / 2) / perFrame);
        const double x = (double(loud) + 0.5) * perFrame - from;
        const short sample = tone[std::size_t(2 * loud)];
        if (std::abs(sample) > 8000)
            QCOMPARE(qGreen(frame.pixel(int(x), int(mid + sample / 32768.0 * mid))), 0);
    }

    void theDeepestZoomIsPaintedWithoutReadingOnTheInterfaceThread() {
        Document* d = m_document;
        WaveformPlot* plot = d->audioPlot;
        QScrollBar* bar = d->scrollviewAudioPlot->horizontalScrollBar();
        const int visible = d->scrollviewAudioPlot->viewport()->width();
        d->zoomActions().setZoomFactor(quint64(zoom::largestFactor(visible)));
        QCOMPARE(qint64(plot->width()), qint64(zoom::largestFactor(visible)) * visible);
        QVERIFY(levelForColumns(plot->summary()->frames, plot->width()) == PeakLevel::Samples);

        // The event loop's longest pause while the view moves through ten
        // places, each painted at once, the reader working meanwhile.
        QElapsedTimer sinceTick;
        qint64 longestPause = 0;
        QTimer ticker;
        ticker.setInterval(2);
        connect(&ticker, &QTimer::timeout,
                [&] { longestPause = std::max(longestPause, sinceTick.restart()); });
        const int workerReadsBefore = readsOnWorkers;
        const int interfaceReadsBefore = readsOnInterfaceThread; // a test's own reading, not the plot's
        sinceTick.start();
        ticker.start();
        qint64 slowestPaint = 0;
        for (int place = 0; place < 10; ++place) {
            bar->setValue(int(qint64(bar->maximum()) * (2 * place + 1) / 20));
            QElapsedTimer paint;
            paint.start();
            plot->repaint();
            slowestPaint = std::max(slowestPaint, paint.elapsed());
            QTest::qWait(30);
        }
        QTRY_VERIFY(!plot->readingSamples());
        ticker.stop();
        qInfo("slowest paint %lld ms, longest pause of the event loop %lld ms", slowestPaint, longestPause);
        QCOMPARE(readsOnInterfaceThread.load(), interfaceReadsBefore);
        QVERIFY(readsOnWorkers > workerReadsBefore);

        // Once the samples are there, the columns are theirs: a burst's
        // loudness at 9.9 frames a column, not the finer level's 256.
        plot->repaint();
        QCOMPARE(readsOnInterfaceThread.load(), interfaceReadsBefore);
    }
};

QTEST_MAIN(tst_WaveformPlot)
#include "tst_waveformplot.moc"
