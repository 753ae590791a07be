#include "WorkFolder.h"

#include "plans/AudioChecks.h"
#include "plans/Plan.h"
#include "tools/Duration.h"
#include "tools/WorkingFormat.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QStandardPaths>
#include <QStorageInfo>
#include <QTemporaryFile>
#include <algorithm>
#include <cmath>
#include <filesystem>

QString workFolderPath() {
    const QStringList documents = QStandardPaths::standardLocations(QStandardPaths::DocumentsLocation);
    const QString base =
        documents.isEmpty() ? QDir::homePath() + QStringLiteral("/Documents") : documents.first();
    return QDir::cleanPath(base + QStringLiteral("/Tanselo/"));
}

QString prepareWorkFolder(const QString& path) {
    const QFileInfo info(path);
    if (info.exists() || info.isSymLink()) {
        if (!info.isDir())
            return QStringLiteral("%1 is a file, not a folder.").arg(path);
    } else {
        std::error_code error;
        std::filesystem::create_directories(QFile::encodeName(path).toStdString(), error);
        if (error)
            return QStringLiteral("%1 could not be made: %2.")
                .arg(path, QString::fromLocal8Bit(error.message().c_str()));
    }
    QTemporaryFile probe(path + QStringLiteral("/.write-test-XXXXXX"));
    if (!probe.open())
        return QStringLiteral("%1 cannot be written: %2.").arg(path, probe.errorString());
    return {};
}

QString workFolderLockName() {
    return QStringLiteral(".tanselo.lock");
}

QStringList removeAllContentInFolder(const QString& path, const QStringList& keep) {
    QStringList failures;
    const QDir folder(path);
    const auto entries =
        folder.entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QFileInfo& entry : entries) {
        if (keep.contains(entry.fileName()))
            continue;
        const bool removed = entry.isDir() && !entry.isSymLink() ? QDir(entry.filePath()).removeRecursively()
                                                                 : QFile::remove(entry.filePath());
        if (!removed)
            failures.append(QStringLiteral("could not delete %1").arg(entry.filePath()));
    }
    return failures;
}

qint64 requiredFreeBytes(qint64 trackBytes) {
    return 3 * std::max<qint64>(trackBytes, 0) + 50LL * 1000 * 1000;
}

QString notEnoughRoomMessage(const QString& folder, qint64 trackBytes, qint64 freeBytes) {
    const QLocale locale = QLocale::system();
    const auto size = [&](qint64 bytes) {
        return locale.formattedDataSize(bytes, 0, QLocale::DataSizeSIFormat);
    };
    return QStringLiteral("There is not enough free space in the work folder %1. This operation needs %2 "
                          "free (three times the track and 50 MB more); %3 are free. Make room there, then "
                          "try again.")
        .arg(folder, size(requiredFreeBytes(trackBytes)), size(std::max<qint64>(freeBytes, 0)));
}

QString roomToWorkProblem(const QString& folder, qint64 trackBytes) {
    // Every operation writes new files beside the track: a folder that takes
    // none, or a disk about to fill, would leave a cut-off version behind.
    {
        QTemporaryFile probe(folder + QStringLiteral("/.write-test-XXXXXX"));
        if (!probe.open())
            return QStringLiteral("The work folder %1 cannot be written: %2.")
                .arg(folder, probe.errorString());
    }
    const QStorageInfo storage(folder);
    const qint64 available = storage.isValid() ? storage.bytesAvailable() : -1;
    if (available >= 0 && available < requiredFreeBytes(trackBytes))
        return notEnoughRoomMessage(folder, trackBytes, available);
    return {};
}

Plan buildSilenceTrackPlan(const QString& path) {
    // 60 seconds of silence from the null input, in the working format.
    // A work folder too small for it would leave a shorter track that passes
    // for the real one: the result is checked for its full minute.
    return {{step::Run{Tool::Sox,
                       {"-n", "-r", workingFormat::sampleRateText(), "-c", workingFormat::channelsText(),
                        path, "trim", "0.0", "60.0"}},
             step::RequireAudio{path, QStringLiteral("Making the silence track"), true, {}, {}, 0, 60.0}}};
}

