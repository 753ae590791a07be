#pragma once

#include "plans/Plan.h"

#include <QString>
#include <QStringList>
#include <optional>

// Exporting runs ffmpeg once over the current working WAV. The export dialog
// offers four lists; what is passed to ffmpeg is looked up from the indexes
// chosen in them.
namespace exporting {

const QStringList& formats();     // "WAV", "M4A", "MP3"
const QStringList& sampleRates(); // "6000" … "192000"
const QStringList& channels();    // "Mono", "Stereo"
const QStringList& bitRates();    // "16k" … "256k", as the list shows them

constexpr int DefaultFormat = 0;     // "WAV"
constexpr int DefaultSampleRate = 6; // "44100"
constexpr int DefaultChannels = 1;   // "Stereo"
constexpr int DefaultBitRate = 3;    // "40k"

// The four indexes chosen in the dialog's lists (-1: nothing chosen).
struct Choice {
    int format = DefaultFormat;
    int sampleRate = DefaultSampleRate;
    int channels = DefaultChannels;
    int bitRate = DefaultBitRate;
    bool operator==(const Choice&) const = default;
};

// The bit rate passed for the item at `index`. The table behind it has two
// entries fewer than the list ("56k" and "144k" are missing), so from "56k" on
// each item passes the next higher rate, and the last two items pass nothing.
std::optional<QString> bitRateArgument(int index);

// "output.wav", "output.m4a" or "output.mp3" by format; empty for no format.
QString proposedName(int format);
// The extension the save dialog adds to a name typed without one.
QString defaultSuffix(int format);

// "-i" wav "-vn" "-ar" R "-ac" C "-ab" B destination; nothing when a list has no
// valid choice, or the bit rate is one of the last two items. The encoder
// follows the destination's extension.
std::optional<QStringList> exportArguments(const QString& wav, const Choice& choice,
                                           const QString& destination);

// How large the exported file should end up, for a progress estimate: exact
// for WAV, from the bit rate for M4A and MP3, nothing for other extensions.
std::optional<qint64> expectedBytes(const QString& destination, const Choice& choice, double seconds);

// Sets aside whatever is at the destination, runs ffmpeg with `arguments` and
// fails, putting the old file back, unless the run ends with a complete file:
// one ffmpeg reads back as lasting the track's `seconds` (whole seconds, as
// the window shows them; negative: not known), within a second.
Plan buildExportPlan(const QString& destination, const QStringList& arguments,
                     std::optional<qint64> expected = std::nullopt, qint64 seconds = -1);

// Why an export that reads back as lasting `probed` seconds is not the
// track of `seconds`; empty when it is, or when either is not known.
QString exportLengthProblem(const QString& destination, std::optional<qint64> probed, qint64 seconds);

// What ffmpeg's reading of a written file ("-i" FILE, the export's length
// probe) says of its audio stream, as it says it: "mp3", 44100, "stereo", 160.
struct WrittenAudio {
    QString codec;
    int sampleRate = 0;
    QString channels;
    std::optional<int> kilobitsPerSecond; // the stream's bit rate, where it gives one
    bool operator==(const WrittenAudio&) const = default;
};
std::optional<WrittenAudio> writtenAudio(const QString& probeOutput);

// The success alert's text: the sentence every export says, then the file's
// full path and what it holds ("MP3 audio: mp3, 44100 Hz, stereo, 160 kb/s"),
// the bit rate for compressed audio only. A list's bit rate may not be the
// one written (from "56k" on each item passes the next higher rate), so the
// file's own is told.
QString savedMessage(const QString& destination, const std::optional<WrittenAudio>& written);

// The folders an export to `destination` must make first, the outermost
// first; empty when its folder is there.
QStringList missingFolders(const QString& destination);
QString folderNotMadeMessage(const QString& folder);

// Whether `destination` is one of `protectedFiles` (the versions of open
// tracks, the clipboard, the silence track), however either is spelt.
bool isProtected(const QString& destination, const QStringList& protectedFiles);
QString protectedDestinationMessage(const QString& destination);

// Whether `destination` lies in `folder` or below it: the work folder is
// emptied at every start, so an export there would be lost.
bool isInsideFolder(const QString& destination, const QString& folder);
QString workFolderDestinationMessage(const QString& destination, const QString& workFolder);

// How an export ended, judged by what lies at the destination and by how
// ffmpeg ended.
struct Verdict {
    enum Kind { Saved, NoFile, Incomplete } kind = Saved;
    QString message; // the alert's text when not saved
};
Verdict judge(const QString& destination, const ToolRun& run);

// The line of a tool's output that best says why it failed; empty when none does.
QString failureReason(const QString& output);

} // namespace exporting
