#include "ExportFixture.h"

#include <QCryptographicHash>
#include <QStatusBar>
#include <csignal>
#include <sys/resource.h>

using namespace exportTest;

namespace {
// A tmpfs mounted for one test and unmounted when it ends; `mounted` is false
// where this machine allows no mount, and the caller then makes the fault
// another way.
using fixtures::Mount;

// Runs `act` with a limit on the size of the files this process and its
// children write; ffmpeg, started meanwhile, is stopped by SIGXFSZ at it.
template <typename F> auto withFileSizeLimit(rlim_t bytes, F act) {
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    rlimit limit = old;
    limit.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limit);
    const auto result = act();
    setrlimit(RLIMIT_FSIZE, &old);
    return result;
}
} // namespace

// Exports that must not succeed, and the progress of a long one: the user is
// told in plain words, and the document stays as it was and keeps working.
class tst_ExportFaults : public ExportFixture {
    Q_OBJECT
    gui::UrlCatcher m_catcher;

    // The document as an export must leave it.
    struct Snapshot {
        QString path;
        QStringList versions;
        quint64 position;
        QByteArray content;
    };
    static Snapshot snapshot(const Document* d) {
        return {d->track().s_WAV_File_Path, d->history().array_WAV_Files(),
                d->history().u_array_WAV_Files_Position(), fixtures::digest(d->track().s_WAV_File_Path)};
    }
    static void checkUnchanged(const Document* d, const Snapshot& before) {
        QCOMPARE(d->track().s_WAV_File_Path, before.path);
        QCOMPARE(d->history().array_WAV_Files(), before.versions);
        QCOMPARE(d->history().u_array_WAV_Files_Position(), before.position);
        QCOMPARE(fixtures::digest(d->track().s_WAV_File_Path), before.content);
        QVERIFY(d->btnSave->isEnabled() && d->btnCut->isEnabled());
    }
    // The window still exports after a failure.
    void checkStillExports(Document* d) {
        const QString out = m_out + "/afterwards.wav";
        QFile::remove(out);
        QCOMPARE(exportVia(d, {}, out).text, QString("Success"));
        checkLength(out, d->track().s_WAV_File_Path);
    }

    // A file of the user's at `path`, made from the tone by ffmpeg.
    QByteArray usersFile(const QString& path) {
        QFile::remove(path);
        fixtures::run("ffmpeg", {"-v", "error", "-i", m_source, "-t", "2", path});
        const QByteArray content = fixtures::digest(path);
        [&] { QVERIFY2(!content.isEmpty(), qPrintable(path)); }();
        return content;
    }
    // Nothing hidden is left beside the destination once the export has ended.
    static void checkNothingSetAside(const QString& folder) {
        const QStringList hidden = QDir(folder).entryList({".*-replaced*"}, QDir::Files | QDir::Hidden);
        QVERIFY2(hidden.isEmpty(), qPrintable(hidden.join(", ")));
    }

private slots:
    void initTestCase() { start(&m_catcher); }
    void cleanupTestCase() { stop(); }
    void cleanup() { closeAll(); }

    void aFileTheEditorWorksWithIsRefusedBeforeAnythingIsDeleted() {
        Document* d = openTone();
        Document* other = openTone();
        QVERIFY(d && other);
        // A clipboard: copy the selection of the other window.
        QSignalSpy copied(other, &Document::copied);
        other->editingActions().Operation_Copy();
        QVERIFY(copied.wait(20000));
        QVERIFY(gui::waitIdle(*m_app));
        const Snapshot before = snapshot(d);
        const qsizetype runs = m_app->runner().runs().size();
        for (const QString& inUse : {d->track().s_WAV_File_Path, other->track().s_WAV_File_Path,
                                     m_app->session().s_Copied_WAV_File, m_app->session().sSilenceWavPath}) {
            const QByteArray content = fixtures::digest(inUse);
            const gui::AlertSeen alert = exportVia(d, {}, inUse);
            QCOMPARE(alert.text, QString("Error"));
            QVERIFY2(alert.informativeText.contains(inUse) &&
                         alert.informativeText.contains("Exporting over it"),
                     qPrintable(alert.informativeText));
            QCOMPARE(fixtures::digest(inUse), content);
        }
        QCOMPARE(m_app->runner().runs().size(), runs);
        checkUnchanged(d, before);
        checkStillExports(d);
    }

