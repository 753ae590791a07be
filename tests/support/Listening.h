#pragma once

// Hearing what the editor plays: the private audio server's null sink is
// captured from its monitor as raw 16-bit stereo, and a stretch of it is
// measured by its level and by the pitch of the tone it holds.

#include <QElapsedTimer>
#include <QProcess>
#include <QTest>
#include <algorithm>
#include <cmath>
#include <vector>

namespace listening {

// Starts capturing the null sink; samples() hands back the interleaved
// samples heard so far.
class Capture {
public:
    Capture() {
        m_parec.start("parec", {"--latency-msec=50", "--device=nullsink.monitor", "--format=s16le",
                                "--rate=44100", "--channels=2"});
        m_parec.waitForStarted(5000);
    }
    ~Capture() {
        m_parec.terminate();
        m_parec.waitForFinished(5000);
    }
    const std::vector<short>& samples() {
        m_raw += m_parec.readAllStandardOutput();
        const auto* data = reinterpret_cast<const short*>(m_raw.constData());
        m_samples.insert(m_samples.end(), data, data + m_raw.size() / 4 * 2);
        m_raw.remove(0, m_raw.size() / 4 * 4);
        return m_samples;
    }

private:
    QProcess m_parec;
    QByteArray m_raw;
    std::vector<short> m_samples;
};

// Everything the sink plays over the next `ms` milliseconds, with the
// application's events flowing meanwhile.
inline std::vector<short> listen(int ms) {
    Capture capture;
    QTest::qWait(ms);
    return capture.samples();
}

// Waits (up to `timeoutMs`) until the sink has played `ms` milliseconds of
// sound louder than a tenth of full scale, and returns those last `ms`.
// Empty when the sound did not come.
inline std::vector<short> hear(int ms, int timeoutMs = 8000) {
    Capture capture;
    const std::size_t wanted = std::size_t(ms) * 441 / 10 * 2;
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < timeoutMs) {
        QTest::qWait(50);
        const std::vector<short>& heard = capture.samples();
        std::size_t loud = 0; // loud frames at the end, allowing the tone's own zero crossings
        std::size_t quiet = 0;
        for (std::size_t i = heard.size() / 2; i-- > 0 && quiet < 441;) {
            if (std::abs(heard[2 * i]) > 3277)
                quiet = 0;
            else
                ++quiet;
            ++loud;
        }
        loud = loud > quiet ? loud - quiet : 0;
        if (loud * 2 >= wanted)
            return std::vector<short>(heard.end() - std::ptrdiff_t(wanted), heard.end());
    }
    return {};
}

// RMS of the first channel, 0 to 1.
inline double level(const std::vector<short>& stereo) {
    double sum = 0;
    std::size_t n = 0;
    for (std::size_t i = 0; i + 1 < stereo.size(); i += 2, ++n)
        sum += double(stereo[i]) * stereo[i];
    return n ? std::sqrt(sum / double(n)) / 32768.0 : 0.0;
}

// The pitch of the tone in the first channel: the sample rate over the median
// distance between rising zero crossings, where the signal is louder than a
// tenth of full scale (so a gap or a click in the capture does not count).
inline double frequency(const std::vector<short>& stereo, int rate = 44100) {
    const std::size_t frames = stereo.size() / 2;
    std::vector<double> periods;
    double previous = -1;
    for (std::size_t i = 1; i < frames; ++i) {
        const short a = stereo[2 * (i - 1)], b = stereo[2 * i];
        if (!(a < 0 && b >= 0))
            continue;
        const double at = double(i - 1) + double(-a) / double(b - a); // interpolated crossing
        bool loud = false;
        for (std::size_t j = i; j < std::min(frames, i + 200) && !loud; ++j)
            loud = std::abs(stereo[2 * j]) > 3277;
        if (loud && previous >= 0)
            periods.push_back(at - previous);
        previous = loud ? at : -1;
    }
    if (periods.size() < 10)
        return 0;
    std::nth_element(periods.begin(), periods.begin() + std::ptrdiff_t(periods.size() / 2), periods.end());
    return rate / periods[periods.size() / 2];
}

} // namespace listening
