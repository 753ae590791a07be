#pragma once

#include <QString>
#include <QStringList>

// Closing a window loses its versions (the next start empties the work
// folder), and Quit ends at once: a window holding versions made since its
// track was opened or last exported asks first, the way desktop editors ask
// about unsaved documents. Quit asks once for every such window.

enum class ClosingAnswer { Export, CloseWithoutExporting, Cancel };

// "Export the changes to “interview.mp3” before closing?"; for several
// windows, "Export the changes to 3 tracks before quitting?".
QString closingQuestion(const QStringList& sources);
// What the answers do, naming the windows when there are several.
QString closingDetails(const QStringList& sources);
// "Export…", "Close Without Exporting", "Cancel", the first the default.
QStringList closingButtons();
// The answer of the button pressed: its index in closingButtons(), or -1
// when the question was dismissed, which cancels.
ClosingAnswer closingAnswer(int pressed);