    void aFolderThatCannotBeWrittenIsToldAndNothingIsLost() {
        Document* d = openTone();
        QVERIFY(d);
        const Snapshot before = snapshot(d);
        Mount readOnly(m_root.filePath("read-only"), "ro,size=1m");
        // Without a mount: a "folder" that is a file cannot be written either.
        QString folder = readOnly.folder;
        if (!readOnly.mounted) {
            folder = m_root.filePath("a-file");
            QFile(folder).open(QIODevice::WriteOnly);
        }
        const QString out = folder + "/out.wav";
        const gui::AlertSeen alert = exportVia(d, {}, out);
        QCOMPARE(alert.text, QString("Error"));
        QVERIFY2(alert.informativeText.contains("produced no file") && alert.informativeText.contains(out),
                 qPrintable(alert.informativeText));
        QVERIFY(!QFile::exists(out));
        checkUnchanged(d, before);
        checkStillExports(d);
    }

    void aDiskThatFillsDuringTheExportIsToldAndTheCutOffFileRemoved() {
        Document* d = openTone(); // 10 s: 1.7 MB as WAV
        QVERIFY(d);
        const Snapshot before = snapshot(d);
        Mount small(m_root.filePath("small-disk"), "size=1m");
        const QString out = small.folder + "/full.wav";
        gui::AlertSeen alert;
        if (small.mounted) {
            alert = exportVia(d, {}, out);
            QVERIFY2(alert.informativeText.contains("No space left on device"),
                     qPrintable(alert.informativeText));
        } else { // a limit on the size of the files ffmpeg may write does the same
            alert = withFileSizeLimit(1 << 20, [&] { return exportVia(d, {}, out); });
        }
        QCOMPARE(alert.text, QString("Error"));
        QVERIFY2(alert.informativeText.contains("stopped before the end") &&
                     alert.informativeText.contains(out),
                 qPrintable(alert.informativeText));
        QVERIFY(!QFile::exists(out));
        checkUnchanged(d, before);
        checkStillExports(d);
    }

    void aFileSizeLimitThatStopsFfmpegIsTold() {
        Document* d = openTone();
        QVERIFY(d);
        const Snapshot before = snapshot(d);
        const QString out = m_out + "/limited.wav";
        const gui::AlertSeen alert = withFileSizeLimit(200 * 1024, [&] { return exportVia(d, {}, out); });
        QCOMPARE(alert.text, QString("Error"));
        QVERIFY2(alert.informativeText.contains("ffmpeg was stopped by signal 25 before it finished"),
                 qPrintable(alert.informativeText));
        QVERIFY(!QFile::exists(out));
        checkUnchanged(d, before);
        checkStillExports(d);
    }

    void anExportTheEncoderRefusesKeepsTheFileItWasToReplace() {
        Document* d = openTone();
        QVERIFY(d);
        const Snapshot before = snapshot(d);
        const QString song = m_out + "/song.mp3";
        const QByteArray mine = usersFile(song);
        // MP3 at 6000 Hz: the encoder refuses the rate.
        const gui::AlertSeen alert = exportVia(d, {2, 0, 1, 3}, song);
        QCOMPARE(alert.text, QString("Error"));
        QVERIFY2(alert.informativeText.contains("“song.mp3”, which was there before, is kept as it was."),
                 qPrintable(alert.informativeText));
        QCOMPARE(fixtures::digest(song), mine);
        checkNothingSetAside(m_out);
        checkUnchanged(d, before);
        checkStillExports(d);
    }

