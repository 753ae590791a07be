// The effect catalogue: one row per effect, with its dialog declared as data
// and the function that turns the dialog's values into sox arguments.

#include "EffectCatalogue.h"

#include "loudness/Loudness.h"
#include "loudness/LoudnessNormalize.h"

#include <cmath>

namespace {
// Formats as the effects' argument lists always have: reals with "%.02f" and
// friends, whole numbers with "%d" (the low 32 bits, signed).
QString real(double value, const char* format = "%.02f") {
    return QString::asprintf(format, value);
}
QString whole(qint64 value) {
    return QString::asprintf("%d", std::int32_t(std::uint32_t(quint64(value))));
}

EffectArguments words(QStringList effect) {
    return {{}, std::move(effect)};
}

constexpr ValueType Real = ValueType::Real, Unsigned = ValueType::Unsigned;

// The input and output gains of the echo, the phaser and the chorus, in
// percent: the sliders' own positions are the values.
std::vector<Parameter> gains(int in, int out) {
    const char* why = "sox's gains are 0 … 1";
    return {
        slider("f_Gain_In", "GainIn", "Gain in (%):", 0, 100, in).as(Real).readFromSlider().because(why),
        slider("f_Gain_Out", "GainOut", "Gain out (%):", 0, 100, out).as(Real).readFromSlider().because(why)};
}

// The gains as sox takes them, 0 … 1.
QStringList gainWords(const EffectValues& v) {
    return {real(v.real("f_Gain_In") / 100), real(v.real("f_Gain_Out") / 100)};
}

Parameter modulationList() {
    return list("u_Modulation", "Modulation", "Modulation:", {"Triangular", "Sinusoidal"});
}

// "-s" for modulation 1, "-t" for 0, nothing otherwise.
QStringList modulation(const EffectValues& v) {
    const quint64 m = v.unsignedWhole("u_Modulation");
    return m == 1 ? QStringList{"-s"} : m == 0 ? QStringList{"-t"} : QStringList{};
}

std::vector<Parameter> operator+(std::vector<Parameter> a, const std::vector<Parameter>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

DialogDeclaration fadeDialog() {
    return {"Window_Fade",
            "Fade",
            {},
            {textField("f_Duration_MS", "DurationMS", "Duration (ms):", "500", Real),
             list("u_Modulation", "Modulation", "Shape:",
                  {"Linear (t)", "Quarter sine (q)", "Half sine (h)", "Logarithmic (l)",
                   "Inverted parabola (p)"})},
            {{"f_Duration_MS", Check::NotPositive, "Duration invalid."}}};
}

QStringList fadeShape(const EffectValues& v) {
    static const QStringList letters = {"t", "q", "h", "l", "p"};
    const quint64 m = v.unsignedWhole("u_Modulation");
    return m < quint64(letters.size()) ? QStringList{letters[qsizetype(m)]} : QStringList{};
}

// The platforms' targets to choose from, or any loudness from -40 to -5 LUFS
// (ffmpeg's own lowest is -70, far below any target); the ceiling and the
// range as ffmpeg 5 takes them.
DialogDeclaration loudnessDialog() {
    QStringList presets;
    QList<int> positions;
    for (const LoudnessTarget& target : loudnessTargets()) {
        presets << QStringLiteral("%1 (%2 LUFS)").arg(target.name, QString::number(target.lufs));
        positions << int(std::lround(target.lufs * 10));
    }
    presets << QStringLiteral("Custom");
    return {"Window_Loudness_Normalize",
            "Loudness Normalize",
            {},
            {list("u_Preset", "Preset", "Target:", presets).presetting("f_Target_LUFS", positions),
             slider("f_Target_LUFS", "Target", "Loudness (LUFS):", -400, -50, -160)
                 .over(10, "%.1f")
                 .as(Real)
                 .steps(1, 10)
                 .because("the targets platforms ask for lie between -40 and -5 LUFS"),
             slider("f_Ceiling_dBTP", "Ceiling", "True-peak ceiling (dBTP):", -90, 0, -10)
                 .over(10, "%.1f")
                 .as(Real)
                 .steps(1, 10)
                 .because("ffmpeg's loudnorm takes -9 … 0 dBTP"),
             slider("f_Range_LU", "Range", "Loudness range (LU):", 10, 200, 110)
                 .over(10, "%.1f")
                 .as(Real)
                 .steps(1, 10)
                 .because("ffmpeg 5's loudnorm takes 1 … 20 LU")}};
}

DialogDeclaration passDialog() {
    return {"Window_HL_Pass",
            "High or Low Pass",
            {},
            {slider("f_Rolloff_dB", "Rolloff", "Frequency (Hz):", 1, 3600, 150)
                 .timesBy(6)
                 .because("6 Hz … 21.6 kHz, below half the 44.1 kHz rate; sox refuses 0")}};
}

DialogDeclaration bandDialog() {
    return {"Window_Band_Pass_Reject",
            "Band Pass or Reject",
            {},
            {slider("f_Frequency", "Frequency", "Centre frequency (Hz):", 100, 2000000, 100000)
                 .over(100, "%.2f")
                 .as(Unsigned) // read as a whole number: the hundredths are dropped
                 .steps(100, 10000)
                 .because("1 Hz … 20 kHz"),
             slider("f_Width_dB", "Width", "Width (Hz):", 1, 3000, 100)
                 .timesBy(6)
                 .because("6 Hz … 18 kHz; sox reads a bare number as hertz here")}};
}

DialogDeclaration rateDialog(const char* name, const char* title) {
    return {name,
            title,
            {},
            {slider("f_Percentage", "Percentage", "Percentage:", 50, 200, 125)
                 .over(1, "%.02f")
                 .because("half to double; the length changes by the factor")}};
}

DialogDeclaration confirmation(const char* name, const char* title, const char* question) {
    return {name, title, question, {}, {}};
}

// The biquad's coefficients count ten-millionths on their sliders.
Parameter coefficient(const char* key, const char* control, int minimum, int start) {
    const QString caption = QString::fromLatin1(control) + ':';
    return slider(key, control, qPrintable(caption), minimum, 20000000, start)
        .over(10000000, "%.7f")
        .steps(10000, 1000000);
}

DialogDeclaration equalizerDialog() {
    static const char* const names[] = {"24",   "34",   "48",   "68",   "96",    "136",  "193",
                                        "273",  "386",  "546",  "772",  "1.1k",  "1.5k", "2.2k",
                                        "3.1k", "4.4k", "6.2k", "8.7k", "12.4k", "17.5k"};
    DialogDeclaration d{"Window_Equalizer", "Equalizer", {}, {}, {}};
    for (int b = 1; b <= 20; ++b) {
        const QByteArray key = QString::asprintf("f_dB_%02d", b).toLatin1();
        const QByteArray control = QString::asprintf("dB%02d", b).toLatin1();
        d.parameters.push_back(band(key, control, "Gain (dB):", names[b - 1], -20, 20, 0)
                                   .because("the gains are shown and read, not used"));
    }
    d.parameters.push_back(slider("f_BandwidthQ", "BandwidthQ", "Bandwidth (Q):", 10, 5000, 1000)
                               .over(1000, "%.2f")
                               .because("Q 0.01 … 5; it also stands where the gain would"));
    return d;
}

std::vector<EffectEntry> makeCatalogue() {
    return {
        {"Volume",
         "Amplify",
         "Amplify",
         {"Window_Amplify",
          "Amplify",
          {},
          {textField("u_Percentage", "Percentage", "Volume (%):", "100", Unsigned)},
          {{"u_Percentage", Check::Zero, "Percentage invalid."}}},
         {},
         true,
         [](const EffectValues& v) {
             return EffectArguments{{"-v", real(double(v.unsignedWhole("u_Percentage")) / 100)}, {}};
         }},
        {"Volume",
         "Normalize",
         "Normalize",
         {"Window_Normalize",
          "Normalize",
          {},
          {textField("f_dB", "dB", "Peak level (dB):", "-1.0", Real)},
          {}},
         {},
         true,
         [](const EffectValues& v) {
             return EffectArguments{{"--norm=" + real(v.real("f_dB"))}, {}};
         }},
        // Loudness to a platform's target rather than a peak: two ffmpeg
        // passes, measuring then applying one gain (see LoudnessNormalize.h).
        {"Volume",
         "LoudnessNormalize",
         "Loudness Normalize",
         loudnessDialog(),
         {},
         true,
         [](const EffectValues& v) {
             const LoudnessGoal goal{v.real("f_Target_LUFS"), v.real("f_Ceiling_dBTP"), v.real("f_Range_LU")};
             EffectArguments a;
             a.steps = [goal](const QString& input, const QString& output, const QString& measured) {
                 return loudnessNormalizeSteps(goal, input, output, measured);
             };
             a.operation = QStringLiteral("Loudness Normalize");
             a.notice = dynamicModeNotice;
             return a;
         }},
        {"Volume", "FadeIn", "Fade In", fadeDialog(), "Fade-In", false,
         [](const EffectValues& v) {
             return words(QStringList{"fade"} + fadeShape(v) +
                          QStringList{real(v.real("f_Duration_MS") / 1000)});
         }},
        {"Volume", "FadeOut", "Fade Out", fadeDialog(), "Fade-Out", false,
         [](const EffectValues& v) {
             return words(QStringList{"fade"} + fadeShape(v) +
                          QStringList{"0", "0", real(v.real("f_Duration_MS") / 1000)});
         }},
        {"Volume",
         "Compand",
         "Compand",
         {"Window_Compand",
          "Compand",
          {},
          {slider("f_Attack", "Attack", "Attack (s):", 0, 100, 30).over(100, "%.2f").because("0 … 1 s"),
           slider("f_Decay", "Decay", "Decay (s):", 0, 200, 100).over(100, "%.2f").because("0 … 2 s"),
           slider("f_Delay", "Delay", "Delay (s):", 0, 100, 20)
               .over(100, "%.2f")
               .because("0 … 1 s look-ahead"),
           slider("f_Gain", "Gain", "Gain (dB):", -20, 20, -5).because("make-up gain"),
           slider("f_Initial_Volume", "InitialVolume", "Initial volume (dB):", -100, 0, -90)
               .because("sox's usual −90 dB start")}},
         {},
         true,
         [](const EffectValues& v) {
             return words({"compand",
                           real(v.real("f_Attack"), "%.2f") + "," + real(v.real("f_Decay"), "%.2f"),
                           "6:-70,-60,-20", whole(v.whole("f_Gain")), whole(v.whole("f_Initial_Volume")),
                           real(v.real("f_Delay"))});
         }},
        {"Volume",
         "Compression",
         "Contrast",
         {"Window_Percentage",
          "Percentage",
          {},
          {slider("f_Percentage", "Percentage", "Amount (%):", 0, 100, 75)
               .as(Unsigned)
               .because("sox: 0 … 100, default 75")}},
         "Contrast",
         true,
         [](const EffectValues& v) {
             return words({"contrast", whole(qint64(v.unsignedWhole("f_Percentage")))});
         }},
        {"Volume",
         "DCShift",
         "DC Shift",
         {"Window_DCShift",
          "DC Shift",
          {},
          {slider("f_Shift", "Shift", "Shift:", -200, 200, 10).over(100, "%.2f").because("sox: ±2"),
           slider("f_Gain_Limiter", "GainLimiter", "Limiter gain:", 0, 100, 5)
               .over(100, "%.2f")
               .because("sox advises much less than 1")}},
         {},
         true,
         [](const EffectValues& v) {
             return words({"dcshift", real(v.real("f_Shift")), real(v.real("f_Gain_Limiter"))});
         }},
        {"Tone",
         "BassTreble",
         "Bass and Treble",
         {"Window_Bass_And_Treble",
          "Bass and Treble",
          {},
          {slider("f_Bass", "Bass", "Bass (dB):", -200, 200, 50)
               .over(10, "%.02f")
               .action("OnSliderChangeBass")
               .because("±20 dB shelves; sox takes any gain, more clips"),
           slider("f_Treble", "Treble", "Treble (dB):", -200, 200, 30)
               .over(10, "%.02f")
               .action("OnSliderChangeTreble")
               .because("as bass")}},
         {},
         false,
         [](const EffectValues& v) {
             return words({"bass", real(v.real("f_Bass")), "treble", real(v.real("f_Treble"))});
         }},
        {"Tone",
         "Equalizer",
         "Equalizer",
         equalizerDialog(),
         {},
         false,
         [](const EffectValues& v) { return words(equalizerArguments(v.real("f_BandwidthQ"))); }},
        {"Tone", "HighPass", "High Pass", passDialog(), "High Pass", true,
         [](const EffectValues& v) {
             return words({"highpass", "-2", whole(v.whole("f_Rolloff_dB"))});
         }},
        {"Tone", "LowPass", "Low Pass", passDialog(), "Low Pass", true,
         [](const EffectValues& v) {
             return words({"lowpass", "-2", whole(v.whole("f_Rolloff_dB"))});
         }},
        {"Tone", "BandPass", "Band Pass", bandDialog(), "Band Pass", true,
         [](const EffectValues& v) {
             return words(
                 {"bandpass", whole(qint64(v.unsignedWhole("f_Frequency"))), whole(v.whole("f_Width_dB"))});
         }},
        {"Tone", "BandReject", "Band Reject", bandDialog(), "Band Reject", true,
         [](const EffectValues& v) {
             return words(
                 {"bandreject", whole(qint64(v.unsignedWhole("f_Frequency"))), whole(v.whole("f_Width_dB"))});
         }},
        {"Tone",
         "Biquad",
         "Biquad",
         {"Window_Biquad",
          "Biquad",
          {},
          // ±2 each; the start averages two neighbouring samples, softening the top.
          {coefficient("f_b0", "b0", -20000000, 5000000).because("±2"),
           coefficient("f_b1", "b1", -20000000, 5000000).because("±2"),
           coefficient("f_b2", "b2", -20000000, 0).because("±2"),
           coefficient("f_a0", "a0", 1000000, 10000000)
               .action("onChangea0")
               .because("0.1 … 2; sox divides by a0, so it never reaches 0"),
           coefficient("f_a1", "a1", -20000000, 0).because("±2"),
           coefficient("f_a2", "a2", -20000000, 0).because("±2")}},
         {},
         true,
         [](const EffectValues& v) {
             QStringList e{"biquad"};
             for (const char* c : {"f_b0", "f_b1", "f_b2", "f_a0", "f_a1", "f_a2"})
                 e << real(v.real(c), "%.07f");
             return words(e);
         }},
        {"Tone",
         "DeEmphasis",
         "De-emphasis",
         confirmation("Window_Deemphasis", "De-emphasis", "Apply the de-emphasis filter to the audio?"),
         {},
         true,
         [](const EffectValues&) { return words({"deemph"}); }},
        {"Tone",
         "RIAA",
         "RIAA",
         confirmation("Window_RIAA", "RIAA",
                      "Apply the RIAA playback equalization for vinyl records to the audio?"),
         {},
         true,
         [](const EffectValues&) { return words({"riaa"}); }},
        {"Time and pitch",
         "Pitch",
         "Pitch",
         {"Window_Pitch",
          "Pitch",
          {},
          {slider("f_Semitones", "Semitones", "Semitones:", -1200, 1200, 300)
               .over(100, "%.02f")
               .readFromSlider() // in cents: the label shows semitones
               .because("one octave either way")}},
         {},
         true,
         [](const EffectValues& v) {
             return words({"pitch", real(v.real("f_Semitones"), "%f")});
         }},
        {"Time and pitch",
         "Speed",
         "Speed",
         rateDialog("Window_Speed", "Speed"),
         {},
         true,
         [](const EffectValues& v) {
             return words({"speed", real(v.real("f_Percentage") / 100)});
         }},
        {"Time and pitch",
         "Tempo",
         "Tempo",
         rateDialog("Window_Tempo", "Tempo"),
         {},
         true,
         [](const EffectValues& v) {
             return words({"tempo", real(v.real("f_Percentage") / 100)});
         }},
        {"Time and pitch",
         "Bend",
         "Bend",
         {"Window_Bend",
          "Bend",
          {},
          {textField("f_Start", "Start", "Start (ms):", "1000", Unsigned),
           slider("f_Cents", "Cents", "Bend (cents):", 1, 1200, 300).because("sox refuses 0 cents"),
           textField("f_Duration", "Duration", "Duration (ms):", "2000", Unsigned)},
          {{"f_Duration", Check::Zero, "Duration invalid."}}},
         {},
         true,
         [](const EffectValues& v) {
             return words({"bend", real(double(v.unsignedWhole("f_Start")) / 1000) + "," +
                                       whole(v.whole("f_Cents")) + "," +
                                       real(double(v.unsignedWhole("f_Duration")) / 1000)});
         }},
        {"Time and pitch",
         "Reverse",
         "Reverse",
         {},
         {},
         true,
         [](const EffectValues&) { return words({"reverse"}); }},
        // Long pauses inside a recording (an interview, a lecture) shrink to
        // a given length without touching the speech around them: sox's
        // silence effect, trimming nothing at the start (0), shortens every
        // silence of that length or more anywhere (-1), leaving that much of
        // it (-l). Trim Silence only trims the ends.
        {"Time and pitch",
         "ShortenPauses",
         "Shorten Pauses",
         {"Window_Shorten_Pauses",
          "Shorten Pauses",
          {},
          {textField("f_Pause_S", "Pause", "Longest pause (s):", "1.0", Real),
           textField("f_Threshold_Percent", "Threshold", "Silence below (% of full scale):", "1", Real)},
          {{"f_Pause_S", Check::NotPositive, "Pause length invalid."},
           {"f_Threshold_Percent", Check::NotPositive, "Threshold invalid."}}},
         {},
         true,
         [](const EffectValues& v) {
             return words({"silence", "-l", "0", "-1", real(v.real("f_Pause_S")),
                           real(v.real("f_Threshold_Percent")) + "%"});
         }},
        {"Space and modulation",
         "Echo",
         "Echo",
         {"Window_Echo",
          "Echo",
          {},
          gains(80, 90) +
              std::vector{textField("f_Delay_MS", "DelayMS", "Delay (ms):", "1000", Real),
                          textField("f_Decay_Factor", "DecayFactor", "Decay factor:", "0.5", Real)},
          {{"f_Decay_Factor", Check::Zero, "Decay factor invalid."},
           {"f_Delay_MS", Check::Negative, "Delay invalid."}}},
         {},
         true,
         [](const EffectValues& v) {
             return words(QStringList{"echo"} + gainWords(v) +
                          QStringList{real(v.real("f_Delay_MS")), real(v.real("f_Decay_Factor"))});
         }},
        {"Space and modulation",
         "Reverb",
         "Reverb",
         {"Window_Reverb",
          "Reverb",
          {},
          {slider("f_Reverberence", "Reverberence", "Reverberance (%):", 0, 100, 50)
               .because("sox: 0 … 100 %"),
           slider("f_HF_Damping", "HiFreqDamping", "High-frequency damping (%):", 0, 100, 50)
               .because("sox: 0 … 100 %"),
           slider("f_Room_Size", "RoomSize", "Room size (%):", 0, 100, 100).because("sox: 0 … 100 %"),
           slider("f_Stereo_Depth", "StereoDepth", "Stereo depth (%):", 0, 100, 100)
               .because("sox: 0 … 100 %"),
           slider("f_Pre_Delay", "PreDelay", "Pre-delay (ms):", 0, 500, 0).because("sox: 0 … 500 ms"),
           slider("f_Wet_Gain", "WetGain", "Wet gain (dB):", -10, 10, 0).because("sox: −10 … 10 dB")}},
         {},
         true,
         [](const EffectValues& v) {
             QStringList e{"reverb"};
             for (const char* k : {"f_Reverberence", "f_HF_Damping", "f_Room_Size", "f_Stereo_Depth",
                                   "f_Pre_Delay", "f_Wet_Gain"})
                 e << whole(v.whole(k));
             return words(e);
         }},
        {"Space and modulation",
         "Chorus",
         "Chorus",
         {"Window_Chorus",
          "Chorus",
          {},
          gains(70, 90) +
              std::vector{textField("f_Delay", "Delay", "Delay (ms):", "50", Real),
                          textField("f_Decay_Factor", "DecayFactor", "Decay factor:", "0.5", Real),
                          textField("f_Depth", "Depth", "Depth (ms):", "2", Real),
                          slider("f_Speed", "Speed", "Speed (Hz):", 1, 50, 3)
                              .over(10, "%.2f")
                              .because("0.1 … 5 Hz modulation"),
                          modulationList()},
          {{"f_Delay", Check::Negative, "Delay invalid."},
           {"f_Decay_Factor", Check::Zero, "Decay factor invalid."},
           {"f_Depth", Check::Negative, "Depth invalid."}}},
         {},
         true,
         [](const EffectValues& v) {
             return words(QStringList{"chorus"} + gainWords(v) +
                          QStringList{real(v.real("f_Delay")), real(v.real("f_Decay_Factor")),
                                      real(v.real("f_Speed")), real(v.real("f_Depth"))} +
                          modulation(v));
         }},
        {"Space and modulation",
         "Flanger",
         "Flanger",
         {"Window_Flanger",
          "Flanger",
          {},
          {slider("f_Delay", "Delay", "Delay (ms):", 0, 30, 0).because("sox: 0 … 30 ms"),
           slider("f_Depth", "Depth", "Depth (ms):", 0, 10, 2).because("sox: 0 … 10 ms"),
           slider("f_Regen", "Regeneration", "Regeneration (%):", -95, 95, 0).because("sox: −95 … 95 %"),
           slider("f_Width", "Width", "Width (%):", 0, 100, 71).because("sox: 0 … 100 %"),
           slider("f_Speed", "Speed", "Speed (Hz):", 1, 100, 5).over(10, "%.2f").because("sox: 0.1 … 10 Hz"),
           slider("f_Phase", "Phase", "Phase (%):", 0, 100, 25).because("sox: 0 … 100 %")}},
         {},
         true,
         [](const EffectValues& v) {
             return words({"flanger", whole(v.whole("f_Delay")), whole(v.whole("f_Depth")),
                           whole(v.whole("f_Regen")), whole(v.whole("f_Width")), real(v.real("f_Speed")),
                           "sin", whole(v.whole("f_Phase")), "lin"});
         }},
        {"Space and modulation",
         "Phaser",
         "Phaser",
         {"Window_Phaser",
          "Phaser",
          {},
          // The speed and the delay are typed in thousandths.
          gains(80, 74) +
              std::vector{textField("f_Speed", "Speed", "Speed (mHz):", "1500", Real),
                          textField("f_Delay", "Delay", "Delay (µs):", "3000", Real),
                          textField("f_Decay_Factor", "DecayFactor", "Decay factor:", "0.5", Real),
                          modulationList()},
          {{"f_Speed", Check::Negative, "Speed invalid."},
           {"f_Decay_Factor", Check::Zero, "Decay factor invalid."},
           {"f_Delay", Check::Negative, "Delay invalid."}}},
         {},
         true,
         [](const EffectValues& v) {
             return words(QStringList{"phaser"} + gainWords(v) +
                          QStringList{real(v.real("f_Delay") / 1000), real(v.real("f_Decay_Factor")),
                                      real(v.real("f_Speed") / 1000)} +
                          modulation(v));
         }},
        {"Space and modulation",
         "Tremolo",
         "Tremolo",
         {"Window_Tremolo",
          "Tremolo",
          {},
          {slider("f_Speed", "Speed", "Speed (Hz):", 10, 2000, 500).over(100, "%.2f").because("0.1 … 20 Hz"),
           slider("f_Depth", "Depth", "Depth (%):", 1, 100, 40).because("sox refuses a depth of 0")}},
         {},
         true,
         [](const EffectValues& v) {
             return words({"tremolo", real(v.real("f_Speed")), whole(v.whole("f_Depth"))});
         }},
        {"Space and modulation",
         "Earwax",
         "Earwax",
         confirmation("Window_Earwax", "Earwax",
                      "Apply earwax to make stereo audio sound more natural on headphones?"),
         {},
         true,
         [](const EffectValues&) { return words({"earwax"}); }},
        {"Space and modulation",
         "OOPS",
         "OOPS",
         confirmation("Window_OOPS", "OOPS",
                      "Apply out-of-phase stereo (OOPS), leaving the difference between the channels?"),
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
