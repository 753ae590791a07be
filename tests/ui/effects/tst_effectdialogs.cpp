#include "effects/EffectCatalogue.h"
#include "effects/EffectDialogs.h"
#include "support/DialogDriving.h"
#include "support/Gui.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QTest>
#include <QTimer>
#include <cfloat>
#include <functional>
#include <limits>

namespace {
using namespace dialogs;

const QStringList allDialogs = {"Window_Amplify",
                                "Window_Normalize",
                                "Window_Bass_And_Treble",
                                "Window_Pitch",
                                "Window_Speed",
                                "Window_Tempo",
                                "Window_Echo",
                                "Window_Fade",
                                "Window_Phaser",
                                "Window_Flanger",
                                "Window_Chorus",
                                "Window_Reverb",
                                "Window_Tremolo",
                                "Window_Compand",
                                "Window_HL_Pass",
                                "Window_Band_Pass_Reject",
                                "Window_Bend",
                                "Window_DCShift",
                                "Window_Percentage",
                                "Window_Biquad",
                                "Window_Deemphasis",
                                "Window_Earwax",
                                "Window_OOPS",
                                "Window_RIAA",
                                "Window_Equalizer",
                                "Window_Ask_Noise_Selected",
                                "Window_Noise_Reduction"};

const QStringList bandFrequencies = {"24",   "34",   "48",   "68",   "96",    "136",  "193",
                                     "273",  "386",  "546",  "772",  "1100",  "1500", "2200",
                                     "3100", "4400", "6200", "8700", "12400", "17500"};

// Applies "name=value" settings separated by ';' to the dialog's named
// controls: typed into a text field, set on a slider, chosen in a list, or
// written into a slider's label (as if its slider had shown that value).
void fill(QDialog* dialog, const QString& settings) {
    for (const QString& setting : settings.split(';', Qt::SkipEmptyParts)) {
        const qsizetype equals = setting.indexOf('=');
        QVERIFY2(equals > 0, qPrintable(setting));
        const QString name = setting.left(equals), value = setting.mid(equals + 1);
        if (auto* field = dialog->findChild<QLineEdit*>(name))
            typeInto(field, value);
        else if (auto* slider = dialog->findChild<QSlider*>(name))
            slider->setValue(value.toInt());
        else if (auto* combo = dialog->findChild<QComboBox*>(name))
            combo->setCurrentIndex(value.toInt());
        else if (auto* label = dialog->findChild<QLabel*>(name))
            label->setText(value);
        else
            QFAIL(qPrintable("no control " + name));
    }
}

// Fills the dialog, presses OK and returns exec()'s result.
template <typename D> int accept(D& dialog, const QString& settings = {}) {
    return runModal<D>(dialog, [settings](D* d) {
        fill(d, settings);
        clickButton(d, QDialogButtonBox::Ok);
    });
}

EffectArguments argumentsOf(const QString& key, const EffectValues& values) {
    const EffectEntry* entry = findEffect(key);
    return entry ? entry->arguments(values) : EffectArguments{{"missing"}, {"missing"}};
}

} // namespace

class tst_EffectDialogs : public QObject {
    Q_OBJECT
private slots:
    void factory_data() {
        QTest::addColumn<QString>("dialogClass");
        for (const QString& name : allDialogs)
            QTest::newRow(qPrintable(name)) << name;
    }
    void factory() {
        QFETCH(QString, dialogClass);
        QWidget parent;
        std::unique_ptr<EffectDialog> dialog = makeEffectDialog(dialogClass, &parent);
        QVERIFY(dialog);
        QCOMPARE(dialog->objectName(), dialogClass);
        QCOMPARE(dialog->parentWidget(), &parent);
        QVERIFY(!dialog->windowTitle().isEmpty());
        QVERIFY(dialog->isModal());
        QCOMPARE(dialog->bOK, false);
        QVERIFY(buttonOf(dialog.get(), QDialogButtonBox::Ok)->isDefault());
        QVERIFY(buttonOf(dialog.get(), QDialogButtonBox::Cancel));
    }

    // The noise reduction's level reaches noisered as the label shows it.
    void noiseReductionLevel() {
        EffectDialog dialog(*findDialog("Window_Noise_Reduction"));
        QCOMPARE(accept<EffectDialog>(dialog, "sliderLevel=21"), 1);
        QCOMPARE(dialog.effectValues().real("f_Level"), 0.21f);
        const EditState state{"/w", "/w/t.wav", {}, calculateSegmentVariables({10, 0, 50, 0, 10}), 10, 0, 50};
        const EditPlan plan =
            buildNoiseReductionPlan(state, ResultNames("/w"), dialog.effectValues().real("f_Level"));
        const QList<PlannedRun> runs = plannedRuns(plan.plan);
        QCOMPARE(runs[2].arguments.mid(2), QStringList({"noisered", "/w/noise.prof", "0.21"}));
        QCOMPARE(accept<EffectDialog>(dialog, "labelLevel=0.5"), 1);
        QCOMPARE(dialog.effectValues().real("f_Level"), 0.5f);
    }

    // The band gains are read from their labels, though sox is not given them.
    void equalizerReadsItsBands() {
        EffectDialog dialog(*findDialog("Window_Equalizer"));
        QCOMPARE(accept<EffectDialog>(dialog, "sliderdB01=20;sliderdB10=-4;labeldB20=7"), 1);
        QCOMPARE(dialog.effectValues().whole("f_dB_01"), 20);
        QCOMPARE(dialog.effectValues().whole("f_dB_10"), -4);
        QCOMPARE(dialog.effectValues().whole("f_dB_20"), 7);
        QCOMPARE(dialog.effectValues().variant("f_dB_20").toLongLong(), 7);
        QCOMPARE(dialog.effectValues().real("f_BandwidthQ"), 1.0f);
    }

    void factoryRefusesOthers() {
        QVERIFY(!makeEffectDialog("Window_Contrast"));
        QVERIFY(!makeEffectDialog(""));
        QVERIFY(!makeEffectDialog("window_amplify"));
        QVERIFY(!makeEffectDialog("Window_Silence_Insert"));
    }