    void anExportThatFillsTheDiskKeepsTheFileItWasToReplace() {
        Document* d = openTone(); // 10 s: 1.7 MB as WAV
        QVERIFY(d);
        const Snapshot before = snapshot(d);
        Mount small(m_root.filePath("small-disk-with-a-file"), "size=1m");
        QVERIFY2(small.mounted, "the tests run as root and mount a small disk");
        const QString song = small.folder + "/song.wav"; // 2 s: 350 kB
        const QByteArray mine = usersFile(song);
        const gui::AlertSeen alert = exportVia(d, {}, song);
        QCOMPARE(alert.text, QString("Error"));
        QVERIFY2(alert.informativeText.contains("No space left on device") &&
                     alert.informativeText.contains("The incomplete file has been removed") &&
                     alert.informativeText.contains("is kept as it was"),
                 qPrintable(alert.informativeText));
        QCOMPARE(fixtures::digest(song), mine);
        checkNothingSetAside(small.folder);
        checkUnchanged(d, before);
    }

    void anExportStoppedBySigtermKeepsTheFileItWasToReplace() {
        const QString long3 = m_root.filePath("recordings/three-minutes-to-stop.wav");
        fixtures::makeTone(long3, 180, 440, 0.5);
        Document* d = gui::openInNewWindow(*m_app, long3);
        QVERIFY(d);
        const QString song = m_out + "/stopped.mp3";
        const QByteArray mine = usersFile(song);
        std::shared_ptr<gui::AlertSeen> alert;
        withDialog(d, [&](Window_AF_WAV* w) {
            QSignalSpy ended(w, &Window_AF_WAV::exportEnded);
            const auto saveDialog = gui::answerFileDialog(song);
            alert = gui::answerAlert("Close");
            choose(w, {2, 6, 1, 3});
            QTest::mouseClick(w->btnExport, Qt::LeftButton);
            QTRY_VERIFY_WITH_TIMEOUT(m_app->runner().runningProcessId() != 0, 20000);
            QTest::qWait(300);
            QCOMPARE(::kill(pid_t(m_app->runner().runningProcessId()), SIGTERM), 0);
            QVERIFY(ended.size() > 0 || ended.wait(20000));
            QCOMPARE(ended.first().at(1).toBool(), false);
        });
        QVERIFY(alert && alert->shown);
        QVERIFY2(alert->informativeText.contains("stopped before the end") &&
                     alert->informativeText.contains("Nothing of it is kept") &&
                     !alert->informativeText.contains("has been removed") &&
                     alert->informativeText.contains("is kept as it was"),
                 qPrintable(alert->informativeText));
        QCOMPARE(fixtures::digest(song), mine);
        checkNothingSetAside(m_out);
    }

    void anExportCutShortByADamagedTrackKeepsTheFileItWasToReplace() {
        Document* d = openTone(); // 10 s
        QVERIFY(d);
        QCOMPARE(d->track().i_Audio_Duration_Seconds, qint64(10));
        const QString song = m_out + "/song.wav";
        const QByteArray mine = usersFile(song);
        // The track's file loses its last six seconds outside the editor; its
        // header still says ten, and ffmpeg ends normally with what is there.
        QVERIFY(QFile::resize(d->track().s_WAV_File_Path, 44 + 4LL * 44100 * 4));
        const gui::AlertSeen alert = exportVia(d, {}, song);
        QCOMPARE(alert.text, QString("Error"));
        QVERIFY2(
            alert.informativeText.startsWith(QString("The export to \"%1\" holds 00:00:04 of audio where "
                                                     "the track lasts 00:00:10, so it is not kept")
                                                 .arg(song)) &&
                alert.informativeText.contains("“song.wav”, which was there before, is kept as it was."),
            qPrintable(alert.informativeText));
        QCOMPARE(fixtures::digest(song), mine);
        checkNothingSetAside(m_out);
        // A new destination is not left holding the short export either.
        const QString fresh = m_out + "/fresh.mp3";
        QFile::remove(fresh);
        QCOMPARE(exportVia(d, {2, 6, 1, 3}, fresh).text, QString("Error"));
        QVERIFY(!QFile::exists(fresh));
        checkNothingSetAside(m_out);
    }

