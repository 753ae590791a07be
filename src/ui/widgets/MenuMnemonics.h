#pragma once

class QMenu;
class QMenuBar;

// Gives every item of `menu`, and of the submenus under it, a mnemonic
// unique within its menu, keeping those the items were given by hand. A
// menu with more items than the alphabet has letters lets a letter serve
// two of them. Items added later (a menu filled when first shown) are
// given theirs by calling this again.
void giveMnemonics(QMenu* menu);

// The same for every menu of the bar; the bar's own titles carry theirs.
void giveMnemonics(QMenuBar* bar);
