// The peaks a zoomed view draws, column by column, against the peaks taken
// straight from the file's samples with libsndfile.

#include "document/PeakSummary.h"
#include "document/Waveform.h"
#include "support/Fixtures.h"
#include "timeline/ZoomRules.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

namespace {
constexpr int Rate = 44100;
constexpr int VisibleWidth = 1000;

// The largest magnitude of channel `c` over frames [first, end), full scale 1.
float directPeak(const std::vector<short>& samples, int c, qint64 first, qint64 end) {
    int peak = 0;
    for (qint64 f = first; f < end; ++f)
        peak = std::max(peak, std::abs(int(samples[std::size_t(f * 2 + c)])));
    return float(peak) / 32768.0f;
}

struct Click {
    qint64 frame;
    short left, right;
};
} // namespace

class tst_PeakSummary : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;
    QString m_clicks; // ten minutes of silence with a 1 ms click every 7.3 s
    std::vector<Click> m_clickList;
    std::vector<short> m_samples;
    Waveform m_waveform;

    // Columns [first, first + count) of a drawing `width` wide equal the
    // direct peaks of the frames each column stands for.
    void checkColumns(qint64 width, qint64 first, int count) {
        const qint64 frames = m_waveform.peaks.frames;
        const PeakLevel level = levelForColumns(frames, width);
        SampleStretch stretch;
        if (level == PeakLevel::Samples) {
            const qint64 from = columnSpan(first, width, frames, level).first;
            const qint64 to = columnSpan(first + count - 1, width, frames, level).end;
            stretch = readSampleStretch(m_clicks, from, to - from);
            QCOMPARE(stretch.frameCount(), to - from);
        }
        const auto peaks = columnPeaks(m_waveform.peaks, &stretch, first, count, width);
        QCOMPARE(peaks.size(), std::size_t(2));
        for (int i = 0; i < count; ++i) {
            const FrameSpan span = columnSpan(first + i, width, frames, level);
            QVERIFY(span.end > span.first);
            for (int c = 0; c < 2; ++c)
                QVERIFY2(peaks[std::size_t(c)][std::size_t(i)] ==
                             directPeak(m_samples, c, span.first, span.end),
                         qPrintable(QString("width %1, column %2, channel %3: %4 drawn, %5 in the samples")
                                        .arg(width)
                                        .arg(first + i)
                                        .arg(c)
                                        .arg(peaks[std::size_t(c)][std::size_t(i)])
                                        .arg(directPeak(m_samples, c, span.first, span.end))));
        }
    }

    // The column of a drawing `width` wide that frame `frame` falls in.
    qint64 columnOf(qint64 frame, qint64 width) const {
        const qint64 frames = m_waveform.peaks.frames;
        const PeakLevel level = levelForColumns(frames, width);
        qint64 x = qint64(__int128(frame) * width / frames);
        while (x > 0 && columnSpan(x, width, frames, level).first > frame)
            --x;
        while (columnSpan(x, width, frames, level).end <= frame)
            ++x;
        return x;
    }

    // Every click shows in its column at its own height, and the columns
    // either side of it are silent.
    void checkClicks(qint64 width) {
        const qint64 frames = m_waveform.peaks.frames;
        const PeakLevel level = levelForColumns(frames, width);
        for (const Click& click : m_clickList) {
            const qint64 x = columnOf(click.frame, width);
            SampleStretch stretch;
            if (level == PeakLevel::Samples) {
                const FrameSpan from = columnSpan(x - 1, width, frames, level);
                const FrameSpan to = columnSpan(x + 1, width, frames, level);
                stretch = readSampleStretch(m_clicks, from.first, to.end - from.first);
            }
            const auto peaks = columnPeaks(m_waveform.peaks, &stretch, x - 1, 3, width);
            QCOMPARE(peaks[0][1], float(click.left) / 32768.0f);
            QCOMPARE(peaks[1][1], float(-click.right) / 32768.0f);
            // A click is 44 frames long: it may reach into the next column, never the one before.
            QCOMPARE(peaks[0][0], 0.0f);
            if (columnSpan(x + 1, width, frames, level).first >= click.frame + 44)
                QCOMPARE(peaks[0][2], 0.0f);
        }
    }

