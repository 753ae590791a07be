#include "EffectCatalogue.h"

#include "app/ToolArguments.h"

namespace {
// Formats as the effect's argument lists always have: reals with "%.02f" and
// friends, whole numbers with "%d" (the low 32 bits, signed).
QString real(double value, const char* format = "%.02f") {
    return QString::asprintf(format, value);
}
QString whole(qint64 value) {
    return QString::asprintf("%d", std::int32_t(std::uint32_t(quint64(value))));
}

float f(const EffectValues& v, const char* name) {
    return v.value(name).toFloat();
}
qint64 i(const EffectValues& v, const char* name) {
    return v.value(name).toLongLong();
}
quint64 u(const EffectValues& v, const char* name) {
    return v.value(name).toULongLong();
}

// "-s" for modulation 1, "-t" for 0, nothing otherwise.
QStringList modulation(const EffectValues& v) {
    const quint64 m = u(v, "u_Modulation");
    return m == 1 ? QStringList{"-s"} : m == 0 ? QStringList{"-t"} : QStringList{};
}

QStringList fadeShape(const EffectValues& v) {
    static const QStringList letters = {"t", "q", "h", "l", "p"};
    const quint64 m = u(v, "u_Modulation");
    return m < quint64(letters.size()) ? QStringList{letters[qsizetype(m)]} : QStringList{};
}

EffectArguments words(QStringList effect) {
    return {{}, std::move(effect)};
}

std::vector<EffectEntry> makeCatalogue() {
    return {
        {"Volume",
         "Amplify",
         "Amplify",
         "Window_Amplify",
         {},
         true,
         [](const EffectValues& v) {
             return EffectArguments{{"-v", real(double(u(v, "u_Percentage")) / 100)}, {}};
         }},
        {"Volume",
         "Normalize",
         "Normalize",
         "Window_Normalize",
         {},
         true,
         [](const EffectValues& v) {
             return EffectArguments{{"--norm=" + real(f(v, "f_dB"))}, {}};
         }},
        {"Volume", "FadeIn", "Fade In", "Window_Fade", "Fade-In", false,
         [](const EffectValues& v) {
             return words(QStringList{"fade"} + fadeShape(v) +
                          QStringList{real(f(v, "f_Duration_MS") / 1000)});
         }},
        {"Volume", "FadeOut", "Fade Out", "Window_Fade", "Fade-Out", false,
         [](const EffectValues& v) {
             return words(QStringList{"fade"} + fadeShape(v) +
                          QStringList{"0", "0", real(f(v, "f_Duration_MS") / 1000)});
         }},
        {"Volume",
         "Compand",
         "Compand",
         "Window_Compand",
         {},
         true,
         [](const EffectValues& v) {
             return words({"compand",
                           QString::asprintf("%.2f,%.2f", double(f(v, "f_Attack")), double(f(v, "f_Decay"))),
                           "6:-70,-60,-20", whole(i(v, "f_Gain")), whole(i(v, "f_Initial_Volume")),
                           real(f(v, "f_Delay"))});
         }},
        {"Volume", "Compression", "Contrast", "Window_Percentage", "Contrast", true,
         [](const EffectValues& v) {
             return words({"contrast", whole(i(v, "f_Percentage"))});
         }},
        {"Volume",
         "DCShift",
         "DC Shift",
         "Window_DCShift",
         {},
         true,
         [](const EffectValues& v) {
             return words({"dcshift", real(f(v, "f_Shift")), real(f(v, "f_Gain_Limiter"))});
         }},
        {"Tone",
         "BassTreble",
         "Bass and Treble",
         "Window_Bass_And_Treble",
         {},
         false,
         [](const EffectValues& v) {
             return words({"bass", real(f(v, "f_Bass")), "treble", real(f(v, "f_Treble"))});
         }},
        {"Tone",
         "Equalizer",
         "Equalizer",
         "Window_Equalizer",
         {},
         false,
         [](const EffectValues& v) { return words(equalizerArguments(f(v, "f_BandwidthQ"))); }},
        {"Tone", "HighPass", "High Pass", "Window_HL_Pass", "High Pass", true,
         [](const EffectValues& v) {
             return words({"highpass", "-2", whole(i(v, "f_Rolloff_dB"))});
         }},
        {"Tone", "LowPass", "Low Pass", "Window_HL_Pass", "Low Pass", true,
         [](const EffectValues& v) {
             return words({"lowpass", "-2", whole(i(v, "f_Rolloff_dB"))});
         }},
        {"Tone", "BandPass", "Band Pass", "Window_Band_Pass_Reject", "Band Pass", true,
         [](const EffectValues& v) {
             return words({"bandpass", whole(i(v, "f_Frequency")), whole(i(v, "f_Width_dB"))});
         }},
        {"Tone", "BandReject", "Band Reject", "Window_Band_Pass_Reject", "Band Reject", true,
         [](const EffectValues& v) {
             return words({"bandreject", whole(i(v, "f_Frequency")), whole(i(v, "f_Width_dB"))});
         }},
        {"Tone",
         "Biquad",
         "Biquad",
         "Window_Biquad",
         {},
         true,
         [](const EffectValues& v) {
             QStringList e{"biquad"};
             for (const char* c : {"f_b0", "f_b1", "f_b2", "f_a0", "f_a1", "f_a2"})
                 e << real(f(v, c), "%.07f");
             return words(e);
         }},
        {"Tone",
         "DeEmphasis",
         "De-emphasis",
         "Window_Deemphasis",
         {},
         true,
         [](const EffectValues&) { return words({"deemph"}); }},
        {"Tone",
         "RIAA",
         "RIAA",
         "Window_RIAA",
         {},
         true,
         [](const EffectValues&) { return words({"riaa"}); }},
        {"Time and pitch",
         "Pitch",
         "Pitch",
         "Window_Pitch",
         {},
         true,
         [](const EffectValues& v) {
             return words({"pitch", real(f(v, "f_Semitones"), "%f")});
         }},
        {"Time and pitch",
         "Speed",
         "Speed",
         "Window_Speed",
         {},
         true,
         [](const EffectValues& v) {
             return words({"speed", real(f(v, "f_Percentage") / 100)});
         }},
        {"Time and pitch",
         "Tempo",
         "Tempo",
         "Window_Tempo",
         {},
         true,
         [](const EffectValues& v) {
             return words({"tempo", real(f(v, "f_Percentage") / 100)});
         }},
        {"Time and pitch",
         "Bend",
         "Bend",
         "Window_Bend",
         {},
         true,
         [](const EffectValues& v) {
             return words({"bend", real(double(u(v, "f_Start")) / 1000) + "," + whole(i(v, "f_Cents")) + "," +
                                       real(double(u(v, "f_Duration")) / 1000)});
         }},
        {"Time and pitch",
         "Reverse",
         "Reverse",
         {},
         {},
         true,
         [](const EffectValues&) { return words({"reverse"}); }},
        {"Space and modulation",
         "Echo",
         "Echo",
         "Window_Echo",
         {},
         true,
         [](const EffectValues& v) {
             return words({"echo", real(f(v, "f_Gain_In") / 100), real(f(v, "f_Gain_Out") / 100),
                           real(f(v, "f_Delay_MS")), real(f(v, "f_Decay_Factor"))});
         }},
        {"Space and modulation",
         "Reverb",
         "Reverb",
         "Window_Reverb",
         {},
         true,
         [](const EffectValues& v) {
             return words({"reverb", whole(i(v, "f_Reverberence")), whole(i(v, "f_HF_Damping")),
                           whole(i(v, "f_Room_Size")), whole(i(v, "f_Stereo_Depth")),
                           whole(i(v, "f_Pre_Delay")), whole(i(v, "f_Wet_Gain"))});
         }},
        {"Space and modulation",
         "Chorus",
         "Chorus",
         "Window_Chorus",
         {},
         true,
         [](const EffectValues& v) {
             return words(QStringList{"chorus", real(f(v, "f_Gain_In") / 100), real(f(v, "f_Gain_Out") / 100),
                                      real(f(v, "f_Delay")), real(f(v, "f_Decay_Factor")),
                                      real(f(v, "f_Speed")), real(f(v, "f_Depth"))} +
                          modulation(v));
         }},
        {"Space and modulation",
         "Flanger",
         "Flanger",
         "Window_Flanger",
         {},
         true,
         [](const EffectValues& v) {
             return words({"flanger", whole(i(v, "f_Delay")), whole(i(v, "f_Depth")), whole(i(v, "f_Regen")),
                           whole(i(v, "f_Width")), real(f(v, "f_Speed")), "sin", whole(i(v, "f_Phase")),
                           "lin"});
         }},
        {"Space and modulation",
         "Phaser",
         "Phaser",
         "Window_Phaser",
         {},
         true,
         [](const EffectValues& v) {
             return words(QStringList{"phaser", real(f(v, "f_Gain_In") / 100), real(f(v, "f_Gain_Out") / 100),
                                      real(f(v, "f_Delay") / 1000), real(f(v, "f_Decay_Factor")),
                                      real(f(v, "f_Speed") / 1000)} +
                          modulation(v));
         }},
        {"Space and modulation",
         "Tremolo",
         "Tremolo",
         "Window_Tremolo",
         {},
         true,
         [](const EffectValues& v) {
             return words({"tremolo", real(f(v, "f_Speed")), whole(i(v, "f_Depth"))});
         }},
        {"Space and modulation",
         "Earwax",
         "Earwax",
         "Window_Earwax",
         {},
         true,
         [](const EffectValues&) { return words({"earwax"}); }},
        {"Space and modulation",
         "OOPS",
         "OOPS",
         "Window_OOPS",
         {},
         true,
         [](const EffectValues&) { return words({"oops"}); }},
    };
}
} // namespace

