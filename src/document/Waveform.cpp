#include "Waveform.h"

#include <QFile>
#include <cmath>
#include <memory>
#include <sndfile.h>

namespace {
struct SndfileCloser {
    void operator()(SNDFILE* file) const { sf_close(file); }
};
using SndfileHandle = std::unique_ptr<SNDFILE, SndfileCloser>;

constexpr sf_count_t BlockFrames = 1 << 15;

// Adds each channel's sum of squares over `frames` interleaved frames. Exact
// integer arithmetic: a square fits in 31 bits, a stretch's sum in 64. The
// stereo case is written so that the compiler vectorises it.
void addSquares(const short* sample, sf_count_t frames, int channels, std::vector<qint64>& sums) {
    if (channels == 2) {
        qint64 left = 0, right = 0;
        for (sf_count_t i = 0; i < frames; ++i) {
            const int l = sample[2 * i], r = sample[2 * i + 1];
            left += l * l;
            right += r * r;
        }
        sums[0] += left;
        sums[1] += right;
        return;
    }
    for (int c = 0; c < channels; ++c) {
        qint64 sum = 0;
        const short* s = sample + c;
        for (sf_count_t i = 0; i < frames; ++i, s += channels)
            sum += *s * *s;
        sums[std::size_t(c)] += sum;
    }
}
constexpr double FullScale = 32768.0;
} // namespace

Waveform reduceWaveform(const QString& path, int points) {
    Waveform waveform;
    SF_INFO info{};
    SndfileHandle file(sf_open(QFile::encodeName(path).constData(), SFM_READ, &info));
    if (!file || info.channels < 1 || points < 1)
        return waveform;

    const int channels = info.channels;
    waveform.frames = info.frames;
    waveform.sampleRate = info.samplerate;
    waveform.channels.assign(std::size_t(channels), std::vector<float>(std::size_t(points), 0.0f));

    // Bucket b covers frames [b * frames / points, (b + 1) * frames / points).
    auto bucketEnd = [&](int b) { return (sf_count_t(b) + 1) * info.frames / points; };
    std::vector<qint64> sums(std::size_t(channels), 0);
    int bucket = 0;
    sf_count_t frame = 0; // index of the next frame read
    sf_count_t bucketStart = 0;
    sf_count_t end = bucketEnd(0);
    auto closeBucket = [&] {
        const double count = double(end - bucketStart);
        for (int c = 0; c < channels; ++c) {
            waveform.channels[std::size_t(c)][std::size_t(bucket)] =
                count > 0 ? float(std::sqrt(double(sums[std::size_t(c)]) / count) / FullScale) : 0.0f;
            sums[std::size_t(c)] = 0;
        }
        bucketStart = end;
        ++bucket;
        end = bucket < points ? bucketEnd(bucket) : info.frames;
    };

    std::vector<short> block(std::size_t(BlockFrames * channels));
    sf_count_t got = 0;
    while (bucket < points && (got = sf_readf_short(file.get(), block.data(), BlockFrames)) > 0) {
        const short* sample = block.data();
        sf_count_t remaining = got;
        while (remaining > 0) {
            while (bucket < points && frame >= end)
                closeBucket();
            const sf_count_t take = std::min(remaining, bucket < points ? end - frame : remaining);
            addSquares(sample, take, channels, sums);
            sample += take * channels;
            remaining -= take;
            frame += take;
        }
    }
    while (bucket < points)
        closeBucket();
    waveform.ok = true;
    return waveform;
}
