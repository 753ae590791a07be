#include "TrackLists.h"
#include "mixer/MixerStrip.h"
#include "mixer/MixerTracks.h"
#include "plans/Plan.h"
#include "support/Fixtures.h"
#include "support/Listening.h"
#include "tools/ToolPaths.h"

#include <QDir>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

namespace {
AudioTracks stacked(const QList<quint64>& seconds) {
    QList<OpenTrack> documents;
    for (qsizetype i = 0; i < seconds.size(); ++i)
        documents.append({QStringLiteral("/w/t%1.wav").arg(i), qint64(seconds[i]), {}});
    return tracksOfDocuments(documents);
}
Object_Audio_Track track(const QString& path, quint64 seconds, quint64 start) {
    return {QFileInfo(path).fileName(), path, seconds, start, {}};
}
} // namespace

using namespace tracklists;

// The mixer's rows and its join, without a window.
class tst_MixerTracks : public QObject {
    Q_OBJECT
private slots:
    void documentsAreListedEndToEndInTheirOrder() {
        const AudioTracks tracks =
            tracksOfDocuments({{"/a/one.wav", 10, {}}, {"/b/two.wav", 20, {}}, {"/c/three.wav", 30, {}}});
        QCOMPARE(starts(tracks), QList<quint64>({0, 10, 30}));
        QCOMPARE(tracks[1].s_Name, QString("two.wav"));
        QCOMPARE(tracks[1].s_Path, QString("/b/two.wav"));
        QCOMPARE(Get_Time_String_From_Seconds(float(tracks[2].f_Position_To_Start)), QString("00:00:30"));
    }

    void timeStrings() {
        QCOMPARE(Get_Time_String_From_Seconds(3725), QString("01:02:05"));
        QCOMPARE(Get_Time_String_From_Seconds(0), QString("00:00:00"));
        QCOMPARE(Get_Time_String_From_Seconds(59.99f), QString("00:00:59"));
        QCOMPARE(Get_Time_String_From_Seconds(360000), QString("100:00:00"));
    }

    void movingTheLastRowUpRestacks() {
        AudioTracks tracks = stacked({10, 20, 30});
        QVERIFY(moveTrackUp(tracks, 2));
        QCOMPARE(durations(tracks), QList<quint64>({10, 30, 20}));
        QCOMPARE(starts(tracks), QList<quint64>({0, 10, 40}));
        const AudioTracks before = tracks;
        QVERIFY(!moveTrackUp(tracks, 0));
        QVERIFY(!moveTrackDown(tracks, 2)); // the last row: nothing below it
        QVERIFY(!moveTrackDown(tracks, -1));
        QVERIFY(!moveTrackUp(tracks, 3));
        QCOMPARE(tracks, before);
        QVERIFY(moveTrackDown(tracks, 0));
        QCOMPARE(durations(tracks), QList<quint64>({30, 10, 20}));
        QCOMPARE(starts(tracks), QList<quint64>({0, 30, 40}));
    }

    void movingDiscardsCustomStarts() {
        AudioTracks tracks = stacked({10, 20, 30});
        QVERIFY(setTrackStart(tracks, 2, 3));
        QVERIFY(moveTrackUp(tracks, 1));
        QCOMPARE(starts(tracks), QList<quint64>({0, 20, 30}));
    }

    void removingKeepsTwoRows() {
        AudioTracks two = stacked({10, 20});
        QCOMPARE(removeTrack(two, 0), RemoveOutcome::TooFew);
        QCOMPARE(two.size(), 2);
        AudioTracks three = stacked({10, 20, 30});
        QCOMPARE(removeTrack(three, -1), RemoveOutcome::NoRow);
        QCOMPARE(removeTrack(three, 1), RemoveOutcome::Removed);
        QCOMPARE(durations(three), QList<quint64>({10, 30}));
        QCOMPARE(starts(three), QList<quint64>({0, 10}));
    }

    void aCustomStartOverlapsAndRowZeroComesBackToZero() {
        AudioTracks tracks = stacked({10, 20});
        QVERIFY(setTrackStart(tracks, 1, 5));
        QCOMPARE(starts(tracks), QList<quint64>({0, 5}));
        AudioTracks fresh = stacked({10, 20});
        QVERIFY(setTrackStart(fresh, 0, 5)); // no row would start at 0
        QCOMPARE(starts(fresh), QList<quint64>({0, 10}));
        QVERIFY(!setTrackStart(fresh, -1, 7));
        QCOMPARE(starts(fresh), QList<quint64>({0, 10}));
    }

