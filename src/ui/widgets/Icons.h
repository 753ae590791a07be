#pragma once

#include <QGuiApplication>
#include <QIcon>
#include <QPalette>
#include <QString>

// A toolbar icon. Where the desktop's icon theme has the standard icon for it
// (document-open, media-playback-start, edit-cut, zoom-in, …) that one;
// otherwise painted in code, in the palette's window text colour, with 24,
// 32 and 48 px pixmaps, each also in a faded QIcon::Disabled variant.
// Known names: open, play, pause, stop, record, sound-settings, zoom-in, zoom-out, export,
// undo, redo, copy, cut, paste, delete, tools, colour. An unknown name gives an empty QIcon.
QIcon toolbarIcon(const QString& name, const QPalette& palette = QGuiApplication::palette());

// The application's own icon, drawn from the SVG the desktop installs too,
// at the sizes window managers and task bars ask for.
QIcon applicationIcon();
