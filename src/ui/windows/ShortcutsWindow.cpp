#include "ShortcutsWindow.h"

#include "widgets/Alerts.h"
#include <QAction>
#include <QDialog>
#include <QHeaderView>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QSet>
#include <QShortcut>
#include <QTableWidget>
#include <QToolBar>

namespace {
QString plain(QString text) {
    return text.remove(u'&');
}

QString keysOf(const QList<QKeySequence>& keys) {
    QStringList texts;
    for (const QKeySequence& key : keys)
        texts << key.toString(QKeySequence::NativeText);
    return texts.join(QStringLiteral(", "));
}

void collect(const QList<QAction*>& actions, const QString& path, QList<ShortcutRow>& rows,
             QSet<QAction*>& seen) {
    for (QAction* action : actions) {
        if (action->isSeparator() || seen.contains(action))
            continue;
        seen.insert(action);
        const QString here =
            path.isEmpty() ? plain(action->text()) : path + QStringLiteral(" ▸ ") + plain(action->text());
        if (QMenu* menu = action->menu()) {
            emit menu->aboutToShow(); // a menu filled when first shown fills itself
            collect(menu->actions(), here, rows, seen);
        } else if (!action->shortcuts().isEmpty()) {
            rows.append({here, keysOf(action->shortcuts())});
        }
    }
}
} // namespace

QList<ShortcutRow> shortcutRows(QMainWindow* window) {
    QList<ShortcutRow> rows;
    QSet<QAction*> seen;
    collect(window->menuBar()->actions(), {}, rows, seen);
    for (QToolBar* bar : window->findChildren<QToolBar*>())
        collect(bar->actions(), QObject::tr("Toolbar"), rows, seen);
    collect(window->actions(), {}, rows, seen);
    for (QShortcut* shortcut : window->findChildren<QShortcut*>())
        if (!shortcut->key().isEmpty())
            rows.append({shortcut->whatsThis(), keysOf({shortcut->key()})});
    return rows;
}

void showShortcuts(QMainWindow* window) {
    const QList<ShortcutRow> rows = shortcutRows(window);
    QDialog dialog(window);
    dialog.setWindowTitle(QObject::tr("Keyboard Shortcuts"));
    dialog.resize(560, 560);
    auto* table = new QTableWidget(int(rows.size()), 2, &dialog);
    table->setHorizontalHeaderLabels({QObject::tr("Command"), QObject::tr("Keys")});
    table->verticalHeader()->hide();
    table->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table->setAlternatingRowColors(true);
    table->setShowGrid(false);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    table->horizontalHeader()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    for (int row = 0; row < rows.size(); ++row) {
        table->setItem(row, 0, new QTableWidgetItem(rows.at(row).command));
        table->setItem(row, 1, new QTableWidgetItem(rows.at(row).keys));
    }
    showWithCloseButton(dialog, table);
}
