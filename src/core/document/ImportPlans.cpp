#include "ImportPlans.h"

#include "session/WorkFolder.h"
#include "tools/ToolArguments.h"

#include <QFileInfo>

const QStringList& openableExtensions() {
    static const QStringList extensions = {"ac3",  "aifc", "aiff", "aif", "amr", "au",  "caf", "cda",
                                           "flac", "mp3",  "ogg",  "raw", "spx", "wav", "wma"};
    return extensions;
}

Plan buildImportPlan(const QString& source, const QString& result) {
    // ffmpeg is never told to overwrite, so whatever holds the name goes first.
    // The source's length is measured first: a file whose working WAV would
    // not fit in the work folder, or would pass the largest WAV, is refused
    // before anything is written, rather than leave a cut-off track.
    const QString folder = QFileInfo(result).path();
    return {
        {step::ProbeDuration{source, true}, step::Check{[source, folder](const PlanOutcome& sofar) {
             return importRoomProblem(source, folder, sofar.seconds.value_or(0));
         }},
         step::DeleteFile{result}, step::Run{Tool::FFmpeg, importArguments(source, result)},
         step::RequireFile{result, unreadableFileMessage(source)},
         step::RequireAudio{result, QStringLiteral("Opening “%1”").arg(QFileInfo(source).fileName()), false},
         step::ProbeDuration{result}}};
}

Plan buildProbePlan(const QString& path) {
    return {{step::ProbeDuration{path}}};
}

QString unreadableFileMessage(const QString& source) {
    return QStringLiteral("The file \"%1\" could not be read as audio. It may be damaged, empty or of a kind "
                          "that cannot be converted.\n\n%2")
        .arg(QFileInfo(source).fileName(), source);
}

QString givenFileProblem(const QString& path) {
    const QFileInfo file(path);
    QString why;
    if (!file.exists())
        why = QStringLiteral("The file \"%1\" does not exist.");
    else if (file.isDir())
        why = QStringLiteral("\"%1\" is a folder, not an audio file.");
    else if (!file.isReadable())
        why = QStringLiteral("The file \"%1\" cannot be read: you are not allowed to read it.");
    else
        return {};
    return why.arg(file.fileName().isEmpty() ? path : file.fileName()) + QStringLiteral("\n\n") + path;
}

ResultNames importNames(const QString& workFolder, const QStringList& listed, const QDateTime& now) {
    QDateTime when = now;
    auto taken = [&](const QString& path) { return listed.contains(path) || QFileInfo::exists(path); };
    while (taken(ResultNames(workFolder, when).path()))
        when = when.addSecs(1);
    return ResultNames(workFolder, when);
}
