// The recipe as a value: what a history's versions make of it, its JSON file,
// the names of the results and the plan and script it turns into.

#include "batch/Recipe.h"
#include "batch/RecipePlans.h"
#include "document/ImportPlans.h"
#include "effects/EffectCatalogue.h"
#include "history/VersionHistory.h"
#include "support/Fixtures.h"

#include <QTest>

namespace {
EffectValues echoValues() {
    return {{"f_Gain_In", 0.8f}, {"f_Gain_Out", 0.9f}, {"f_Delay_MS", 250.0f}, {"f_Decay_Factor", 0.4f}};
}

Recipe sampleRecipe() {
    Recipe recipe;
    recipe.steps = {*effectReplay("Normalize", "Normalize", {{"f_dB", -3.0f}}).step,
                    *effectReplay("Echo", "Echo", echoValues()).step,
                    *insertSilenceReplay("Insert silence at end", SilencePlace::End, 1500).step,
                    *trimSilenceReplay("Trim silence from both ends", 3, 250).step,
                    *effectReplay("Reverse", "Reverse", {}).step};
    recipe.skipped = {{"Cut", notReplayable::selection().whyNot}};
    recipe.exportChoice = {2, 7, 0, 10};
    return recipe;
}
} // namespace

class TestRecipe : public QObject {
    Q_OBJECT
private slots:
    void theCurrentVersionsWholeTrackOperationsInOrder() {
        VersionHistory history;
        history.restart("/w/0.wav", "Opened talk.flac");
        history.add("/w/1.wav", "Normalize", effectReplay("Normalize", "Normalize", {{"f_dB", -1.0f}}));
        history.add("/w/2.wav", "Echo on selection", notReplayable::selection());
        history.add("/w/3.wav", "Echo", effectReplay("Echo", "Echo", echoValues()));
        history.add("/w/4.wav", "Paste at end", notReplayable::copiedAudio());
        history.add("/w/5.wav", "Fade In", effectReplay("FadeIn", "Fade In", {}));
        history.undo(); // the fade is no longer part of the current version
        const Recipe recipe = recipeOf(history, {2, 6, 1, 3});
        QCOMPARE(recipe.steps.size(), 2);
        QCOMPARE(recipe.steps[0].label, QString("Normalize"));
        QCOMPARE(recipe.steps[0].values, (EffectValues{{"f_dB", -1.0f}}));
        QCOMPARE(recipe.steps[1].effect, QString("Echo"));
        QCOMPARE(recipe.steps[1].values, echoValues());
        QCOMPARE(recipe.skipped.size(), 2);
        QCOMPARE(recipe.skipped[0].label, QString("Echo on selection"));
        QCOMPARE(recipe.skipped[0].reason,
                 QString("It worked on a selection, which another file does not have."));
        QCOMPARE(recipe.skipped[1].label, QString("Paste at end"));
        QVERIFY(recipe.exportChoice == (exporting::Choice{2, 6, 1, 3}));
        QCOMPARE(exportExtension(recipe), QString("mp3"));
    }

    void aFreshTrackHasAnEmptyRecipe() {
        VersionHistory history;
        QVERIFY(recipeOf(history).steps.isEmpty());
        history.restart("/w/0.wav", "Silent track");
        QVERIFY(recipeOf(history) == Recipe{});
    }

    void aSavedAndReloadedRecipeEqualsTheOriginal() {
        const Recipe original = sampleRecipe();
        QString error;
        const std::optional<Recipe> reloaded = recipeFromJson(recipeJson(original), &error);
        QVERIFY2(reloaded, qPrintable(error));
        QVERIFY(*reloaded == original);
        // A value that is not exactly a short decimal survives too.
        Recipe odd = original;
        odd.steps[0].values.set("f_dB", 1.0f / 3.0f);
        QVERIFY(*recipeFromJson(recipeJson(odd), &error) == odd);
        QVERIFY(!(*reloaded == odd));
    }

    void aFileThatHoldsNoRecipeIsRefusedWithItsReason_data() {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("reason");
        const QByteArray good = recipeJson(sampleRecipe());
        auto changed = [&](const char* from, const char* to) { return QByteArray(good).replace(from, to); };
        QTest::newRow("not JSON") << QByteArray("steps: echo") << "It is not JSON";
        QTest::newRow("other JSON") << QByteArray("{\"steps\": []}")
                                    << "It is not a recipe saved by this editor.";
        QTest::newRow("unknown effect") << changed("\"effect\": \"Echo\"", "\"effect\": \"Warp\"")
                                        << "Step 2 names an effect the editor does not have: \"Warp\".";
        QTest::newRow("missing value")
            << changed("\"f_Delay_MS\"", "\"f_Delay\"") << "Step 2 has no real value \"f_Delay_MS\".";
        QTest::newRow("bad place") << changed("\"place\": \"end\"", "\"place\": \"middle\"")
                                   << "Step 3 inserts silence neither at the start nor at the end.";
        QTest::newRow("bad export") << changed("\"MP3\"", "\"OGG\"")
                                    << "The export setting \"format\" is none of WAV, M4A, MP3.";
    }
    void aFileThatHoldsNoRecipeIsRefusedWithItsReason() {
        QFETCH(QByteArray, json);
        QFETCH(QString, reason);
        QString error;
        QVERIFY(!recipeFromJson(json, &error));
        QVERIFY2(error.startsWith(reason), qPrintable(error));
    }

