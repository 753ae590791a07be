#include "application/AppDelegate.h"
#include "document/Document.h"
#include "support/Fixtures.h"
#include "support/Gui.h"
#include "support/Listening.h"
#include "timeline/View_Audio_Wave.h"
#include "transport/SoundPlayer.h"

#include <QAction>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

namespace {
// The nine buttons the transport sets, in the order of its table: Play,
// Record, Pause, Stop, Sound preferences, Zoom +, Zoom −, Save, Tools.
QString buttons(Document* d) {
    QStringList cells;
    for (QAction* b : {d->btnPlay, d->btnRecord, d->btnPause, d->btnStop, d->btnSoundPreferences,
                       d->btnZoomPlus, d->btnZoomMinus, d->btnSave, d->btnTools})
        cells << (b->isEnabled() ? "on" : "off");
    return cells.join(' ');
}
} // namespace

// Playback through the real sound player on the private audio server.
class tst_Playback : public QObject {
    Q_OBJECT
    QTemporaryDir m_root;
    std::unique_ptr<AppDelegate> m_app;
    QString m_tone10, m_track60, m_halves;

    Document* open(const QString& path) { return gui::openInNewWindow(*m_app, path); }

    // Stops the playing timer so that a test can call its tick itself.
    static void holdTheTimer(Document* d) {
        QVERIFY(d->timerHandleAudioPlaying);
        d->timerHandleAudioPlaying->stop();
    }

private slots:
    void initTestCase() {
        m_app = gui::startApplication(m_root.filePath("home"));
        QVERIFY(m_app && gui::waitIdle(*m_app));
        m_tone10 = m_root.filePath("tone10.wav");
        fixtures::makeTone(m_tone10, 10, 1000, 0.5);
        m_track60 = m_root.filePath("track60.wav");
        fixtures::makeTone(m_track60, 60, 1000, 0.5);
        const QString low = m_root.filePath("low.wav"), high = m_root.filePath("high.wav");
        fixtures::makeTone(low, 5, 440, 0.5);
        fixtures::makeTone(high, 5, 880, 0.5);
        m_halves = m_root.filePath("halves.wav");
        fixtures::join({low, high}, m_halves);
    }
    void cleanup() {
        for (Document* d : m_app->documents())
            delete d;
        QVERIFY(gui::waitIdle(*m_app));
    }

    void idleStopAndPauseDoNothing() {
        Document* d = open(m_tone10);
        QVERIFY(d);
        const QString before = buttons(d);
        QCOMPARE(before, QString("on on off off on on on on on"));
        d->stopAudio();
        d->pauseAudio();
        d->OnToolbarStop();
        d->OnToolbarPause();
        QCOMPARE(d->m_RecordStatus, 0u);
        QCOMPARE(buttons(d), before);
        QVERIFY(!d->sound);
        QVERIFY(!d->timerHandleAudioPlaying);
    }

    void playPauseResumeStop() {
        Document* d = open(m_tone10);
        QVERIFY(d);
        d->btnSave->setEnabled(false); // play start leaves Save as it is
        d->OnPopupMenuPlayFromStart();
        QCOMPARE(d->m_RecordStatus, 3u);
        QCOMPARE(buttons(d), QString("off off on on off off off off off"));
        QVERIFY(d->timerHandleAudioPlaying && d->timerHandleAudioPlaying->isActive());
        QCOMPARE(d->timerHandleAudioPlaying->interval(), 1000);
        SoundPlayer* first = d->sound.get();
        QVERIFY(first);
        QTRY_VERIFY_WITH_TIMEOUT(first->isPlaying(), 10000);

        // The three choices are refused while playing.
        d->OnPopupMenuPlaySelection();
        d->OnPopupMenuPlayFromCurrentPosition();
        d->OnPopupMenuPlayFromStart();
        QCOMPARE(d->sound.get(), first);
        QCOMPARE(d->m_RecordStatus, 3u);

        d->OnToolbarPause();
        QCOMPARE(d->m_RecordStatus, 4u);
        QCOMPARE(buttons(d), QString("on off off on off off off off off"));
        QVERIFY(!d->timerHandleAudioPlaying);
        QTRY_VERIFY(!first->isPlaying());
        d->pauseAudio(); // ignored while paused
        QCOMPARE(d->m_RecordStatus, 4u);

        d->OnToolbarPlay(); // resumes: the same player
        QCOMPARE(d->m_RecordStatus, 3u);
        QCOMPARE(d->sound.get(), first);
        QCOMPARE(buttons(d), QString("off off on on off off off off off"));
        QVERIFY(d->timerHandleAudioPlaying && d->timerHandleAudioPlaying->isActive());
        QTRY_VERIFY(first->isPlaying());

        d->OnToolbarPause();
        d->track().f_Audio_Position = 4.5f;
        d->OnPopupMenuPlayFromCurrentPosition(); // a choice restarts a paused playback
        QCOMPARE(d->m_RecordStatus, 3u);
        QVERIFY(d->sound.get() != first);
        QCOMPARE(d->track().f_Audio_Position, 4.5f);

        d->OnToolbarStop();
        QCOMPARE(d->m_RecordStatus, 0u);
        QCOMPARE(buttons(d), QString("on on off off on on on on on"));
        QVERIFY(!d->timerHandleAudioPlaying);
        QCOMPARE(d->track().f_Audio_Position, 4.5f); // kept
        d->stopAudio();
        QCOMPARE(d->m_RecordStatus, 0u);
    }

