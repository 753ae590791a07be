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
    std::vector<double> sums(std::size_t(channels), 0.0);
    int bucket = 0;
    sf_count_t frame = 0; // index of the next frame read
    sf_count_t bucketStart = 0;
    sf_count_t end = bucketEnd(0);
    auto closeBucket = [&] {
        const double count = double(end - bucketStart);
        for (int c = 0; c < channels; ++c) {
            waveform.channels[std::size_t(c)][std::size_t(bucket)] =
                count > 0 ? float(std::sqrt(sums[std::size_t(c)] / count) / FullScale) : 0.0f;
            sums[std::size_t(c)] = 0.0;
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
            for (int c = 0; c < channels; ++c) {
                double sum = 0.0;
                const short* s = sample + c;
                for (sf_count_t i = 0; i < take; ++i, s += channels)
                    sum += double(*s) * double(*s);
                sums[std::size_t(c)] += sum;
            }
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
