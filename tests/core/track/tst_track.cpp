#include "track/Track.h"

#include <QSignalSpy>
#include <QTest>

class tst_Track : public QObject {
    Q_OBJECT
private slots:
    void aNewTrackSelectsFortyToSixtyPercentAtPositionZero() {
        const Track track;
        QCOMPARE(track.f_Selection_Start, 40.0f);
        QCOMPARE(track.f_Selection_End, 60.0f);
        QCOMPARE(track.f_Audio_Position, 0.0f);
        QCOMPARE(track.f_Audio_Length, 0.0f);
        QCOMPARE(track.i_Audio_Duration_Seconds, qint64(0));
        QVERIFY(track.history().array_WAV_Files().isEmpty());
    }

    void everyMoveOfTheMarkersIsTold() {
        Track track;
        QSignalSpy changed(&track, &Track::changed);
        track.setSelection(10, 20);
        QCOMPARE(track.f_Selection_Start, 10.0f);
        QCOMPARE(track.f_Selection_End, 20.0f);
        track.setSelectionStart(5);
        track.setSelectionEnd(95);
        QCOMPARE(track.f_Selection_Start, 5.0f);
        QCOMPARE(track.f_Selection_End, 95.0f);
        track.setPosition(3.5f);
        QCOMPARE(track.f_Audio_Position, 3.5f);
        QCOMPARE(changed.size(), 4);
    }

    // One call sets the length everywhere it is read, and starts at 0 again.
    void aNewDurationSetsTheLengthAndRewinds() {
        Track track;
        track.setPosition(7);
        QSignalSpy changed(&track, &Track::changed);
        track.setDuration(12);
        QCOMPARE(track.i_Audio_Duration_Seconds, qint64(12));
        QCOMPARE(track.f_Audio_Length, 12.0f);
        QCOMPARE(track.f_Audio_Position, 0.0f);
        QCOMPARE(changed.size(), 1);
    }

    // The time strings follow the markers at the moment they are asked for.
    void theSegmentStringsAreComputedFromTheMarkersAsTheyStand() {
        Track track;
        track.setDuration(60);
        track.setPosition(15);
        SegmentVariables v = track.Calculate_Segment_Variables();
        QCOMPARE(v.sStart, QString("00:00:00.00"));
        QCOMPARE(v.sStartSelection, QString("00:00:24.00"));
        QCOMPARE(v.sEndSelection, QString("00:00:36.00"));
        QCOMPARE(v.sDurationSelection, QString("00:00:12.00"));
        QCOMPARE(v.sCurrentPosition, QString("00:00:15.00"));
        QCOMPARE(v.f_StartSelection, 24.0f);
        track.setSelection(0, 50);
        v = track.Calculate_Segment_Variables();
        QCOMPARE(v.sEndSelection, QString("00:00:30.00"));
        QCOMPARE(v.sDurationSegmentAfterStartSelection, QString("00:01:00.00"));
    }
};

QTEST_MAIN(tst_Track)
#include "tst_track.moc"
