#pragma once

#include <QString>

// The work files the editor deletes by its own rules: the files of a history
// that is cleared, the parts an edit deletes once its result is taken, and a
// file that a result of the same second replaces. Each deletion is noted for
// the session, so that a file that is gone can be told from one that was lost:
// one the editor never deleted must still be there.
namespace removedFiles {
// Deletes the file and notes it.
void remove(const QString& path);
// Notes a deletion made another way (a plan's file that was set aside).
void note(const QString& path);
// Whether the editor has deleted a file at this path in this session.
bool wasRemoved(const QString& path);
} // namespace removedFiles
