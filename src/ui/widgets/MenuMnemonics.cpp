#include "widgets/MenuMnemonics.h"

#include "text/Mnemonics.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

namespace {
constexpr int LettersInTheAlphabet = 26;
}

void giveMnemonics(QMenu* menu) {
    QList<QAction*> items;
    QStringList texts;
    for (QAction* action : menu->actions()) {
        if (action->isSeparator() || action->text().isEmpty())
            continue;
        items << action;
        texts << action->text();
    }
    const int perLetter = items.size() > LettersInTheAlphabet ? 2 : 1;
    const QStringList given = withMnemonics(texts, perLetter);
    for (qsizetype i = 0; i < items.size(); ++i) {
        if (given[i] != texts[i])
            items[i]->setText(given[i]);
        if (QMenu* submenu = items[i]->menu())
            giveMnemonics(submenu);
    }
}

void giveMnemonics(QMenuBar* bar) {
    for (QAction* action : bar->actions())
        if (QMenu* menu = action->menu())
            giveMnemonics(menu);
}
