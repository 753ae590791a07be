#pragma once

#include "PeakSummary.h"

#include <QString>
#include <functional>
#include <vector>

// A track reduced for drawing: `points` values per channel, each the peak
// level (0..1, the largest magnitude) of an equal stretch of the file.
struct Waveform {
    std::vector<std::vector<float>> channels;
    qint64 frames = 0;
    int sampleRate = 0;
    bool ok = false;   // false when the file could not be opened as audio
    PeakSummary peaks; // the detail for zoomed views, gathered in the same pass
};

// Streams the file in blocks, so memory stays constant whatever its length
// (but for the summary of peaks, a few MB an hour).
// Blocks the calling thread: the document calls it on a worker thread.
Waveform reduceWaveform(const QString& path, int points = 1024);

// Reads frames [first, first + count) of an audio file; blocks the calling
// thread (the plot calls it on a worker thread). Empty when it cannot be read.
SampleStretch readSampleStretch(const QString& path, qint64 first, qint64 count);

// Told of every read of a file's samples above, on the thread that reads
// (the drawing must never read on the interface thread); empty: no one.
// Set it before any read starts.
void setSampleReadWatcher(std::function<void()> watcher);

// The exact length of an audio file from its header; 0 when it cannot be read.
double audioSeconds(const QString& path);
