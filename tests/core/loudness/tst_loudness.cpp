// Loudness measured by ffmpeg's EBU R128 filter and read from its summary.

#include "LoudnessFixture.h"
#include "loudness/Loudness.h"
#include "support/Fixtures.h"

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>

using loudnessTest::measure;

namespace {
// A 1 kHz sine in both channels whose peak stands at `dbfs`.
QString tone(const QTemporaryDir& dir, const QString& name, double dbfs, double seconds) {
    const QString path = dir.filePath(name);
    fixtures::run("sox", {"-D", "-n", "-r", "44100", "-c", "2", "-b", "16", path, "synth",
                          QString::number(seconds), "sine", "1000", "vol", QString("%1dB").arg(dbfs)});
    return path;
}

// A summary as ffmpeg prints it, with these figures.
QString summary(double i, double lra, double sample, double peak) {
    const auto f = [](double v) { return std::isinf(v) ? QString("-inf") : QString::number(v, 'f', 1); };
    return QString("[Parsed_ebur128_0 @ 0x55] Summary:\n\n  Integrated loudness:\n    I:         %1 LUFS\n"
                   "    Threshold: -33.0 LUFS\n\n  Loudness range:\n    LRA:         %2 LU\n"
                   "    Threshold: -43.0 LUFS\n    LRA low:   -23.0 LUFS\n    LRA high:  -23.0 LUFS\n\n"
                   "  Sample peak:\n    Peak:      %3 dBFS\n\n  True peak:\n    Peak:      %4 dBFS\n")
        .arg(f(i), f(lra), f(sample), f(peak));
}
} // namespace

class tst_Loudness : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;