    void theJoinPadsFromTheSmallestStartAndMixes() {
        const AudioTracks tracks = {track("/w/A.wav", 10, 0), track("/w/B.wav", 20, 10),
                                    track("/w/C.wav", 5, 30)};
        const MixPlan mix = buildMixPlan(tracks, "/w/R.wav");
        QCOMPARE(plannedRuns(mix.plan),
                 QList<PlannedRun>({
                     {Tool::Sox, {"/w/B.wav", "/w/B_PAD.wav", "pad", "10"}},
                     {Tool::Sox, {"/w/C.wav", "/w/C_PAD.wav", "pad", "30"}},
                     {Tool::Sox, {"-m", "/w/A.wav", "/w/B_PAD.wav", "/w/C_PAD.wav", "/w/R.wav"}},
                 }));
        QVERIFY(std::holds_alternative<step::DeleteFile>(mix.plan.steps.front()));
        QCOMPARE(std::get<step::DeleteFile>(mix.plan.steps.front()).path, QString("/w/R.wav"));
        QCOMPARE(mix.tracksAfter[0].s_Path, QString("/w/A.wav"));
        QCOMPARE(mix.tracksAfter[1].s_Path, QString("/w/B_PAD.wav"));
        QCOMPARE(mix.tracksAfter[2].s_Path, QString("/w/C_PAD.wav"));
        QCOMPARE(mix.tracksAfter[1].s_Name, QString("B.wav"));
    }

    void rowsOutOfOrderAreMixedByTheirStarts() {
        const AudioTracks tracks = {track("/w/C.wav", 5, 30), track("/w/A.wav", 10, 0),
                                    track("/w/B.wav", 20, 10)};
        QCOMPARE(buildMixPlan(tracks, "/w/R.wav").inputs,
                 QStringList({"/w/A.wav", "/w/B_PAD.wav", "/w/C_PAD.wav"}));
    }

    void tracksAllAtZeroAreMixedOnTopOfEachOtherWithoutPadding() {
        const AudioTracks tracks = {track("/w/A.wav", 10, 0), track("/w/B.wav", 20, 0)};
        const QList<PlannedRun> runs = plannedRuns(buildMixPlan(tracks, "/w/R.wav").plan);
        QCOMPARE(runs.size(), 1);
        QCOMPARE(runs[0].arguments.first(), QString("-m"));
        QStringList inputs = runs[0].arguments.mid(1, 2); // equal starts: in either order
        std::sort(inputs.begin(), inputs.end());
        QCOMPARE(inputs, QStringList({"/w/A.wav", "/w/B.wav"}));
        QCOMPARE(runs[0].arguments.last(), QString("/w/R.wav"));
    }

    void aSecondMixPadsThePaddedCopiesAgain() {
        const AudioTracks tracks = {track("/w/A.wav", 10, 0), track("/w/B.wav", 20, 10)};
        const MixPlan first = buildMixPlan(tracks, "/w/R.wav");
        const MixPlan second = buildMixPlan(first.tracksAfter, "/w/S.wav");
        QCOMPARE(plannedRuns(second.plan).first(),
                 PlannedRun({Tool::Sox, {"/w/B_PAD.wav", "/w/B_PAD_PAD.wav", "pad", "10"}}));
        QCOMPARE(second.inputs, QStringList({"/w/A.wav", "/w/B_PAD_PAD.wav"}));
    }

    void equalStartsGiveTheSameInputsInEitherOrder() {
        const AudioTracks ab = {track("/w/A.wav", 10, 0), track("/w/B.wav", 5, 4), track("/w/C.wav", 5, 4)};
        const AudioTracks ba = {track("/w/A.wav", 10, 0), track("/w/C.wav", 5, 4), track("/w/B.wav", 5, 4)};
        QStringList one = buildMixPlan(ab, "/w/R.wav").inputs, two = buildMixPlan(ba, "/w/R.wav").inputs;
        std::sort(one.begin(), one.end());
        std::sort(two.begin(), two.end());
        QCOMPARE(one, two);
    }