const std::vector<EffectEntry>& effectCatalogue() {
    static const std::vector<EffectEntry> catalogue = makeCatalogue();
    return catalogue;
}

QString actionName(const EffectEntry& entry, bool selection) {
    // The fades have no selection twin and their actions say nothing of the
    // track: OnPopupFadeIn, OnPopupFadeOut.
    if (entry.key.startsWith(QLatin1String("Fade")))
        return "OnPopup" + entry.key;
    return "OnPopup" + entry.key + (selection ? "Selection" : "EntireTrack");
}

const EffectEntry* findEffect(const QString& key) {
    for (const EffectEntry& entry : effectCatalogue())
        if (entry.key == key)
            return &entry;
    return nullptr;
}

QStringList equalizerArguments(float bandwidthQ) {
    static const QStringList frequencies = {"24",   "34",   "48",   "68",   "96",    "136",  "193",
                                            "273",  "386",  "546",  "772",  "1100",  "1500", "2200",
                                            "3100", "4400", "6200", "8700", "12400", "17500"};
    const QString q = real(bandwidthQ);
    QStringList e;
    for (const QString& frequency : frequencies)
        e << "equalizer" << frequency << q << q; // the bandwidth stands where a gain would
    return e;
}

EditPlan buildNoiseReductionPlan(const EditState& s, const ResultNames& names, float level) {
    const QString profile = pathInFolder(s.workFolder, QStringLiteral("noise.prof"));
    const QString sample = names.path("Selection"), result = names.path();
    EditPlan edit;
    edit.plan.steps = {
        step::DeleteFile{profile},
        step::Run{Tool::FFmpeg,
                  segmentArguments(s.track, s.seg.sStartSelection, s.seg.sDurationSelection, sample)},
        step::Run{Tool::Sox, {sample, "-n", "noiseprof", profile}},
        step::DeleteFile{result},
        step::Run{Tool::Sox, {s.track, result, "noisered", profile, real(level)}},
        step::RequireFile{result,
                          QStringLiteral("The noise could not be removed. Select a stretch that holds "
                                         "noise only, then try again.")},
        step::RequireAudio{result, QStringLiteral("The noise reduction")},
        step::ProbeDuration{result},
    };
    edit.result = result;
    edit.deleteAfterAdopting = {sample, profile};
    return edit;
}
