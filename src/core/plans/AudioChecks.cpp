#include "AudioChecks.h"

#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>
#include <QtEndian>
#include <algorithm>
#include <sndfile.h>

namespace {
// What a sound file's header says, as libsndfile reads it; nothing when it
// cannot open the file.
std::optional<SF_INFO> soundHeader(const QString& path) {
    SF_INFO info{};
    SNDFILE* file = sf_open(QFile::encodeName(path).constData(), SFM_READ, &info);
    if (!file)
        return std::nullopt;
    sf_close(file);
    return info;
}
} // namespace

std::optional<qint64> secondsFromHeader(const QString& path) {
    static const QStringList told{"wav", "flac", "aif", "aiff", "aifc", "caf", "w64"};
    if (!told.contains(QFileInfo(path).suffix().toLower()))
        return std::nullopt;
    const std::optional<SF_INFO> info = soundHeader(path);
    if (!info || info->samplerate <= 0)
        return std::nullopt;
    return info->frames / info->samplerate;
}

bool isReadableAudio(const QString& path, bool needFrames) {
    const std::optional<SF_INFO> info = soundHeader(path);
    return info && (!needFrames || info->frames > 0);
}

QString wavHeaderProblem(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const qint64 size = file.size();
    const QByteArray head = file.read(12);
    if (head.size() < 12 || !head.startsWith("RIFF") || head.mid(8, 4) != "WAVE")
        return {};
    const auto told = [&](quint32 bytes, qint64 holds) {
        return QStringLiteral("its header says %1 bytes of audio, but the file holds %2")
            .arg(bytes == 0xFFFFFFFFu ? QStringLiteral("0xFFFFFFFF") : QString::number(bytes))
            .arg(holds);
    };
    // The chunks follow one another, each a name and a size; "data" holds the audio.
    qint64 offset = 12;
    while (offset + 8 <= size) {
        file.seek(offset);
        const QByteArray chunk = file.read(8);
        if (chunk.size() < 8)
            break;
        const quint32 bytes = qFromLittleEndian<quint32>(chunk.constData() + 4);
        const qint64 body = offset + 8;
        if (chunk.startsWith("data"))
            return body + qint64(bytes) > size ? told(bytes, size - body) : QString();
        offset = body + qint64(bytes) + (bytes & 1);
    }
    return QStringLiteral("its header names no audio within the file's %1 bytes").arg(size);
}

qint64 audioFrames(const QString& path) {
    const std::optional<SF_INFO> info = soundHeader(path);
    return info ? info->frames : -1;
}

QString fullDiskReason(const QString& folder, const QString& toolOutput) {
    const QStorageInfo disk(folder);
    const qint64 free = disk.isValid() ? disk.bytesAvailable() : -1;
    constexpr qint64 MB = 1024 * 1024;
    // A disk with less than a megabyte left cannot take a working file; a tool
    // that says so may have failed on a disk that has room again by now.
    if ((free >= 0 && free < MB) || toolOutput.contains(QStringLiteral("No space left on device")))
        return QStringLiteral("The disk is full: %1 has %2 MB free.")
            .arg(folder)
            .arg(std::max<qint64>(free, 0) / MB);
    return {};
}

QString failedWriteMessage(const QString& operation, const ToolRun& run, const QString& output) {
    const QString tool = QFileInfo(run.program).fileName();
    QString text = QStringLiteral("%1 failed: %2 ended with an error while writing “%3”.")
                       .arg(operation, tool, QFileInfo(output).fileName());
    QString reason = fullDiskReason(QFileInfo(output).path(), run.output);
    if (reason.isEmpty())
        if (const QString line = lastOutputLine(run.output); !line.isEmpty())
            reason = QStringLiteral("%1 said: “%2”").arg(tool, line);
    if (!reason.isEmpty())
        text += QStringLiteral("\n\n") + reason;
    return text;
}

QString unusableAudioMessage(const QString& operation, const ToolRun* lastRun) {
    QString text = QStringLiteral("%1 produced no usable audio.").arg(operation);
    if (lastRun) {
        if (const QString line = lastOutputLine(lastRun->output); !line.isEmpty())
            text += QStringLiteral("\n\n%1 said: “%2”").arg(QFileInfo(lastRun->program).fileName(), line);
    }
    return text;
}
