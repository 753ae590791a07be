// Preview in the effect dialogs, for real: sox and ffmpeg make the preview
// through the session's runner, the private audio server plays it, and what
// it plays is compared sample for sample with the effect applied through OK.

#include "ui/edit/EditingFixture.h"

#include "effects/Clipping.h"
#include "effects/EffectDialogs.h"
#include "effects/EffectPreview.h"
#include "plans/PlanRunner.h"
#include "support/DialogDriving.h"
#include "support/Listening.h"
#include "transport/SoundPlayer.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QLabel>
#include <QMenu>
#include <QProcess>
#include <QPushButton>
#include <QSlider>

namespace {
EffectPreview* previewOf(EffectDialog* dialog) {
    return dialog->findChild<EffectPreview*>();
}

// Presses Preview as a user does and waits until the preview begins to play.
bool pressAndWait(EffectDialog* dialog, int timeoutMs = 15000) {
    QSignalSpy started(previewOf(dialog), &EffectPreview::started);
    QTest::mouseClick(dialog->buttonPreview, Qt::LeftButton);
    return started.wait(timeoutMs);
}

// The sounds the audio server plays now, one per stream.
int playingStreams() {
    QProcess pactl;
    pactl.start("pactl", {"list", "short", "sink-inputs"});
    pactl.waitForFinished(5000);
    return int(QString::fromUtf8(pactl.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts).size());
}

// Whether `part` is, sample for sample, `whole` from `fromSeconds` on.
QString sameSamples(const QString& part, const QString& whole, double fromSeconds) {
    const std::vector<short> heard = fixtures::samples(part), made = fixtures::samples(whole);
    const std::size_t from = std::size_t(std::llround(fromSeconds * 44100)) * 2;
    if (heard.size() < 44100 * 2)
        return QString("the preview holds %1 samples").arg(heard.size());
    if (from + heard.size() > made.size())
        return QString("the preview runs past the applied version's end");
    for (std::size_t i = 0; i < heard.size(); ++i)
        if (heard[i] != made[from + i])
            return QString("sample %1 is %2, the applied version's %3")
                .arg(i)
                .arg(heard[i])
                .arg(made[from + i]);
    return {};
}
} // namespace

class tst_EffectPreview : public EditingFixture {
    Q_OBJECT

    // Opens the effects menu item `action` and lets `act` drive its dialog,
    // which is cancelled afterwards unless `act` ended it.
    void withDialog(Document* d, const QString& action, const std::function<void(EffectDialog*)>& act) {
        d->effectActions().fillEffectsMenu();
        auto* item = d->effectActions().popupMenuEffects->findChild<QAction*>(action);
        QVERIFY2(item, qPrintable(action));
        bool shown = false;
        gui::whenModal<EffectDialog>([&](EffectDialog* dialog) {
            shown = true;
            act(dialog);
            if (dialog->isVisible())
                dialog->OnCancel();
        });
        item->trigger();
        QVERIFY(shown);
    }

