// The batch as the user meets it: a window's operations offered as a recipe,
// processed through File ▸ Process Files With This Recipe…, compared with
// doing the same in the editor and exporting.

#include "batch/BatchDialog.h"
#include "batch/RecipePlans.h"
#include "core/batch/BatchFixture.h"
#include "edit/Window_Silence_Insert.h"
#include "edit/Window_Silence_Trim.h"
#include "effects/EffectDialogs.h"
#include "timeline/View_Audio_Wave.h"
#include "ui/document/ExportFixture.h"

#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QRadioButton>

class TestBatch : public ExportFixture {
    Q_OBJECT
    gui::UrlCatcher m_urls;
    QStringList m_inputs; // a WAV, an MP3 and a FLAC of different lengths

    // Runs a catalogue row over the whole track from the effects menu,
    // pressing OK on its dialog as it starts, and waits for the new version.
    static bool apply(Document* d, const QString& key, bool selectionOnly = false) {
        const EffectEntry* entry = findEffect(key);
        d->effectActions().fillEffectsMenu();
        auto* action = d->findChild<QAction*>(actionName(*entry, selectionOnly));
        if (!action)
            return false;
        QSignalSpy adopted(d, &Document::adopted);
        gui::whenModal<EffectDialog>(entry->dialog.name, [](EffectDialog* dialog) { dialog->OnOK(); });
        action->trigger();
        return adopted.size() > 0 || adopted.wait(60000);
    }

    static QStringList rows(const QListWidget* list) {
        QStringList texts;
        for (int row = 0; row < list->count(); ++row)
            texts << list->item(row)->text();
        return texts;
    }

    static BatchDialog* openBatch(Document* d) {
        d->batchActions().actionProcessFiles->trigger();
        auto* dialog = d->findChild<BatchDialog*>();
        return dialog && dialog->isVisible() ? dialog : nullptr;
    }

    // A window of the test tone with the catalogue rows `keys` applied, and its batch window.
    BatchDialog* batchAfter(const QStringList& keys) {
        Document* d = gui::openInNewWindow(*m_app, m_source);
        if (!d)
            return nullptr;
        for (const QString& key : keys)
            if (!apply(d, key))
                return nullptr;
        return openBatch(d);
    }

    // Presses Process and waits for the batch to end; its progress window.
    static BatchProgressDialog* process(BatchDialog* dialog) {
        QTest::mouseClick(dialog->btnProcess, Qt::LeftButton);
        if (!dialog->run() || !QTest::qWaitFor([&] { return dialog->run()->isFinished(); }, 120000))
            return nullptr;
        return dialog->findChild<BatchProgressDialog*>();
    }

    // Silence inserted at the end (the dialog's 1000 ms), then trimmed from both ends.
    static bool insertAndTrimSilence(Document* d) {
        QSignalSpy adopted(d, &Document::adopted);
        gui::whenModal<Window_Silence_Insert>([](Window_Silence_Insert* dialog) { dialog->OnOK(); });
        d->editingActions().OnPopupSilenceInsertAtEnd();
        if (!adopted.wait(60000))
            return false;
        gui::whenModal<Window_Silence_Trim>([](Window_Silence_Trim* dialog) {
            dialog->radioEntire->click();
            dialog->OnOK();
        });
        d->editingActions().OnPopupSilenceTrim();
        return adopted.wait(60000);
    }

    // Silence, a tone and silence again, as a recording with quiet ends.
    QString quietEnds(const QString& name, double silence, double tone) {
        const QString gap = m_root.filePath("in/gap.wav"), middle = m_root.filePath("in/middle.wav");
        fixtures::makeSilence(gap, silence);
        fixtures::makeTone(middle, tone, 700, 0.4);
        const QString path = m_root.filePath("in/" + name);
        fixtures::join({gap, middle, gap}, path);
        return path;
    }

private slots:
    void initTestCase() {
        start(&m_urls);
        QDir().mkpath(m_root.filePath("in"));
        m_inputs = {m_root.filePath("in/lecture.wav"), m_root.filePath("in/interview.mp3"),
                    m_root.filePath("in/podcast.flac")};
        batchTest::makeAudio(m_inputs[0], 3, 440);
        batchTest::makeAudio(m_inputs[1], 4.5, 550);
        batchTest::makeAudio(m_inputs[2], 6, 660);
    }
    void cleanupTestCase() { stop(); }
    void cleanup() { QVERIFY(gui::closeAllWindows(*m_app)); }

