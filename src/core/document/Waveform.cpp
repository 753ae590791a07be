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

std::function<void()>& readWatcher() {
    static std::function<void()> watcher;
    return watcher;
}

void tellReadWatcher() {
    if (const std::function<void()>& watcher = readWatcher())
        watcher();
}

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

// Where the frames of one reading go: the point of the overview and the
// value of the summary's fine level they belong to.
struct Reduction {
    std::vector<std::vector<float>>& points;
    std::vector<std::vector<quint16>>& fine;
    // A half that begins inside a fine value keeps that value's peaks here, to
    // be merged with the other half's once both are done.
    std::vector<int> leadingFine;
};

// Reduces points [first, last) of an open file, reading only their frames.
// Each stretch between a point's boundary and a fine value's is folded into
// both, so the file's samples are looked at once.
void reducePoints(SNDFILE* file, const SF_INFO& info, int points, int first, int last, Reduction& out) {
    const int channels = info.channels;
    constexpr sf_count_t FineFrames = PeakSummary::FineFrames;
    auto pointStart = [&](int b) { return sf_count_t(b) * info.frames / points; };
    std::vector<int> pointPeaks(std::size_t(channels), 0), finePeaks(pointPeaks), stretch(pointPeaks);
    int point = first;
    sf_count_t frame = pointStart(first); // index of the next frame to take
    sf_count_t end = pointStart(first + 1);
    sf_count_t fine = frame / FineFrames;
    sf_count_t fineEnd = (fine + 1) * FineFrames;
    bool leading = frame % FineFrames != 0;
    auto closePoint = [&] {
        for (int c = 0; c < channels; ++c) {
            out.points[std::size_t(c)][std::size_t(point)] = float(pointPeaks[std::size_t(c)]) / FullScale;
            pointPeaks[std::size_t(c)] = 0;
        }
        ++point;
        end = pointStart(point + 1);
    };
    auto closeFine = [&] {
        if (leading)
            out.leadingFine = finePeaks;
        else
            for (int c = 0; c < channels; ++c)
                out.fine[std::size_t(c)][std::size_t(fine)] = quint16(finePeaks[std::size_t(c)]);
        std::fill(finePeaks.begin(), finePeaks.end(), 0);
        leading = false;
        ++fine;
        fineEnd += FineFrames;
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
            if (frame >= fineEnd)
                closeFine();
            const sf_count_t take = std::min({remaining, end - frame, fineEnd - frame});
            std::fill(stretch.begin(), stretch.end(), 0);
            raisePeaks(sample, take, channels, stretch);
            for (int c = 0; c < channels; ++c) {
                pointPeaks[std::size_t(c)] = std::max(pointPeaks[std::size_t(c)], stretch[std::size_t(c)]);
                finePeaks[std::size_t(c)] = std::max(finePeaks[std::size_t(c)], stretch[std::size_t(c)]);
            }
            sample += take * channels;
            remaining -= take;
            frame += take;
        }
    }
    while (point < last)
        closePoint();
    if (frame > fine * FineFrames) // the fine value this half ends inside
        closeFine();
}
} // namespace

Waveform reduceWaveform(const QString& path, int points) {
    tellReadWatcher();
    Waveform waveform;
    const QByteArray name = QFile::encodeName(path);
    SF_INFO info{};
    SndfileHandle file(sf_open(name.constData(), SFM_READ, &info));
    if (!file || info.channels < 1 || points < 1)
        return waveform;

    waveform.frames = info.frames;
    waveform.sampleRate = info.samplerate;
    waveform.channels.assign(std::size_t(info.channels), std::vector<float>(std::size_t(points), 0.0f));
    PeakSummary& peaks = waveform.peaks;
    peaks.frames = info.frames;
    const auto fineCount = std::size_t((info.frames + PeakSummary::FineFrames - 1) / PeakSummary::FineFrames);
    peaks.fine.assign(std::size_t(info.channels), std::vector<quint16>(fineCount, 0));

    // A long file is read in two halves at once, each through its own handle.
    const bool split = info.seekable && info.frames >= (sf_count_t(1) << 20) && points >= 2;
    SF_INFO secondInfo{};
    SndfileHandle second(split ? sf_open(name.constData(), SFM_READ, &secondInfo) : nullptr);
    Reduction firstHalf{waveform.channels, peaks.fine, {}};
    if (!second) {
        reducePoints(file.get(), info, points, 0, points, firstHalf);
    } else {
        const int middle = points / 2;
        Reduction secondHalf{waveform.channels, peaks.fine, {}};
        std::thread reader([&] { reducePoints(second.get(), info, points, middle, points, secondHalf); });
        reducePoints(file.get(), info, points, 0, middle, firstHalf);
        reader.join();
        // The fine value both halves read part of.
        const auto shared = std::size_t(sf_count_t(middle) * info.frames / points / PeakSummary::FineFrames);
        for (std::size_t c = 0; c < secondHalf.leadingFine.size(); ++c)
            peaks.fine[c][shared] = std::max(peaks.fine[c][shared], quint16(secondHalf.leadingFine[c]));
    }
    fillCoarseLevel(peaks);
    waveform.ok = true;
    return waveform;
}

SampleStretch readSampleStretch(const QString& path, qint64 first, qint64 count) {
    tellReadWatcher();
    SampleStretch stretch;
    SF_INFO info{};
    const SndfileHandle file(sf_open(QFile::encodeName(path).constData(), SFM_READ, &info));
    if (!file)
        return stretch;
    first = std::clamp<qint64>(first, 0, info.frames);
    count = std::clamp<qint64>(count, 0, info.frames - first);
    stretch.firstFrame = first;
    stretch.channels = info.channels;
    stretch.samples.resize(std::size_t(count * info.channels));
    if (sf_seek(file.get(), first, SEEK_SET) >= 0) {
        const sf_count_t got = sf_readf_short(file.get(), stretch.samples.data(), count);
        stretch.samples.resize(std::size_t(std::max<sf_count_t>(got, 0) * info.channels));
    } else {
        stretch.samples.clear();
    }
    return stretch;
}

double audioSeconds(const QString& path) {
    SF_INFO info{};
    const SndfileHandle file(sf_open(QFile::encodeName(path).constData(), SFM_READ, &info));
    return file && info.samplerate > 0 ? double(info.frames) / info.samplerate : 0.0;
}

void setSampleReadWatcher(std::function<void()> watcher) {
    readWatcher() = std::move(watcher);
}
