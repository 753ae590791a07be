#include "effects/EffectCatalogue.h"
#include "effects/EffectDialogs.h"
#include "support/Fixtures.h"

#include <QApplication>
#include <QFile>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>

// Every slider of every effect dialog, set to each end of its range with the
// other controls at their start values, gives arguments the real sox accepts.
class tst_EffectRanges : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;
    QString m_input;

    // Runs sox over the short input; its output when it fails.
    QString soxRefuses(const QStringList& global, const QStringList& effect) {
        const QString output = m_dir.filePath("out.wav");
        QFile::remove(output);
        QString said;
        const int code = fixtures::run("sox", global + QStringList{m_input, output} + effect, &said);
        if (code == 0 && QFile::exists(output))
            return {};
        return QString("exit %1: %2").arg(code).arg(said.trimmed());
    }

private slots:
    void initTestCase() {
        m_input = m_dir.filePath("in.wav");
        QCOMPARE(fixtures::run("sox", {"-n", "-r", "44100", "-c", "2", "-b", "16", m_input, "synth", "0.5",
                                       "pinknoise", "vol", "0.3"}),
                 0);
    }

    void everyEndIsAccepted_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("slider");
        QTest::addColumn<bool>("top");
        for (const EffectEntry& entry : effectCatalogue()) {
            if (entry.dialog.isEmpty())
                continue;
            const std::unique_ptr<EffectDialog> dialog = makeEffectDialog(entry.dialog);
            for (QSlider* slider : dialog->findChildren<QSlider*>())
                for (bool top : {false, true})
                    QTest::newRow(
                        qPrintable(entry.key + " " + slider->objectName() + (top ? " max" : " min")))
                        << entry.key << slider->objectName() << top;
        }
    }
    void everyEndIsAccepted() {
        QFETCH(QString, key);
        QFETCH(QString, slider);
        QFETCH(bool, top);
        const EffectEntry* entry = findEffect(key);
        std::unique_ptr<EffectDialog> dialog = makeEffectDialog(entry->dialog);
        auto* control = dialog->findChild<QSlider*>(slider);
        control->setValue(top ? control->maximum() : control->minimum());
        dialog->OnOK();
        QVERIFY(dialog->bOK);
        const EffectArguments arguments = entry->arguments(dialog->effectValues());
        const QString refusal = soxRefuses(arguments.global, arguments.effect);
        QVERIFY2(refusal.isEmpty(), qPrintable(arguments.effect.join(' ') + " → " + refusal));
    }

    void everyNoiseReductionLevelIsAccepted() {
        const QString profile = m_dir.filePath("noise.prof");
        QCOMPARE(fixtures::run("sox", {m_input, "-n", "noiseprof", profile}), 0);
        EffectDialog dialog(noiseReductionDialog());
        auto* level = dialog.findChild<QSlider*>("sliderLevel");
        for (int value : {level->minimum(), level->maximum()}) {
            level->setValue(value);
            dialog.OnOK();
            const QString refusal =
                soxRefuses({}, {"noisered", profile,
                                QString::asprintf("%.02f", double(dialog.effectValues().real("f_Level")))});
            QVERIFY2(refusal.isEmpty(), qPrintable(refusal));
        }
    }
};

QTEST_MAIN(tst_EffectRanges)
#include "tst_effectranges.moc"
