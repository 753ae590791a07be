#include "ExportPlans.h"

#include "tools/Duration.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <array>

namespace exporting {

namespace {
QString canonicalOrAbsolute(const QString& path) {
    const QFileInfo info(path);
    const QString resolved = info.canonicalFilePath();
    return resolved.isEmpty() ? info.absoluteFilePath() : resolved;
}
} // namespace

const QStringList& formats() {
    static const QStringList list{"WAV", "M4A", "MP3"};
    return list;
}

const QStringList& sampleRates() {
    static const QStringList list{"6000",  "8000",  "11025", "16000", "22050", "32000",
                                  "44100", "48000", "64000", "88200", "96000", "192000"};
    return list;
}

const QStringList& channels() {
    static const QStringList list{"Mono", "Stereo"};
    return list;
}

const QStringList& bitRates() {
    static const QStringList list{"16k", "24k",  "32k",  "40k",  "48k",  "56k",  "64k",  "80k",
                                  "96k", "112k", "128k", "144k", "160k", "192k", "224k", "256k"};
    return list;
}

std::optional<QString> bitRateArgument(int index) {
    // The table the arguments come from lacks "56k" and "144k"; the list's
    // indexes are used on it all the same.
    static const std::array<const char*, 14> table{"16k", "24k",  "32k",  "40k",  "48k",  "64k",  "80k",
                                                   "96k", "112k", "128k", "160k", "192k", "224k", "256k"};
    if (index < 0 || index >= int(table.size()))
        return std::nullopt;
    return QString::fromLatin1(table[std::size_t(index)]);
}

QString defaultSuffix(int format) {
    static const QStringList suffixes{"wav", "m4a", "mp3"};
    return format >= 0 && format < suffixes.size() ? suffixes[format] : QString();
}

QString proposedName(int format) {
    const QString suffix = defaultSuffix(format);
    return suffix.isEmpty() ? QString() : QStringLiteral("output.") + suffix;
}

std::optional<QStringList> exportArguments(const QString& wav, const Choice& choice,
                                           const QString& destination) {
    if (choice.sampleRate < 0 || choice.sampleRate >= sampleRates().size())
        return std::nullopt;
    if (choice.channels != 0 && choice.channels != 1)
        return std::nullopt;
    const std::optional<QString> bitRate = bitRateArgument(choice.bitRate);
    if (!bitRate)
        return std::nullopt;
    return QStringList{"-i",
                       wav,
                       "-vn",
                       "-ar",
                       sampleRates()[choice.sampleRate],
                       "-ac",
                       choice.channels == 0 ? "1" : "2",
                       "-ab",
                       *bitRate,
                       destination};
}

std::optional<qint64> expectedBytes(const QString& destination, const Choice& choice, double seconds) {
    const QString extension = QFileInfo(destination).suffix().toLower();
    if (extension == QStringLiteral("wav")) {
        // 16-bit samples behind a header of a few dozen bytes.
        const qint64 frames = qint64(seconds * sampleRates().value(choice.sampleRate).toDouble());
        return 44 + frames * (choice.channels + 1) * 2;
    }
    if (extension == QStringLiteral("m4a") || extension == QStringLiteral("mp3")) {
        QString rate = bitRateArgument(choice.bitRate).value_or(QString());
        rate.chop(1); // "40k"
        return qint64(seconds * rate.toDouble() * 1000 / 8);
    }
    return std::nullopt;
}

Plan buildExportPlan(const QString& destination, const QStringList& arguments, std::optional<qint64> expected,
                     qint64 seconds) {
    // The file that was at the destination is only set aside while ffmpeg
    // writes: unless the run ends with a complete file, the plan fails, what
    // ffmpeg wrote goes and the old file is put back as it was. A failed
    // export never costs the user a file they had.
    Plan plan{{step::DeleteFile{destination},
               step::Run{Tool::FFmpeg, arguments, destination, expected.value_or(0), true},
               step::Check{[destination](const PlanOutcome& sofar) {
                   const Verdict verdict = judge(destination, sofar.runs.value(sofar.runs.size() - 1));
                   return verdict.kind == Verdict::Saved ? QString() : verdict.message;
               }}}};
    // Complete is also as long as the track: ffmpeg ends normally when the
    // track's file gives out early, and its export is then cut short. The
    // length is read back with ffmpeg, which reads every format it writes.
    if (seconds >= 0) {
        plan.steps.push_back(step::ProbeDuration{destination});
        plan.steps.push_back(step::Check{[destination, seconds](const PlanOutcome& sofar) {
            return exportLengthProblem(destination, sofar.seconds, seconds);
        }});
    }
    return plan;
}

std::optional<WrittenAudio> writtenAudio(const QString& probeOutput) {
    // "  Stream #0:0[0x1](und): Audio: aac (LC) (mp4a / 0x6134706D), 22050 Hz, mono, fltp, 62 kb/s (default)"
    static const QRegularExpression rate(QStringLiteral("^(\\d+) Hz$"));
    static const QRegularExpression bits(QStringLiteral("^(\\d+) kb/s"));
    for (const QString& line : probeOutput.split(u'\n')) {
        const qsizetype audio = line.indexOf(QStringLiteral(": Audio: "));
        if (!line.trimmed().startsWith(QStringLiteral("Stream #")) || audio < 0)
            continue;
        const QStringList parts = line.mid(audio + 9).trimmed().split(QStringLiteral(", "));
        WrittenAudio written;
        written.codec = parts.value(0).section(u' ', 0, 0);
        for (qsizetype i = 1; i < parts.size(); ++i) {
            if (const auto m = rate.match(parts[i]); m.hasMatch()) {
                written.sampleRate = m.captured(1).toInt();
                written.channels = parts.value(i + 1);
            } else if (const auto b = bits.match(parts[i]); b.hasMatch()) {
                written.kilobitsPerSecond = b.captured(1).toInt();
            }
        }
        if (written.codec.isEmpty() || written.sampleRate <= 0)
            return std::nullopt;
        return written;
    }
    return std::nullopt;
}

QString savedMessage(const QString& destination, const std::optional<WrittenAudio>& written) {
    QString message =
        QStringLiteral("Audio file saved successfully.\n\n") + QFileInfo(destination).absoluteFilePath();
    if (!written)
        return message;
    const QString suffix = QFileInfo(destination).suffix().toUpper();
    message += QStringLiteral("\n%1%2, %3 Hz, %4")
                   .arg(suffix.isEmpty() ? QString() : suffix + QStringLiteral(" audio: "), written->codec)
                   .arg(written->sampleRate)
                   .arg(written->channels);
    // Uncompressed audio's rate follows from the rest; a compressed file's is its own.
    if (written->kilobitsPerSecond && !written->codec.startsWith(QStringLiteral("pcm_")))
        message += QStringLiteral(", %1 kb/s").arg(*written->kilobitsPerSecond);
    return message;
}

QStringList missingFolders(const QString& destination) {
    QStringList missing;
    for (QString folder = QFileInfo(destination).absolutePath(); !QFileInfo::exists(folder);) {
        missing.prepend(folder);
        const QString parent = QFileInfo(folder).path();
        if (parent == folder)
            break;
        folder = parent;
    }
    return missing;
}

QString folderNotMadeMessage(const QString& folder) {
    return QStringLiteral("The folder \"%1\" could not be made, so nothing was exported: choose a folder "
                          "you can write to.")
        .arg(folder);
}

QString exportLengthProblem(const QString& destination, std::optional<qint64> probed, qint64 seconds) {
    if (!probed || seconds < 0 || std::abs(*probed - seconds) <= 1)
        return {};
    return QStringLiteral("The export to \"%1\" holds %2 of audio where the track lasts %3, so it is not "
                          "kept; the track in this window is unchanged. The track's file may have been "
                          "damaged: undo to an earlier version, or open the file again.")
        .arg(destination, clockText(*probed), clockText(seconds));
}

bool isInsideFolder(const QString& destination, const QString& folder) {
    if (folder.isEmpty())
        return false;
    const QString target = QFileInfo(canonicalOrAbsolute(QFileInfo(destination).path())).absoluteFilePath();
    const QString inside = canonicalOrAbsolute(folder);
    return target == inside || target.startsWith(inside + u'/');
}

QString workFolderDestinationMessage(const QString& destination, const QString& workFolder) {
    return QStringLiteral("\"%1\" is inside Tanselo's work folder, %2, which is emptied every time Tanselo "
                          "starts: the exported file would be lost. Choose another folder.")
        .arg(destination, workFolder);
}

bool isProtected(const QString& destination, const QStringList& protectedFiles) {
    const QString target = canonicalOrAbsolute(destination);
    return std::any_of(protectedFiles.begin(), protectedFiles.end(), [&](const QString& file) {
        return !file.isEmpty() && canonicalOrAbsolute(file) == target;
    });
}

QString protectedDestinationMessage(const QString& destination) {
    return QStringLiteral("\"%1\" is a file the editor is working with (a version of an open track, the "
                          "copied audio or the silence track). Exporting over it would destroy it: "
                          "choose another name or folder.")
        .arg(destination);
}

QString failureReason(const QString& output) {
    // ffmpeg ends a failed run with "Conversion failed!" after the line that
    // says why; statistics lines and the indented stream descriptions say nothing.
    static const QRegularExpression noise(QStringLiteral("^(Conversion failed!|size=|video:|Press \\[q\\])"));
    const QStringList lines = outputLines(output);
    for (auto line = lines.crbegin(); line != lines.crend(); ++line) {
        if (line->startsWith(u' ') || line->trimmed().isEmpty() || noise.match(*line).hasMatch())
            continue;
        return line->trimmed();
    }
    return {};
}

Verdict judge(const QString& destination, const ToolRun& run) {
    const QFileInfo written(destination);
    const QString reason = failureReason(run.output);
    auto incomplete = [&](const QString& why, const QString& whatIsGone) {
        return Verdict{
            Verdict::Incomplete,
            QStringLiteral("The export to \"%1\" stopped before the end (%2). %3; the track in this "
                           "window is unchanged.")
                .arg(destination, why, whatIsGone)};
    };
    // A killed ffmpeg's file, if it had begun one, is gone with the rest of its
    // plan by now; it is told as the export that stopped, with the signal that
    // stopped it.
    if (run.end == RunEnd::Crashed) {
        QString why = abnormalEndMessage(run);
        why.chop(1); // the sentence's full stop
        return incomplete(why, QStringLiteral("Nothing of it is kept"));
    }
    if (run.end == RunEnd::NotStarted)
        return {Verdict::NoFile, QStringLiteral("The export produced no file at \"%1\": %2")
                                     .arg(destination, abnormalEndMessage(run))};
    if (!written.exists() || written.size() == 0) {
        QString message = QStringLiteral("The export produced no file at \"%1\".").arg(destination);
        if (run.exitCode != 0 && !reason.isEmpty())
            message += QStringLiteral("\n\nffmpeg said: %1").arg(reason);
        return {Verdict::NoFile, message};
    }
    if (run.exitCode != 0) {
        const QString why = run.exitCode < 0   ? QStringLiteral("ffmpeg was stopped before it finished")
                            : reason.isEmpty() ? QStringLiteral("ffmpeg reported an error")
                                               : QStringLiteral("ffmpeg said: %1").arg(reason);
        return incomplete(why, QStringLiteral("The incomplete file has been removed"));
    }
    return {};
}

} // namespace exporting
