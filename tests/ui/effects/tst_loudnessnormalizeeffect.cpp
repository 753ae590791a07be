// Effects ▸ Loudness Normalize: its dialog's targets, the track or the
// selection brought to a loudness by ffmpeg's two passes, and what the editor
// says when ffmpeg had to compress or found nothing to measure.

#include "application/AppDelegate.h"
#include "core/loudness/LoudnessFixture.h"
#include "document/Document.h"
#include "effects/EffectDialogs.h"
#include "loudness/Loudness.h"
#include "support/Fixtures.h"
#include "support/Gui.h"
#include "text/Mnemonics.h"
#include "ui/edit/EditingFixture.h"

#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QSignalSpy>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>

using loudnessTest::measure;

class tst_LoudnessNormalizeEffect : public QObject {
    Q_OBJECT
    QTemporaryDir m_root;
    std::unique_ptr<AppDelegate> m_app;
    QString m_speech; // 12 s of speech-like sound, far quieter than any target

    // Triggers Loudness Normalize on the track or the selection; `act` drives
    // the dialog, which is then answered with OK.
    bool normalize(Document* d, bool selection, const std::function<void(EffectDialog*)>& act = {}) {
        d->effectActions().fillEffectsMenu();
        QAction* action = d->effectActions().popupMenuEffects->findChild<QAction*>(
            selection ? "OnPopupLoudnessNormalizeSelection" : "OnPopupLoudnessNormalizeEntireTrack");
        if (!action)
            return false;
        gui::whenModal<EffectDialog>("Window_Loudness_Normalize", [act](EffectDialog* dialog) {
            if (act)
                act(dialog);
            dialog->OnOK();
        });
        // A moment after the opening, as a user takes one: the result is a
        // file of its own, which the samples are compared with.
        editing::waitPastEveryStamp(m_app->session().s_Output_Folder);
        QSignalSpy adopted(d, &Document::adopted);
        action->trigger();
        return (adopted.size() > 0 || adopted.wait(60000)) && gui::waitIdle(*m_app);
    }

private slots:
    void initTestCase() {
        m_app = gui::startApplication(m_root.filePath("home"));
        QVERIFY(m_app && gui::waitIdle(*m_app));
        // Speech-like: pink noise in the voice band, pulsing like syllables,
        // recorded far too quietly (as an MP3 at 48 kHz, mono, which the
        // editor opens into its working format).
        const QString wav = m_root.filePath("speech-source.wav");
        QCOMPARE(fixtures::run("sox", {"-D",   "-n",      "-r",    "48000", "-c",        "1",        "-b",
                                       "16",   wav,       "synth", "12",    "pinknoise", "bandpass", "1000",
                                       "1.5q", "tremolo", "4",     "90",    "vol",       "0.05"}),
                 0);
        m_speech = m_root.filePath("speech.mp3");
        QCOMPARE(fixtures::run("ffmpeg", {"-v", "error", "-y", "-i", wav, m_speech}), 0);
    }
    void cleanup() { QVERIFY(gui::closeAllWindows(*m_app)); }

    void theDialogOpensOnThePodcastTargetAndItsPresetsMoveTheValue() {
        Document* d = gui::openInNewWindow(*m_app, m_speech);
        QVERIFY(d);
        d->effectActions().fillEffectsMenu();
        QAction* action =
            d->effectActions().popupMenuEffects->findChild<QAction*>("OnPopupLoudnessNormalizeEntireTrack");
        QVERIFY(action);
        QCOMPARE(withoutMnemonic(action->text()), QString("Entire Track…"));
        bool seen = false;
        gui::whenModal<EffectDialog>("Window_Loudness_Normalize", [&](EffectDialog* dialog) {
            seen = true;
            auto* presets = dialog->findChild<QComboBox*>("comboPreset");
            auto* target = dialog->findChild<QSlider*>("sliderTarget");
            auto* label = dialog->findChild<QLabel*>("labelTarget");
            QVERIFY(presets && target && label);
            QCOMPARE(presets->currentText(), QString("Podcast, stereo (-16 LUFS)"));
            QCOMPARE(label->text(), QString("-16.0"));
            QCOMPARE(dialog->findChild<QLabel*>("labelCeiling")->text(), QString("-1.0"));
            QCOMPARE(dialog->findChild<QLabel*>("labelRange")->text(), QString("11.0"));
            QCOMPARE(target->minimum(), -400);
            QCOMPARE(target->maximum(), -50);
            // A preset moves the value; a value of no preset is Custom.
            presets->setCurrentIndex(3);
            emit presets->activated(3);
            QCOMPARE(presets->currentText(), QString("Broadcast (EBU R128) (-23 LUFS)"));
            QCOMPARE(label->text(), QString("-23.0"));
            QTest::keyClick(target, Qt::Key_Right);
            QCOMPARE(label->text(), QString("-22.9"));
            QCOMPARE(presets->currentText(), QString("Custom"));
            target->setValue(-140);
            QCOMPARE(presets->currentText(), QString("Streaming (-14 LUFS)"));
            QCOMPARE(dialog->currentValues().real("f_Target_LUFS"), -14.0f);
            dialog->OnCancel();
        });
        action->trigger();
        QVERIFY(seen);
        QCOMPARE(d->history().u_array_WAV_Files_Length(), 1u);
    }