    void theTimerMovesTheMarkerEverySecond() {
        Document* d = open(m_tone10);
        QVERIFY(d);
        d->track().f_Audio_Position = 7;
        d->OnPopupMenuPlayFromStart();
        QCOMPARE(d->track().f_Audio_Position, 0.0f);
        QTRY_COMPARE_WITH_TIMEOUT(d->track().f_Audio_Position, 2.0f, 3500);
        d->OnToolbarStop();
    }

    void fromTheStartPastTheEndUntilStop() {
        Document* d = open(m_tone10);
        QVERIFY(d);
        d->OnPopupMenuPlayFromStart();
        holdTheTimer(d);
        QList<float> positions;
        for (int i = 0; i < 14; ++i) {
            d->TimerHandleAudioPlayingRoutine();
            positions << d->track().f_Audio_Position;
        }
        QCOMPARE(positions, QList<float>({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14}));
        QCOMPARE(d->u_Last_Position, 14u);
        QCOMPARE(d->m_RecordStatus, 3u);
        QVERIFY(d->labelPosition->text().contains("00:00:14"));
        d->OnToolbarStop();
        QCOMPARE(d->track().f_Audio_Position, 14.0f);
    }

    void aSelectionPlaysFromItsStartAndStopsAtItsEnd() {
        Document* d = open(m_track60);
        QVERIFY(d);
        d->track().f_Selection_Start = 10;
        d->track().f_Selection_End = 20;
        d->OnPopupMenuPlaySelection();
        QVERIFY(d->b_Play_Selection);
        QCOMPARE(d->track().f_Audio_Position, 6.0f);
        holdTheTimer(d);
        // The player starts where the marker does.
        QTRY_VERIFY_WITH_TIMEOUT(d->sound->isPlaying(), 10000);
        QVERIFY2(std::abs(d->sound->currentTime() - 6.0) < 0.5,
                 qPrintable(QString::number(d->sound->currentTime())));
        QList<float> positions;
        while (d->m_RecordStatus == 3 && positions.size() < 20) {
            d->TimerHandleAudioPlayingRoutine();
            positions << d->track().f_Audio_Position;
        }
        QCOMPARE(positions, QList<float>({7, 8, 9, 10, 11, 12, 12}));
        QCOMPARE(d->m_RecordStatus, 0u);
        QCOMPARE(buttons(d), QString("on on off off on on on on on"));
    }

    void pausedSelectionKeepsItsEnd() {
        Document* d = open(m_track60);
        QVERIFY(d);
        d->track().f_Selection_Start = 10;
        d->track().f_Selection_End = 20;
        d->OnPopupMenuPlaySelection();
        holdTheTimer(d);
        for (int i = 0; i < 3; ++i)
            d->TimerHandleAudioPlayingRoutine();
        d->OnToolbarPause();
        d->OnToolbarPlay();
        QVERIFY(d->b_Play_Selection);
        QCOMPARE(d->track().f_Audio_Position, 9.0f);
        holdTheTimer(d);
        for (int i = 0; i < 3; ++i)
            d->TimerHandleAudioPlayingRoutine();
        QCOMPARE(d->m_RecordStatus, 3u);
        d->TimerHandleAudioPlayingRoutine(); // at 12.0: the end
        QCOMPARE(d->m_RecordStatus, 0u);
        QCOMPARE(d->track().f_Audio_Position, 12.0f);
    }

