#include "timeline/MarkerKeys.h"

#include <QTest>

// The keyboard's moves of the play position and the selection, on a 10 s track.
class tst_MarkerKeys : public QObject {
    Q_OBJECT

    static Markers after(Markers m, MarkerKey key) { return moveMarkers(m, key, 10); }

private slots:
    void thePlayPositionMovesWithinTheTrack() {
        const Markers at3{3, 20, 50};
        QCOMPARE(after(at3, MarkerKey::ToStart).position, 0.0f);
        QCOMPARE(after(at3, MarkerKey::ToEnd).position, 10.0f);
        QCOMPARE(after(at3, MarkerKey::BackSecond).position, 2.0f);
        QCOMPARE(after(at3, MarkerKey::ForwardSecond).position, 4.0f);
        QCOMPARE(after(at3, MarkerKey::BackTenth).position, 2.0f);
        QCOMPARE(moveMarkers(at3, MarkerKey::ForwardTenth, 60).position, 9.0f);
        QCOMPARE(after({0.5f, 20, 50}, MarkerKey::BackSecond).position, 0.0f);
        QCOMPARE(after({9.5f, 20, 50}, MarkerKey::ForwardSecond).position, 10.0f);
        QCOMPARE(after({9.5f, 20, 50}, MarkerKey::ForwardTenth).position, 10.0f);
        // The selection stays as it was.
        const Markers moved = after(at3, MarkerKey::ForwardSecond);
        QCOMPARE(moved.selectionStart, 20.0f);
        QCOMPARE(moved.selectionEnd, 50.0f);
        // A track of no length keeps everything at 0.
        QCOMPARE(moveMarkers({0, 0, 0}, MarkerKey::ForwardSecond, 0).position, 0.0f);
        QCOMPARE(moveMarkers({0, 0, 0}, MarkerKey::SelectionStartHere, 0).selectionStart, 0.0f);
    }

    void theSelectionEndsFollowTheKeys() {
        const Markers m{7, 20, 50};
        QCOMPARE(after(m, MarkerKey::ExtendSelectionStart).selectionStart, 0.0f);
        QCOMPARE(after(m, MarkerKey::ExtendSelectionStart).selectionEnd, 50.0f);
        QCOMPARE(after(m, MarkerKey::ExtendSelectionEnd).selectionEnd, 100.0f);
        QCOMPARE(after(m, MarkerKey::ExtendSelectionEnd).selectionStart, 20.0f);
        // [ past the end takes the end along; ] before the start takes the start.
        const Markers started = after(m, MarkerKey::SelectionStartHere);
        QCOMPARE(started.selectionStart, 70.0f);
        QCOMPARE(started.selectionEnd, 70.0f);
        const Markers ended = after({1, 20, 50}, MarkerKey::SelectionEndHere);
        QCOMPARE(ended.selectionStart, 10.0f);
        QCOMPARE(ended.selectionEnd, 10.0f);
        const Markers inside = after({3, 20, 50}, MarkerKey::SelectionStartHere);
        QCOMPARE(inside.selectionStart, 30.0f);
        QCOMPARE(inside.selectionEnd, 50.0f);
        QCOMPARE(after({3, 20, 50}, MarkerKey::SelectionStartHere).position, 3.0f);
    }
};

QTEST_MAIN(tst_MarkerKeys)
#include "tst_markerkeys.moc"