    // Every preview file there is: in the work folder (hidden, as they are
    // named) and in the temporary folder.
    QStringList previewFilesLeft() const {
        QStringList found;
        for (const QString& folder : {m_app->session().s_Output_Folder, QDir::tempPath()}) {
            QDirIterator it(folder, {".preview-*"}, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
            while (it.hasNext())
                found << it.next();
        }
        found.removeDuplicates(); // the work folder may be in the temporary one
        return found;
    }

    // Previews `action` with `set` done to its dialog, keeps the preview as
    // `copy`, applies it through OK and compares: the preview is the applied
    // version from `fromSeconds` on, and the preview was heard within
    // `heardWithinMs` (a second, for an effect of one sox run).
    void previewEqualsApplied(Document* d, const QString& action,
                              const std::function<void(EffectDialog*)>& set, double fromSeconds,
                              qint64 heardWithinMs = 1000) {
        const QString copy = m_root.filePath(action + "-preview.wav");
        const int versions = int(d->history().u_array_WAV_Files_Length());
        qint64 heardAfterMs = -1;
        // The sink's monitor is heard from before the dialog opens: the capture's
        // own start is not the editor's delay.
        listening::Capture capture;
        QVERIFY(QTest::qWaitFor([&] { return !capture.samples().empty(); }, 5000));
        QVERIFY(edit(d, [&] {
            withDialog(d, action, [&](EffectDialog* dialog) {
                set(dialog);
                // Keys go to the active window, as the dialog is for its user.
                dialog->activateWindow();
                QVERIFY(QTest::qWaitForWindowActive(dialog));
                QSignalSpy started(previewOf(dialog), &EffectPreview::started);
                QElapsedTimer clock;
                clock.start();
                std::size_t before = capture.samples().size();       // what was heard before the press
                QTest::keyClick(dialog, Qt::Key_P, Qt::AltModifier); // Alt+P is the button's key
                while (heardAfterMs < 0 && clock.elapsed() < 5000) {
                    QTest::qWait(10);
                    const std::vector<short>& heard = capture.samples();
                    if (std::any_of(heard.begin() + std::ptrdiff_t(before), heard.end(),
                                    [](short s) { return std::abs(s) > 3277; }))
                        heardAfterMs = clock.elapsed();
                    before = heard.size();
                }
                QVERIFY2(heardAfterMs >= 0,
                         qPrintable(QString("nothing heard in 5 s; the preview %1")
                                        .arg(started.isEmpty() ? "never began" : "began")));
                QVERIFY(previewOf(dialog)->isPlaying());
                QVERIFY(QFile::copy(previewOf(dialog)->playingFile(), copy));
                // Nothing of the window waits on a preview that plays.
                QVERIFY(!m_app->session().runner().isBusy());
                dialog->OnOK();
            });
        }));
        QVERIFY2(heardAfterMs >= 0 && heardAfterMs < heardWithinMs,
                 qPrintable(QString::number(heardAfterMs)));
        QCOMPARE(int(d->history().u_array_WAV_Files_Length()), versions + 1);
        const QString problem = sameSamples(copy, d->track().s_WAV_File_Path, fromSeconds);
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
        QCOMPARE(previewFilesLeft(), QStringList());
    }

private slots:
    void initTestCase() { startWithPattern(); }
    void cleanup() { closeAll(); }

    void echoOnASelectionIsHeardAndIsTheAppliedEcho() {
        Document* d = openPattern();
        QVERIFY(d);
        setMarkers(d, 30, 60, 0); // 3–6 s, with 2–3 s before it
        previewEqualsApplied(
            d, "OnPopupEchoSelection",
            [](EffectDialog* echo) { dialogs::typeInto(echo->findChild<QLineEdit*>("textDelayMS"), "60"); },
            2.0);
    }

    void theEqualizerWithACutBandIsTheAppliedOne() {
        Document* d = openPattern();
        QVERIFY(d);
        setMarkers(d, 0, 0, 0);
        previewEqualsApplied(
            d, "OnPopupEqualizerEntireTrack",
            [](EffectDialog* equalizer) { equalizer->findChild<QSlider*>("sliderdB10")->setValue(-20); }, 0);
    }

    // Loudness normalisation measures the whole selection, as applying it
    // does, and applies that gain to the stretch heard. Two ffmpeg runs, each
    // resampling to 192 kHz, come before a sound (a third of a second on an
    // idle machine): it is heard within two seconds.
    void loudnessNormalizeOnASelectionIsTheAppliedOne() {
        Document* d = openPattern();
        QVERIFY(d);
        setMarkers(d, 30, 60, 0); // 3–6 s, with 2–3 s before it
        previewEqualsApplied(
            d, "OnPopupLoudnessNormalizeSelection",
            [](EffectDialog* loudness) { loudness->findChild<QSlider*>("sliderTarget")->setValue(-230); },
            2.0, 2000);
    }

    void tempoOnTheWholeTrackIsTheAppliedTempo() {
        Document* d = openPattern();
        QVERIFY(d);
        setMarkers(d, 0, 0, 0);
        previewEqualsApplied(
            d, "OnPopupTempoEntireTrack", [](EffectDialog*) {}, 0);
    }

    void aRefusedValueShowsTheAlertAndRunsNothing() {
        Document* d = openPattern();
        QVERIFY(d);
        setMarkers(d, 30, 60, 0);
        const qsizetype runs = m_app->session().runner().runs().size();
        withDialog(d, "OnPopupEchoSelection", [&](EffectDialog* echo) {
            dialogs::typeInto(echo->findChild<QLineEdit*>("textDecayFactor"), "0");
            const auto alert = gui::answerAlert();
            QTest::mouseClick(echo->buttonPreview, Qt::LeftButton);
            QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 5000);
            QCOMPARE(alert->informativeText, QString("Decay factor invalid."));
            QTest::qWait(300);
            QVERIFY(!previewOf(echo)->isMaking() && !previewOf(echo)->isPlaying());
            QVERIFY(echo->isVisible()); // the dialog stays for another try
        });
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(m_app->session().runner().runs().size(), runs);
        QCOMPARE(previewFilesLeft(), QStringList());
    }

