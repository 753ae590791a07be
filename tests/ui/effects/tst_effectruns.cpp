#include "ui/edit/EditingFixture.h"

#include "effects/Clipping.h"
#include "effects/EffectDialogs.h"
#include "support/DialogDriving.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenu>

namespace {

// How long `seconds` of audio come out of an effect at its dialog's start
// values: speed and tempo run at 125 %, the echo adds its 1000 ms delay and the
// chorus its 50 ms delay and 2 ms depth; every other effect keeps the length.
double lengthAfter(const QString& key, double seconds) {
    if (key == "Speed" || key == "Tempo")
        return seconds / 1.25;
    if (key == "Echo")
        return seconds + 1.0;
    if (key == "Chorus")
        return seconds + 0.052;
    return seconds;
}

// Effects that leave this test's sound as it was at their start values:
// amplifying by 100 %, and shortening pauses in a track that has none (the
// tone sounds all through it).
bool keepsThePattern(const QString& key) {
    return key == "Amplify" || key == "ShortenPauses";
}

// The share of first-channel samples that differ between two files, over the
// length they have in common.
double changedShare(const std::vector<short>& a, const std::vector<short>& b) {
    const std::size_t n = std::min(a.size(), b.size()) / 2;
    std::size_t changed = 0;
    for (std::size_t j = 0; j < n; ++j)
        changed += a[2 * j] != b[2 * j];
    return n ? double(changed) / double(n) : 0.0;
}
} // namespace

// Every effect of the catalogue applied for real by sox to 5 s of speech-like
// sound over a tone, with its dialog's start values, through the items of the
// effects menu.
class tst_EffectRuns : public EditingFixture {
    Q_OBJECT

    QString m_noisy; // steady noise with a tone from 2 to 3 s

    // Triggers the effects menu's item for `action`, answering its dialog with
    // the values it starts with.
    bool runItem(Document* d, const QString& action, bool hasDialog) {
        d->effectActions().fillEffectsMenu();
        auto* item = d->effectActions().popupMenuEffects->findChild<QAction*>(action);
        if (!item)
            return false;
        if (hasDialog)
            gui::whenModal<EffectDialog>([](EffectDialog* dialog) { dialog->OnOK(); });
        const auto refused = gui::answerAlert();
        const bool adopted = edit(d, [&] { item->trigger(); });
        refused->stop = true;
        return adopted && !refused->shown;
    }

    void expectUnchanged(Document* d, const QString& current, const QStringList& files) {
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(d->track().s_WAV_File_Path, current);
        QCOMPARE(d->history().array_WAV_Files(), QStringList({current}));
        QCOMPARE(d->history().u_array_WAV_Files_Length(), 1u);
        QCOMPARE(d->windowTitle(), QFileInfo(current).fileName());
        QCOMPARE(workFiles(), files);
    }

private slots:
    void initTestCase() {
        m_app = gui::startApplication(m_root.filePath("home"));
        QVERIFY(m_app && gui::waitIdle(*m_app));
        // Speech-like: pink noise in the voice band, pulsing four times a second
        // like syllables, over a steady 440 Hz tone.
        const QString voice = m_root.filePath("voice.wav"), tone = m_root.filePath("tone.wav");
        m_pattern = m_root.filePath("speech-and-tone.wav");
        QCOMPARE(fixtures::run("sox",
                               {"-n", "-r", "44100", "-c", "2", "-b", "16", voice, "synth", "5", "pinknoise",
                                "bandpass", "1000", "1.5q", "tremolo", "4", "90", "vol", "0.5"}),
                 0);
        fixtures::makeTone(tone, 5, 440, 0.3);
        QCOMPARE(fixtures::run("sox", {"-m", voice, tone, m_pattern}), 0);
        QVERIFY(std::abs(fixtures::wavInfo(m_pattern).seconds() - 5) < 0.001);

        const QString noise = m_root.filePath("noise.wav"), middle = m_root.filePath("middle.wav");
        m_noisy = m_root.filePath("noisy.wav");
        QCOMPARE(fixtures::run("sox", {"-n", "-r", "44100", "-c", "2", "-b", "16", noise, "synth", "5",
                                       "whitenoise", "vol", "0.05"}),
                 0);
        QCOMPARE(fixtures::run("sox", {"-n", "-r", "44100", "-c", "2", "-b", "16", middle, "synth", "1",
                                       "sine", "1000", "vol", "0.3", "pad", "2", "2"}),
                 0);
        QCOMPARE(fixtures::run("sox", {"-m", noise, middle, m_noisy}), 0);
    }
    void cleanup() { closeAll(); }

