// The manifest of the open windows: written whole, read back as it was, and
// whatever its text has become, read as no more than can be trusted.

#include "names/Names.h"
#include "session/Manifest.h"
#include "support/Fixtures.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

namespace {
Manifest twoWindows() {
    const QDateTime at(QDate(2026, 11, 26), QTime(9, 30, 5, 250), Qt::UTC);
    Manifest m;
    m.windows.append({"interview.mp3",
                      "#3070c0",
                      {{"2026-11-26-09-30-05.wav", "Opened interview.mp3", at},
                       {"2026-11-26-09-31-00.wav", "Cut", at.addSecs(55)},
                       {"2026-11-26-09-31-40.wav", "Echo on selection", at.addSecs(95)}},
                      1});
    m.windows.append({"Recording", "#20a050", {{"2026-11-26-09-40-00.wav", "Recorded", at.addSecs(600)}}, 1});
    m.clipboard = "2026-11-26-09-31-00Clip.wav";
    return m;
}

// The text as a kill, a bad disk or a careless hand might leave it: one to
// four cuts, changed bytes, holes or stray JSON characters.
QByteArray mutate(QByteArray text, QRandomGenerator& random) {
    for (int edits = 1 + int(random.bounded(4)); edits > 0 && !text.isEmpty(); --edits) {
        const int at = int(random.bounded(text.size()));
        switch (random.bounded(4)) {
        case 0:
            text.truncate(at);
            break;
        case 1:
            text[at] = char(random.bounded(256));
            break;
        case 2:
            text.remove(at, int(random.bounded(1, 20)));
            break;
        default:
            text.insert(at, "\"/../x\"0-.,:{}[]"[random.bounded(16)]);
        }
    }
    return text;
}

bool trustworthy(const Manifest& m) {
    for (const ManifestWindow& w : m.windows) {
        if (w.versions.isEmpty() || w.position < 0 || w.position > w.versions.size())
            return false;
        for (const ManifestVersion& v : w.versions)
            if (v.file.isEmpty() || v.file.contains('/') || v.file == "." || v.file == "..")
                return false;
    }
    return !m.clipboard.contains('/');
}
} // namespace

class tst_Manifest : public QObject {
    Q_OBJECT

private slots:
    void itReadsBackAsItWasWritten() {
        const Manifest m = twoWindows();
        QCOMPARE(readManifest(manifestText(m)), m);
    }

