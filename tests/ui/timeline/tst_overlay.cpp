#include "timeline/OverlayGeometry.h"
#include "timeline/View_Audio_Wave.h"
#include "track/Track.h"

#include <QImage>
#include <QTest>
#include <cmath>
#include <limits>

namespace {
constexpr int W = 1000;
constexpr int H = 200;

// A loaded 10-second overlay, 1000 × 200, painted once so that it knows its width.
struct Overlay {
    Track track;
    View_Audio_Wave view{track};
    Overlay() {
        view.resize(W, H);
        view.b_Audio_Loaded = true;
        track.f_Audio_Length = 10.0f;
        image();
    }
    QImage image() { return view.grab().toImage(); }
    // Mouse positions in the view's upward coordinates.
    static QPoint at(double x, double y) { return QPoint(int(x), int(H - y)); }
    void press(double x, double y) { QTest::mousePress(&view, Qt::LeftButton, {}, at(x, y)); }
    void drag(double x, double y) {
        QMouseEvent move(QEvent::MouseMove, at(x, y), view.mapToGlobal(at(x, y)), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&view, &move);
    }
    void release(double x, double y) { QTest::mouseRelease(&view, Qt::LeftButton, {}, at(x, y)); }
};

bool isBlack(QRgb c) {
    return qRed(c) < 10 && qGreen(c) < 10 && qBlue(c) < 10;
}
bool isWhite(QRgb c) {
    return qRed(c) > 245 && qGreen(c) > 245 && qBlue(c) > 245;
}
bool isRed(QRgb c) {
    return qRed(c) > 180 && qGreen(c) < 60 && qBlue(c) < 60;
}
} // namespace

class tst_Overlay : public QObject {
    Q_OBJECT
private slots:
    void notLoadedShowsTheNoticeAndIgnoresTheMouse() {
        Track track;
        View_Audio_Wave view(track);
        view.resize(W, H);
        const QImage image = view.grab().toImage();
        int red = 0, minX = W, maxY = 0;
        for (int y = 0; y < H; ++y)
            for (int x = 0; x < W; ++x)
                if (isRed(image.pixel(x, y))) {
                    ++red;
                    minX = std::min(minX, x);
                    maxY = std::max(maxY, y);
                }
        QVERIFY(red > 100);
        QVERIFY2(minX >= W / 20 && minX <= W / 20 + 4, qPrintable(QString::number(minX)));
        QVERIFY2(maxY <= H - H / 6 + 1 && maxY >= H - H / 6 - 3,
                 qPrintable(QString::number(maxY))); // baseline
        QVERIFY(isBlack(image.pixel(W - 5, 5)));
        QTest::mousePress(&view, Qt::LeftButton, {}, QPoint(400, 100));
        QTest::mouseMove(&view, QPoint(10, 100));
        QTest::mouseRelease(&view, Qt::LeftButton, {}, QPoint(10, 100));
        QCOMPARE(track.f_Audio_Position, 0.0f);
        QCOMPARE(track.f_Selection_Start, 40.0f);
        QVERIFY(!view.b_Mouse_Down_Start);
    }

    void recordingIsPlainBlack() {
        Overlay o;
        o.view.b_Recording = true;
        const QImage image = o.image();
        for (int y = 0; y < H; y += 7)
            for (int x = 0; x < W; x += 7)
                QVERIFY(isBlack(image.pixel(x, y)));
    }

    void theFirstPaintLearnsTheWidthAndDrawsBandHandlesAndMarker() {
        Track track;
        View_Audio_Wave view(track);
        view.resize(W, H);
        view.b_Audio_Loaded = true;
        track.f_Audio_Length = 10.0f;
        track.f_Audio_Position = 2.5f;
        QCOMPARE(view.f_AudioPlot_Width, 0.0f);
        const QImage image = view.grab().toImage();
        QCOMPARE(view.f_AudioPlot_Width, float(W));
        QCOMPARE(view.rect_Selection_Start, QRectF(390, 90, 20, 20));
        QCOMPARE(view.rect_Selection_End, QRectF(590, 90, 20, 20));
        QCOMPARE(view.rect_Position_Top, QRectF(240, -10, 20, 20));
        QCOMPARE(view.rect_Position_Bottom, QRectF(240, 190, 20, 20));
        QVERIFY(isWhite(image.pixel(500, 20)));  // band
        QVERIFY(isBlack(image.pixel(300, 20)));  // outside it
        QVERIFY(isWhite(image.pixel(392, 100))); // the start handle's disc pokes out of the band
        QVERIFY(isBlack(image.pixel(392, 80)));
        QVERIFY(isBlack(image.pixel(388, 100)));
        QVERIFY(isRed(image.pixel(250, 100))); // the 2-point bar
        QVERIFY(isRed(image.pixel(249, 100)));
        QVERIFY(isBlack(image.pixel(247, 100)));
        QVERIFY(isRed(image.pixel(245, 2))); // half discs at both edges
        QVERIFY(isRed(image.pixel(245, H - 3)));
        QVERIFY(isBlack(image.pixel(241, 12)));
    }

