#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <functional>
#include <optional>

// Recovery after the editor died: starting empties the work folder, which
// would delete every version of every track a killed editor (a crash, the
// out-of-memory killer, a power cut) had open, although all of them were
// still on disk. So the running editor keeps a small manifest of its windows
// in the work folder, and removes it when it ends cleanly; a start that finds
// one knows the last editor died, and offers its tracks back.

// One version of a window's history: its file's name in the work folder,
// the label and the time the History window shows.
struct ManifestVersion {
    QString file;
    QString label;
    QDateTime made;
    bool operator==(const ManifestVersion&) const = default;
};

// One window, in window order: the source as the status bar names it, the
// waveform colour ("#rrggbb"), and the history with its position (which may
// stand one past the last version, as after a recording's take-over), and
// which version the user has outside the editor (-1: none), so that a
// reopened window asks before closing as it would have.
struct ManifestWindow {
    QString source;
    QString colour;
    QList<ManifestVersion> versions;
    qsizetype position = 0;
    qsizetype kept = -1;
    bool operator==(const ManifestWindow&) const = default;
};

struct Manifest {
    QList<ManifestWindow> windows;
    QString clipboard; // the clipboard file's name; empty when nothing was copied
    bool operator==(const Manifest&) const = default;
};

// The manifest's file in the work folder: hidden, as the previews are.
QString manifestPath(const QString& workFolder);

QByteArray manifestText(const Manifest& manifest);
// What can be trusted of a manifest's text, whatever it holds: only plain
// file names (no folder, never "." or ".."), positions within their
// histories, windows with at least one version. Truncated or garbage text
// reads as no windows.
Manifest readManifest(const QByteArray& text);

// Writes the manifest whole or not at all: a new file renamed over the old
// one, so that a kill in the middle leaves the last manifest readable.
bool writeManifest(const QString& workFolder, const Manifest& manifest);

// The windows a start can give back: each one's versions whose files are
// `usable` (there, and readable audio), its position moved to the nearest
// surviving version at or before it (or the first after it); a window with
// none left is left out. `leftOut` counts the versions dropped.
struct Recovery {
    QList<ManifestWindow> windows;
    QString clipboard; // empty when its file is not usable
    int leftOut = 0;
    // Every file to keep: the windows' versions and the clipboard, once each.
    QStringList files() const;
};
Recovery planRecovery(const Manifest& manifest, const std::function<bool(const QString& file)>& usable);

// The question a start asks: "Tanselo quit unexpectedly. Reopen the 2 tracks
// that were open?", and the line saying what could not be given back.
QString recoveryQuestion(const Recovery& recovery);
QString recoveryDetails(const Recovery& recovery);

// Where a start keeps a dead editor's files while it asks: a hidden folder
// beside the work folder, not inside it, since emptying the work folder
// takes its sub-folders too.
QString recoveryFolderPath(const QString& workFolder);

// Before the work folder is emptied: reads the manifest a dead editor left,
// keeps the versions (and the clipboard) that are still readable audio by
// moving them into the recovery folder with the recovery's own manifest, and
// says what can be given back. Nothing when there is no manifest or nothing
// in it survives; then nothing was moved.
std::optional<Recovery> setAsideForRecovery(const QString& workFolder);

// Reopen: moves the set-aside files back into the (now emptied) work folder
// and removes the recovery folder. They come back under names no new result
// can take, "recovered-" before the old name: results are named by the local
// time, which a clock set back, or the hour repeated when summer time ends,
// would bring round to an old version's name, and the new result would then
// replace a version the history still lists. A name the new start has made
// already (the silence track) is that file: the new one stays. `recovery`'s
// windows and clipboard are renamed to match. False, with the recovery
// folder kept, when a file could not be moved back.
bool bringBackRecovery(const QString& workFolder, Recovery& recovery);
QString recoveredName(const QString& file); // "recovered-2024-03-05-14-07-59.wav", once
// Discard: the recovery folder and everything in it go.
void discardRecovery(const QString& workFolder);
