#include "app/Plan.h"
#include "app/WorkFolder.h"
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
        QVERIFY(ensureWorkFolder(folder));
        QVERIFY(QFileInfo(folder).isDir());
    }

    void aPlainFileOfThatNamePasses() {
        const QString path = m_home.filePath("plain");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        QVERIFY(ensureWorkFolder(path));
        QVERIFY(QFileInfo(path).isFile());
    }

    void creationFailureIsReported() {
        const QString blocker = m_home.filePath("blocker");
        QFile file(blocker);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        QVERIFY(!ensureWorkFolder(blocker + "/Documents/Tanselo"));
    }

    void emptyingRemovesFilesAndSubFoldersButKeepsTheFolder() {
        const QString folder = workFolderPath();
        QVERIFY(ensureWorkFolder(folder));
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
