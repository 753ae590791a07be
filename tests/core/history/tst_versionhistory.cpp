#include "history/Unexported.h"
#include "history/VersionHistory.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

namespace {
void touch(const QString& path) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
}

VersionHistory loaded(const QString& path) {
    VersionHistory history;
    history.restart(path, openedVersionLabel(path));
    return history;
}
} // namespace

class tst_VersionHistory : public QObject {
    Q_OBJECT
private slots:
    void loadMakesVersionZero() {
        const VersionHistory history = loaded("/w/load.wav");
        QCOMPARE(history.array_WAV_Files(), QStringList({"/w/load.wav"}));
        QCOMPARE(history.u_array_WAV_Files_Position(), 0u);
        QCOMPARE(history.u_array_WAV_Files_Length(), 1u);
    }

    void undoTwiceReturnsToTheLoadedFileAndStaysThere() {
        VersionHistory history = loaded("/w/load.wav");
        history.add("/w/A.wav", "Edit A");
        history.add("/w/B.wav", "Edit B");
        QCOMPARE(history.undo(), QString("/w/A.wav"));
        QCOMPARE(history.undo(), QString("/w/load.wav"));
        QCOMPARE(history.u_array_WAV_Files_Position(), 0u);
        QCOMPARE(history.undo(), QString("/w/load.wav"));
        QCOMPARE(history.u_array_WAV_Files_Position(), 0u);
        QCOMPARE(history.u_array_WAV_Files_Length(), 3u);
    }

    void editAfterUndoDropsTheRedoTail() {
        VersionHistory history = loaded("/w/load.wav");
        history.add("/w/A.wav", "Edit A");
        history.undo();
        history.add("/w/C.wav", "Edit C");
        QCOMPARE(history.array_WAV_Files(), QStringList({"/w/load.wav", "/w/C.wav"}));
        QCOMPARE(history.u_array_WAV_Files_Length(), 2u);
        QCOMPARE(history.redo(), QString("/w/C.wav"));
        QCOMPARE(history.u_array_WAV_Files_Position(), 1u);
    }

    void redoWithNothingUndoneStays() {
        VersionHistory history = loaded("/w/load.wav");
        history.add("/w/A.wav", "Edit A");
        QCOMPARE(history.redo(), QString("/w/A.wav"));
        QCOMPARE(history.u_array_WAV_Files_Position(), 1u);
        QCOMPARE(history.redo(), QString("/w/A.wav"));
    }

    void samePathTwiceUndoesToTheSameFile() {
        VersionHistory history = loaded("/w/load.wav");
        history.add("/w/2024-01-01-00-00-00.wav", "Cut");
        history.add("/w/2024-01-01-00-00-00.wav", "Delete");
        QCOMPARE(history.u_array_WAV_Files_Length(), 3u);
        QCOMPARE(history.undo(), QString("/w/2024-01-01-00-00-00.wav"));
        QCOMPARE(history.undo(), QString("/w/load.wav"));
    }

    void recordingTakeOverStateFollowsTheRules() {
        // One entry with position 1: the next append lands at index 1, undo and redo go to 0.
        VersionHistory history = loaded("/w/load.wav");
        history.add("/w/A.wav", "Cut");
        history.takeOverRecording("/w/take.wav", "Recorded");
        QCOMPARE(history.array_WAV_Files(), QStringList({"/w/take.wav"}));
        QCOMPARE(history.u_array_WAV_Files_Position(), 1u);
        QCOMPARE(history.u_array_WAV_Files_Length(), 1u);
        QCOMPARE(history.current(), QString());
        QCOMPARE(history.redo(), QString("/w/take.wav"));
        QCOMPARE(history.u_array_WAV_Files_Position(), 0u);
        history.takeOverRecording("/w/take.wav", "Recorded");
        QCOMPARE(history.undo(), QString("/w/take.wav"));
        QCOMPARE(history.u_array_WAV_Files_Position(), 0u);
        history.takeOverRecording("/w/take.wav", "Recorded");
        history.add("/w/next.wav", "Cut");
        QCOMPARE(history.array_WAV_Files(), QStringList({"/w/take.wav", "/w/next.wav"}));
        QCOMPARE(history.u_array_WAV_Files_Position(), 1u);
        QCOMPARE(history.u_array_WAV_Files_Length(), 2u);
    }

