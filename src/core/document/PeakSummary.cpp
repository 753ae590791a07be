#include "PeakSummary.h"

#include <algorithm>

namespace {
constexpr float FullScale = 32768.0f;

qint64 granularity(PeakLevel level) {
    switch (level) {
    case PeakLevel::Samples:
        return 1;
    case PeakLevel::Fine:
        return PeakSummary::FineFrames;
    case PeakLevel::Coarse:
        return PeakSummary::CoarseFrames;
    }
    return 1;
}

// The column's frames before they are moved to a level's boundaries.
FrameSpan evenSpan(qint64 x, qint64 contentWidth, qint64 frames) {
    // 128-bit products: a column index times an hour's frames overflows 64 bits
    // only for widths far beyond a widget's, but costs nothing to rule out.
    const auto at = [&](qint64 column) {
        return qint64((__int128(column) * frames) / std::max<qint64>(contentWidth, 1));
    };
    return {at(x), at(x + 1)};
}
} // namespace

qint64 PeakSummary::bytes() const {
    qint64 total = 0;
    for (const auto& level : {fine, coarse})
        for (const auto& channel : level)
            total += qint64(channel.capacity() * sizeof(quint16));
    return total;
}

void fillCoarseLevel(PeakSummary& summary) {
    constexpr qint64 perCoarse = PeakSummary::CoarseFrames / PeakSummary::FineFrames;
    summary.coarse.clear();
    for (const auto& fine : summary.fine) {
        std::vector<quint16> coarse(std::size_t((qint64(fine.size()) + perCoarse - 1) / perCoarse), 0);
        for (std::size_t i = 0; i < fine.size(); ++i)
            coarse[i / perCoarse] = std::max(coarse[i / perCoarse], fine[i]);
        summary.coarse.push_back(std::move(coarse));
    }
}

PeakLevel levelForColumns(qint64 frames, qint64 contentWidth) {
    const double perColumn = double(frames) / double(std::max<qint64>(contentWidth, 1));
    if (perColumn >= double(PeakSummary::CoarseFrames))
        return PeakLevel::Coarse;
    if (perColumn >= double(PeakSummary::FineFrames))
        return PeakLevel::Fine;
    return PeakLevel::Samples;
}

FrameSpan columnSpan(qint64 x, qint64 contentWidth, qint64 frames, PeakLevel level) {
    const FrameSpan even = evenSpan(x, contentWidth, frames);
    if (level == PeakLevel::Samples) // a column narrower than a frame shows the frame it lies on
        return {even.first, std::min(frames, std::max(even.end, even.first + 1))};
    const qint64 g = granularity(level);
    const qint64 end = x + 1 >= contentWidth ? frames : even.end / g * g;
    return {even.first / g * g, std::min(frames, end)};
}

std::vector<std::vector<float>> columnPeaks(const PeakSummary& summary, const SampleStretch* samples,
                                            qint64 firstColumn, int columns, qint64 contentWidth) {
    const int channels = summary.channelCount();
    std::vector<std::vector<float>> peaks(std::size_t(channels),
                                          std::vector<float>(std::size_t(columns), 0.0f));
    const PeakLevel level = levelForColumns(summary.frames, contentWidth);
    const qint64 g = granularity(level);
    const auto& values = level == PeakLevel::Coarse ? summary.coarse : summary.fine;
    for (int i = 0; i < columns; ++i) {
        const qint64 x = firstColumn + i;
        if (x < 0 || x >= contentWidth)
            continue;
        const FrameSpan span = columnSpan(x, contentWidth, summary.frames, level);
        if (span.end <= span.first)
            continue;
        const bool sampled =
            samples && samples->channels == channels && samples->covers(span.first, span.end);
        for (int c = 0; c < channels; ++c) {
            int peak = 0;
            if (level == PeakLevel::Samples && sampled) {
                const short* s = samples->samples.data() + (span.first - samples->firstFrame) * channels + c;
                for (qint64 f = span.first; f < span.end; ++f, s += channels)
                    peak = std::max(peak, std::abs(int(*s)));
            } else { // from a level of the summary; samples not read yet are drawn from the finer one
                const qint64 step = level == PeakLevel::Samples ? PeakSummary::FineFrames : g;
                const auto& channel = values[std::size_t(c)];
                const auto from = std::size_t(span.first / step);
                const auto to = std::min(channel.size(), std::size_t((span.end + step - 1) / step));
                for (std::size_t v = from; v < to; ++v)
                    peak = std::max(peak, int(channel[v]));
            }
            peaks[std::size_t(c)][std::size_t(i)] = float(peak) / FullScale;
        }
    }
    return peaks;
}
