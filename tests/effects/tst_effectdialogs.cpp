#include "effects/EffectCatalogue.h"
#include "effects/EffectDialogs.h"
#include "effects/Window_Amplify.h"
#include "effects/Window_Bend.h"
#include "effects/Window_Chorus.h"
#include "effects/Window_Echo.h"
#include "effects/Window_Fade.h"
#include "effects/Window_Normalize.h"
#include "effects/Window_Phaser.h"
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

const QStringList allDialogs = {"Window_Amplify", "Window_Normalize", "Window_Echo", "Window_Phaser",
                                "Window_Chorus",  "Window_Fade",      "Window_Bend", "Window_Deemphasis",
                                "Window_Earwax",  "Window_OOPS",      "Window_RIAA"};

// Applies "name=value" settings separated by ';' to the dialog's named
// controls: typed into a text field, set on a slider, chosen in a list.
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

// What one refused OK showed, and the state the dialog was left in.
struct Refusal {
    bool shown = false;
    QString message;
    bool stillOpen = false;
    int result = -2;
    bool bOK = true;
};

// Fills the dialog, presses OK, expects an alert, then cancels.
template <typename D> Refusal refuse(D& dialog, const QString& settings) {
    auto refusal = std::make_shared<Refusal>();
    refusal->result = runModal<D>(dialog, [settings, refusal](D* d) {
        fill(d, settings);
        auto seen = gui::answerAlert();
        clickButton(d, QDialogButtonBox::Ok);
        QVERIFY(QTest::qWaitFor([seen] { return seen->shown; }, 10000));
        refusal->shown = seen->shown;
        refusal->message = seen->informativeText;
        refusal->stillOpen = d->isVisible() && QApplication::activeModalWidget() == d && !d->bOK;
        clickButton(d, QDialogButtonBox::Cancel);
    });
    refusal->bOK = dialog.bOK;
    return *refusal;
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
        QCOMPARE(dialog->metaObject()->className(), dialogClass.toLatin1());
        QCOMPARE(dialog->parentWidget(), &parent);
        QVERIFY(!dialog->windowTitle().isEmpty());
        QVERIFY(dialog->isModal());
        QCOMPARE(dialog->bOK, false);
        QVERIFY(buttonOf(dialog.get(), QDialogButtonBox::Ok)->isDefault());
        QVERIFY(buttonOf(dialog.get(), QDialogButtonBox::Cancel));
    }

    void factoryRefusesOthers() {
        QVERIFY(!makeEffectDialog("Window_Reverb"));
        QVERIFY(!makeEffectDialog(""));
        QVERIFY(!makeEffectDialog("window_amplify"));
        QVERIFY(!makeEffectDialog("Window_Silence_Insert"));
    }

    // Each dialog's controls, found by their object names, and what they show
    // when the dialog opens.
    void defaultsShown() {
        Window_Amplify amplify;
        QCOMPARE(amplify.windowTitle(), QString("Amplify"));
        QCOMPARE(amplify.findChild<QLineEdit*>("textPercentage"), amplify.textPercentage);
        QCOMPARE(amplify.textPercentage->text(), QString("100"));

        Window_Normalize normalize;
        QCOMPARE(normalize.windowTitle(), QString("Normalize"));
        QCOMPARE(normalize.findChild<QLineEdit*>("textdB"), normalize.textdB);
        QCOMPARE(normalize.textdB->text(), QString("-1.0"));

        Window_Echo echo;
        QCOMPARE(echo.windowTitle(), QString("Echo"));
        QCOMPARE(echo.findChild<QSlider*>("sliderGainIn"), echo.sliderGainIn);
        QCOMPARE(echo.findChild<QSlider*>("sliderGainOut"), echo.sliderGainOut);
        QCOMPARE(echo.findChild<QLabel*>("labelGainIn"), echo.labelGainIn);
        QCOMPARE(echo.findChild<QLabel*>("labelGainOut"), echo.labelGainOut);
        QCOMPARE(echo.findChild<QLineEdit*>("textDelayMS"), echo.textDelayMS);
        QCOMPARE(echo.findChild<QLineEdit*>("textDecayFactor"), echo.textDecayFactor);
        QCOMPARE(echo.sliderGainIn->minimum(), 0);
        QCOMPARE(echo.sliderGainIn->maximum(), 100);
        QCOMPARE(echo.sliderGainIn->value(), 80);
        QCOMPARE(echo.sliderGainOut->value(), 90);
        QCOMPARE(echo.labelGainIn->text(), QString("80"));
        QCOMPARE(echo.labelGainOut->text(), QString("90"));
        QCOMPARE(echo.textDelayMS->text(), QString("1000"));
        QCOMPARE(echo.textDecayFactor->text(), QString("0.5"));

        Window_Phaser phaser;
        QCOMPARE(phaser.windowTitle(), QString("Phaser"));
        QCOMPARE(phaser.sliderGainIn->value(), 80);
        QCOMPARE(phaser.sliderGainOut->value(), 74);
        QCOMPARE(phaser.labelGainIn->text(), QString("80"));
        QCOMPARE(phaser.labelGainOut->text(), QString("74"));
        QCOMPARE(phaser.findChild<QLineEdit*>("textSpeed")->text(), QString("1500"));
        QCOMPARE(phaser.findChild<QLineEdit*>("textDelay")->text(), QString("3000"));
        QCOMPARE(phaser.findChild<QLineEdit*>("textDecayFactor")->text(), QString("0.5"));
        QComboBox* phaserModulation = phaser.findChild<QComboBox*>("comboModulation");
        QCOMPARE(phaserModulation, phaser.comboModulation);
        QCOMPARE(phaserModulation->count(), 2);
        QCOMPARE(phaserModulation->itemText(0), QString("Triangular"));
        QCOMPARE(phaserModulation->itemText(1), QString("Sinusoidal"));
        QCOMPARE(phaserModulation->currentIndex(), 0);

        Window_Chorus chorus;
        QCOMPARE(chorus.windowTitle(), QString("Chorus"));
        QCOMPARE(chorus.sliderGainIn->value(), 70);
        QCOMPARE(chorus.sliderGainOut->value(), 90);
        QCOMPARE(chorus.findChild<QLineEdit*>("textDelay")->text(), QString("50"));
        QCOMPARE(chorus.findChild<QLineEdit*>("textDecayFactor")->text(), QString("0.5"));
        QCOMPARE(chorus.findChild<QLineEdit*>("textDepth")->text(), QString("2"));
        QCOMPARE(chorus.findChild<QSlider*>("sliderSpeed"), chorus.sliderSpeed);
        QCOMPARE(chorus.sliderSpeed->minimum(), 1);
        QCOMPARE(chorus.sliderSpeed->maximum(), 50);
        QCOMPARE(chorus.sliderSpeed->value(), 3);
        QCOMPARE(chorus.findChild<QLabel*>("labelSpeed")->text(), QString("0.30"));
        QCOMPARE(chorus.comboModulation->itemText(0), QString("Triangular"));
        QCOMPARE(chorus.comboModulation->itemText(1), QString("Sinusoidal"));
        QCOMPARE(chorus.comboModulation->currentIndex(), 0);

        Window_Fade fade;
        QCOMPARE(fade.findChild<QLineEdit*>("textDurationMS")->text(), QString("500"));
        QComboBox* shapes = fade.findChild<QComboBox*>("comboModulation");
        QCOMPARE(shapes->count(), 5);
        QCOMPARE(shapes->itemText(0), QString("Linear (t)"));
        QCOMPARE(shapes->itemText(1), QString("Quarter sine (q)"));
        QCOMPARE(shapes->itemText(2), QString("Half sine (h)"));
        QCOMPARE(shapes->itemText(3), QString("Logarithmic (l)"));
        QCOMPARE(shapes->itemText(4), QString("Inverted parabola (p)"));
        QCOMPARE(shapes->currentIndex(), 0);

        Window_Bend bend;
        QCOMPARE(bend.windowTitle(), QString("Bend"));
        QCOMPARE(bend.findChild<QLineEdit*>("textStart")->text(), QString("1000"));
        QCOMPARE(bend.findChild<QLineEdit*>("textDuration")->text(), QString("2000"));
        QCOMPARE(bend.findChild<QSlider*>("sliderCents"), bend.sliderCents);
        QCOMPARE(bend.sliderCents->minimum(), 1);
        QCOMPARE(bend.sliderCents->maximum(), 1200);
        QCOMPARE(bend.sliderCents->value(), 300);
        QCOMPARE(bend.findChild<QLabel*>("labelCents")->text(), QString("300"));
    }

    // The value labels follow their sliders, through the signal and through
    // the slots called on their own.
    void slidersShowTheirValues() {
        Window_Echo echo;
        echo.sliderGainIn->setValue(33);
        echo.sliderGainOut->setValue(0);
        QCOMPARE(echo.labelGainIn->text(), QString("33"));
        QCOMPARE(echo.labelGainOut->text(), QString("0"));
        echo.sliderGainIn->blockSignals(true);
        echo.sliderGainIn->setValue(100);
        echo.sliderGainIn->blockSignals(false);
        QCOMPARE(echo.labelGainIn->text(), QString("33"));
        QVERIFY(QMetaObject::invokeMethod(&echo, "OnChangeGainIn"));
        QCOMPARE(echo.labelGainIn->text(), QString("100"));

        Window_Phaser phaser;
        phaser.sliderGainOut->setValue(12);
        QCOMPARE(phaser.labelGainOut->text(), QString("12"));
        QVERIFY(QMetaObject::invokeMethod(&phaser, "OnChangeGainIn"));
        QVERIFY(QMetaObject::invokeMethod(&phaser, "OnChangeGainOut"));

        Window_Chorus chorus;
        chorus.sliderSpeed->setValue(25);
        QCOMPARE(chorus.labelSpeed->text(), QString("2.50"));
        chorus.sliderSpeed->setValue(1);
        QCOMPARE(chorus.labelSpeed->text(), QString("0.10"));
        chorus.sliderSpeed->setValue(500); // clamped to the range
        QCOMPARE(chorus.labelSpeed->text(), QString("5.00"));
        QVERIFY(QMetaObject::invokeMethod(&chorus, "OnChangeSpeed"));
        QVERIFY(QMetaObject::invokeMethod(&chorus, "OnChangeGainIn"));
        QVERIFY(QMetaObject::invokeMethod(&chorus, "OnChangeGainOut"));

        Window_Bend bend;
        bend.sliderCents->setValue(1);
        QCOMPARE(bend.labelCents->text(), QString("1"));
        bend.sliderCents->setValue(450);
        QCOMPARE(bend.labelCents->text(), QString("450"));
        QVERIFY(QMetaObject::invokeMethod(&bend, "OnChangeCents"));
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
        for (const char* name : {"Window_Deemphasis", "Window_Earwax", "Window_OOPS", "Window_RIAA"})
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
        for (const QVariant& value : values)
            seen << QString::fromLatin1(value.typeName());
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
        const Refusal refusal = refuse<EffectDialog>(*dialog, settings);
        QVERIFY(refusal.shown);
        QCOMPARE(refusal.message, message);
        QVERIFY(refusal.stillOpen);
        QCOMPARE(refusal.result, 0);
        QCOMPARE(refusal.bOK, false);
    }

    // After a refusal the corrected entry is accepted in the same showing.
    void acceptedAfterARefusal() {
        Window_Chorus dialog;
        auto alert = std::make_shared<gui::AlertSeen>();
        const int result = runModal<Window_Chorus>(dialog, [alert](Window_Chorus* d) {
            typeInto(d->textDepth, "-1");
            auto seen = gui::answerAlert();
            clickButton(d, QDialogButtonBox::Ok);
            QVERIFY(QTest::qWaitFor([seen] { return seen->shown; }, 10000));
            *alert = *seen;
            typeInto(d->textDepth, "3");
            clickButton(d, QDialogButtonBox::Ok);
        });
        QCOMPARE(alert->informativeText, QString("Depth invalid."));
        QCOMPARE(result, 1);
        QCOMPARE(dialog.bOK, true);
        QCOMPARE(dialog.f_Depth, 3.0f);
    }

    // Entries beyond float's range are held at its largest value, never infinity.
    void hugeEntriesSaturate() {
        Window_Normalize normalize;
        QCOMPARE(accept<Window_Normalize>(normalize, "textdB=1e99"), 1);
        QCOMPARE(normalize.f_dB, FLT_MAX);
        QCOMPARE(accept<Window_Normalize>(normalize, "textdB=-1e99"), 1);
        QCOMPARE(normalize.f_dB, -FLT_MAX);

        Window_Fade fade;
        QCOMPARE(accept<Window_Fade>(fade, "textDurationMS=1e99"), 1);
        QCOMPARE(fade.f_Duration_MS, FLT_MAX);

        Window_Echo echo;
        QCOMPARE(accept<Window_Echo>(echo, "textDelayMS=1e99;textDecayFactor=1e99"), 1);
        QCOMPARE(echo.f_Delay_MS, FLT_MAX);
        QCOMPARE(echo.f_Decay_Factor, FLT_MAX);

        Window_Amplify amplify;
        QCOMPARE(accept<Window_Amplify>(amplify, "textPercentage=99999999999999"), 1);
        QCOMPARE(amplify.u_Percentage, quint64(std::numeric_limits<int>::max()));

        // A negative whole entry converts to the unsigned field as it stands.
        Window_Bend bend;
        QCOMPARE(accept<Window_Bend>(bend, "textStart=-5"), 1);
        QCOMPARE(bend.f_Start, quint64(-5));
    }

    void typedReadings() {
        Window_Echo echo;
        QCOMPARE(accept<Window_Echo>(echo, "textDelayMS=1.5abc;textDecayFactor= 2e-1"), 1);
        QCOMPARE(echo.f_Delay_MS, 1.5f);
        QCOMPARE(echo.f_Decay_Factor, 0.2f);
        QCOMPARE(echo.f_Gain_In, 80.0f);
        QCOMPARE(echo.f_Gain_Out, 90.0f);

        Window_Fade fade;
        QCOMPARE(accept<Window_Fade>(fade, "textDurationMS=1,5;comboModulation=3"), 1);
        QCOMPARE(fade.f_Duration_MS, 1.0f);
        QCOMPARE(fade.u_Modulation, quint64(3));

        Window_Bend bend;
        QCOMPARE(accept<Window_Bend>(bend, "textStart=1,5;sliderCents=5;textDuration=7 s"), 1);
        QCOMPARE(bend.f_Start, quint64(1));
        QCOMPARE(bend.f_Cents, qint64(5));
        QCOMPARE(bend.f_Duration, quint64(7));
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
        for (const char* name : {"Window_Deemphasis", "Window_Earwax", "Window_OOPS", "Window_RIAA"}) {
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