    void itIsWrittenWholeAndHidden() {
        QTemporaryDir dir;
        QVERIFY(writeManifest(dir.path(), twoWindows()));
        QVERIFY(QFileInfo(manifestPath(dir.path())).fileName().startsWith('.'));
        QFile file(manifestPath(dir.path()));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(readManifest(file.readAll()), twoWindows());
        // Nothing but the manifest: the new file was renamed over it.
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList({".windows.json"}));
    }

    void namesThatLeadOutOfTheFolderAreNotTrusted() {
        for (const char* bad : {"../elsewhere.wav", "/home/someone/speech.wav", "..", ".", ""}) {
            Manifest m = twoWindows();
            m.windows[0].versions[1].file = bad;
            m.clipboard = bad;
            const Manifest read = readManifest(manifestText(m));
            QCOMPARE(read.windows.size(), 1); // the window with the hole is left out
            QCOMPARE(read.windows[0], twoWindows().windows[1]);
            QCOMPARE(read.clipboard, QString());
        }
    }

    void positionsOutsideTheHistoryAreNotTrusted() {
        for (double position : {-1.0, 4.0, 1.5, 1e300}) {
            QByteArray text = manifestText(twoWindows());
            const QByteArray first = "\"position\":1,"; // the first window's
            QVERIFY(text.contains(first));
            text.replace(text.indexOf(first), first.size(),
                         "\"position\":" + QByteArray::number(position, 'g', 17) + ",");
            QCOMPARE(readManifest(text).windows.size(), 1);
        }
    }

    void truncatedEmptyOrGarbageTextReadsAsNoWindows() {
        const QByteArray text = manifestText(twoWindows());
        QVERIFY(readManifest(text.left(text.size() / 2)).windows.isEmpty());
        QVERIFY(readManifest({}).windows.isEmpty());
        QVERIFY(readManifest("\x89PNG\r\n\x1a\n").windows.isEmpty());
        QVERIFY(readManifest("[1, 2, 3]").windows.isEmpty());
        QVERIFY(readManifest("{\"windows\": {\"a\": 1}}").windows.isEmpty());
    }

    void tenThousandMutatedManifestsAreReadAsNoMoreThanCanBeTrusted() {
        QRandomGenerator random(20261126);
        const QByteArray text = manifestText(twoWindows());
        int stillWhole = 0;
        for (int i = 0; i < 10000; ++i) {
            const QByteArray mutated = mutate(text, random);
            const Manifest read = readManifest(mutated);
            QVERIFY2(trustworthy(read), mutated.constData());
            // Whatever was read, a recovery from it gives back only usable files.
            const Recovery recovery =
                planRecovery(read, [](const QString& file) { return file.endsWith("05.wav"); });
            for (const ManifestWindow& w : recovery.windows) {
                QVERIFY(!w.versions.isEmpty());
                QVERIFY(w.position >= 0 && w.position <= w.versions.size());
                for (const ManifestVersion& v : w.versions)
                    QVERIFY(v.file.endsWith("05.wav"));
            }
            stillWhole += read == twoWindows();
        }
        QVERIFY(stillWhole < 10000); // the mutations did reach the text
    }

    void recoveryLeavesOutWhatIsGoneAndKeepsThePositionNearby() {
        const Manifest m = twoWindows();
        // The current version (the cut) is gone: the one before it is current.
        Recovery r = planRecovery(m, [](const QString& file) { return !file.endsWith("31-00.wav"); });
        QCOMPARE(r.windows.size(), 2);
        QCOMPARE(r.windows[0].versions.size(), 2);
        QCOMPARE(r.windows[0].position, 0);
        QCOMPARE(r.leftOut, 1);
        QCOMPARE(r.clipboard, m.clipboard);
        QCOMPARE(recoveryDetails(r), QString("One version is missing or unreadable and is left out."));
        QCOMPARE(recoveryQuestion(r),
                 QString("Tanselo quit unexpectedly. Reopen the 2 tracks that were open?"));
        // Only later versions left: the first of them is current.
        r = planRecovery(
            m, [](const QString& file) { return file.endsWith("31-40.wav") || file.endsWith("40-00.wav"); });
        QCOMPARE(r.windows[0].versions.size(), 1);
        QCOMPARE(r.windows[0].position, 0);
        // The recording's take-over state, one past its take, stays so.
        QCOMPARE(r.windows[1].position, 1);
        // A window none of whose versions survive is left out.
        r = planRecovery(m, [](const QString& file) { return file.startsWith("2026-11-26-09-40"); });
        QCOMPARE(r.windows.size(), 1);
        QCOMPARE(r.windows[0].source, QString("Recording"));
        QCOMPARE(r.leftOut, 3);
        QCOMPARE(r.clipboard, QString());
        QCOMPARE(recoveryQuestion(r), QString("Tanselo quit unexpectedly. Reopen the track that was open?"));
        QCOMPARE(r.files(), QStringList({"2026-11-26-09-40-00.wav"}));
        QVERIFY(planRecovery(m, [](const QString&) { return false; }).windows.isEmpty());
    }

    void aDeadEditorsFilesAreSetAsideBesideTheFolderAndBroughtBack() {
        QTemporaryDir home;
        const QString work = home.filePath("Tanselo");
        QVERIFY(QDir().mkpath(work));
        Manifest m = twoWindows();
        // The cut and the recording are real audio; the echo is not, the
        // opened file is gone.
        for (const QString& name :
             {m.windows[0].versions[1].file, m.windows[1].versions[0].file, m.clipboard})
            QCOMPARE(fixtures::run("sox", {"-n", "-r", "44100", "-c", "2", "-b", "16", work + "/" + name,
                                           "synth", "1", "sine", "440"}),
                     0);
        QFile garbage(work + "/" + m.windows[0].versions[2].file);
        QVERIFY(garbage.open(QIODevice::WriteOnly));
        garbage.write("not audio");
        garbage.close();
        QVERIFY(writeManifest(work, m));

        std::optional<Recovery> recovery = setAsideForRecovery(work);
        QVERIFY(recovery);
        QCOMPARE(recovery->windows.size(), 2);
        QCOMPARE(recovery->leftOut, 2);
        QCOMPARE(recovery->windows[0].versions.size(), 1);
        QCOMPARE(recovery->windows[0].position, 0);
        const QString aside = recoveryFolderPath(work);
        QCOMPARE(aside, home.filePath(".Tanselo-recovery"));
        QCOMPARE(QDir(aside).entryList(QDir::Files | QDir::Hidden, QDir::Name),
                 QStringList({".windows.json", "2026-11-26-09-31-00.wav", "2026-11-26-09-31-00Clip.wav",
                              "2026-11-26-09-40-00.wav"}));
        // Left in the work folder, which the start then empties: the garbage and the manifest.
        QCOMPARE(QDir(work).entryList(QDir::Files | QDir::Hidden, QDir::Name),
                 QStringList({".windows.json", "2026-11-26-09-31-40.wav"}));
        QFile kept(manifestPath(aside));
        QVERIFY(kept.open(QIODevice::ReadOnly));
        QCOMPARE(readManifest(kept.readAll()).windows, recovery->windows);

        // Reopen: back in the emptied folder, beside a silence track made
        // anew, under names that no result of the new start can take.
        QDir(work).removeRecursively();
        QVERIFY(QDir().mkpath(work));
        QVERIFY(bringBackRecovery(work, *recovery));
        const QStringList back = {"recovered-2026-11-26-09-31-00.wav",
                                  "recovered-2026-11-26-09-31-00Clip.wav",
                                  "recovered-2026-11-26-09-40-00.wav"};
        QCOMPARE(QDir(work).entryList(QDir::Files, QDir::Name), back);
        QVERIFY(!QFileInfo::exists(aside));
        // The plan names them as they are now.
        QCOMPARE(recovery->windows[0].versions[0].file, back[0]);
        QCOMPARE(recovery->windows[1].versions[0].file, back[2]);
        QCOMPARE(recovery->clipboard, back[1]);
        QCOMPARE(recovery->files(), QStringList({back[0], back[2], back[1]}));
        // Results of the very seconds the dead editor named its versions by
        // (a clock set back) still take other names.
        for (const char* stamp : {"2026-11-26-09-31-00", "2026-11-26-09-40-00"}) {
            const ResultNames names(work, QDateTime::fromString(stamp, "yyyy-MM-dd-HH-mm-ss"));
            for (const char* suffix : {"", "Clip", "Before", "After"})
                QVERIFY(!back.contains(names.name(suffix)));
        }
        // A second recovery keeps the names.
        QCOMPARE(recoveredName(back[0]), back[0]);
    }

    void theKeptVersionFollowsTheWindowIntoTheManifestAndBack() {
        Manifest m = twoWindows();
        m.windows[0].kept = 1;
        QCOMPARE(readManifest(manifestText(m)).windows[0].kept, 1);
        QCOMPARE(readManifest(manifestText(m)).windows[1].kept, -1);
        // Out of range, or not a whole number, reads as none.
        for (const char* bad : {"3", "-2", "1.5", "\"x\""}) {
            QByteArray text = manifestText(m);
            QVERIFY(text.contains("\"kept\":1"));
            text.replace("\"kept\":1", QByteArray("\"kept\":") + bad);
            QCOMPARE(readManifest(text).windows.size(), 2);
            QCOMPARE(readManifest(text).windows[0].kept, -1);
        }
        // A recovery maps it to where the kept version stands among the
        // survivors, or to none when it did not survive.
        const auto without = [&](const QString& lost) {
            return planRecovery(m, [&](const QString& file) { return file != lost; });
        };
        QCOMPARE(without(m.windows[0].versions[0].file).windows[0].kept, 0);
        QCOMPARE(without(m.windows[0].versions[2].file).windows[0].kept, 1);
        QCOMPARE(without(m.windows[0].versions[1].file).windows[0].kept, -1);
    }

    void mutatedManifestsNeverOfferWhatCannotBeReopenedNorLeaveFilesBehind() {
        // The dead editor's folder, as the start finds it: the files of the
        // manifest, and a manifest mutated as a kill or a bad disk might.
        QTemporaryDir home;
        const QString work = home.filePath("Tanselo"), aside = recoveryFolderPath(work);
        const QString tone = home.filePath("tone.wav");
        QCOMPARE(fixtures::run("sox", {"-n", "-r", "44100", "-c", "2", "-b", "16", tone, "synth", "0.1",
                                       "sine", "440"}),
                 0);
        const Manifest m = twoWindows();
        const QByteArray text = manifestText(m);
        QRandomGenerator random(26);
        int offered = 0;
        // A thousand here, with the files moved for real; the reading alone
        // takes ten thousand above.
        for (int i = 0; i < 1000; ++i) {
            QDir(work).removeRecursively();
            QVERIFY(QDir().mkpath(work));
            for (const QString& name : {m.windows[0].versions[0].file, m.windows[0].versions[2].file,
                                        m.windows[1].versions[0].file, m.clipboard})
                QVERIFY(QFile::copy(tone, work + "/" + name));
            const QByteArray mutated = mutate(text, random);
            QFile file(manifestPath(work));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(mutated);
            file.close();
            const std::optional<Recovery> recovery = setAsideForRecovery(work);
            if (recovery) {
                ++offered;
                // Every window offered can be reopened: its versions are there.
                QVERIFY(!recovery->windows.isEmpty());
                for (const ManifestWindow& w : recovery->windows)
                    for (const ManifestVersion& v : w.versions)
                        QVERIFY2(QFileInfo::exists(aside + "/" + v.file), qPrintable(v.file));
            } else {
                QVERIFY(!QFileInfo::exists(aside));
            }
            discardRecovery(work);
            QVERIFY(!QFileInfo::exists(aside));
        }
        QVERIFY(offered > 10 && offered < 1000);
    }

    void discardingLeavesNothingAndNoManifestMeansNoQuestion() {
        QTemporaryDir home;
        const QString work = home.filePath("Tanselo");
        QVERIFY(QDir().mkpath(work));
        QVERIFY(!setAsideForRecovery(work)); // a clean end left no manifest
        Manifest m = twoWindows();
        QCOMPARE(
            fixtures::run("sox", {"-n", "-r", "44100", "-c", "2", "-b", "16",
                                  work + "/" + m.windows[1].versions[0].file, "synth", "1", "sine", "440"}),
            0);
        QVERIFY(writeManifest(work, m));
        QVERIFY(setAsideForRecovery(work));
        discardRecovery(work);
        QVERIFY(!QFileInfo::exists(recoveryFolderPath(work)));
        QCOMPARE(QDir(home.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList({"Tanselo"}));
        // A manifest whose files are all gone asks nothing and moves nothing.
        QVERIFY(writeManifest(work, m));
        QVERIFY(!setAsideForRecovery(work));
        QVERIFY(!QFileInfo::exists(recoveryFolderPath(work)));
    }
};

QTEST_GUILESS_MAIN(tst_Manifest)
#include "tst_manifest.moc"