private slots:
    void aToneAtTheCalibrationLevelReadsThatLoudness_data() {
        QTest::addColumn<double>("dbfs");
        QTest::newRow("-23 dBFS") << -23.0;
        QTest::newRow("-20 dBFS") << -20.0;
    }
    void aToneAtTheCalibrationLevelReadsThatLoudness() {
        // By the standard's calibration a 1 kHz sine in both channels reads
        // its peak level in LUFS.
        QFETCH(double, dbfs);
        const std::optional<LoudnessReading> r =
            measure(tone(m_dir, QString("tone%1.wav").arg(dbfs), dbfs, 10));
        QVERIFY(r);
        QVERIFY2(std::abs(r->integrated - dbfs) <= 0.3, qPrintable(QString::number(r->integrated)));
        QVERIFY2(std::abs(r->samplePeak - dbfs) <= 0.1, qPrintable(QString::number(r->samplePeak)));
        QVERIFY(r->truePeak >= r->samplePeak - 0.1 && r->truePeak <= dbfs + 0.5);
        QVERIFY(r->range >= 0 && r->range < 1);
    }

    void aSelectionIsMeasuredAlone() {
        const QString quiet = tone(m_dir, "quiet.wav", -30, 5), loud = tone(m_dir, "loud.wav", -20, 5);
        const QString both = m_dir.filePath("halves.wav");
        fixtures::join({quiet, loud}, both);
        const auto first = measure(both, "00:00:00.00", "00:00:05.00");
        const auto second = measure(both, "00:00:05.00", "00:00:05.00");
        const auto whole = measure(both);
        QVERIFY(first && second && whole);
        QVERIFY2(std::abs(first->integrated + 30) <= 0.3, qPrintable(QString::number(first->integrated)));
        QVERIFY2(std::abs(second->integrated + 20) <= 0.3, qPrintable(QString::number(second->integrated)));
        QVERIFY(std::abs(first->samplePeak + 30) <= 0.1 && std::abs(second->samplePeak + 20) <= 0.1);
        QVERIFY(whole->integrated > first->integrated + 1 && whole->integrated < second->integrated + 0.3);
    }

    void silenceReadsAsNothingLoud() {
        const QString path = m_dir.filePath("silence.wav");
        fixtures::run("sox", {"-D", "-n", "-r", "44100", "-c", "2", "-b", "16", path, "trim", "0", "3"});
        const auto r = measure(path);
        QVERIFY(r);
        QCOMPARE(r->integrated, -70.0);
        QVERIFY(std::isinf(r->samplePeak) && r->samplePeak < 0);
        QVERIFY(std::isinf(r->truePeak) && r->truePeak < 0);
        QCOMPARE(loudnessFigureText(r->truePeak, "dBTP"), QString("-inf dBTP"));
    }

    void theLastSummaryCountsAndAPartialOneReadsNothing() {
        const QString two = summary(-30, 1, -29, -28.5) + "\nsomething\n" + summary(-16.2, 7.5, -1.5, -0.8);
        QCOMPARE(readLoudnessSummary(two), (LoudnessReading{-16.2, 7.5, -0.8, -1.5}));
        const QString one = summary(-16.2, 7.5, -1.5, -0.8);
        for (const char* cut : {"True peak", "Sample peak", "LRA:", "I:"})
            QVERIFY2(!readLoudnessSummary(one.left(one.indexOf(cut))), cut);
        QVERIFY(!readLoudnessSummary(QString()));
        QVERIFY(!readLoudnessSummary("Summary:"));
    }

    void summariesOfAnyFiguresReadBack() {
        QRandomGenerator random(28);
        for (int i = 0; i < 2000; ++i) {
            const auto value = [&](double low, double high) {
                return std::round((low + random.generateDouble() * (high - low)) * 10) / 10;
            };
            const LoudnessReading r{value(-70, 0), value(0, 40), value(-60, 6), value(-60, 0)};
            QCOMPARE(readLoudnessSummary(summary(r.integrated, r.range, r.samplePeak, r.truePeak)), r);
        }
    }

    void mutatedSummariesNeverReadNonsense() {
        // Cut, bytes changed, lines dropped: never a crash, never a figure
        // that is not a number.
        QRandomGenerator random(16);
        const QString text = summary(-16.2, 7.5, -1.5, -0.8);
        int read = 0;
        for (int i = 0; i < 10000; ++i) {
            QString mutated = text;
            for (int edits = 1 + int(random.bounded(3)); edits > 0 && !mutated.isEmpty(); --edits) {
                const int at = int(random.bounded(mutated.size()));
                switch (random.bounded(3)) {
                case 0:
                    mutated.truncate(at);
                    break;
                case 1:
                    mutated[at] = QChar(char16_t(random.bounded(128)));
                    break;
                default:
                    mutated.remove(at, int(random.bounded(20)));
                }
            }
            if (const auto r = readLoudnessSummary(mutated)) {
                ++read;
                for (double v : {r->integrated, r->range, r->samplePeak, r->truePeak})
                    QVERIFY(!std::isnan(v));
            }
        }
        QVERIFY(read > 0 && read < 10000);
    }

    void targetsAndHowFarATrackIsFromThem() {
        QStringList names;
        for (const LoudnessTarget& t : loudnessTargets()) {
            names << QString("%1 %2").arg(t.name).arg(t.lufs);
            QCOMPARE(t.ceiling, -1.0);
        }
        QCOMPARE(names, QStringList({"Podcast, stereo -16", "Podcast, mono -19", "Streaming -14",
                                     "Broadcast (EBU R128) -23"}));
        const LoudnessTarget podcast = loudnessTargets().first();
        QCOMPARE(targetDistanceText({-19.2, 5, -3, -2.5}, podcast), QString("3.2 LU too quiet"));
        QCOMPARE(targetDistanceText({-15, 5, -0.2, -0.5}, podcast),
                 QString("1.0 LU too loud; true peak 0.8 dB over -1 dBTP"));
        QCOMPARE(targetDistanceText({-16.4, 5, -1.5, -1.2}, podcast), QString("on target"));
        QCOMPARE(loudnessFigureText(-23.04, "LUFS"), QString("-23.0 LUFS"));
    }

    void aRunWithoutASummaryFailsWithAMessage() {
        const Plan plan = buildLoudnessMeasurePlan("/w/track.wav", "00:00:01.00", "00:00:02.00");
        const QList<PlannedRun> runs = plannedRuns(plan);
        QCOMPARE(runs.size(), 1);
        QCOMPARE(runs[0].arguments,
                 QStringList({"-hide_banner", "-nostats", "-ss", "00:00:01.00", "-t", "00:00:02.00", "-i",
                              "/w/track.wav", "-af", "ebur128=peak=true+sample:framelog=verbose", "-f",
                              "null", "-"}));
        const auto* check = std::get_if<step::Check>(&plan.steps.back());
        QVERIFY(check);
        PlanOutcome outcome;
        outcome.runs.append(ToolRun{});
        outcome.runs.last().output = "/w/track.wav: Invalid data found when processing input";
        QCOMPARE(check->problem(outcome), QString("ffmpeg did not say how loud the track is."));
        outcome.runs.last().output = summary(-20, 1, -19, -18.9);
        QCOMPARE(check->problem(outcome), QString());
    }
};

QTEST_GUILESS_MAIN(tst_Loudness)
#include "tst_loudness.moc"
