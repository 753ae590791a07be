#pragma once

#include <QAudioDevice>
#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>
#include <limits>
#include <memory>

class QAudioSource;
class QIODevice;
struct sf_private_tag;

// Records the default audio input into a WAV file in the format of every
// working WAV. Pausing and recording again continue the same file; stopping
// finishes it.
class SoundRecorder : public QObject {
    Q_OBJECT
public:
    explicit SoundRecorder(const QString& path, QObject* parent = nullptr);
    ~SoundRecorder() override;

    // Starts, or resumes after a pause. False when there is no input to open
    // or the file cannot be written; nothing is then recorded.
    bool record();
    void pause();
    // Takes what the input still holds, then finishes and closes the file.
    void stop();

    QString path() const { return m_path; }
    qint64 framesWritten() const { return m_frames; }
    // The most frames the file may take; what comes in beyond them is dropped.
    void setFrameLimit(qint64 frames) { m_limit = frames; }

signals:
    // The input went away while recording (the sound server stopped, the
    // device was unplugged); what was recorded so far is in the file.
    void inputLost();
    // The file holds as many frames as it may.
    void limitReached();
    // The file took fewer frames than came in: the disk is full.
    void writeFailed();

private:
    void take();
    void closeFile();
    void loseInput();

    QString m_path;
    std::unique_ptr<QAudioSource> m_source;
    QIODevice* m_input = nullptr;
    sf_private_tag* m_file = nullptr;
    qint64 m_frames = 0;
    qint64 m_limit = std::numeric_limits<qint64>::max();
    bool m_told = false; // a limit or a failed write has been signalled
    QAudioDevice m_device;
    QTimer m_watch;              // looks out for the input going away
    QElapsedTimer m_lastSamples; // since the last buffer came in
    bool m_stopping = false;
};