    void aValueSoxRefusesIsSaidInTheDialogInSoxsWords() {
        Document* d = openPattern();
        QVERIFY(d);
        setMarkers(d, 30, 60, 0);
        withDialog(d, "OnPopupPhaserSelection", [&](EffectDialog* phaser) {
            dialogs::typeInto(phaser->findChild<QLineEdit*>("textSpeed"), "5000");
            const auto alert = gui::answerAlert();
            QTest::mouseClick(phaser->buttonPreview, Qt::LeftButton);
            QTRY_VERIFY_WITH_TIMEOUT(!phaser->labelPreview->isHidden(), 15000);
            QCOMPARE(phaser->labelPreview->text(),
                     QString("sox refused the values: parameter `mod_speed' must be between 0.1 and 2"));
            alert->stop = true;
            QVERIFY(!alert->shown);
            QVERIFY(phaser->isVisible());
            QVERIFY(!previewOf(phaser)->isPlaying());
            QVERIFY(gui::waitIdle(*m_app));
            QCOMPARE(previewFilesLeft(), QStringList());
        });
        // An echo delay of 0 passes the dialog's checks, which refuse only a
        // negative one; sox refuses it.
        withDialog(d, "OnPopupEchoSelection", [&](EffectDialog* echo) {
            dialogs::typeInto(echo->findChild<QLineEdit*>("textDelayMS"), "0");
            QTest::mouseClick(echo->buttonPreview, Qt::LeftButton);
            QTRY_VERIFY_WITH_TIMEOUT(!echo->labelPreview->isHidden(), 15000);
            QCOMPARE(echo->labelPreview->text(),
                     QString("sox refused the values: echo: delay must be positive!"));
            // A value it takes clears the line.
            dialogs::typeInto(echo->findChild<QLineEdit*>("textDelayMS"), "100");
            QVERIFY(pressAndWait(echo));
            QVERIFY(echo->labelPreview->isHidden());
        });
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(previewFilesLeft(), QStringList());
    }

    void previewThenCancelLeavesNothing() {
        Document* d = openPattern();
        QVERIFY(d);
        setMarkers(d, 30, 60, 0);
        const QStringList history = d->history().array_WAV_Files();
        const QString clipboard = m_app->session().s_Copied_WAV_File;
        const QStringList files = workFiles();
        const qsizetype runs = m_app->session().runner().runs().size();
        withDialog(d, "OnPopupEchoSelection", [&](EffectDialog* echo) {
            QVERIFY(pressAndWait(echo));
            QCOMPARE(previewFilesLeft(), QStringList({previewOf(echo)->playingFile()}));
            dialogs::clickButton(echo, QDialogButtonBox::Cancel);
        });
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(d->history().array_WAV_Files(), history);
        QCOMPARE(d->track().s_WAV_File_Path, history.last());
        QCOMPARE(m_app->session().s_Copied_WAV_File, clipboard);
        QCOMPARE(workFiles(), files);
        QCOMPARE(previewFilesLeft(), QStringList());
        QCOMPARE(playingStreams(), 0);
        // The runs are the session's, as Help ▸ Tool Runs lists them: the two
        // cuts, the echo and the join.
        const QList<ToolRun> made = m_app->session().runner().runs().mid(runs);
        QCOMPARE(made.size(), 4);
        QCOMPARE(made[2].arguments.mid(2),
                 findEffect("Echo")->arguments(startValues(*findDialog("Window_Echo"))).effect);
        QCOMPARE(made[2].arguments[2], QString("echo"));
        QVERIFY(made[2].arguments[1].endsWith("/.preview-" + QString::number(d->u_ID) + "-processed.wav"));
    }