    void takeOverDeletesTheOldVersionsFiles() {
        QTemporaryDir dir;
        const QString old = dir.filePath("2024-01-01-00-00-00.wav");
        const QString take = dir.filePath("2024-01-01-00-00-05.wav");
        touch(old);
        touch(take);
        VersionHistory history = loaded(old);
        history.takeOverRecording(take, recordedVersionLabel());
        QVERIFY(!QFile::exists(old));
        QVERIFY(QFile::exists(take));
        QCOMPARE(history.versions().size(), 1);
        QCOMPARE(history.versions().first().label, QString("Recorded"));
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
        history.add(dropped, "Dropped");
        history.undo();
        history.add(edit, "Edit"); // drops `dropped` from the list, not from the disk
        history.add(dir.filePath("missing.wav"), "Missing");
        history.clear();
        QVERIFY(history.array_WAV_Files().isEmpty());
        QCOMPARE(history.u_array_WAV_Files_Length(), 3u); // counters are the caller's to reset
        QVERIFY(!QFile::exists(silence));
        QVERIFY(!QFile::exists(edit));
        QVERIFY(QFile::exists(dropped));
    }

    void everyVersionKeepsItsLabelAndWhenItWasMade() {
        const QDateTime before = QDateTime::currentDateTime();
        VersionHistory history = loaded("/w/speech.mp3.wav");
        history.add("/w/A.wav", "Cut");
        history.add("/w/B.wav", "Echo on selection");
        const QDateTime after = QDateTime::currentDateTime();
        QCOMPARE(history.versions().size(), 3);
        QCOMPARE(history.versions().at(0).label, QString("Opened speech.mp3.wav"));
        QCOMPARE(history.versions().at(1).label, QString("Cut"));
        QCOMPARE(history.versions().at(2).label, QString("Echo on selection"));
        QCOMPARE(history.versions().at(2).path, QString("/w/B.wav"));
        for (const Version& version : history.versions()) {
            QVERIFY(version.made.isValid());
            QVERIFY(version.made >= before && version.made <= after);
        }
        QVERIFY(history.versions().at(0).made <= history.versions().at(2).made);
    }

    void theRedoTailGoesWithItsLabels() {
        VersionHistory history = loaded("/w/load.wav");
        history.add("/w/A.wav", "Cut");
        history.undo();
        history.add("/w/C.wav", "Delete");
        QCOMPARE(history.versions().size(), 2);
        QCOMPARE(history.versions().at(1).label, QString("Delete"));
    }

    void moveToChoosesAVersionHeldToTheListsEnds() {
        VersionHistory history = loaded("/w/load.wav");
        history.add("/w/A.wav", "Cut");
        history.add("/w/B.wav", "Delete");
        QCOMPARE(history.moveTo(0), QString("/w/load.wav"));
        QCOMPARE(history.u_array_WAV_Files_Position(), 0u);
        QCOMPARE(history.moveTo(2), QString("/w/B.wav"));
        QCOMPARE(history.u_array_WAV_Files_Position(), 2u);
        QCOMPARE(history.moveTo(1), QString("/w/A.wav"));
        QCOMPARE(history.moveTo(7), QString("/w/B.wav"));
        QCOMPARE(history.u_array_WAV_Files_Position(), 2u);
        QCOMPARE(history.moveTo(-3), QString("/w/load.wav"));
        QCOMPARE(history.u_array_WAV_Files_Position(), 0u);
        // The list itself stays: moving is undoing or redoing several steps at once.
        QCOMPARE(history.array_WAV_Files(), QStringList({"/w/load.wav", "/w/A.wav", "/w/B.wav"}));
        QCOMPARE(history.u_array_WAV_Files_Length(), 3u);
    }

    void moveToEqualsRepeatedUndoAndRedo() {
        VersionHistory stepped = loaded("/w/load.wav"), moved = loaded("/w/load.wav");
        for (VersionHistory* history : {&stepped, &moved}) {
            history->add("/w/A.wav", "Cut");
            history->add("/w/B.wav", "Delete");
            history->add("/w/C.wav", "Paste at end");
        }
        stepped.undo();
        stepped.undo();
        stepped.undo();
        QCOMPARE(moved.moveTo(0), stepped.current());
        QCOMPARE(moved.u_array_WAV_Files_Position(), stepped.u_array_WAV_Files_Position());
        stepped.redo();
        stepped.redo();
        QCOMPARE(moved.moveTo(2), stepped.current());
        QCOMPARE(moved.u_array_WAV_Files_Position(), stepped.u_array_WAV_Files_Position());
        // An edit after moving back drops the tail, as after undoing.
        stepped.add("/w/D.wav", "Cut");
        moved.add("/w/D.wav", "Cut");
        QCOMPARE(moved.array_WAV_Files(), stepped.array_WAV_Files());
        QCOMPARE(moved.array_WAV_Files(), QStringList({"/w/load.wav", "/w/A.wav", "/w/B.wav", "/w/D.wav"}));
    }

