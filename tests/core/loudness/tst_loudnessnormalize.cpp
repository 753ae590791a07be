// Loudness normalisation's two ffmpeg passes: the figures the first prints,
// read and handed to the second, and the plans that carry them, run for real.

#include "LoudnessFixture.h"
#include "loudness/Loudness.h"
#include "loudness/LoudnessNormalize.h"
#include "plans/PrintedFigures.h"
#include "support/Fixtures.h"
#include "tools/ToolPaths.h"

#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>

using loudnessTest::measure;

namespace {
// What loudnorm prints at the end of a pass, with these figures.
QString printed(const QStringList& names, const QStringList& values) {
    QString text = QStringLiteral("size=N/A time=00:00:05.00 bitrate=N/A speed= 180x\n"
                                  "[Parsed_loudnorm_0 @ 0x5633a5d66940] \n{\n");
    for (qsizetype i = 0; i < names.size(); ++i)
        text +=
            QStringLiteral("\t\"%1\" : \"%2\"%3\n").arg(names[i], values[i], i + 1 < names.size() ? "," : "");
    return text + "}\n";
}

ToolPaths realTools() {
    return {QStandardPaths::findExecutable("sox"), QStandardPaths::findExecutable("ffmpeg")};
}

} // namespace

class tst_LoudnessNormalize : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;

