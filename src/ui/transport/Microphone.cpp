#include "Microphone.h"
#include "WorkingAudioFormat.h"

#include <QAudioSource>
#include <QMediaDevices>
#include <memory>

// Lives on the microphone's thread: opens the input and copies what it reads.
class MicrophoneFeed : public QObject {
    Q_OBJECT
public:
    void start() {
        if (m_source)
            return;
        const QAudioDevice device = QMediaDevices::defaultAudioInput();
        if (device.isNull())
            return;
        m_source = std::make_unique<QAudioSource>(device, workingAudioFormat());
        m_source->setBufferSize(workingFormat::bytesFor(50));
        m_input = m_source->start();
        if (!m_input) {
            m_source.reset();
            return;
        }
        QIODevice* input = m_input;
        connect(input, &QIODevice::readyRead, this, [this, input] { read(input); });
    }

    void stop() {
        if (m_source)
            m_source->stop();
        m_source.reset();
        m_input = nullptr;
    }

signals:
    void buffer(const QVector<float>& firstChannel);

private:
    // Reads from the device that said it has samples: after a stop the input
    // can still announce a last buffer.
    void read(QIODevice* input) {
        if (input != m_input || !m_source)
            return;
        const QByteArray data = input->readAll();
        const auto* samples = reinterpret_cast<const qint16*>(data.constData());
        QVector<float> first(data.size() / workingFormat::BytesPerFrame);
        for (qsizetype i = 0; i < first.size(); ++i)
            first[i] = float(samples[workingFormat::Channels * i]) / 32768.0f;
        if (!first.isEmpty())
            emit buffer(first);
    }

    std::unique_ptr<QAudioSource> m_source;
    QIODevice* m_input = nullptr;
};

Microphone::Microphone(QObject* parent) : QObject(parent) {}

Microphone::~Microphone() {
    if (m_feed) {
        QMetaObject::invokeMethod(m_feed, &MicrophoneFeed::stop, Qt::BlockingQueuedConnection);
        m_thread.quit();
        m_thread.wait();
        delete m_feed; // its thread has ended
    }
}

void Microphone::startFetchingAudio() {
    if (!m_feed) {
        m_feed = new MicrophoneFeed;
        m_feed->moveToThread(&m_thread);
        connect(m_feed, &MicrophoneFeed::buffer, this, &Microphone::hasAudioReceived, Qt::QueuedConnection);
        m_thread.setObjectName(QStringLiteral("microphone"));
        m_thread.start();
    }
    QMetaObject::invokeMethod(m_feed, &MicrophoneFeed::start, Qt::QueuedConnection);
}

void Microphone::stopFetchingAudio() {
    if (m_feed)
        QMetaObject::invokeMethod(m_feed, &MicrophoneFeed::stop, Qt::QueuedConnection);
}

#include "Microphone.moc"