    void aNewValueIsHeardInTheNextPreview() {
        Document* d = openPattern();
        QVERIFY(d);
        setMarkers(d, 30, 60, 0);
        const QString first = m_root.filePath("gain-first.wav"), second = m_root.filePath("gain-second.wav");
        QVERIFY(edit(d, [&] {
            withDialog(d, "OnPopupEchoSelection", [&](EffectDialog* echo) {
                QVERIFY(pressAndWait(echo));
                QCOMPARE(echo->buttonPreview->text(), QString("Stop &Preview"));
                QVERIFY(QFile::copy(previewOf(echo)->playingFile(), first));
                QTest::mouseClick(echo->buttonPreview, Qt::LeftButton); // stops it
                QVERIFY(!previewOf(echo)->isPlaying());
                QCOMPARE(echo->buttonPreview->text(), QString("&Preview"));
                echo->findChild<QSlider*>("sliderGainOut")->setValue(40);
                QVERIFY(pressAndWait(echo));
                QVERIFY(QFile::copy(previewOf(echo)->playingFile(), second));
                echo->OnOK();
            });
        }));
        QVERIFY(fixtures::samples(first) != fixtures::samples(second));
        const QString problem = sameSamples(second, d->track().s_WAV_File_Path, 2.0);
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
        QCOMPARE(previewFilesLeft(), QStringList());
    }

    void aSliderMovedWhilePlayingIsHeardFromTheSamePoint() {
        Document* d = openPattern();
        QVERIFY(d);
        setMarkers(d, 0, 100, 0); // ten seconds: time to move a slider while it plays
        withDialog(d, "OnPopupEchoSelection", [&](EffectDialog* echo) {
            EffectPreview* preview = previewOf(echo);
            QVERIFY(pressAndWait(echo));
            const QString before = preview->playingFile();
            QTest::qWait(1500);
            QSignalSpy started(preview, &EffectPreview::started);
            QSlider* gain = echo->findChild<QSlider*>("sliderGainOut");
            gain->setFocus();
            QElapsedTimer clock;
            clock.start();
            for (int i = 0; i < 5; ++i) { // a few key presses in quick succession
                QTest::keyClick(gain, Qt::Key_Left);
                QTest::qWait(30);
            }
            double last = preview->player()->currentTime(); // the old preview's, until the new one starts
            SoundPlayer* old = preview->player();
            while (started.isEmpty() && clock.elapsed() < 5000) {
                last = old->currentTime();
                QTest::qWait(5);
            }
            QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
            QCOMPARE(started.size(), 1);
            QVERIFY(preview->playingFile() != before);
            QVERIFY(QFileInfo::exists(preview->playingFile()));
            QVERIFY(!QFileInfo::exists(before));
            QVERIFY(last > 1.0);
            QVERIFY(std::abs(started.first().first().toDouble() - last) < 0.5);
            QTRY_VERIFY_WITH_TIMEOUT(preview->player()->isPlaying(), 5000);
            QTest::qWait(100);
            const double now = preview->player()->currentTime();
            QVERIFY2(std::abs(now - last) < 0.5, qPrintable(QString("%1 then %2").arg(last).arg(now)));
            QCOMPARE(playingStreams(), 1);
        });
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(previewFilesLeft(), QStringList());
    }

    void clippingIsSaidInTheDialog() {
        const QString loud = m_root.filePath("loud.wav");
        const std::optional<qint64> count = makeToneThatClips(loud);
        QVERIFY(count && *count > 1000);
        Document* d = gui::openInNewWindow(*m_app, loud);
        QVERIFY(d);
        withDialog(d, "OnPopupAmplifyEntireTrack", [&](EffectDialog* amplify) {
            dialogs::typeInto(amplify->findChild<QLineEdit*>("textPercentage"), "200");
            QVERIFY(pressAndWait(amplify));
            QVERIFY(!amplify->labelPreview->isHidden());
            QCOMPARE(amplify->labelPreview->text(), clippingLine("Amplify", *count));
            // Half as loud clips nothing: the line goes.
            QTest::mouseClick(amplify->buttonPreview, Qt::LeftButton);
            dialogs::typeInto(amplify->findChild<QLineEdit*>("textPercentage"), "50");
            QVERIFY(pressAndWait(amplify));
            QVERIFY(amplify->labelPreview->isHidden());
        });
    }

