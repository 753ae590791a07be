#include "timeline/ZoomRules.h"

#include <QTest>
#include <cmath>

// Zooming to a selection and around the pointer, in pixels of a view 1000 wide.
class tst_ZoomRules : public QObject {
    Q_OBJECT

private slots:
    void theSelectionFillsAtLeastHalfTheViewAndFits() {
        QCOMPARE(zoom::factorForSelection(40, 45, 1000), 10); // 5 %: half the view at 10
        QCOMPARE(zoom::factorForSelection(40, 44, 1000), 13); // 4 %: 12 gives 48 %, 13 gives 52 %
        QCOMPARE(zoom::factorForSelection(0, 50, 1000), 1);
        QCOMPARE(zoom::factorForSelection(0, 100, 1000), 1);
        QCOMPARE(zoom::factorForSelection(20, 40, 1000), 3); // 20 %: 2 gives 40 %, 3 gives 60 %
        for (float width : {0.7f, 3.3f, 12.5f, 49.9f, 50.1f, 99.0f}) {
            const int factor = zoom::factorForSelection(10, 10 + width, 1000);
            QVERIFY(factor * width >= 50.0f - 1e-3f);
            QVERIFY(factor * width <= 100.0f + 1e-3f); // seen whole
            QVERIFY(factor == 1 || (factor - 1) * width < 50.0f);
        }
        QCOMPARE(zoom::factorForSelection(30, 30, 1000), 0);
        QCOMPARE(zoom::factorForSelection(50, 30, 1000), 0);
        // A tiny selection stops at the widest content a widget can hold.
        QCOMPARE(zoom::factorForSelection(10, 10.000001f, 1000), zoom::largestFactor(1000));
        QCOMPARE(zoom::largestFactor(1000), 16000);
        QCOMPARE(zoom::largestFactor(0), zoom::WidestContent);
    }

    void theSelectionIsCentredWithinTheContent() {
        // 40–45 % of 10,000: 4000–4500, centred in 1000: from 3750.
        QCOMPARE(zoom::offsetCentring(40, 45, 10000, 1000), 3750);
        QCOMPARE(zoom::offsetCentring(0, 2, 10000, 1000), 0);       // not before the start
        QCOMPARE(zoom::offsetCentring(98, 100, 10000, 1000), 9000); // nor past the end
        QCOMPARE(zoom::offsetCentring(40, 45, 800, 1000), 0);       // content narrower than the view
    }

    void thePointKeptUnderThePointer() {
        // A third of the content under x = 300, now 3000 wide: offset 700.
        QCOMPARE(zoom::offsetKeeping(1.0 / 3.0, 300, 3000, 1000), 700);
        QCOMPARE(zoom::offsetKeeping(0.05, 300, 3000, 1000), 0);    // cannot scroll before the start
        QCOMPARE(zoom::offsetKeeping(0.99, 300, 3000, 1000), 2000); // nor past the end
        QCOMPARE(zoom::offsetKeeping(0.5, 500, 1000, 1000), 0);     // zoomed out to one width
    }

    void theViewPagesWhenTheMarkerLeavesIt() {
        // 4000 wide, 1000 in sight from 0: the marker at 999 is in sight, at
        // 1000 it is not and the next page begins there.
        QCOMPARE(zoom::offsetFollowing(999.5, 0, 4000, 1000), 0);
        QCOMPARE(zoom::offsetFollowing(1000, 0, 4000, 1000), 1000);
        QCOMPARE(zoom::offsetFollowing(2500, 1000, 4000, 1000), 2500);
        QCOMPARE(zoom::offsetFollowing(3900, 1000, 4000, 1000),
                 3000); // the last page ends at the content's end
        QCOMPARE(zoom::offsetFollowing(200, 3000, 4000, 1000), 200); // a jump back (a selection played again)
        QCOMPARE(zoom::offsetFollowing(std::nan(""), 700, 4000, 1000), 700);
    }
};

QTEST_MAIN(tst_ZoomRules)
#include "tst_zoomrules.moc"
