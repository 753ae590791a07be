#include "document/SplitPlans.h"
#include "support/Fixtures.h"

#include <QSet>
#include <QTest>

using namespace splitting;

// The names and runs of the three splits, checked without running anything.
class tst_SplitPlans : public QObject {
    Q_OBJECT

    static SegmentVariables tenSeconds() {
        // 10 s track, selection 20–50 %, play position at 4 s.
        return calculateSegmentVariables({10, 20, 50, 4, 10});
    }

private slots:
    void piecesAreNamedByTheWorkingWavWithoutItsExtension() {
        QCOMPARE(base("/w/2024-03-05-14-07-59.wav"), QString("2024-03-05-14-07-59"));
        QCOMPARE(pieceStem("/w/2024-03-05-14-07-59.wav", {}), QString("2024-03-05-14-07-59"));
        QCOMPARE(piecePath("/w", "2024-03-05-14-07-59", 2), QString("/w/2024-03-05-14-07-59_PART_2.wav"));
        QCOMPARE(silencePiecePath("/elsewhere/take.wav", "take", 1), QString("/elsewhere/take_PART_001.wav"));
        QCOMPARE(silencePiecePath("/w/take.wav", "take", 12), QString("/w/take_PART_012.wav"));
        QCOMPARE(silencePattern("/w/take.wav", "take"), QString("/w/take_PART_.wav"));
    }

    void aPieceAWindowKeepsWithoutShowingItMovesTheStemOn() {
        // Other files, and pieces of other tracks, leave the base as it is.
        QCOMPARE(
            pieceStem("/w/t.wav", {"/w/t.wav", "/w/u_PART_1.wav", "/w/t_PART_x.wav", "/w/tt_PART_1.wav"}),
            QString("t"));
        QCOMPARE(pieceStem("/w/t.wav", {"/w/t_PART_2.wav"}), QString("t (2)"));
        QCOMPARE(pieceStem("/w/t.wav", {"/w/t_PART_001.wav"}), QString("t (2)"));
        QCOMPARE(pieceStem("/w/t.wav", {"/w/t_PART_1.wav", "/w/t (2)_PART_3.wav", "/w/t (3)_PART_017.wav"}),
                 QString("t (4)"));
        // The stem is matched as it is spelt, not as a pattern.
        QCOMPARE(pieceStem("/w/a.b.wav", {"/w/axb_PART_1.wav"}), QString("a.b"));
        const SplitPlan split = buildSplitAtPositionPlan("/w/t.wav", "/w", tenSeconds(), "t (2)");
        QCOMPARE(split.pieces, QStringList({"/w/t (2)_PART_1.wav", "/w/t (2)_PART_2.wav"}));
        QCOMPARE(silenceArguments("/w/t.wav", {}, "t (2)")[1], QString("/w/t (2)_PART_.wav"));
    }