    void wholeTrack_data() {
        QTest::addColumn<QString>("key");
        for (const EffectEntry& entry : effectCatalogue())
            QTest::newRow(qPrintable(entry.key)) << entry.key;
    }
    void wholeTrack() {
        QFETCH(QString, key);
        const EffectEntry& entry = *findEffect(key);
        Document* d = openPattern();
        QVERIFY(d);
        const QString original = d->track().s_WAV_File_Path;
        QVERIFY2(runItem(d, actionName(entry, false), !entry.dialog.isEmpty()), qPrintable(key));

        const fixtures::WavInfo info = fixtures::wavInfo(d->track().s_WAV_File_Path);
        QVERIFY(info.ok);
        QVERIFY2(std::abs(info.seconds() - lengthAfter(key, 5)) < 0.03,
                 qPrintable(QString::number(info.seconds())));
        QCOMPARE(d->history().array_WAV_Files(), QStringList({original, d->track().s_WAV_File_Path}));
        QCOMPARE(d->windowTitle(), QFileInfo(d->track().s_WAV_File_Path).fileName());
        QCOMPARE(d->track().i_Audio_Duration_Seconds, qint64(lengthAfter(key, 5) + 0.004));
        // The effect did something, except the ones that keep this sound as it
        // was (the fades reach into half a second of the five).
        const double changed = changedShare(frames(original), frames(d->track().s_WAV_File_Path));
        if (keepsThePattern(key))
            QCOMPARE(changed, 0.0);
        else
            QVERIFY2(changed > 0.05, qPrintable(QString::number(changed)));
        if (key == "Reverse") {
            const std::vector<short> was = frames(original), is = frames(d->track().s_WAV_File_Path);
            QCOMPARE(is.size(), was.size());
            for (std::size_t j = 0; j < is.size(); j += 2 * 307)
                QCOMPARE(is[j], was[was.size() - 2 - j]);
        }
    }

    void selection_data() {
        QTest::addColumn<QString>("key");
        for (const EffectEntry& entry : effectCatalogue())
            if (entry.selection)
                QTest::newRow(qPrintable(entry.key)) << entry.key;
    }
    void selection() {
        QFETCH(QString, key);
        const EffectEntry& entry = *findEffect(key);
        Document* d = openPattern();
        QVERIFY(d);
        const QString original = d->track().s_WAV_File_Path;
        setMarkers(d, 30, 70, 0); // 1.5–3.5 s
        QVERIFY2(runItem(d, actionName(entry, true), !entry.dialog.isEmpty()), qPrintable(key));

        const QString result = d->track().s_WAV_File_Path;
        const double length = fixtures::wavInfo(result).seconds(), expected = 3 + lengthAfter(key, 2);
        QVERIFY2(std::abs(length - expected) < 0.03, qPrintable(QString::number(length)));
        QCOMPARE(d->history().array_WAV_Files(), QStringList({original, result}));
        // Before the selection and after it (counted from the end), the audio is as it was.
        const QList<std::array<double, 4>> windows = {{0.1, 1.4, 0.1, 1.4},
                                                      {3.6, 4.9, length - 1.4, length - 0.1}};
        for (const auto& [wasFrom, wasTo, isFrom, isTo] : windows) {
            const double was = fixtures::rms(original, wasFrom, wasTo),
                         is = fixtures::rms(result, isFrom, isTo);
            QVERIFY2(std::abs(fixtures::decibels(is, was)) < 0.5,
                     qPrintable(QString("%1 s: %2 dB").arg(wasFrom).arg(fixtures::decibels(is, was))));
        }
        // Inside, the effect did something, or nothing at all for the ones
        // that keep this sound as it was.
        if (lengthAfter(key, 2) == 2) {
            const std::vector<short> was = frames(original), is = frames(result);
            const std::vector<short> inWas(was.begin() + 2 * 70000, was.begin() + 2 * 150000),
                inIs(is.begin() + 2 * 70000, is.begin() + 2 * 150000);
            if (keepsThePattern(key))
                QCOMPARE(changedShare(inWas, inIs), 0.0);
            else
                QVERIFY(changedShare(inWas, inIs) > 0.5);
        }
    }