    void speechIsBroughtToSixteenLufsUnderTheCeiling() {
        Document* d = gui::openInNewWindow(*m_app, m_speech);
        QVERIFY(d);
        const QString original = d->track().s_WAV_File_Path;
        const double before = fixtures::wavInfo(original).seconds();
        QVERIFY(measure(original)->integrated < -30);
        QVERIFY(normalize(d, false));
        QCOMPARE(d->history().u_array_WAV_Files_Length(), 2u);

        const QString result = d->track().s_WAV_File_Path;
        QVERIFY(result != original);
        const fixtures::WavInfo info = fixtures::wavInfo(result);
        QVERIFY(info.isWorkingWav()); // 44.1 kHz, stereo, 16-bit
        QVERIFY2(std::abs(info.seconds() - before) <= before / 44100 + 1.0 / 44100,
                 qPrintable(QString("%1 s, was %2 s").arg(info.seconds()).arg(before)));
        const std::optional<LoudnessReading> r = measure(result);
        QVERIFY(r);
        QVERIFY2(std::abs(r->integrated + 16) <= 0.5, qPrintable(QString::number(r->integrated)));
        QVERIFY2(r->truePeak <= -0.9, qPrintable(QString::number(r->truePeak)));
        QCOMPARE(d->history().versions().last().label, QString("Loudness Normalize"));
        QVERIFY(d->history().versions().last().replay.step.has_value());
        // Undone like any effect.
        d->Operation_Undo();
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(d->track().s_WAV_File_Path, original);
    }

    void aSelectionIsNormalizedAndTheRestKeepsEverySample() {
        Document* d = gui::openInNewWindow(*m_app, m_speech);
        QVERIFY(d);
        const QString original = d->track().s_WAV_File_Path;
        d->track().f_Selection_Start = 25; // 3–9 s of the 12 (the markers stand in percent)
        d->track().f_Selection_End = 75;
        QVERIFY(normalize(d, true, [](EffectDialog* dialog) {
            dialog->findChild<QSlider*>("sliderTarget")->setValue(-230);
        }));
        const QString result = d->track().s_WAV_File_Path;
        QCOMPARE(d->history().versions().last().label, QString("Loudness Normalize on selection"));
        const std::vector<short> was = fixtures::samples(original), is = fixtures::samples(result);
        QVERIFY(std::abs(double(is.size()) - double(was.size())) <= 2 * 12 + 2);
        const std::size_t head = 3 * 44100 * 2, tail = 3 * 44100 * 2;
        QVERIFY(std::equal(was.begin(), was.begin() + std::ptrdiff_t(head), is.begin()));
        QVERIFY(std::equal(was.end() - std::ptrdiff_t(tail), was.end(), is.end() - std::ptrdiff_t(tail)));
        // The selection, measured alone, is at its target.
        const QString selection = m_root.filePath("selection.wav");
        QCOMPARE(fixtures::run("sox", {result, selection, "trim", "3", "6"}), 0);
        const std::optional<LoudnessReading> r = measure(selection);
        QVERIFY(r);
        QVERIFY2(std::abs(r->integrated + 23) <= 0.5, qPrintable(QString::number(r->integrated)));
    }

    // A quiet tone with one loud click cannot take one gain under the
    // ceiling: ffmpeg compresses, and the line under the track says so.
    void aCompressedResultIsSaid() {
        const QString tone = m_root.filePath("tone.wav"), click = m_root.filePath("click.wav"),
                      clicked = m_root.filePath("clicked.wav");
        QCOMPARE(fixtures::run("sox", {"-D", "-n", "-r", "44100", "-c", "2", "-b", "16", tone, "synth", "6",
                                       "sine", "500", "vol", "-40dB"}),
                 0);
        QCOMPARE(fixtures::run("sox", {"-D", "-n", "-r", "44100", "-c", "2", "-b", "16", click, "synth",
                                       "0.01", "square", "100", "vol", "0.95", "pad", "3", "2.99"}),
                 0);
        QCOMPARE(fixtures::run("sox", {"-D", "-m", tone, click, clicked}), 0);
        Document* d = gui::openInNewWindow(*m_app, clicked);
        QVERIFY(d);
        QVERIFY(normalize(d, false));
        QVERIFY(d->labelNotice->isVisible());
        QVERIFY2(d->labelNotice->text().startsWith("Loudness Normalize compressed the track"),
                 qPrintable(d->labelNotice->text()));
    }

    void silenceIsRefusedAndTheTrackStays() {
        const QString silence = m_root.filePath("silence.wav");
        fixtures::makeSilence(silence, 4);
        Document* d = gui::openInNewWindow(*m_app, silence);
        QVERIFY(d);
        const QString current = d->track().s_WAV_File_Path;
        const QStringList files = QDir(m_app->session().s_Output_Folder).entryList(QDir::Files);
        const auto alert = gui::answerAlert();
        d->effectActions().fillEffectsMenu();
        gui::whenModal<EffectDialog>("Window_Loudness_Normalize",
                                     [](EffectDialog* dialog) { dialog->OnOK(); });
        d->effectActions()
            .popupMenuEffects->findChild<QAction*>("OnPopupLoudnessNormalizeEntireTrack")
            ->trigger();
        QVERIFY(QTest::qWaitFor([&] { return alert->shown; }, 30000));
        QVERIFY(gui::waitIdle(*m_app));
        QVERIFY2((alert->text + alert->informativeText).contains("could not measure the audio: it is silent"),
                 qPrintable(alert->text + alert->informativeText));
        QCOMPARE(d->track().s_WAV_File_Path, current);
        QCOMPARE(d->history().u_array_WAV_Files_Length(), 1u);
        QCOMPARE(QDir(m_app->session().s_Output_Folder).entryList(QDir::Files), files);
    }
};

QTEST_MAIN(tst_LoudnessNormalizeEffect)
#include "tst_loudnessnormalizeeffect.moc"