    void fivePressesLeaveOneSound() {
        Document* d = openPattern();
        QVERIFY(d);
        setMarkers(d, 30, 60, 0);
        withDialog(d, "OnPopupEchoSelection", [&](EffectDialog* echo) {
            EffectPreview* preview = previewOf(echo);
            QSignalSpy started(preview, &EffectPreview::started);
            for (int i = 0; i < 5; ++i) {
                QTest::mouseClick(echo->buttonPreview, Qt::LeftButton);
                QTest::qWait(20);
            }
            QVERIFY(started.wait(15000));
            QVERIFY(gui::waitIdle(*m_app));
            QTest::qWait(300);
            QCOMPARE(started.size(), 1);
            QVERIFY(preview->isPlaying());
            QCOMPARE(playingStreams(), 1);
            QVERIFY2(!listening::hear(300).empty(), "nothing was heard");
            QCOMPARE(previewFilesLeft(), QStringList({preview->playingFile()}));
        });
        QCOMPARE(previewFilesLeft(), QStringList());
    }

    void aPreviewThatEndsLetsTheButtonStartAgain() {
        Document* d = openPattern();
        QVERIFY(d);
        setMarkers(d, 30, 35, 0); // half a second, and the second before it
        withDialog(d, "OnPopupTremoloSelection", [&](EffectDialog* tremolo) {
            EffectPreview* preview = previewOf(tremolo);
            QVERIFY(pressAndWait(tremolo));
            QCOMPARE(tremolo->buttonPreview->text(), QString("Stop &Preview"));
            QTRY_VERIFY_WITH_TIMEOUT(!preview->isPlaying(), 5000);
            QCOMPARE(tremolo->buttonPreview->text(), QString("&Preview"));
            QVERIFY(pressAndWait(tremolo)); // heard again from its start
            QVERIFY(preview->player()->currentTime() < 0.5);
        });
        QCOMPARE(previewFilesLeft(), QStringList());
    }

    void everyEffectDialogHasPreview() {
        Document* d = openPattern();
        QVERIFY(d);
        setMarkers(d, 30, 60, 0);
        int dialogs = 0;
        for (const EffectEntry& entry : effectCatalogue()) {
            if (entry.dialog.isEmpty())
                continue;
            withDialog(d, actionName(entry, false), [&](EffectDialog* dialog) {
                QVERIFY2(dialog->buttonPreview && dialog->buttonPreview->isVisible(), qPrintable(entry.key));
                QCOMPARE(dialog->buttonPreview->text(), QString("&Preview"));
                QVERIFY(previewOf(dialog));
                ++dialogs;
            });
        }
        QCOMPARE(dialogs, int(std::count_if(effectCatalogue().begin(), effectCatalogue().end(),
                                            [](const EffectEntry& e) { return !e.dialog.isEmpty(); })));
        // The noise reduction: its question has nothing to hear, its level has.
        d->effectActions().fillEffectsMenu();
        gui::whenModal<EffectDialog>("Window_Ask_Noise_Selected", [](EffectDialog* question) {
            QVERIFY(question->buttonPreview->isHidden());
            question->OnOK();
            gui::whenModal<EffectDialog>("Window_Noise_Reduction", [](EffectDialog* level) {
                QVERIFY(level->buttonPreview->isVisible());
                QVERIFY(pressAndWait(level));
                QVERIFY(level->labelPreview->isHidden());
                level->OnCancel();
            });
        });
        d->effectActions().OnPopupNoiseReduction();
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(previewFilesLeft(), QStringList());
        QCOMPARE(d->history().u_array_WAV_Files_Length(), 1u);
    }
};

QTEST_MAIN(tst_EffectPreview)
#include "tst_effectpreview.moc"
