#include "SoundRecorder.h"
#include "WorkingAudioFormat.h"

#include <QAudioSource>
#include <QFile>
#include <QMediaDevices>
#include <algorithm>
#include <sndfile.h>

SoundRecorder::SoundRecorder(const QString& path, QObject* parent) : QObject(parent), m_path(path) {}

SoundRecorder::~SoundRecorder() {
    stop();
}

bool SoundRecorder::record() {
    if (m_source) {
        m_source->resume();
        m_lastSamples.start();
        m_watch.start();
        return m_source->error() == QAudio::NoError;
    }
    const QAudioDevice device = QMediaDevices::defaultAudioInput();
    if (device.isNull())
        return false;
    SF_INFO info{};
    info.samplerate = workingFormat::SampleRate;
    info.channels = workingFormat::Channels;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    m_file = sf_open(QFile::encodeName(m_path).constData(), SFM_WRITE, &info);
    if (!m_file)
        return false;
    m_source = std::make_unique<QAudioSource>(device, workingAudioFormat());
    m_source->setBufferSize(workingFormat::bytesFor(100));
    m_input = m_source->start();
    if (!m_input || m_source->error() != QAudio::NoError) {
        m_source.reset();
        m_input = nullptr;
        closeFile();
        QFile::remove(m_path);
        return false;
    }
    connect(m_input, &QIODevice::readyRead, this, &SoundRecorder::take);
    connect(m_source.get(), &QAudioSource::stateChanged, this, [this](QAudio::State state) {
        if (state == QAudio::StoppedState && !m_stopping && m_source->error() != QAudio::NoError)
            loseInput();
    });
    // The sound server does not always tell a stream that its source has gone
    // (it may even move the stream to another source): twice a second the
    // device is looked for among the inputs and the samples are checked to be
    // flowing.
    m_device = device;
    m_lastSamples.start();
    m_watch.setInterval(500);
    connect(&m_watch, &QTimer::timeout, this, [this] {
        if (!QMediaDevices::audioInputs().contains(m_device) || m_lastSamples.elapsed() > 3000)
            loseInput();
    });
    m_watch.start();
    return true;
}

void SoundRecorder::take() {
    if (!m_input || !m_file)
        return;
    const QByteArray data = m_input->readAll();
    if (!data.isEmpty())
        m_lastSamples.start();
    const qint64 frames = std::min<qint64>(data.size() / workingFormat::BytesPerFrame, m_limit - m_frames);
    if (frames <= 0 && m_frames < m_limit)
        return;
    const qint64 written =
        frames > 0 ? sf_writef_short(m_file, reinterpret_cast<const short*>(data.constData()), frames) : 0;
    m_frames += written;
    // Told once, and after this input's signal has returned: the owner stops
    // the recording then, which deletes the input. A recording stopped
    // meanwhile is not told.
    if (m_told || m_stopping || (written == frames && m_frames < m_limit))
        return;
    m_told = true;
    const bool failed = written < frames;
    QMetaObject::invokeMethod(
        this,
        [this, failed] {
            if (m_stopping)
                return;
            if (failed)
                emit writeFailed();
            else
                emit limitReached();
        },
        Qt::QueuedConnection);
}

void SoundRecorder::pause() {
    if (!m_source)
        return;
    take();
    m_source->suspend();
    m_watch.stop();
}

void SoundRecorder::loseInput() {
    if (!m_source || m_stopping)
        return;
    m_watch.stop();
    emit inputLost();
}

void SoundRecorder::stop() {
    m_watch.stop();
    if (m_source) {
        m_stopping = true;
        take();
        m_source->stop();
        m_source.reset();
        m_input = nullptr;
    }
    closeFile();
}

void SoundRecorder::closeFile() {
    if (m_file) {
        sf_close(m_file);
        m_file = nullptr;
    }
}
