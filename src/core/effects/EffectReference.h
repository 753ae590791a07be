#pragma once

#include <QString>

// docs/effects.md, written from the catalogue's declarations: for every
// dialog its controls with their ranges, starts, labels and readings, its
// checks, and what sox receives from each effect at the start values. The
// suite compares the file with this text, so the two cannot drift apart.
QString effectsReference();
