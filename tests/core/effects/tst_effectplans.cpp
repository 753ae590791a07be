#include "effects/EffectPlans.h"

#include "support/Fixtures.h"

#include <QTest>

namespace {
const QString W = "/w";
const QString Track = "/w/2024-01-01-00-00-00.wav";
const QString T = "/w/2024-03-05-14-07-59";
const QStringList Tail = {"-acodec", "pcm_s16le", "-ar", "44100", "-ac", "2"};
const QString Alert = "Parameters were not accepted. change parameters and try again.";

EditState state() {
    return {W, Track, {}, calculateSegmentVariables({10.0f, 40.0f, 60.0f, 2.5f, 10}), 10.0f, 40.0f, 60.0f};
}
ResultNames names() {
    return ResultNames(W, QDateTime(QDate(2024, 3, 5), QTime(14, 7, 59)));
}

} // namespace

using fixtures::describe;

class tst_EffectPlans : public QObject {
    Q_OBJECT
private slots:
    void wholeTrack() {
        const EditPlan e = buildEffectPlan(state(), names(), {{}, {"echo", "0.8", "0.9", "1000", "0.3"}});
        QCOMPARE(describe(e.plan),
                 QStringList({"delete " + T + ".wav",
                              "sox " + Track + " | " + T + ".wav | echo | 0.8 | 0.9 | 1000 | 0.3",
                              "require " + T + ".wav else " + Alert, "probe " + T + ".wav"}));
        QCOMPARE(e.result, T + ".wav");
        QVERIFY(e.deleteAfterAdopting.isEmpty());
    }

    void wholeTrackWithAGlobalOption() {
        const EditPlan e = buildEffectPlan(state(), names(), {{"-v", "1.50"}, {}});
        QCOMPARE(describe(e.plan).at(1), "sox -v | 1.50 | " + Track + " | " + T + ".wav");
    }

    void selection() {
        const EditPlan e = buildEffectSelectionPlan(state(), names(), {{}, {"reverse"}});
        const QString b = T + "Before.wav", s = T + "Selection.wav", a = T + "After.wav",
                      p = T + "SelectionAfterAmplify.wav", r = T + ".wav";
        QCOMPARE(
            describe(e.plan),
            QStringList(
                {"delete " + b, "ffmpeg -i | " + Track + " | -ss | 0 | -t | 00:00:04.00 | " + b,
                 "delete " + s, "ffmpeg -i | " + Track + " | -ss | 00:00:04.00 | -t | 00:00:02.00 | " + s,
                 "delete " + a, "ffmpeg -i | " + Track + " | -ss | 00:00:06.00 | -t | 00:00:04.00 | " + a,
                 "delete " + p, "sox " + s + " | " + p + " | reverse", "require " + p + " else " + Alert,
                 "delete " + r,
                 "ffmpeg " +
                     QStringList({"-i", b, "-i", p, "-i", a, "-lavfi", "concat=n=3:a=1:v=0"}).join(" | ") +
                     " | " + Tail.join(" | ") + " | " + r,
                 "probe " + r}));
        QCOMPARE(e.deleteAfterAdopting, QStringList({b, s, a, p}));
    }

    void aSelectionFromTheStartStillCutsThreeParts() {
        EditState s = state();
        s.seg = calculateSegmentVariables({10.0f, 0.0f, 30.0f, 0.0f, 10});
        const QStringList lines = describe(buildEffectSelectionPlan(s, names(), {{"-v", "2.00"}, {}}).plan);
        QCOMPARE(lines.at(1), "ffmpeg -i | " + Track + " | -ss | 0 | -t | 00:00:00.00 | " + T + "Before.wav");
        QCOMPARE(lines.at(7), "sox -v | 2.00 | " + T + "Selection.wav | " + T + "SelectionAfterAmplify.wav");
        QVERIFY(lines.at(10).contains("concat=n=3:a=1:v=0"));
    }
};

QTEST_GUILESS_MAIN(tst_EffectPlans)
#include "tst_effectplans.moc"
