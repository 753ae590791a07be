#pragma once

#include <QIcon>
#include <QString>

// Toolbar icon painted in code, so the editor looks the same on any desktop.
// Known names: open, play, pause, stop, record, sound-settings, zoom-in, zoom-out, export,
// undo, redo, copy, cut, paste, delete, tools, colour. An unknown name gives an empty QIcon.
// The icon holds 24, 32 and 48 px pixmaps, each also in a faded QIcon::Disabled variant.
QIcon toolbarIcon(const QString& name);

// The application's own icon, drawn from the SVG the desktop installs too,
// at the sizes window managers and task bars ask for.
QIcon applicationIcon();
