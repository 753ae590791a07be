#include "document/ExportPlans.h"
#include "support/Fixtures.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace exporting;

// The export's lists, its argument table and how an export is judged, without
// a display; the real ffmpeg where a judgement needs real output.
class tst_ExportPlans : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;

private slots:
    void theListsHoldTheirItemsInOrderWithTheirDefaults() {
        QCOMPARE(formats(), QStringList({"WAV", "M4A", "MP3"}));
        QCOMPARE(sampleRates(), QStringList({"6000", "8000", "11025", "16000", "22050", "32000", "44100",
                                             "48000", "64000", "88200", "96000", "192000"}));
        QCOMPARE(channels(), QStringList({"Mono", "Stereo"}));
        QCOMPARE(bitRates(), QStringList({"16k", "24k", "32k", "40k", "48k", "56k", "64k", "80k", "96k",
                                          "112k", "128k", "144k", "160k", "192k", "224k", "256k"}));
        QCOMPARE(formats()[DefaultFormat], QString("WAV"));
        QCOMPARE(sampleRates()[DefaultSampleRate], QString("44100"));
        QCOMPARE(channels()[DefaultChannels], QString("Stereo"));
        QCOMPARE(bitRates()[DefaultBitRate], QString("40k"));
    }

    void everyBitRateItemPassesItsTableEntry_data() {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("passed"); // empty: nothing runs
        const QStringList passed{"16k",  "24k",  "32k",  "40k",  "48k",  "64k",  "80k", "96k",
                                 "112k", "128k", "160k", "192k", "224k", "256k", "",    ""};
        for (int i = 0; i < 16; ++i)
            QTest::addRow("%d %s", i, qPrintable(bitRates()[i])) << i << bitRates()[i] << passed[i];
    }
    void everyBitRateItemPassesItsTableEntry() {
        QFETCH(int, index);
        QFETCH(QString, shown);
        QFETCH(QString, passed);
        QCOMPARE(bitRates()[index], shown);
        Choice choice;
        choice.bitRate = index;
        const std::optional<QStringList> arguments = exportArguments("/w/track.wav", choice, "/out/x.mp3");
        if (passed.isEmpty()) {
            QVERIFY(!bitRateArgument(index));
            QVERIFY(!arguments);
            return;
        }
        QCOMPARE(*bitRateArgument(index), passed);
        QVERIFY(arguments);
        QCOMPARE(*arguments, QStringList({"-i", "/w/track.wav", "-vn", "-ar", "44100", "-ac", "2", "-ab",
                                          passed, "/out/x.mp3"}));
    }

    void theDefaultsExportOutputWavAt44100StereoAnd40k() {
        const Choice defaults;
        QCOMPARE(proposedName(defaults.format), QString("output.wav"));
        QCOMPARE(*exportArguments("/w/a.wav", defaults, "/home/u/output.wav"),
                 QStringList({"-i", "/w/a.wav", "-vn", "-ar", "44100", "-ac", "2", "-ab", "40k",
                              "/home/u/output.wav"}));
    }

    void theFormatOnlyChoosesTheProposedName() {
        QCOMPARE(proposedName(0), QString("output.wav"));
        QCOMPARE(proposedName(1), QString("output.m4a"));
        QCOMPARE(proposedName(2), QString("output.mp3"));
        QCOMPARE(proposedName(-1), QString());
        Choice mp3;
        mp3.format = 2;
        QCOMPARE(exportArguments("/a.wav", mp3, "/b.wav"), exportArguments("/a.wav", Choice{}, "/b.wav"));
    }

    void monoPassesOneChannelAndEveryRateIsItsOwnText() {
        for (int r = 0; r < sampleRates().size(); ++r) {
            const Choice choice{0, r, 0, 0};
            const QStringList arguments = *exportArguments("/a.wav", choice, "/b.wav");
            QCOMPARE(arguments[4], sampleRates()[r]);
            QCOMPARE(arguments[6], QString("1"));
        }
    }

    void aListWithoutAChoiceRunsNothing() {
        QVERIFY(!exportArguments("/a.wav", {0, -1, 1, 3}, "/b.wav"));
        QVERIFY(!exportArguments("/a.wav", {0, 12, 1, 3}, "/b.wav"));
        QVERIFY(!exportArguments("/a.wav", {0, 6, -1, 3}, "/b.wav"));
        QVERIFY(!exportArguments("/a.wav", {0, 6, 2, 3}, "/b.wav"));
        QVERIFY(!exportArguments("/a.wav", {0, 6, 1, -1}, "/b.wav"));
    }

    void thePlanDeletesTheDestinationThenRunsFfmpegWatchingIt() {
        const QStringList arguments = *exportArguments("/w/a.wav", Choice{}, "/o/out.wav");
        const Plan plan = buildExportPlan("/o/out.wav", arguments, 1000);
        QCOMPARE(fixtures::describe(plan),
                 QStringList({"delete /o/out.wav", "ffmpeg " + arguments.join(" | ")}));
        const auto& run = std::get<step::Run>(plan.steps[1]);
        QCOMPARE(run.growingFile, QString("/o/out.wav"));
        QCOMPARE(run.expectedBytes, 1000);
    }

    void theExpectedSizeComesFromTheFormat() {
        const Choice wav{0, 4, 0, 3}; // 22050 Hz mono
        QCOMPARE(*expectedBytes("/o/x.WAV", wav, 10.0), qint64(44 + 220500 * 2));
        const Choice mp3{2, 6, 1, 10}; // the item "128k" passes 160k
        QCOMPARE(*expectedBytes("/o/x.mp3", mp3, 60.0), qint64(160000 / 8 * 60));
        QCOMPARE(*expectedBytes("/o/x.m4a", mp3, 1.0), qint64(20000));
        QVERIFY(!expectedBytes("/o/x.flac", mp3, 60.0));
    }

    void theProgressShareStaysBelowAHundredWhileRunning() {
        QCOMPARE(progressPercent(0, 1000), 0);
        QCOMPARE(progressPercent(421, 1000), 42);
        QCOMPARE(progressPercent(5000, 1000), 99);
        QCOMPARE(progressPercent(10, 0), -1);
    }

    void aDestinationNamingAFileInUseIsRecognisedHoweverSpelt() {
        const QString work = m_dir.filePath("work");
        QDir().mkpath(work);
        const QString track = work + "/2026-01-01-10-00-00.wav";
        fixtures::makeSilence(track, 0.1);
        QVERIFY(QFile::link(track, m_dir.filePath("link.wav")));
        const QStringList inUse{track, QString()};
        QVERIFY(isProtected(track, inUse));
        QVERIFY(isProtected(work + "/../work/./2026-01-01-10-00-00.wav", inUse));
        QVERIFY(isProtected(m_dir.filePath("link.wav"), inUse));
        QVERIFY(!isProtected(work + "/other.wav", inUse));
        QVERIFY(!isProtected(m_dir.filePath("output.wav"), {}));
        QVERIFY(protectedDestinationMessage(track).contains(track));
    }

    // ffmpeg's reading of what it wrote, from real files: the stream's codec,
    // rate, channels and, for compressed audio, the bit rate ffprobe reads.
    void whatWasWrittenIsReadBackAsFfprobeReadsIt() {
        const QString wav = m_dir.filePath("tone.wav");
        QCOMPARE(fixtures::run(
                     "sox", {"-n", "-r", "44100", "-c", "2", "-b", "16", wav, "synth", "3", "sine", "440"}),
                 0);
        struct Case {
            QString name;
            QStringList arguments;
            QString expected;
        };
        const QList<Case> cases = {
            {"a.mp3",
             {"-ar", "44100", "-ac", "2", "-ab", "128k"},
             "MP3 audio: mp3, 44100 Hz, stereo, 128 kb/s"},
            {"b.m4a", {"-ar", "22050", "-ac", "1", "-ab", "64k"}, "M4A audio: aac, 22050 Hz, mono, %1 kb/s"},
            {"c.wav", {"-ar", "8000", "-ac", "1"}, "WAV audio: pcm_s16le, 8000 Hz, mono"},
        };
        for (const Case& c : cases) {
            const QString out = m_dir.filePath(c.name);
            QCOMPARE(fixtures::run("ffmpeg", QStringList{"-y", "-v", "error", "-i", wav, "-vn"} +
                                                 c.arguments + QStringList{out}),
                     0);
            QString said, probed;
            fixtures::run("ffmpeg", {"-hide_banner", "-i", out}, &said);
            fixtures::run("ffprobe",
                          {"-v", "error", "-select_streams", "a:0", "-show_entries", "stream=bit_rate", "-of",
                           "csv=p=0", out},
                          &probed);
            const int kbps = probed.trimmed().toInt() / 1000;
            const std::optional<WrittenAudio> written = writtenAudio(said);
            QVERIFY2(written, qPrintable(said));
            QCOMPARE(written->kilobitsPerSecond.value_or(-1), kbps);
            QCOMPARE(savedMessage(out, written),
                     "Audio file saved successfully.\n\n" + out + "\n" + c.expected.arg(kbps));
        }
        QVERIFY(!writtenAudio("").has_value());
        QVERIFY(!writtenAudio("  Stream #0:0: Video: h264, yuv420p, 640x480").has_value());
        QCOMPARE(savedMessage("/x/y.mp3", std::nullopt),
                 QString("Audio file saved successfully.\n\n/x/y.mp3"));
    }

    void theFoldersAnExportMustMakeAreListedOutermostFirst() {
        const QString base = m_dir.filePath("deep");
        QCOMPARE(missingFolders(m_dir.filePath("here.mp3")), QStringList());
        QCOMPARE(missingFolders(base + "/a/b/out.mp3"), QStringList({base, base + "/a", base + "/a/b"}));
        QVERIFY(QDir().mkpath(base + "/a"));
        QCOMPARE(missingFolders(base + "/a/b/out.mp3"), QStringList({base + "/a/b"}));
        QVERIFY(folderNotMadeMessage("/x/y").contains("\"/x/y\""));
    }

    void ffmpegsOwnReasonIsFound() {
        QCOMPARE(failureReason("  Stream #0:0 -> #0:0\nPress [q] to stop\n[libvorbis @ 0x5] encoder setup "
                               "failed\nError initializing output stream 0:0 -- bad bit_rate\nConversion "
                               "failed!\n"),
                 QString("Error initializing output stream 0:0 -- bad bit_rate"));
        QCOMPARE(failureReason("size=    1024kB time=00:00:07.43\rvideo:0kB audio:1280kB\nError closing file "
                               "x.wav: No space left on device\nConversion failed!\n"),
                 QString("Error closing file x.wav: No space left on device"));
        QCOMPARE(failureReason(""), QString());
    }

    void anExportIsJudgedByItsFileAndHowFfmpegEnded() {
        const QString made = m_dir.filePath("made.wav");
        fixtures::makeSilence(made, 0.5);
        ToolRun fine;
        fine.exitCode = 0;
        QCOMPARE(judge(made, fine).kind, Verdict::Saved);

        const QString empty = m_dir.filePath("empty.ogg");
        QFile(empty).open(QIODevice::WriteOnly);
        ToolRun refused;
        refused.exitCode = 1;
        refused.output = "Error initializing output stream 0:0\nConversion failed!\n";
        const Verdict none = judge(empty, refused);
        QCOMPARE(none.kind, Verdict::NoFile);
        QVERIFY(none.message.contains("produced no file"));
        QVERIFY(none.message.contains(empty));
        QVERIFY(none.message.contains("Error initializing output stream"));
        QCOMPARE(judge(m_dir.filePath("absent.wav"), fine).kind, Verdict::NoFile);

        ToolRun full;
        full.exitCode = 1;
        full.output = "Error closing file: No space left on device\nConversion failed!\n";
        const Verdict cut = judge(made, full);
        QCOMPARE(cut.kind, Verdict::Incomplete);
        QVERIFY(cut.message.contains("No space left on device"));
        ToolRun killed;
        killed.exitCode = -1;
        QVERIFY(judge(made, killed).message.contains("stopped before it finished"));
    }
};

QTEST_GUILESS_MAIN(tst_ExportPlans)
#include "tst_exportplans.moc"
