#include "edit/EditPlans.h"

#include "support/Fixtures.h"

#include <QTest>

namespace {
const QString W = "/w";
const QString Track = "/w/2024-01-01-00-00-00.wav";
const QString Clip = "/w/2024-01-01-00-00-01.wav";
const QString T = "/w/2024-03-05-14-07-59";
const QString R = T + ".wav", B = T + "Before.wav", A = T + "After.wav", Z = T + "Silence.wav";
const QStringList Tail = {"-acodec", "pcm_s16le", "-ar", "44100", "-ac", "2"};

// A 10-second track (10 whole seconds), selection 40–60 %, play position 2.5 s.
EditState state() {
    return {W, Track, Clip, calculateSegmentVariables({10.0f, 40.0f, 60.0f, 2.5f, 10}), 10.0f, 40.0f, 60.0f};
}
ResultNames names() {
    return ResultNames(W, QDateTime(QDate(2024, 3, 5), QTime(14, 7, 59)));
}

// One step, written out: "delete PATH", "ffmpeg ARGS…", "sox ARGS…", "require PATH", "probe PATH".
QString ffmpeg(const QStringList& arguments) {
    return "ffmpeg " + arguments.join(" | ");
}
QString sox(const QStringList& arguments) {
    return "sox " + arguments.join(" | ");
}
QString join(const QStringList& inputs, const QString& n) {
    QStringList arguments;
    for (const QString& input : inputs)
        arguments << "-i" << input;
    return ffmpeg(arguments + QStringList{"-lavfi", "concat=n=" + n + ":a=1:v=0"} + Tail + QStringList{R});
}
QString joinTo(const QStringList& inputs, const QString& n, const QString& result) {
    QString line = join(inputs, n);
    line.chop(R.size());
    return line + result;
}
} // namespace

using fixtures::describe;

class tst_EditPlans : public QObject {
    Q_OBJECT
private slots:
    void copy() {
        const EditPlan e = buildCopyPlan(state(), names(), true);
        QCOMPARE(describe(e.plan), QStringList({"delete " + Clip, ffmpeg({"-i", Track, "-ss", "00:00:04.00",
                                                                          "-t", "00:00:02.00", R})}));
        QCOMPARE(e.clipboard, R);
        QVERIFY(e.result.isEmpty());
        QCOMPARE(describe(buildCopyPlan(state(), names(), false).plan).size(), 1);
    }

    void cut() {
        const EditPlan e = buildCutPlan(state(), names(), true);
        QCOMPARE(describe(e.plan),
                 QStringList({"delete " + Clip,
                              ffmpeg({"-i", Track, "-ss", "00:00:04.00", "-t", "00:00:02.00", R}),
                              ffmpeg({"-i", Track, "-ss", "0", "-t", "00:00:04.00", B}),
                              ffmpeg({"-i", Track, "-ss", "00:00:06.00", "-t", "00:00:04.00", A}),
                              "delete " + R, join({B, A}, "2"), "probe " + R}));
        QCOMPARE(e.clipboard, R); // the clipboard names the remainder
        QCOMPARE(e.result, R);
        QCOMPARE(e.deleteAfterAdopting, QStringList({B, A}));
    }

    void deleteSelection() {
        const EditPlan e = buildDeletePlan(state(), names());
        QCOMPARE(describe(e.plan),
                 QStringList({ffmpeg({"-i", Track, "-ss", "0", "-t", "00:00:04.00", B}),
                              ffmpeg({"-i", Track, "-ss", "00:00:06.00", "-t", "00:00:04.00", A}),
                              "delete " + R, join({B, A}, "2"), "probe " + R}));
        QVERIFY(e.clipboard.isEmpty());
        QCOMPARE(e.deleteAfterAdopting, QStringList({B, A}));
    }

    void pasteAtStartAndEnd() {
        const EditPlan start = buildPastePlan(state(), names(), PastePlace::Start);
        QCOMPARE(describe(start.plan),
                 QStringList({"delete " + B, joinTo({Clip, Track}, "2", B), "probe " + B}));
        QCOMPARE(start.result, B); // named "Before", as it always was
        QVERIFY(start.deleteAfterAdopting.isEmpty());
        const EditPlan end = buildPastePlan(state(), names(), PastePlace::End);
        QCOMPARE(describe(end.plan),
                 QStringList({"delete " + B, joinTo({Track, Clip}, "2", B), "probe " + B}));
    }

