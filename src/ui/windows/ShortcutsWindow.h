#pragma once

#include <QList>
#include <QString>

class QMainWindow;

// One command that has a key, named by the way a user reaches it
// ("Edit ▸ Paste At ▸ Paste at End", "Toolbar ▸ Record"), with its keys.
struct ShortcutRow {
    QString command;
    QString keys;
};

// Every command of `window` that has a key: its menus (submenus included),
// its toolbar, and the keys the window itself answers; each action once, in
// the order a user meets them. Made from the actions themselves, so the list
// cannot fall behind them.
QList<ShortcutRow> shortcutRows(QMainWindow* window);

// Help ▸ Keyboard Shortcuts: the rows in a table.
void showShortcuts(QMainWindow* window);
