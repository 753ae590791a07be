#include "text/Mnemonics.h"
#include "ui/edit/EditingFixture.h"

#include "effects/EffectDialogs.h"
#include <QCheckBox>
#include <QDir>
#include <QLabel>
#include <QMenu>
#include <QSlider>

// The effect procedures run for real: reversal needs no dialog, and an
// argument sox refuses shows what every failed effect shows.
class tst_EffectPipeline : public EditingFixture {
    Q_OBJECT
private slots:
    void initTestCase() { startWithPattern(); }
    void cleanup() { closeAll(); }

    void reversingTheWholeTrackReversesEverySample() {
        Document* d = openPattern();
        QVERIFY(d);
        const QString before = d->track().s_WAV_File_Path;
        QVERIFY(edit(d, [&] { d->effectActions().OnPopupReverseEntireTrack(); }));
        checkResult(d, 1, 10, {{0, 4, true}, {4, 6, false}, {6, 10, true}});
        const std::vector<short> original = frames(before), result = frames(d->track().s_WAV_File_Path);
        QCOMPARE(result.size(), original.size());
        const std::size_t n = original.size() / 2;
        for (std::size_t j = 0; j < n; j += 101)
            QCOMPARE(result[2 * j + 1], original[2 * (n - 1 - j) + 1]);
    }

    void reversingTheSelectionLeavesTheRestAsItWas() {
        Document* d = openPattern();
        QVERIFY(d);
        const QString before = d->track().s_WAV_File_Path;
        setMarkers(d, 30, 70, 0); // 3–7 s
        QVERIFY(edit(d, [&] { d->effectActions().OnPopupReverseSelection(); }));
        checkResult(d, 1, 10, {{0, 4, true}, {4, 6, false}, {6, 10, true}});
        for (const auto& [from, to] : {std::pair{0.1, 2.9}, std::pair{7.1, 9.9}}) {
            const double was = fixtures::rms(before, from, to),
                         is = fixtures::rms(d->track().s_WAV_File_Path, from, to);
            QVERIFY2(std::abs(fixtures::decibels(is, was)) < 0.5,
                     qPrintable(QString::number(fixtures::decibels(is, was))));
        }
        // Inside, sample by sample, the selection read backwards.
        const std::vector<short> original = frames(before), result = frames(d->track().s_WAV_File_Path);
        const std::size_t start = 3 * 44100, end = 7 * 44100;
        int matches = 0, checked = 0;
        for (std::size_t j = start + 500; j < end - 500; j += 997, ++checked)
            matches += result[2 * j] == original[2 * (start + end - 1 - j)];
        QVERIFY2(matches > checked * 9 / 10, qPrintable(QString("%1 of %2").arg(matches).arg(checked)));
    }

    // The effects menu, walked item by item: every action of the table is
    // there, group by group, and each item opens its own dialog with its
    // action's title (the runs themselves are the effect-runs test's).
    void theEffectsMenuListsEveryActionOfTheTable() {
        Document* d = openPattern();
        QVERIFY(d);
        d->effectActions().fillEffectsMenu();
        QStringList offered, expected;
        QString group;
        for (const EffectEntry& entry : effectCatalogue()) {
            if (!group.isEmpty() && entry.group != group)
                expected << "-";
            group = entry.group;
            expected << entry.title + ": " + actionName(entry, false);
            if (entry.selection)
                expected << entry.title + ": " + actionName(entry, true);
        }
        expected << "-"
                 << "Noise Reduction…: OnPopupNoiseReduction";

        const QStringList files = workFiles();
        for (QAction* item : d->effectActions().popupMenuEffects->actions()) {
            if (item->isSeparator()) {
                offered << "-";
                continue;
            }
            if (!item->menu()) {
                offered << withoutMnemonic(item->text()) + ": " + item->objectName();
                bool asked = false;
                gui::whenModal<EffectDialog>("Window_Ask_Noise_Selected", [&asked](EffectDialog* ask) {
                    asked = true;
                    ask->OnCancel();
                });
                item->trigger();
                QVERIFY(asked);
                continue;
            }
            const auto entry =
                std::find_if(effectCatalogue().begin(), effectCatalogue().end(),
                             [&](const EffectEntry& e) { return e.title == withoutMnemonic(item->text()); });
            QVERIFY2(entry != effectCatalogue().end(), qPrintable(withoutMnemonic(item->text())));
            for (QAction* action : item->menu()->actions()) {
                offered << withoutMnemonic(item->text()) + ": " + action->objectName();
                const bool selection = action->objectName().endsWith("Selection");
                QCOMPARE(withoutMnemonic(action->text()), QString(selection ? "Selection" : "Entire Track") +
                                                              (entry->dialog.isEmpty() ? "" : "…"));
                if (entry->dialog.isEmpty())
                    continue; // reversal runs at once; tested below
                QString shown, title;
                gui::whenModal<EffectDialog>([&](EffectDialog* dialog) {
                    shown = dialog->objectName();
                    title = dialog->windowTitle();
                    dialog->OnCancel();
                });
                action->trigger();
                QCOMPARE(shown, entry->dialog.name);
                if (!entry->windowTitle.isEmpty())
                    QCOMPARE(title, entry->windowTitle);
            }
        }
        QCOMPARE(offered, expected);
        // Every dialog was declined: nothing ran.
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(workFiles(), files);
        QCOMPARE(d->history().u_array_WAV_Files_Length(), 1u);
    }