    void pasteInsideTheTrack_data() {
        QTest::addColumn<int>("place");
        QTest::addColumn<QString>("p");
        QTest::addColumn<QString>("d");
        QTest::newRow("position") << int(PastePlace::CurrentPosition) << "00:00:02.50"
                                  << "00:00:07.50";
        QTest::newRow("start of selection") << int(PastePlace::StartOfSelection) << "00:00:04.00"
                                            << "00:00:06.00";
        QTest::newRow("end of selection") << int(PastePlace::EndOfSelection) << "00:00:06.00"
                                          << "00:00:04.00";
    }
    void pasteInsideTheTrack() {
        QFETCH(int, place);
        QFETCH(QString, p);
        QFETCH(QString, d);
        const EditPlan e = buildPastePlan(state(), names(), PastePlace(place));
        QCOMPARE(describe(e.plan), QStringList({ffmpeg({"-i", Track, "-ss", "0", "-t", p, B}),
                                                ffmpeg({"-i", Track, "-ss", p, "-t", d, A}), "delete " + R,
                                                join({B, Clip, A}, "3"), "probe " + R}));
        QCOMPARE(e.result, R);
        QCOMPARE(e.deleteAfterAdopting, QStringList({B, A}));
    }

    void pasteMixing_data() {
        QTest::addColumn<int>("place");
        QTest::addColumn<QString>("pad");
        QTest::newRow("position") << int(PastePlace::CurrentPosition) << "2";
        QTest::newRow("start of selection") << int(PastePlace::StartOfSelection) << "4";
        QTest::newRow("end of selection") << int(PastePlace::EndOfSelection) << "6";
    }
    void pasteMixing() {
        QFETCH(int, place);
        QFETCH(QString, pad);
        const QString k = "/w/2024-01-01-00-00-01_PAD.wav";
        const EditPlan e = buildPasteMixPlan(state(), names(), PastePlace(place));
        QCOMPARE(describe(e.plan), QStringList({"delete " + R, "delete " + k, sox({Clip, k, "pad", pad}),
                                                sox({"-m", Track, k, R}), "probe " + R}));
        QCOMPARE(e.result, R);
    }

    void pasteMixingAtStart() {
        const EditPlan e = buildPasteMixPlan(state(), names(), PastePlace::Start);
        QCOMPARE(describe(e.plan), QStringList({"delete " + R, sox({"-m", Track, Clip, R}), "probe " + R}));
    }

    void mixingBelowOneSecondPadsZero() {
        EditState s = state();
        s.seg = calculateSegmentVariables({10.0f, 40.0f, 60.0f, 0.9f, 10});
        QVERIFY(describe(buildPasteMixPlan(s, names(), PastePlace::CurrentPosition).plan)
                    .contains(sox({Clip, "/w/2024-01-01-00-00-01_PAD.wav", "pad", "0"})));
        s.seg = calculateSegmentVariables({10.5f, 40.0f, 100.0f, 12.9f, 10});
        QVERIFY(describe(buildPasteMixPlan(s, names(), PastePlace::CurrentPosition).plan)
                    .contains(sox({Clip, "/w/2024-01-01-00-00-01_PAD.wav", "pad", "12"})));
        QVERIFY(describe(buildPasteMixPlan(s, names(), PastePlace::EndOfSelection).plan)
                    .contains(sox({Clip, "/w/2024-01-01-00-00-01_PAD.wav", "pad", "10"})));
    }

    void silenceInsertAtStartAndEnd() {
        const EditPlan start = buildSilenceInsertPlan(state(), names(), SilencePlace::Start, 1000);
        const QString make = ffmpeg(
            {"-f", "lavfi", "-i", "anullsrc=channel_layout=2:sample_rate=44100", "-t", "00:00:01.00", Z});
        QCOMPARE(describe(start.plan),
                 QStringList({"delete " + Z, make, "delete " + R, join({Z, Track}, "2"), "probe " + R}));
        QCOMPARE(start.deleteBeforeShowing, QStringList({Z}));
        QVERIFY(start.deleteAfterAdopting.isEmpty());
        const EditPlan end = buildSilenceInsertPlan(state(), names(), SilencePlace::End, 1500);
        QCOMPARE(describe(end.plan),
                 QStringList({"delete " + Z,
                              ffmpeg({"-f", "lavfi", "-i", "anullsrc=channel_layout=2:sample_rate=44100",
                                      "-t", "00:00:01.50", Z}),
                              "delete " + R, join({Track, Z}, "2"), "probe " + R}));
    }

    void silenceInsertAtThePosition() {
        const EditPlan e = buildSilenceInsertPlan(state(), names(), SilencePlace::CurrentPosition, 250);
        QCOMPARE(describe(e.plan),
                 QStringList({"delete " + Z,
                              ffmpeg({"-f", "lavfi", "-i", "anullsrc=channel_layout=2:sample_rate=44100",
                                      "-t", "00:00:00.25", Z}),
                              ffmpeg({"-i", Track, "-ss", "0", "-t", "00:00:02.50", B}),
                              ffmpeg({"-i", Track, "-ss", "00:00:02.50", "-t", "00:00:07.50", A}),
                              "delete " + R, join({B, Z, A}, "3"), "probe " + R}));
        QCOMPARE(e.deleteAfterAdopting, QStringList({Z, B, A}));
    }