    // Speed and tempo at 125 % really play the selection faster: the tone's
    // pitch changes with speed only, which a zero-crossing count shows.
    void speedAndTempoScaleByTheirFactor() {
        Document* d = openPattern();
        QVERIFY(d);
        QVERIFY(runItem(d, "OnPopupSpeedEntireTrack", true));
        QVERIFY(std::abs(fixtures::wavInfo(d->track().s_WAV_File_Path).seconds() - 4.0) < 0.03);
        waitPastEveryStamp(m_app->session().s_Output_Folder);
        QVERIFY(runItem(d, "OnPopupTempoEntireTrack", true));
        QVERIFY(std::abs(fixtures::wavInfo(d->track().s_WAV_File_Path).seconds() - 3.2) < 0.03);
        QCOMPARE(d->history().u_array_WAV_Files_Length(), 3u);
    }

    void noiseReductionRemovesTheSelectedNoise() {
        gui::answerFileDialog(m_noisy);
        m_app->openDocument();
        Document* d = m_app->documents().last();
        QSignalSpy loaded(d, &Document::loaded);
        QVERIFY(loaded.wait(30000));
        waitPastEveryStamp(m_app->session().s_Output_Folder);
        const QString original = d->track().s_WAV_File_Path;
        setMarkers(d, 0, 30, 0); // 0–1.5 s: noise only

        gui::whenModal<EffectDialog>("Window_Ask_Noise_Selected", [](EffectDialog* ask) { ask->OnOK(); });
        gui::whenModal<EffectDialog>("Window_Noise_Reduction", [](EffectDialog* level) { level->OnOK(); });
        d->effectActions().fillEffectsMenu();
        auto* item = d->effectActions().popupMenuEffects->findChild<QAction*>("OnPopupNoiseReduction");
        QVERIFY(item);
        QVERIFY(edit(d, [&] { item->trigger(); }));

        const QString result = d->track().s_WAV_File_Path;
        QCOMPARE(d->history().array_WAV_Files(), QStringList({original, result}));
        QVERIFY(std::abs(fixtures::wavInfo(result).seconds() - 5) < 0.03);
        for (const auto& [from, to] : {std::pair{0.3, 1.3}, std::pair{3.5, 4.5}}) {
            const double drop =
                fixtures::decibels(fixtures::rms(original, from, to), fixtures::rms(result, from, to));
            QVERIFY2(drop >= 10, qPrintable(QString("noise %1 s: %2 dB").arg(from).arg(drop)));
        }
        const double tone =
            fixtures::decibels(fixtures::rms(result, 2.2, 2.8), fixtures::rms(original, 2.2, 2.8));
        QVERIFY2(std::abs(tone) <= 3, qPrintable(QString("tone: %1 dB").arg(tone)));
        // Only the result is left: the sample and the profile are gone.
        QCOMPARE(m_added, QStringList({QFileInfo(result).fileName()}));
    }

