#include "plans/Plan.h"
#include "session/WorkFolder.h"
#include "support/Fixtures.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class tst_WorkFolder : public QObject {
    Q_OBJECT
    QTemporaryDir m_home;

private slots:
    void initTestCase() { fixtures::useTemporaryHome(m_home.path()); }

    void pathIsDocumentsPlusTanselo() { QCOMPARE(workFolderPath(), m_home.filePath("Documents/Tanselo")); }

    void createsMissingParents() {
        const QString folder = workFolderPath();
        QVERIFY(!QFile::exists(folder));
        QCOMPARE(prepareWorkFolder(folder), QString());
        QVERIFY(QFileInfo(folder).isDir());
    }

    void aPlainFileOfThatNameIsToldAsSuch() {
        const QString path = m_home.filePath("plain");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        QCOMPARE(prepareWorkFolder(path), path + " is a file, not a folder.");
        QVERIFY(QFileInfo(path).isFile());
    }

    void creationFailureNamesTheFolderAndTheReason() {
        const QString blocker = m_home.filePath("blocker");
        QFile file(blocker);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        const QString folder = blocker + "/Documents/Tanselo";
        QCOMPARE(prepareWorkFolder(folder), folder + " could not be made: Not a directory.");
    }

    void aFolderThatTakesNoFileIsTold() {
        const QString folder = m_home.filePath("frozen");
        QVERIFY(QDir().mkpath(folder));
        fixtures::Immutable frozen(folder);
        QVERIFY(frozen.made);
        const QString why = prepareWorkFolder(folder);
        QVERIFY2(why.startsWith(folder + " cannot be written: "), qPrintable(why));
        QVERIFY2(
            roomToWorkProblem(folder, 1000).startsWith("The work folder " + folder + " cannot be written"),
            qPrintable(roomToWorkProblem(folder, 1000)));
    }

    void emptyingRemovesFilesAndSubFoldersButKeepsTheFolder() {
        const QString folder = workFolderPath();
        QCOMPARE(prepareWorkFolder(folder), QString());
        QDir dir(folder);
        QVERIFY(dir.mkpath("sub/deeper"));
        for (const char* name : {"stale.wav", ".hidden", "sub/a.wav", "sub/deeper/b.wav"}) {
            QFile file(dir.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        QVERIFY(removeAllContentInFolder(folder).isEmpty());
        QVERIFY(dir.exists());
        QVERIFY(dir.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).isEmpty());
    }

    void emptyingKeepsWhatItIsToldToKeep() {
        const QString folder = workFolderPath();
        QDir dir(folder);
        for (const char* name : {"old.wav", ".tanselo.lock"}) {
            QFile file(dir.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        QVERIFY(removeAllContentInFolder(folder, {workFolderLockName()}).isEmpty());
        QCOMPARE(dir.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList({".tanselo.lock"}));
    }

    void roomToWorkIsThreeTracksAndFiftyMegabytes() {
        QCOMPARE(requiredFreeBytes(0), 50'000'000);
        QCOMPARE(requiredFreeBytes(635'040'044), 3 * 635'040'044LL + 50'000'000);
        QCOMPARE(requiredFreeBytes(-5), 50'000'000); // a size that could not be read
        const QString folder = m_home.filePath("small");
        fixtures::Mount small(folder, "size=30m");
        QVERIFY(small.mounted);
        const QString why = roomToWorkProblem(folder, 1'000'000);
        QVERIFY2(why.startsWith("There is not enough free space in the work folder " + folder + "."),
                 qPrintable(why));
        QVERIFY2(why.contains("needs 53 MB free"), qPrintable(why));
        QCOMPARE(roomToWorkProblem(m_home.path(), 1'000'000), QString()); // a disk with room
        QVERIFY(QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).isEmpty());
    }

    void aRecordingStopsWhereItsWavOrTheFoldersRoomEnds() {
        const qint64 wavFrames = (0xFFFFFFFFLL - 44) / 4;
        QCOMPARE(recordingLimit(-1).frames, wavFrames); // room not known
        QCOMPARE(recordingLimit(-1).byRoom, false);
        QCOMPARE(recordingLimit(500'000'000'000LL).frames, wavFrames);
        QCOMPARE(recordingLimit(50'000'000 + 44 + 4 * 1000).frames, 1000);
        QCOMPARE(recordingLimit(50'000'000 + 44 + 4 * 1000).byRoom, true);
        QCOMPARE(recordingLimit(10'000).frames, 0);
        QCOMPARE(recordingLimitMessage(recordingLimit(-1), "/w"),
                 QString("The recording stopped at 06:45:47, the longest a WAV file can hold. What was "
                         "recorded until then is kept as the track."));
        QCOMPARE(
            recordingLimitMessage({44100 * 75, true}, "/w"),
            QString("The recording stopped at 00:01:15: the work folder /w has no room for more (50 MB are "
                    "kept free there). What was recorded until then is kept as the track."));
        QVERIFY(recordingDiskFullMessage(m_home.path()).startsWith("The recording stopped: what came in"));
    }

    void silenceTrackPlanIsOneSoxRun() {
        const QList<PlannedRun> runs = plannedRuns(buildSilenceTrackPlan("/w/silence.wav"));
        QCOMPARE(runs.size(), 1);
        QCOMPARE(runs[0].tool, Tool::Sox);
        QCOMPARE(runs[0].arguments,
                 QStringList({"-n", "-r", "44100", "-c", "2", "/w/silence.wav", "trim", "0.0", "60.0"}));
    }
};

QTEST_GUILESS_MAIN(tst_WorkFolder)
#include "tst_workfolder.moc"
