#include "plans/PlanRunner.h"
#include "text/Mnemonics.h"
#include "timeline/ZoomRules.h"
#include "ui/edit/EditingFixture.h"
#include "windows/ShortcutsWindow.h"

#include <QAction>
#include <QHash>
#include <QLabel>
#include <QMap>
#include <QMenu>
#include <QMenuBar>
#include <QScrollArea>
#include <QScrollBar>
#include <QSet>
#include <QTableWidget>
#include <QWheelEvent>

namespace {
QString plain(QString text) {
    return text.remove(u'&').remove(QStringLiteral("…"));
}

// The menu-bar action at `path` ("Edit", "Paste At", "Paste at End of
// Selection"), as a user finds it by its texts; null when there is none.
QAction* menuItem(Document* d, const QStringList& path) {
    QList<QAction*> actions = d->menuBar()->actions();
    QAction* found = nullptr;
    for (const QString& step : path) {
        found = nullptr;
        for (QAction* action : actions)
            if (plain(action->text()) == step)
                found = action;
        if (!found)
            return nullptr;
        if (QMenu* menu = found->menu()) {
            emit menu->aboutToShow(); // as opening it does: the effects menu fills itself
            actions = menu->actions();
        }
    }
    return found;
}
} // namespace

// Every command of the toolbar's pop-up menus in the menu bar, as the same
// actions, available only when the window can take them.
class tst_MenuBar : public EditingFixture {
    Q_OBJECT

    // Triggers a menu-bar item as a click on it does, if it is enabled.
    bool choose(Document* d, const QStringList& path) {
        QAction* item = menuItem(d, path);
        if (!item || !item->isEnabled())
            return false;
        item->trigger();
        return true;
    }

private slots:
    void initTestCase() { startWithPattern(); }
    void cleanup() { closeAll(); }

    void theMenuBarHoldsThePopupMenusCommands() {
        Document* d = openPattern();
        QVERIFY(d);
        QStringList titles;
        for (QAction* menu : d->menuBar()->actions())
            titles << plain(menu->text());
        QCOMPARE(titles, QStringList({"File", "Edit", "Play", "Effects", "View", "Tracks", "Help"}));
        QCOMPARE(d->menuPasteAt->actions(), d->editingActions().popupMenuPaste->actions());
        QCOMPARE(d->menuPasteMixing->actions(), d->editingActions().popupMenuPasteMixing->actions());
        QCOMPARE(d->menuSilence->actions(), d->editingActions().popupMenuSilence->actions());
        QCOMPARE(d->menuPlay->actions().mid(0, 3), d->transportActions().popupMenuPlay->actions());
        QCOMPARE(menuItem(d, {"Effects"})->menu(), d->effectActions().popupMenuEffects);
        QCOMPARE(menuItem(d, {"Tracks", "Split into Parts"})->menu(), d->splitActions().popupMenuSplit);
        QCOMPARE(menuItem(d, {"View", "Zoom In"}), d->btnZoomPlus);
        QVERIFY(menuItem(d, {"Effects", "Echo", "Selection"}));
        QVERIFY(menuItem(d, {"Effects", "Noise Reduction"}));
        QCOMPARE(menuItem(d, {"Edit", "Select All"})->shortcut(), QKeySequence(QKeySequence::SelectAll));
        for (const QString item : {"Pause", "Stop", "Record"})
            QVERIFY2(menuItem(d, {"Play", item}), qPrintable(item));
        // Pause and Stop follow the toolbar: nothing plays yet.
        QVERIFY(!menuItem(d, {"Play", "Pause"})->isEnabled());
        QVERIFY(menuItem(d, {"Play", "Record"})->isEnabled());
        QVERIFY(menuItem(d, {"Play", "Play from Start"})->isEnabled());
    }