    void pauseThenStopKeepsTheMarker() {
        Document* d = open(m_tone10);
        QVERIFY(d);
        d->OnPopupMenuPlayFromStart();
        holdTheTimer(d);
        d->TimerHandleAudioPlayingRoutine();
        d->TimerHandleAudioPlayingRoutine();
        d->OnToolbarPause();
        d->OnToolbarStop();
        QCOMPARE(d->m_RecordStatus, 0u);
        QCOMPARE(d->track().f_Audio_Position, 2.0f);
        d->OnPopupMenuPlayFromCurrentPosition();
        QCOMPARE(d->track().f_Audio_Position, 2.0f);
        QTRY_VERIFY_WITH_TIMEOUT(std::abs(d->sound->currentTime() - 2.0) < 0.5, 10000);
        d->OnToolbarStop();
    }

    // A click moves the marker at once; the player follows on the next tick.
    void aClickDuringPlaybackIsFollowed() {
        Document* d = open(m_track60);
        QVERIFY(d);
        d->show();
        QVERIFY(QTest::qWaitForWindowExposed(d));
        d->OnPopupMenuPlayFromStart();
        holdTheTimer(d);
        for (int i = 0; i < 3; ++i)
            d->TimerHandleAudioPlayingRoutine();
        QTRY_VERIFY_WITH_TIMEOUT(d->sound->isPlaying(), 10000);
        View_Audio_Wave* view = d->viewAudioPlot;
        const QPoint at(int(view->width() * 0.8), view->height() / 2);
        QTest::mousePress(view, Qt::LeftButton, {}, at);
        QTest::mouseRelease(view, Qt::LeftButton, {}, at);
        const float clicked = d->track().f_Audio_Position;
        QVERIFY2(std::abs(clicked - 48) < 2, qPrintable(QString::number(clicked)));
        QVERIFY(d->sound->currentTime() < 10);
        d->TimerHandleAudioPlayingRoutine();
        QTRY_VERIFY_WITH_TIMEOUT(std::abs(d->sound->currentTime() - clicked) < 0.5, 5000);
        QCOMPARE(d->track().f_Audio_Position, clicked + 1);
        d->OnToolbarStop();
    }

    void thePlayButtonOffersThreeChoices() {
        Document* d = open(m_tone10);
        QVERIFY(d);
        d->show();
        QVERIFY(QTest::qWaitForWindowExposed(d));
        d->OnToolbarPlay();
        QTRY_VERIFY(d->popupMenuPlay->isVisible());
        QCOMPARE(d->popupMenuPlay->actions().size(), 3);
        d->popupMenuPlay->hide();
        QCOMPARE(d->m_RecordStatus, 0u);
        d->popupMenuPlay->actions().at(2)->trigger();
        QVERIFY(d->b_Play_Selection);
        QCOMPARE(d->m_RecordStatus, 3u);
        d->OnToolbarStop();
        d->popupMenuPlay->actions().at(0)->trigger();
        QVERIFY(!d->b_Play_Selection);
        QCOMPARE(d->track().f_Audio_Position, 0.0f);
        d->OnToolbarStop();
    }

