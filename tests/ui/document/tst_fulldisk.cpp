// A work folder on a disk that is full, or fills while a tool writes: no
// cut-off file is ever taken for a track, the user is told why in words, and
// the track stays as it was.

#include "application/AppDelegate.h"
#include "document/Document.h"
#include "session/Manifest.h"
#include "support/Fixtures.h"
#include "support/Gui.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QStorageInfo>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

class tst_FullDisk : public QObject {
    Q_OBJECT
    QTemporaryDir m_root;

    // A small disk mounted where the work folder of `home` goes.
    static std::unique_ptr<fixtures::Mount> workFolderDisk(const QString& home, const QString& size) {
        auto disk = std::make_unique<fixtures::Mount>(home + "/Documents/Tanselo", "size=" + size);
        [&] { QVERIFY2(disk->mounted, "the tests run as root and mount a small disk"); }();
        return disk;
    }

    // A WAV whose header claims `dataBytes` of PCM, holding zeros that take no
    // room on the disk (a sparse file): hours of audio made in an instant.
    static void sparseWav(const QString& path, int rate, int channels, quint32 dataBytes) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        QByteArray header;
        const auto u32 = [&](quint32 v) { header.append(reinterpret_cast<const char*>(&v), 4); };
        const auto u16 = [&](quint16 v) { header.append(reinterpret_cast<const char*>(&v), 2); };
        header.append("RIFF");
        u32(36 + dataBytes);
        header.append("WAVEfmt ");
        u32(16);
        u16(1);
        u16(quint16(channels));
        u32(quint32(rate));
        u32(quint32(rate * channels * 2));
        u16(quint16(channels * 2));
        u16(16);
        header.append("data");
        u32(dataBytes);
        file.write(header);
        QVERIFY(file.resize(44 + qint64(dataBytes)));
    }

    // Every file of the work folder but the manifest of the windows, which
    // the editor rewrites as a window shows a track.
    static QStringList filesBesideTheManifest(AppDelegate& app) {
        app.settleManifest();
        QStringList files = QDir(app.session().s_Output_Folder).entryList(QDir::Files | QDir::Hidden);
        files.removeAll(QFileInfo(manifestPath(app.session().s_Output_Folder)).fileName());
        return files;
    }

    // Opening `source` into a new window is refused with an alert that
    // contains `said`; nothing is written and the window shows silence.
    static void checkOpenRefused(AppDelegate& app, const QString& source, const QStringList& said) {
        const QStringList before = filesBesideTheManifest(app);
        const auto alert = gui::answerAlert();
        gui::answerFileDialog(source);
        app.openDocument();
        Document* d = app.documents().last();
        QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 20000);
        for (const QString& text : said)
            QVERIFY2(alert->informativeText.contains(text), qPrintable(alert->informativeText));
        QVERIFY(gui::waitIdle(app));
        QTRY_VERIFY_WITH_TIMEOUT(d->b_Audio_Loaded, 10000);
        QCOMPARE(d->track().s_WAV_File_Path, app.session().sSilenceWavPath);
        QCOMPARE(filesBesideTheManifest(app), before);
    }

    struct Snapshot {
        QString path;
        QStringList versions;
        QByteArray content;
        QStringList files;
        bool operator==(const Snapshot&) const = default;
    };
    static Snapshot snapshot(const Document* d, const QString& folder) {
        return {d->track().s_WAV_File_Path, d->history().array_WAV_Files(),
                fixtures::digest(d->track().s_WAV_File_Path),
                QDir(folder).entryList(QDir::Files | QDir::Hidden)};
    }

