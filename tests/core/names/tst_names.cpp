#include "document/ImportPlans.h"
#include "names/Names.h"
#include "tools/ToolArguments.h"

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

    void namesNeverMeetAnotherWindowsFilesTheQueueOrTheCopiedAudio() {
        const QDateTime now(QDate(2024, 3, 5), QTime(14, 7, 59));
        const QString t = "/w/2024-03-05-14-07-59", next = "2024-03-05-14-08-00",
                      same = "2024-03-05-14-07-59";
        const QString track = "/w/2024-03-05-14-00-00.wav";
        const auto stamp = [&](const NamesInUse& inUse, Writes writes) {
            return editNames("/w", track, inUse, writes, now).stamp();
        };
        // Nothing in the way: this second, whatever is written.
        for (Writes w : {Writes::Version, Writes::Clip, Writes::VersionAndClip})
            QCOMPARE(stamp({}, w), same);
        // Another window's version, of any suffix, or a file a queued plan names.
        for (const char* suffix : {"", "Before", "After", "Selection", "SelectionAfterAmplify", "Silence"})
            for (Writes w : {Writes::Version, Writes::Clip, Writes::VersionAndClip})
                QCOMPARE(stamp({{t + suffix + ".wav"}, {}, {}}, w), next);
        // This window's own version of this second: a new version replaces it,
        // as two results of one second always have; a clip never does.
        QCOMPARE(stamp({{}, {t + ".wav"}, {}}, Writes::Version), same);
        QCOMPARE(stamp({{}, {t + ".wav"}, {}}, Writes::VersionAndClip), same);
        QCOMPARE(stamp({{}, {t + ".wav"}, {}}, Writes::Clip), next);
        QCOMPARE(editNames("/w", t + ".wav", {{}, {t + ".wav"}, {}}, Writes::Clip, now).stamp(), next);
        // An older version of this window named like a part is never written over.
        QCOMPARE(stamp({{}, {t + "Before.wav"}, {}}, Writes::Version), next);
        // The copied audio: a clip of the same second replaces it, a version
        // does not, unless it is this window's own version (after a cut).
        QCOMPARE(stamp({{}, {}, t + ".wav"}, Writes::Clip), same);
        QCOMPARE(stamp({{}, {}, t + ".wav"}, Writes::Version), next);
        QCOMPARE(stamp({{}, {t + ".wav"}, t + ".wav"}, Writes::Version), same);
        // After a cut the copied audio is a version: a clip never replaces it.
        QCOMPARE(stamp({{}, {t + ".wav"}, t + ".wav"}, Writes::Clip), next);
        // Several seconds taken: the first free one.
        QCOMPARE(stamp({{t + ".wav", "/w/2024-03-05-14-08-00After.wav"}, {}, {}}, Writes::Version),
                 QString("2024-03-05-14-08-01"));
    }

    void aFixedClockNamesEveryOperation() {
        const QDateTime fixed(QDate(2024, 3, 5), QTime(14, 7, 59));
        setNamingClock([fixed] { return fixed; });
        QCOMPARE(ResultNames("/w").stamp(), QString("2024-03-05-14-07-59"));
        QCOMPARE(editNames("/w", "/w/x.wav").stamp(), QString("2024-03-05-14-07-59"));
        setNamingClock({});
        QVERIFY(qAbs(namingNow().secsTo(QDateTime::currentDateTime())) <= 1);
    }

    void pathsAndUrls() {
        QCOMPARE(pathInFolder("/home/u/Documents/Tanselo", "a b.wav"),
                 QString("/home/u/Documents/Tanselo/a b.wav"));
        QCOMPARE(fileUrlText("/home/u/Documents/Tanselo", "a b.wav"),
                 QString("file:///home/u/Documents/Tanselo/a b.wav"));
        QCOMPARE(fileUrlText("/in/50% #1.wav"), QString("file:///in/50% #1.wav"));
    }

    // The URL texts are not escaped: reading one back gives the very path,
    // "%" and "#" included, where QUrl would take them for escapes and a fragment.
    void aUrlTextGivesBackItsPathAsItStands() {
        for (const QString& path :
             {QString("/w/a b.wav"), QString("/in/50%20off #2?.wav"), QString("/w/ü.wav")})
            QCOMPARE(pathOfFileUrlText(fileUrlText(path)), path);
        QCOMPARE(pathOfFileUrlText("/plain/path.wav"), QString("/plain/path.wav"));
    }

    void importArgumentsEndWithTheConversionTail() {
        QCOMPARE(
            importArguments("/in/x.mp3", "/w/r.wav"),
            QStringList({"-i", "/in/x.mp3", "-acodec", "pcm_s16le", "-ar", "44100", "-ac", "2", "/w/r.wav"}));
    }
};

QTEST_GUILESS_MAIN(tst_Names)
#include "tst_names.moc"