    void spaceTogglesPlayAndPause() {
        Document* d = open(m_tone10);
        QVERIFY(d);
        d->show();
        QVERIFY(QTest::qWaitForWindowExposed(d));
        d->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(d));
        d->track().f_Audio_Position = 3;
        QTest::keyClick(d, Qt::Key_Space);
        QCOMPARE(d->m_RecordStatus, 3u);
        QVERIFY(!d->b_Play_Selection);
        QCOMPARE(d->track().f_Audio_Position, 3.0f);
        QTest::keyClick(d, Qt::Key_Space);
        QCOMPARE(d->m_RecordStatus, 4u);
        QTest::keyClick(d, Qt::Key_Space);
        QCOMPARE(d->m_RecordStatus, 3u);
        d->OnToolbarStop();
    }

    void theSoundIsTheTrack() {
        Document* d = open(m_tone10);
        QVERIFY(d);
        d->OnPopupMenuPlayFromStart();
        const std::vector<short> heard = listening::hear(1000);
        d->OnToolbarStop();
        QVERIFY2(!heard.empty(), "nothing was heard");
        QVERIFY2(listening::level(heard) > 0.3, qPrintable(QString::number(listening::level(heard))));
        const double pitch = listening::frequency(heard);
        QVERIFY2(std::abs(pitch - 1000) < 15, qPrintable(QString::number(pitch)));
    }

    void aSeekIsHeard() {
        Document* d = open(m_halves); // 440 Hz for 5 s, then 880 Hz
        QVERIFY(d);
        d->OnPopupMenuPlayFromStart();
        const std::vector<short> before = listening::hear(500);
        QTRY_VERIFY_WITH_TIMEOUT(d->u_Last_Position >= 1, 3000);
        QVERIFY(d->u_Last_Position < 4);
        d->track().f_Audio_Position = 6; // as a click would
        const quint64 ticked = d->u_Last_Position;
        QTRY_VERIFY_WITH_TIMEOUT(d->u_Last_Position != ticked, 3000); // the next tick seeks
        QTest::qWait(300); // what was on its way before the seek has been played
        const std::vector<short> after = listening::hear(500);
        d->OnToolbarStop();
        QVERIFY2(std::abs(listening::frequency(before) - 440) < 10,
                 qPrintable(QString::number(listening::frequency(before))));
        QVERIFY2(std::abs(listening::frequency(after) - 880) < 15,
                 qPrintable(QString::number(listening::frequency(after))));
    }

    void closingTheWindowStopsTheSound() {
        Document* d = open(m_tone10);
        QVERIFY(d);
        d->show();
        d->OnPopupMenuPlayFromStart();
        QVERIFY2(!listening::hear(300).empty(), "nothing was heard");
        QPointer<Document> window = d;
        QVERIFY(d->close());
        QTRY_VERIFY(!window);
        QTest::qWait(300);
        const std::vector<short> after = listening::listen(1000);
        int loudest = 0;
        for (short sample : after)
            loudest = std::max(loudest, std::abs(int(sample)));
        QVERIFY2(loudest < 100, qPrintable(QString::number(loudest)));
    }

    void aMissingFileIsSaidAndNothingStarts() {
        Document* d = open(m_tone10);
        QVERIFY(d);
        const QString path = d->track().s_WAV_File_Path;
        QVERIFY(QFile::rename(path, path + ".away"));
        const auto alert = gui::answerAlert();
        d->OnPopupMenuPlayFromStart();
        QVERIFY(alert->shown);
        QCOMPARE(alert->text, QString("Error"));
        QVERIFY2(alert->informativeText.contains(QFileInfo(path).fileName()),
                 qPrintable(alert->informativeText));
        QCOMPARE(d->m_RecordStatus, 0u);
        QCOMPARE(buttons(d), QString("on on off off on on on on on"));
        QVERIFY(QFile::rename(path + ".away", path));
    }

    // Transport buttons pressed in any order, as fast as possible: the state
    // stays one of the five and the buttons agree with it.
    void randomPressesKeepTheStateMachineWhole() {
        Document* d = open(m_tone10);
        QVERIFY(d);
        QRandomGenerator random(20261122);
        const std::function<void()> presses[] = {[d] { d->OnToolbarPlay(); },
                                                 [d] { d->OnPopupMenuPlayFromStart(); },
                                                 [d] { d->OnPopupMenuPlaySelection(); },
                                                 [d] { d->OnPopupMenuPlayFromCurrentPosition(); },
                                                 [d] { d->OnToolbarPause(); },
                                                 [d] { d->OnToolbarStop(); },
                                                 [d] { d->TimerHandleAudioPlayingRoutine(); },
                                                 [d] { d->togglePlayback(); }};
        for (int i = 0; i < 400; ++i) {
            presses[random.bounded(int(std::size(presses)))]();
            d->popupMenuPlay->hide();
            if (i % 50 == 0)
                QTest::qWait(20);
            const quint64 s = d->m_RecordStatus;
            QVERIFY(s == 0 || s == 3 || s == 4);
            QCOMPARE(d->btnPause->isEnabled(), s == 3);
            QCOMPARE(d->btnStop->isEnabled(), s != 0);
            QCOMPARE(d->btnPlay->isEnabled(), s != 3);
            QCOMPARE(d->timerHandleAudioPlaying.isNull() || !d->timerHandleAudioPlaying->isActive(), s != 3);
        }
        d->OnToolbarStop();
        QCOMPARE(d->m_RecordStatus, 0u);
    }
};

QTEST_MAIN(tst_Playback)
#include "tst_playback.moc"
