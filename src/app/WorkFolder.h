#pragma once

#include <QString>
#include <QStringList>

// The work folder holds every file the editor makes: the user's Documents
// folder plus "Tanselo".
QString workFolderPath();

// Creates the folder and its missing parents unless something already exists
// at the path. False only when creation was needed and failed.
bool ensureWorkFolder(const QString& path);

// Deletes everything inside the folder, which itself stays. Returns one
// message per entry that could not be deleted.
QStringList removeAllContentInFolder(const QString& path);

// One sox run that makes the shared 60-second silence track at `path`.
struct Plan;
Plan buildSilenceTrackPlan(const QString& path);