    void resultsAreNamedAfterTheirFilesAndNeverOverwrite() {
        const QStringList existing{"/out/talk.mp3", "/out/talk (2).mp3", "/in/song.mp3"};
        auto exists = [&](const QString& path) { return existing.contains(path); };
        QCOMPARE(outputPaths({"/in/talk.wav", "/in/music.flac", "/other/music.wav", "/in/a.b.ogg"}, "/out",
                             "mp3", exists),
                 QStringList({"/out/talk (3).mp3", "/out/music.mp3", "/out/music (2).mp3", "/out/a.b.mp3"}));
        // Results written beside their inputs never take an input's name.
        QCOMPARE(outputPaths({"/in/song.mp3"}, "/in", "mp3", exists), QStringList({"/in/song (2).mp3"}));
    }

    void eachFileIsDoneWithTheEditorsOwnPlans() {
        const Recipe recipe = sampleRecipe();
        const RecipePlan plan = buildRecipePlan(recipe, "/in/talk.flac", "/w/1", "/out/talk.mp3");
        QVERIFY(plan.problem.isEmpty());
        QCOMPARE(plan.stages, QStringList({"Opening talk.flac", "Normalize", "Echo", "Insert silence at end",
                                           "Trim silence from both ends", "Reverse", "Exporting talk.mp3"}));
        // The runs are those of File ▸ Open, of each menu command and of the
        // export dialog, one after the other, each reading the one before.
        QList<PlannedRun> expected = plannedRuns(buildImportPlan("/in/talk.flac", "/w/1/opened.wav"));
        expected.removeLast(); // the duration probe: nothing is drawn
        QString track = "/w/1/opened.wav";
        for (int i = 0; i < recipe.steps.size(); ++i) {
            const EditState state{"/w/1", track, {}, {}, 0, 0, 0};
            const EditPlan edit =
                buildStepPlan(recipe.steps[i], state, ResultNames("/w/1", QString("step%1").arg(i + 1)));
            QList<PlannedRun> runs = plannedRuns(edit.plan);
            runs.removeLast();
            expected += runs;
            track = edit.result;
        }
        expected.append(
            {Tool::FFmpeg, {"-i", track, "-vn", "-ar", "48000", "-ac", "1", "-ab", "160k", "/out/talk.mp3"}});
        const QList<PlannedRun> actual = plannedRuns(plan.plan);
        for (qsizetype i = 0; i < std::min(actual.size(), expected.size()); ++i)
            QCOMPARE(actual[i].arguments, expected[i].arguments);
        QCOMPARE(actual, expected);
        QCOMPARE(plan.runStages.size(), expected.size());
        QCOMPARE(plan.runStages.first(), 0);
        QCOMPARE(plan.runStages.last(), 6);
        // After the input's length (for the room it needs) and its import.
        QCOMPARE(expected[0].arguments, QStringList({"-i", "/in/talk.flac"}));
        QCOMPARE(expected[2].arguments, QStringList({"--norm=-3.00", "/w/1/opened.wav", "/w/1/step1.wav"}));
    }

    void anExportSettingWithoutArgumentsIsAProblem() {
        Recipe recipe = sampleRecipe();
        recipe.exportChoice.bitRate = 15; // "256k": the list's last item passes nothing
        QVERIFY(!buildRecipePlan(recipe, "/in/a.wav", "/w", "/out/a.mp3").problem.isEmpty());
    }

    void theScriptQuotesEveryWordAndUsesItsVariables() {
        QCOMPARE(shellQuoted("it's"), QString("'it'\\''s'"));
        const QString script = recipeScript(sampleRecipe());
        QVERIFY(script.startsWith(
            "#!/bin/sh\n# A Tanselo recipe: Normalize, Echo, Insert silence at end, "
            "Trim silence from both ends, Reverse, exported as MP3, 48000 Hz, Mono, 128k.\n"));
        QVERIFY(
            script.contains("run \"$FFMPEG\" '-i' \"$input\" '-acodec' 'pcm_s16le' '-ar' '44100' '-ac' '2' "
                            "\"$work\"'/opened.wav'\n"));
        QVERIFY(
            script.contains("run \"$SOX\" '--norm=-3.00' \"$work\"'/opened.wav' \"$work\"'/step1.wav'\n"));
        // The export is written under a name of its own, then takes the
        // output's name only if that is still free.
        QVERIFY(script.contains("'-ab' '160k' \"$part\"\n"));
        QVERIFY(script.contains("until ln -- \"$part\" \"$output\" 2>/dev/null; do\n"));
        QVERIFY(!script.contains(QChar(1)));
    }
};

QTEST_GUILESS_MAIN(TestRecipe)
#include "tst_recipe.moc"