    // Each dialog's controls, found by their object names, and what they show
    // when the dialog opens.
    void defaultsShown() {
        EffectDialog amplify(*findDialog("Window_Amplify"));
        QCOMPARE(amplify.windowTitle(), QString("Amplify"));
        QVERIFY(amplify.findChild<QLineEdit*>("textPercentage"));
        QCOMPARE(amplify.findChild<QLineEdit*>("textPercentage")->text(), QString("100"));

        EffectDialog normalize(*findDialog("Window_Normalize"));
        QCOMPARE(normalize.windowTitle(), QString("Normalize"));
        QVERIFY(normalize.findChild<QLineEdit*>("textdB"));
        QCOMPARE(normalize.findChild<QLineEdit*>("textdB")->text(), QString("-1.0"));

        EffectDialog echo(*findDialog("Window_Echo"));
        QCOMPARE(echo.windowTitle(), QString("Echo"));
        QVERIFY(echo.findChild<QSlider*>("sliderGainIn"));
        QVERIFY(echo.findChild<QSlider*>("sliderGainOut"));
        QVERIFY(echo.findChild<QLabel*>("labelGainIn"));
        QVERIFY(echo.findChild<QLabel*>("labelGainOut"));
        QVERIFY(echo.findChild<QLineEdit*>("textDelayMS"));
        QVERIFY(echo.findChild<QLineEdit*>("textDecayFactor"));
        QCOMPARE(echo.findChild<QSlider*>("sliderGainIn")->minimum(), 0);
        QCOMPARE(echo.findChild<QSlider*>("sliderGainIn")->maximum(), 100);
        QCOMPARE(echo.findChild<QSlider*>("sliderGainIn")->value(), 80);
        QCOMPARE(echo.findChild<QSlider*>("sliderGainOut")->value(), 90);
        QCOMPARE(echo.findChild<QLabel*>("labelGainIn")->text(), QString("80"));
        QCOMPARE(echo.findChild<QLabel*>("labelGainOut")->text(), QString("90"));
        QCOMPARE(echo.findChild<QLineEdit*>("textDelayMS")->text(), QString("1000"));
        QCOMPARE(echo.findChild<QLineEdit*>("textDecayFactor")->text(), QString("0.5"));

        EffectDialog phaser(*findDialog("Window_Phaser"));
        QCOMPARE(phaser.windowTitle(), QString("Phaser"));
        QCOMPARE(phaser.findChild<QSlider*>("sliderGainIn")->value(), 80);
        QCOMPARE(phaser.findChild<QSlider*>("sliderGainOut")->value(), 74);
        QCOMPARE(phaser.findChild<QLabel*>("labelGainIn")->text(), QString("80"));
        QCOMPARE(phaser.findChild<QLabel*>("labelGainOut")->text(), QString("74"));
        QCOMPARE(phaser.findChild<QLineEdit*>("textSpeed")->text(), QString("1500"));
        QCOMPARE(phaser.findChild<QLineEdit*>("textDelay")->text(), QString("3000"));
        QCOMPARE(phaser.findChild<QLineEdit*>("textDecayFactor")->text(), QString("0.5"));
        QComboBox* phaserModulation = phaser.findChild<QComboBox*>("comboModulation");
        QVERIFY(phaserModulation);
        QCOMPARE(phaserModulation->count(), 2);
        QCOMPARE(phaserModulation->itemText(0), QString("Triangular"));
        QCOMPARE(phaserModulation->itemText(1), QString("Sinusoidal"));
        QCOMPARE(phaserModulation->currentIndex(), 0);

        EffectDialog chorus(*findDialog("Window_Chorus"));
        QCOMPARE(chorus.windowTitle(), QString("Chorus"));
        QCOMPARE(chorus.findChild<QSlider*>("sliderGainIn")->value(), 70);
        QCOMPARE(chorus.findChild<QSlider*>("sliderGainOut")->value(), 90);
        QCOMPARE(chorus.findChild<QLineEdit*>("textDelay")->text(), QString("50"));
        QCOMPARE(chorus.findChild<QLineEdit*>("textDecayFactor")->text(), QString("0.5"));
        QCOMPARE(chorus.findChild<QLineEdit*>("textDepth")->text(), QString("2"));
        QVERIFY(chorus.findChild<QSlider*>("sliderSpeed"));
        QCOMPARE(chorus.findChild<QSlider*>("sliderSpeed")->minimum(), 1);
        QCOMPARE(chorus.findChild<QSlider*>("sliderSpeed")->maximum(), 50);
        QCOMPARE(chorus.findChild<QSlider*>("sliderSpeed")->value(), 3);
        QCOMPARE(chorus.findChild<QLabel*>("labelSpeed")->text(), QString("0.30"));
        QCOMPARE(chorus.findChild<QComboBox*>("comboModulation")->itemText(0), QString("Triangular"));
        QCOMPARE(chorus.findChild<QComboBox*>("comboModulation")->itemText(1), QString("Sinusoidal"));
        QCOMPARE(chorus.findChild<QComboBox*>("comboModulation")->currentIndex(), 0);

        EffectDialog fade(*findDialog("Window_Fade"));
        QCOMPARE(fade.findChild<QLineEdit*>("textDurationMS")->text(), QString("500"));
        QComboBox* shapes = fade.findChild<QComboBox*>("comboModulation");
        QCOMPARE(shapes->count(), 5);
        QCOMPARE(shapes->itemText(0), QString("Linear (t)"));
        QCOMPARE(shapes->itemText(1), QString("Quarter sine (q)"));
        QCOMPARE(shapes->itemText(2), QString("Half sine (h)"));
        QCOMPARE(shapes->itemText(3), QString("Logarithmic (l)"));
        QCOMPARE(shapes->itemText(4), QString("Inverted parabola (p)"));
        QCOMPARE(shapes->currentIndex(), 0);

        EffectDialog bend(*findDialog("Window_Bend"));
        QCOMPARE(bend.windowTitle(), QString("Bend"));
        QCOMPARE(bend.findChild<QLineEdit*>("textStart")->text(), QString("1000"));
        QCOMPARE(bend.findChild<QLineEdit*>("textDuration")->text(), QString("2000"));
        QVERIFY(bend.findChild<QSlider*>("sliderCents"));
        QCOMPARE(bend.findChild<QSlider*>("sliderCents")->minimum(), 1);
        QCOMPARE(bend.findChild<QSlider*>("sliderCents")->maximum(), 1200);
        QCOMPARE(bend.findChild<QSlider*>("sliderCents")->value(), 300);
        QCOMPARE(bend.findChild<QLabel*>("labelCents")->text(), QString("300"));
    }

