#include "EditingFixture.h"

#include <QAction>
#include <QApplication>
#include <QCryptographicHash>
#include <QMenu>
#include <QScopeGuard>

#include "effects/EffectPlans.h"
#include "names/Names.h"

namespace {
QByteArray digest(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly)
               ? QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256)
               : QByteArray();
}
} // namespace

// The edge cases of the edits, their dialogs from the document, undo across
// many edits, two windows, and input that is not as it should be.
class tst_EditingCases : public EditingFixture {
    Q_OBJECT
private slots:
    // Runs an edit whose result is not audio: the alert names the operation,
    // and the track, its history and the work folder stay as they were.
    void expectRefused(Document* d, const std::function<void()>& action, const QString& operation) {
        const QString track = d->track().s_WAV_File_Path;
        const quint64 versions = d->history().u_array_WAV_Files_Length();
        const QStringList files = workFiles();
        const auto alert = gui::answerAlert();
        action();
        QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 20000);
        QVERIFY(gui::waitIdle(*m_app));
        QVERIFY2(alert->informativeText.startsWith(operation + " produced no usable audio."),
                 qPrintable(alert->informativeText));
        QCOMPARE(d->track().s_WAV_File_Path, track);
        QCOMPARE(d->history().u_array_WAV_Files_Length(), versions);
        QCOMPARE(workFiles(), files);
    }

    void initTestCase() { startWithPattern(); }
    void cleanup() { closeAll(); }

    void twoCopiesInOneSecondShareTheNameAndTheSecondWins() {
        Document* d = openPattern();
        QVERIFY(d);
        for (int attempt = 0; attempt < 3; ++attempt) {
            waitPastEveryStamp(m_app->session().s_Output_Folder); // start right after a second begins
            setMarkers(d, 0, 30, 0);                              // 0–3 s: tone
            QSignalSpy copied(d, &Document::copied);
            d->editingActions().Operation_Copy();
            QVERIFY(copied.wait(20000));
            const QString first = m_app->session().s_Copied_WAV_File;
            setMarkers(d, 40, 60, 0); // 4–6 s: silence
            d->editingActions().Operation_Copy();
            QVERIFY(copied.wait(20000));
            if (m_app->session().s_Copied_WAV_File != first)
                continue; // the second copy fell into the next second: try again
            const fixtures::WavInfo clip = fixtures::wavInfo(m_app->session().s_Copied_WAV_File);
            QVERIFY(std::abs(clip.seconds() - 2.0) < 0.03);
            QVERIFY(fixtures::rms(m_app->session().s_Copied_WAV_File, 0.1, 1.9) < 0.001);
            return;
        }
        QFAIL("two copies never landed in one second");
    }

    // Runs `first` then `second` right after a second begins, until both land
    // in one second (their results then share a name); false if they never do.
    // Runs two edits named by one second, whatever the machine's load: the
    // naming clock stands still at a second no file is named by yet.
    bool inOneSecond(Document* d, const std::function<void()>& first, const std::function<void()>& second) {
        const auto alert = gui::answerAlert(); // an edit that fails says so, and the test fails
        const auto stopAnswering = qScopeGuard([&] { alert->stop = true; });
        waitPastEveryStamp(m_app->session().s_Output_Folder);
        const QDateTime now = QDateTime::currentDateTime();
        const QDateTime stamp = now.addMSecs(-now.time().msec());
        setNamingClock([stamp] { return stamp; });
        const auto realClock = qScopeGuard([] { setNamingClock({}); });
        if (!edit(d, first))
            return false;
        const QString made = d->track().s_WAV_File_Path;
        if (!edit(d, second))
            return false;
        return QFileInfo(d->track().s_WAV_File_Path).fileName().left(19) ==
               QFileInfo(made).fileName().left(19);
    }

    QStringList hiddenFiles() const {
        return QDir(m_app->session().s_Output_Folder)
            .entryList({".*-replaced.wav"}, QDir::Files | QDir::Hidden);
    }

    void twoReversesInOneSecondRewriteOneFileAndUndoFindsTheNewerAudio() {
        Document* d = openPattern();
        QVERIFY(d);
        const QString original = d->track().s_WAV_File_Path;
        QVERIFY(inOneSecond(
            d, [&] { d->effectActions().OnPopupReverseEntireTrack(); },
            [&] { d->effectActions().OnPopupReverseEntireTrack(); }));
        // The second reverse read the first one's file before it rewrote it.
        const QStringList history = d->history().array_WAV_Files();
        QCOMPARE(history.size(), 3);
        QCOMPARE(history[1], history[2]);
        QCOMPARE(fixtures::samples(d->track().s_WAV_File_Path), fixtures::samples(original));
        QVERIFY2(hiddenFiles().isEmpty(), qPrintable(hiddenFiles().join(", ")));
        d->Operation_Undo();
        QCOMPARE(d->track().s_WAV_File_Path, history[1]);
        QCOMPARE(fixtures::samples(d->track().s_WAV_File_Path), fixtures::samples(original));
    }

    void aCutAndAPasteInOneSecondPasteTheRemainderIntoItself() {
        Document* d = openPattern();
        QVERIFY(d);
        setMarkers(d, 20, 50, 40);
        // The cut leaves the 7-second remainder as the track and on the
        // clipboard under the same name; the paste rewrites that name.
        QVERIFY(inOneSecond(
            d, [&] { d->editingActions().Operation_Cut(); },
            [&] { d->editingActions().OnPopupMenuPasteAtCurrentPosition(); }));
        QCOMPARE(m_app->session().s_Copied_WAV_File, d->track().s_WAV_File_Path);
        const fixtures::WavInfo info = fixtures::wavInfo(d->track().s_WAV_File_Path);
        QVERIFY(info.ok);
        QVERIFY2(std::abs(info.seconds() - 14.0) < 0.05, qPrintable(QString::number(info.seconds())));
        QVERIFY(hiddenFiles().isEmpty());
    }

    // After a cut the clipboard is the current version's file, so a mix at
    // the start mixes the track with itself: sox's "-m" halves each input,
    // so the result is the track again (within sox's dither), sample for
    // sample what sox makes of the file mixed with itself.
    void aMixAtStartRightAfterACutMixesTheTrackWithItself() {
        Document* d = openPattern();
        QVERIFY(d);
        setMarkers(d, 20, 50, 0);
        QVERIFY(edit(d, [&] { d->editingActions().Operation_Cut(); }));
        const QString remainder = d->track().s_WAV_File_Path;
        QCOMPARE(m_app->session().s_Copied_WAV_File, remainder);
        const QString kept = m_root.filePath("remainder.wav");
        QFile::remove(kept);
        QVERIFY(QFile::copy(remainder, kept));
        waitPastEveryStamp(m_app->session().s_Output_Folder);

        const qsizetype runs = m_app->runner().runs().size();
        QVERIFY(edit(d, [&] { d->editingActions().OnPopupPasteMixingAtStart(); }));
        const QString mixed = d->track().s_WAV_File_Path;
        QVERIFY(mixed != remainder);
        const QList<ToolRun> made = m_app->runner().runs().mid(runs);
        QVERIFY(std::any_of(made.cbegin(), made.cend(), [&](const ToolRun& run) {
            return run.arguments == QStringList({"-m", remainder, remainder, mixed});
        }));

        const QString bySox = m_root.filePath("by-sox.wav");
        QFile::remove(bySox);
        QCOMPARE(fixtures::run("sox", {"-m", kept, kept, bySox}), 0);
        const std::vector<short> ours = frames(mixed), theirs = frames(bySox), track = frames(kept);
        QCOMPARE(ours.size(), theirs.size());
        QCOMPARE(ours.size(), track.size()); // 7 s, as the track
        int furthest = 0, fromTrack = 0;
        for (size_t i = 0; i < ours.size(); ++i) {
            furthest = std::max(furthest, std::abs(ours[i] - theirs[i]));
            fromTrack = std::max(fromTrack, std::abs(ours[i] - track[i]));
        }
        // Two runs of sox differ by its dither alone: at most 2 in 32768.
        QVERIFY2(furthest <= 2, qPrintable(QString::number(furthest)));
        QVERIFY2(fromTrack <= 1, qPrintable(QString::number(fromTrack)));
        QVERIFY(fixtures::rms(mixed, 0.1, 1.9) > 0.3);           // tone, as loud as it was
        QCOMPARE(m_app->session().s_Copied_WAV_File, remainder); // the clipboard is unchanged
    }

    // A paste at the end is named like a before-part ("…Before.wav"): a delete
    // in the same second must not write its own before-part over the track it
    // is cutting.
    void aPasteAtTheEndAndADeleteInOneSecondCutTheTrackTheyRead() {
        Document* d = openPattern();
        QVERIFY(d);
        QVERIFY(copyClip(d)); // 3 s: two of tone, one of silence
        const auto alert = gui::answerAlert();
        const auto stopAnswering = qScopeGuard([&] { alert->stop = true; });
        for (int attempt = 0; attempt < 3; ++attempt) {
            waitPastEveryStamp(m_app->session().s_Output_Folder);
            QVERIFY(edit(d, [&] { d->editingActions().OnPopupMenuPasteAtEnd(); }));
            const QString pasted = QFileInfo(d->track().s_WAV_File_Path).fileName();
            QVERIFY2(pasted.endsWith("Before.wav"), qPrintable(pasted));
            setMarkers(d, 100.0f * 10 / 13, 100, 0); // the pasted three seconds
            const QString second = QDateTime::currentDateTime().toString("yyyy-MM-dd-HH-mm-ss");
            QVERIFY(edit(d, [&] { d->editingActions().Operation_Delete(); }));
            QVERIFY2(!alert->shown, qPrintable(alert->informativeText));
            const fixtures::WavInfo info = fixtures::wavInfo(d->track().s_WAV_File_Path);
            QVERIFY2(std::abs(info.seconds() - 10.0) < 0.05, qPrintable(QString::number(info.seconds())));
            QVERIFY(fixtures::rms(d->track().s_WAV_File_Path, 6.1, 9.9) > 0.3); // the pattern's last tone
            QVERIFY(
                QFile::exists(d->history().array_WAV_Files()[d->history().u_array_WAV_Files_Position() - 1]));
            if (pasted.left(19) == second)
                return; // the delete began in the paste's second
        }
        QFAIL("a paste and a delete never began in one second");
    }

    void aFailedEffectInTheSecondOfTheCurrentVersionLeavesThatVersionAsItWas() {
        Document* d = openPattern();
        QVERIFY(d);
        for (int attempt = 0; attempt < 3; ++attempt) {
            waitPastEveryStamp(m_app->session().s_Output_Folder);
            QVERIFY(edit(d, [&] { d->effectActions().OnPopupReverseEntireTrack(); }));
            const QString current = d->track().s_WAV_File_Path;
            const QByteArray was = digest(current);
            const QStringList history = d->history().array_WAV_Files();
            const auto alert = gui::answerAlert();
            // sox knows no such effect: nothing is written, and the result's
            // name is the current version's when this second is still the same.
            d->effectActions().applyEffect(EffectArguments{{}, {"no-such-effect"}}, false);
            QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 20000);
            QVERIFY(gui::waitIdle(*m_app));
            QCOMPARE(alert->informativeText,
                     QString("Parameters were not accepted. change parameters and try again."));
            QCOMPARE(d->history().array_WAV_Files(), history);
            QCOMPARE(digest(current), was);
            QVERIFY(hiddenFiles().isEmpty());
            const QList<ToolRun>& runs = m_app->runner().runs();
            if (runs.last().arguments.value(1) == current)
                return; // the failed run was of the same second: it was to write the current name
        }
        QFAIL("the failed effect never landed in the second of the version before it");
    }

    void aCutLeavesTheRemainderOnTheClipboardAndPasteAtStartDoublesIt() {
        Document* d = openPattern();
        QVERIFY(d);
        setMarkers(d, 20, 50, 0);
        QVERIFY(edit(d, [&] { d->editingActions().Operation_Cut(); }));
        QCOMPARE(m_app->session().s_Copied_WAV_File, d->track().s_WAV_File_Path);
        waitPastEveryStamp(m_app->session().s_Output_Folder);
        QVERIFY(edit(d, [&] { d->editingActions().OnPopupMenuPasteAtStart(); }));
        checkResult(d, 2, 14, {{0, 2, true}, {2, 3, false}, {3, 9, true}, {9, 10, false}, {10, 14, true}});
    }

    void deletingEverythingGivesAnEmptyVersion() {
        Document* d = openPattern();
        QVERIFY(d);
        setMarkers(d, 0, 100, 0);
        QVERIFY(edit(d, [&] { d->editingActions().Operation_Delete(); }));
        const fixtures::WavInfo info = fixtures::wavInfo(d->track().s_WAV_File_Path);
        QVERIFY(info.ok);
        QCOMPARE(info.frames, qint64(0));
        QCOMPARE(d->track().i_Audio_Duration_Seconds, qint64(0));
        QCOMPARE(d->history().u_array_WAV_Files_Length(), 2u);
    }

    void pasteAtPositionZeroPutsTheClipFirst() {
        Document* d = openPattern();
        QVERIFY(d && copyClip(d));
        setMarkers(d, 20, 50, 0);
        QVERIFY(edit(d, [&] { d->editingActions().OnPopupMenuPasteAtCurrentPosition(); }));
        checkResult(d, 1, 13, {{0, 2, true}, {2, 3, false}, {3, 7, true}, {7, 9, false}, {9, 13, true}});
    }

    void mixingBelowOneSecondStartsAtTheBeginning() {
        Document* d = openPattern();
        QVERIFY(d && copyClip(d));
        setMarkers(d, 20, 50, 0.9f);
        QVERIFY(edit(d, [&] { d->editingActions().OnPopupPasteMixingAtCurrentPosition(); }));
        checkResult(d, 1, 10, {{0, 4, true}, {4, 6, false}, {6, 10, true}});
        const QString padded = paddedPath(m_app->session().s_Copied_WAV_File);
        QVERIFY(QFile::exists(padded)); // stays until the next mix or start
        QVERIFY(std::abs(fixtures::wavInfo(padded).seconds() - 3.0) < 0.03);
    }

    void mixingAtTheEndOfASelectionEndingTheTrackLengthensIt() {
        Document* d = openPattern();
        QVERIFY(d && copyClip(d));
        setMarkers(d, 50, 100, 0);
        QVERIFY(edit(d, [&] { d->editingActions().OnPopupPasteMixingAtEndOfSelection(); }));
        checkResult(d, 1, 13, {{0, 4, true}, {4, 6, false}, {6, 12, true}, {12, 13, false}});
    }

    void aTinySelectionIsSilencedWithWholeHundredths() {
        Document* d = openPattern();
        QVERIFY(d);
        setMarkers(d, 10, 10.123f, 0); // 0.0123 s from 1 s: 12 ms, made as 00:00:00.01
        QVERIFY(edit(d, [&] { d->editingActions().OnPopupSilenceSelection(); }));
        checkResult(d, 1, 10 - 0.0123 + 0.01, {{0, 0.95, true}, {1.05, 4, true}});
    }

    void cancellingTheSilenceDialogsChangesNothing() {
        Document* d = openPattern();
        QVERIFY(d);
        const int runs = m_app->runner().runs().size();
        gui::whenModal<Window_Silence_Insert>([](Window_Silence_Insert* dialog) { dialog->OnCancel(); });
        d->editingActions().OnPopupSilenceInsertAtStart();
        gui::whenModal<Window_Silence_Insert>([](Window_Silence_Insert* dialog) { dialog->close(); });
        d->editingActions().OnPopupSilenceInsertAtEnd();
        gui::whenModal<Window_Silence_Trim>([](Window_Silence_Trim* dialog) { dialog->OnCancel(); });
        d->editingActions().OnPopupSilenceTrim();
        gui::whenModal<Window_Silence_Trim>([](Window_Silence_Trim* dialog) { dialog->close(); });
        d->editingActions().OnPopupSilenceTrim();
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(m_app->runner().runs().size(), runs);
        QCOMPARE(d->history().u_array_WAV_Files_Length(), 1u);
    }

    void aTrimWhoseResultIsNotWrittenSaysSoAndChangesNothing() {
        Document* d = openPattern();
        QVERIFY(d);
        const QString current = d->track().s_WAV_File_Path;
        // sox then has nothing it can read. (A file that is gone altogether is
        // said as such before anything runs.)
        {
            QFile damaged(current);
            QVERIFY(damaged.open(QIODevice::WriteOnly | QIODevice::Truncate));
            damaged.write("not audio at all");
        }
        const auto alert = gui::answerAlert();
        gui::whenModal<Window_Silence_Trim>([](Window_Silence_Trim* dialog) { dialog->OnOK(); });
        d->editingActions().OnPopupSilenceTrim();
        QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 20000);
        QCOMPARE(alert->text, QString("Error"));
        QCOMPARE(alert->informativeText,
                 QString("Parameters were not accepted. change parameters and try again."));
        QCOMPARE(alert->buttons, QStringList({"Close"}));
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(d->track().s_WAV_File_Path, current);
        QCOMPARE(d->history().array_WAV_Files(), QStringList({current}));
    }

    void undoAndRedoAcrossTenEditsBringBackEveryVersionByteForByte() {
        Document* d = openPattern();
        QVERIFY(d && copyClip(d));
        QList<QByteArray> versions{digest(d->track().s_WAV_File_Path)};
        const QList<std::function<void()>> edits = {
            [&] { d->editingActions().OnPopupMenuPasteAtEnd(); },
            [&] { d->editingActions().Operation_Delete(); },
            [&] { d->editingActions().OnPopupSilenceSelection(); },
            [&] { d->editingActions().OnPopupPasteMixingAtStart(); },
            [&] { d->editingActions().OnPopupMenuPasteAtStartOfSelection(); },
            [&] { d->editingActions().Operation_Cut(); },
            [&] { d->editingActions().OnPopupMenuPasteAtCurrentPosition(); },
            [&] { d->editingActions().OnPopupPasteMixingAtEndOfSelection(); },
            [&] { d->editingActions().OnPopupMenuPasteAtStart(); },
            [&] { d->editingActions().Operation_Delete(); },
        };
        for (const auto& action : edits) {
            setMarkers(d, 10, 30, 1.5f);
            waitPastEveryStamp(m_app->session().s_Output_Folder);
            QVERIFY(edit(d, action));
            versions << digest(d->track().s_WAV_File_Path);
        }
        QCOMPARE(d->history().u_array_WAV_Files_Length(), 11u);
        for (int i = 9; i >= 0; --i) {
            QSignalSpy reloaded(d, &Document::loaded);
            d->Operation_Undo();
            QVERIFY(reloaded.wait(10000));
            QCOMPARE(digest(d->track().s_WAV_File_Path), versions[i]);
        }
        for (int i = 1; i <= 10; ++i) {
            QSignalSpy reloaded(d, &Document::loaded);
            d->Operation_Redo();
            QVERIFY(reloaded.wait(10000));
            QCOMPARE(digest(d->track().s_WAV_File_Path), versions[i]);
        }
    }

    void copyInOneWindowAndPasteInAnother() {
        Document* first = openPattern();
        QVERIFY(first && copyClip(first));
        gui::answerFileDialog({});
        m_app->openDocument();
        Document* second = m_app->documents().last();
        QSignalSpy loaded(second, &Document::loaded);
        QVERIFY(loaded.wait(20000));
        waitPastEveryStamp(m_app->session().s_Output_Folder);
        second->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(second));
        QVERIFY(edit(second, [&] { second->editingActions().OnPopupMenuPasteAtStart(); }));
        checkResult(second, 1, 63, {{0, 2, true}, {2, 63, false}});
    }

    void theEditMenuAndThePasteButtonReachTheActiveDocument() {
        Document* d = openPattern();
        QVERIFY(d);
        d->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(d));
        m_app->session().s_Copied_WAV_File.clear();
        const auto alert = gui::answerAlert();
        m_app->actionPaste->trigger();
        QTRY_VERIFY(alert->shown);
        QCOMPARE(alert->informativeText, QString("There is no copied content."));
        QCOMPARE(alert->buttons, QStringList({"Close"}));
        QVERIFY(QApplication::activePopupWidget() == nullptr);

        d->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(d));
        setMarkers(d, 20, 50, 0);
        QSignalSpy copied(d, &Document::copied);
        m_app->actionCopy->trigger();
        QVERIFY(copied.wait(20000));
        d->btnPaste->trigger();
        QTRY_COMPARE(QApplication::activePopupWidget(), d->editingActions().popupMenuPaste);
        QCOMPARE(d->editingActions().popupMenuPaste->actions().size(), 5);
        d->editingActions().popupMenuPaste->close();
        d->btnTools->trigger();
        QTRY_COMPARE(QApplication::activePopupWidget(), d->editingActions().popupMenuTools);
        d->editingActions().popupMenuTools->close();
    }

    void aClipboardFileThatDisappearedIsNothingToPaste() {
        Document* d = openPattern();
        QVERIFY(d && copyClip(d));
        QVERIFY(QFile::remove(m_app->session().s_Copied_WAV_File));
        const auto alert = gui::answerAlert();
        d->editingActions().Operation_Paste();
        QTRY_VERIFY(alert->shown);
        QCOMPARE(alert->informativeText, QString("There is no copied content."));
        // Reached directly, the paste runs, but its missing result is not
        // taken: the track stays as it was.
        expectRefused(
            d, [&] { d->editingActions().OnPopupMenuPasteAtStart(); }, "Paste");
        QCOMPARE(d->track().i_Audio_Duration_Seconds, qint64(10));
    }

    void mixingWithNothingCopiedSaysSoAndRunsNothing_data() {
        QTest::addColumn<bool>("copiedThenDeleted");
        QTest::newRow("nothing copied yet") << false;
        QTest::newRow("the copied file is gone") << true;
    }
    void mixingWithNothingCopiedSaysSoAndRunsNothing() {
        QFETCH(bool, copiedThenDeleted);
        Document* d = openPattern();
        QVERIFY(d);
        if (copiedThenDeleted) {
            QVERIFY(copyClip(d));
            QVERIFY(QFile::remove(m_app->session().s_Copied_WAV_File));
        } else {
            m_app->session().s_Copied_WAV_File.clear();
        }
        const QString track = d->track().s_WAV_File_Path;
        const QStringList files = workFiles();
        const qsizetype runs = m_app->runner().runs().size();
        for (const auto& mix : {&EditingActions::OnPopupPasteMixingAtStart,
                                &EditingActions::OnPopupPasteMixingAtCurrentPosition,
                                &EditingActions::OnPopupPasteMixingAtStartOfSelection,
                                &EditingActions::OnPopupPasteMixingAtEndOfSelection}) {
            const auto alert = gui::answerAlert();
            (d->editingActions().*mix)();
            QTRY_VERIFY(alert->shown);
            QCOMPARE(alert->informativeText, QString("There is no copied content."));
        }
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(m_app->runner().runs().size(), runs);
        QCOMPARE(d->track().s_WAV_File_Path, track);
        QCOMPARE(workFiles(), files);
        QVERIFY(!QFile::exists("/_PAD.wav") && !QFile::exists("_PAD.wav"));
    }

    void editsOfAFileDeletedBehindTheEditorsBackAndWildMarkersDoNotBreakIt() {
        Document* d = openPattern();
        QVERIFY(d);
        // A file made unreadable: the tools read nothing, and the join has no
        // result to take.
        {
            QFile damaged(d->track().s_WAV_File_Path);
            QVERIFY(damaged.open(QIODevice::WriteOnly | QIODevice::Truncate));
            damaged.write("not audio at all");
        }
        expectRefused(
            d, [&] { d->editingActions().Operation_Delete(); }, "Delete");
        QCOMPARE(d->track().i_Audio_Duration_Seconds, qint64(10));
        QVERIFY(!d->viewAudioPlot->grab().toImage().isNull());
        // A file removed altogether is said as such before anything runs.
        QVERIFY(QFile::remove(d->track().s_WAV_File_Path));
        const qsizetype runs = m_app->runner().runs().size();
        const auto alert = gui::answerAlert();
        d->editingActions().Operation_Delete();
        QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 5000);
        QVERIFY2(alert->informativeText.contains("is no longer there; it was removed outside Tanselo"),
                 qPrintable(alert->informativeText));
        QCOMPARE(m_app->runner().runs().size(), runs);
        QCOMPARE(d->track().i_Audio_Duration_Seconds, qint64(10));

        Document* e = openPattern();
        QVERIFY(e);
        // Markers outside the track or the wrong way round give ffmpeg negative
        // times: it cuts nothing, and the join has no result to take.
        setMarkers(e, -40, 170, -3);
        expectRefused(
            e, [&] { e->editingActions().OnPopupSilenceSelection(); }, "Silencing the selection");
        setMarkers(e, 150, -20, 1.0e9f);
        expectRefused(
            e, [&] { e->editingActions().Operation_Delete(); }, "Delete");
        QVERIFY(!e->viewAudioPlot->grab().toImage().isNull());
    }
};

QTEST_MAIN(tst_EditingCases)
#include "tst_editingcases.moc"
