#include "effects/EffectCatalogue.h"
#include "effects/EffectReference.h"

#include <QFile>
#include <QTest>

namespace {
// A row made for these tests: a gain slider and a check box, and a builder
// that can be told to read what it should not.
EffectEntry testRow(std::function<EffectArguments(const EffectValues&)> arguments,
                    std::vector<Check> checks = {}) {
    return {"Test",
            "Test",
            "Test",
            {"Window_Test",
             "Test",
             {},
             {slider("f_Gain", "Gain", "Gain (%):", 0, 200, 50).over(100, "%.2f"),
              checkBox("u_Invert", "Invert", "Invert:", false).as(ValueType::Unsigned)},
             std::move(checks)},
            {},
            true,
            std::move(arguments)};
}
} // namespace

class tst_EffectDeclarations : public QObject {
    Q_OBJECT
private slots:
    // Every value an argument builder reads is declared by a control of its
    // dialog, as the type the builder takes it as; every check reads a declared value.
    void everyRowAgreesWithItsDeclarations() {
        for (const EffectEntry& entry : effectCatalogue())
            QVERIFY2(declarationProblems(entry).isEmpty(), qPrintable(declarationProblems(entry).join('\n')));
    }

    // The checker itself: a deliberately missing key, a key read as the wrong
    // type, a check of nothing declared, two controls of one name.
    void theCheckerFindsWhatDisagrees() {
        const EffectEntry fine = testRow([](const EffectValues& v) {
            return EffectArguments{
                {}, {"vol", QString::number(v.real("f_Gain")), QString::number(v.unsignedWhole("u_Invert"))}};
        });
        QCOMPARE(declarationProblems(fine), QStringList());

        const EffectEntry missing = testRow([](const EffectValues& v) {
            return EffectArguments{{}, {"vol", QString::number(v.real("f_Gian"))}};
        });
        QCOMPARE(declarationProblems(missing),
                 QStringList({"Test: the arguments read f_Gian, which no control declares"}));

        const EffectEntry mistyped = testRow([](const EffectValues& v) {
            return EffectArguments{{}, {"vol", QString::number(v.whole("f_Gain"))}};
        });
        QCOMPARE(declarationProblems(mistyped),
                 QStringList({"Test: the arguments read f_Gain as whole, but its control holds real"}));

        const EffectEntry badCheck = testRow(
            [](const EffectValues& v) {
                return EffectArguments{{}, {"vol", QString::number(v.real("f_Gain"))}};
            },
            {{"f_Level", Check::Zero, "Level invalid."}});
        QCOMPARE(declarationProblems(badCheck),
                 QStringList({"Test: a check reads f_Level, which no control declares"}));

        EffectEntry twice = fine;
        twice.dialog.parameters.push_back(slider("f_Other", "Gain", "Other:", 0, 1, 0));
        QCOMPARE(declarationProblems(twice), QStringList({"Test: two controls are named sliderGain"}));

        // A row without a dialog has nothing to read.
        EffectEntry bare = missing;
        bare.dialog = {};
        QCOMPARE(declarationProblems(bare),
                 QStringList({"Test: the arguments read f_Gian, which no control declares"}));
    }