private slots:
    void initTestCase() {
        QVERIFY(m_dir.isValid());
        m_clicks = m_dir.filePath("clicks.wav");
        const qint64 frames = qint64(600) * Rate;
        m_samples.assign(std::size_t(frames * 2), 0);
        for (int i = 1; qint64(i * 7.3 * Rate) + 44 < frames; ++i) {
            const Click click{qint64(i * 7.3 * Rate), short(1000 + 300 * i), short(-(20000 - 150 * i))};
            for (qint64 f = click.frame; f < click.frame + 44; ++f) {
                m_samples[std::size_t(f * 2)] = click.left;
                m_samples[std::size_t(f * 2 + 1)] = click.right;
            }
            m_clickList.push_back(click);
        }
        QCOMPARE(m_clickList.size(), std::size_t(82));
        QVERIFY(fixtures::writeWav(m_clicks, m_samples));
        m_waveform = reduceWaveform(m_clicks);
        QVERIFY(m_waveform.ok);
        QCOMPARE(m_waveform.peaks.frames, frames);
    }

    void theLevelsHoldThePeaksOfTheirFrames() {
        const PeakSummary& peaks = m_waveform.peaks;
        QCOMPARE(peaks.fine[0].size(), std::size_t((peaks.frames + 255) / 256));
        QCOMPARE(peaks.coarse[0].size(), std::size_t((peaks.frames + 65535) / 65536));
        for (int c = 0; c < 2; ++c) {
            for (std::size_t v = 0; v < peaks.fine[std::size_t(c)].size(); ++v)
                QCOMPARE(float(peaks.fine[std::size_t(c)][v]) / 32768.0f,
                         directPeak(m_samples, c, qint64(v) * 256,
                                    std::min<qint64>(peaks.frames, qint64(v + 1) * 256)));
            for (std::size_t v = 0; v < peaks.coarse[std::size_t(c)].size(); ++v)
                QCOMPARE(float(peaks.coarse[std::size_t(c)][v]) / 32768.0f,
                         directPeak(m_samples, c, qint64(v) * 65536,
                                    std::min<qint64>(peaks.frames, qint64(v + 1) * 65536)));
        }
    }

    void aFileReadInTwoHalvesKeepsEveryFineValue() {
        // Long enough to be read in two halves, whose meeting point falls
        // inside a fine value (44,100 × 30 / 1024 × 512 is no multiple of
        // 256). Within each 256 frames the level rises, so a fine value's peak
        // is its last frame: the one the second half reads.
        const QString noise = m_dir.filePath("ramps.wav");
        std::vector<short> samples(std::size_t(30 * Rate * 2));
        auto* random = QRandomGenerator::global();
        for (std::size_t f = 0; f < samples.size() / 2; ++f) {
            const int level = int(f % 256) * 120 + int(random->bounded(10));
            samples[2 * f] = short(level);
            samples[2 * f + 1] = short(-level);
        }
        QVERIFY(fixtures::writeWav(noise, samples));
        const Waveform w = reduceWaveform(noise);
        QVERIFY(w.ok);
        for (int c = 0; c < 2; ++c)
            for (std::size_t v = 0; v < w.peaks.fine[std::size_t(c)].size(); ++v)
                QCOMPARE(float(w.peaks.fine[std::size_t(c)][v]) / 32768.0f,
                         directPeak(samples, c, qint64(v) * 256,
                                    std::min<qint64>(w.peaks.frames, qint64(v + 1) * 256)));
    }

    void columnsAbutAndCoverTheTrack() {
        const qint64 frames = m_waveform.peaks.frames;
        for (const qint64 width :
             {qint64(VisibleWidth), qint64(VisibleWidth) * 300, qint64(zoom::WidestContent)}) {
            const PeakLevel level = levelForColumns(frames, width);
            QCOMPARE(columnSpan(0, width, frames, level).first, qint64(0));
            QCOMPARE(columnSpan(width - 1, width, frames, level).end, frames);
            for (const qint64 x : {qint64(1), width / 3, width / 2 + 7, width - 1})
                QCOMPARE(columnSpan(x, width, frames, level).first,
                         columnSpan(x - 1, width, frames, level).end);
        }
        QCOMPARE(levelForColumns(frames, VisibleWidth), PeakLevel::Fine);
        QCOMPARE(levelForColumns(frames, 100), PeakLevel::Coarse);
        QCOMPARE(levelForColumns(frames, zoom::WidestContent), PeakLevel::Samples);
    }

    void atZoomOneEveryColumnIsTheSamplesPeak() {
        checkColumns(VisibleWidth, 0, VisibleWidth);
        checkClicks(VisibleWidth);
        // The overview: a narrow window of the whole track, from the coarse level.
        checkColumns(200, 0, 200);
        checkClicks(200);
    }

    void atAMiddleZoomEveryColumnIsTheSamplesPeak() {
        const qint64 width = qint64(VisibleWidth) * 30;
        for (const qint64 first : {qint64(0), width / 2 - 500, width - VisibleWidth})
            checkColumns(width, first, VisibleWidth);
        checkClicks(width);
    }

    void atTheDeepestZoomEveryColumnIsTheSamplesPeak() {
        const qint64 width = qint64(zoom::largestFactor(VisibleWidth)) * VisibleWidth;
        QCOMPARE(levelForColumns(m_waveform.peaks.frames, width), PeakLevel::Samples);
        for (const Click& click : {m_clickList.front(), m_clickList[40], m_clickList.back()})
            checkColumns(width, columnOf(click.frame, width) - VisibleWidth / 2, VisibleWidth);
        checkColumns(width, width - VisibleWidth, VisibleWidth);
        checkClicks(width);
    }

    void columnsNotReadYetAreDrawnFromTheFineLevel() {
        const qint64 width = qint64(zoom::largestFactor(VisibleWidth)) * VisibleWidth;
        const qint64 frames = m_waveform.peaks.frames;
        const Click& click = m_clickList[10];
        const qint64 x = columnOf(click.frame, width);
        const auto peaks = columnPeaks(m_waveform.peaks, nullptr, x - 200, 400, width);
        for (int i = 0; i < 400; ++i) {
            const FrameSpan span = columnSpan(x - 200 + i, width, frames, PeakLevel::Samples);
            const qint64 first = span.first / 256 * 256;
            const qint64 end = (span.end + 255) / 256 * 256;
            QCOMPARE(peaks[0][std::size_t(i)], directPeak(m_samples, 0, first, std::min(end, frames)));
        }
        QCOMPARE(peaks[0][200], float(click.left) / 32768.0f);
    }

    void anHourOfStereoTakesLittleRoom() {
        PeakSummary hour;
        hour.frames = qint64(3600) * Rate;
        hour.fine.assign(2, std::vector<quint16>(std::size_t((hour.frames + 255) / 256)));
        fillCoarseLevel(hour);
        QVERIFY2(hour.bytes() <= 16 * 1024 * 1024, qPrintable(QString::number(hour.bytes())));
        QCOMPARE(hour.coarse[0].size(), std::size_t((hour.frames + 65535) / 65536));
    }
};

QTEST_GUILESS_MAIN(tst_PeakSummary)
#include "tst_peaksummary.moc"
