#include "Waveform.h"

#include <QFile>
#include <algorithm>
#include <memory>
#include <sndfile.h>
#include <thread>

namespace {
struct SndfileCloser {
    void operator()(SNDFILE* file) const { sf_close(file); }
};
using SndfileHandle = std::unique_ptr<SNDFILE, SndfileCloser>;

constexpr sf_count_t BlockFrames = 1 << 15;
constexpr float FullScale = 32768.0f;

// Raises each channel's peak to the largest magnitude among `frames`
// interleaved frames. The stereo case is written so that the compiler
// vectorises it.
void raisePeaks(const short* sample, sf_count_t frames, int channels, std::vector<int>& peaks) {
    if (channels == 2) {
        int left = peaks[0], right = peaks[1];
        for (sf_count_t i = 0; i < frames; ++i) {
            left = std::max(left, std::abs(int(sample[2 * i])));
            right = std::max(right, std::abs(int(sample[2 * i + 1])));
        }
        peaks[0] = left;
        peaks[1] = right;
        return;
    }
    for (int c = 0; c < channels; ++c) {
        int peak = peaks[std::size_t(c)];
        const short* s = sample + c;
        for (sf_count_t i = 0; i < frames; ++i, s += channels)
            peak = std::max(peak, std::abs(int(*s)));
        peaks[std::size_t(c)] = peak;
    }
}

// Reduces points [first, last) of an open file into `out`, reading only their frames.
void reducePoints(SNDFILE* file, const SF_INFO& info, int points, int first, int last,
                  std::vector<std::vector<float>>& out) {
    const int channels = info.channels;
    auto pointStart = [&](int b) { return sf_count_t(b) * info.frames / points; };
    std::vector<int> peaks(std::size_t(channels), 0);
    int point = first;
    sf_count_t frame = pointStart(first); // index of the next frame to take
    sf_count_t end = pointStart(first + 1);
    auto closePoint = [&] {
        for (int c = 0; c < channels; ++c) {
            out[std::size_t(c)][std::size_t(point)] = float(peaks[std::size_t(c)]) / FullScale;
            peaks[std::size_t(c)] = 0;
        }
        ++point;
        end = pointStart(point + 1);
    };
    if (sf_seek(file, frame, SEEK_SET) < 0)
        return;
    const sf_count_t lastFrame = pointStart(last);
    std::vector<short> block(std::size_t(BlockFrames * channels));
    while (frame < lastFrame) {
        const sf_count_t got = sf_readf_short(file, block.data(), std::min(BlockFrames, lastFrame - frame));
        if (got <= 0)
            break;
        const short* sample = block.data();
        for (sf_count_t remaining = got; remaining > 0;) {
            while (frame >= end)
                closePoint();
            const sf_count_t take = std::min(remaining, end - frame);
            raisePeaks(sample, take, channels, peaks);
            sample += take * channels;
            remaining -= take;
            frame += take;
        }
    }
    while (point < last)
        closePoint();
}
} // namespace

Waveform reduceWaveform(const QString& path, int points) {
    Waveform waveform;
    const QByteArray name = QFile::encodeName(path);
    SF_INFO info{};
    SndfileHandle file(sf_open(name.constData(), SFM_READ, &info));
    if (!file || info.channels < 1 || points < 1)
        return waveform;

    waveform.frames = info.frames;
    waveform.sampleRate = info.samplerate;
    waveform.channels.assign(std::size_t(info.channels), std::vector<float>(std::size_t(points), 0.0f));

    // A long file is read in two halves at once, each through its own handle.
    const bool split = info.seekable && info.frames >= (sf_count_t(1) << 20) && points >= 2;
    SF_INFO secondInfo{};
    SndfileHandle second(split ? sf_open(name.constData(), SFM_READ, &secondInfo) : nullptr);
    if (!second) {
        reducePoints(file.get(), info, points, 0, points, waveform.channels);
    } else {
        const int middle = points / 2;
        std::thread secondHalf(
            [&] { reducePoints(second.get(), info, points, middle, points, waveform.channels); });
        reducePoints(file.get(), info, points, 0, middle, waveform.channels);
        secondHalf.join();
    }
    waveform.ok = true;
    return waveform;
}

double audioSeconds(const QString& path) {
    SF_INFO info{};
    const SndfileHandle file(sf_open(QFile::encodeName(path).constData(), SFM_READ, &info));
    return file && info.samplerate > 0 ? double(info.frames) / info.samplerate : 0.0;
}
