#pragma once

// What a file a tool wrote holds, read from its header, and the words that
// tell the user why a run left no usable audio.

#include "tools/ToolRunner.h"

#include <QString>
#include <optional>

// The whole seconds a WAV, FLAC or AIFF file lasts by its header; nothing for
// other kinds, whose length a reader may have to decode the file to learn.
std::optional<qint64> secondsFromHeader(const QString& path);

// The alert of a result that is not usable audio, quoting what the tool said last.
QString unusableAudioMessage(const QString& operation, const ToolRun* lastRun);

// Whether libsndfile can open the file as audio (a header it understands),
// and with `needFrames`, whether it holds at least one frame.
bool isReadableAudio(const QString& path, bool needFrames = false);

// What is wrong with a WAV file's header, in words; empty when its sizes agree
// with the file's (or it is no WAV). A tool that is stopped, or that runs out
// of room, leaves a file whose header still says 0xFFFFFFFF bytes or more
// than the file holds: libsndfile reads it all the same, so only the header
// tells.
QString wavHeaderProblem(const QString& path);

// The frames a sound file holds by its header; -1 when it cannot be read.
qint64 audioFrames(const QString& path);

// Why writing into `folder` may have failed, in words, when it is full:
// "The disk is full: /home/a/Documents/Tanselo has 0 MB free."; empty otherwise.
QString fullDiskReason(const QString& folder, const QString& toolOutput = {});

// The alert of a run that exited with an error and left its output behind:
// the operation, the tool, the file and the reason.
QString failedWriteMessage(const QString& operation, const ToolRun& run, const QString& output);
