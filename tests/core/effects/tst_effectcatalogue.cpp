#include "effects/EffectCatalogue.h"
#include "support/Fixtures.h"

#include <QSet>
#include <QTest>

namespace {
EffectArguments argumentsOf(const QString& key, const EffectValues& values) {
    const EffectEntry* entry = findEffect(key);
    return entry ? entry->arguments(values) : EffectArguments{{"missing"}, {"missing"}};
}
} // namespace

class tst_EffectCatalogue : public QObject {
    Q_OBJECT
private slots:
    void everyEffectIsThereOnce() {
        QSet<QString> keys;
        for (const EffectEntry& entry : effectCatalogue())
            keys.insert(entry.key);
        QCOMPARE(keys.size(), int(effectCatalogue().size()));
        // The 28 effects of the catalogue, the equalizer, Shorten Pauses and
        // Loudness Normalize.
        QCOMPARE(effectCatalogue().size(), std::size_t(31));
        for (const char* noSelection : {"BassTreble", "FadeIn", "FadeOut", "Equalizer"})
            QVERIFY(!findEffect(noSelection)->selection);
        QCOMPARE(findEffect("Compression")->windowTitle, QString("Contrast"));
        QCOMPARE(findEffect("FadeIn")->windowTitle, QString("Fade-In"));
        QVERIFY(findEffect("Reverse")->dialog.isEmpty());
        QCOMPARE(findEffect("Equalizer")->dialog.name, QString("Window_Equalizer"));
        QVERIFY(!findEffect("NoiseReduction")); // a procedure of its own
    }

    // A step's values as its dialog words them, for the batch window's rows.
    void valuesAreToldInTheDialogsWords() {
        QCOMPARE(effectValuesText(*findEffect("FadeIn"),
                                  {{"f_Duration_MS", 2000.0f}, {"u_Modulation", quint64(0)}}),
                 QString("Duration (ms): 2000, Shape: Linear (t)"));
        QCOMPARE(
            effectValuesText(*findEffect("LoudnessNormalize"),
                             startValues(findEffect("LoudnessNormalize")->dialog)),
            QString("Target: Podcast, stereo (-16 LUFS), Loudness (LUFS): -16, True-peak ceiling (dBTP): -1, "
                    "Loudness range (LU): 11"));
        QCOMPARE(effectValuesText(*findEffect("Reverse"), {}), QString());
    }

    // A group's rows stand together, so the menu can set them apart.
    void groupsAreContiguous() {
        QStringList groups;
        for (const EffectEntry& entry : effectCatalogue()) {
            QVERIFY(!entry.group.isEmpty());
            if (groups.isEmpty() || groups.last() != entry.group) {
                QVERIFY2(!groups.contains(entry.group), qPrintable(entry.group));
                groups << entry.group;
            }
        }
        QCOMPARE(groups.size(), 4);
    }

    // What the history calls the version an effect made.
    void versionLabels() {
        QCOMPARE(effectVersionLabel(*findEffect("Echo"), true), QString("Echo on selection"));
        QCOMPARE(effectVersionLabel(*findEffect("BassTreble"), false), QString("Bass and Treble"));
        QCOMPARE(effectVersionLabel(*findEffect("Compression"), false), QString("Contrast"));
    }

    void actionNames() {
        QCOMPARE(actionName(*findEffect("Amplify"), false), QString("OnPopupAmplifyEntireTrack"));
        QCOMPARE(actionName(*findEffect("Amplify"), true), QString("OnPopupAmplifySelection"));
        QCOMPARE(actionName(*findEffect("BassTreble"), false), QString("OnPopupBassTrebleEntireTrack"));
        QCOMPARE(actionName(*findEffect("FadeIn"), false), QString("OnPopupFadeIn"));
        QCOMPARE(actionName(*findEffect("FadeOut"), false), QString("OnPopupFadeOut"));
        QCOMPARE(actionName(*findEffect("Compression"), true), QString("OnPopupCompressionSelection"));
        QCOMPARE(actionName(*findEffect("DeEmphasis"), true), QString("OnPopupDeEmphasisSelection"));
        QCOMPARE(actionName(*findEffect("Equalizer"), false), QString("OnPopupEqualizerEntireTrack"));
    }