    void threeFilesComeOutAsTheEditorMakesThem() {
        BatchDialog* dialog = batchAfter({"Normalize", "Echo", "FadeIn"});
        QVERIFY(dialog);
        QCOMPARE(rows(dialog->listSteps), QStringList({"Normalize", "Echo", "Fade In"}));
        // Each row's tooltip tells its values in the dialog's words.
        QCOMPARE(dialog->listSteps->item(2)->toolTip(), QString("Duration (ms): 500, Shape: Linear (t)"));
        QVERIFY(dialog->listSkipped->isHidden());
        QVERIFY(dialog->recipe() == batchTest::threeSteps() ||
                dialog->recipe().exportChoice.format == exporting::DefaultFormat);
        const QString out = m_root.filePath("batch");
        QDir().mkpath(out);
        dialog->setInputs(m_inputs);
        dialog->setOutputFolder(out);
        dialog->exportLists.format->setCurrentIndex(2); // MP3
        QVERIFY(dialog->recipe() == batchTest::threeSteps());
        BatchProgressDialog* progress = process(dialog);
        QVERIFY(progress);
        QCOMPARE(progress->labelSummary->text(), QString("3 of 3 files processed."));
        QVERIFY(progress->listFailures->isHidden());
        QCOMPARE(QDir(out).entryList(QDir::Files),
                 QStringList({"interview.mp3", "lecture.mp3", "podcast.mp3"}));
        QTest::mouseClick(progress->btnClose, Qt::LeftButton);

        // The same three commands in a window of each file, then File ▸ Export.
        const QString byHand = m_root.filePath("by-hand");
        QDir().mkpath(byHand);
        for (const QString& input : m_inputs) {
            Document* e = gui::openInNewWindow(*m_app, input);
            QVERIFY(e);
            for (const char* key : {"Normalize", "Echo", "FadeIn"})
                QVERIFY(apply(e, key));
            const QString name = QFileInfo(input).completeBaseName() + ".mp3";
            exportVia(e, {2, -2, -2, -2}, byHand + "/" + name);
            QVERIFY2(batchTest::sameAudio(byHand + "/" + name, out + "/" + name), qPrintable(name));
            // The recipe follows the window's last export.
            QCOMPARE(e->batchActions().recipe(), batchTest::threeSteps());
        }
        QVERIFY(QFile::exists(m_inputs[0]) && QFile::exists(m_inputs[1]) && QFile::exists(m_inputs[2]));
    }

    void insertedAndTrimmedSilenceIsDoneAgainButNotAtThePlayPosition() {
        Document* d = gui::openInNewWindow(*m_app, quietEnds("first.wav", 1, 2));
        QVERIFY(d);
        QVERIFY(insertAndTrimSilence(d));
        QSignalSpy adopted(d, &Document::adopted);
        gui::whenModal<Window_Silence_Insert>([](Window_Silence_Insert* dialog) { dialog->OnOK(); });
        d->editingActions().OnPopupSilenceInsertAtCurrentPosition();
        QVERIFY(adopted.wait(60000));
        BatchDialog* dialog = openBatch(d);
        QVERIFY(dialog);
        QCOMPARE(rows(dialog->listSteps),
                 QStringList({"Insert silence at end", "Trim silence from both ends"}));
        QCOMPARE(
            rows(dialog->listSkipped),
            QStringList{"Insert silence at play position: It depended on the play position in this track."});

        // Another file through the batch (as WAV) and through a window of its own.
        const QString second = quietEnds("second.flac", 1.5, 3);
        const QString out = m_root.filePath("silences");
        QDir().mkpath(out);
        dialog->setInputs({second});
        dialog->setOutputFolder(out);
        BatchProgressDialog* progress = process(dialog);
        QVERIFY(progress);
        QCOMPARE(progress->labelSummary->text(), QString("1 of 1 files processed."));
        Document* e = gui::openInNewWindow(*m_app, second);
        QVERIFY(e);
        QVERIFY(insertAndTrimSilence(e));
        const std::vector<short> batch = fixtures::samples(out + "/second.wav");
        // Both quiet ends are gone (and the inserted second with the end): the tone's 3 s are left.
        const double seconds = double(batch.size()) / 2 / 44100;
        QVERIFY2(seconds > 2.9 && seconds < 3.3, qPrintable(QString::number(seconds)));
        QVERIFY(batch == fixtures::samples(e->track().s_WAV_File_Path));
    }

    void aSelectionsEchoIsListedAsSkippedWithItsReason() {
        Document* d = gui::openInNewWindow(*m_app, m_source);
        QVERIFY(d);
        d->track().f_Selection_Start = 20;
        d->track().f_Selection_End = 40;
        QVERIFY(apply(d, "Echo", true));
        QVERIFY(apply(d, "FadeOut"));
        BatchDialog* dialog = openBatch(d);
        QVERIFY(dialog);
        QCOMPARE(rows(dialog->listSteps), QStringList{"Fade Out"});
        QVERIFY(!dialog->listSkipped->isHidden());
        QCOMPARE(
            rows(dialog->listSkipped),
            QStringList{"Echo on selection: It worked on a selection, which another file does not have."});
    }

