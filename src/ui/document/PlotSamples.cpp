#include "PlotSamples.h"

#include "document/Waveform.h"

#include <QtConcurrent>

PlotSamples::PlotSamples(QObject* parent) : QObject(parent) {
    connect(&m_watcher, &QFutureWatcher<SampleStretch>::finished, this, &PlotSamples::finished);
}

void PlotSamples::setFile(const QString& path) {
    m_path = path;
    ++m_file;
    m_stretch = {};
    m_unreadable = false;
    m_queued.reset();
}

const SampleStretch* PlotSamples::samplesFor(qint64 first, qint64 end, qint64 margin) {
    if (m_stretch.covers(first, end))
        return &m_stretch;
    const bool runningCovers = m_reading && m_runningFile == m_file && first >= m_running.first &&
                               end <= m_running.first + m_running.count;
    if (runningCovers || m_path.isEmpty() || m_unreadable)
        return nullptr;
    const qint64 from = std::max<qint64>(0, first - margin);
    const Wanted wanted{from, end + margin - from, first, end};
    if (m_reading)
        m_queued = wanted; // only the latest wish is read next; those between are passed over
    else
        startRead(wanted);
    return nullptr;
}

void PlotSamples::startRead(const Wanted& wanted) {
    m_reading = true;
    m_running = wanted;
    m_runningFile = m_file;
    m_watcher.setFuture(QtConcurrent::run(readSampleStretch, m_path, wanted.first, wanted.count));
}

void PlotSamples::finished() {
    m_reading = false;
    const bool current = m_runningFile == m_file;
    if (current) {
        m_stretch = m_watcher.result();
        m_unreadable = m_stretch.frameCount() == 0;
    }
    if (m_queued) {
        const Wanted next = *m_queued;
        m_queued.reset();
        if (!m_unreadable && !m_stretch.covers(next.needFirst, next.needEnd))
            startRead(next);
    }
    if (current)
        emit arrived();
}
