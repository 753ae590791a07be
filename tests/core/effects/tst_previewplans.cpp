// A preview runs the effect's own sox arguments over a stretch of the track:
// its samples are those of the applied effect on the same stretch.

#include "effects/PreviewPlans.h"
#include "plans/PlanRunner.h"
#include "support/Fixtures.h"

#include <QDir>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

namespace {
constexpr qint64 Rate = 44100;

ToolPaths realTools() {
    return {QStandardPaths::findExecutable("sox"), QStandardPaths::findExecutable("ffmpeg")};
}

EditState stateOf(const QString& folder, const QString& track, float seconds, float start, float end,
                  float position = 0) {
    return {folder,  track, {}, calculateSegmentVariables({seconds, start, end, position, qint64(seconds)}),
            seconds, start, end};
}
} // namespace

class tst_PreviewPlans : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;
    QString m_track; // tone 0–4 s, silence 4–6 s, tone 6–10 s

    // The samples from `fromSeconds` on of the version the effect applied
    // through OK makes, as many as the preview holds, against the preview's;
    // or only `seconds` of them, where the preview stops in the selection
    // and the effect's tail (an echo's) is heard where the applied effect
    // goes on.
    void compareWithApplied(const EditState& s, const EffectArguments& arguments, bool selection,
                            double fromSeconds, double seconds = 0) {
        const PreviewFiles files = previewFiles(m_dir.path(), 7);
        const PlanOutcome preview =
            executePlan(buildPreviewPlan(s, files, arguments, selection), realTools());
        QVERIFY2(preview.ok, qPrintable(preview.alert));
        const ResultNames names(m_dir.path(), QDateTime(QDate(2024, 3, 5), QTime(14, 7, 59)));
        const EditPlan apply =
            selection ? buildEffectSelectionPlan(s, names, arguments) : buildEffectPlan(s, names, arguments);
        const PlanOutcome applied = executePlan(apply.plan, realTools());
        QVERIFY2(applied.ok, qPrintable(applied.alert));
        const std::vector<short> heard = fixtures::samples(files.preview),
                                 made = fixtures::samples(apply.result);
        const std::size_t from = std::size_t(fromSeconds * Rate) * 2;
        QVERIFY(heard.size() > Rate); // a second and more
        QVERIFY(from + heard.size() <= made.size());
        const std::size_t compared =
            seconds > 0 ? std::size_t(std::llround(seconds * Rate)) * 2 : heard.size();
        QVERIFY(compared <= heard.size());
        for (std::size_t i = 0; i < compared; ++i)
            if (heard[i] != made[from + i])
                QFAIL(qPrintable(QString("sample %1 of the preview is %2, the applied version's %3")
                                     .arg(i)
                                     .arg(heard[i])
                                     .arg(made[from + i])));
        // Nothing of the preview's making is left but the preview itself.
        for (const QString& file : {files.lead, files.part, files.processed})
            QVERIFY2(!QFileInfo::exists(file) || file == files.preview, qPrintable(file));
        QFile::remove(files.preview);
        QFile::remove(apply.result);
        for (const QString& part : apply.deleteAfterAdopting)
            QFile::remove(part);
    }

