#pragma once

// A track's peaks at two resolutions, kept when its working WAV is read for
// drawing, so that a zoomed view can show the detail under every pixel
// without reading the file again: per channel, the largest magnitude of every
// 256 frames and of every 65,536 frames. An hour of stereo takes 2.5 MB.
// Where a pixel holds fewer frames than the finer level, the samples
// themselves are read, for the visible stretch only.

#include <QtGlobal>
#include <vector>

struct PeakSummary {
    static constexpr qint64 FineFrames = 256;
    static constexpr qint64 CoarseFrames = 65536;

    qint64 frames = 0;
    // Per channel, magnitudes 0..32768 (full scale); the last value of a
    // level covers what is left of the track.
    std::vector<std::vector<quint16>> fine;
    std::vector<std::vector<quint16>> coarse;

    int channelCount() const { return int(fine.size()); }
    qint64 bytes() const;
};

// The coarse level from the fine one (each coarse value the largest of the
// 256 fine values under it).
void fillCoarseLevel(PeakSummary& summary);

// Which data a column of the drawing is taken from: the coarsest level that
// still has at least one value per column, or the samples.
enum class PeakLevel { Samples, Fine, Coarse };
PeakLevel levelForColumns(qint64 frames, qint64 contentWidth);

// The frames column `x` of a drawing `contentWidth` columns wide stands for,
// [first, end): the track divided evenly, each boundary moved down to the
// start of a value of `level`, so that a column is exactly the values under it.
struct FrameSpan {
    qint64 first = 0;
    qint64 end = 0;
};
FrameSpan columnSpan(qint64 x, qint64 contentWidth, qint64 frames, PeakLevel level);

// Interleaved 16-bit samples of a stretch of the track, as read from its file.
struct SampleStretch {
    qint64 firstFrame = 0;
    int channels = 0;
    std::vector<short> samples;
    qint64 frameCount() const { return channels > 0 ? qint64(samples.size()) / channels : 0; }
    bool covers(qint64 first, qint64 end) const {
        return first >= firstFrame && end <= firstFrame + frameCount();
    }
};
// The peak level (0..1) of each channel in columns [firstColumn,
// firstColumn + columns) of a drawing `contentWidth` columns wide: from the
// summary's level for those columns, or, when that is the samples, from
// `samples`; a column `samples` does not cover (not read yet) is drawn from
// the finer level meanwhile. Per channel, one per column.
std::vector<std::vector<float>> columnPeaks(const PeakSummary& summary, const SampleStretch* samples,
                                            qint64 firstColumn, int columns, qint64 contentWidth);