    // The equalizer's row takes the bandwidth only; the band gains are not used.
    void theEqualizerRowUsesTheBandwidthOnly() {
        EffectValues values{{"f_BandwidthQ", 1.5f}};
        for (int band = 1; band <= 20; ++band)
            values.set(QString::asprintf("f_dB_%02d", band), qint64(band - 10));
        const EffectArguments a = argumentsOf("Equalizer", values);
        QVERIFY(a.global.isEmpty());
        QCOMPARE(a.effect, equalizerArguments(1.5f));
    }

    void amplifyPassesAGlobalOptionBeforeTheInput() {
        QCOMPARE(argumentsOf("Amplify", {{"u_Percentage", 100}}).global, QStringList({"-v", "1.00"}));
        QCOMPARE(argumentsOf("Amplify", {{"u_Percentage", 150}}).global, QStringList({"-v", "1.50"}));
        QVERIFY(argumentsOf("Amplify", {{"u_Percentage", 150}}).effect.isEmpty());
    }

    void normalizeIsOneArgument() {
        const EffectArguments a = argumentsOf("Normalize", {{"f_dB", -1.0f}});
        QCOMPARE(a.global, QStringList({"--norm=-1.00"}));
        QVERIFY(a.effect.isEmpty());
    }

    void phaserDefaults() {
        QCOMPARE(argumentsOf("Phaser", {{"f_Gain_In", 80.0f},
                                        {"f_Gain_Out", 74.0f},
                                        {"f_Speed", 1500.0f},
                                        {"f_Delay", 3000.0f},
                                        {"f_Decay_Factor", 0.5f},
                                        {"u_Modulation", 0}})
                     .effect,
                 QStringList({"phaser", "0.80", "0.74", "3.00", "0.50", "1.50", "-t"}));
        QCOMPARE(argumentsOf("Phaser", {{"u_Modulation", 1}}).effect.last(), QString("-s"));
        QCOMPARE(argumentsOf("Phaser", {{"u_Modulation", 2}}).effect.size(), 6);
    }

    void bendDefaultsWithNoCents() {
        QCOMPARE(argumentsOf("Bend", {{"f_Start", 1000}, {"f_Cents", 0}, {"f_Duration", 2000}}).effect,
                 QStringList({"bend", "1.00,0,2.00"}));
        QCOMPARE(argumentsOf("Bend", {{"f_Start", 1500}, {"f_Cents", -300}, {"f_Duration", 250}}).effect,
                 QStringList({"bend", "1.50,-300,0.25"}));
    }

    void fades() {
        QCOMPARE(argumentsOf("FadeOut", {{"f_Duration_MS", 500.0f}, {"u_Modulation", 1}}).effect,
                 QStringList({"fade", "q", "0", "0", "0.50"}));
        QCOMPARE(argumentsOf("FadeIn", {{"f_Duration_MS", 1500.0f}, {"u_Modulation", 4}}).effect,
                 QStringList({"fade", "p", "1.50"}));
        QCOMPARE(argumentsOf("FadeIn", {{"f_Duration_MS", 500.0f}, {"u_Modulation", 9}}).effect,
                 QStringList({"fade", "0.50"}));
    }

    void bandPassTakesTheWholeFrequency() {
        QCOMPARE(argumentsOf("BandPass", {{"f_Frequency", 1234}, {"f_Width_dB", 36}}).effect,
                 QStringList({"bandpass", "1234", "36"}));
        QCOMPARE(argumentsOf("BandReject", {{"f_Frequency", 50}, {"f_Width_dB", 6}}).effect,
                 QStringList({"bandreject", "50", "6"}));
    }

