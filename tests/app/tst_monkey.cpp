#include "application/AppDelegate.h"
#include "batch/BatchDialog.h"
#include "document/Document.h"
#include "document/HistoryWindow.h"
#include "loudness/LoudnessWindow.h"
#include "plans/RemovedFiles.h"
#include "support/Fixtures.h"
#include "support/Gui.h"
#include "text/Mnemonics.h"
#include "timeline/View_Audio_Wave.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QColorDialog>
#include <QComboBox>
#include <QDesktopServices>
#include <QDialog>
#include <QDir>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMap>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpression>
#include <QSet>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QTreeWidget>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <iterator>
#include <memory>
#include <random>
#include <utility>

namespace {
constexpr int DefaultActions = 1000; // for each number of kept windows
constexpr int CheckEvery = 50;
constexpr int MostWindows = 4;      // more are closed again
constexpr int Remembered = 20;      // actions a failure message lists
constexpr double LongestTrack = 12; // seconds; longer tracks are cut back to keep the runs short

QtMessageHandler previousHandler = nullptr;

// QTest warns about every key or mouse event no widget takes, as a monkey's
// presses on a busy window often are, the offscreen platform about every
// window feature it lacks, and Qt's media backend lists its codecs for every
// player: those messages stay out of the log.
void quietHandler(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (type == QtWarningMsg && (message.contains(QLatin1String("not accepted by receiving widget")) ||
                                 message.startsWith(QLatin1String("This plugin does not support"))))
        return;
    if (type == QtDebugMsg && message.startsWith(QLatin1String(">>>> listing codecs"))) // each new player
        return;
    previousHandler(type, context, message);
}

QString oneLine(QString text, int longest = 140) {
    text.replace(u'\n', u' ');
    return text.size() > longest ? text.left(longest) + QStringLiteral("…") : text;
}

// An action of a menu tree, with the path a user follows to it.
struct MenuItem {
    QPointer<QAction> action;
    QString path;
};

struct Key {
    const char* name;
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
};
const Key Keys[] = {
    {"Space", Qt::Key_Space, Qt::NoModifier},
    {"Escape", Qt::Key_Escape, Qt::NoModifier},
    {"R", Qt::Key_R, Qt::NoModifier},
    {"Ctrl+Z", Qt::Key_Z, Qt::ControlModifier},
    {"Ctrl+Shift+Z", Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier},
    {"Ctrl+Y", Qt::Key_Y, Qt::ControlModifier},
    {"Ctrl+C", Qt::Key_C, Qt::ControlModifier},
    {"Ctrl+X", Qt::Key_X, Qt::ControlModifier},
    {"Ctrl+V", Qt::Key_V, Qt::ControlModifier},
    {"Delete", Qt::Key_Delete, Qt::NoModifier},
    {"Ctrl++", Qt::Key_Plus, Qt::ControlModifier},
    {"Ctrl+-", Qt::Key_Minus, Qt::ControlModifier},
    {"Ctrl+S", Qt::Key_S, Qt::ControlModifier},
    {"Ctrl+A", Qt::Key_A, Qt::ControlModifier},
    {"Home", Qt::Key_Home, Qt::NoModifier},
    {"End", Qt::Key_End, Qt::NoModifier},
    {"Left", Qt::Key_Left, Qt::NoModifier},
    {"Right", Qt::Key_Right, Qt::NoModifier},
    {"Shift+Left", Qt::Key_Left, Qt::ShiftModifier},
    {"Shift+Right", Qt::Key_Right, Qt::ShiftModifier},
    {"Shift+Home", Qt::Key_Home, Qt::ShiftModifier},
    {"Shift+End", Qt::Key_End, Qt::ShiftModifier},
    {"[", Qt::Key_BracketLeft, Qt::NoModifier},
    {"]", Qt::Key_BracketRight, Qt::NoModifier},
};
} // namespace

#define MONKEY_VERIFY(condition, what)                                                                       \
    do {                                                                                                     \
        if (!(condition)) {                                                                                  \
            fail(what, __FILE__, __LINE__);                                                                  \
            return;                                                                                          \
        }                                                                                                    \
    } while (false)

// Thousands of random user actions over several windows: keys, toolbar
// buttons, the application's menus, the tools menu with its effects and
// splits, clicks and drags on the waveform, closing windows, and random
// answers to every dialog and menu that comes up. It runs with two windows
// kept open, then with three. After every action that leaves the editor at
// rest, each window's current file must be there and hold as many seconds as
// the window shows. Every fifty actions the editor must be responsive, show
// no dialog once it has come to rest, and have every window named after its
// current file, which is still there.
// TANSELO_MONKEY_SEED repeats a run's choices (the timing of the tools may
// still differ); TANSELO_MONKEY_ACTIONS sets how many actions there are, and
// TANSELO_MONKEY_VERBOSE logs every action and answer as it happens.
class tst_Monkey : public QObject {
    Q_OBJECT
    QTemporaryDir m_root;
    std::unique_ptr<AppDelegate> m_app;
    gui::UrlCatcher m_urls;
    quint32 m_seed = 0;
    int m_actions = DefaultActions;
    int m_keptWindows = 2;  // never closed
    bool m_verbose = false; // every action and answer is logged as it happens
    std::mt19937 m_choose;  // the actions
    std::mt19937 m_answers; // the answers to dialogs and menus
    int m_index = -1;
    QStringList m_log;                    // every action, each with what was answered during it
    QMap<QString, qsizetype> m_firstSeen; // what went wrong, by the entry of m_log after which it showed
    mutable QSet<QString> m_existed;      // current files seen on disk after some action
    QStringList m_tracks;                 // what the open dialog offers
    QString m_exports;
    int m_exported = 0;
    QTimer m_responder;
    QTimer m_watchdog;
    QElapsedTimer m_busyFor; // since the action or check under way began
    int m_patience = 0;      // how long that may take, in ms
    bool m_answerPending = false;
    QPointer<QDialog> m_stuck; // a dialog without a button to press, since m_stuckFor
    QElapsedTimer m_stuckFor;
    QMap<QString, int> m_done;     // actions, by kind
    QMap<QString, int> m_answered; // answers, by what was answered