    void moveToInAnEmptyHistoryDoesNothing() {
        VersionHistory history;
        QCOMPARE(history.moveTo(0), QString());
        QCOMPARE(history.u_array_WAV_Files_Position(), 0u);
        QCOMPARE(history.u_array_WAV_Files_Length(), 0u);
        QVERIFY(versionRows(history).isEmpty());
        QCOMPARE(currentVersionRow(history), -1);
    }

    void restartKeepsTheLoadAlone() {
        QTemporaryDir dir;
        const QString edit = dir.filePath("2024-01-01-00-00-00.wav");
        touch(edit);
        VersionHistory history = loaded("/w/load.wav");
        history.add(edit, "Cut");
        history.restart("/w/other.wav", silentTrackVersionLabel());
        QVERIFY(!QFile::exists(edit));
        QCOMPARE(history.array_WAV_Files(), QStringList({"/w/other.wav"}));
        QCOMPARE(history.u_array_WAV_Files_Position(), 0u);
        QCOMPARE(history.u_array_WAV_Files_Length(), 1u);
        QCOMPARE(history.versions().first().label, QString("Silent track"));
    }

    void loadLabels() {
        QCOMPARE(openedVersionLabel("/home/me/Music/speech.mp3"), QString("Opened speech.mp3"));
        QCOMPARE(openedVersionLabel("/w/2024-01-01-00-00-00_PART_001.wav"),
                 QString("Opened 2024-01-01-00-00-00_PART_001.wav"));
        QCOMPARE(silentTrackVersionLabel(), QString("Silent track"));
        QCOMPARE(recordedVersionLabel(), QString("Recorded"));
    }