    // The same for real: B and C, two tones starting at 4 s, joined over A in
    // either order, give the same samples (within the dither sox adds to
    // every mix, up to 2 in 32768 between two runs).
    void equalStartsGiveTheSameJoinedAudioInEitherOrder() {
        QTemporaryDir dir;
        const QString a = dir.filePath("A.wav"), b = dir.filePath("B.wav"), c = dir.filePath("C.wav");
        fixtures::makeTone(a, 10, 440, 0.5);
        fixtures::makeTone(b, 5, 660, 0.5);
        fixtures::makeTone(c, 5, 990, 0.5);
        const ToolPaths tools{QStandardPaths::findExecutable("sox"),
                              QStandardPaths::findExecutable("ffmpeg")};
        QList<std::vector<short>> joined;
        QList<QStringList> inputs;
        for (const AudioTracks& tracks : {AudioTracks{track(a, 10, 0), track(b, 5, 4), track(c, 5, 4)},
                                          AudioTracks{track(a, 10, 0), track(c, 5, 4), track(b, 5, 4)}}) {
            const QString result = dir.filePath(QString("R%1.wav").arg(joined.size()));
            const MixPlan mix = buildMixPlan(tracks, result);
            const PlanOutcome outcome = executePlan(mix.plan, tools);
            QVERIFY2(outcome.ok, qPrintable(outcome.alert));
            QVERIFY(fixtures::wavInfo(result).isWorkingWav());
            QVERIFY(std::abs(fixtures::wavInfo(result).seconds() - 10) < 0.01);
            joined << fixtures::samples(result);
            inputs << mix.inputs;
        }
        QVERIFY(inputs[0] != inputs[1]); // the two rows did reach sox in two orders
        QCOMPARE(joined[0].size(), joined[1].size());
        int furthest = 0;
        for (size_t i = 0; i < joined[0].size(); ++i)
            furthest = std::max(furthest, std::abs(joined[0][i] - joined[1][i]));
        QVERIFY2(furthest <= 2, qPrintable(QString::number(furthest)));
        // Both tones are there from 4 s to 9 s, and A alone before.
        const std::vector<short>& all = joined[0];
        QVERIFY(std::abs(pitch(all, 0.5, 3.5) - 440) < 5);
        QVERIFY(std::abs(pitch(all, 9.2, 9.9) - 440) < 8);
        QVERIFY(fixtures::rms(dir.filePath("R0.wav"), 4.5, 8.5) >
                fixtures::rms(dir.filePath("R0.wav"), 0.5, 3.5));
    }

    void namesakesInTwoFoldersArePaddedEachBesideItself() {
        const AudioTracks tracks = {track("/x/take.wav", 10, 0), track("/y/take.wav", 10, 10),
                                    track("/z/take.wav", 10, 20)};
        QCOMPARE(buildMixPlan(tracks, "/w/R.wav").inputs,
                 QStringList({"/x/take.wav", "/y/take_PAD.wav", "/z/take_PAD.wav"}));
    }

    // A 10 s, B 20 s and C 5 s at 0, 10 and 30, three tones, joined by sox.
    void theJoinForReal() {
        QTemporaryDir dir;
        const QString a = dir.filePath("A.wav"), b = dir.filePath("B.wav"), c = dir.filePath("C.wav"),
                      result = dir.filePath("R.wav");
        fixtures::makeTone(a, 10, 440, 0.9);
        fixtures::makeTone(b, 20, 880, 0.9);
        fixtures::makeTone(c, 5, 1320, 0.9);
        const MixPlan mix = buildMixPlan({track(a, 10, 0), track(b, 20, 10), track(c, 5, 30)}, result);
        const PlanOutcome outcome = executePlan(
            mix.plan, {QStandardPaths::findExecutable("sox"), QStandardPaths::findExecutable("ffmpeg")});
        QVERIFY2(outcome.ok, qPrintable(outcome.alert));
        const fixtures::WavInfo info = fixtures::wavInfo(result);
        QVERIFY(info.isWorkingWav());
        QVERIFY2(std::abs(info.seconds() - 35) < 0.01, qPrintable(QString::number(info.seconds())));
        const std::vector<short> all = fixtures::samples(result);
        QVERIFY(std::abs(pitch(all, 1, 9) - 440) < 5);
        QVERIFY(std::abs(pitch(all, 11, 29) - 880) < 8);
        QVERIFY(std::abs(pitch(all, 31, 34.5) - 1320) < 12);
        // Each stretch holds its one track: silence pads the others.
        for (const auto& [from, to] : {std::pair{1.0, 9.0}, {11.0, 29.0}, {31.0, 34.5}})
            QVERIFY(fixtures::rms(result, from, to) > 0.15);
        QVERIFY(QFile::exists(dir.filePath("B_PAD.wav")) && QFile::exists(dir.filePath("C_PAD.wav")));
    }