    // The value labels follow their sliders, through the signal and through
    // the slots called on their own.
    void slidersShowTheirValues() {
        EffectDialog echo(*findDialog("Window_Echo"));
        echo.findChild<QSlider*>("sliderGainIn")->setValue(33);
        echo.findChild<QSlider*>("sliderGainOut")->setValue(0);
        QCOMPARE(echo.findChild<QLabel*>("labelGainIn")->text(), QString("33"));
        QCOMPARE(echo.findChild<QLabel*>("labelGainOut")->text(), QString("0"));
        echo.findChild<QSlider*>("sliderGainIn")->blockSignals(true);
        echo.findChild<QSlider*>("sliderGainIn")->setValue(100);
        echo.findChild<QSlider*>("sliderGainIn")->blockSignals(false);
        QCOMPARE(echo.findChild<QLabel*>("labelGainIn")->text(), QString("33"));
        QVERIFY(echo.runChangeAction("OnChangeGainIn"));
        QCOMPARE(echo.findChild<QLabel*>("labelGainIn")->text(), QString("100"));

        EffectDialog phaser(*findDialog("Window_Phaser"));
        phaser.findChild<QSlider*>("sliderGainOut")->setValue(12);
        QCOMPARE(phaser.findChild<QLabel*>("labelGainOut")->text(), QString("12"));
        QVERIFY(phaser.runChangeAction("OnChangeGainIn"));
        QVERIFY(phaser.runChangeAction("OnChangeGainOut"));

        EffectDialog chorus(*findDialog("Window_Chorus"));
        chorus.findChild<QSlider*>("sliderSpeed")->setValue(25);
        QCOMPARE(chorus.findChild<QLabel*>("labelSpeed")->text(), QString("2.50"));
        chorus.findChild<QSlider*>("sliderSpeed")->setValue(1);
        QCOMPARE(chorus.findChild<QLabel*>("labelSpeed")->text(), QString("0.10"));
        chorus.findChild<QSlider*>("sliderSpeed")->setValue(500); // clamped to the range
        QCOMPARE(chorus.findChild<QLabel*>("labelSpeed")->text(), QString("5.00"));
        QVERIFY(chorus.runChangeAction("OnChangeSpeed"));
        QVERIFY(chorus.runChangeAction("OnChangeGainIn"));
        QVERIFY(chorus.runChangeAction("OnChangeGainOut"));

        EffectDialog bend(*findDialog("Window_Bend"));
        bend.findChild<QSlider*>("sliderCents")->setValue(1);
        QCOMPARE(bend.findChild<QLabel*>("labelCents")->text(), QString("1"));
        bend.findChild<QSlider*>("sliderCents")->setValue(450);
        QCOMPARE(bend.findChild<QLabel*>("labelCents")->text(), QString("450"));
        QVERIFY(bend.runChangeAction("OnChangeCents"));
    }

    // Every slider's range, start and label, and how its change action scales
    // the value into the label.
    void sliderScales_data() {
        QTest::addColumn<QString>("dialogClass");
        QTest::addColumn<QString>("slider");
        QTest::addColumn<QString>("slot");
        QTest::addColumn<QList<int>>("rangeAndStart");
        QTest::addColumn<QString>("startText");
        QTest::addColumn<int>("moved");
        QTest::addColumn<QString>("movedText");
        const auto row = [](const char* dialog, const char* slider, const char* slot, QList<int> range,
                            const char* startText, int moved, const char* movedText) {
            QTest::newRow(qPrintable(QString(dialog) + " " + slider))
                << dialog << slider << slot << range << startText << moved << movedText;
        };
        row("Window_Bass_And_Treble", "Bass", "OnSliderChangeBass", {-200, 200, 50}, "5.00", -123, "-12.30");
        row("Window_Bass_And_Treble", "Treble", "OnSliderChangeTreble", {-200, 200, 30}, "3.00", 7, "0.70");
        row("Window_Pitch", "Semitones", "OnChangeSemitones", {-1200, 1200, 300}, "3.00", -50, "-0.50");
        row("Window_Speed", "Percentage", "OnChangePercentage", {50, 200, 125}, "125.00", 77, "77.00");
        row("Window_Tempo", "Percentage", "OnChangePercentage", {50, 200, 125}, "125.00", 200, "200.00");
        row("Window_Flanger", "Delay", "OnChangeDelay", {0, 30, 0}, "0", 17, "17");
        row("Window_Flanger", "Depth", "OnChangeDepth", {0, 10, 2}, "2", 10, "10");
        row("Window_Flanger", "Regeneration", "OnChangeRegeneration", {-95, 95, 0}, "0", -40, "-40");
        row("Window_Flanger", "Width", "OnChangeWidth", {0, 100, 71}, "71", 100, "100");
        row("Window_Flanger", "Speed", "OnChangeSpeed", {1, 100, 5}, "0.50", 37, "3.70");
        row("Window_Flanger", "Phase", "OnChangePhase", {0, 100, 25}, "25", 0, "0");
        row("Window_Reverb", "Reverberence", "OnChangeReverberence", {0, 100, 50}, "50", 99, "99");
        row("Window_Reverb", "HiFreqDamping", "OnChangeHiFreqDamping", {0, 100, 50}, "50", 0, "0");
        row("Window_Reverb", "RoomSize", "OnChangeRoomSize", {0, 100, 100}, "100", 30, "30");
        row("Window_Reverb", "StereoDepth", "OnChangeStereoDepth", {0, 100, 100}, "100", 1, "1");
        row("Window_Reverb", "PreDelay", "OnChangePreDelay", {0, 500, 0}, "0", 480, "480");
        row("Window_Reverb", "WetGain", "OnChangeWetGain", {-10, 10, 0}, "0", -6, "-6");
        row("Window_Tremolo", "Speed", "OnChangeSpeed", {10, 2000, 500}, "5.00", 1234, "12.34");
        row("Window_Tremolo", "Depth", "OnChangeDepth", {1, 100, 40}, "40", 1, "1");
        row("Window_Compand", "Attack", "OnChangeAttack", {0, 100, 30}, "0.30", 5, "0.05");
        row("Window_Compand", "Decay", "OnChangeDecay", {0, 200, 100}, "1.00", 150, "1.50");
        row("Window_Compand", "Delay", "OnChangeDelay", {0, 100, 20}, "0.20", 0, "0.00");
        row("Window_Compand", "Gain", "OnChangeGain", {-20, 20, -5}, "-5", 12, "12");
        row("Window_Compand", "InitialVolume", "OnChangeInitialVolume", {-100, 0, -90}, "-90", -3, "-3");
        row("Window_HL_Pass", "Rolloff", "OnChangeRolloff", {1, 3600, 150}, "900", 3600, "21600");
        row("Window_Band_Pass_Reject", "Frequency", "OnChangeFrequency", {100, 2000000, 100000}, "1000.00",
            123456, "1234.56");
        row("Window_Band_Pass_Reject", "Width", "OnChangeWidth", {1, 3000, 100}, "600", 7, "42");
        row("Window_DCShift", "Shift", "OnChangeShift", {-200, 200, 10}, "0.10", -150, "-1.50");
        row("Window_DCShift", "GainLimiter", "OnChangeGainLimiter", {0, 100, 5}, "0.05", 2, "0.02");
        row("Window_Percentage", "Percentage", "OnChangePercentage", {0, 100, 75}, "75", 33, "33");
        row("Window_Biquad", "b0", "OnChangeb0", {-20000000, 20000000, 5000000}, "0.5000000", 1, "0.0000001");
        row("Window_Biquad", "b1", "OnChangeb1", {-20000000, 20000000, 5000000}, "0.5000000", -20000000,
            "-2.0000000");
        row("Window_Biquad", "b2", "OnChangeb2", {-20000000, 20000000, 0}, "0.0000000", 1234567, "0.1234567");
        row("Window_Biquad", "a0", "onChangea0", {1000000, 20000000, 10000000}, "1.0000000", 1000000,
            "0.1000000");
        row("Window_Biquad", "a1", "OnChangea1", {-20000000, 20000000, 0}, "0.0000000", -9999999,
            "-0.9999999");
        row("Window_Biquad", "a2", "OnChangea2", {-20000000, 20000000, 0}, "0.0000000", 20000000,
            "2.0000000");
        row("Window_Equalizer", "dB01", "OnChangedB01", {-20, 20, 0}, "0", -7, "-7");
        row("Window_Equalizer", "dB12", "OnChangedB12", {-20, 20, 0}, "0", 20, "20");
        row("Window_Equalizer", "dB20", "OnChangedB20", {-20, 20, 0}, "0", 3, "3");
        row("Window_Equalizer", "BandwidthQ", "OnChangeBandwidthQ", {10, 5000, 1000}, "1.00", 1500, "1.50");
        row("Window_Noise_Reduction", "Level", "OnChangeLevel", {0, 100, 25}, "0.25", 21, "0.21");
        row("Window_Echo", "GainIn", "OnChangeGainIn", {0, 100, 80}, "80", 33, "33");
        row("Window_Chorus", "Speed", "OnChangeSpeed", {1, 50, 3}, "0.30", 25, "2.50");
        row("Window_Bend", "Cents", "OnChangeCents", {1, 1200, 300}, "300", 450, "450");
    }
    void sliderScales() {
        QFETCH(QString, dialogClass);
        QFETCH(QString, slider);
        QFETCH(QString, slot);
        QFETCH(QList<int>, rangeAndStart);
        QFETCH(QString, startText);
        QFETCH(int, moved);
        QFETCH(QString, movedText);
        std::unique_ptr<EffectDialog> dialog = makeEffectDialog(dialogClass);
        QVERIFY(dialog);
        auto* control = dialog->findChild<QSlider*>("slider" + slider);
        auto* label = dialog->findChild<QLabel*>("label" + slider);
        QVERIFY(control && label);
        QCOMPARE(QList<int>({control->minimum(), control->maximum(), control->value()}), rangeAndStart);
        QCOMPARE(label->text(), startText);
        control->setValue(moved);
        QCOMPARE(label->text(), movedText);
        // The change action on its own writes the label from the slider.
        label->clear();
        QVERIFY(dialog->runChangeAction(slot));
        QCOMPARE(label->text(), movedText);
    }

