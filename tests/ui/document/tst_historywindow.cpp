#include "document/HistoryWindow.h"
#include "effects/EffectDialogs.h"
#include "history/VersionHistory.h"
#include "plans/PlanRunner.h"
#include "timeline/View_Time_Rule.h"
#include "ui/edit/EditingFixture.h"
#include "windows/ShortcutsWindow.h"

#include <QMenu>
#include <QMenuBar>
#include <QTreeWidget>

namespace {
// What a window shows of its current version.
struct Shown {
    QString path;
    QString title;
    qint64 seconds = 0;
    bool operator==(const Shown&) const = default;
};
Shown shown(const Document* d) {
    return {d->track().s_WAV_File_Path, d->windowTitle(), d->track().i_Audio_Duration_Seconds};
}
char* toString(const Shown& s) {
    return QTest::toString(QString("%1 “%2” %3 s").arg(s.path, s.title).arg(s.seconds));
}

QStringList column(HistoryWindow* w, int column) {
    QStringList texts;
    for (int i = 0; i < w->tableVersions->topLevelItemCount(); ++i)
        texts << w->tableVersions->topLevelItem(i)->text(column);
    return texts;
}
QStringList labels(HistoryWindow* w) {
    return column(w, HistoryWindow::ColumnLabel);
}

// The rows marked current: the marker, in bold.
QList<int> marked(HistoryWindow* w) {
    QList<int> rows;
    for (int i = 0; i < w->tableVersions->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* item = w->tableVersions->topLevelItem(i);
        if (item->text(HistoryWindow::ColumnMarker) == QString("▶") &&
            item->font(HistoryWindow::ColumnLabel).bold())
            rows << i;
        else if (!item->text(HistoryWindow::ColumnMarker).isEmpty() ||
                 item->font(HistoryWindow::ColumnLabel).bold())
            rows << -1 - i; // half marked: never right
    }
    return rows;
}
} // namespace

// Edit ▸ History…: every version of a window's track with its label and the
// time it was made, the current one marked; choosing a row moves there as
// undoing or redoing does.
class tst_HistoryWindow : public EditingFixture {
    Q_OBJECT

    QString m_speech; // the pattern as an MP3 file, as a user would open it

    Document* openSpeech() {
        gui::answerFileDialog(m_speech);
        m_app->openDocument();
        Document* d = m_app->documents().last();
        QSignalSpy loaded(d, &Document::loaded);
        if (!loaded.wait(30000) || !gui::waitIdle(*m_app))
            return nullptr;
        waitPastEveryStamp(m_app->session().s_Output_Folder);
        return d;
    }

    HistoryWindow* openHistory(Document* d) {
        d->activateWindow();
        d->actionHistory->trigger();
        auto* w = d->findChild<HistoryWindow*>();
        return w && QTest::qWaitForWindowExposed(w) ? w : nullptr;
    }

    // Waits until the reload a move started has finished and the runner rests.
    bool waitReloaded(Document* d, const std::function<void()>& move) {
        QSignalSpy loaded(d, &Document::loaded);
        move();
        return loaded.wait(20000) && gui::waitIdle(*m_app);
    }

    // A click on the row, as the user chooses it.
    bool clickRow(Document* d, HistoryWindow* w, int row) {
        QTreeWidgetItem* item = w->tableVersions->topLevelItem(row);
        if (!item || !w->tableVersions->isEnabled())
            return false;
        const QRect rect = w->tableVersions->visualItemRect(item);
        return waitReloaded(
            d, [&] { QTest::mouseClick(w->tableVersions->viewport(), Qt::LeftButton, {}, rect.center()); });
    }

    bool echoOnSelection(Document* d) {
        d->effectActions().fillEffectsMenu();
        auto* item = d->effectActions().popupMenuEffects->findChild<QAction*>("OnPopupEchoSelection");
        if (!item)
            return false;
        gui::whenModal<EffectDialog>([](EffectDialog* dialog) { dialog->OnOK(); });
        const auto refused = gui::answerAlert();
        const bool adopted = edit(d, [&] { item->trigger(); });
        refused->stop = true;
        return adopted && !refused->shown;
    }

private slots:
    void initTestCase() {
        startWithPattern();
        m_speech = m_root.filePath("speech.mp3");
        QCOMPARE(fixtures::run("ffmpeg", {"-v", "error", "-i", m_pattern, "-b:a", "128k", m_speech}), 0);
    }
    void cleanup() { closeAll(); }