    void theOtherArgumentLists() {
        QCOMPARE(argumentsOf("BassTreble", {{"f_Bass", 2.5f}, {"f_Treble", -1.0f}}).effect,
                 QStringList({"bass", "2.50", "treble", "-1.00"}));
        QCOMPARE(argumentsOf("Pitch", {{"f_Semitones", 250.0f}}).effect,
                 QStringList({"pitch", "250.000000"}));
        QCOMPARE(argumentsOf("Speed", {{"f_Percentage", 125.0f}}).effect, QStringList({"speed", "1.25"}));
        QCOMPARE(argumentsOf("Tempo", {{"f_Percentage", 80.0f}}).effect, QStringList({"tempo", "0.80"}));
        QCOMPARE(argumentsOf("Echo", {{"f_Gain_In", 80.0f},
                                      {"f_Gain_Out", 90.0f},
                                      {"f_Delay_MS", 1000.0f},
                                      {"f_Decay_Factor", 0.5f}})
                     .effect,
                 QStringList({"echo", "0.80", "0.90", "1000.00", "0.50"}));
        QCOMPARE(argumentsOf("Flanger", {{"f_Delay", 0},
                                         {"f_Depth", 2},
                                         {"f_Regen", 0},
                                         {"f_Width", 71},
                                         {"f_Speed", 0.5f},
                                         {"f_Phase", 25}})
                     .effect,
                 QStringList({"flanger", "0", "2", "0", "71", "0.50", "sin", "25", "lin"}));
        QCOMPARE(argumentsOf("Chorus", {{"f_Gain_In", 70.0f},
                                        {"f_Gain_Out", 90.0f},
                                        {"f_Delay", 50.0f},
                                        {"f_Decay_Factor", 0.4f},
                                        {"f_Speed", 0.25f},
                                        {"f_Depth", 2.0f},
                                        {"u_Modulation", 1}})
                     .effect,
                 QStringList({"chorus", "0.70", "0.90", "50.00", "0.40", "0.25", "2.00", "-s"}));
        QCOMPARE(argumentsOf("Reverb", {{"f_Reverberence", 50},
                                        {"f_HF_Damping", 50},
                                        {"f_Room_Size", 100},
                                        {"f_Stereo_Depth", 100},
                                        {"f_Pre_Delay", 0},
                                        {"f_Wet_Gain", 0}})
                     .effect,
                 QStringList({"reverb", "50", "50", "100", "100", "0", "0"}));
        QCOMPARE(argumentsOf("Tremolo", {{"f_Speed", 5.0f}, {"f_Depth", 40}}).effect,
                 QStringList({"tremolo", "5.00", "40"}));
        QCOMPARE(argumentsOf("Compand", {{"f_Attack", 0.3f},
                                         {"f_Decay", 0.8f},
                                         {"f_Delay", 0.2f},
                                         {"f_Gain", -5},
                                         {"f_Initial_Volume", -90}})
                     .effect,
                 QStringList({"compand", "0.30,0.80", "6:-70,-60,-20", "-5", "-90", "0.20"}));
        QCOMPARE(argumentsOf("HighPass", {{"f_Rolloff_dB", 12}}).effect,
                 QStringList({"highpass", "-2", "12"}));
        QCOMPARE(argumentsOf("LowPass", {{"f_Rolloff_dB", 6}}).effect, QStringList({"lowpass", "-2", "6"}));
        QCOMPARE(argumentsOf("DCShift", {{"f_Shift", 0.1f}, {"f_Gain_Limiter", 0.05f}}).effect,
                 QStringList({"dcshift", "0.10", "0.05"}));
        QCOMPARE(argumentsOf("Compression", {{"f_Percentage", 75}}).effect, QStringList({"contrast", "75"}));
        QCOMPARE(
            argumentsOf("Biquad", {{"f_b0", 0.5f}, {"f_b1", 0.0f}, {"f_b2", 0.0f}, {"f_a0", 1.0f}}).effect,
            QStringList(
                {"biquad", "0.5000000", "0.0000000", "0.0000000", "1.0000000", "0.0000000", "0.0000000"}));
        for (const auto& [key, word] :
             {std::pair{"DeEmphasis", "deemph"}, std::pair{"Earwax", "earwax"}, std::pair{"OOPS", "oops"},
              std::pair{"RIAA", "riaa"}, std::pair{"Reverse", "reverse"}})
            QCOMPARE(argumentsOf(key, {}).effect, QStringList({word}));
    }