    void noiseReductionWithoutASelectionSaysSo() {
        Document* d = openPattern();
        QVERIFY(d);
        const QString current = d->track().s_WAV_File_Path;
        const QStringList files = workFiles();
        setMarkers(d, 40, 40, 0);
        gui::whenModal<EffectDialog>("Window_Ask_Noise_Selected", [](EffectDialog* ask) { ask->OnOK(); });
        gui::whenModal<EffectDialog>("Window_Noise_Reduction", [](EffectDialog* level) { level->OnOK(); });
        const auto alert = gui::answerAlert();
        d->effectActions().OnPopupNoiseReduction();
        QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 20000);
        QCOMPARE(alert->informativeText, QString("Select a stretch that holds noise only, then try again."));
        expectUnchanged(d, current, files);
    }

    // When the runs come to nothing (here the track's file holds no audio
    // the tools can read; one that is gone altogether is said as such before
    // anything runs), the document stays as it was and says so.
    void noiseReductionThatMakesNothingSaysSo() {
        Document* d = openPattern();
        QVERIFY(d);
        const QString current = d->track().s_WAV_File_Path;
        QVERIFY(QFile::rename(current, current + ".away"));
        {
            QFile damaged(current);
            QVERIFY(damaged.open(QIODevice::WriteOnly));
            damaged.write("not audio at all");
        }
        setMarkers(d, 0, 30, 0);
        gui::whenModal<EffectDialog>("Window_Ask_Noise_Selected", [](EffectDialog* ask) { ask->OnOK(); });
        gui::whenModal<EffectDialog>("Window_Noise_Reduction", [](EffectDialog* level) { level->OnOK(); });
        const auto alert = gui::answerAlert();
        d->effectActions().OnPopupNoiseReduction();
        QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 20000);
        QCOMPARE(
            alert->informativeText,
            QString(
                "The noise could not be removed. Select a stretch that holds noise only, then try again."));
        QVERIFY(gui::waitIdle(*m_app));
        QVERIFY(QFile::remove(current) && QFile::rename(current + ".away", current));
        QCOMPARE(d->track().s_WAV_File_Path, current);
        QCOMPARE(d->history().array_WAV_Files(), QStringList({current}));
    }

    // Declining a dialog, in any of the ways there are, runs nothing.
    void backingOutRunsNothing_data() {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("how");
        for (const char* how : {"cancel", "close", "escape"}) {
            QTest::newRow(qPrintable(QString("echo ") + how)) << "OnPopupEchoEntireTrack" << how;
            QTest::newRow(qPrintable(QString("equalizer ") + how)) << "OnPopupEqualizerEntireTrack" << how;
            QTest::newRow(qPrintable(QString("band pass on the selection ") + how))
                << "OnPopupBandPassSelection" << how;
            QTest::newRow(qPrintable(QString("noise, asked ") + how)) << "OnPopupNoiseReduction" << how;
            QTest::newRow(qPrintable(QString("noise, level ") + how)) << "OnPopupNoiseReduction level" << how;
        }
    }
    void backingOutRunsNothing() {
        QFETCH(QString, action);
        QFETCH(QString, how);
        Document* d = openPattern();
        QVERIFY(d);
        setMarkers(d, 30, 70, 0);
        const QString current = d->track().s_WAV_File_Path;
        const QStringList files = workFiles();
        const int runs = m_app->runner().runs().size();
        const auto backOut = [how](QDialog* dialog) {
            if (how == "cancel")
                dialogs::clickButton(dialog, QDialogButtonBox::Cancel);
            else if (how == "close")
                dialog->close();
            else
                QTest::keyClick(dialog, Qt::Key_Escape);
        };
        int shown = 0;
        if (action == "OnPopupNoiseReduction level") {
            gui::whenModal<EffectDialog>("Window_Ask_Noise_Selected", [&shown](EffectDialog* ask) {
                ++shown;
                ask->OnOK();
            });
            gui::whenModal<EffectDialog>("Window_Noise_Reduction", [&shown, backOut](EffectDialog* level) {
                ++shown;
                backOut(level);
            });
            action = "OnPopupNoiseReduction";
        } else {
            gui::whenModal<EffectDialog>([&shown, backOut](EffectDialog* dialog) {
                ++shown;
                backOut(dialog);
            });
        }
        d->effectActions().fillEffectsMenu();
        auto* item = d->effectActions().popupMenuEffects->findChild<QAction*>(action);
        QVERIFY(item);
        item->trigger();
        QVERIFY(shown > 0);
        QTest::qWait(100);
        QCOMPARE(m_app->runner().runs().size(), runs);
        expectUnchanged(d, current, files);
    }

    // A value the dialog accepts and sox refuses, on each procedure.
    void anEffectThatClipsSaysSoInTheStatusBar() {
        // A tone at -1 dBFS amplified to 200 %: sox clips it, says how often,
        // and the result is adopted all the same.
        const QString loud = m_root.filePath("loud.wav");
        const std::optional<qint64> count = makeToneThatClips(loud);
        QVERIFY(count && *count > 1000);
        Document* d = gui::openInNewWindow(*m_app, loud);
        QVERIFY(d);
        d->effectActions().fillEffectsMenu();
        const EffectEntry& amplify = *findEffect("Amplify");
        auto* item = d->effectActions().popupMenuEffects->findChild<QAction*>(actionName(amplify, false));
        QVERIFY(item);
        const auto amplifyTo = [&](const QString& percent) {
            gui::whenModal<EffectDialog>("Window_Amplify", [percent](EffectDialog* dialog) {
                dialog->findChild<QLineEdit*>("textPercentage")->setText(percent);
                dialog->OnOK();
            });
            return edit(d, [&] { item->trigger(); });
        };
        QVERIFY(amplifyTo("200"));
        QCOMPARE(d->history().u_array_WAV_Files_Length(), 2u);
        QVERIFY(!d->labelNotice->isHidden());
        QCOMPARE(d->labelNotice->text(), clippingLine("Amplify", *count));
        // One that does not clip says nothing; the notice went with its version.
        QVERIFY(amplifyTo("50"));
        QCOMPARE(d->history().u_array_WAV_Files_Length(), 3u);
        QVERIFY(d->labelNotice->isHidden());
    }

    void soxRefusesOnTheWholeTrack() {
        Document* d = openPattern();
        QVERIFY(d);
        const QString current = d->track().s_WAV_File_Path;
        const QStringList files = workFiles();
        gui::whenModal<EffectDialog>("Window_Echo", [](EffectDialog* echo) {
            dialogs::typeInto(echo->findChild<QLineEdit*>("textDecayFactor"),
                              "-0.25"); // sox: decay must be positive
            echo->OnOK();
        });
        const auto alert = gui::answerAlert();
        d->effectActions().fillEffectsMenu();
        d->effectActions().popupMenuEffects->findChild<QAction*>("OnPopupEchoEntireTrack")->trigger();
        QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 20000);
        QCOMPARE(alert->text, QString("Error"));
        QCOMPARE(alert->informativeText,
                 QString("Parameters were not accepted. change parameters and try again."));
        expectUnchanged(d, current, files);
    }

    void soxRefusesOnTheSelection() {
        Document* d = openPattern();
        QVERIFY(d);
        setMarkers(d, 30, 70, 0);
        const QString current = d->track().s_WAV_File_Path;
        const QStringList files = workFiles();
        gui::whenModal<EffectDialog>("Window_Phaser", [](EffectDialog* phaser) {
            dialogs::typeInto(phaser->findChild<QLineEdit*>("textSpeed"), "5000"); // sox: at most 2 Hz
            phaser->OnOK();
        });
        const auto alert = gui::answerAlert();
        d->effectActions().fillEffectsMenu();
        d->effectActions().popupMenuEffects->findChild<QAction*>("OnPopupPhaserSelection")->trigger();
        QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 20000);
        QCOMPARE(alert->informativeText,
                 QString("Parameters were not accepted. change parameters and try again."));
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(d->track().s_WAV_File_Path, current);
        QCOMPARE(d->history().array_WAV_Files(), QStringList({current}));
        // The three cut parts stay behind; nothing was processed or joined.
        QStringList added = workFiles();
        for (const QString& name : files)
            added.removeAll(name);
        QCOMPARE(added.size(), 3);
        const QString stamp = added[0].left(19);
        QCOMPARE(added, QStringList({stamp + "After.wav", stamp + "Before.wav", stamp + "Selection.wav"}));
        const QString folder = m_app->session().s_Output_Folder + "/" + stamp;
        QVERIFY(std::abs(fixtures::wavInfo(folder + "Before.wav").seconds() - 1.5) < 0.03);
        QVERIFY(std::abs(fixtures::wavInfo(folder + "Selection.wav").seconds() - 2.0) < 0.03);
        QVERIFY(std::abs(fixtures::wavInfo(folder + "After.wav").seconds() - 1.5) < 0.03);
    }
};

QTEST_MAIN(tst_EffectRuns)
#include "tst_effectruns.moc"