    // The dialogs the two actions of a filter share take the title the action gives.
    void sharedDialogsTakeTheirActionsTitle() {
        for (const char* key : {"HighPass", "LowPass", "BandPass", "BandReject", "Compression", "FadeIn"}) {
            const EffectEntry* entry = findEffect(key);
            QVERIFY(!entry->windowTitle.isEmpty());
            QVERIFY(makeEffectDialog(entry->dialog)->windowTitle() != entry->windowTitle);
        }
        QCOMPARE(findEffect("HighPass")->windowTitle, QString("High Pass"));
        QCOMPARE(findEffect("LowPass")->windowTitle, QString("Low Pass"));
        QCOMPARE(findEffect("BandPass")->windowTitle, QString("Band Pass"));
        QCOMPARE(findEffect("BandReject")->windowTitle, QString("Band Reject"));
    }

    // The equalizer's bands stand side by side, lowest first, each named by its frequency.
    void equalizerBands() {
        std::unique_ptr<EffectDialog> dialog = makeEffectDialog("Window_Equalizer");
        dialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
        int left = -1;
        for (int band = 1; band <= 20; ++band) {
            auto* slider = dialog->findChild<QSlider*>(QString::asprintf("sliderdB%02d", band));
            QVERIFY(slider);
            QCOMPARE(slider->orientation(), Qt::Vertical);
            const int x = slider->mapTo(dialog.get(), QPoint()).x();
            QVERIFY(x > left);
            left = x;
        }
        QStringList names;
        for (QLabel* label : dialog->findChildren<QLabel*>())
            if (label->objectName().isEmpty())
                names << label->text();
        for (const char* name : {"24", "136", "1.1k", "17.5k"})
            QVERIFY2(names.contains(name), name);
        dialog->hide();
    }

