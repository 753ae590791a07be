#include "app/PlanRunner.h"
#include "support/Fixtures.h"

#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

namespace {
ToolPaths realTools() {
    return {QStandardPaths::findExecutable("sox"), QStandardPaths::findExecutable("ffmpeg")};
}

QString readAll(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}
} // namespace

class tst_PlanRunner : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;

private slots:
    void queuedPlansRunInOrderWithoutOverlap() {
        // Stand-in tools that log their start and end around a pause.
        const QString log = m_dir.filePath("order.log");
        const QString script = m_dir.filePath("logging-tool.sh");
        QFile file(script);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\necho \"start $1\" >> \"$2\"\nsleep 0.3\necho \"end $1\" >> \"$2\"\n");
        file.close();
        QVERIFY(file.setPermissions(file.permissions() | QFileDevice::ExeOwner));

        PlanRunner runner({script, script});
        QStringList completions;
        runner.submit({{step::Run{Tool::Sox, {"a1", log}}, step::Run{Tool::FFmpeg, {"a2", log}}}}, nullptr,
                      [&](const PlanOutcome& o) { completions << QString("A:%1").arg(o.runs.size()); });
        runner.submit({{step::Run{Tool::Sox, {"b1", log}}}}, nullptr,
                      [&](const PlanOutcome& o) { completions << QString("B:%1").arg(o.runs.size()); });
        QTRY_COMPARE_WITH_TIMEOUT(completions.size(), 2, 10000);
        QCOMPARE(completions, QStringList({"A:2", "B:1"}));
        QCOMPARE(readAll(log), QString("start a1\nend a1\nstart a2\nend a2\nstart b1\nend b1\n"));
        QCOMPARE(runner.runs().size(), 3);
        QCOMPARE(runner.runs()[2].arguments.first(), QString("b1"));
    }

    void aLaterPlanSeesTheFilesOfAnEarlierOne() {
        // The second plan requires the file the first one writes in real time.
        PlanRunner runner(realTools());
        const QString made = m_dir.filePath("made-in-real-time.wav");
        bool firstDone = false;
        PlanOutcome second;
        runner.submit({{step::Run{Tool::FFmpeg,
                                  {"-re", "-f", "lavfi", "-i", "anullsrc=r=44100:cl=stereo:d=1", "-acodec",
                                   "pcm_s16le", made}}}},
                      nullptr, [&](const PlanOutcome&) { firstDone = true; });
        runner.submit({{step::RequireFile{made, "missing"}, step::ProbeDuration{made}}}, nullptr,
                      [&](const PlanOutcome& o) {
                          QVERIFY(firstDone);
                          second = o;
                      });
        QTRY_VERIFY_WITH_TIMEOUT(second.seconds.has_value(), 15000);
        QVERIFY(second.ok);
        QCOMPARE(*second.seconds, qint64(1));
    }

    void busyAndProgressAreReported() {
        PlanRunner runner(realTools());
        QSignalSpy busy(&runner, &PlanRunner::busyChanged);
        QSignalSpy progress(&runner, &PlanRunner::progress);
        const QString out = m_dir.filePath("busy.wav");
        bool done = false;
        runner.submit({{step::DeleteFile{out},
                        step::Run{Tool::Sox, {"-n", "-r", "44100", "-c", "2", out, "trim", "0", "1"}},
                        step::ProbeDuration{out}}},
                      nullptr, [&](const PlanOutcome&) {
                          QVERIFY(runner.isBusy());
                          done = true;
                      });
        QVERIFY(runner.isBusy());
        QTRY_VERIFY_WITH_TIMEOUT(done, 10000);
        QTRY_COMPARE(busy.size(), 2);
        QCOMPARE(busy[0][0].toBool(), true);
        QCOMPARE(busy[1][0].toBool(), false);
        QVERIFY(!runner.isBusy());
        QCOMPARE(progress.size(), 2);
        QCOMPARE(progress[0][0].toString(), QString("Running sox (step 1 of 2)…"));
        QCOMPARE(progress[1][0].toString(), QString("Running ffmpeg (step 2 of 2)…"));
    }

    void aRunWithAnExpectedOutputTellsTheShareWrittenWhileItGoes() {
        // ffmpeg writes 2 s of silence at the pace of playback: 176400 bytes a second.
        PlanRunner runner(realTools());
        QSignalSpy progress(&runner, &PlanRunner::progress);
        const QString out = m_dir.filePath("growing.wav");
        bool done = false;
        runner.submit({{step::Run{Tool::FFmpeg,
                                  {"-re", "-f", "lavfi", "-i", "anullsrc=r=44100:cl=stereo:d=2", "-c:a",
                                   "pcm_s16le", out},
                                  out,
                                  44 + 2 * 176400}}},
                      nullptr, [&](const PlanOutcome&) { done = true; });
        QTRY_VERIFY_WITH_TIMEOUT(done, 15000);
        QList<int> shares;
        static const QRegularExpression percent("^Running ffmpeg \\(step 1 of 1\\)… (\\d+) %$");
        for (const QList<QVariant>& signal : std::as_const(progress))
            if (const auto match = percent.match(signal[0].toString()); match.hasMatch())
                shares.append(match.captured(1).toInt());
        QCOMPARE(progress[0][0].toString(), QString("Running ffmpeg (step 1 of 1)…"));
        QVERIFY2(shares.size() >= 4, qPrintable(QString::number(shares.size())));
        QVERIFY(std::is_sorted(shares.begin(), shares.end()));
        QVERIFY(shares.first() < 50 && shares.last() >= 50 && shares.last() <= 99);
    }

    void aFailedRequirementEndsThePlanWithItsAlert() {
        PlanRunner runner(realTools());
        PlanOutcome outcome;
        bool done = false;
        const QString nowhere = m_dir.filePath("never-written.wav");
        runner.submit({{step::RequireFile{nowhere, "Nothing there."}, step::ProbeDuration{nowhere}}}, nullptr,
                      [&](const PlanOutcome& o) {
                          outcome = o;
                          done = true;
                      });
        QTRY_VERIFY(done);
        QVERIFY(!outcome.ok);
        QCOMPARE(outcome.alert, QString("Nothing there."));
        QVERIFY(outcome.runs.isEmpty());
    }

    void aDestroyedReceiverIsNotCalledBack() {
        PlanRunner runner(realTools());
        auto* receiver = new QObject;
        bool called = false;
        runner.submit({{step::ProbeDuration{m_dir.filePath("x.wav")}}}, receiver,
                      [&](const PlanOutcome&) { called = true; });
        delete receiver;
        QTRY_VERIFY(!runner.isBusy());
        QVERIFY(!called);
        QCOMPARE(runner.runs().size(), 1);
    }

    void theInterfaceThreadKeepsRunningDuringAFiveSecondSoxRun() {
        // sox plays five seconds into the audio server, in real time.
        PlanRunner runner(realTools());
        int ticks = 0;
        qint64 longestGap = 0;
        QElapsedTimer sinceTick;
        QTimer timer;
        timer.setInterval(10);
        connect(&timer, &QTimer::timeout, [&] {
            if (ticks++ > 0)
                longestGap = std::max(longestGap, sinceTick.elapsed());
            sinceTick.restart();
        });
        PlanOutcome outcome;
        bool done = false;
        QElapsedTimer clock;
        clock.start();
        timer.start();
        sinceTick.start();
        runner.submit({{step::Run{Tool::Sox,
                                  {"-q", "-n", "-t", "pulseaudio", "default", "synth", "5", "sine", "440",
                                   "vol", "0.1"}}}},
                      nullptr, [&](const PlanOutcome& o) {
                          outcome = o;
                          done = true;
                      });
        QTRY_VERIFY_WITH_TIMEOUT(done, 20000);
        timer.stop();
        QVERIFY2(outcome.runs.value(0).milliseconds >= 4500,
                 qPrintable("the sox run did not play for five seconds: " + outcome.runs.value(0).output));
        QVERIFY2(ticks >= 200, qPrintable(QString("only %1 ticks in %2 ms").arg(ticks).arg(clock.elapsed())));
        QVERIFY2(longestGap < 1000,
                 qPrintable(QString("the interface thread stalled %1 ms").arg(longestGap)));
    }
};

QTEST_GUILESS_MAIN(tst_PlanRunner)
#include "tst_planrunner.moc"