private slots:
    void initTestCase() { m_track = fixtures::makePattern(m_dir.path()); }

    void theStretchIsTheSelectionsStartWithASecondBefore() {
        const PreviewStretch sel = previewStretch(stateOf("/w", "/w/t.wav", 10, 30, 60), true);
        QCOMPARE(sel.leadStart, QString("00:00:02.00"));
        QCOMPARE(sel.leadDuration, QString("00:00:01.00"));
        QCOMPARE(sel.start, QString("00:00:03.00"));
        QCOMPARE(sel.duration, QString("00:00:03.00"));
        // At most ten seconds of a long selection.
        const PreviewStretch longOne = previewStretch(stateOf("/w", "/w/t.wav", 100, 10, 80), true);
        QCOMPARE(longOne.start, QString("00:00:10.00"));
        QCOMPARE(longOne.duration, QString("00:00:10.00"));
        // Half a second into the track: half a second leads in; at its start none.
        const PreviewStretch early = previewStretch(stateOf("/w", "/w/t.wav", 10, 5, 20), true);
        QCOMPARE(early.leadStart, QString("00:00:00.00"));
        QCOMPARE(early.leadDuration, QString("00:00:00.50"));
        QVERIFY(previewStretch(stateOf("/w", "/w/t.wav", 10, 0, 20), true).leadStart.isEmpty());
        // The whole track: ten seconds from the play position.
        const PreviewStretch whole = previewStretch(stateOf("/w", "/w/t.wav", 60, 0, 20, 12.5f), false);
        QVERIFY(whole.leadStart.isEmpty());
        QCOMPARE(whole.start, QString("00:00:12.50"));
        QCOMPARE(whole.duration, QString("00:00:10.00"));
    }

    void theFilesAreTheWindowsOwnAndHidden() {
        const PreviewFiles one = previewFiles("/w", 3), other = previewFiles("/w", 4);
        QCOMPARE(one.preview, QString("/w/.preview-3.wav"));
        for (const QString& file : one.all()) {
            QVERIFY(QFileInfo(file).fileName().startsWith('.'));
            QVERIFY(!other.all().contains(file));
        }
        // The second slot plays while the first is made again, and the reverse.
        const PreviewFiles second = previewFiles("/w", 3, 1);
        QCOMPARE(second.preview, QString("/w/.preview-3-1.wav"));
        QCOMPARE(second.making(), one.making());
        QVERIFY(!one.making().contains(one.preview));
        const QStringList all = one.all();
        QCOMPARE(QSet<QString>(all.begin(), all.end()).size(), all.size());
    }

    void noiseReductionIsHeardOnTenSecondsFromThePlayPosition() {
        // Noise learnt from the silent middle of a noisy pattern, removed from
        // ten seconds from 1.5 s: the tone stays, the noise goes.
        const QString noisy = m_dir.filePath("noisy.wav");
        QCOMPARE(fixtures::run("sox",
                               {"-m", m_track, "|sox -n -r 44100 -c 2 -b 16 -p synth 10 whitenoise vol 0.02",
                                "-b", "16", noisy}),
                 0);
        const PreviewFiles files = previewFiles(m_dir.path(), 9);
        const PlanOutcome outcome = executePlan(
            buildNoiseReductionPreviewPlan(stateOf(m_dir.path(), noisy, 10, 42, 58, 1.5f), files, 0.3f),
            realTools());
        QVERIFY2(outcome.ok, qPrintable(outcome.alert));
        // To the track's end, but for the last part-window sox's noisered leaves out.
        QVERIFY(std::abs(fixtures::wavInfo(files.preview).seconds() - 8.5) < 0.05);
        for (const QString& file : files.making())
            QVERIFY2(!QFileInfo::exists(file), qPrintable(file));
        // 2.5 s into the track (1 s into the preview) is silence and noise: quieter after.
        const std::vector<short> heard = fixtures::samples(files.preview), before = fixtures::samples(noisy);
        const auto rms = [](const std::vector<short>& s, std::size_t from) {
            double sum = 0;
            for (std::size_t i = from; i < from + 2 * Rate / 2; ++i)
                sum += double(s[i]) * s[i];
            return std::sqrt(sum / double(Rate));
        };
        QVERIFY2(rms(heard, 2 * std::size_t(3.0 * Rate)) < rms(before, 2 * std::size_t(4.5 * Rate)) / 4,
                 "the noise is still there");
        QFile::remove(files.preview);
    }

    void aRefusalIsToldInSoxsOwnWords() {
        const PreviewFiles files = previewFiles(m_dir.path(), 10);
        const PlanOutcome outcome =
            executePlan(buildPreviewPlan(stateOf(m_dir.path(), m_track, 10, 30, 60), files,
                                         {{}, {"phaser", "0.8", "0.74", "3", "0.4", "5000", "-s"}}, true),
                        realTools());
        QVERIFY(!outcome.ok);
        QCOMPARE(previewFailure(outcome), QString("sox refused the values: parameter `mod_speed' must be "
                                                  "between 0.1 and 2"));
        // Without a sox refusal the plan's alert stands.
        PlanOutcome other;
        other.ok = false;
        other.alert = "The disk is full.";
        QCOMPARE(previewFailure(other), other.alert);
    }

    void echoOnASelectionIsTheAppliedEcho() {
        compareWithApplied(stateOf(m_dir.path(), m_track, 10, 30, 60),
                           {{}, {"echo", "0.8", "0.88", "60", "0.4"}}, true, 2.0);
    }

    void aSelectionDeepInALongTrackIsCutAtTheSameSamples() {
        // Noise, where a cut one frame off shows at once; the selection starts
        // at an odd hundredth, 73.29 s into two minutes.
        const QString noise = m_dir.filePath("two-minutes.wav");
        QCOMPARE(fixtures::run("sox", {"-D", "-n", "-r", "44100", "-c", "2", "-b", "16", noise, "synth",
                                       "120", "whitenoise", "vol", "0.5"}),
                 0);
        const EditState s = stateOf(m_dir.path(), noise, 120, 61.075f, 70, 0);
        QCOMPARE(s.seg.sStartSelection, QString("00:01:13.29"));
        compareWithApplied(s, {{}, {"echo", "0.8", "0.88", "60", "0.4"}}, true, 72.29, 11.0);
        QFile::remove(noise);
    }

    void anEqualizerWithACutBandIsTheAppliedOne() {
        compareWithApplied(stateOf(m_dir.path(), m_track, 10, 40, 60),
                           {{}, {"equalizer", "1000", "1q", "-20"}}, false, 0);
    }

    void tempoOnTheWholeTrackIsTheAppliedTempo() {
        compareWithApplied(stateOf(m_dir.path(), m_track, 10, 40, 60), {{}, {"tempo", "1.5"}}, false, 0);
    }

    void refusedValuesEndThePreviewWithTheEffectsAlert() {
        const PreviewFiles files = previewFiles(m_dir.path(), 8);
        const PlanOutcome outcome =
            executePlan(buildPreviewPlan(stateOf(m_dir.path(), m_track, 10, 30, 60), files,
                                         {{}, {"echo", "0.8", "0.88", "0", "0.4"}}, true),
                        realTools());
        QVERIFY(!outcome.ok);
        QCOMPARE(outcome.alert, parametersNotAcceptedMessage());
        QVERIFY(!QFileInfo::exists(files.preview));
    }
};

QTEST_GUILESS_MAIN(tst_PreviewPlans)
#include "tst_previewplans.moc"