    void noMarkerWithoutALength() {
        Overlay o;
        o.track.f_Audio_Length = 0.0f;
        const QRectF before = o.view.rect_Position_Top;
        const QImage image = o.image();
        QVERIFY(isBlack(image.pixel(1, 100)));
        QCOMPARE(o.view.rect_Position_Top, before);
        o.press(300, 20);
        QCOMPARE(o.track.f_Audio_Position, 0.0f);
    }

    void draggingTheStartPastTheEndSwapsOnRelease() {
        Overlay o;
        o.press(400, 100);
        QVERIFY(o.view.b_Mouse_Down_Start);
        o.drag(700, 100);
        QCOMPARE(o.track.f_Selection_Start, 70.0f);
        QCOMPARE(o.track.f_Selection_End, 60.0f); // start > end while dragging
        const QImage during = o.image();
        QVERIFY(isWhite(during.pixel(650, 20))); // the band still lies between them
        QVERIFY(isBlack(during.pixel(550, 20)));
        o.release(700, 100);
        QVERIFY(!o.view.b_Mouse_Down_Start);
        QCOMPARE(o.track.f_Selection_Start, 60.0f);
        QCOMPARE(o.track.f_Selection_End, 70.0f);
    }

    void draggingPastEitherEdgeStoresValuesBeyondTheTrack() {
        Overlay o;
        o.press(600, 100);
        QVERIFY(o.view.b_Mouse_Down_End);
        o.drag(1100, 100);
        QCOMPARE(o.track.f_Selection_End, 110.0f);
        o.release(1100, 100);
        o.press(400, 100);
        o.drag(-50, 100);
        QCOMPARE(o.track.f_Selection_Start, -5.0f);
        o.release(-50, 100);
        QCOMPARE(o.track.f_Selection_Start, -5.0f);
        QCOMPARE(o.track.f_Selection_End, 110.0f);
    }

    void handleEdgesThatGrabAndThoseThatDoNot() {
        {
            Overlay o; // left edge of the start handle's square
            o.press(390, 100);
            QVERIFY(o.view.b_Mouse_Down_Start);
        }
        {
            Overlay o; // bottom edge
            o.press(400, 90);
            QVERIFY(o.view.b_Mouse_Down_Start);
        }
        {
            Overlay o; // right edge: no grab, the position moves instead
            o.press(410, 100);
            QVERIFY(!o.view.b_Mouse_Down_Start);
            QCOMPARE(o.track.f_Audio_Position, 4.1f);
        }
        {
            Overlay o; // top edge
            o.press(400, 110);
            QVERIFY(!o.view.b_Mouse_Down_Start);
            QCOMPARE(o.track.f_Audio_Position, 4.0f);
        }
        {
            Overlay o; // where the handles overlap, the start handle wins
            o.track.f_Selection_End = 41.0f;
            o.image();
            o.press(405, 100);
            QVERIFY(o.view.b_Mouse_Down_Start);
            QVERIFY(!o.view.b_Mouse_Down_End);
        }
    }

    void aPressInTheRedCircleMovesThePosition() {
        Overlay o;
        o.track.f_Audio_Position = 5.0f;
        o.image();
        QCOMPARE(o.view.rect_Position_Bottom, QRectF(490, 190, 20, 20));
        o.press(495, 195);
        QCOMPARE(o.track.f_Audio_Position, 4.95f);
        QVERIFY(!o.view.b_Mouse_Down_Start && !o.view.b_Mouse_Down_End);
    }

    void aPressElsewhereSetsThePositionFromX() {
        Overlay o;
        o.press(123, 20);
        QCOMPARE(o.track.f_Audio_Position, overlay::positionAt(123, 1000.0f, 10.0f));
        QCOMPARE(o.track.f_Audio_Position, 1.23f);
        const QImage image = o.image();
        QVERIFY(isRed(image.pixel(123, 60)));
    }

    void draggingAcrossTheWaveformSelects_data() {
        QTest::addColumn<double>("from");
        QTest::addColumn<double>("to");
        QTest::newRow("rightwards") << 200.0 << 350.0;
        QTest::newRow("leftwards") << 350.0 << 200.0;
    }
    void draggingAcrossTheWaveformSelects() {
        // Press at 20 %, drag to 35 % (or the other way): 20–35 % selected,
        // the position at its start.
        QFETCH(double, from);
        QFETCH(double, to);
        Overlay o;
        o.press(from, 100);
        QCOMPARE(o.track.f_Audio_Position, float(from) / 100.0f);
        o.drag((from + to) / 2, 100);
        o.drag(to, 100);
        o.release(to, 100);
        QCOMPARE(o.track.f_Selection_Start, 20.0f);
        QCOMPARE(o.track.f_Selection_End, 35.0f);
        QCOMPARE(o.track.f_Audio_Position, 2.0f);
        QVERIFY(!o.view.b_Mouse_Down_Start && !o.view.b_Mouse_Down_End);
        // Drawn: the band now lies between 200 and 350.
        const QImage image = o.image();
        QVERIFY(!isBlack(image.pixel(275, 60)));
        QVERIFY(isBlack(image.pixel(450, 60)));
    }

