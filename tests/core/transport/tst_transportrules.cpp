#include "transport/TransportRules.h"

#include <QTest>

namespace {
// The buttons a step sets, written as the table has them: on, off or – for
// Play, Record, Pause, Stop, Sound preferences, Zoom +, Zoom −, Save, Tools,
// then Copy, Cut, Delete.
QString row(const TransportButtons& b) {
    QStringList cells;
    for (const std::optional<bool>& on : {b.play, b.record, b.pause, b.stop, b.soundPreferences, b.zoomPlus,
                                          b.zoomMinus, b.save, b.tools, b.copy, b.cut, b.remove})
        cells << (on ? (*on ? "on" : "off") : "-");
    return cells.join(' ');
}

// Ticks the clock until a selection playback stops (or 100 ticks), returning
// the marker's positions after each tick.
QList<float> tickAlong(PlayingClock& clock, float selectionEnd, float length, int ticks,
                       bool* stopped = nullptr) {
    QList<float> positions;
    for (int i = 0; i < ticks; ++i) {
        const TickOutcome out = playingTick(clock, selectionEnd, length);
        if (out.stop) {
            if (stopped)
                *stopped = true;
            break;
        }
        clock = out.clock;
        positions << clock.f_Audio_Position;
    }
    return positions;
}
} // namespace

class tst_TransportRules : public QObject {
    Q_OBJECT
private slots:
    void buttonTable_data() {
        QTest::addColumn<int>("step");
        QTest::addColumn<QString>("expected");
        QTest::newRow("play start") << int(TransportStep::PlayStart)
                                    << "off off on on off off off - off - - -";
        QTest::newRow("pause playback") << int(TransportStep::PausePlayback) << "on - off on - - - - - - - -";
        QTest::newRow("resume") << int(TransportStep::Resume) << "off - on on - - - - - - - -";
        QTest::newRow("stop playback")
            << int(TransportStep::StopPlayback) << "on on off off on on on on on - - -";
        QTest::newRow("record") << int(TransportStep::RecordStart)
                                << "off off on on off off off off off - - -";
        QTest::newRow("pause recording")
            << int(TransportStep::PauseRecording) << "- on off on - - - - - - - -";
        QTest::newRow("stop recording")
            << int(TransportStep::StopRecording) << "on on off off on on on on on on on on";
    }
    void buttonTable() {
        QFETCH(int, step);
        QFETCH(QString, expected);
        QCOMPARE(row(buttonsAfter(TransportStep(step))), expected);
    }

    void playChoicesStartOnlyWhileIdleOrPaused() {
        QVERIFY(mayStartPlaying(StatusIdle));
        QVERIFY(!mayStartPlaying(StatusRecording));
        QVERIFY(!mayStartPlaying(StatusRecordingPaused));
        QVERIFY(!mayStartPlaying(StatusPlaying));
        QVERIFY(mayStartPlaying(StatusPlaybackPaused));
    }

    void startPositions() {
        const PlayStart fromStart = playStart(PlayFrom::Start, 7.5f, 10, 60);
        QCOMPARE(fromStart.position, 0.0f);
        QCOMPARE(fromStart.playerTime, 0.0);
        const PlayStart fromCurrent = playStart(PlayFrom::Current, 7.5f, 10, 60);
        QCOMPARE(fromCurrent.position, 7.5f);
        QCOMPARE(fromCurrent.playerTime, 7.5);
        const PlayStart selection = playStart(PlayFrom::Selection, 7.5f, 10, 60);
        QCOMPARE(selection.position, 6.0f);
        QCOMPARE(selection.playerTime, 6.0);
        // Single precision, as the markers are kept.
        QCOMPARE(playStart(PlayFrom::Selection, 0, 33.3f, 10).position, 33.3f * 10.0f / 100);
    }

    // From the start of a 10 s track the marker reads 1, 2, … and goes on past
    // the end until the user stops.
    void fromTheStartTheMarkerKeepsGoing() {
        PlayingClock clock{0, 0, false};
        const QList<float> positions = tickAlong(clock, 60, 10, 14);
        QCOMPARE(positions, QList<float>({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14}));
        QCOMPARE(clock.u_Last_Position, quint64(14));
    }

    // A 10–20 % selection of a 60 s track starts at 6.0 s and stops on the tick
    // at which the position has reached 12.0 s.
    void aSelectionStopsAtItsEnd() {
        PlayingClock clock{playStart(PlayFrom::Selection, 0, 10, 60).position, 0, true};
        bool stopped = false;
        const QList<float> positions = tickAlong(clock, 20, 60, 100, &stopped);
        QVERIFY(stopped);
        QCOMPARE(positions, QList<float>({7, 8, 9, 10, 11, 12}));
        // The stopping tick leaves the marker where it was.
        const TickOutcome last = playingTick(clock, 20, 60);
        QVERIFY(last.stop);
        QCOMPARE(last.clock.f_Audio_Position, 12.0f);
    }

    void theFirstTickNeverSeeks() {
        const TickOutcome first = playingTick({3.25f, 0, false}, 100, 60);
        QVERIFY(!first.seekTo);
        QCOMPARE(first.clock.f_Audio_Position, 4.25f);
        QCOMPARE(first.clock.u_Last_Position, quint64(4));
        // Below one second the last position stays 0, so no tick seeks.
        const TickOutcome early = playingTick({-0.5f, 0, false}, 100, 60);
        QVERIFY(!early.seekTo);
        QCOMPARE(early.clock.u_Last_Position, quint64(0));
    }

    // A click moves the marker; the next tick makes the player follow it.
    void aClickIsFollowedOnTheNextTick() {
        PlayingClock clock{0, 0, false};
        tickAlong(clock, 100, 60, 3); // at 3 s
        QVERIFY(!playingTick(clock, 100, 60).seekTo);
        clock.f_Audio_Position = 41.0f; // the click
        const TickOutcome tick = playingTick(clock, 100, 60);
        QCOMPARE(tick.seekTo, std::optional<double>(41.0));
        QCOMPARE(tick.clock.f_Audio_Position, 42.0f);
        QCOMPARE(tick.clock.u_Last_Position, quint64(42));
        QVERIFY(!playingTick(tick.clock, 100, 60).seekTo);
    }

    // Started at a fraction, the marker never equals its whole seconds: every
    // tick seeks the player to the marker.
    void aFractionalStartSeeksOnEveryTick() {
        PlayingClock clock{2.5f, 0, false};
        clock = playingTick(clock, 100, 60).clock;
        for (int i = 0; i < 5; ++i) {
            const TickOutcome tick = playingTick(clock, 100, 60);
            QCOMPARE(tick.seekTo, std::optional<double>(clock.f_Audio_Position));
            clock = tick.clock;
        }
        QCOMPARE(clock.f_Audio_Position, 8.5f);
    }
};

QTEST_GUILESS_MAIN(tst_TransportRules)
#include "tst_transportrules.moc"
