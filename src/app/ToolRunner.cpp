#include "ToolRunner.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QRegularExpression>

ToolRun runTool(const QString& program, const QStringList& arguments, const std::function<void()>& tick,
                int tickMs) {
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
    process.start(QIODevice::ReadOnly);

    QByteArray bytes;
    if (process.waitForStarted(-1)) {
        // Without a tick the wait is unbounded; with one it wakes often enough
        // to call it, whether or not the child prints anything.
        QElapsedTimer sinceTick;
        sinceTick.start();
        for (;;) {
            if (process.waitForReadyRead(tick ? tickMs : -1))
                bytes += process.readAll();
            else if (process.state() == QProcess::NotRunning)
                break;
            if (tick && sinceTick.elapsed() >= tickMs) {
                tick();
                sinceTick.restart();
            }
        }
        process.waitForFinished(-1);
        bytes += process.readAll();
        run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }
    run.output = QString::fromUtf8(bytes);
    run.milliseconds = clock.elapsed();
    return run;
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
        text += QStringLiteral("$ %1\n# exit code %2, %3 ms\n")
                    .arg(commandLine(run))
                    .arg(run.exitCode)
                    .arg(run.milliseconds);
        text += run.output;
        if (!run.output.endsWith(u'\n'))
            text += u'\n';
        text += u'\n';
    }
    return text;
}