    void theStripDrawsEachRowToScaleInItsOwnLane() {
        AudioTracks tracks = stacked({10, 20, 10});
        const auto width = [](const QString& text) { return qreal(text.size() * 7); };
        StripLayout strip = layOutStrip(tracks, 1, QSizeF(400, 90), width);
        QCOMPARE(strip.span, 40u);
        QCOMPARE(strip.bars.size(), 3);
        QCOMPARE(strip.bars[0].rect, QRectF(0, 1, 100, 28));
        QCOMPARE(strip.bars[1].rect, QRectF(100, 31, 200, 28));
        QCOMPARE(strip.bars[2].rect, QRectF(300, 61, 100, 28));
        QVERIFY(strip.bars[1].selected && !strip.bars[0].selected);
        QCOMPARE(strip.bars[1].label, QString("t1.wav"));
        QVERIFY(strip.bars[1].labelFits);

        // Overlapping: the second starts at 5 and reaches 25; a gap before the third.
        QVERIFY(setTrackStart(tracks, 1, 5));
        QVERIFY(setTrackStart(tracks, 2, 30));
        strip = layOutStrip(tracks, -1, QSizeF(400, 90), width);
        QCOMPARE(strip.span, 40u);
        QCOMPARE(strip.bars[1].rect.left(), 50.0);
        QCOMPARE(strip.bars[1].rect.right(), 250.0);
        QVERIFY(strip.bars[1].rect.left() < strip.bars[0].rect.right()); // the overlap shows
        QCOMPARE(strip.bars[2].rect.left(), 300.0);                      // and the gap
        QVERIFY(
            std::none_of(strip.bars.begin(), strip.bars.end(), [](const StripBar& b) { return b.selected; }));

        // A name wider than its bar is left out; a track of no length is a line.
        tracks = {track("/w/a-rather-long-name.wav", 1, 0), track("/w/b.wav", 0, 1),
                  track("/w/c.wav", 99, 1)};
        strip = layOutStrip(tracks, 0, QSizeF(100, 30), width);
        QVERIFY(!strip.bars[0].labelFits);
        QCOMPARE(strip.bars[1].rect.width(), 1.0);
        QVERIFY(strip.bars[2].rect.right() <= 100.0);
        QVERIFY(layOutStrip({}, -1, QSizeF(100, 30), width).bars.isEmpty());
    }

    // Rows name their working files as before; their tips and the strip's
    // bars also name the file each track came from.
    void rowsAndBarsNameTheFileEachTrackCameFrom() {
        const AudioTracks tracks = tracksOfDocuments({{"/w/2026-11-26-10-00-00.wav", 10, "interview.mp3"},
                                                      {"/w/2026-11-26-10-00-01.wav", 30, "music.flac"},
                                                      {"/w/silence.wav", 10, "silence.wav"}});
        QCOMPARE(tracks[0].s_Name, QString("2026-11-26-10-00-00.wav"));
        QCOMPARE(tracks[0].s_Source, QString("interview.mp3"));
        QCOMPARE(mixerTrackTip(tracks[0]), QString("2026-11-26-10-00-00.wav, from interview.mp3"));
        QCOMPARE(mixerTrackTip(tracks[2]), QString("silence.wav")); // its own source
        QCOMPARE(mixerTrackTip(track("/w/x.wav", 1, 0)), QString("x.wav"));

        const auto width = [](const QString& text) { return qreal(text.size() * 7); };
        // 50 s over 1000 px: 200, 600 and 200 px wide.
        const StripLayout strip = layOutStrip(tracks, -1, QSizeF(1000, 90), width);
        QCOMPARE(strip.bars[1].label, QString("music.flac · 2026-11-26-10-00-01.wav")); // 36 × 7 px fit
        QCOMPARE(strip.bars[0].label, QString("interview.mp3"));                        // both do not
        QCOMPARE(strip.bars[2].label, QString("silence.wav"));
        QVERIFY(strip.bars[0].labelFits && strip.bars[1].labelFits && strip.bars[2].labelFits);
        QCOMPARE(strip.bars[1].tip, QString("2026-11-26-10-00-01.wav, from music.flac"));
        // A bar too narrow for the source's name shows none.
        const StripLayout narrow = layOutStrip(tracks, -1, QSizeF(300, 90), width);
        QVERIFY(!narrow.bars[0].labelFits);

        // Which bar a point is over, for its tooltip.
        QCOMPARE(stripBarAt(strip, QPointF(100, 15)), 0);
        QCOMPARE(stripBarAt(strip, QPointF(500, 45)), 1);
        QCOMPARE(stripBarAt(strip, QPointF(500, 15)), -1); // the first lane, past the first bar
        QCOMPARE(stripBarAt(strip, QPointF(900, 75)), 2);
        QCOMPARE(stripBarAt(strip, QPointF(-1, 15)), -1);
    }
};

QTEST_MAIN(tst_MixerTracks)
#include "tst_mixertracks.moc"
