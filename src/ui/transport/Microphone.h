#pragma once

#include <QObject>
#include <QThread>
#include <QVector>

class MicrophoneFeed;

// The live input feed that the waveform plot shows while recording. The input
// is read on a thread of its own; each buffer's first channel is copied there
// (the input reuses its buffers) and the copy is handed to the owner's thread.
class Microphone : public QObject {
    Q_OBJECT
public:
    explicit Microphone(QObject* parent = nullptr);
    ~Microphone() override;

    void startFetchingAudio();
    void stopFetchingAudio();

signals:
    // One buffer of the first channel, samples from -1 to 1; delivered on the
    // owner's thread.
    void hasAudioReceived(const QVector<float>& buffer);

private:
    QThread m_thread;
    MicrophoneFeed* m_feed = nullptr;
};