    void aPressThatHardlyMovesOnlySetsThePosition() {
        Overlay o;
        o.press(300, 100);
        o.drag(302, 100);
        o.release(302, 100);
        QCOMPARE(o.track.f_Selection_Start, 40.0f);
        QCOMPARE(o.track.f_Selection_End, 60.0f);
        QCOMPARE(o.track.f_Audio_Position, 3.0f);
        // Moving afterwards without the button selects nothing either.
        o.drag(700, 100);
        QCOMPARE(o.track.f_Selection_End, 60.0f);
    }

    void aDragPastTheEdgesSelectsToTheTrackEnds() {
        Overlay o;
        o.press(500, 100);
        o.drag(1400, 100);
        QCOMPARE(o.track.f_Selection_Start, 50.0f);
        QCOMPARE(o.track.f_Selection_End, 100.0f);
        o.drag(-300, 100);
        o.release(-300, 100);
        QCOMPARE(o.track.f_Selection_Start, 0.0f);
        QCOMPARE(o.track.f_Selection_End, 50.0f);
        QCOMPARE(o.track.f_Audio_Position, 0.0f);
    }

    void shiftAndAClickExtendTheSelection() {
        Overlay o; // 40–60 %
        o.track.f_Audio_Position = 1.0f;
        QTest::mouseClick(&o.view, Qt::LeftButton, Qt::ShiftModifier, Overlay::at(800, 100));
        QCOMPARE(o.track.f_Selection_Start, 40.0f);
        QCOMPARE(o.track.f_Selection_End, 80.0f);
        QTest::mouseClick(&o.view, Qt::LeftButton, Qt::ShiftModifier, Overlay::at(100, 100));
        QCOMPARE(o.track.f_Selection_Start, 10.0f);
        QCOMPARE(o.track.f_Selection_End, 80.0f);
        // Inside the selection the nearer edge moves.
        QTest::mouseClick(&o.view, Qt::LeftButton, Qt::ShiftModifier, Overlay::at(700, 100));
        QCOMPARE(o.track.f_Selection_End, 70.0f);
        QCOMPARE(o.track.f_Selection_Start, 10.0f);
        QCOMPARE(o.track.f_Audio_Position, 1.0f);
    }

    void aResizeLeavesTheWidthUntilTheNextZoom() {
        Overlay o;
        o.view.resize(1500, H);
        o.image();
        QCOMPARE(o.view.f_AudioPlot_Width, 1000.0f);
        QCOMPARE(o.view.rect_Selection_Start, QRectF(390, 90, 20, 20));
        o.press(500, 20);
        QCOMPARE(o.track.f_Audio_Position, 5.0f);
    }

    void aPressBeforeTheFirstPaintStoresWhatTheDivisionGives() {
        Track track;
        View_Audio_Wave view(track);
        view.resize(W, H);
        view.b_Audio_Loaded = true;
        track.f_Audio_Length = 10.0f;
        QTest::mousePress(&view, Qt::LeftButton, {}, QPoint(300, 100));
        QVERIFY(std::isinf(track.f_Audio_Position));
        QTest::mouseRelease(&view, Qt::LeftButton, {}, QPoint(300, 100));
        QTest::mousePress(&view, Qt::LeftButton, {}, QPoint(0, 100));
        QVERIFY(std::isnan(track.f_Audio_Position));
        QVERIFY(!view.grab().toImage().isNull()); // drawing after it does not fail
        QCOMPARE(view.f_AudioPlot_Width, float(W));
    }

    void noValueBreaksTheDrawing_data() {
        QTest::addColumn<float>("value");
        const float inf = std::numeric_limits<float>::infinity();
        QTest::newRow("0") << 0.0f;
        QTest::newRow("negative") << -250.0f;
        QTest::newRow("above 100") << 1.0e6f;
        QTest::newRow("NaN") << std::numeric_limits<float>::quiet_NaN();
        QTest::newRow("+inf") << inf;
        QTest::newRow("-inf") << -inf;
        QTest::newRow("huge") << 3.0e38f;
    }
    void noValueBreaksTheDrawing() {
        QFETCH(float, value);
        for (int field = 0; field < 5; ++field) {
            Overlay o;
            float* targets[] = {&o.track.f_Selection_Start, &o.track.f_Selection_End,
                                &o.view.f_AudioPlot_Width, &o.track.f_Audio_Position,
                                &o.track.f_Audio_Length};
            *targets[field] = value;
            QVERIFY(!o.image().isNull());
            o.press(500, 50);
            o.drag(600, 50);
            o.release(600, 50);
            QVERIFY(!o.image().isNull());
        }
    }
};

QTEST_MAIN(tst_Overlay)
#include "tst_overlay.moc"