    void nothingIsOfferedBeforeATrackIsLoadedOrWhileAPlanRuns() {
        m_app->u_Open_New_Document = 0;
        Document* fresh = m_app->newDocument();
        for (const QStringList& path : QList<QStringList>{{"Edit", "Paste At"},
                                                          {"Edit", "Silence"},
                                                          {"Edit", "Select All"},
                                                          {"Effects"},
                                                          {"Tracks", "Split into Parts"},
                                                          {"Play", "Play from Start"}})
            QVERIFY2(!menuItem(fresh, path)->isEnabled(), qPrintable(path.join(" ▸ ")));
        QSignalSpy loaded(fresh, &Document::loaded);
        QVERIFY(loaded.wait(20000));
        QVERIFY(gui::waitIdle(*m_app));
        QVERIFY(menuItem(fresh, {"Edit", "Silence"})->isEnabled());

        // A second of ffmpeg in the runner: every command waits for it.
        m_app->runner().submit(
            {{step::Run{Tool::FFmpeg, {"-re", "-f", "lavfi", "-i", "anullsrc=d=1", "-f", "null", "-"}}}},
            nullptr, {});
        QVERIFY(m_app->runner().isBusy());
        for (const QStringList& path : QList<QStringList>{{"Edit", "Paste At"},
                                                          {"Effects"},
                                                          {"Tracks", "Split into Parts"},
                                                          {"Play", "Play from Start"}})
            QVERIFY2(!menuItem(fresh, path)->isEnabled(), qPrintable(path.join(" ▸ ")));
        QVERIFY(gui::waitIdle(*m_app));
        QVERIFY(menuItem(fresh, {"Effects"})->isEnabled());
        QVERIFY(menuItem(fresh, {"Play", "Play from Start"})->isEnabled());
    }

    void selectAllThenDeleteLeavesAnEmptyVersion() {
        Document* d = openPattern();
        QVERIFY(d);
        setMarkers(d, 20, 50, 3);
        d->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(d));
        QTest::keyClick(d, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(d->track().f_Selection_Start, 0.0f);
        QCOMPARE(d->track().f_Selection_End, 100.0f);
        QVERIFY(d->labelSelection->text().contains("00:00:00.00 – 00:00:10.00"));
        QVERIFY(edit(d, [&] { QTest::keyClick(d, Qt::Key_Delete); }));
        QCOMPARE(d->history().u_array_WAV_Files_Length(), 2u);
        const fixtures::WavInfo left = fixtures::wavInfo(d->track().s_WAV_File_Path);
        QVERIFY(left.ok);
        QCOMPARE(left.frames, qint64(0));
    }

    // The keys, sent to a real window, move the play position and the selection.
    void theKeysMoveTheMarkers() {
        Document* d = openPattern(); // 10 s
        QVERIFY(d);
        setMarkers(d, 20, 50, 3);
        d->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(d));
        const auto press = [d](Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
            QTest::keyClick(d, key, modifiers);
            return d->track().f_Audio_Position;
        };
        QCOMPARE(press(Qt::Key_Home), 0.0f);
        QCOMPARE(press(Qt::Key_End), 10.0f);
        QCOMPARE(press(Qt::Key_Left), 9.0f);
        QCOMPARE(press(Qt::Key_Left), 8.0f);
        QCOMPARE(press(Qt::Key_Right), 9.0f);
        QCOMPARE(press(Qt::Key_Left, Qt::ShiftModifier), 8.0f);
        QCOMPARE(press(Qt::Key_Right, Qt::ShiftModifier), 9.0f);
        QCOMPARE(press(Qt::Key_Right), 10.0f);
        QCOMPARE(press(Qt::Key_Right), 10.0f);
        QCOMPARE(press(Qt::Key_Home), 0.0f);
        QCOMPARE(press(Qt::Key_Left), 0.0f);
        QVERIFY(d->labelPosition->text().contains("00:00:00.00"));