private slots:
    void aWorkFolderTooSmallForTheSilenceTrackIsTold() {
        const QString home = m_root.filePath("tiny");
        const auto disk = workFolderDisk(home, "1m");
        const auto alert = gui::answerAlert();
        auto app = gui::startApplication(home);
        QVERIFY(app);
        QVERIFY(gui::waitIdle(*app));
        QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 10000);
        QVERIFY2(alert->informativeText.contains("Making the silence track") &&
                     alert->informativeText.contains("The disk is full: " + app->session().s_Output_Folder),
                 qPrintable(alert->informativeText));
        // No shorter track passes for the minute of silence.
        QVERIFY(!QFile::exists(app->session().sSilenceWavPath));
    }

    void aFileThatDoesNotFitIsRefusedBeforeAnythingIsWritten() {
        const QString home = m_root.filePath("small");
        const auto disk = workFolderDisk(home, "150m");
        auto app = gui::startApplication(home);
        QVERIFY(app && gui::waitIdle(*app));
        // Twenty minutes at 8 kHz mono: 19 MB here, 212 MB as a working WAV.
        const QString source = m_root.filePath("twenty minutes.wav");
        QCOMPARE(fixtures::run("sox", {"-n", "-r", "8000", "-c", "1", "-b", "16", source, "synth", "1200",
                                       "sine", "440"}),
                 0);
        checkOpenRefused(*app, source,
                         {"not enough free space in the work folder " + app->session().s_Output_Folder,
                          "to open “twenty minutes.wav”", "00:20:00"});
    }

    void aFileLongerThanAWavHoldsIsRefusedWithTheLongestThatFits() {
        auto app = gui::startApplication(m_root.filePath("roomy"));
        QVERIFY(app && gui::waitIdle(*app));
        const QString source = m_root.filePath("seven hours.wav"); // 8 kHz mono, 403 MB, sparse
        sparseWav(source, 8000, 1, 7 * 3600 * 8000 * 2);
        checkOpenRefused(*app, source,
                         {"“seven hours.wav” lasts 07:00:00, longer than a working file can hold",
                          "at most 06:45:47 of audio"});
        // A paste whose result would be as long is refused before it runs.
        const QString tone = m_root.filePath("minute.wav");
        fixtures::makeTone(tone, 60, 440);
        Document* d = gui::openInNewWindow(*app, tone);
        QVERIFY(d);
        const QString clip = m_root.filePath("long clip.wav"); // 6:45:30 at the working format
        sparseWav(clip, 44100, 2, quint32((6 * 3600 + 45 * 60 + 30) * 44100LL * 4));
        app->session().s_Copied_WAV_File = clip;
        const qsizetype runs = app->runner().runs().size();
        for (const auto& act : std::initializer_list<std::function<void()>>{
                 [d] { d->editingActions().OnPopupMenuPasteAtEnd(); },
                 [d] { d->editingActions().OnPopupPasteMixingAtEndOfSelection(); }}) {
            const auto alert = gui::answerAlert();
            act();
            QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 5000);
            QVERIFY2(alert->informativeText.startsWith("The track would then last 06:4") &&
                         alert->informativeText.contains("at most 06:45:47"),
                     qPrintable(alert->informativeText));
        }
        QVERIFY(gui::waitIdle(*app));
        QCOMPARE(app->runner().runs().size(), runs);
        QCOMPARE(d->history().array_WAV_Files().size(), 1);
        app->session().s_Copied_WAV_File.clear();
    }

    void aDiskThatFillsWhileEchoRunsKeepsTheTrack() {
        const QString home = m_root.filePath("filling");
        const auto disk = workFolderDisk(home, "200m");
        auto app = gui::startApplication(home);
        QVERIFY(app && gui::waitIdle(*app));
        const QString source = m_root.filePath("two-minutes.wav");
        fixtures::makeTone(source, 120, 440, 0.5); // 21 MB as a working WAV
        Document* d = gui::openInNewWindow(*app, source);
        QVERIFY(d);
        const Snapshot before = snapshot(d, app->session().s_Output_Folder);

        const auto alert = gui::answerAlert();
        const qsizetype runs = app->runner().runs().size();
        d->effectActions().applyEffect({{}, {"echo", "0.8", "0.88", "60", "0.4"}}, false);
        // sox is held still the moment it starts, so the disk fills while it
        // runs however fast the machine (a free-running sox could finish first).
        QElapsedTimer waited;
        waited.start();
        qint64 sox = 0;
        while ((sox = app->runner().runningProcessId()) == 0 && waited.elapsed() < 20000)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
        QVERIFY(sox != 0);
        QCOMPARE(::kill(pid_t(sox), SIGSTOP), 0);
        auto resume = qScopeGuard([sox] { ::kill(pid_t(sox), SIGCONT); });
        // Everything but a megabyte goes while sox waits.
        QStringList fillers;
        for (int i = 0; i < 20; ++i) {
            const qint64 free = QStorageInfo(app->session().s_Output_Folder).bytesAvailable() - 1024 * 1024;
            if (free <= 0)
                break;
            const QString filler = app->session().s_Output_Folder + QString("/.filler-%1").arg(i);
            if (fixtures::run("fallocate", {"-l", QString::number(free), filler}) == 0)
                fillers << filler;
        }
        resume.dismiss();
        QCOMPARE(::kill(pid_t(sox), SIGCONT), 0);
        QVERIFY(!fillers.isEmpty());
        QVERIFY(gui::waitIdle(*app, 60000));
        QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 10000);
        // sox ran and failed: the echo was not refused before it started.
        QVERIFY2(app->runner().runs().size() > runs, qPrintable(alert->informativeText));
        QVERIFY2(alert->informativeText.contains("The echo effect") &&
                     alert->informativeText.contains("The disk is full: " + app->session().s_Output_Folder),
                 qPrintable(alert->informativeText));
        // (A fallocate that found no room may leave an empty file too.)
        for (const QString& filler :
             QDir(app->session().s_Output_Folder).entryList({".filler-*"}, QDir::Files | QDir::Hidden))
            QFile::remove(app->session().s_Output_Folder + "/" + filler);
        const Snapshot after = snapshot(d, app->session().s_Output_Folder);
        QCOMPARE(after, before);
        QCOMPARE(d->history().array_WAV_Files().size(), 1);
    }
};

QTEST_MAIN(tst_FullDisk)
#include "tst_fulldisk.moc"