    // Random choices.
    static int between(std::mt19937& random, int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(random);
    }
    int choose(int low, int high) { return between(m_choose, low, high); }
    bool chance(double p) { return std::bernoulli_distribution(p)(m_choose); }
    int answer(int low, int high) { return between(m_answers, low, high); }
    bool answerChance(double p) { return std::bernoulli_distribution(p)(m_answers); }

    // Written past QtTest's log, which stops after its 2000th message.
    static void trace(const QString& text) {
        std::fflush(stdout);
        std::fprintf(stderr, "%s\n", qPrintable(text));
        std::fflush(stderr);
    }

    // What happened, for failure messages: every action, with what was
    // answered during it.
    void record(const QString& what) {
        if (m_verbose)
            trace(QStringLiteral("#%1 %2").arg(m_index).arg(what));
        m_log.append(QStringLiteral("#%1 %2").arg(m_index).arg(what));
    }
    void note(const QString& what) {
        if (m_log.isEmpty())
            record(QStringLiteral("(before the first action)"));
        QString& last = m_log.last();
        if (m_verbose)
            trace(QStringLiteral("      answered: ") + what);
        if (last.count(QStringLiteral("\n      ")) < 10)
            last += QStringLiteral("\n      answered: ") + what;
    }
    QString failure(const QString& what, qsizetype since = -1) const {
        QString text =
            QStringLiteral("%1\n  seed %2 (TANSELO_MONKEY_SEED=%2 repeats the choices), at action #%3 of %4")
                .arg(what)
                .arg(m_seed)
                .arg(m_index)
                .arg(m_actions);
        const qsizetype recent = std::max<qsizetype>(0, m_log.size() - Remembered);
        if (since >= 0 && since < recent) {
            text += QStringLiteral("; the actions before it first showed:");
            for (qsizetype i = std::max<qsizetype>(0, since - 8); i <= since; ++i)
                text += QStringLiteral("\n    ") + m_log.at(i);
        }
        text += QStringLiteral("; the last actions, oldest first:");
        for (qsizetype i = recent; i < m_log.size(); ++i)
            text += QStringLiteral("\n    ") + m_log.at(i);
        return text;
    }

    // Between two checks, notes when something a check looks for first goes
    // wrong (a window's current file goes missing, a recording can no longer
    // be stopped), so that a failure can name the actions that led to it.
    QMap<QString, QString> anomalies() const {
        QMap<QString, QString> found;
        for (Document* d : openDocuments()) {
            const QString path = d->track().s_WAV_File_Path;
            if (QFileInfo::exists(path))
                m_existed.insert(path);
            else if (!path.isEmpty() && !mayBeGone(path))
                found.insert(QStringLiteral("gone ") + path,
                             QStringLiteral("the current file of %1 has gone").arg(nameOf(d)));
            if ((d->transportActions().m_RecordStatus == StatusRecording ||
                 d->transportActions().m_RecordStatus == StatusRecordingPaused) &&
                !d->btnStop->isEnabled())
                found.insert(QStringLiteral("stuck %1").arg(d->u_ID),
                             QStringLiteral("%1 records with Stop disabled").arg(nameOf(d)));
        }
        return found;
    }
    void observe() {
        const QMap<QString, QString> found = anomalies();
        for (auto it = m_firstSeen.begin(); it != m_firstSeen.end();)
            it = found.contains(it.key()) ? std::next(it) : m_firstSeen.erase(it);
        for (auto it = found.cbegin(); it != found.cend(); ++it)
            if (!m_firstSeen.contains(it.key())) {
                m_firstSeen.insert(it.key(), m_log.size() - 1);
                if (m_verbose)
                    trace(QStringLiteral("      (%1)").arg(it.value()));
            }
    }
    // The earliest entry of m_log after which one of `keys` was first seen.
    qsizetype firstSeen(const QStringList& keys) const {
        qsizetype earliest = -1;
        for (const QString& key : keys)
            if (const qsizetype seen = m_firstSeen.value(key, -1);
                seen >= 0 && (earliest < 0 || seen < earliest))
                earliest = seen;
        return earliest;
    }

    // Fails the test with `what`, the seed and the last actions. QtTest cuts
    // long failure messages short and stops logging after its 2000th message,
    // so the whole account goes straight to the standard error first.
    void fail(const QString& what, const char* file, int line, qsizetype since = -1) {
        trace(failure(what, since));
        QTest::qFail(qPrintable(QStringLiteral("%1 (seed %2; the last actions are listed above)")
                                    .arg(oneLine(what, 600))
                                    .arg(m_seed)),
                     file, line);
    }

    static QString nameOf(const Document* d) {
        return QStringLiteral("window %1 «%2»").arg(d->u_ID).arg(d->windowTitle());
    }

    // Windows that are shown; a closed one lingers until it is deleted.
    QList<Document*> openDocuments() const {
        QList<Document*> open;
        for (Document* d : m_app->documents())
            if (d->isVisible())
                open.append(d);
        return open;
    }

    // Answers.

