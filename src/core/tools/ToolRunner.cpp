#include "ToolRunner.h"

#include "Duration.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <algorithm>

QString repeatableSoxOptions() {
    return QStringLiteral("-R");
}

ToolRun runTool(const QString& program, const QStringList& arguments, const RunControl& control) {
    ToolRun run;
    run.program = program;
    run.arguments = arguments;

    QElapsedTimer clock;
    clock.start();

    QProcess process;
    process.setProgram(program);
    process.setArguments(arguments);
    process.setProcessChannelMode(QProcess::MergedChannels);
    // ffmpeg asks before overwriting and would otherwise wait for an answer forever.
    process.setStandardInputFile(QProcess::nullDevice());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (!control.preload.isEmpty())
        environment.insert(QStringLiteral("LD_PRELOAD"), control.preload);
    // sox dithers with noise seeded anew on every run unless it runs in its
    // repeatable mode, which its SOX_OPTS variable turns on without touching
    // the arguments. The same operation on the same audio then always makes
    // the same file: in a window, in a batch of files and in a saved recipe
    // script, which sets the same variable.
    environment.insert(
        QStringLiteral("SOX_OPTS"),
        (repeatableSoxOptions() + u' ' + environment.value(QStringLiteral("SOX_OPTS"))).trimmed());
    process.setProcessEnvironment(environment);
    process.start(QIODevice::ReadOnly);

    const auto cancelled = [&] { return control.cancel && control.cancel->load(); };
    QByteArray bytes;
    if (!process.waitForStarted(-1)) {
        run.end = RunEnd::NotStarted;
        run.startError = process.errorString();
    } else {
        if (control.processId)
            control.processId->store(process.processId());
        // Without a tick or a way to cancel the wait is unbounded; otherwise it
        // wakes often enough to tick and to see a cancel within a few
        // hundredths of a second, whether or not the child prints anything.
        const int wakeMs = control.cancel ? std::min(control.tickMs, 20) : control.tick ? control.tickMs : -1;
        QElapsedTimer sinceTick;
        sinceTick.start();
        for (;;) {
            if (cancelled()) {
                process.kill();
                run.end = RunEnd::Cancelled;
                break;
            }
            if (process.waitForReadyRead(wakeMs))
                bytes += process.readAll();
            else if (process.state() == QProcess::NotRunning)
                break;
            if (control.tick && sinceTick.elapsed() >= control.tickMs) {
                control.tick();
                sinceTick.restart();
            }
        }
        process.waitForFinished(-1);
        bytes += process.readAll();
        if (control.processId)
            control.processId->store(0);
        if (run.end != RunEnd::Cancelled && process.exitStatus() == QProcess::CrashExit) {
            run.end = RunEnd::Crashed;
            run.signal = process.exitCode(); // on a crash, QProcess keeps the signal's number here
        }
        run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }
    run.output = QString::fromUtf8(bytes);
    run.milliseconds = clock.elapsed();
    return run;
}

QString abnormalEndMessage(const ToolRun& run) {
    const QString tool = QFileInfo(run.program).fileName();
    switch (run.end) {
    case RunEnd::Exited:
        return {};
    case RunEnd::Crashed:
        return QStringLiteral("%1 was stopped by signal %2 before it finished.").arg(tool).arg(run.signal);
    case RunEnd::NotStarted:
        return QStringLiteral("%1 could not be started: %2.").arg(tool, run.startError);
    case RunEnd::Cancelled:
        return QStringLiteral("%1 was stopped because you cancelled.").arg(tool);
    }
    return {};
}

QStringList outputLines(const QString& output) {
    // Split by hand: a regular expression refuses text that is not valid
    // UTF-16, which a tool's bytes may well decode to.
    QString text = output;
    text.replace(u'\r', u'\n');
    return text.split(u'\n', Qt::SkipEmptyParts);
}

QString lastOutputLine(const QString& output) {
    const QStringList lines = outputLines(output);
    for (auto line = lines.crbegin(); line != lines.crend(); ++line)
        if (const QString text = line->trimmed(); !text.isEmpty())
            return text;
    return {};
}

namespace {
QString shellQuoted(const QString& word) {
    static const QRegularExpression plain(QStringLiteral("^[A-Za-z0-9_./:=+,@%-]+$"));
    if (plain.match(word).hasMatch())
        return word;
    QString quoted = word;
    quoted.replace(u'\'', QStringLiteral("'\\''"));
    return u'\'' + quoted + u'\'';
}
} // namespace

QString commandLine(const ToolRun& run) {
    QStringList words{shellQuoted(run.program)};
    for (const QString& argument : run.arguments)
        words.append(shellQuoted(argument));
    return words.join(u' ');
}

QString toolLogText(const QList<ToolRun>& runs) {
    QString text;
    for (const ToolRun& run : runs) {
        // The duration probe names an input and no output, so ffmpeg always
        // ends it with status 1: it is marked as a probe with what it found,
        // not shown as a run that failed.
        const bool probe = QFileInfo(run.program).baseName() == QLatin1String("ffmpeg") &&
                           run.arguments == probeArguments(run.arguments.value(1));
        const QString verdict = !probe ? QStringLiteral("exit code %1").arg(run.exitCode)
                                : durationTextFromOutput(run.output).isEmpty()
                                    ? QStringLiteral("duration probe, no duration found")
                                    : QStringLiteral("duration probe: duration %1")
                                          .arg(clockText(secondsFromProbeOutput(run.output)));
        text += QStringLiteral("$ %1\n# %2, %3 ms\n").arg(commandLine(run), verdict).arg(run.milliseconds);
        text += run.output;
        if (!run.output.endsWith(u'\n'))
            text += u'\n';
        text += u'\n';
    }
    return text;
}