    // Open, cut, echo on the selection, undo: three labelled versions, the
    // second current. Choosing the third is a redo, choosing the first two undos.
    void listsTheVersionsAndMovesAsUndoAndRedoDo() {
        Document* d = openSpeech();
        QVERIFY(d);
        HistoryWindow* w = openHistory(d);
        QVERIFY(w);
        QCOMPARE(labels(w), QStringList({"Opened speech.mp3"}));
        QCOMPARE(marked(w), QList<int>({0}));

        setMarkers(d, 20, 50, 0);
        QVERIFY(edit(d, [&] { d->editingActions().Operation_Cut(); }));
        waitPastEveryStamp(m_app->session().s_Output_Folder);
        setMarkers(d, 0, 50, 0);
        QVERIFY(echoOnSelection(d));
        QCOMPARE(labels(w), QStringList({"Opened speech.mp3", "Cut", "Echo on selection"}));
        QCOMPARE(marked(w), QList<int>({2}));
        QVERIFY(waitReloaded(d, [&] { d->Operation_Undo(); }));
        QCOMPARE(labels(w), QStringList({"Opened speech.mp3", "Cut", "Echo on selection"}));
        QCOMPARE(marked(w), QList<int>({1}));
        const Shown second = shown(d);
        QCOMPARE(second.seconds, qint64(7));

        // What a real redo gives, then back.
        QVERIFY(waitReloaded(d, [&] { d->Operation_Redo(); }));
        const Shown third = shown(d);
        QCOMPARE(third.seconds, qint64(8)); // the echo's second more
        QVERIFY(waitReloaded(d, [&] { d->Operation_Undo(); }));
        QCOMPARE(shown(d), second);

        // Choosing the third row equals that redo.
        QVERIFY(clickRow(d, w, 2));
        QCOMPARE(shown(d), third);
        QCOMPARE(d->history().u_array_WAV_Files_Position(), 2u);
        QCOMPARE(marked(w), QList<int>({2}));

        // Two undos from there, then back to the third by two redos.
        QVERIFY(waitReloaded(d, [&] { d->Operation_Undo(); }));
        QVERIFY(waitReloaded(d, [&] { d->Operation_Undo(); }));
        const Shown first = shown(d);
        QCOMPARE(first.seconds, qint64(10));
        QVERIFY(waitReloaded(d, [&] { d->Operation_Redo(); }));
        QVERIFY(waitReloaded(d, [&] { d->Operation_Redo(); }));
        QCOMPARE(shown(d), third);

        // Choosing the first row equals the two undos.
        QVERIFY(clickRow(d, w, 0));
        QCOMPARE(shown(d), first);
        QCOMPARE(d->history().u_array_WAV_Files_Position(), 0u);
        QCOMPARE(marked(w), QList<int>({0}));
        QCOMPARE(d->track().s_WAV_File_URL, versionUrlText(first.path, m_app->session().s_Output_Folder,
                                                           m_app->session().sSilenceWavURL));
        QCOMPARE(d->viewTimeRule->i_Audio_Duration_Seconds, first.seconds);

        // Choosing the current row reloads it, as an undo at the oldest version does.
        QVERIFY(clickRow(d, w, 0));
        QCOMPARE(shown(d), first);
        // The list itself never changes by moving.
        QCOMPARE(labels(w), QStringList({"Opened speech.mp3", "Cut", "Echo on selection"}));
        QCOMPARE(d->history().u_array_WAV_Files_Length(), 3u);

        // Enter on a row chooses it too, and the window stays open for the next.
        w->tableVersions->setCurrentItem(w->tableVersions->topLevelItem(1));
        w->tableVersions->setFocus();
        QVERIFY(waitReloaded(d, [&] { QTest::keyClick(w->tableVersions, Qt::Key_Return); }));
        QCOMPARE(shown(d), second);
        QCOMPARE(marked(w), QList<int>({1}));
        QTest::qWait(100);
        QVERIFY(w->isVisible());
        QVERIFY(waitReloaded(d, [&] {
            w->tableVersions->setCurrentItem(w->tableVersions->topLevelItem(0));
            QTest::keyClick(w->tableVersions, Qt::Key_Enter);
        }));
        QCOMPARE(shown(d), first);
        QTest::qWait(100);
        QVERIFY(w->isVisible());
    }