    // Runs `act` from the event loop rather than from the responder's tick:
    // an answer may open a dialog of its own, and while its exec() ran inside
    // the tick, the responder would not tick again.
    void later(QObject* target, std::function<void()> act) {
        m_answerPending = true;
        QPointer<QObject> guard(target);
        QTimer::singleShot(0, this, [this, guard, act = std::move(act)] {
            m_answerPending = false;
            if (guard)
                act();
        });
    }

    void respond() {
        if (m_answerPending)
            return;
        if (QWidget* popup = QApplication::activePopupWidget()) {
            answerPopup(popup);
            return;
        }
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal || !modal->isVisible())
            return;
        if (auto* box = qobject_cast<QMessageBox*>(modal))
            answerAlert(box);
        else if (auto* files = qobject_cast<QFileDialog*>(modal))
            answerFiles(files);
        else if (auto* colours = qobject_cast<QColorDialog*>(modal))
            answerColours(colours);
        else if (auto* dialog = qobject_cast<QDialog*>(modal))
            answerDialog(dialog);
    }

    void answerAlert(QMessageBox* box) {
        const QList<QAbstractButton*> buttons = box->buttons();
        if (buttons.isEmpty()) {
            note(QStringLiteral("alert “%1”: closed").arg(oneLine(box->text())));
            later(box, [box] { box->reject(); });
            return;
        }
        QAbstractButton* button = buttons.at(answer(0, int(buttons.size()) - 1));
        note(
            QStringLiteral("alert “%1” (%2): %3")
                .arg(oneLine(box->text()), oneLine(box->informativeText()), withoutMnemonic(button->text())));
        ++m_answered[QStringLiteral("alert")];
        later(button, [button] { button->click(); });
    }

    QString exportDestination() {
        // Now and then a file the editor works with, which it must refuse, or
        // an earlier export, which is replaced.
        if (answerChance(0.05)) {
            const QList<Document*> open = openDocuments();
            const QString working = open.isEmpty()
                                        ? QString()
                                        : open.at(answer(0, int(open.size()) - 1))->track().s_WAV_File_Path;
            if (!working.isEmpty())
                return working;
        }
        static const QStringList extensions = {"wav", "mp3", "m4a", "flac", "ogg"};
        const int number = m_exported > 0 && answerChance(0.1) ? answer(1, m_exported) : ++m_exported;
        return m_exports + QStringLiteral("/export-%1.%2").arg(number).arg(extensions.at(answer(0, 4)));
    }

    void answerFiles(QFileDialog* files) {
        ++m_answered[QStringLiteral("file dialog")];
        if (answerChance(0.25)) {
            note(QStringLiteral("file dialog “%1”: cancelled").arg(files->windowTitle()));
            later(files, [files] { files->reject(); });
            return;
        }
        const QString path = files->acceptMode() == QFileDialog::AcceptSave
                                 ? exportDestination()
                                 : m_tracks.at(answer(0, int(m_tracks.size()) - 1));
        note(QStringLiteral("file dialog “%1”: %2").arg(files->windowTitle(), path));
        later(files, [files, path] {
            // Typed as a user would, then closed with done(): accept() checks
            // the name against a listing the dialog may still be gathering.
            files->setDirectory(QFileInfo(path).absolutePath());
            if (auto* name = files->findChild<QLineEdit*>(QStringLiteral("fileNameEdit")))
                name->setText(QFileInfo(path).fileName());
            static_cast<QDialog*>(files)->done(QDialog::Accepted);
        });
    }

    void answerColours(QColorDialog* colours) {
        ++m_answered[QStringLiteral("colour dialog")];
        if (answerChance(0.5)) {
            const QColor colour = QColor::fromHsv(answer(0, 359), 255, 255);
            note(QStringLiteral("colour dialog: %1").arg(colour.name()));
            later(colours, [colours, colour] {
                colours->setCurrentColor(colour);
                colours->accept();
            });
        } else {
            note(QStringLiteral("colour dialog: cancelled"));
            later(colours, [colours] { colours->reject(); });
        }
    }

    void answerDialog(QDialog* dialog) {
        static const QRegularExpression confirmOrLeave(
            QStringLiteral("^(OK|Cancel|Close|Export…?|Open…?|Yes|No|Apply)$"));
        QList<QPushButton*> buttons;
        for (QPushButton* button : dialog->findChildren<QPushButton*>())
            if (button->isVisible() && button->isEnabled() &&
                confirmOrLeave.match(withoutMnemonic(button->text())).hasMatch())
                buttons << button;
        if (buttons.isEmpty()) {
            // The export dialog disables its buttons while it exports: wait,
            // and only a dialog that stays so for long is rejected.
            if (m_stuck != dialog) {
                m_stuck = dialog;
                m_stuckFor.start();
                return;
            }
            if (m_stuckFor.elapsed() < 5000)
                return;
        }
        m_stuck = nullptr;
        ++m_answered[QString::fromLatin1(dialog->metaObject()->className())];
        // Sometimes the controls move first: sliders anywhere in their range,
        // lists to any of their items.
        QStringList changed;
        if (answerChance(0.3)) {
            for (QSlider* slider : dialog->findChildren<QSlider*>())
                if (slider->isEnabled() && answerChance(0.5)) {
                    slider->setValue(answer(slider->minimum(), slider->maximum()));
                    changed << QStringLiteral("%1=%2").arg(slider->objectName()).arg(slider->value());
                }
            for (QComboBox* list : dialog->findChildren<QComboBox*>())
                if (list->isEnabled() && list->count() > 0 && answerChance(0.5)) {
                    list->setCurrentIndex(answer(0, list->count() - 1));
                    changed << QStringLiteral("%1=%2").arg(list->objectName(), list->currentText());
                }
        }
        const QString title = dialog->windowTitle();
        const QString moved = changed.isEmpty() ? QString() : QStringLiteral(" [%1]").arg(changed.join(u' '));
        if (buttons.isEmpty() || answerChance(0.15)) {
            note(QStringLiteral("dialog “%1”%2: reject()").arg(title, moved));
            later(dialog, [dialog] { dialog->reject(); });
            return;
        }
        QPushButton* button = buttons.at(answer(0, int(buttons.size()) - 1));
        note(QStringLiteral("dialog “%1”%2: %3").arg(title, moved, withoutMnemonic(button->text())));
        later(button, [button] { button->click(); });
    }

    void fillIfEmpty(QMenu* menu) {
        // The effects menu is filled when it is first shown.
        if (!menu->isEmpty())
            return;
        for (Document* d : m_app->documents())
            if (d->effectActions().popupMenuEffects == menu)
                d->effectActions().fillEffectsMenu();
    }

    QList<MenuItem> itemsOf(QMenu* menu, const QString& path) {
        QList<MenuItem> items;
        for (QAction* action : menu->actions()) {
            if (action->isSeparator() || !action->isVisible() || !action->isEnabled())
                continue;
            const QString here = path + QStringLiteral(" ▸ ") + withoutMnemonic(action->text());
            if (QMenu* sub = QMenu::menuInAction(action)) {
                fillIfEmpty(sub);
                items += itemsOf(sub, here);
            } else {
                items.append({action, here});
            }
        }
        return items;
    }

    void answerPopup(QWidget* popup) {
        auto* menu = qobject_cast<QMenu*>(popup);
        const QList<MenuItem> items =
            menu ? itemsOf(menu, withoutMnemonic(menu->title())) : QList<MenuItem>();
        ++m_answered[QStringLiteral("popup")];
        if (items.isEmpty() || answerChance(0.3)) {
            note(QStringLiteral("popup %1: closed").arg(menu ? withoutMnemonic(menu->title()) : QString()));
            popup->close();
            return;
        }
        const MenuItem item = items.at(answer(0, int(items.size()) - 1));
        note(QStringLiteral("popup: %1").arg(item.path));
        popup->close();
        QAction* action = item.action;
        later(action, [action] { action->trigger(); });
    }

    // Actions.

    bool activate(Document* d) {
        if (QApplication::activeWindow() == d)
            return true;
        d->activateWindow();
        return QTest::qWaitForWindowActive(d, 1000);
    }

    QToolBar* toolBarOf(Document* d) const { return d->findChild<QToolBar*>(); }

    // Presses a toolbar button as the mouse does: nothing happens while it
    // or the toolbar is disabled.
    void press(Document* d, QAction* action, const QString& why = {}) {
        QWidget* button = toolBarOf(d)->widgetForAction(action);
        const QString text =
            QStringLiteral("%1toolbar %2 in %3").arg(why, withoutMnemonic(action->text()), nameOf(d));
        if (!button || !button->isVisible()) {
            record(text + QStringLiteral(" (no button)"));
            return;
        }
        if (!button->isEnabled()) {
            record(text + QStringLiteral(" (disabled)"));
            return;
        }
        record(text);
        QTest::mouseClick(button, Qt::LeftButton);
    }

    void pressKey(Document* d) {
        // Escape is meant for the window whose run goes on: it gets it half the time.
        const Key& key = Keys[choose(0, int(std::size(Keys)) - 1)];
        if (key.key == Qt::Key_Escape && chance(0.5))
            if (auto* running = qobject_cast<Document*>(m_app->runner().currentReceiver());
                running && running->isVisible())
                d = running;
        const bool active = activate(d);
        record(QStringLiteral("key %1 in %2%3")
                   .arg(QLatin1String(key.name), nameOf(d),
                        active ? QString() : QStringLiteral(" (not active)")));
        QWidget* target = d->focusWidget() ? d->focusWidget() : d;
        QTest::keyClick(target, key.key, key.modifiers);
    }

    void pressToolbar(Document* d) {
        QList<QAction*> actions;
        for (QAction* action : toolBarOf(d)->actions())
            if (!action->isSeparator() && action != d->btnSoundPreferences) // it starts another program
                actions << action;
        press(d, actions.at(choose(0, int(actions.size()) - 1)));
    }

    void useApplicationMenu(Document* d) {
        // Quit is left out: it ends the process.
        const QList<QAction*> actions = {m_app->actionNew,     m_app->actionOpen,     m_app->actionExport,
                                         m_app->actionUndo,    m_app->actionRedo,     m_app->actionCut,
                                         m_app->actionCopy,    m_app->actionPaste,    m_app->actionDelete,
                                         m_app->actionUndo,    m_app->actionRedo,     m_app->actionCopy,
                                         m_app->actionPaste,   m_app->actionHomePage, m_app->actionMakers,
                                         m_app->actionPrivacy, m_app->actionSupport,  m_app->actionToolRuns};
        QAction* action = actions.at(choose(0, int(actions.size()) - 1));
        const bool active = activate(d);
        record(QStringLiteral("menu %1 over %2%3%4")
                   .arg(withoutMnemonic(action->text()), nameOf(d),
                        active ? QString() : QStringLiteral(" (not active)"),
                        action->isEnabled() ? QString() : QStringLiteral(" (disabled)")));
        action->trigger();
    }

    void useMenuBar(Document* d) {
        // Any enabled item of the window's own menu bar, its submenus
        // included, as a user picks it (Quit ends the process, so not that).
        QList<MenuItem> items;
        for (QAction* top : d->menuBar()->actions())
            if (QMenu* menu = top->menu(); menu && top->isEnabled()) {
                fillIfEmpty(menu);
                items += itemsOf(menu, withoutMnemonic(menu->title()));
            }
        items.removeIf([this](const MenuItem& item) { return item.action == m_app->actionQuit; });
        const bool active = activate(d);
        if (items.isEmpty()) {
            record(QStringLiteral("menu bar of %1: nothing enabled").arg(nameOf(d)));
            return;
        }
        const MenuItem item = items.at(choose(0, int(items.size()) - 1));
        record(QStringLiteral("menu bar %1 in %2%3")
                   .arg(item.path, nameOf(d), active ? QString() : QStringLiteral(" (not active)")));
        if (item.action)
            item.action->trigger();
    }

    void useHistory(Document* d) {
        // The History window stays open beside its document: open it, choose
        // a version as a user clicks one, or close it.
        auto* window = d->findChild<HistoryWindow*>();
        if (!window || !window->isVisible()) {
            record(QStringLiteral("Edit ▸ History… in %1").arg(nameOf(d)));
            d->actionHistory->trigger();
            return;
        }
        QTreeWidget* table = window->tableVersions;
        if (table->topLevelItemCount() == 0 || chance(0.2)) {
            record(QStringLiteral("close the history of %1").arg(nameOf(d)));
            window->close();
            return;
        }
        const int row = choose(0, table->topLevelItemCount() - 1);
        QTreeWidgetItem* item = table->topLevelItem(row);
        record(QStringLiteral("history of %1: choose “%2” (row %3 of %4)%5")
                   .arg(nameOf(d), item->text(HistoryWindow::ColumnLabel))
                   .arg(row + 1)
                   .arg(table->topLevelItemCount())
                   .arg(table->isEnabled() ? QString() : QStringLiteral(" (disabled)")));
        table->scrollToItem(item);
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, table->visualItemRect(item).center());
    }

    void useToolsMenu(Document* d) {
        // The tools menu opens from the toolbar: nothing in it can be reached
        // while its button is disabled.
        QWidget* button = toolBarOf(d)->widgetForAction(d->btnTools);
        if (!button || !button->isEnabled()) {
            record(QStringLiteral("tools menu in %1 (disabled)").arg(nameOf(d)));
            return;
        }
        QList<QMenu*> submenus;
        for (QAction* action : d->editingActions().popupMenuTools->actions())
            if (QMenu* sub = QMenu::menuInAction(action))
                submenus << sub;
        QMenu* sub = submenus.at(choose(0, int(submenus.size()) - 1));
        fillIfEmpty(sub);
        const QList<MenuItem> items =
            itemsOf(sub, QStringLiteral("Tools ▸ ") + withoutMnemonic(sub->title()));
        if (items.isEmpty()) {
            record(QStringLiteral("tools menu %1 in %2 (nothing enabled)").arg(sub->title(), nameOf(d)));
            return;
        }
        const MenuItem item = items.at(choose(0, int(items.size()) - 1));
        record(QStringLiteral("%1 in %2").arg(item.path, nameOf(d)));
        item.action->trigger();
    }

    QPoint randomPointIn(QWidget* view, int margin = 0) {
        return {choose(-margin, view->width() - 1 + margin), choose(0, view->height() - 1)};
    }

    void clickWaveform(Document* d) {
        View_Audio_Wave* view = d->viewAudioPlot;
        const QPoint at = randomPointIn(view);
        record(QStringLiteral("click the waveform at %1,%2 of %3x%4 in %5%6")
                   .arg(at.x())
                   .arg(at.y())
                   .arg(view->width())
                   .arg(view->height())
                   .arg(nameOf(d), view->isEnabled() ? QString() : QStringLiteral(" (disabled)")));
        if (view->isEnabled())
            QTest::mouseClick(view, Qt::LeftButton, Qt::NoModifier, at);
    }

    void drag(Document* d, bool fromHandle) {
        View_Audio_Wave* view = d->viewAudioPlot;
        QPoint from = randomPointIn(view);
        QString what = QStringLiteral("drag");
        if (fromHandle) {
            // The handles' rectangles have their origin at the lower left.
            const bool start = chance(0.5);
            const QRectF handle = start ? view->rect_Selection_Start : view->rect_Selection_End;
            if (handle.isValid() && std::isfinite(handle.center().x()) &&
                std::isfinite(handle.center().y())) {
                from = QPoint(int(std::clamp(handle.center().x(), -1.0e6, 1.0e6)),
                              view->height() - int(std::clamp(handle.center().y(), -1.0e6, 1.0e6)));
                what =
                    start ? QStringLiteral("drag the start handle") : QStringLiteral("drag the end handle");
            }
        }
        QList<QPoint> path;
        for (int step = choose(1, 4); step > 0; --step)
            path << randomPointIn(view, 40);
        QStringList points;
        for (const QPoint& p : path)
            points << QStringLiteral("%1,%2").arg(p.x()).arg(p.y());
        record(QStringLiteral("%1 from %2,%3 to %4 in %5%6")
                   .arg(what)
                   .arg(from.x())
                   .arg(from.y())
                   .arg(points.join(QStringLiteral(" → ")), nameOf(d),
                        view->isEnabled() ? QString() : QStringLiteral(" (disabled)")));
        if (!view->isEnabled())
            return;
        QTest::mousePress(view, Qt::LeftButton, Qt::NoModifier, from);
        for (const QPoint& p : path) {
            if (!view->isEnabled())
                break;
            QTest::mouseMove(view, p);
        }
        QTest::mouseRelease(view, Qt::LeftButton, Qt::NoModifier, path.last());
    }

    void cancelRun(Document* d) {
        record(QStringLiteral("status bar Cancel in %1%2")
                   .arg(nameOf(d), d->btnCancel->isVisible() ? QString() : QStringLiteral(" (not shown)")));
        if (d->btnCancel->isVisible() && d->btnCancel->isEnabled())
            QTest::mouseClick(d->btnCancel, Qt::LeftButton);
    }

    void closeWindow(Document* d, const QString& why) {
        record(QStringLiteral("%1close %2").arg(why, nameOf(d)));
        d->close();
    }

    void shorten(Document* d) {
        // Keeps the first two seconds: the selection is set as the tests of
        // the edits set it, then Delete is pressed.
        const double seconds = double(d->track().i_Audio_Duration_Seconds);
        d->track().f_Selection_Start = float(100.0 * 2.0 / seconds);
        d->track().f_Selection_End = 100;
        press(d, d->btnDelete, QStringLiteral("(shorten a %1 s track) ").arg(seconds));
    }

    void act() {
        QList<Document*> open = openDocuments();
        if (open.size() > MostWindows) {
            ++m_done[QStringLiteral("close an extra window")];
            closeWindow(open.at(choose(0, int(open.size()) - 1)), QStringLiteral("(too many windows) "));
            return;
        }
        if (open.isEmpty()) {
            record(QStringLiteral("(no window is open)"));
            return;
        }
        Document* d = open.at(choose(0, int(open.size()) - 1));
        if (d->track().i_Audio_Duration_Seconds > LongestTrack &&
            d->transportActions().m_RecordStatus == StatusIdle && chance(0.5)) {
            ++m_done[QStringLiteral("shorten")];
            shorten(d);
            return;
        }
        struct Kind {
            const char* name;
            int weight;
            std::function<void()> run;
        };
        const Kind kinds[] = {
            {"key", 22, [&] { pressKey(d); }},
            {"toolbar", 20, [&] { pressToolbar(d); }},
            {"application menu", 8, [&] { useApplicationMenu(d); }},
            {"menu bar", 6, [&] { useMenuBar(d); }},
            {"tools menu", 14, [&] { useToolsMenu(d); }},
            {"click", 10, [&] { clickWaveform(d); }},
            {"drag a handle", 10, [&] { drag(d, true); }},
            {"drag", 4, [&] { drag(d, false); }},
            {"cancel", 2, [&] { cancelRun(d); }},
            {"history", 3, [&] { useHistory(d); }},
            {"close", open.size() > m_keptWindows ? 3 : 0, [&] { closeWindow(d, {}); }},
            {"wait", 7,
             [&] {
                 const int ms = choose(20, 250);
                 record(QStringLiteral("wait %1 ms").arg(ms));
                 QTest::qWait(ms);
             }},
        };
        int total = 0;
        for (const Kind& kind : kinds)
            total += kind.weight;
        int chosen = choose(0, total - 1);
        for (const Kind& kind : kinds) {
            if (chosen < kind.weight) {
                ++m_done[QLatin1String(kind.name)];
                kind.run();
                return;
            }
            chosen -= kind.weight;
        }
    }

    // Checks.

    // What keeps the editor from being at rest; empty when nothing does.
    QString unrest() const {
        if (m_app->runner().isBusy())
            return QStringLiteral("a plan is still running");
        if (QWidget* modal = QApplication::activeModalWidget())
            return QStringLiteral("a %1 “%2” is still up")
                .arg(QString::fromLatin1(modal->metaObject()->className()), modal->windowTitle());
        if (QWidget* popup = QApplication::activePopupWidget())
            return QStringLiteral("a %1 popup is still up")
                .arg(QString::fromLatin1(popup->metaObject()->className()));
        for (Document* d : m_app->documents()) {
            if (d->exportActions().timerSave && d->exportActions().timerSave->isActive())
                return QStringLiteral("the export of %1 is about to open").arg(nameOf(d));
            // Its load is due on a timer: a stalled machine can hold that timer
            // back longer than the quiet this waits for.
            if (d->isStarting())
                return QStringLiteral("%1 is still starting").arg(nameOf(d));
        }
        return {};
    }

    // Waits until the editor has been at rest for a while: no plan, no
    // dialog, no popup, and no window still starting (which submits a plan).
    bool settle(QString* why) {
        QElapsedTimer clock, quiet;
        clock.start();
        quiet.start();
        while (clock.elapsed() < 120000) {
            if (!unrest().isEmpty())
                quiet.restart();
            else if (quiet.elapsed() >= 300)
                return true;
            QTest::qWait(20);
        }
        *why = unrest();
        return false;
    }

    // Gone by one of the editor's own deletion rules: a cleared history takes
    // its files with it, whichever other window shows one (the silence track,
    // a split piece, a result of the same second), and an edit deletes its
    // parts once its result is taken (a paste at the start is named "Before").
    // Or never made: the pieces of a split open whether or not the tool wrote
    // them (a piece of no length). A file the editor made and never deleted
    // must still be there.
    bool mayBeGone(const QString& path) const {
        return removedFiles::wasRemoved(path) ||
               (!m_existed.contains(path) && QFileInfo(path).fileName().contains(QLatin1String("_PART_")));
    }

    void checkpoint() {
        startWatching(180000);
        record(QStringLiteral("(check)"));
        QString why;
        MONKEY_VERIFY(settle(&why), QStringLiteral("The editor did not come to rest: ") + why);

        // A recording keeps its window's old name until it stops.
        bool stopped = false;
        for (Document* d : openDocuments())
            if (d->transportActions().m_RecordStatus == StatusRecording ||
                d->transportActions().m_RecordStatus == StatusRecordingPaused) {
                note(
                    QStringLiteral("(check) Stop the recording in %1%2")
                        .arg(nameOf(d), d->btnStop->isEnabled() ? QString() : QStringLiteral(" (disabled)")));
                d->btnStop->trigger();
                stopped = true;
            }
        if (stopped)
            MONKEY_VERIFY(settle(&why), QStringLiteral("The editor did not come to rest after Stop: ") + why);

        auto fired = std::make_shared<bool>(false);
        QTimer::singleShot(0, this, [fired] { *fired = true; });
        MONKEY_VERIFY(QTest::qWaitFor([fired] { return *fired; }, 2000),
                      QStringLiteral("The editor did not answer a timer within 2 s."));

        // No dialog is left up; the History, loudness and batch windows are
        // left open by users, as by the monkey (File ▸ Process Files With This
        // Recipe…, Tracks ▸ Measure Loudness…).
        QStringList dialogs;
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (widget->isVisible() && qobject_cast<QDialog*>(widget) &&
                !qobject_cast<HistoryWindow*>(widget) && !qobject_cast<BatchDialog*>(widget) &&
                !qobject_cast<LoudnessWindow*>(widget))
                dialogs << QStringLiteral("%1 “%2”").arg(
                    QString::fromLatin1(widget->metaObject()->className()), widget->windowTitle());
        MONKEY_VERIFY(dialogs.isEmpty(),
                      QStringLiteral("Dialogs are still shown: ") + dialogs.join(QStringLiteral(", ")));

        QStringList problems, keys;
        const QList<Document*> open = openDocuments();
        for (Document* d : open) {
            const QString path = d->track().s_WAV_File_Path;
            if (d->transportActions().m_RecordStatus == StatusRecording ||
                d->transportActions().m_RecordStatus == StatusRecordingPaused) {
                problems << QStringLiteral("%1 is still recording after Stop").arg(nameOf(d));
                keys << QStringLiteral("stuck %1").arg(d->u_ID);
            }
            if (d->windowTitle() != QFileInfo(path).fileName())
                problems << QStringLiteral("%1 is titled “%2” but its current file is “%3”")
                                .arg(nameOf(d), d->windowTitle(), path);
            if (!QFileInfo::exists(path) && !mayBeGone(path)) {
                problems << QStringLiteral("%1: its current file “%2” does not exist (history: %3, at %4)")
                                .arg(nameOf(d), path,
                                     d->history().array_WAV_Files().join(QStringLiteral(", ")))
                                .arg(d->history().u_array_WAV_Files_Position());
                keys << QStringLiteral("gone ") + path;
            }
        }
        if (!problems.isEmpty()) {
            fail(problems.join(QStringLiteral("\n  ")), __FILE__, __LINE__, firstSeen(keys));
            return;
        }
        MONKEY_VERIFY(open.size() >= m_keptWindows,
                      QStringLiteral("Only %1 windows are open.").arg(open.size()));
        stopWatching();
    }

    // After an action that leaves the editor at rest: every window's current
    // file is there and holds the whole seconds the window shows. (Files of
    // one second's names meeting across windows once left a window naming a
    // file that held another's audio, or none.)
    void checkTracksAtRest() {
        if (!unrest().isEmpty())
            return;
        QStringList problems, keys;
        for (Document* d : openDocuments()) {
            if (!d->b_Audio_Loaded || d->transportActions().m_RecordStatus == StatusRecording ||
                d->transportActions().m_RecordStatus == StatusRecordingPaused)
                continue;
            const QString path = d->track().s_WAV_File_Path;
            if (!QFileInfo::exists(path)) {
                if (!mayBeGone(path)) {
                    problems
                        << QStringLiteral("%1: its current file “%2” does not exist").arg(nameOf(d), path);
                    keys << QStringLiteral("gone ") + path;
                }
                continue;
            }
            const fixtures::WavInfo info = fixtures::wavInfo(path);
            // ffmpeg's probe says hundredths, rounded; the window keeps their whole seconds.
            const qint64 whole = qint64(std::floor(std::round(info.seconds() * 100) / 100));
            if (!info.ok || whole != d->track().i_Audio_Duration_Seconds)
                problems << QStringLiteral("%1 shows %2 s, but “%3” holds %4 s")
                                .arg(nameOf(d))
                                .arg(d->track().i_Audio_Duration_Seconds)
                                .arg(path)
                                .arg(info.seconds());
        }
        if (!problems.isEmpty())
            fail(problems.join(QStringLiteral("\n  ")), __FILE__, __LINE__, firstSeen(keys));
    }

    // A watchdog for an action or check that never returns, say a dialog
    // nobody can close: it ends the run with the seed and the last actions.
    void startWatching(int patienceMs) {
        m_patience = patienceMs;
        m_busyFor.start();
    }
    void stopWatching() { m_busyFor.invalidate(); }
    void watch() {
        if (m_busyFor.isValid() && m_busyFor.elapsed() > m_patience) {
            trace(failure(QStringLiteral("An action or check has not returned in %1 s; %2")
                              .arg(m_patience / 1000)
                              .arg(unrest())));
            qFatal("An action or check hung (seed %u; the last actions are listed above)", m_seed);
        }
    }