private slots:
    void theFiguresArePrintedNameAndValue() {
        const QStringList names = loudnormMeasuredFigures();
        const QString text = printed(names, {"-20.05", "-20.00", "0.00", "-30.05", "-0.05"});
        const QHash<QString, QString> figures = readPrintedFigures(text, names);
        QCOMPARE(figures.size(), 5);
        QCOMPARE(figures["input_i"], QString("-20.05"));
        QCOMPARE(figures["target_offset"], QString("-0.05"));
        // The last of several, and nothing for a name not printed.
        const QHash<QString, QString> twice =
            readPrintedFigures(text + printed({"input_i"}, {"-9.50"}), {"input_i", "output_i"});
        QCOMPARE(twice, (QHash<QString, QString>{{"input_i", "-9.50"}}));
    }

    void onlyPlainNumbersAreGivenOn() {
        for (const char* plain : {"-23.41", "+0.32", "0", "11.00"})
            QVERIFY2(isPlainNumber(plain), plain);
        for (const char* not_ : {"", "-inf", "inf", "nan", "1e3", "-20.05 ", "\"-1\"", "-2;rm"})
            QVERIFY2(!isPlainNumber(not_), not_);
    }

    void marksAreFilledWithTheirFigures() {
        const QString argument = "loudnorm=measured_I=" + figureMark("input_i") +
                                 ":offset=" + figureMark("target_offset") + ":linear=true";
        QCOMPARE(markedFigures(argument), QStringList({"input_i", "target_offset"}));
        QCOMPARE(fillFigures({"-i", argument}, {{"input_i", "-20.05"}, {"target_offset", "-0.05"}}),
                 QStringList({"-i", "loudnorm=measured_I=-20.05:offset=-0.05:linear=true"}));
        // A figure not known stays marked, so the run refuses it.
        QCOMPARE(fillFigures({argument}, {{"input_i", "-1"}}).first(),
                 "loudnorm=measured_I=-1:offset=" + figureMark("target_offset") + ":linear=true");
    }

    // Whatever a run printed, reading it never crashes, and what it finds was
    // printed: 10,000 printouts with figures mutated, cut or garbled.
    void anyPrintoutIsReadSafely() {
        QRandomGenerator random(20261126);
        const QStringList names = loudnormMeasuredFigures();
        for (int round = 0; round < 10000; ++round) {
            QStringList values;
            for (int i = 0; i < names.size(); ++i)
                values << QString::number(random.bounded(-9000, 1000) / 100.0, 'f', 2);
            QString text = printed(names, values);
            const int edits = random.bounded(4);
            for (int e = 0; e < edits && !text.isEmpty(); ++e) {
                const int at = random.bounded(int(text.size()));
                switch (random.bounded(3)) {
                case 0:
                    text.truncate(at);
                    break;
                case 1:
                    text.remove(at, random.bounded(1, 8));
                    break;
                default:
                    text.insert(at, QChar(char16_t(random.bounded(1, 0x3000))));
                }
            }
            const QHash<QString, QString> figures = readPrintedFigures(text, names);
            for (auto it = figures.cbegin(); it != figures.cend(); ++it) {
                QVERIFY(names.contains(it.key()));
                QVERIFY2(text.contains('"' + it.key() + '"') && text.contains('"' + it.value() + '"'),
                         qPrintable(text));
            }
            if (edits == 0)
                for (int i = 0; i < names.size(); ++i)
                    QCOMPARE(figures.value(names[i]), values[i]);
        }
    }

    void theSecondPassIsGivenTheFirstPassesFigures() {
        const LoudnessGoal goal{-16, -1, 11};
        const QStringList measuring = loudnormMeasureArguments(goal, "/w/in.wav");
        QCOMPARE(measuring,
                 QStringList({"-hide_banner", "-nostats", "-i", "/w/in.wav", "-af",
                              "loudnorm=I=-16.0:TP=-1.0:LRA=11.0:print_format=json", "-f", "null", "-"}));
        const QStringList applying = loudnormApplyArguments(goal, "/w/in.wav", "/w/out.wav");
        QCOMPARE(markedFigures(applying[5]), loudnormMeasuredFigures());
        QVERIFY(applying[5].startsWith("loudnorm=I=-16.0:TP=-1.0:LRA=11.0:measured_I="));
        QVERIFY(applying[5].endsWith(":linear=true:print_format=json,aresample=44100"));
        QCOMPARE(applying.mid(6),
                 QStringList({"-acodec", "pcm_s16le", "-ar", "44100", "-ac", "2", "/w/out.wav"}));
    }

    // The two passes for real: quiet speech-like sound (-54 LUFS) comes out
    // at the target, in the working format and at its length; ffmpeg kept its
    // linear mode, one gain for it all. (ffmpeg 5 takes a measured range of 0
    // for no figure and then always compresses: the slow swell gives the
    // sound a range of about 2.5 LU, as speech has one, and -R makes sox's
    // noise the same at every run.)
    void quietSpeechIsBroughtToTheTarget() {
        const QString in = m_dir.filePath("quiet.wav"), out = m_dir.filePath("loud.wav");
        QCOMPARE(fixtures::run("sox", {"-R",        "-D",       "-n",   "-r",   "44100",   "-c",
                                       "2",         "-b",       "16",   in,     "synth",   "8",
                                       "pinknoise", "bandpass", "1000", "1.5q", "tremolo", "4",
                                       "90",        "tremolo",  "0.2",  "80",   "vol",     "0.05"}),
                 0);
        Plan plan;
        plan.steps = loudnessNormalizeSteps({-23, -1, 11}, in, out, in);
        const PlanOutcome outcome = executePlan(plan, realTools());
        QVERIFY2(outcome.ok, qPrintable(outcome.alert));
        QCOMPARE(outcome.runs.size(), 2);
        QVERIFY(!outcome.runs[1].arguments.join(' ').contains(QChar(FigureMarkOpen)));
        QVERIFY(outcome.runs[1].arguments[5].contains("measured_I=" + outcome.figures["input_i"] + ":"));
        QCOMPARE(outcome.figures.value("normalization_type"), QString("linear"));
        QVERIFY(dynamicModeNotice(outcome).isEmpty());
        QVERIFY(fixtures::wavInfo(out).isWorkingWav());
        QVERIFY(std::abs(fixtures::wavInfo(out).seconds() - 8) <= 8.0 / 44100);
        const std::optional<LoudnessReading> r = measure(out);
        QVERIFY(r);
        QVERIFY2(std::abs(r->integrated + 23) <= 0.5, qPrintable(QString::number(r->integrated)));
    }

    // Silence has no loudness: the plan ends with its own words, writing nothing.
    void silenceIsRefusedInWords() {
        const QString in = m_dir.filePath("silence.wav"), out = m_dir.filePath("silence-out.wav");
        fixtures::makeSilence(in, 3);
        Plan plan;
        plan.steps = loudnessNormalizeSteps({-16, -1, 11}, in, out, in);
        const PlanOutcome outcome = executePlan(plan, realTools());
        QVERIFY(!outcome.ok);
        QCOMPARE(outcome.alert, silentTrackMessage());
        QCOMPARE(outcome.runs.size(), 1);
        QVERIFY(!QFile::exists(out));
    }

    // A loud, wide-ranging track cannot take one gain under the ceiling:
    // ffmpeg compresses, and the editor says so.
    void theDynamicModeIsSaid() {
        PlanOutcome outcome;
        outcome.figures = {{"normalization_type", "dynamic"}};
        QVERIFY(dynamicModeNotice(outcome).contains("compressed"));
        outcome.figures = {{"normalization_type", "linear"}};
        QVERIFY(dynamicModeNotice(outcome).isEmpty());
    }
};

QTEST_MAIN(tst_LoudnessNormalize)
#include "tst_loudnessnormalize.moc"
