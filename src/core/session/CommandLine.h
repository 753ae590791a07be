#pragma once

#include <QDir>
#include <QList>
#include <QStringList>
#include <QUrl>

// The files named on the command line (or handed over by a desktop), as
// absolute paths: a name is taken relative to `workingFolder`, the folder the
// editor was started in, and a "file://" URL becomes its local path. They
// keep their order; nothing is checked here, since the window that opens a
// file says what is wrong with it.
QStringList givenFiles(const QStringList& arguments, const QString& workingFolder = QDir::currentPath());

// The local files among URLs dropped on a window, in order; anything else
// (a web address, a remote share) is left out.
QStringList droppedFiles(const QList<QUrl>& urls);
