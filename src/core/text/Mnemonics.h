#pragma once

#include <QChar>
#include <QString>
#include <QStringList>

// Menu texts with a mnemonic each (the letter after "&", underlined and typed
// to choose the item while the menu is open), as the desktops' guidelines ask
// of every menu item.

// The lower-case letter or digit a text's mnemonic names, or a null QChar
// when it has none ("&&" is a plain ampersand, not a mnemonic).
QChar mnemonicOf(const QString& text);

// The text without its mnemonic's "&", as it is shown.
QString withoutMnemonic(const QString& text);

// Gives every text of one menu that has no mnemonic one, keeping those it
// has: a letter no other item uses, the first letter of a word where one is
// free, else any letter or digit of the text. A menu with more items than
// free letters lets a letter serve up to `perLetter` items (pressing it
// moves between them, and Enter picks); past that a text stays without one.
QStringList withMnemonics(const QStringList& texts, int perLetter = 1);