    void anExportIntoTheWorkFolderIsRefused() {
        Document* d = openTone();
        QVERIFY(d);
        const Snapshot before = snapshot(d);
        const qsizetype runs = m_app->runner().runs().size();
        const QString folder = m_app->session().s_Output_Folder;
        QDir().mkpath(folder + "/kept");
        for (const QString& out : {folder + "/mine.wav", folder + "/kept/mine.mp3"}) {
            const gui::AlertSeen alert = exportVia(d, {}, out);
            QCOMPARE(alert.text, QString("Error"));
            QVERIFY2(alert.informativeText.contains(out) && alert.informativeText.contains("work folder") &&
                         alert.informativeText.contains("emptied every time Tanselo starts"),
                     qPrintable(alert.informativeText));
            QVERIFY(!QFile::exists(out));
        }
        QCOMPARE(m_app->runner().runs().size(), runs);
        checkUnchanged(d, before);
    }

    void escapeCancelsARunningExportAndTheDialogStays() {
        const QString long3 = m_root.filePath("recordings/three-minutes-to-cancel.wav");
        fixtures::makeTone(long3, 180, 440, 0.5);
        Document* d = gui::openInNewWindow(*m_app, long3);
        QVERIFY(d);
        const QString out = m_out + "/cancelled.mp3";
        withDialog(d, [&](Window_AF_WAV* w) {
            QSignalSpy ended(w, &Window_AF_WAV::exportEnded);
            const auto saveDialog = gui::answerFileDialog(out);
            const auto alert = gui::answerAlert();
            choose(w, {2, 6, 1, 3});
            QTest::mouseClick(w->btnExport, Qt::LeftButton);
            QTRY_VERIFY_WITH_TIMEOUT(m_app->runner().runningProcessId() != 0, 20000);
            QTest::qWait(300);
            QTest::keyClick(w, Qt::Key_Escape);
            QVERIFY(ended.size() > 0 || ended.wait(20000));
            QCOMPARE(ended.first().at(1).toBool(), false);
            QVERIFY(gui::waitIdle(*m_app));
            QTest::qWait(200);
            QVERIFY(!alert->shown); // a cancel is no error
            alert->stop = true;
            QVERIFY(w->isVisible());
            QVERIFY(w->btnExport->isEnabled());
            QCOMPARE(d->statusBar()->currentMessage(), QString("Cancelled"));
        });
        QVERIFY(!QFile::exists(out));
    }

    void aLongExportShowsItsProgressInTheStatusBarAndTheDialog() {
        const QString long3 = m_root.filePath("recordings/three-minutes.wav");
        fixtures::makeTone(long3, 180, 440, 0.5);
        Document* d = gui::openInNewWindow(*m_app, long3);
        QVERIFY(d);
        QStringList status, dialog;
        connect(d->statusBar(), &QStatusBar::messageChanged, this,
                [&](const QString& text) { status.append(text); });
        withDialog(d, [&](Window_AF_WAV* w) {
            QTimer poll;
            connect(&poll, &QTimer::timeout, this, [&] { dialog.append(w->labelProgress->text()); });
            poll.start(50);
            std::shared_ptr<gui::AlertSeen> alert;
            QVERIFY(exportOnce(w, {2, 6, 1, 3}, m_out + "/long.mp3", alert, "Close"));
            QCOMPARE(alert->text, QString("Success"));
            QVERIFY(!w->btnExport->isEnabled() || w->labelProgress->text().isEmpty());
        });
        QList<int> shares;
        // The export is the first of two runs: the second reads its length back.
        static const QRegularExpression percent("^Running ffmpeg \\(step 1 of 2\\)… (\\d+) %$");
        for (const QString& text : std::as_const(status))
            if (const auto match = percent.match(text); match.hasMatch())
                shares.append(match.captured(1).toInt());
        QVERIFY2(shares.size() >= 2, qPrintable(status.join(" / ")));
        QVERIFY(std::is_sorted(shares.begin(), shares.end()));
        QVERIFY(shares.first() >= 0 && shares.last() <= 99 && shares.last() > shares.first());
        QVERIFY2(dialog.filter(percent).size() >= 2, qPrintable(dialog.join(" / ")));
        QVERIFY(d->statusBar()->currentMessage().isEmpty()); // cleared once the export has ended
    }
};

QTEST_MAIN(tst_ExportFaults)
#include "tst_exportfaults.moc"