    void stepsCanBeRemovedAndTheRecipeSavedAndLoaded() {
        BatchDialog* dialog = batchAfter({"Normalize", "Echo", "FadeIn"});
        QVERIFY(dialog);
        const Recipe whole = dialog->recipe();
        const QString saved = m_root.filePath("recipes/three");
        QDir().mkpath(m_root.filePath("recipes"));
        gui::answerFileDialog(saved);
        QTest::mouseClick(dialog->btnSaveRecipe, Qt::LeftButton);
        QVERIFY(QFile::exists(saved + ".json"));
        dialog->listSteps->item(1)->setSelected(true);
        QTest::mouseClick(dialog->btnRemoveStep, Qt::LeftButton);
        QCOMPARE(rows(dialog->listSteps), QStringList({"Normalize", "Fade In"}));
        QCOMPARE(dialog->recipe().steps.size(), 2);
        gui::answerFileDialog(saved + ".json");
        QTest::mouseClick(dialog->btnLoadRecipe, Qt::LeftButton);
        QVERIFY(dialog->recipe() == whole);
        QCOMPARE(rows(dialog->listSteps), QStringList({"Normalize", "Echo", "Fade In"}));
        // A file that holds no recipe is refused, and the recipe stays.
        QFile notes(m_root.filePath("recipes/notes.json"));
        QVERIFY(notes.open(QIODevice::WriteOnly));
        notes.write("{\"steps\": 3}");
        notes.close();
        gui::answerFileDialog(notes.fileName());
        const auto alert = gui::answerAlert();
        QTest::mouseClick(dialog->btnLoadRecipe, Qt::LeftButton);
        QVERIFY(alert->shown);
        QCOMPARE(alert->informativeText,
                 QString("\"notes.json\" holds no recipe: It is not a recipe saved by this editor."));
        QVERIFY(dialog->recipe() == whole);
    }

    void aFailedFileIsListedByName() {
        BatchDialog* dialog = batchAfter({"Normalize"});
        QVERIFY(dialog);
        QFile notes(m_root.filePath("in/notes.wav"));
        QVERIFY(notes.open(QIODevice::WriteOnly));
        notes.write("not audio");
        notes.close();
        const QString out = m_root.filePath("with-failure");
        QDir().mkpath(out);
        dialog->setInputs({m_inputs[0], notes.fileName(), m_inputs[2]});
        dialog->setOutputFolder(out);
        BatchProgressDialog* progress = process(dialog);
        QVERIFY(progress);
        QCOMPARE(progress->labelSummary->text(), QString("2 of 3 files processed. These failed:"));
        QCOMPARE(
            rows(progress->listFailures),
            QStringList{"notes.wav: The file \"notes.wav\" could not be read as audio. It may be damaged, "
                        "empty or of a kind that cannot be converted."});
        QCOMPARE(QDir(out).entryList(QDir::Files), QStringList({"lecture.wav", "podcast.wav"}));
    }

    void cancelFromTheProgressWindowKeepsTheFinishedFiles() {
        BatchDialog* dialog = batchAfter({"Echo"});
        QVERIFY(dialog);
        const QString longer = m_root.filePath("in/long.flac");
        batchTest::makeAudio(longer, 300, 330);
        const QString out = m_root.filePath("cancelled");
        QDir().mkpath(out);
        dialog->setInputs({m_inputs[0], longer, m_inputs[2]});
        dialog->setOutputFolder(out);
        QTest::mouseClick(dialog->btnProcess, Qt::LeftButton);
        auto* progress = dialog->findChild<BatchProgressDialog*>();
        QVERIFY(progress);
        // Each running file has its line; the long one reaches its echo while
        // the short ones are done beside it (two or more processors) or wait.
        QCOMPARE(progress->labelFile->text(),
                 QString("3 files, %1 at once").arg(dialog->run()->filesAtOnce()));
        QTRY_VERIFY_WITH_TIMEOUT(
            progress->labelStage->text().split('\n').contains("long.flac: Step 2 of 3: Echo"), 60000);
        QTest::mouseClick(progress->btnCancel, Qt::LeftButton);
        QTRY_VERIFY_WITH_TIMEOUT(dialog->run()->isFinished(), 30000);
        using State = BatchRun::FileResult;
        const BatchRun& run = *dialog->run();
        QCOMPARE(run.results()[1].state, State::Cancelled);
        const int done = run.count(State::Done);
        QCOMPARE(
            progress->labelSummary->text(),
            QString(
                "%1 of 3 files processed. Cancelled: %2 not processed; the unfinished result was removed.")
                .arg(done)
                .arg(3 - done));
        QStringList kept;
        for (const State& file : run.results())
            if (file.state == State::Done)
                kept << QFileInfo(file.output).fileName();
        QVERIFY(kept.contains("lecture.wav"));
        QCOMPARE(QDir(out).entryList(QDir::Files), kept);
    }