    void anArgumentSoxRefusesLeavesTheTrackAsItWas() {
        Document* d = openPattern();
        QVERIFY(d);
        const QString current = d->track().s_WAV_File_Path;
        const auto alert = gui::answerAlert();
        d->effectActions().applyEffect({{}, {"echo", "not-a-number"}}, false);
        QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 20000);
        QCOMPARE(alert->text, QString("Error"));
        QCOMPARE(alert->informativeText,
                 QString("Parameters were not accepted. change parameters and try again."));
        QCOMPARE(alert->buttons, QStringList({"Close"}));
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(d->track().s_WAV_File_Path, current);
        QCOMPARE(d->history().array_WAV_Files(), QStringList({current}));
    }

    void onASelectionTheCutPartsStayAfterARefusal() {
        Document* d = openPattern();
        QVERIFY(d);
        const QString current = d->track().s_WAV_File_Path;
        const QStringList before = QDir(m_app->session().s_Output_Folder).entryList(QDir::Files);
        const auto alert = gui::answerAlert();
        d->effectActions().applyEffect({{}, {"echo", "not-a-number"}}, true);
        QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 20000);
        QVERIFY(gui::waitIdle(*m_app));
        QStringList added = QDir(m_app->session().s_Output_Folder).entryList(QDir::Files);
        for (const QString& name : before)
            added.removeAll(name);
        added.sort();
        QCOMPARE(added.size(), 3);
        QVERIFY(added[0].endsWith("After.wav"));
        QVERIFY(added[1].endsWith("Before.wav"));
        QVERIFY(added[2].endsWith("Selection.wav"));
        QCOMPARE(d->track().s_WAV_File_Path, current);
        QCOMPARE(d->history().u_array_WAV_Files_Length(), 1u);
    }

    void theToolsMenuOffersReversalAndItsItemReverses() {
        Document* d = openPattern();
        QVERIFY(d);
        QVERIFY(d->editingActions().popupMenuTools->actions().contains(
            d->effectActions().popupMenuEffects->menuAction()));
        QVERIFY(d->effectActions().popupMenuEffects->isEmpty()); // filled when first shown
        d->effectActions().fillEffectsMenu();
        QMenu* reverse = nullptr;
        for (QAction* action : d->effectActions().popupMenuEffects->actions())
            if (withoutMnemonic(action->text()) == "Reverse")
                reverse = action->menu();
        QVERIFY(reverse);
        QCOMPARE(reverse->actions().size(), 2);
        const QString before = d->track().s_WAV_File_Path;
        QVERIFY(edit(d, [&] { reverse->actions().first()->trigger(); }));
        const std::vector<short> original = frames(before), result = frames(d->track().s_WAV_File_Path);
        QCOMPARE(result.size(), original.size());
        QCOMPARE(result[2 * 1000], original[original.size() - 2 - 2 * 1000]);
    }

    // A row added to the catalogue and nothing else: its dialog is built from
    // the declarations, shows and reads its controls, and the effect runs.
    void aNewCatalogueRowGetsAWorkingDialog() {
        const EffectEntry row{"Test",
                              "Volume",
                              "Volume",
                              {"Window_Volume",
                               "Volume",
                               {},
                               {slider("f_Factor", "Factor", "Factor (%):", 0, 200, 50).over(100, "%.2f"),
                                checkBox("u_Invert", "Invert", "Invert:", false).as(ValueType::Unsigned)},
                               {{"f_Factor", Check::Zero, "Factor invalid."}}},
                              "Volume Test",
                              true,
                              [](const EffectValues& v) {
                                  const float sign = v.unsignedWhole("u_Invert") ? -1 : 1;
                                  return EffectArguments{
                                      {},
                                      {"vol", QString::asprintf("%.02f", double(sign * v.real("f_Factor")))}};
                              }};
        QVERIFY(declarationProblems(row).isEmpty());
        Document* d = openPattern();
        QVERIFY(d);
        const QString before = d->track().s_WAV_File_Path;
        QString title, startLabel, movedLabel, refused;
        gui::whenModal<EffectDialog>("Window_Volume", [&](EffectDialog* dialog) {
            title = dialog->windowTitle();
            auto* factor = dialog->findChild<QSlider*>("sliderFactor");
            auto* label = dialog->findChild<QLabel*>("labelFactor");
            startLabel = label->text();
            factor->setValue(0);
            const auto alert = gui::answerAlert();
            dialog->OnOK(); // 0 is refused and the dialog stays
            refused = alert->informativeText;
            factor->setValue(150);
            movedLabel = label->text();
            dialog->findChild<QCheckBox*>("checkInvert")->setChecked(true);
            dialog->OnOK();
        });
        QVERIFY(edit(d, [&] { d->effectActions().runEffect(row, false); }));
        QCOMPARE(title, QString("Volume Test"));
        QCOMPARE(startLabel, QString("0.50"));
        QCOMPARE(refused, QString("Factor invalid."));
        QCOMPARE(movedLabel, QString("1.50"));
        // sox was given vol -1.50: every sample is the original's, inverted and half again as loud.
        const std::vector<short> original = frames(before), result = frames(d->track().s_WAV_File_Path);
        QCOMPARE(result.size(), original.size());
        for (std::size_t i : {std::size_t(2000), std::size_t(2011), std::size_t(50000)}) {
            QVERIFY(std::abs(original[i]) > 1000);
            QVERIFY2(std::abs(result[i] + 1.5 * original[i]) <= 3, qPrintable(QString::number(result[i])));
        }
        QCOMPARE(d->history().versions().last().label, QString("Volume"));
    }
};

QTEST_MAIN(tst_EffectPipeline)
#include "tst_effectpipeline.moc"