qint64 workingWavBytes(double seconds) {
    return 44 + qint64(std::ceil(std::max(seconds, 0.0) * workingFormat::SampleRate)) *
                    workingFormat::BytesPerFrame;
}

QString tooLongForAWavProblem(const QString& what, double seconds) {
    if (workingWavBytes(seconds) <= LargestWavBytes)
        return {};
    const qint64 longest = (LargestWavBytes - 44) / workingFormat::BytesPerFrame / workingFormat::SampleRate;
    return QStringLiteral(
               "%1 %2, longer than a working file can hold: a WAV holds at most %3 of audio at "
               "44.1 kHz stereo. Split it into shorter parts with another program, then use those.")
        .arg(what, clockText(qint64(seconds)), clockText(longest));
}

QString importRoomProblem(const QString& source, const QString& folder, qint64 seconds) {
    const QString name = QFileInfo(source).fileName();
    if (QString tooLong = tooLongForAWavProblem(QStringLiteral("“%1” lasts").arg(name), double(seconds));
        !tooLong.isEmpty())
        return tooLong;
    const QStorageInfo storage(folder);
    const qint64 available = storage.isValid() ? storage.bytesAvailable() : -1;
    const qint64 needed = workingWavBytes(double(seconds)) + 50LL * 1000 * 1000;
    if (available < 0 || available >= needed)
        return {};
    const QLocale locale = QLocale::system();
    const auto size = [&](qint64 bytes) {
        return locale.formattedDataSize(bytes, 0, QLocale::DataSizeSIFormat);
    };
    return QStringLiteral(
               "There is not enough free space in the work folder %1 to open “%2”: its %3 of audio "
               "need %4 there, and 50 MB more; %5 are free. Make room there, then try again.")
        .arg(folder, name, clockText(seconds), size(workingWavBytes(double(seconds))), size(available));
}

double workingWavSeconds(qint64 bytes) {
    return double(std::max<qint64>(bytes - 44, 0)) / workingFormat::BytesPerFrame / workingFormat::SampleRate;
}

QString roomForBytesProblem(const QString& folder, qint64 bytes) {
    const QStorageInfo storage(folder);
    const qint64 available = storage.isValid() ? storage.bytesAvailable() : -1;
    if (available < 0 || available >= bytes + 50LL * 1000 * 1000)
        return {};
    const QLocale locale = QLocale::system();
    const auto size = [&](qint64 n) { return locale.formattedDataSize(n, 0, QLocale::DataSizeSIFormat); };
    return QStringLiteral("There is not enough free space in the work folder %1: this needs %2 there, and "
                          "50 MB more; %3 are free. Make room there, then try again.")
        .arg(folder, size(bytes), size(available));
}

RecordingLimit recordingLimit(qint64 freeBytes) {
    const qint64 wavFrames = (LargestWavBytes - 44) / workingFormat::BytesPerFrame;
    if (freeBytes < 0)
        return {wavFrames, false};
    const qint64 roomFrames =
        std::max<qint64>(freeBytes - 44 - 50LL * 1000 * 1000, 0) / workingFormat::BytesPerFrame;
    return roomFrames < wavFrames ? RecordingLimit{roomFrames, true} : RecordingLimit{wavFrames, false};
}

RecordingLimit recordingLimit(const QString& folder) {
    const QStorageInfo storage(folder);
    return recordingLimit(storage.isValid() ? storage.bytesAvailable() : -1);
}

QString recordingLimitMessage(const RecordingLimit& limit, const QString& folder) {
    const QString length = clockText(limit.frames / workingFormat::SampleRate);
    const QString kept = QStringLiteral(" What was recorded until then is kept as the track.");
    if (limit.byRoom)
        return QStringLiteral("The recording stopped at %1: the work folder %2 has no room for more (50 MB "
                              "are kept free there).")
                   .arg(length, folder) +
               kept;
    return QStringLiteral("The recording stopped at %1, the longest a WAV file can hold.").arg(length) + kept;
}

QString recordingDiskFullMessage(const QString& folder) {
    const QString reason = fullDiskReason(folder);
    return QStringLiteral("The recording stopped: what came in could no longer be written to the work folder "
                          "%1.%2 What was recorded until then is kept as the track.")
        .arg(folder, reason.isEmpty() ? QString() : u' ' + reason);
}
