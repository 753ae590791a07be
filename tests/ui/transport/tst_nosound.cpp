// Playing where no sound server runs: the editor says there is no sound
// output and how to get one, plays nothing and keeps working. The test runs
// the real player, with the sound server's address pointing nowhere.

#include "application/AppDelegate.h"
#include "document/Document.h"
#include "support/Fixtures.h"
#include "support/Gui.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

class tst_NoSound : public QObject {
    Q_OBJECT
    QTemporaryDir m_root;
    std::unique_ptr<AppDelegate> m_app;

private slots:
    void initTestCase() {
        m_app = gui::startApplication(m_root.filePath("home"));
        QVERIFY(m_app && gui::waitIdle(*m_app));
    }

    void playSaysThereIsNoSoundOutputAndTheWindowGoesOn() {
        const QString tone = m_root.filePath("tone.wav");
        fixtures::makeTone(tone, 3, 440);
        Document* d = gui::openInNewWindow(*m_app, tone);
        QVERIFY(d);
        for (const auto& play : std::initializer_list<std::function<void()>>{
                 [d] { d->transportActions().OnPopupMenuPlayFromStart(); },
                 [d] { d->transportActions().OnPopupMenuPlaySelection(); }, [d] { d->togglePlayback(); }}) {
            const auto alert = gui::answerAlert();
            play();
            QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 5000);
            QVERIFY2(alert->informativeText.startsWith("No sound output is available") &&
                         alert->informativeText.contains("start PulseAudio or PipeWire"),
                     qPrintable(alert->informativeText));
            QCOMPARE(d->transportActions().m_RecordStatus, quint64(0));
            QVERIFY(d->btnPlay->isEnabled());
            QVERIFY(!d->btnStop->isEnabled());
        }
        QTest::qWait(500); // a back end started anyway would fail by now
        // The window still edits.
        QSignalSpy adopted(d, &Document::adopted);
        d->effectActions().OnPopupReverseEntireTrack();
        QVERIFY(adopted.wait(20000));
    }
};

int main(int argc, char* argv[]) {
    // No sound server: an empty runtime folder and a server address that
    // leads nowhere, set before anything of Qt's media starts.
    QTemporaryDir runtime;
    qputenv("XDG_RUNTIME_DIR", runtime.path().toUtf8());
    qputenv("PULSE_SERVER", "unix:/nonexistent/pulse/native");
    QApplication application(argc, argv);
    tst_NoSound test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_nosound.moc"
