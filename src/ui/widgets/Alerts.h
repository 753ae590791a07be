#pragma once

#include "history/Unexported.h"

#include <QString>
#include <QStringList>

class QDialog;
class QWidget;

// The one way failures are shown: a modal alert with the message "Error", an
// informative text and one button "Close".
void showErrorAlert(QWidget* parent, const QString& informativeText);

// A modal alert with a message, an informative text and buttons, the first
// the default. Returns the index of the button pressed, or -1 when the alert
// was dismissed without one. Escape presses button `escape` when it names one.
int showAlert(QWidget* parent, const QString& text, const QString& informativeText,
              const QStringList& buttons, int escape = -1);

// The question before closing windows whose versions were not exported
// (one source: the window's; several: Quit's), Escape cancelling.
ClosingAnswer askBeforeClosing(QWidget* parent, const QStringList& sources);

// Shows `content` in `dialog` above a Close button, modally: the way the
// editor's read-only windows (Tool Runs, Keyboard Shortcuts) are shown.
void showWithCloseButton(QDialog& dialog, QWidget* content);
