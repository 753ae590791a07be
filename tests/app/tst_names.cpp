#include "app/Names.h"
#include "app/ToolArguments.h"
#include "document/ImportPlans.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class tst_Names : public QObject {
    Q_OBJECT
private slots:
    void stampFormat() {
        const ResultNames names("/w", QDateTime(QDate(2024, 3, 5), QTime(14, 7, 59)));
        QCOMPARE(names.stamp(), QString("2024-03-05-14-07-59"));
        QCOMPARE(names.name(), QString("2024-03-05-14-07-59.wav"));
        QCOMPARE(names.path("Before"), QString("/w/2024-03-05-14-07-59Before.wav"));
        QCOMPARE(names.path("SelectionAfterAmplify"),
                 QString("/w/2024-03-05-14-07-59SelectionAfterAmplify.wav"));
    }

    void namesOfOneOperationShareTheStamp() {
        const ResultNames names("/w");
        const QStringList suffixes = {"", "Before", "After", "Selection", "SelectionAfterAmplify", "Silence"};
        for (const QString& suffix : suffixes)
            QVERIFY2(names.path(suffix).startsWith("/w/" + names.stamp() + suffix), qPrintable(suffix));
    }

    void stampIsLocalTimeToTheSecond() {
        const QDateTime before = QDateTime::currentDateTime();
        const ResultNames names("/w");
        const QDateTime parsed = QDateTime::fromString(names.stamp(), "yyyy-MM-dd-HH-mm-ss");
        QVERIFY(parsed.isValid());
        QVERIFY(qAbs(parsed.secsTo(before)) <= 1);
    }

    void anImportNeverTakesTheNameOfAListedVersion() {
        const QDateTime now(QDate(2024, 3, 5), QTime(14, 7, 59));
        QCOMPARE(importNames("/w", {}, now).name(), QString("2024-03-05-14-07-59.wav"));
        QCOMPARE(importNames("/w", {"/w/2024-03-05-14-07-59.wav", "/w/2024-03-05-14-08-00.wav"}, now).name(),
                 QString("2024-03-05-14-08-01.wav"));
        QCOMPARE(importNames("/w", {"/elsewhere/2024-03-05-14-07-59.wav"}, now).name(),
                 QString("2024-03-05-14-07-59.wav"));
        QTemporaryDir dir;
        QFile existing(dir.filePath("2024-03-05-14-07-59.wav"));
        QVERIFY(existing.open(QIODevice::WriteOnly));
        QCOMPARE(importNames(dir.path(), {}, now).name(), QString("2024-03-05-14-08-00.wav"));
    }

    void anEditNeverNamesAWorkingPartAfterTheTrackItReads() {
        const QDateTime now(QDate(2024, 3, 5), QTime(14, 7, 59));
        // Another second's files, or this second's plain name, keep this second.
        QCOMPARE(editNames("/w", "/w/2024-03-05-14-07-58Before.wav", now).stamp(),
                 QString("2024-03-05-14-07-59"));
        QCOMPARE(editNames("/w", "/w/2024-03-05-14-07-59.wav", now).stamp(), QString("2024-03-05-14-07-59"));
        QCOMPARE(editNames("/v", "/w/2024-03-05-14-07-59Before.wav", now).stamp(),
                 QString("2024-03-05-14-07-59"));
        // A track named like one of this second's parts moves the names on a second.
        for (const char* part : {"Before", "After", "Selection", "SelectionAfterAmplify", "Silence"})
            QCOMPARE(editNames("/w", "/w/2024-03-05-14-07-59" + QString(part) + ".wav", now).stamp(),
                     QString("2024-03-05-14-08-00"));
    }

    void pathsAndUrls() {
        QCOMPARE(pathInFolder("/home/u/Documents/Tanselo", "a b.wav"),
                 QString("/home/u/Documents/Tanselo/a b.wav"));
        QCOMPARE(fileUrlText("/home/u/Documents/Tanselo", "a b.wav"),
                 QString("file:///home/u/Documents/Tanselo/a b.wav"));
    }

    void importArgumentsEndWithTheConversionTail() {
        QCOMPARE(
            importArguments("/in/x.mp3", "/w/r.wav"),
            QStringList({"-i", "/in/x.mp3", "-acodec", "pcm_s16le", "-ar", "44100", "-ac", "2", "/w/r.wav"}));
    }
};

QTEST_GUILESS_MAIN(tst_Names)
#include "tst_names.moc"