    void wholeNumbersPrintTheirLowThirtyTwoBits() {
        QCOMPARE(argumentsOf("Compression", {{"f_Percentage", qint64(4294967296LL + 7)}}).effect.last(),
                 QString("7"));
    }

    void theEqualizerChainsTwentyBandsWithTheBandwidthTwice() {
        const QStringList e = equalizerArguments(1.5f);
        QCOMPARE(e.size(), 80);
        QCOMPARE(e.mid(0, 4), QStringList({"equalizer", "24", "1.50", "1.50"}));
        QCOMPARE(e.mid(76, 4), QStringList({"equalizer", "17500", "1.50", "1.50"}));
        QStringList frequencies;
        for (int band = 0; band < 20; ++band) {
            QCOMPARE(e[band * 4], QString("equalizer"));
            QCOMPARE(e[band * 4 + 2], QString("1.50"));
            QCOMPARE(e[band * 4 + 3], QString("1.50"));
            frequencies << e[band * 4 + 1];
        }
        QCOMPARE(frequencies, QStringList({"24",   "34",   "48",   "68",   "96",    "136",  "193",
                                           "273",  "386",  "546",  "772",  "1100",  "1500", "2200",
                                           "3100", "4400", "6200", "8700", "12400", "17500"}));
    }

    void noiseReductionCutsProfilesAndReduces() {
        const EditState s{"/w", "/w/t.wav", {}, calculateSegmentVariables({10, 10, 20, 0, 10}), 10, 10, 20};
        const ResultNames names("/w", QDateTime(QDate(2024, 3, 5), QTime(14, 7, 59)));
        const EditPlan e = buildNoiseReductionPlan(s, names, 0.21f);
        const QString sample = "/w/2024-03-05-14-07-59Selection.wav", r = "/w/2024-03-05-14-07-59.wav";
        QCOMPARE(plannedRuns(e.plan),
                 QList<PlannedRun>(
                     {{Tool::FFmpeg, {"-i", "/w/t.wav", "-ss", "00:00:01.00", "-t", "00:00:01.00", sample}},
                      {Tool::Sox, {sample, "-n", "noiseprof", "/w/noise.prof"}},
                      {Tool::Sox, {"/w/t.wav", r, "noisered", "/w/noise.prof", "0.21"}},
                      {Tool::FFmpeg, {"-i", r}}}));
        // Nothing stops between the runs; only a missing result is refused.
        QStringList lines = fixtures::describe(e.plan);
        QCOMPARE(lines.size(), 7);
        QCOMPARE(lines[5],
                 "require " + r +
                     " else The noise could not be removed. Select a stretch that holds noise only, "
                     "then try again.");
        QCOMPARE(std::get<step::DeleteFile>(e.plan.steps.front()).path, QString("/w/noise.prof"));
        // noisered names its profile after its output.
        QCOMPARE(outputOf(std::get<step::Run>(e.plan.steps[4])), r);
        QCOMPARE(outputOf(std::get<step::Run>(e.plan.steps[2])), QString("/w/noise.prof"));
        QCOMPARE(e.result, r);
        QCOMPARE(e.deleteAfterAdopting, QStringList({sample, "/w/noise.prof"}));
        QCOMPARE(e.label, QString("Noise reduction"));
    }
};

QTEST_GUILESS_MAIN(tst_EffectCatalogue)
#include "tst_effectcatalogue.moc"