    void everyPieceMustHoldTheStretchItIsCutFrom() {
        const SplitPlan split = buildSplitAroundSelectionPlan("/w/t.wav", "/w", tenSeconds(), "t");
        QList<step::RequireAudio> checks;
        for (const Step& s : split.plan.steps)
            if (auto* r = std::get_if<step::RequireAudio>(&s))
                checks << *r;
        QCOMPARE(checks.size(), 3);
        const double starts[] = {0, 2, 5}, durations[] = {2, 3, 5};
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(checks[i].path, split.pieces[i]);
            QCOMPARE(checks[i].source, QString("/w/t.wav"));
            QCOMPARE(checks[i].start, starts[i]);
            QCOMPARE(checks[i].duration, durations[i]);
        }
    }

    void twoPartsAtThePlayPosition() {
        const SplitPlan split = buildSplitAtPositionPlan("/w/t.wav", "/w", tenSeconds(), "t");
        QCOMPARE(split.pieces, QStringList({"/w/t_PART_1.wav", "/w/t_PART_2.wav"}));
        QCOMPARE(
            fixtures::describe(split.plan),
            QStringList({"delete /w/t_PART_1.wav",
                         "ffmpeg -i | /w/t.wav | -ss | 0 | -t | 00:00:04.00 | /w/t_PART_1.wav",
                         "delete /w/t_PART_2.wav",
                         "ffmpeg -i | /w/t.wav | -ss | 00:00:04.00 | -t | 00:00:06.00 | /w/t_PART_2.wav"}));
    }

    void threePartsAroundTheSelection() {
        const SplitPlan split = buildSplitAroundSelectionPlan("/w/t.wav", "/w", tenSeconds(), "t");
        QCOMPARE(split.pieces, QStringList({"/w/t_PART_1.wav", "/w/t_PART_2.wav", "/w/t_PART_3.wav"}));
        QCOMPARE(
            fixtures::describe(split.plan),
            QStringList({"delete /w/t_PART_1.wav",
                         "ffmpeg -i | /w/t.wav | -ss | 0 | -t | 00:00:02.00 | /w/t_PART_1.wav",
                         "delete /w/t_PART_2.wav",
                         "ffmpeg -i | /w/t.wav | -ss | 00:00:02.00 | -t | 00:00:03.00 | /w/t_PART_2.wav",
                         "delete /w/t_PART_3.wav",
                         "ffmpeg -i | /w/t.wav | -ss | 00:00:05.00 | -t | 00:00:05.00 | /w/t_PART_3.wav"}));
    }

    void atPositionZeroTheFirstPieceIsCutWithTheZeroTimeString() {
        const SplitPlan split =
            buildSplitAtPositionPlan("/w/t.wav", "/w", calculateSegmentVariables({10, 20, 50, 0, 10}), "t");
        QCOMPARE(std::get<step::Run>(split.plan.steps[1]).arguments[5], QString("00:00:00.00"));
    }

    void splitOnSilenceRunsSoxWithTheDialogsValues() {
        QCOMPARE(silenceArguments("/w/t.wav", {0.5f, 2.0f, 1}, "t"),
                 QStringList({"/w/t.wav", "/w/t_PART_.wav", "silence", "1", "0.50", "1%", "1", "2.00", "1%",
                              ":", "newfile", ":", "restart"}));
        QCOMPARE(silenceArguments("/w/t.wav", {0.05f, 12.345f, 17}, "t").mid(4, 5),
                 QStringList({"0.05", "17%", "1", "12.35", "17%"}));
        QCOMPARE(fixtures::describe(buildSplitOnSilencePlan("/w/t.wav", {}, "t")),
                 QStringList({"sox " + silenceArguments("/w/t.wav", {}, "t").join(" | ")}));
    }

    void durationsBelowFiveHundredthsAreRefused() {
        QCOMPARE(silenceSettingsProblem(0.5f, 2.0f), QString());
        QCOMPARE(silenceSettingsProblem(0.05f, 0.05f), QString()); // stored just above the limit
        QCOMPARE(silenceSettingsProblem(0.049f, 2.0f), QString("Minimum duration invalid."));
        QCOMPARE(silenceSettingsProblem(0.0f, 0.0f), QString("Minimum duration invalid."));
        QCOMPARE(silenceSettingsProblem(0.5f, 0.0f), QString("Maximum duration invalid."));
        QCOMPARE(silenceSettingsProblem(0.5f, -3.0f), QString("Maximum duration invalid."));
    }

    void theSearchStopsAtTheFirstMissingNumber() {
        const QHash<QString, qint64> there{{"/w/t_PART_001.wav", 100},
                                           {"/w/t_PART_002.wav", 5},
                                           {"/w/t_PART_003.wav", 1},
                                           {"/w/t_PART_005.wav", 9}};
        const auto frames = [&](const QString& p) { return there.value(p, -1); };
        const SilencePieces found = findSilencePieces("/w/t.wav", "t", frames);
        QCOMPARE(found.pieces, QStringList({"/w/t_PART_001.wav", "/w/t_PART_002.wav", "/w/t_PART_003.wav"}));
        QCOMPARE(found.empty, QString());
        QCOMPARE(findSilencePieces("/w/other.wav", "other", frames).pieces, QStringList());
    }

    // A piece of no frames (the track ended in silence) is not a piece: the
    // search stops there and names it for deleting; what follows is older.
    void theSearchStopsAtAPieceOfNoFrames() {
        const QHash<QString, qint64> there{
            {"/w/t_PART_001.wav", 100}, {"/w/t_PART_002.wav", 0}, {"/w/t_PART_003.wav", 7}};
        const SilencePieces found =
            findSilencePieces("/w/t.wav", "t", [&](const QString& p) { return there.value(p, -1); });
        QCOMPARE(found.pieces, QStringList({"/w/t_PART_001.wav"}));
        QCOMPARE(found.empty, QString("/w/t_PART_002.wav"));
    }
};

QTEST_GUILESS_MAIN(tst_SplitPlans)
#include "tst_splitplans.moc"