    // Every effect, its dialog left as it opens, gives exactly these arguments.
    void startValuesGiveTheArguments_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QStringList>("global");
        QTest::addColumn<QStringList>("effect");
        const auto row = [](const char* key, QStringList global, QStringList effect) {
            QTest::newRow(key) << key << global << effect;
        };
        row("Amplify", {"-v", "1.00"}, {});
        row("Normalize", {"--norm=-1.00"}, {});
        row("FadeIn", {}, {"fade", "t", "0.50"});
        row("FadeOut", {}, {"fade", "t", "0", "0", "0.50"});
        row("Compand", {}, {"compand", "0.30,1.00", "6:-70,-60,-20", "-5", "-90", "0.20"});
        row("Compression", {}, {"contrast", "75"});
        row("DCShift", {}, {"dcshift", "0.10", "0.05"});
        row("BassTreble", {}, {"bass", "5.00", "treble", "3.00"});
        row("Equalizer", {}, equalizerArguments(1.0f));
        row("HighPass", {}, {"highpass", "-2", "900"});
        row("LowPass", {}, {"lowpass", "-2", "900"});
        row("BandPass", {}, {"bandpass", "1000", "600"});
        row("BandReject", {}, {"bandreject", "1000", "600"});
        row("Biquad", {},
            {"biquad", "0.5000000", "0.5000000", "0.0000000", "1.0000000", "0.0000000", "0.0000000"});
        row("DeEmphasis", {}, {"deemph"});
        row("RIAA", {}, {"riaa"});
        row("Pitch", {}, {"pitch", "300.000000"});
        row("Speed", {}, {"speed", "1.25"});
        row("Tempo", {}, {"tempo", "1.25"});
        row("Bend", {}, {"bend", "1.00,300,2.00"});
        row("Reverse", {}, {"reverse"});
        row("Echo", {}, {"echo", "0.80", "0.90", "1000.00", "0.50"});
        row("Reverb", {}, {"reverb", "50", "50", "100", "100", "0", "0"});
        row("Chorus", {}, {"chorus", "0.70", "0.90", "50.00", "0.50", "0.30", "2.00", "-t"});
        row("Flanger", {}, {"flanger", "0", "2", "0", "71", "0.50", "sin", "25", "lin"});
        row("Phaser", {}, {"phaser", "0.80", "0.74", "3.00", "0.50", "1.50", "-t"});
        row("Tremolo", {}, {"tremolo", "5.00", "40"});
        row("Earwax", {}, {"earwax"});
        row("OOPS", {}, {"oops"});
        row("ShortenPauses", {}, {"silence", "-l", "0", "-1", "1.00", "1.00%"});
        row("LoudnessNormalize", {}, {}); // no sox words: two ffmpeg runs of its own, below
    }
    void startValuesGiveTheArguments() {
        QFETCH(QString, key);
        QFETCH(QStringList, global);
        QFETCH(QStringList, effect);
        const EffectEntry* entry = findEffect(key);
        QVERIFY(entry);
        const EffectArguments a = entry->arguments(startValues(entry->dialog));
        QCOMPARE(a.global, global);
        QCOMPARE(a.effect, effect);
    }
    void everyRowHasItsStartArguments() { QCOMPARE(effectCatalogue().size(), std::size_t(31)); }

    // Loudness Normalize's start values: the podcast target, -1 dBTP, 11 LU,
    // measured and then applied by ffmpeg, said in its own name.
    void loudnessNormalizeRunsFfmpegTwice() {
        const EffectEntry* entry = findEffect("LoudnessNormalize");
        QVERIFY(entry);
        const EffectArguments a = entry->arguments(startValues(entry->dialog));
        QVERIFY(a.steps && a.notice);
        QCOMPARE(effectOperationName(a), QString("Loudness Normalize"));
        const QList<PlannedRun> runs = plannedRuns({a.steps("/w/in.wav", "/w/out.wav", "/w/whole.wav")});
        QCOMPARE(runs.size(), 2);
        QCOMPARE(runs[0].tool, Tool::FFmpeg);
        QCOMPARE(runs[0].arguments.mid(2, 4),
                 QStringList(
                     {"-i", "/w/whole.wav", "-af", "loudnorm=I=-16.0:TP=-1.0:LRA=11.0:print_format=json"}));
        QCOMPARE(runs[1].arguments.mid(2, 2), QStringList({"-i", "/w/in.wav"}));
        QCOMPARE(runs[1].arguments.last(), QString("/w/out.wav"));
        const EffectArguments broadcast =
            entry->arguments({{"f_Target_LUFS", -23.0f}, {"f_Ceiling_dBTP", -2.0f}, {"f_Range_LU", 7.0f}});
        QVERIFY(plannedRuns({broadcast.steps("/w/in.wav", "/w/out.wav", "/w/in.wav")})[0].arguments.contains(
            "loudnorm=I=-23.0:TP=-2.0:LRA=7.0:print_format=json"));
    }

    // How a control shows its value and how OK reads it back.
    void labelsAndReadings() {
        const Parameter frequency = findDialog("Window_Band_Pass_Reject")->parameters.at(0);
        QCOMPARE(frequency.labelText(123456), QString("1234.56"));
        QCOMPARE(std::get<quint64>(frequency.read("1234.56", 123456)), quint64(1234));
        const Parameter rolloff = findDialog("Window_HL_Pass")->parameters.at(0);
        QCOMPARE(rolloff.labelText(150), QString("900"));
        QCOMPARE(std::get<qint64>(rolloff.read("900", 150)), qint64(900));
        const Parameter semitones = findDialog("Window_Pitch")->parameters.at(0);
        QCOMPARE(semitones.labelText(-50), QString("-0.50"));
        QCOMPARE(std::get<float>(semitones.read("-0.50", -50)), -50.0f); // the slider's own position
        const Parameter bass = findDialog("Window_Bass_And_Treble")->parameters.at(0);
        QCOMPARE(bass.actionName(), QString("OnSliderChangeBass"));
        QCOMPARE(findDialog("Window_Biquad")->parameters.at(3).actionName(), QString("onChangea0"));
        QCOMPARE(findDialog("Window_Equalizer")->parameters.at(0).actionName(), QString("OnChangedB01"));
        QCOMPARE(findDialog("Window_Equalizer")->parameters.size(), std::size_t(21));
        const Parameter start = findDialog("Window_Bend")->parameters.at(0);
        QCOMPARE(start.widgetName(), QString("textStart"));
        QCOMPARE(std::get<quint64>(start.read("-5", 0)), quint64(-5));
        const Parameter shape = findDialog("Window_Fade")->parameters.at(1);
        QCOMPARE(shape.widgetName(), QString("comboModulation"));
        QCOMPARE(std::get<quint64>(shape.read({}, 3)), quint64(3));
        const Parameter invert = checkBox("u_Invert", "Invert", "Invert:", true).as(ValueType::Unsigned);
        QCOMPARE(invert.widgetName(), QString("checkInvert"));
        QCOMPARE(std::get<quint64>(invert.read({}, 1)), quint64(1));
    }

    // The checks run in their declared order, each by its rule.
    void refusals() {
        const DialogDeclaration& echo = *findDialog("Window_Echo");
        QCOMPARE(refusal(echo, {{"f_Decay_Factor", 0.5f}, {"f_Delay_MS", 0.0f}}), QString());
        QCOMPARE(refusal(echo, {{"f_Decay_Factor", 0.0f}, {"f_Delay_MS", -1.0f}}),
                 QString("Decay factor invalid."));
        QCOMPARE(refusal(echo, {{"f_Decay_Factor", 0.5f}, {"f_Delay_MS", -1.0f}}), QString("Delay invalid."));
        const DialogDeclaration& fade = *findDialog("Window_Fade");
        QCOMPARE(refusal(fade, {{"f_Duration_MS", -5.0f}}), QString("Duration invalid."));
        QCOMPARE(refusal(fade, {{"f_Duration_MS", 0.5f}}), QString());
        const DialogDeclaration& bend = *findDialog("Window_Bend");
        QCOMPARE(refusal(bend, {{"f_Duration", quint64(-5)}}), QString()); // only 0 is refused
        QCOMPARE(refusal(bend, {{"f_Duration", quint64(0)}}), QString("Duration invalid."));
        QCOMPARE(refusal(*findDialog("Window_Amplify"), startValues(*findDialog("Window_Amplify"))),
                 QString());
    }

    // docs/effects.md is the catalogue written out; `make effects-doc` rewrites it.
    void referenceIsCurrent() {
        const QString path = qEnvironmentVariable("TANSELO_SOURCE_DIR") + "/docs/effects.md";
        const QString written = effectsReference();
        if (qEnvironmentVariableIsSet("TANSELO_WRITE_REFERENCE")) {
            QFile out(path);
            QVERIFY(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
            out.write(written.toUtf8());
        }
        QFile in(path);
        QVERIFY2(in.open(QIODevice::ReadOnly), qPrintable(path));
        QVERIFY2(QString::fromUtf8(in.readAll()) == written,
                 "docs/effects.md differs from the catalogue: run `make effects-doc` and commit the result");
    }
};

QTEST_GUILESS_MAIN(tst_EffectDeclarations)
#include "tst_effectdeclarations.moc"