    void silenceTheSelection() {
        const EditPlan e = buildSilenceSelectionPlan(state(), names());
        QCOMPARE(describe(e.plan),
                 QStringList({"delete " + Z,
                              ffmpeg({"-f", "lavfi", "-i", "anullsrc=channel_layout=2:sample_rate=44100",
                                      "-t", "00:00:02.00", Z}),
                              ffmpeg({"-i", Track, "-ss", "0", "-t", "00:00:04.00", B}),
                              ffmpeg({"-i", Track, "-ss", "00:00:06.00", "-t", "00:00:04.00", A}),
                              "delete " + R, join({B, Z, A}, "3"), "probe " + R}));
        QCOMPARE(e.deleteAfterAdopting, QStringList({Z, B, A}));
    }

    void aTinySelectionPassesThroughWholeMilliseconds() {
        EditState s = state();
        s.f_Selection_Start = 0.0f;
        s.f_Selection_End = 0.123f; // 0.0123 s of 10 s: 12 ms
        QVERIFY(describe(buildSilenceSelectionPlan(s, names()).plan).at(1).contains("| -t | 00:00:00.01 |"));
    }

    void trim_data() {
        QTest::addColumn<quint64>("mode");
        QTest::addColumn<QStringList>("effect");
        QTest::newRow("start") << quint64(1) << QStringList({"silence", "1", "1.50", "1%"});
        QTest::newRow("end") << quint64(2) << QStringList({"silence", "1", "1.50", "1%", "reverse"});
        QTest::newRow("entire") << quint64(3)
                                << QStringList({"silence", "1", "1.50", "1%", "-1", "1.50", "1%"});
        QTest::newRow("other") << quint64(7) << QStringList();
    }
    void trim() {
        QFETCH(quint64, mode);
        QFETCH(QStringList, effect);
        const EditPlan e = buildSilenceTrimPlan(state(), names(), mode, 1500);
        QCOMPARE(describe(e.plan),
                 QStringList(
                     {"delete " + R, sox(QStringList{Track, R} + effect),
                      "require " + R + " else Parameters were not accepted. change parameters and try again.",
                      "probe " + R}));
    }

    void everyEditNamesItsVersion() {
        const EditState s = state();
        QCOMPARE(buildCutPlan(s, names(), true).label, QString("Cut"));
        QCOMPARE(buildDeletePlan(s, names()).label, QString("Delete"));
        QCOMPARE(buildPastePlan(s, names(), PastePlace::Start).label, QString("Paste at start"));
        QCOMPARE(buildPastePlan(s, names(), PastePlace::CurrentPosition).label,
                 QString("Paste at play position"));
        QCOMPARE(buildPastePlan(s, names(), PastePlace::StartOfSelection).label,
                 QString("Paste at start of selection"));
        QCOMPARE(buildPastePlan(s, names(), PastePlace::EndOfSelection).label,
                 QString("Paste at end of selection"));
        QCOMPARE(buildPastePlan(s, names(), PastePlace::End).label, QString("Paste at end"));
        QCOMPARE(buildPasteMixPlan(s, names(), PastePlace::Start).label, QString("Mix at start"));
        QCOMPARE(buildPasteMixPlan(s, names(), PastePlace::CurrentPosition).label,
                 QString("Mix at play position"));
        QCOMPARE(buildPasteMixPlan(s, names(), PastePlace::StartOfSelection).label,
                 QString("Mix at start of selection"));
        QCOMPARE(buildPasteMixPlan(s, names(), PastePlace::EndOfSelection).label,
                 QString("Mix at end of selection"));
        QCOMPARE(buildSilenceInsertPlan(s, names(), SilencePlace::Start, 500).label,
                 QString("Insert silence at start"));
        QCOMPARE(buildSilenceInsertPlan(s, names(), SilencePlace::End, 500).label,
                 QString("Insert silence at end"));
        QCOMPARE(buildSilenceInsertPlan(s, names(), SilencePlace::CurrentPosition, 500).label,
                 QString("Insert silence at play position"));
        QCOMPARE(buildSilenceSelectionPlan(s, names()).label, QString("Silence the selection"));
        QCOMPARE(buildSilenceTrimPlan(s, names(), 1, 1500).label, QString("Trim silence from start"));
        QCOMPARE(buildSilenceTrimPlan(s, names(), 2, 1500).label, QString("Trim silence from end"));
        QCOMPARE(buildSilenceTrimPlan(s, names(), 3, 1500).label, QString("Trim silence from both ends"));
        QCOMPARE(buildSilenceTrimPlan(s, names(), 7, 1500).label, QString("Trim silence"));
        // A copy makes no version.
        QVERIFY(buildCopyPlan(s, names(), true).label.isEmpty());
    }

    void effectLabels() {
        QCOMPARE(versionLabel("Echo", false), QString("Echo"));
        QCOMPARE(versionLabel("Echo", true), QString("Echo on selection"));
    }

    void paddedClipSitsBesideTheClip() {
        QCOMPARE(paddedPath("/some where/2024-05-01-10-20-30.wav"),
                 QString("/some where/2024-05-01-10-20-30_PAD.wav"));
    }
};

QTEST_GUILESS_MAIN(tst_EditPlans)
#include "tst_editplans.moc"