    // What the dialogs hand the catalogue after OK, and the sox words made of it.
    void accepted_data() {
        QTest::addColumn<QString>("dialogClass");
        QTest::addColumn<QString>("settings");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QStringList>("global");
        QTest::addColumn<QStringList>("effect");

        QTest::newRow("amplify defaults") << "Window_Amplify"
                                          << ""
                                          << "Amplify" << QStringList{"-v", "1.00"} << QStringList{};
        QTest::newRow("amplify 150") << "Window_Amplify"
                                     << "textPercentage=150"
                                     << "Amplify" << QStringList{"-v", "1.50"} << QStringList{};
        QTest::newRow("amplify trailing letters") << "Window_Amplify"
                                                  << "textPercentage= 50%"
                                                  << "Amplify" << QStringList{"-v", "0.50"} << QStringList{};
        QTest::newRow("amplify fraction dropped") << "Window_Amplify"
                                                  << "textPercentage=1,5"
                                                  << "Amplify" << QStringList{"-v", "0.01"} << QStringList{};
        QTest::newRow("normalize defaults") << "Window_Normalize"
                                            << ""
                                            << "Normalize" << QStringList{"--norm=-1.00"} << QStringList{};
        QTest::newRow("normalize letters") << "Window_Normalize"
                                           << "textdB=abc"
                                           << "Normalize" << QStringList{"--norm=0.00"} << QStringList{};
        QTest::newRow("normalize empty") << "Window_Normalize"
                                         << "textdB="
                                         << "Normalize" << QStringList{"--norm=0.00"} << QStringList{};
        QTest::newRow("normalize comma") << "Window_Normalize"
                                         << "textdB=-1,5"
                                         << "Normalize" << QStringList{"--norm=-1.00"} << QStringList{};
        QTest::newRow("normalize trailing letters")
            << "Window_Normalize"
            << "textdB=-3.25dB"
            << "Normalize" << QStringList{"--norm=-3.25"} << QStringList{};
        QTest::newRow("echo defaults")
            << "Window_Echo"
            << ""
            << "Echo" << QStringList{} << QStringList{"echo", "0.80", "0.90", "1000.00", "0.50"};
        QTest::newRow("echo changed")
            << "Window_Echo"
            << "sliderGainIn=100;sliderGainOut=5;textDelayMS=250.5;textDecayFactor=-0.25"
            << "Echo" << QStringList{} << QStringList{"echo", "1.00", "0.05", "250.50", "-0.25"};
        QTest::newRow("echo delay 0 accepted")
            << "Window_Echo"
            << "textDelayMS=0"
            << "Echo" << QStringList{} << QStringList{"echo", "0.80", "0.90", "0.00", "0.50"};
        QTest::newRow("phaser defaults")
            << "Window_Phaser"
            << ""
            << "Phaser" << QStringList{}
            << QStringList{"phaser", "0.80", "0.74", "3.00", "0.50", "1.50", "-t"};
        QTest::newRow("phaser sinusoidal")
            << "Window_Phaser"
            << "comboModulation=1;textSpeed=500;textDelay=1e3;sliderGainIn=50"
            << "Phaser" << QStringList{}
            << QStringList{"phaser", "0.50", "0.74", "1.00", "0.50", "0.50", "-s"};
        QTest::newRow("chorus defaults")
            << "Window_Chorus"
            << ""
            << "Chorus" << QStringList{}
            << QStringList{"chorus", "0.70", "0.90", "50.00", "0.50", "0.30", "2.00", "-t"};
        QTest::newRow("chorus changed")
            << "Window_Chorus"
            << "sliderSpeed=25;comboModulation=1;textDelay=40;textDecayFactor=0.3;textDepth=0;sliderGainOut="
               "60"
            << "Chorus" << QStringList{}
            << QStringList{"chorus", "0.70", "0.60", "40.00", "0.30", "2.50", "0.00", "-s"};
        QTest::newRow("fade out 500 quarter sine")
            << "Window_Fade"
            << "textDurationMS=500;comboModulation=1"
            << "FadeOut" << QStringList{} << QStringList{"fade", "q", "0", "0", "0.50"};
        QTest::newRow("fade in defaults") << "Window_Fade"
                                          << ""
                                          << "FadeIn" << QStringList{} << QStringList{"fade", "t", "0.50"};
        QTest::newRow("fade in parabola") << "Window_Fade"
                                          << "textDurationMS=1250ms;comboModulation=4"
                                          << "FadeIn" << QStringList{} << QStringList{"fade", "p", "1.25"};
        QTest::newRow("bend defaults") << "Window_Bend"
                                       << ""
                                       << "Bend" << QStringList{} << QStringList{"bend", "1.00,300,2.00"};
        QTest::newRow("bend changed") << "Window_Bend"
                                      << "textStart=250;sliderCents=700;textDuration=1500.9"
                                      << "Bend" << QStringList{} << QStringList{"bend", "0.25,700,1.50"};
        QTest::newRow("bend start letters")
            << "Window_Bend"
            << "textStart=x;sliderCents=1200"
            << "Bend" << QStringList{} << QStringList{"bend", "0.00,1200,2.00"};
        QTest::newRow("bass and treble defaults")
            << "Window_Bass_And_Treble"
            << ""
            << "BassTreble" << QStringList{} << QStringList{"bass", "5.00", "treble", "3.00"};
        QTest::newRow("bass and treble from the labels")
            << "Window_Bass_And_Treble"
            << "sliderBass=-123;labelBass=7.456;sliderTreble=-200"
            << "BassTreble" << QStringList{} << QStringList{"bass", "7.46", "treble", "-20.00"};
        QTest::newRow("pitch defaults") << "Window_Pitch"
                                        << ""
                                        << "Pitch" << QStringList{} << QStringList{"pitch", "300.000000"};
        QTest::newRow("pitch from the slider, in cents")
            << "Window_Pitch"
            << "sliderSemitones=-250;labelSemitones=9"
            << "Pitch" << QStringList{} << QStringList{"pitch", "-250.000000"};
        QTest::newRow("speed defaults") << "Window_Speed"
                                        << ""
                                        << "Speed" << QStringList{} << QStringList{"speed", "1.25"};
        QTest::newRow("speed 80") << "Window_Speed"
                                  << "sliderPercentage=80"
                                  << "Speed" << QStringList{} << QStringList{"speed", "0.80"};
        QTest::newRow("tempo defaults") << "Window_Tempo"
                                        << ""
                                        << "Tempo" << QStringList{} << QStringList{"tempo", "1.25"};
        QTest::newRow("tempo from the label") << "Window_Tempo"
                                              << "labelPercentage=150"
                                              << "Tempo" << QStringList{} << QStringList{"tempo", "1.50"};
        QTest::newRow("flanger defaults")
            << "Window_Flanger"
            << ""
            << "Flanger" << QStringList{}
            << QStringList{"flanger", "0", "2", "0", "71", "0.50", "sin", "25", "lin"};
        QTest::newRow("flanger at the ends")
            << "Window_Flanger"
            << "sliderDelay=30;sliderDepth=10;sliderRegeneration=-95;sliderWidth=100;sliderSpeed=100;"
               "sliderPhase=100"
            << "Flanger" << QStringList{}
            << QStringList{"flanger", "30", "10", "-95", "100", "10.00", "sin", "100", "lin"};
        QTest::newRow("flanger labels truncated")
            << "Window_Flanger"
            << "labelDelay=12.9;labelPhase=-3.7"
            << "Flanger" << QStringList{}
            << QStringList{"flanger", "12", "2", "0", "71", "0.50", "sin", "-3", "lin"};
        QTest::newRow("reverb defaults")
            << "Window_Reverb"
            << ""
            << "Reverb" << QStringList{} << QStringList{"reverb", "50", "50", "100", "100", "0", "0"};
        QTest::newRow("reverb changed")
            << "Window_Reverb"
            << "sliderReverberence=10;sliderHiFreqDamping=20;sliderRoomSize=30;sliderStereoDepth=40;"
               "sliderPreDelay=500;sliderWetGain=-10"
            << "Reverb" << QStringList{} << QStringList{"reverb", "10", "20", "30", "40", "500", "-10"};
        QTest::newRow("tremolo defaults")
            << "Window_Tremolo"
            << ""
            << "Tremolo" << QStringList{} << QStringList{"tremolo", "5.00", "40"};
        QTest::newRow("tremolo changed")
            << "Window_Tremolo"
            << "sliderSpeed=10;sliderDepth=100"
            << "Tremolo" << QStringList{} << QStringList{"tremolo", "0.10", "100"};
        QTest::newRow("compand defaults")
            << "Window_Compand"
            << ""
            << "Compand" << QStringList{}
            << QStringList{"compand", "0.30,1.00", "6:-70,-60,-20", "-5", "-90", "0.20"};
        QTest::newRow("compand changed")
            << "Window_Compand"
            << "sliderAttack=0;sliderDecay=200;sliderDelay=100;sliderGain=20;sliderInitialVolume=-100"
            << "Compand" << QStringList{}
            << QStringList{"compand", "0.00,2.00", "6:-70,-60,-20", "20", "-100", "1.00"};
        QTest::newRow("high pass defaults")
            << "Window_HL_Pass"
            << ""
            << "HighPass" << QStringList{} << QStringList{"highpass", "-2", "900"};
        QTest::newRow("low pass 3000") << "Window_HL_Pass"
                                       << "sliderRolloff=500"
                                       << "LowPass" << QStringList{} << QStringList{"lowpass", "-2", "3000"};
        QTest::newRow("band pass 1234.56 passes 1234")
            << "Window_Band_Pass_Reject"
            << "sliderFrequency=123456"
            << "BandPass" << QStringList{} << QStringList{"bandpass", "1234", "600"};
        QTest::newRow("band pass from a label of 1234.56")
            << "Window_Band_Pass_Reject"
            << "labelFrequency=1234.56;sliderWidth=2"
            << "BandPass" << QStringList{} << QStringList{"bandpass", "1234", "12"};
        QTest::newRow("band reject defaults")
            << "Window_Band_Pass_Reject"
            << ""
            << "BandReject" << QStringList{} << QStringList{"bandreject", "1000", "600"};
        QTest::newRow("dc shift defaults")
            << "Window_DCShift"
            << ""
            << "DCShift" << QStringList{} << QStringList{"dcshift", "0.10", "0.05"};
        QTest::newRow("dc shift changed")
            << "Window_DCShift"
            << "sliderShift=-200;sliderGainLimiter=100"
            << "DCShift" << QStringList{} << QStringList{"dcshift", "-2.00", "1.00"};
        QTest::newRow("contrast defaults") << "Window_Percentage"
                                           << ""
                                           << "Compression" << QStringList{} << QStringList{"contrast", "75"};
        QTest::newRow("contrast 0") << "Window_Percentage"
                                    << "sliderPercentage=0"
                                    << "Compression" << QStringList{} << QStringList{"contrast", "0"};
        QTest::newRow("biquad defaults")
            << "Window_Biquad"
            << ""
            << "Biquad" << QStringList{} << QStringList{"biquad",    "0.5000000", "0.5000000", "0.0000000",
                                                        "1.0000000", "0.0000000", "0.0000000"};
        QTest::newRow("biquad from the labels")
            << "Window_Biquad"
            << "sliderb2=1234567;labela1=-0.1234567;slidera0=20000000"
            << "Biquad" << QStringList{} << QStringList{"biquad",    "0.5000000",  "0.5000000", "0.1234567",
                                                        "2.0000000", "-0.1234567", "0.0000000"};
        QStringList equalizer;
        for (const QString& frequency : bandFrequencies)
            equalizer << "equalizer" << frequency << "1.50"
                      << "1.50";
        QTest::newRow("equalizer bandwidth 1.50, bands moved")
            << "Window_Equalizer"
            << "sliderBandwidthQ=1500;sliderdB01=20;sliderdB07=-13;sliderdB20=-20"
            << "Equalizer" << QStringList{} << equalizer;
        equalizer.clear();
        for (const QString& frequency : bandFrequencies)
            equalizer << "equalizer" << frequency << "1.00"
                      << "1.00";
        QTest::newRow("equalizer defaults") << "Window_Equalizer"
                                            << ""
                                            << "Equalizer" << QStringList{} << equalizer;
        QTest::newRow("de-emphasis") << "Window_Deemphasis"
                                     << ""
                                     << "DeEmphasis" << QStringList{} << QStringList{"deemph"};
        QTest::newRow("earwax") << "Window_Earwax"
                                << ""
                                << "Earwax" << QStringList{} << QStringList{"earwax"};
        QTest::newRow("oops") << "Window_OOPS"
                              << ""
                              << "OOPS" << QStringList{} << QStringList{"oops"};
        QTest::newRow("riaa") << "Window_RIAA"
                              << ""
                              << "RIAA" << QStringList{} << QStringList{"riaa"};
    }
    void accepted() {
        QFETCH(QString, dialogClass);
        QFETCH(QString, settings);
        QFETCH(QString, key);
        QFETCH(QStringList, global);
        QFETCH(QStringList, effect);
        std::unique_ptr<EffectDialog> dialog = makeEffectDialog(dialogClass);
        QVERIFY(dialog);
        const int result = accept<EffectDialog>(*dialog, settings);
        QCOMPARE(result, 1);
        QCOMPARE(dialog->result(), int(QDialog::Accepted));
        QCOMPARE(dialog->bOK, true);
        QVERIFY(!dialog->isVisible());
        const EffectArguments arguments = argumentsOf(key, dialog->effectValues());
        QCOMPARE(arguments.global, global);
        QCOMPARE(arguments.effect, effect);
    }