    void showsWhenEachVersionWasMade() {
        const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
        Document* d = openSpeech();
        QVERIFY(d);
        setMarkers(d, 20, 50, 0);
        QVERIFY(edit(d, [&] { d->editingActions().Operation_Delete(); }));
        const QDateTime after = QDateTime::currentDateTime().addSecs(1);
        HistoryWindow* w = openHistory(d);
        QVERIFY(w);
        const QStringList times = column(w, HistoryWindow::ColumnMade);
        QCOMPARE(times.size(), 2);
        const QList<Version>& versions = d->history().versions();
        for (int i = 0; i < 2; ++i) {
            QVERIFY2(QRegularExpression("^\\d\\d:\\d\\d:\\d\\d$").match(times[i]).hasMatch(),
                     qPrintable(times[i]));
            QCOMPARE(times[i], versions[i].made.toString("HH:mm:ss"));
            QVERIFY(versions[i].made >= before && versions[i].made <= after);
        }
        QVERIFY(versions[0].made < versions[1].made); // a second apart at least
        QCOMPARE(labels(w), QStringList({"Opened speech.mp3", "Delete"}));
        QCOMPARE(w->tableVersions->headerItem()->text(HistoryWindow::ColumnLabel), QString("Version"));
        QCOMPARE(w->tableVersions->headerItem()->text(HistoryWindow::ColumnMade), QString("Made"));
    }

    // Open while the track changes: a new edit adds its row, an edit after an
    // undo drops the tail, a load starts the list again.
    void followsEveryChangeWhileOpen() {
        Document* d = openSpeech();
        QVERIFY(d);
        HistoryWindow* w = openHistory(d);
        QVERIFY(w);
        QCOMPARE(w->windowTitle(), "History — " + d->windowTitle());

        setMarkers(d, 20, 50, 0);
        QVERIFY(edit(d, [&] { d->editingActions().Operation_Delete(); }));
        QCOMPARE(labels(w), QStringList({"Opened speech.mp3", "Delete"}));
        QCOMPARE(marked(w), QList<int>({1}));
        QCOMPARE(w->windowTitle(), "History — " + d->windowTitle()); // the new version's name
        waitPastEveryStamp(m_app->session().s_Output_Folder);

        QVERIFY(waitReloaded(d, [&] { d->Operation_Undo(); }));
        QCOMPARE(marked(w), QList<int>({0}));
        setMarkers(d, 0, 10, 0);
        QVERIFY(edit(d, [&] { d->editingActions().OnPopupSilenceSelection(); }));
        QCOMPARE(labels(w), QStringList({"Opened speech.mp3", "Silence the selection"}));
        QCOMPARE(marked(w), QList<int>({1}));
        waitPastEveryStamp(m_app->session().s_Output_Folder);

        // Copy, then paste at the end: the paste's own label.
        QVERIFY(copyClip(d));
        QCOMPARE(labels(w).size(), 2); // a copy makes no version
        QVERIFY(edit(d, [&] { d->editingActions().OnPopupMenuPasteAtEnd(); }));
        QCOMPARE(labels(w), QStringList({"Opened speech.mp3", "Silence the selection", "Paste at end"}));
        QCOMPARE(marked(w), QList<int>({2}));

        // Opening another file here starts the list again, with one row.
        const auto asked = gui::answerAlert("Open…");
        QVERIFY(gui::openInto(d, m_pattern, [d] { d->OnToolbarOpen(); }));
        QVERIFY(gui::waitIdle(*m_app));
        QVERIFY(asked->shown);
        QCOMPARE(labels(w), QStringList({"Opened pattern.wav"}));
        QCOMPARE(marked(w), QList<int>({0}));
    }