private slots:
    void initTestCase() {
        previousHandler = qInstallMessageHandler(quietHandler);
        bool given = false;
        const quint32 seed = qEnvironmentVariable("TANSELO_MONKEY_SEED").toUInt(&given);
        m_seed = given ? seed : std::random_device{}();
        bool counted = false;
        const int actions = qEnvironmentVariable("TANSELO_MONKEY_ACTIONS").toInt(&counted);
        if (counted && actions > 0)
            m_actions = actions;
        m_verbose = qEnvironmentVariableIsSet("TANSELO_MONKEY_VERBOSE");
        qInfo("monkey seed %u (set TANSELO_MONKEY_SEED=%u to repeat it), %d actions", m_seed, m_seed,
              m_actions);
        m_choose.seed(m_seed);
        m_answers.seed(m_seed ^ 0x9e3779b9u);

        QVERIFY(m_root.isValid());
        m_app = gui::startApplication(m_root.filePath(QStringLiteral("home")));
        QVERIFY(m_app && gui::waitIdle(*m_app));
        // Help pages and "Play Audio File" go to the desktop: caught here.
        for (const char* scheme : {"file", "http", "https"})
            QDesktopServices::setUrlHandler(QLatin1String(scheme), &m_urls, "open");

        // Short tracks keep every run quick; one has gaps to split on.
        const QString tracks = m_root.filePath(QStringLiteral("tracks"));
        QVERIFY(QDir().mkpath(tracks));
        m_tracks = {tracks + QStringLiteral("/one second.wav"), tracks + QStringLiteral("/two seconds.wav"),
                    tracks + QStringLiteral("/gaps.wav")};
        fixtures::makeTone(m_tracks[0], 1, 440);
        fixtures::makeTone(m_tracks[1], 2, 1000);
        const QString tone = m_root.filePath(QStringLiteral("tone.wav"));
        const QString gap = m_root.filePath(QStringLiteral("gap.wav"));
        fixtures::makeTone(tone, 0.5, 660);
        fixtures::makeSilence(gap, 0.5);
        fixtures::join({tone, gap, tone, gap, tone}, m_tracks[2]);
        for (const QString& track : std::as_const(m_tracks))
            QVERIFY2(fixtures::wavInfo(track).ok, qPrintable(track));
        m_exports = m_root.filePath(QStringLiteral("exports"));
        QVERIFY(QDir().mkpath(m_exports));

        QVERIFY(gui::openInNewWindow(*m_app, m_tracks[0]));
        QVERIFY(gui::openInNewWindow(*m_app, m_tracks[1]));
        QCOMPARE(openDocuments().size(), 2);

        connect(&m_responder, &QTimer::timeout, this, &tst_Monkey::respond);
        m_responder.start(10);
        connect(&m_watchdog, &QTimer::timeout, this, &tst_Monkey::watch);
        m_watchdog.start(1000);
    }

    void randomActionsLeaveTheEditorWhole_data() {
        QTest::addColumn<int>("kept");
        QTest::newRow("two windows") << 2;
        QTest::newRow("three windows") << 3;
    }
    void randomActionsLeaveTheEditorWhole() {
        QFETCH(int, kept);
        m_keptWindows = kept;
        QString why;
        QVERIFY2(settle(&why), qPrintable(why));
        for (int i = int(openDocuments().size()); i < kept; ++i)
            QVERIFY(gui::openInNewWindow(*m_app, m_tracks[i % m_tracks.size()]));
        QElapsedTimer clock;
        clock.start();
        for (m_index = 0; m_index < m_actions; ++m_index) {
            startWatching(120000);
            act();
            observe();
            // Most actions come hard on each other's heels, and so meet a
            // busy editor; the others wait until the runs they started end.
            if (chance(0.4))
                gui::waitIdle(*m_app, 20000);
            QTest::qWait(choose(2, 10));
            checkTracksAtRest();
            if (QTest::currentTestFailed())
                return;
            stopWatching();
            if ((m_index + 1) % CheckEvery == 0 || m_index + 1 == m_actions) {
                checkpoint();
                stopWatching();
                if (QTest::currentTestFailed())
                    return;
                if ((m_index + 1) % 500 == 0)
                    qInfo("%d actions after %.1f s: %lld windows, %lld tool runs", m_index + 1,
                          double(clock.elapsed()) / 1000, qlonglong(openDocuments().size()),
                          qlonglong(m_app->runner().runs().size()));
            }
        }
        qInfo("%d actions in %.1f s with seed %u: %lld tool runs, %lld URLs caught", m_actions,
              double(clock.elapsed()) / 1000, m_seed, qlonglong(m_app->runner().runs().size()),
              qlonglong(m_urls.urls.size()));
        QStringList done, answered;
        for (auto it = m_done.cbegin(); it != m_done.cend(); ++it)
            done << QStringLiteral("%1 %2").arg(it.key()).arg(it.value());
        for (auto it = m_answered.cbegin(); it != m_answered.cend(); ++it)
            answered << QStringLiteral("%1 %2").arg(it.key()).arg(it.value());
        qInfo("actions: %s", qPrintable(done.join(QStringLiteral(", "))));
        qInfo("answers: %s", qPrintable(answered.join(QStringLiteral(", "))));
    }

    void cleanupTestCase() {
        stopWatching();
        if (m_app) {
            QString why;
            if (!settle(&why))
                qWarning("%s", qPrintable(failure(QStringLiteral("Not at rest at the end: ") + why)));
        }
        m_responder.stop();
        m_watchdog.stop();
        for (const char* scheme : {"file", "http", "https"})
            QDesktopServices::unsetUrlHandler(QLatin1String(scheme));
        m_app.reset();
        qInstallMessageHandler(previousHandler);
    }
};

QTEST_MAIN(tst_Monkey)
#include "tst_monkey.moc"