    // The property names and types the catalogue reads.
    void valueNames_data() {
        QTest::addColumn<QString>("dialogClass");
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QStringList>("types");
        QTest::newRow("amplify") << "Window_Amplify" << QStringList{"u_Percentage"}
                                 << QStringList{"qulonglong"};
        QTest::newRow("normalize") << "Window_Normalize" << QStringList{"f_dB"} << QStringList{"float"};
        QTest::newRow("echo") << "Window_Echo"
                              << QStringList{"f_Decay_Factor", "f_Delay_MS", "f_Gain_In", "f_Gain_Out"}
                              << QStringList{"float", "float", "float", "float"};
        QTest::newRow("phaser") << "Window_Phaser" << QStringList{"f_Decay_Factor", "f_Delay", "f_Gain_In",
                                                                  "f_Gain_Out",     "f_Speed", "u_Modulation"}
                                << QStringList{"float", "float", "float", "float", "float", "qulonglong"};
        QTest::newRow("chorus") << "Window_Chorus"
                                << QStringList{"f_Decay_Factor", "f_Delay", "f_Depth",     "f_Gain_In",
                                               "f_Gain_Out",     "f_Speed", "u_Modulation"}
                                << QStringList{"float", "float", "float",     "float",
                                               "float", "float", "qulonglong"};
        QTest::newRow("fade") << "Window_Fade" << QStringList{"f_Duration_MS", "u_Modulation"}
                              << QStringList{"float", "qulonglong"};
        QTest::newRow("bend") << "Window_Bend" << QStringList{"f_Cents", "f_Duration", "f_Start"}
                              << QStringList{"qlonglong", "qulonglong", "qulonglong"};
        QTest::newRow("bass and treble")
            << "Window_Bass_And_Treble" << QStringList{"f_Bass", "f_Treble"} << QStringList{"float", "float"};
        QTest::newRow("pitch") << "Window_Pitch" << QStringList{"f_Semitones"} << QStringList{"float"};
        QTest::newRow("speed") << "Window_Speed" << QStringList{"f_Percentage"} << QStringList{"float"};
        QTest::newRow("tempo") << "Window_Tempo" << QStringList{"f_Percentage"} << QStringList{"float"};
        QTest::newRow("flanger") << "Window_Flanger" << QStringList{"f_Delay", "f_Depth", "f_Phase",
                                                                    "f_Regen", "f_Speed", "f_Width"}
                                 << QStringList{"qlonglong", "qlonglong", "qlonglong",
                                                "qlonglong", "float",     "qlonglong"};
        QTest::newRow("reverb") << "Window_Reverb"
                                << QStringList{"f_HF_Damping", "f_Pre_Delay",    "f_Reverberence",
                                               "f_Room_Size",  "f_Stereo_Depth", "f_Wet_Gain"}
                                << QStringList(6, "qlonglong");
        QTest::newRow("tremolo") << "Window_Tremolo" << QStringList{"f_Depth", "f_Speed"}
                                 << QStringList{"qlonglong", "float"};
        QTest::newRow("compand") << "Window_Compand"
                                 << QStringList{"f_Attack", "f_Decay", "f_Delay", "f_Gain",
                                                "f_Initial_Volume"}
                                 << QStringList{"float", "float", "float", "qlonglong", "qlonglong"};
        QTest::newRow("high or low pass")
            << "Window_HL_Pass" << QStringList{"f_Rolloff_dB"} << QStringList{"qlonglong"};
        QTest::newRow("band pass or reject")
            << "Window_Band_Pass_Reject" << QStringList{"f_Frequency", "f_Width_dB"}
            << QStringList{"qulonglong", "qlonglong"};
        QTest::newRow("dc shift") << "Window_DCShift" << QStringList{"f_Gain_Limiter", "f_Shift"}
                                  << QStringList{"float", "float"};
        QTest::newRow("percentage") << "Window_Percentage" << QStringList{"f_Percentage"}
                                    << QStringList{"qulonglong"};
        QTest::newRow("biquad") << "Window_Biquad"
                                << QStringList{"f_a0", "f_a1", "f_a2", "f_b0", "f_b1", "f_b2"}
                                << QStringList(6, "float");
        QStringList bands;
        for (int band = 1; band <= 20; ++band)
            bands << QString::asprintf("f_dB_%02d", band);
        QTest::newRow("equalizer") << "Window_Equalizer" << QStringList{"f_BandwidthQ"} + bands
                                   << QStringList{"float"} + QStringList(20, "qlonglong");
        QTest::newRow("noise reduction")
            << "Window_Noise_Reduction" << QStringList{"f_Level"} << QStringList{"float"};
        for (const char* name : {"Window_Deemphasis", "Window_Earwax", "Window_OOPS", "Window_RIAA",
                                 "Window_Ask_Noise_Selected"})
            QTest::newRow(name) << name << QStringList{} << QStringList{};
    }
    void valueNames() {
        QFETCH(QString, dialogClass);
        QFETCH(QStringList, names);
        QFETCH(QStringList, types);
        std::unique_ptr<EffectDialog> dialog = makeEffectDialog(dialogClass);
        QCOMPARE(accept<EffectDialog>(*dialog), 1);
        const EffectValues values = dialog->effectValues();
        QCOMPARE(values.keys(), names);
        QStringList seen;
        for (const QString& key : values.keys())
            seen << QString::fromLatin1(values.variant(key).typeName());
        QCOMPARE(seen, types);
    }