    void rowsMarkTheCurrentVersionAndShowTheTime() {
        VersionHistory history = loaded("/w/load.wav");
        history.add("/w/A.wav", "Cut");
        history.add("/w/B.wav", "Echo on selection");
        history.undo();
        const QList<VersionRow> rows = versionRows(history);
        QCOMPARE(rows.size(), 3);
        QCOMPARE(rows.at(0).label, QString("Opened load.wav"));
        QCOMPARE(rows.at(1).label, QString("Cut"));
        QCOMPARE(rows.at(2).label, QString("Echo on selection"));
        QCOMPARE(currentVersionRow(history), 1);
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(rows.at(i).current, i == 1);
            QCOMPARE(rows.at(i).marker, i == 1 ? QString("▶") : QString());
            QCOMPARE(rows.at(i).time, history.versions().at(i).made.toString("HH:mm:ss"));
            QVERIFY(QRegularExpression("^\\d\\d:\\d\\d:\\d\\d$").match(rows.at(i).time).hasMatch());
        }
    }

    void anUnlabelledVersionGoesByItsFileName() {
        VersionHistory history = loaded("/w/load.wav");
        history.add("/w/2024-01-01-00-00-07.wav", QString());
        QCOMPARE(versionRows(history).at(1).label, QString("2024-01-01-00-00-07.wav"));
        QVERIFY(history.versions().at(1).label.isEmpty());
    }

    void theTakeIsTheCurrentRowOfATakeOver() {
        VersionHistory history;
        history.takeOverRecording("/w/take.wav", recordedVersionLabel());
        QCOMPARE(currentVersionRow(history), 0);
        QVERIFY(versionRows(history).first().current);
    }

    void timeText() {
        QCOMPARE(versionTimeText(QDateTime(QDate(2024, 5, 6), QTime(7, 8, 9))), QString("07:08:09"));
        QCOMPARE(versionTimeText(QDateTime(QDate(2024, 5, 6), QTime(23, 59, 0))), QString("23:59:00"));
    }

    void aRestoredHistoryGoesOnAsItWas() {
        const QDateTime at(QDate(2026, 11, 26), QTime(9, 0));
        VersionHistory h;
        h.restore({{"/w/a.wav", "Opened a.wav", at, {}},
                   {"/w/b.wav", "Cut", at, {}},
                   {"/w/c.wav", "Delete", at, {}}},
                  1);
        QCOMPARE(h.current(), QString("/w/b.wav"));
        QCOMPARE(h.u_array_WAV_Files_Length(), 3u);
        QCOMPARE(h.versions()[2].label, QString("Delete"));
        QCOMPARE(h.redo(), QString("/w/c.wav"));
        QCOMPARE(h.undo(), QString("/w/b.wav"));
        // A take-over state stays one past its take; a position beyond is held to it.
        h.restore({{"/w/take.wav", "Recorded", at, {}}}, 1);
        QCOMPARE(h.u_array_WAV_Files_Position(), 1u);
        QCOMPARE(h.undo(), QString("/w/take.wav"));
        h.restore({{"/w/take.wav", "Recorded", at, {}}}, 7);
        QCOMPARE(h.u_array_WAV_Files_Position(), 1u);
    }

    void onlyAVersionNotKeptOutsideTheEditorIsNew() {
        // A load has nothing new; an edit has; undoing back to the load has not.
        VersionHistory h = loaded("/w/a.wav");
        QVERIFY(!h.hasUnkeptChanges());
        QCOMPARE(h.keptIndex(), 0);
        h.add("/w/b.wav", "Cut");
        QVERIFY(h.hasUnkeptChanges());
        h.undo();
        QVERIFY(!h.hasUnkeptChanges());
        h.redo();
        // An export keeps the version shown; the next edit is new again.
        h.markKept();
        QCOMPARE(h.keptIndex(), 1);
        QVERIFY(!h.hasUnkeptChanges());
        h.add("/w/c.wav", "Delete");
        QVERIFY(h.hasUnkeptChanges());
        h.undo();
        QVERIFY(!h.hasUnkeptChanges());
        // An edit after undoing past the export drops it with the redo tail.
        h.undo();
        h.add("/w/d.wav", "Echo");
        QCOMPARE(h.keptIndex(), -1);
        QVERIFY(h.hasUnkeptChanges());
        h.undo();
        QVERIFY(h.hasUnkeptChanges()); // the load's version was exported over, nothing marks it
    }

    void aTakeIsKeptNowhereUntilExported() {
        VersionHistory h = loaded("/w/a.wav");
        h.takeOverRecording("/w/take.wav", recordedVersionLabel());
        QCOMPARE(h.keptIndex(), -1);
        QVERIFY(h.hasUnkeptChanges());
        h.markKept(); // the take shows, one before the position
        QCOMPARE(h.keptIndex(), 0);
        QVERIFY(!h.hasUnkeptChanges());
        h.add("/w/b.wav", "Cut"); // lands at index 1, after the take
        QCOMPARE(h.keptIndex(), 0);
        QVERIFY(h.hasUnkeptChanges());
        // An empty history holds nothing to lose.
        h.clear();
        QVERIFY(!h.hasUnkeptChanges());
        // A restored history keeps its mark, held to its versions.
        const QDateTime at(QDate(2026, 11, 26), QTime(9, 0));
        h.restore({{"/w/a.wav", "Opened a.wav", at, {}}, {"/w/b.wav", "Cut", at, {}}}, 1, 0);
        QVERIFY(h.hasUnkeptChanges());
        h.undo();
        QVERIFY(!h.hasUnkeptChanges());
        h.restore({{"/w/a.wav", "Opened a.wav", at, {}}}, 0, 5);
        QCOMPARE(h.keptIndex(), -1);
    }

    void theQuestionBeforeClosing() {
        QCOMPARE(closingQuestion({"interview.mp3"}),
                 QString("Export the changes to “interview.mp3” before closing?"));
        QCOMPARE(closingQuestion({"a.mp3", "b.wav", "c.m4a"}),
                 QString("Export the changes to 3 tracks before quitting?"));
        QVERIFY(closingDetails({"a.mp3", "b.wav", "c.m4a"}).startsWith("“a.mp3”, “b.wav” and “c.m4a” hold"));
        QVERIFY(closingDetails({"a.mp3", "b.wav"}).startsWith("“a.mp3” and “b.wav” hold"));
        QCOMPARE(closingButtons(), QStringList({"Export…", "Close Without Exporting", "Cancel"}));
        QCOMPARE(closingAnswer(0), ClosingAnswer::Export);
        QCOMPARE(closingAnswer(1), ClosingAnswer::CloseWithoutExporting);
        QCOMPARE(closingAnswer(2), ClosingAnswer::Cancel);
        QCOMPARE(closingAnswer(-1), ClosingAnswer::Cancel); // dismissed
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
