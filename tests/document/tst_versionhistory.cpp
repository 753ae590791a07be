#include "document/VersionHistory.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace {
void touch(const QString& path) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
}

VersionHistory loaded(const QString& path) {
    VersionHistory history;
    history.restart();
    history.add(path);
    return history;
}
} // namespace

class tst_VersionHistory : public QObject {
    Q_OBJECT
private slots:
    void loadMakesVersionZero() {
        const VersionHistory history = loaded("/w/load.wav");
        QCOMPARE(history.array_WAV_Files, QStringList({"/w/load.wav"}));
        QCOMPARE(history.u_array_WAV_Files_Position, 0u);
        QCOMPARE(history.u_array_WAV_Files_Length, 1u);
    }

    void undoTwiceReturnsToTheLoadedFileAndStaysThere() {
        VersionHistory history = loaded("/w/load.wav");
        history.add("/w/A.wav");
        history.add("/w/B.wav");
        QCOMPARE(history.undo(), QString("/w/A.wav"));
        QCOMPARE(history.undo(), QString("/w/load.wav"));
        QCOMPARE(history.u_array_WAV_Files_Position, 0u);
        QCOMPARE(history.undo(), QString("/w/load.wav"));
        QCOMPARE(history.u_array_WAV_Files_Position, 0u);
        QCOMPARE(history.u_array_WAV_Files_Length, 3u);
    }

    void editAfterUndoDropsTheRedoTail() {
        VersionHistory history = loaded("/w/load.wav");
        history.add("/w/A.wav");
        history.undo();
        history.add("/w/C.wav");
        QCOMPARE(history.array_WAV_Files, QStringList({"/w/load.wav", "/w/C.wav"}));
        QCOMPARE(history.u_array_WAV_Files_Length, 2u);
        QCOMPARE(history.redo(), QString("/w/C.wav"));
        QCOMPARE(history.u_array_WAV_Files_Position, 1u);
    }

    void redoWithNothingUndoneStays() {
        VersionHistory history = loaded("/w/load.wav");
        history.add("/w/A.wav");
        QCOMPARE(history.redo(), QString("/w/A.wav"));
        QCOMPARE(history.u_array_WAV_Files_Position, 1u);
        QCOMPARE(history.redo(), QString("/w/A.wav"));
    }

    void samePathTwiceUndoesToTheSameFile() {
        VersionHistory history = loaded("/w/load.wav");
        history.add("/w/2024-01-01-00-00-00.wav");
        history.add("/w/2024-01-01-00-00-00.wav");
        QCOMPARE(history.u_array_WAV_Files_Length, 3u);
        QCOMPARE(history.undo(), QString("/w/2024-01-01-00-00-00.wav"));
        QCOMPARE(history.undo(), QString("/w/load.wav"));
    }

    void recordingTakeOverStateFollowsTheRules() {
        // One entry with position 1: the next append lands at index 1, undo and redo go to 0.
        VersionHistory history = loaded("/w/take.wav");
        history.u_array_WAV_Files_Position = 1;
        QCOMPARE(history.redo(), QString("/w/take.wav"));
        QCOMPARE(history.u_array_WAV_Files_Position, 0u);
        history.u_array_WAV_Files_Position = 1;
        QCOMPARE(history.undo(), QString("/w/take.wav"));
        history.u_array_WAV_Files_Position = 1;
        history.add("/w/next.wav");
        QCOMPARE(history.array_WAV_Files, QStringList({"/w/take.wav", "/w/next.wav"}));
        QCOMPARE(history.u_array_WAV_Files_Position, 1u);
    }

    void clearDeletesEveryListedFileIncludingTheSilenceTrack() {
        QTemporaryDir dir;
        const QString silence = dir.filePath("silence.wav");
        const QString edit = dir.filePath("2024-01-01-00-00-00.wav");
        const QString dropped = dir.filePath("dropped.wav");
        touch(silence);
        touch(edit);
        touch(dropped);
        VersionHistory history = loaded(silence);
        history.add(dropped);
        history.undo();
        history.add(edit); // drops `dropped` from the list, not from the disk
        history.add(dir.filePath("missing.wav"));
        history.clear();
        QVERIFY(history.array_WAV_Files.isEmpty());
        QCOMPARE(history.u_array_WAV_Files_Length, 3u); // counters are the caller's to reset
        QVERIFY(!QFile::exists(silence));
        QVERIFY(!QFile::exists(edit));
        QVERIFY(QFile::exists(dropped));
    }

    void reloadUrlRule() {
        QCOMPARE(versionUrlText("/w/silence.wav", "/w", "file:///w/silence.wav"),
                 QString("file:///w/silence.wav"));
        QCOMPARE(versionUrlText("/elsewhere/silence.wav", "/w", "file:///w/silence.wav"),
                 QString("file:///w/silence.wav"));
        QCOMPARE(versionUrlText("/elsewhere/part_PART_1.wav", "/w", "file:///w/silence.wav"),
                 QString("file:///w/part_PART_1.wav"));
    }
};

QTEST_GUILESS_MAIN(tst_VersionHistory)
#include "tst_versionhistory.moc"
