#include "application/AppDelegate.h"
#include "document/Document.h"
#include "support/Fixtures.h"
#include "support/Gui.h"
#include "support/Listening.h"
#include "timeline/View_Audio_Wave.h"
#include "timeline/ZoomActions.h"
#include "transport/SoundPlayer.h"

#include <QAction>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QRandomGenerator>
#include <QScrollArea>
#include <QScrollBar>
#include <QSet>
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
        QVERIFY(d->transportActions().timerHandleAudioPlaying);
        d->transportActions().timerHandleAudioPlaying->stop();
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
        d->transportActions().stopAudio();
        d->transportActions().pauseAudio();
        d->transportActions().OnToolbarStop();
        d->transportActions().OnToolbarPause();
        QCOMPARE(d->transportActions().m_RecordStatus, 0u);
        QCOMPARE(buttons(d), before);
        QVERIFY(!d->transportActions().sound);
        QVERIFY(!d->transportActions().timerHandleAudioPlaying);
    }

    void playPauseResumeStop() {
        Document* d = open(m_tone10);
        QVERIFY(d);
        d->btnSave->setEnabled(false); // play start leaves Save as it is
        d->transportActions().OnPopupMenuPlayFromStart();
        QCOMPARE(d->transportActions().m_RecordStatus, 3u);
        QCOMPARE(buttons(d), QString("off off on on off off off off off"));
        QVERIFY(d->transportActions().timerHandleAudioPlaying &&
                d->transportActions().timerHandleAudioPlaying->isActive());
        QCOMPARE(d->transportActions().timerHandleAudioPlaying->interval(), 1000);
        SoundPlayer* first = d->transportActions().sound.get();
        QVERIFY(first);
        QTRY_VERIFY_WITH_TIMEOUT(first->isPlaying(), 10000);

        // The three choices are refused while playing.
        d->transportActions().OnPopupMenuPlaySelection();
        d->transportActions().OnPopupMenuPlayFromCurrentPosition();
        d->transportActions().OnPopupMenuPlayFromStart();
        QCOMPARE(d->transportActions().sound.get(), first);
        QCOMPARE(d->transportActions().m_RecordStatus, 3u);

        d->transportActions().OnToolbarPause();
        QCOMPARE(d->transportActions().m_RecordStatus, 4u);
        QCOMPARE(buttons(d), QString("on off off on off off off off off"));
        QVERIFY(!d->transportActions().timerHandleAudioPlaying);
        QTRY_VERIFY(!first->isPlaying());
        d->transportActions().pauseAudio(); // ignored while paused
        QCOMPARE(d->transportActions().m_RecordStatus, 4u);

        d->transportActions().OnToolbarPlay(); // resumes: the same player
        QCOMPARE(d->transportActions().m_RecordStatus, 3u);
        QCOMPARE(d->transportActions().sound.get(), first);
        QCOMPARE(buttons(d), QString("off off on on off off off off off"));
        QVERIFY(d->transportActions().timerHandleAudioPlaying &&
                d->transportActions().timerHandleAudioPlaying->isActive());
        QTRY_VERIFY(first->isPlaying());

        d->transportActions().OnToolbarPause();
        d->track().f_Audio_Position = 4.5f;
        d->transportActions().OnPopupMenuPlayFromCurrentPosition(); // a choice restarts a paused playback
        QCOMPARE(d->transportActions().m_RecordStatus, 3u);
        QVERIFY(d->transportActions().sound.get() != first);
        QCOMPARE(d->track().f_Audio_Position, 4.5f);

        d->transportActions().OnToolbarStop();
        QCOMPARE(d->transportActions().m_RecordStatus, 0u);
        QCOMPARE(buttons(d), QString("on on off off on on on on on"));
        QVERIFY(!d->transportActions().timerHandleAudioPlaying);
        QCOMPARE(d->track().f_Audio_Position, 4.5f); // kept
        d->transportActions().stopAudio();
        QCOMPARE(d->transportActions().m_RecordStatus, 0u);
    }

    void theTimerMovesTheMarkerEverySecond() {
        Document* d = open(m_tone10);
        QVERIFY(d);
        d->track().f_Audio_Position = 7;
        d->transportActions().OnPopupMenuPlayFromStart();
        QCOMPARE(d->track().f_Audio_Position, 0.0f);
        QTRY_COMPARE_WITH_TIMEOUT(d->track().f_Audio_Position, 2.0f, 3500);
        d->transportActions().OnToolbarStop();
    }

    void aZoomedViewFollowsTheMarkerUntilTheUserScrolls() {
        Document* d = open(m_track60);
        QVERIFY(d);
        d->resize(900, 400);
        d->show();
        QVERIFY(QTest::qWaitForWindowExposed(d));
        for (int i = 0; i < 3; ++i)
            d->btnZoomPlus->trigger();
        QCOMPARE(d->zoomActions().u_Zoom_Factor, 4u);
        QScrollBar* bar = d->scrollviewAudioPlot->horizontalScrollBar();
        const int visible = d->scrollviewAudioPlot->viewport()->width();
        const int content = d->viewAudioPlot->width();
        QCOMPARE(content, 4 * visible);
        // Where the marker stands in the content, and whether it is in sight.
        const auto markerX = [&] { return double(d->track().f_Audio_Position) / 60.0 * content; };
        const auto inSight = [&] { return markerX() >= bar->value() && markerX() < bar->value() + visible; };
        bar->setValue(0);
        d->transportActions().OnPopupMenuPlayFromStart();
        holdTheTimer(d);
        QList<int> offsets;
        for (int second = 1; second <= 20; ++second) {
            d->transportActions().TimerHandleAudioPlayingRoutine();
            QCOMPARE(d->track().f_Audio_Position, float(second));
            QVERIFY2(inSight(), qPrintable(QString("at %1 s the marker stands at %2, the view shows %3 to %4")
                                               .arg(second)
                                               .arg(markerX())
                                               .arg(bar->value())
                                               .arg(bar->value() + visible)));
            offsets << bar->value();
        }
        // A page a quarter of the track: the view moved once, at 15 s.
        QCOMPARE(offsets.first(), 0);
        QVERIFY(offsets.last() > 0);
        QCOMPARE(QSet<int>(offsets.begin(), offsets.end()).size(), 2);

        // The user scrolls back to the start: the view stays there.
        bar->triggerAction(QAbstractSlider::SliderToMinimum);
        QVERIFY(!d->zoomActions().followsPlayback());
        for (int i = 0; i < 3; ++i)
            d->transportActions().TimerHandleAudioPlayingRoutine();
        QCOMPARE(bar->value(), 0);
        QVERIFY(!inSight());
        // Until the next Play.
        d->transportActions().OnToolbarStop();
        d->transportActions().OnPopupMenuPlayFromCurrentPosition();
        QVERIFY(inSight());
        d->transportActions().OnToolbarStop();
    }

    void fromTheStartPastTheEndUntilStop() {
        Document* d = open(m_tone10);
        QVERIFY(d);
        d->transportActions().OnPopupMenuPlayFromStart();
        holdTheTimer(d);
        QList<float> positions;
        for (int i = 0; i < 14; ++i) {
            d->transportActions().TimerHandleAudioPlayingRoutine();
            positions << d->track().f_Audio_Position;
        }
        QCOMPARE(positions, QList<float>({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14}));
        QCOMPARE(d->transportActions().u_Last_Position, 14u);
        QCOMPARE(d->transportActions().m_RecordStatus, 3u);
        QVERIFY(d->labelPosition->text().contains("00:00:14"));
        d->transportActions().OnToolbarStop();
        QCOMPARE(d->track().f_Audio_Position, 14.0f);
    }

    void aSelectionPlaysFromItsStartAndStopsAtItsEnd() {
        Document* d = open(m_track60);
        QVERIFY(d);
        d->track().f_Selection_Start = 10;
        d->track().f_Selection_End = 20;
        d->transportActions().OnPopupMenuPlaySelection();
        QVERIFY(d->transportActions().b_Play_Selection);
        QCOMPARE(d->track().f_Audio_Position, 6.0f);
        holdTheTimer(d);
        // The player starts where the marker does.
        QTRY_VERIFY_WITH_TIMEOUT(d->transportActions().sound->isPlaying(), 10000);
        QVERIFY2(std::abs(d->transportActions().sound->currentTime() - 6.0) < 0.5,
                 qPrintable(QString::number(d->transportActions().sound->currentTime())));
        QList<float> positions;
        while (d->transportActions().m_RecordStatus == 3 && positions.size() < 20) {
            d->transportActions().TimerHandleAudioPlayingRoutine();
            positions << d->track().f_Audio_Position;
        }
        QCOMPARE(positions, QList<float>({7, 8, 9, 10, 11, 12, 12}));
        QCOMPARE(d->transportActions().m_RecordStatus, 0u);
        QCOMPARE(buttons(d), QString("on on off off on on on on on"));
    }

    void pausedSelectionKeepsItsEnd() {
        Document* d = open(m_track60);
        QVERIFY(d);
        d->track().f_Selection_Start = 10;
        d->track().f_Selection_End = 20;
        d->transportActions().OnPopupMenuPlaySelection();
        holdTheTimer(d);
        for (int i = 0; i < 3; ++i)
            d->transportActions().TimerHandleAudioPlayingRoutine();
        d->transportActions().OnToolbarPause();
        d->transportActions().OnToolbarPlay();
        QVERIFY(d->transportActions().b_Play_Selection);
        QCOMPARE(d->track().f_Audio_Position, 9.0f);
        holdTheTimer(d);
        for (int i = 0; i < 3; ++i)
            d->transportActions().TimerHandleAudioPlayingRoutine();
        QCOMPARE(d->transportActions().m_RecordStatus, 3u);
        d->transportActions().TimerHandleAudioPlayingRoutine(); // at 12.0: the end
        QCOMPARE(d->transportActions().m_RecordStatus, 0u);
        QCOMPARE(d->track().f_Audio_Position, 12.0f);
    }

    void pauseThenStopKeepsTheMarker() {
        Document* d = open(m_tone10);
        QVERIFY(d);
        d->transportActions().OnPopupMenuPlayFromStart();
        holdTheTimer(d);
        d->transportActions().TimerHandleAudioPlayingRoutine();
        d->transportActions().TimerHandleAudioPlayingRoutine();
        d->transportActions().OnToolbarPause();
        d->transportActions().OnToolbarStop();
        QCOMPARE(d->transportActions().m_RecordStatus, 0u);
        QCOMPARE(d->track().f_Audio_Position, 2.0f);
        d->transportActions().OnPopupMenuPlayFromCurrentPosition();
        QCOMPARE(d->track().f_Audio_Position, 2.0f);
        QTRY_VERIFY_WITH_TIMEOUT(std::abs(d->transportActions().sound->currentTime() - 2.0) < 0.5, 10000);
        d->transportActions().OnToolbarStop();
    }

    // A click moves the marker at once; the player follows on the next tick.
    void aClickDuringPlaybackIsFollowed() {
        Document* d = open(m_track60);
        QVERIFY(d);
        d->show();
        QVERIFY(QTest::qWaitForWindowExposed(d));
        d->transportActions().OnPopupMenuPlayFromStart();
        holdTheTimer(d);
        for (int i = 0; i < 3; ++i)
            d->transportActions().TimerHandleAudioPlayingRoutine();
        QTRY_VERIFY_WITH_TIMEOUT(d->transportActions().sound->isPlaying(), 10000);
        View_Audio_Wave* view = d->viewAudioPlot;
        const QPoint at(int(view->width() * 0.8), view->height() / 2);
        QTest::mousePress(view, Qt::LeftButton, {}, at);
        QTest::mouseRelease(view, Qt::LeftButton, {}, at);
        const float clicked = d->track().f_Audio_Position;
        QVERIFY2(std::abs(clicked - 48) < 2, qPrintable(QString::number(clicked)));
        QVERIFY(d->transportActions().sound->currentTime() < 10);
        d->transportActions().TimerHandleAudioPlayingRoutine();
        QTRY_VERIFY_WITH_TIMEOUT(std::abs(d->transportActions().sound->currentTime() - clicked) < 0.5, 5000);
        QCOMPARE(d->track().f_Audio_Position, clicked + 1);
        d->transportActions().OnToolbarStop();
    }

    void thePlayButtonOffersThreeChoices() {
        Document* d = open(m_tone10);
        QVERIFY(d);
        d->show();
        QVERIFY(QTest::qWaitForWindowExposed(d));
        d->transportActions().OnToolbarPlay();
        QTRY_VERIFY(d->transportActions().popupMenuPlay->isVisible());
        QCOMPARE(d->transportActions().popupMenuPlay->actions().size(), 3);
        d->transportActions().popupMenuPlay->hide();
        QCOMPARE(d->transportActions().m_RecordStatus, 0u);
        d->transportActions().popupMenuPlay->actions().at(2)->trigger();
        QVERIFY(d->transportActions().b_Play_Selection);
        QCOMPARE(d->transportActions().m_RecordStatus, 3u);
        d->transportActions().OnToolbarStop();
        d->transportActions().popupMenuPlay->actions().at(0)->trigger();
        QVERIFY(!d->transportActions().b_Play_Selection);
        QCOMPARE(d->track().f_Audio_Position, 0.0f);
        d->transportActions().OnToolbarStop();
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
        QCOMPARE(d->transportActions().m_RecordStatus, 3u);
        QVERIFY(!d->transportActions().b_Play_Selection);
        QCOMPARE(d->track().f_Audio_Position, 3.0f);
        QTest::keyClick(d, Qt::Key_Space);
        QCOMPARE(d->transportActions().m_RecordStatus, 4u);
        QTest::keyClick(d, Qt::Key_Space);
        QCOMPARE(d->transportActions().m_RecordStatus, 3u);
        d->transportActions().OnToolbarStop();
    }

    void theSoundIsTheTrack() {
        Document* d = open(m_tone10);
        QVERIFY(d);
        d->transportActions().OnPopupMenuPlayFromStart();
        const std::vector<short> heard = listening::hear(1000);
        d->transportActions().OnToolbarStop();
        QVERIFY2(!heard.empty(), "nothing was heard");
        QVERIFY2(listening::level(heard) > 0.3, qPrintable(QString::number(listening::level(heard))));
        const double pitch = listening::frequency(heard);
        QVERIFY2(std::abs(pitch - 1000) < 15, qPrintable(QString::number(pitch)));
    }

    void aSeekIsHeard() {
        Document* d = open(m_halves); // 440 Hz for 5 s, then 880 Hz
        QVERIFY(d);
        d->transportActions().OnPopupMenuPlayFromStart();
        const std::vector<short> before = listening::hear(500);
        QTRY_VERIFY_WITH_TIMEOUT(d->transportActions().u_Last_Position >= 1, 3000);
        QVERIFY(d->transportActions().u_Last_Position < 4);
        d->track().f_Audio_Position = 6; // as a click would
        const quint64 ticked = d->transportActions().u_Last_Position;
        QTRY_VERIFY_WITH_TIMEOUT(d->transportActions().u_Last_Position != ticked,
                                 3000); // the next tick seeks
        QTest::qWait(300);              // what was on its way before the seek has been played
        const std::vector<short> after = listening::hear(500);
        d->transportActions().OnToolbarStop();
        QVERIFY2(std::abs(listening::frequency(before) - 440) < 10,
                 qPrintable(QString::number(listening::frequency(before))));
        QVERIFY2(std::abs(listening::frequency(after) - 880) < 15,
                 qPrintable(QString::number(listening::frequency(after))));
    }

    void closingTheWindowStopsTheSound() {
        Document* d = open(m_tone10);
        QVERIFY(d);
        d->show();
        d->transportActions().OnPopupMenuPlayFromStart();
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
        d->transportActions().OnPopupMenuPlayFromStart();
        QVERIFY(alert->shown);
        QCOMPARE(alert->text, QString("Error"));
        QVERIFY2(alert->informativeText.contains(QFileInfo(path).fileName()),
                 qPrintable(alert->informativeText));
        QCOMPARE(d->transportActions().m_RecordStatus, 0u);
        QCOMPARE(buttons(d), QString("on on off off on on on on on"));
        QVERIFY(QFile::rename(path + ".away", path));
    }

    // Transport buttons pressed in any order, as fast as possible: the state
    // stays one of the five and the buttons agree with it.
    void randomPressesKeepTheStateMachineWhole() {
        Document* d = open(m_tone10);
        QVERIFY(d);
        QRandomGenerator random(20261122);
        const std::function<void()> presses[] = {
            [d] { d->transportActions().OnToolbarPlay(); },
            [d] { d->transportActions().OnPopupMenuPlayFromStart(); },
            [d] { d->transportActions().OnPopupMenuPlaySelection(); },
            [d] { d->transportActions().OnPopupMenuPlayFromCurrentPosition(); },
            [d] { d->transportActions().OnToolbarPause(); },
            [d] { d->transportActions().OnToolbarStop(); },
            [d] { d->transportActions().TimerHandleAudioPlayingRoutine(); },
            [d] { d->togglePlayback(); }};
        for (int i = 0; i < 400; ++i) {
            presses[random.bounded(int(std::size(presses)))]();
            d->transportActions().popupMenuPlay->hide();
            if (i % 50 == 0)
                QTest::qWait(20);
            const quint64 s = d->transportActions().m_RecordStatus;
            QVERIFY(s == 0 || s == 3 || s == 4);
            QCOMPARE(d->btnPause->isEnabled(), s == 3);
            QCOMPARE(d->btnStop->isEnabled(), s != 0);
            QCOMPARE(d->btnPlay->isEnabled(), s != 3);
            QCOMPARE(d->transportActions().timerHandleAudioPlaying.isNull() ||
                         !d->transportActions().timerHandleAudioPlaying->isActive(),
                     s != 3);
        }
        d->transportActions().OnToolbarStop();
        QCOMPARE(d->transportActions().m_RecordStatus, 0u);
    }
};

QTEST_MAIN(tst_Playback)
#include "tst_playback.moc"