    // Every refusal names the first check that fails and leaves the dialog open.
    void refused_data() {
        QTest::addColumn<QString>("dialogClass");
        QTest::addColumn<QString>("settings");
        QTest::addColumn<QString>("message");

        QTest::newRow("amplify 0") << "Window_Amplify"
                                   << "textPercentage=0"
                                   << "Percentage invalid.";
        QTest::newRow("amplify letters") << "Window_Amplify"
                                         << "textPercentage=abc"
                                         << "Percentage invalid.";
        QTest::newRow("amplify empty") << "Window_Amplify"
                                       << "textPercentage="
                                       << "Percentage invalid.";
        QTest::newRow("amplify fraction below 1") << "Window_Amplify"
                                                  << "textPercentage=0.9"
                                                  << "Percentage invalid.";

        QTest::newRow("echo decay 0") << "Window_Echo"
                                      << "textDecayFactor=0"
                                      << "Decay factor invalid.";
        QTest::newRow("echo decay letters") << "Window_Echo"
                                            << "textDecayFactor=abc"
                                            << "Decay factor invalid.";
        QTest::newRow("echo decay comma") << "Window_Echo"
                                          << "textDecayFactor=0,5"
                                          << "Decay factor invalid.";
        QTest::newRow("echo delay -1") << "Window_Echo"
                                       << "textDelayMS=-1"
                                       << "Delay invalid.";
        QTest::newRow("echo both, decay first") << "Window_Echo"
                                                << "textDelayMS=-1;textDecayFactor=0"
                                                << "Decay factor invalid.";

        QTest::newRow("phaser speed -1") << "Window_Phaser"
                                         << "textSpeed=-1"
                                         << "Speed invalid.";
        QTest::newRow("phaser decay 0") << "Window_Phaser"
                                        << "textDecayFactor=0"
                                        << "Decay factor invalid.";
        QTest::newRow("phaser delay -1") << "Window_Phaser"
                                         << "textDelay=-1"
                                         << "Delay invalid.";
        QTest::newRow("phaser all three, speed first") << "Window_Phaser"
                                                       << "textSpeed=-1;textDecayFactor=0;textDelay=-1"
                                                       << "Speed invalid.";
        QTest::newRow("phaser decay before delay") << "Window_Phaser"
                                                   << "textDecayFactor=;textDelay=-1e99"
                                                   << "Decay factor invalid.";

        QTest::newRow("chorus delay -1") << "Window_Chorus"
                                         << "textDelay=-1"
                                         << "Delay invalid.";
        QTest::newRow("chorus decay 0") << "Window_Chorus"
                                        << "textDecayFactor=0"
                                        << "Decay factor invalid.";
        QTest::newRow("chorus depth -1") << "Window_Chorus"
                                         << "textDepth=-1"
                                         << "Depth invalid.";
        QTest::newRow("chorus all three, delay first") << "Window_Chorus"
                                                       << "textDelay=-1;textDecayFactor=0;textDepth=-1"
                                                       << "Delay invalid.";
        QTest::newRow("chorus decay before depth") << "Window_Chorus"
                                                   << "textDecayFactor=0;textDepth=-1"
                                                   << "Decay factor invalid.";

        QTest::newRow("fade 0") << "Window_Fade"
                                << "textDurationMS=0"
                                << "Duration invalid.";
        QTest::newRow("fade -5") << "Window_Fade"
                                 << "textDurationMS=-5"
                                 << "Duration invalid.";
        QTest::newRow("fade letters") << "Window_Fade"
                                      << "textDurationMS=abc"
                                      << "Duration invalid.";
        QTest::newRow("fade empty") << "Window_Fade"
                                    << "textDurationMS="
                                    << "Duration invalid.";

        QTest::newRow("bend duration 0") << "Window_Bend"
                                         << "textDuration=0"
                                         << "Duration invalid.";
        QTest::newRow("bend duration letters") << "Window_Bend"
                                               << "textDuration=ms"
                                               << "Duration invalid.";
    }
    void refused() {
        QFETCH(QString, dialogClass);
        QFETCH(QString, settings);
        QFETCH(QString, message);
        std::unique_ptr<EffectDialog> dialog = makeEffectDialog(dialogClass);
        QVERIFY(dialog);
        const Refusal refusal =
            refuseOnce<EffectDialog>(*dialog, [settings](EffectDialog* d) { fill(d, settings); });
        QVERIFY(refusal.alert.shown);
        QCOMPARE(refusal.alert.informativeText, message);
        QVERIFY(refusal.stillOpen);
        QCOMPARE(refusal.result, 0);
        QCOMPARE(dialog->bOK, false);
    }

