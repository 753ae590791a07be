#include "session/Session.h"
#include "session/WorkFolder.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace {
// An open track as the session sees it: the file it shows, its versions and
// what it is about to make.
struct FakeTrack : TrackFiles {
    QString shown;
    QStringList versions;
    QStringList pending; // an import under way, a take being recorded
    QString shownFile() const override { return shown; }
    QStringList versionFiles() const override { return versions; }
    QStringList namesInUse() const override { return versions + pending; }
};
} // namespace

class tst_Session : public QObject {
    Q_OBJECT
    Session m_session;
    FakeTrack m_first, m_second;

private slots:
    void init() {
        m_session.s_Output_Folder = "/w";
        m_session.sSilenceWavPath = "/w/silence.wav";
        m_session.s_Copied_WAV_File.clear();
        m_first = {};
        m_first.shown = "/w/a-2.wav";
        m_first.versions = {"/w/a-1.wav", "/w/a-2.wav", "/w/a-3.wav"};
        m_second = {};
        m_second.shown = "/w/b.wav";
        m_second.versions = {"/w/b.wav"};
        m_second.pending = {"/w/import.wav"};
        m_session.addTrack(&m_first);
        m_session.addTrack(&m_second);
    }
    void cleanup() {
        m_session.removeTrack(&m_first);
        m_session.removeTrack(&m_second);
    }

    void everyOpenTracksFilesAndTheCopiedAudioAreInUse() {
        QCOMPARE(m_session.namesInUse(),
                 QStringList({"/w/a-1.wav", "/w/a-2.wav", "/w/a-3.wav", "/w/b.wav", "/w/import.wav"}));
        m_session.s_Copied_WAV_File = "/w/copy.wav"; // kept taken even when its file has gone
        QCOMPARE(m_session.namesInUse().last(), QString("/w/copy.wav"));
    }

    void aTrackRegisteredTwiceCountsOnceAndARemovedOneNoMore() {
        m_session.addTrack(&m_first);
        QCOMPARE(m_session.namesInUse().count("/w/a-1.wav"), 1);
        m_session.removeTrack(&m_first);
        QCOMPARE(m_session.namesInUse(), QStringList({"/w/b.wav", "/w/import.wav"}));
    }

    void theNamesAroundATrackAreItsOwnTheOthersAndTheClipboard() {
        m_session.s_Copied_WAV_File = "/w/copy.wav";
        const NamesInUse around = m_session.namesAround(&m_second);
        QCOMPARE(around.own, QStringList({"/w/b.wav", "/w/import.wav"}));
        QCOMPARE(around.others, QStringList({"/w/a-1.wav", "/w/a-2.wav", "/w/a-3.wav", "/w/silence.wav"}));
        QCOMPARE(around.clipboard, QString("/w/copy.wav"));
    }

    void aSplitKeepsClearOfWhatTracksKeepWithoutShowingIt() {
        m_session.s_Copied_WAV_File = "/w/copy.wav";
        QCOMPARE(m_session.namesKeptUnshown(),
                 QStringList({"/w/a-1.wav", "/w/a-3.wav", "/w/import.wav", "/w/copy.wav"}));
    }

    void anExportMayReplaceNoVersionNorTheClipboardNorTheSilence() {
        m_session.s_Copied_WAV_File = "/w/copy.wav";
        QCOMPARE(m_session.protectedFiles(), QStringList({"/w/copy.wav", "/w/silence.wav", "/w/a-1.wav",
                                                          "/w/a-2.wav", "/w/a-3.wav", "/w/b.wav"}));
    }

    void theClipboardFileStaysWhileATrackHoldsItAsAVersion() {
        m_session.s_Copied_WAV_File = "/w/copy.wav";
        QVERIFY(m_session.mayDeleteClipboardFile());
        m_second.versions << "/w/copy.wav"; // a cut's result took over the copied audio's name
        QVERIFY(!m_session.mayDeleteClipboardFile());
    }

    // With the real tools: a plan waiting behind another names files that are
    // in use as well, and the clipboard that a queued plan writes stays.
    void theFilesOfQueuedPlansAreInUse() {
        QTemporaryDir folder;
        QVERIFY(folder.isValid());
        Session session;
        const ToolPaths tools = locateTools(QCoreApplication::applicationDirPath());
        QVERIFY(!tools.sox.isEmpty());
        session.startRunner(tools);
        QCOMPARE(session.sSoxPath, tools.sox);
        session.s_Copied_WAV_File = folder.filePath("copy.wav");
        QSignalSpy idle(&session.runner(), &PlanRunner::busyChanged);
        session.runner().submit(buildSilenceTrackPlan(folder.filePath("first.wav")), nullptr, {});
        session.runner().submit(buildSilenceTrackPlan(session.s_Copied_WAV_File), nullptr, {});
        QVERIFY(session.namesInUse().contains(session.s_Copied_WAV_File));
        QVERIFY(session.namesAround(nullptr).others.contains(session.s_Copied_WAV_File));
        QVERIFY(!session.mayDeleteClipboardFile());
        QVERIFY(QTest::qWaitFor([&] { return !session.runner().isBusy(); }, 60000));
        QVERIFY(session.mayDeleteClipboardFile());
        QVERIFY(QFile::exists(session.s_Copied_WAV_File));
    }
};

QTEST_MAIN(tst_Session)
#include "tst_session.moc"