        QCOMPARE(press(Qt::Key_Right), 1.0f);
        press(Qt::Key_BracketLeft);
        QCOMPARE(d->track().f_Selection_Start, 10.0f);
        QCOMPARE(d->track().f_Selection_End, 50.0f);
        press(Qt::Key_Right);
        press(Qt::Key_Right);
        press(Qt::Key_BracketRight);
        QCOMPARE(d->track().f_Selection_Start, 10.0f);
        QCOMPARE(d->track().f_Selection_End, 30.0f);
        QVERIFY(d->labelSelection->text().contains("00:00:01.00 – 00:00:03.00"));
        press(Qt::Key_Home, Qt::ShiftModifier);
        QCOMPARE(d->track().f_Selection_Start, 0.0f);
        press(Qt::Key_End, Qt::ShiftModifier);
        QCOMPARE(d->track().f_Selection_End, 100.0f);
        QCOMPARE(d->track().f_Audio_Position, 3.0f);
    }

    // Ctrl and the wheel zoom around the pointer: the time under it stays
    // under it, within a pixel, in and out again.
    void ctrlWheelZoomsAroundThePointer() {
        Document* d = openPattern();
        QVERIFY(d);
        d->resize(1000, 380);
        QVERIFY(QTest::qWaitForWindowExposed(d));
        QScrollArea* area = d->scrollviewAudioPlot;
        const auto contentXUnder = [&](int x) { return double(area->horizontalScrollBar()->value() + x); };
        // As the wheel over the waveform reaches the scroll area's viewport,
        // which the waveform leaves it to.
        const auto wheel = [&](int x, int steps, Qt::KeyboardModifiers modifiers = Qt::ControlModifier) {
            const QPoint local(x, 100);
            QWheelEvent event(QPointF(local), QPointF(area->viewport()->mapToGlobal(local)), QPoint(),
                              QPoint(0, 120 * steps), Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
            QApplication::sendEvent(area->viewport(), &event);
        };
        struct Step {
            int x, steps;
            quint64 factor;
        };
        for (const Step& step : {Step{300, 1, 2}, Step{700, 1, 3}, Step{120, 1, 4}, Step{850, -1, 3},
                                 Step{400, -1, 2}, Step{400, -1, 1}}) {
            const double before = contentXUnder(step.x) / d->viewTimePlusAudioPlot->width();
            wheel(step.x, step.steps);
            QCOMPARE(d->zoomActions().u_Zoom_Factor, step.factor);
            QCOMPARE(d->viewTimePlusAudioPlot->width(), int(step.factor) * area->viewport()->width());
            const double now = contentXUnder(step.x);
            const double kept = before * d->viewTimePlusAudioPlot->width();
            // Where the scroll bar lets it: at the far ends it stops.
            const int most = area->horizontalScrollBar()->maximum();
            if (area->horizontalScrollBar()->value() > 0 && area->horizontalScrollBar()->value() < most)
                QVERIFY2(std::abs(now - kept) <= 1.0,
                         qPrintable(QString("%1 against %2").arg(now).arg(kept)));
        }
        // Without Ctrl the wheel does not zoom.
        wheel(300, 1, Qt::NoModifier);
        QCOMPARE(d->zoomActions().u_Zoom_Factor, 1u);

        // It scrolls a zoomed track sideways instead: down (towards the user)
        // is later in the track, a notch as many lines as the desktop says.
        d->zoomActions().setZoomFactor(4);
        QScrollBar* bar = area->horizontalScrollBar();
        bar->setValue(1000);
        const int notch = QApplication::wheelScrollLines() * bar->singleStep();
        QVERIFY(notch > 0);
        wheel(300, -2, Qt::NoModifier);
        QCOMPARE(bar->value(), 1000 + 2 * notch);
        wheel(300, 1, Qt::NoModifier);
        QCOMPARE(bar->value(), 1000 + notch);
        QCOMPARE(d->zoomActions().u_Zoom_Factor, 4u);
    }

    void zoomToSelectionShowsTheWholeSelection() {
        Document* d = openPattern();
        QVERIFY(d);
        d->resize(1000, 380);
        QVERIFY(QTest::qWaitForWindowExposed(d));
        setMarkers(d, 40, 45, 0);
        QVERIFY(choose(d, {"View", "Zoom to Selection"}));
        QCOMPARE(d->zoomActions().u_Zoom_Factor, 10u);
        const int visible = d->scrollviewAudioPlot->viewport()->width();
        const int offset = d->scrollviewAudioPlot->horizontalScrollBar()->value();
        const double start = 0.40 * d->viewAudioPlot->width(), end = 0.45 * d->viewAudioPlot->width();
        QVERIFY2(offset <= start && end <= offset + visible, qPrintable(QString::number(offset)));
        QVERIFY(end - start >= visible / 2.0);
        QVERIFY(choose(d, {"View", "Zoom to Fit"}));
        QCOMPARE(d->zoomActions().u_Zoom_Factor, 1u);
        QCOMPARE(d->scrollviewAudioPlot->horizontalScrollBar()->value(), 0);
        setMarkers(d, 30, 30, 0); // nothing selected: nothing changes
        QVERIFY(choose(d, {"View", "Zoom to Selection"}));
        QCOMPARE(d->zoomActions().u_Zoom_Factor, 1u);
        // A stretch finer than the deepest zoom shows it at that zoom.
        setMarkers(d, 40, 40.0001f, 0);
        QVERIFY(choose(d, {"View", "Zoom to Selection"}));
        QCOMPARE(d->zoomActions().u_Zoom_Factor, quint64(zoom::largestFactor(visible)));
        QCOMPARE(d->viewAudioPlot->width(), zoom::largestFactor(visible) * visible);
    }

    // Ctrl+V with the pointer outside the window opens the paste menu at the
    // play marker, not far off at the pointer.
    void aPopupOpenedByAKeyOpensAtThePlayMarker() {
        Document* d = openPattern();
        QVERIFY(d);
        QVERIFY(copyClip(d));
        d->move(0, 0);
        d->resize(1000, 380);
        d->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(d));
        setMarkers(d, 20, 50, 3); // 3 s of 10: 30 % across
        QCursor::setPos(5000, 5000);
        QTest::keyClick(d, Qt::Key_V, Qt::ControlModifier);
        QTRY_VERIFY(QApplication::activePopupWidget());
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QCOMPARE(menu, d->editingActions().popupMenuPaste);
        const QPoint marker = d->viewAudioPlot->mapToGlobal(QPoint(int(0.3 * d->viewAudioPlot->width()), 0));
        QVERIFY2(std::abs(menu->geometry().left() - marker.x()) <= 3,
                 qPrintable(QString("%1 against %2").arg(menu->geometry().left()).arg(marker.x())));
        const QRect waveform(d->viewAudioPlot->mapToGlobal(QPoint(0, 0)), d->viewAudioPlot->size());
        QVERIFY(waveform.contains(menu->geometry().topLeft()));
        menu->close();
        // With the pointer over the window, the menu opens at the pointer.
        const QPoint inside = d->mapToGlobal(QPoint(300, 200));
        QCursor::setPos(inside);
        QTest::keyClick(d, Qt::Key_V, Qt::ControlModifier);
        QTRY_VERIFY(QApplication::activePopupWidget());
        QCOMPARE(QApplication::activePopupWidget()->geometry().topLeft(), inside);
        QApplication::activePopupWidget()->close();
    }

    // Every item of every menu, the menu bar's and the toolbar's pop-ups, has
    // a mnemonic; no letter serves two items of one menu, or more than two
    // where the menu has more items than the alphabet has letters.
    void everyMenuItemHasALetterOfItsOwn() {
        Document* d = openPattern();
        QVERIFY(d);
        QStringList problems;
        QSet<QMenu*> walked;
        const auto check = [&](const QString& where, const QList<QAction*>& actions, int perLetter) {
            QHash<QChar, QStringList> items;
            for (QAction* action : actions) {
                if (action->isSeparator())
                    continue;
                const QChar letter = mnemonicOf(action->text());
                if (letter.isNull())
                    problems << where + " ▸ " + action->text() + ": no letter";
                else
                    items[letter] << action->text();
            }
            for (auto it = items.cbegin(); it != items.cend(); ++it)
                if (it.value().size() > perLetter)
                    problems << where + ": " + it.value().join(", ") + " share " + it.key();
        };
        std::function<void(QMenu*, const QString&)> walk = [&](QMenu* menu, const QString& where) {
            if (walked.contains(menu))
                return;
            walked.insert(menu);
            emit menu->aboutToShow(); // as opening it does: the effects menu fills itself
            const QList<QAction*> actions = menu->actions();
            check(where, actions, actions.size() > 26 ? 2 : 1);
            for (QAction* action : actions)
                if (action->menu())
                    walk(action->menu(), where + " ▸ " + withoutMnemonic(action->text()));
        };
        check("menu bar", d->menuBar()->actions(), 1);
        for (QAction* top : d->menuBar()->actions())
            walk(top->menu(), withoutMnemonic(top->text()));
        for (QMenu* popup : d->findChildren<QMenu*>())
            walk(popup, "pop-up " + withoutMnemonic(popup->title()));
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join("\n")));
        // Every effect's submenu was walked, and the toolbar's tools menu.
        QVERIFY(walked.size() > 31 + 7);
        QVERIFY(walked.contains(d->editingActions().popupMenuTools));
        QVERIFY(!mnemonicOf(menuItem(d, {"Tracks", "Split into Parts"})->text()).isNull());
        // Texts are shown as they were: the letters only add an underline.
        QCOMPARE(withoutMnemonic(menuItem(d, {"Effects", "Reverse", "Entire Track"})->text()),
                 QString("Entire Track"));
    }

    // As a keyboard user reaches an effect: Alt+C opens Effects, Reverse's
    // letter opens its submenu at Entire Track, and Enter applies it.
    void theKeyboardReachesReverseOfTheEntireTrack() {
        Document* d = openPattern();
        QVERIFY(d);
        const std::vector<short> before = frames(d->track().s_WAV_File_Path);
        d->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(d));
        QMenu* effects = d->effectActions().popupMenuEffects;
        QTest::keyClick(d, Qt::Key_C, Qt::AltModifier);
        QTRY_COMPARE(QApplication::activePopupWidget(), effects);
        QAction* reverse = menuItem(d, {"Effects", "Reverse"});
        QVERIFY(reverse);
        const QChar letter = mnemonicOf(reverse->text());
        QCOMPARE(letter, QChar(u'v')); // Re&verse, the README's example
        QTest::keyClicks(effects, QString(letter));
        QTRY_COMPARE(QApplication::activePopupWidget(), reverse->menu());
        QCOMPARE(withoutMnemonic(reverse->menu()->activeAction()->text()), QString("Entire Track"));
        QVERIFY(edit(d, [&] { QTest::keyClick(reverse->menu(), Qt::Key_Return); }));
        QCOMPARE(d->history().versions().last().label, QString("Reverse"));
        const std::vector<short> after = frames(d->track().s_WAV_File_Path);
        QCOMPARE(after.size(), before.size());
        // Frame for frame from the end: the pattern's stereo pairs, reversed.
        const size_t count = before.size() / 2;
        for (size_t i = 0; i < count; i += 997)
            QVERIFY2(after[2 * i] == before[2 * (count - 1 - i)] &&
                         after[2 * i + 1] == before[2 * (count - 1 - i) + 1],
                     qPrintable(QString::number(i)));
    }

    // A letter two effects share opens the first one's submenu; Left goes
    // back, and the same letter then opens the second's.
    void aSharedLetterReachesBothOfItsEffects() {
        Document* d = openPattern();
        QVERIFY(d);
        d->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(d));
        QMenu* effects = d->effectActions().popupMenuEffects;
        QTest::keyClick(d, Qt::Key_C, Qt::AltModifier);
        QTRY_COMPARE(QApplication::activePopupWidget(), effects);
        QList<QAction*> sharing;
        for (QAction* action : effects->actions())
            if (action->menu() && mnemonicOf(action->text()) == u'c')
                sharing << action;
        QCOMPARE(sharing.size(), 2);
        QTest::keyClicks(effects, "c");
        QTRY_COMPARE(QApplication::activePopupWidget(), sharing[0]->menu());
        QTest::keyClick(sharing[0]->menu(), Qt::Key_Left);
        QTRY_COMPARE(QApplication::activePopupWidget(), effects);
        QTest::keyClicks(effects, "c");
        QTRY_COMPARE(QApplication::activePopupWidget(), sharing[1]->menu());
        QCOMPARE(effects->activeAction(), sharing[1]);
        while (QWidget* popup = QApplication::activePopupWidget())
            popup->close();
    }

    // No key is given to two actions of a window.
    void noTwoActionsShareAKey() {
        Document* d = openPattern();
        QVERIFY(d);
        QMap<QKeySequence, QString> owners;
        QStringList clashes;
        QSet<QAction*> seen;
        QList<QAction*> actions = d->findChildren<QAction*>() + d->actions();
        for (QAction* top : d->menuBar()->actions())
            if (top->menu())
                actions += top->menu()->findChildren<QAction*>() + top->menu()->actions();
        for (QAction* action : std::as_const(actions)) {
            if (seen.contains(action))
                continue;
            seen.insert(action);
            for (const QKeySequence& key : action->shortcuts()) {
                const QString name = plain(action->text());
                if (owners.contains(key) && owners.value(key) != name)
                    clashes << QString("%1: %2 and %3").arg(key.toString(), owners.value(key), name);
                owners.insert(key, name);
            }
        }
        QVERIFY2(clashes.isEmpty(), qPrintable(clashes.join("; ")));
        QVERIFY(owners.size() > 20);
        for (const char* key : {"Home", "End", "Left", "Right", "Shift+Left", "Shift+Home", "[", "]",
                                "Ctrl+A", "Space", "R", "Ctrl+J", "Del"})
            QVERIFY2(owners.contains(QKeySequence(key)), key);
    }

    // Help ▸ Keyboard Shortcuts lists every action that has a key, made from
    // the actions themselves.
    void theShortcutWindowListsEveryKey() {
        Document* d = openPattern();
        QVERIFY(d);
        const QList<ShortcutRow> rows = shortcutRows(d);
        QMap<QString, QString> listed;
        for (const ShortcutRow& row : rows)
            listed.insert(row.command, row.keys);
        QCOMPARE(listed.size(), rows.size()); // each once
        QCOMPARE(listed.value("Edit ▸ Select All"), QKeySequence(QKeySequence::SelectAll).toString());
        QCOMPARE(listed.value("Play ▸ Go to Start"), QString("Home"));
        QCOMPARE(listed.value("Edit ▸ Start Selection at Play Position"), QString("["));
        QCOMPARE(listed.value("Toolbar ▸ Record"), QString("R"));
        QCOMPARE(listed.value("Play or Pause"), QString("Space"));
        QCOMPARE(listed.value("Cancel the Running Operation"), QString("Esc"));
        QCOMPARE(listed.value("Tracks ▸ Join Open Tracks…"), QString("Ctrl+J"));
        // Every key of every action of the window is in the list.
        QSet<QString> keys;
        for (const ShortcutRow& row : rows)
            for (const QString& key : row.keys.split(", "))
                keys.insert(key);
        QList<QAction*> actions = d->findChildren<QAction*>() + d->actions();
        for (QAction* top : d->menuBar()->actions())
            if (top->menu())
                actions += top->menu()->findChildren<QAction*>() + top->menu()->actions();
        for (QAction* action : std::as_const(actions))
            for (const QKeySequence& key : action->shortcuts())
                QVERIFY2(keys.contains(key.toString(QKeySequence::NativeText)), qPrintable(key.toString()));

        // The window itself, from the Help menu.
        int shown = -1;
        QString title;
        gui::whenModal<QDialog>([&](QDialog* dialog) {
            title = dialog->windowTitle();
            shown = dialog->findChild<QTableWidget*>()->rowCount();
            dialog->reject();
        });
        d->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(d));
        QVERIFY(choose(d, {"Help", "Keyboard Shortcuts"}));
        QCOMPARE(title, QString("Keyboard Shortcuts"));
        QCOMPARE(shown, int(rows.size()));
    }

    // One real run of each kind, chosen from the menu bar.
    void theMenuBarsCommandsRunForReal() {
        Document* d = openPattern();
        QVERIFY(d);
        QVERIFY(copyClip(d)); // 2–5 s: tone for two seconds, then one of silence

        setMarkers(d, 20, 50, 0);
        QVERIFY(edit(d, [&] { QVERIFY(choose(d, {"Edit", "Paste At", "Paste at End of Selection"})); }));
        checkResult(d, 1, 13, {{0, 4, true}, {4, 5, false}, {5, 7, true}, {7, 9, false}, {9, 13, true}});
        waitPastEveryStamp(m_app->session().s_Output_Folder);

        gui::whenModal<Window_Silence_Insert>(
            [](Window_Silence_Insert* dialog) { QMetaObject::invokeMethod(dialog, "OnOK"); });
        QVERIFY(edit(d, [&] { QVERIFY(choose(d, {"Edit", "Silence", "Insert Silence at Start"})); }));
        checkResult(d, 2, 14, {{0, 1, false}, {1, 5, true}, {5, 6, false}, {6, 8, true}});
        waitPastEveryStamp(m_app->session().s_Output_Folder);

        // Reverse the selection 5–20 % (0.7–2.8 s of the 14: 0.3 s of the
        // inserted silence, then tone): the tone comes first, the silence last,
        // and the rest stays where it was.
        setMarkers(d, 5, 20, 0);
        const qsizetype runs = m_app->runner().runs().size();
        QVERIFY(edit(d, [&] { QVERIFY(choose(d, {"Effects", "Reverse", "Selection"})); }));
        QCOMPARE(d->history().u_array_WAV_Files_Length(), 4u);
        const QList<ToolRun> made = m_app->runner().runs().mid(runs);
        QVERIFY(std::any_of(made.cbegin(), made.cend(),
                            [](const ToolRun& run) { return run.arguments.contains("reverse"); }));
        QVERIFY(std::abs(fixtures::wavInfo(d->track().s_WAV_File_Path).seconds() - 14) < 0.03);
        QVERIFY(fixtures::rms(d->track().s_WAV_File_Path, 0.05, 0.65) < 0.001); // untouched
        QVERIFY(fixtures::rms(d->track().s_WAV_File_Path, 0.75, 2.45) > 0.05);  // the tone, now first
        QVERIFY(fixtures::rms(d->track().s_WAV_File_Path, 2.55, 2.75) < 0.001); // the silence, now last
        QVERIFY(fixtures::rms(d->track().s_WAV_File_Path, 2.9, 4.9) > 0.05);    // untouched
        waitPastEveryStamp(m_app->session().s_Output_Folder);

        // Split at the play position, 7 s of the 14: two windows.
        d->track().f_Audio_Position = 7;
        const qsizetype windows = m_app->documents().size();
        QSignalSpy handed(d, &Document::splitHandedOver);
        QVERIFY(choose(d, {"Tracks", "Split into Parts", "Split at Play Position"}));
        QVERIFY(handed.wait(30000));
        QTRY_COMPARE_WITH_TIMEOUT(m_app->documents().size(), windows + 2, 20000);
        QVERIFY(gui::waitIdle(*m_app));
    }
};

QTEST_MAIN(tst_MenuBar)
#include "tst_menubar.moc"