    // After a refusal the corrected entry is accepted in the same showing.
    void acceptedAfterARefusal() {
        EffectDialog dialog(*findDialog("Window_Chorus"));
        const Refusal refusal = refuseOnce<EffectDialog>(
            dialog, [](EffectDialog* d) { typeInto(d->findChild<QLineEdit*>("textDepth"), "-1"); }, {},
            [](EffectDialog* d) { typeInto(d->findChild<QLineEdit*>("textDepth"), "3"); });
        QCOMPARE(refusal.alert.informativeText, QString("Depth invalid."));
        QCOMPARE(refusal.result, 1);
        QCOMPARE(dialog.bOK, true);
        QCOMPARE(dialog.effectValues().real("f_Depth"), 3.0f);
    }

    // Entries beyond float's range are held at its largest value, never infinity.
    void hugeEntriesSaturate() {
        EffectDialog normalize(*findDialog("Window_Normalize"));
        QCOMPARE(accept<EffectDialog>(normalize, "textdB=1e99"), 1);
        QCOMPARE(normalize.effectValues().real("f_dB"), FLT_MAX);
        QCOMPARE(accept<EffectDialog>(normalize, "textdB=-1e99"), 1);
        QCOMPARE(normalize.effectValues().real("f_dB"), -FLT_MAX);

        EffectDialog fade(*findDialog("Window_Fade"));
        QCOMPARE(accept<EffectDialog>(fade, "textDurationMS=1e99"), 1);
        QCOMPARE(fade.effectValues().real("f_Duration_MS"), FLT_MAX);

        EffectDialog echo(*findDialog("Window_Echo"));
        QCOMPARE(accept<EffectDialog>(echo, "textDelayMS=1e99;textDecayFactor=1e99"), 1);
        QCOMPARE(echo.effectValues().real("f_Delay_MS"), FLT_MAX);
        QCOMPARE(echo.effectValues().real("f_Decay_Factor"), FLT_MAX);

        EffectDialog amplify(*findDialog("Window_Amplify"));
        QCOMPARE(accept<EffectDialog>(amplify, "textPercentage=99999999999999"), 1);
        QCOMPARE(amplify.effectValues().unsignedWhole("u_Percentage"),
                 quint64(std::numeric_limits<int>::max()));

        // A negative whole entry converts to the unsigned field as it stands.
        EffectDialog bend(*findDialog("Window_Bend"));
        QCOMPARE(accept<EffectDialog>(bend, "textStart=-5"), 1);
        QCOMPARE(bend.effectValues().unsignedWhole("f_Start"), quint64(-5));
    }

    void typedReadings() {
        EffectDialog echo(*findDialog("Window_Echo"));
        QCOMPARE(accept<EffectDialog>(echo, "textDelayMS=1.5abc;textDecayFactor= 2e-1"), 1);
        QCOMPARE(echo.effectValues().real("f_Delay_MS"), 1.5f);
        QCOMPARE(echo.effectValues().real("f_Decay_Factor"), 0.2f);
        QCOMPARE(echo.effectValues().real("f_Gain_In"), 80.0f);
        QCOMPARE(echo.effectValues().real("f_Gain_Out"), 90.0f);

        EffectDialog fade(*findDialog("Window_Fade"));
        QCOMPARE(accept<EffectDialog>(fade, "textDurationMS=1,5;comboModulation=3"), 1);
        QCOMPARE(fade.effectValues().real("f_Duration_MS"), 1.0f);
        QCOMPARE(fade.effectValues().unsignedWhole("u_Modulation"), quint64(3));

        EffectDialog bend(*findDialog("Window_Bend"));
        QCOMPARE(accept<EffectDialog>(bend, "textStart=1,5;sliderCents=5;textDuration=7 s"), 1);
        QCOMPARE(bend.effectValues().unsignedWhole("f_Start"), quint64(1));
        QCOMPARE(bend.effectValues().whole("f_Cents"), qint64(5));
        QCOMPARE(bend.effectValues().unsignedWhole("f_Duration"), quint64(7));
    }

    void backsOut_data() {
        QTest::addColumn<QString>("dialogClass");
        QTest::addColumn<QString>("how");
        for (const QString& name : allDialogs)
            for (const char* how : {"cancel", "close", "escape"})
                QTest::newRow(qPrintable(name + " " + how)) << name << QString(how);
    }
    void backsOut() {
        QFETCH(QString, dialogClass);
        QFETCH(QString, how);
        std::unique_ptr<EffectDialog> dialog = makeEffectDialog(dialogClass);
        QVERIFY(dialog);
        // Confirmed once first, so backing out has a bOK to take back.
        QCOMPARE(accept<EffectDialog>(*dialog), 1);
        QCOMPARE(dialog->bOK, true);
        const int result = runModal<EffectDialog>(*dialog, [how](EffectDialog* d) {
            if (how == "cancel")
                clickButton(d, QDialogButtonBox::Cancel);
            else if (how == "close")
                d->close();
            else
                QTest::keyClick(d, Qt::Key_Escape);
        });
        QCOMPARE(result, 0);
        QCOMPARE(dialog->result(), int(QDialog::Rejected));
        QCOMPARE(dialog->bOK, false);
        QVERIFY(!dialog->isVisible());
    }

    void backsOutFirstTime() {
        for (const QString& name : allDialogs) {
            std::unique_ptr<EffectDialog> dialog = makeEffectDialog(name);
            const int result = runModal<EffectDialog>(
                *dialog, [](EffectDialog* d) { clickButton(d, QDialogButtonBox::Cancel); });
            QCOMPARE(result, 0);
            QVERIFY2(!dialog->bOK, qPrintable(name));
        }
    }

    // The parameterless dialogs say what they will do.
    void confirmationsExplain() {
        for (const char* name : {"Window_Deemphasis", "Window_Earwax", "Window_OOPS", "Window_RIAA",
                                 "Window_Ask_Noise_Selected"}) {
            std::unique_ptr<EffectDialog> dialog = makeEffectDialog(name);
            auto* label = dialog->findChild<QLabel*>("labelMessage");
            QVERIFY2(label, name);
            QVERIFY(label->text().endsWith('?'));
            QVERIFY(dialog->effectValues().isEmpty());
            QVERIFY(dialog->findChildren<QLineEdit*>().isEmpty());
        }
    }
};

QTEST_MAIN(tst_EffectDialogs)
#include "tst_effectdialogs.moc"