    // Loudness Normalize measures each file by itself: three files processed
    // as MP3s equal, after decoding, the saved script's results and the
    // editor's own export of each.
    void loudnessNormalizedFilesAreTheScriptsAndTheEditors() {
        BatchDialog* dialog = batchAfter({"LoudnessNormalize"});
        QVERIFY(dialog);
        QCOMPARE(rows(dialog->listSteps), QStringList({"Loudness Normalize"}));
        const QString out = m_root.filePath("loudness-batch"), scripted = m_root.filePath("loudness-script"),
                      byHand = m_root.filePath("loudness-by-hand");
        for (const QString& folder : {out, scripted, byHand})
            QDir().mkpath(folder);
        dialog->setInputs(m_inputs);
        dialog->setOutputFolder(out);
        dialog->exportLists.format->setCurrentIndex(2); // MP3
        const Recipe recipe = dialog->recipe();
        BatchProgressDialog* progress = process(dialog);
        QVERIFY(progress);
        QCOMPARE(progress->labelSummary->text(), QString("3 of 3 files processed."));
        QTest::mouseClick(progress->btnClose, Qt::LeftButton);

        const QString script = m_root.filePath("loudness.sh");
        QFile file(script);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(recipeScript(recipe).toUtf8());
        file.close();
        for (const QString& input : m_inputs) {
            const QString name = QFileInfo(input).completeBaseName() + ".mp3";
            QString said;
            QCOMPARE(fixtures::run("sh", {script, input, scripted + "/" + name}, &said), 0);
            QVERIFY2(batchTest::sameAudio(out + "/" + name, scripted + "/" + name), qPrintable(name));

            Document* e = gui::openInNewWindow(*m_app, input);
            QVERIFY(e);
            QVERIFY(apply(e, "LoudnessNormalize"));
            exportVia(e, {2, -2, -2, -2}, byHand + "/" + name);
            QVERIFY2(batchTest::sameAudio(byHand + "/" + name, out + "/" + name), qPrintable(name));
        }
        // Each file was measured by itself: the three differ.
        QVERIFY(!batchTest::sameAudio(out + "/lecture.mp3", out + "/interview.mp3"));
    }

    void theWindowsRecipeIsSavedAsAScript() {
        Document* d = gui::openInNewWindow(*m_app, m_source);
        QVERIFY(d);
        QVERIFY(apply(d, "Normalize"));
        const QString script = m_root.filePath("recipes/clean");
        gui::answerFileDialog(script);
        d->batchActions().actionSaveRecipeScript->trigger();
        QFile file(script + ".sh");
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(file.readAll()), recipeScript(d->batchActions().recipe()));
        QVERIFY(file.permissions() & QFile::ExeOwner);
        QVERIFY(d->menuBar()
                    ->findChild<QMenu*>("menuFile")
                    ->actions()
                    .contains(d->batchActions().actionSaveRecipeScript));
    }

    void noRecipeOrScriptIsSavedOverAFileOfTheWorkFolder() {
        Document* d = gui::openInNewWindow(*m_app, m_source);
        QVERIFY(d);
        QVERIFY(apply(d, "Normalize"));
        const QString silence = m_app->session().sSilenceWavPath;
        const QString version = d->track().s_WAV_File_Path;
        const QByteArray silenceBefore = fixtures::digest(silence);
        const QByteArray versionBefore = fixtures::digest(version);
        const auto refused = [&](const QString& path, const std::function<void()>& save) {
            gui::answerFileDialog(path);
            const auto alert = gui::answerAlert();
            save();
            QVERIFY(alert->shown);
            QVERIFY2(alert->informativeText.startsWith("\"" + path + "\" is inside Tanselo's work folder, " +
                                                       m_app->session().s_Output_Folder),
                     qPrintable(alert->informativeText));
        };
        refused(silence, [&] { d->batchActions().actionSaveRecipeScript->trigger(); });
        refused(version, [&] { d->batchActions().actionSaveRecipeScript->trigger(); });
        BatchDialog* dialog = batchAfter({"Normalize"});
        QVERIFY(dialog);
        refused(silence, [&] { QTest::mouseClick(dialog->btnSaveRecipe, Qt::LeftButton); });
        refused(m_app->session().s_Output_Folder + "/recipe.sh",
                [&] { QTest::mouseClick(dialog->btnSaveScript, Qt::LeftButton); });
        QCOMPARE(fixtures::digest(silence), silenceBefore);
        QCOMPARE(fixtures::digest(version), versionBefore);
        QVERIFY(!QFile::exists(m_app->session().s_Output_Folder + "/recipe.sh"));
    }
};

QTEST_MAIN(TestBatch)
#include "tst_batch.moc"
