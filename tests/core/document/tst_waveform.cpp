#include "document/Waveform.h"
#include "support/Fixtures.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class tst_Waveform : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;

private slots:
    void aToneReducesToItsPeakLevelEverywhere() {
        const QString tone = m_dir.filePath("tone.wav");
        fixtures::makeTone(tone, 10, 1000, 0.5);
        const Waveform w = reduceWaveform(tone);
        QVERIFY(w.ok);
        QCOMPARE(w.frames, qint64(441000));
        QCOMPARE(w.sampleRate, 44100);
        QCOMPARE(w.channels.size(), std::size_t(2));
        for (const auto& channel : w.channels) {
            QCOMPARE(channel.size(), std::size_t(1024));
            for (float v : channel)
                QVERIFY2(qAbs(v - 0.5f) < 0.005f, qPrintable(QString::number(v)));
        }
    }

    void toneThenSilenceShowsWhereTheSilenceIs() {
        const QString tone = m_dir.filePath("half-tone.wav");
        const QString gap = m_dir.filePath("gap.wav");
        const QString joined = m_dir.filePath("tone-gap.wav");
        fixtures::makeTone(tone, 2, 440, 0.8);
        fixtures::makeSilence(gap, 2);
        fixtures::join({tone, gap}, joined);
        const Waveform w = reduceWaveform(joined, 100);
        QCOMPARE(w.channels[0].size(), std::size_t(100));
        for (int i = 0; i < 49; ++i)
            QVERIFY(w.channels[0][std::size_t(i)] > 0.5f);
        for (int i = 51; i < 100; ++i)
            QCOMPARE(w.channels[0][std::size_t(i)], 0.0f);
    }

    void aLongFileReadInTwoHalvesKeepsEveryStretchInPlace() {
        // 10 s of tone, 10 s of silence, 10 s of tone: long enough to be read in halves.
        const QString tone = m_dir.filePath("ten.wav");
        const QString gap = m_dir.filePath("ten-gap.wav");
        const QString joined = m_dir.filePath("thirty.wav");
        fixtures::makeTone(tone, 10, 440, 0.5);
        fixtures::makeSilence(gap, 10);
        fixtures::join({tone, gap, tone}, joined);
        const Waveform w = reduceWaveform(joined);
        QCOMPARE(w.frames, qint64(30 * 44100));
        for (const auto& channel : w.channels) {
            for (int i = 0; i < 1024; ++i) {
                const float v = channel[std::size_t(i)];
                if (i < 341 || i > 682)
                    QVERIFY2(qAbs(v - 0.5f) < 0.005f, qPrintable(QString("%1: %2").arg(i).arg(v)));
                else if (i > 341 && i < 682)
                    QVERIFY2(v == 0.0f, qPrintable(QString("%1: %2").arg(i).arg(v)));
            }
        }
    }

    void aFileShorterThanThePointCountStillGivesEveryPoint() {
        // 100 frames of a constant half-scale level.
        const QString raw = m_dir.filePath("tiny.raw");
        const QString tiny = m_dir.filePath("tiny.wav");
        QFile file(raw);
        QVERIFY(file.open(QIODevice::WriteOnly));
        for (int i = 0; i < 100; ++i)
            file.write("\x00\x40", 2);
        file.close();
        QCOMPARE(fixtures::run(
                     "sox", {"-t", "raw", "-r", "44100", "-e", "signed", "-b", "16", "-c", "1", raw, tiny}),
                 0);
        const Waveform w = reduceWaveform(tiny);
        QVERIFY(w.ok);
        QCOMPARE(w.channels.size(), std::size_t(1));
        QCOMPARE(w.channels[0].size(), std::size_t(1024));
        int nonZero = 0;
        for (float v : w.channels[0]) {
            QVERIFY(v == 0.0f || qAbs(v - 0.5f) < 0.01f);
            nonZero += v > 0.0f;
        }
        QCOMPARE(nonZero, 100);
    }

    void anEmptyWavGivesSilentPoints() {
        const QString empty = m_dir.filePath("empty.wav");
        fixtures::makeSilence(empty, 0);
        const Waveform w = reduceWaveform(empty);
        QVERIFY(w.ok);
        QCOMPARE(w.frames, qint64(0));
        QCOMPARE(w.channels[0].size(), std::size_t(1024));
    }

    void somethingThatIsNotAudioIsRefused() {
        const QString bogus = m_dir.filePath("bogus.wav");
        QFile file(bogus);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(5000, 'x'));
        file.close();
        QVERIFY(!reduceWaveform(bogus).ok);
        QVERIFY(!reduceWaveform(m_dir.filePath("missing.wav")).ok);
    }
};

QTEST_GUILESS_MAIN(tst_Waveform)
#include "tst_waveform.moc"