    // Closing the window hides it; it follows the history all the same and
    // shows the present list when opened again.
    void reopensOnThePresentList() {
        Document* d = openSpeech();
        QVERIFY(d);
        HistoryWindow* w = openHistory(d);
        QVERIFY(w);
        w->close();
        QVERIFY(!w->isVisible());
        setMarkers(d, 20, 50, 0);
        QVERIFY(edit(d, [&] { d->editingActions().Operation_Delete(); }));
        QCOMPARE(openHistory(d), w);
        QVERIFY(w->isVisible());
        QCOMPARE(labels(w), QStringList({"Opened speech.mp3", "Delete"}));
        QCOMPARE(marked(w), QList<int>({1}));
    }

    // Edit ▸ History… (Ctrl+H) after Undo and Redo; one window per document,
    // beside it and not modal; rows wait while a tool runs.
    void oneWindowPerDocumentFromTheEditMenu() {
        Document* d = openSpeech();
        QVERIFY(d);
        auto* editMenu = d->menuBar()->findChild<QMenu*>("menuEdit");
        QVERIFY(editMenu);
        const QList<QAction*> items = editMenu->actions();
        QVERIFY(items.size() > 3);
        QCOMPARE(items[2], d->actionHistory);
        QCOMPARE(d->actionHistory->objectName(), QString("actionHistory"));
        QCOMPARE(d->actionHistory->text().remove('&'), QString("History…"));
        QCOMPARE(d->actionHistory->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_H));
        QVERIFY(items[3]->isSeparator());
        bool listed = false;
        for (const ShortcutRow& row : shortcutRows(d))
            listed |= row.command == "Edit ▸ History…" && row.keys == QKeySequence("Ctrl+H").toString();
        QVERIFY(listed);

        // The key opens it.
        d->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(d));
        QTest::keyClick(d, Qt::Key_H, Qt::ControlModifier);
        auto* w = d->findChild<HistoryWindow*>();
        QVERIFY(w);
        QTRY_VERIFY(w->isVisible());
        QCOMPARE(w->parentWidget(), static_cast<QWidget*>(d));
        QVERIFY(!w->isModal());
        QVERIFY(!QApplication::activeModalWidget());
        QCOMPARE(w->tableVersions->objectName(), QString("tableVersions"));
        QCOMPARE(openHistory(d), w);
        QCOMPARE(d->findChildren<HistoryWindow*>().size(), 1);

        // Another window has its own, following its own track.
        Document* other = openSpeech();
        QVERIFY(other);
        HistoryWindow* otherHistory = openHistory(other);
        QVERIFY(otherHistory && otherHistory != w);
        setMarkers(other, 20, 50, 0);
        QVERIFY(edit(other, [&] { other->editingActions().Operation_Delete(); }));
        QCOMPARE(labels(otherHistory), QStringList({"Opened speech.mp3", "Delete"}));
        QCOMPARE(labels(w), QStringList({"Opened speech.mp3"}));

        // A second of ffmpeg in the runner: no row can be chosen meanwhile.
        m_app->runner().submit(
            {{step::Run{Tool::FFmpeg, {"-re", "-f", "lavfi", "-i", "anullsrc=d=1", "-f", "null", "-"}}}},
            nullptr, {});
        QVERIFY(!otherHistory->tableVersions->isEnabled());
        QVERIFY(!w->tableVersions->isEnabled());
        QVERIFY(gui::waitIdle(*m_app));
        QVERIFY(otherHistory->tableVersions->isEnabled());
        QVERIFY(clickRow(other, otherHistory, 0));
        QCOMPARE(marked(otherHistory), QList<int>({0}));
        QCOMPARE(other->history().u_array_WAV_Files_Position(), 0u);
    }
};

QTEST_MAIN(tst_HistoryWindow)
#include "tst_historywindow.moc"
