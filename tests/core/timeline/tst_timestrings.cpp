#include "timeline/TimeStrings.h"

#include <QTest>
#include <cmath>
#include <limits>

class tst_TimeStrings : public QObject {
    Q_OBJECT
private slots:
    void examples_data() {
        QTest::addColumn<float>("seconds");
        QTest::addColumn<QString>("text");
        QTest::newRow("3725.678") << 3725.678f << "01:02:05.67";
        QTest::newRow("59.999 truncates") << 59.999f << "00:00:59.99";
        QTest::newRow("60") << 60.0f << "00:01:00.00";
        QTest::newRow("3600") << 3600.0f << "01:00:00.00";
        QTest::newRow("1.15") << 1.15f << "00:00:01.14";
        QTest::newRow("2.3") << 2.3f << "00:00:02.29";
        QTest::newRow("3.14") << 3.14f << "00:00:03.14";
        QTest::newRow("-1.5") << -1.5f << "00:00:-1.00";
        QTest::newRow("100 hours") << 360000.0f << "100:00:00.00";
        QTest::newRow("0") << 0.0f << "00:00:00.00";
        QTest::newRow("10.5") << 10.5f << "00:00:10.50";
        QTest::newRow("-0.5") << -0.5f << "00:00:00.00";
    }
    void examples() {
        QFETCH(float, seconds);
        QFETCH(QString, text);
        QCOMPARE(timeString(seconds), text);
    }

    void truncationFollowsTheHardwareForEveryInput() {
        QCOMPARE(truncateToUnsigned(0.0f), 0u);
        QCOMPARE(truncateToUnsigned(2.999f), 2u);
        QCOMPARE(truncateToUnsigned(-0.75f), 0u);
        QCOMPARE(truncateToUnsigned(-1.5f), std::numeric_limits<std::uint64_t>::max());
        QCOMPARE(truncateToUnsigned(-2.0f), std::numeric_limits<std::uint64_t>::max() - 1);
        QCOMPARE(truncateToUnsigned(9223372036854775808.0f), std::uint64_t(1) << 63);
        QCOMPARE(truncateToUnsigned(1.0e19f), std::uint64_t(1.0e19f));
        QCOMPARE(truncateToUnsigned(1.0e20f), 0u);
        QCOMPARE(truncateToUnsigned(-1.0e21f), std::uint64_t(1) << 63);
        QCOMPARE(truncateToUnsigned(std::numeric_limits<float>::quiet_NaN()), std::uint64_t(1) << 63);
        QCOMPARE(truncateToUnsigned(std::numeric_limits<float>::infinity()), 0u);
        QCOMPARE(truncateToUnsigned(-std::numeric_limits<float>::infinity()), std::uint64_t(1) << 63);
    }

    void valuesThatAreNotTimesStillGiveText() {
        const float inf = std::numeric_limits<float>::infinity();
        const float nan = std::numeric_limits<float>::quiet_NaN();
        QCOMPARE(timeString(nan), QString("00:00:00.00"));
        QCOMPARE(timeString(inf), QString("00:00:00.00"));
        QCOMPARE(timeString(-inf), QString("00:00:00.00"));
        QVERIFY(!timeString(3.0e38f).isEmpty());
        QVERIFY(!timeString(-3.0e38f).isEmpty());
        QVERIFY(!timeString(1.0e-40f).isEmpty()); // denormal
    }

    void wholeTrackOfTenAndAHalfSeconds() {
        const SegmentVariables v = calculateSegmentVariables({10.5f, 0.0f, 100.0f, 0.0f, 10});
        QCOMPARE(v.sStartSelection, QString("00:00:00.00"));
        QCOMPARE(v.sEndSelection, QString("00:00:10.50"));
        QCOMPARE(v.sDurationSelection, QString("00:00:10.50"));
        QCOMPARE(v.sDurationSegmentAfterStartSelection, QString("00:00:10.00"));
        QCOMPARE(v.sDurationLastSegment, timeString(-0.5f)); // not a meaningful time, by design
    }

    void allElevenOutputsOfOneState() {
        // 125.5 s long (125 whole seconds), markers at 20 % and 60 %, position 33.25 s.
        const SegmentVariables v = calculateSegmentVariables({125.5f, 20.0f, 60.0f, 33.25f, 125});
        QCOMPARE(v.f_StartSelection, 25.1f);
        QCOMPARE(v.f_EndSelection, 75.3f);
        QCOMPARE(v.f_CurrentPosition, 33.25f);
        QCOMPARE(v.sStart, QString("00:00:00.00"));
        QCOMPARE(v.sStartSelection, QString("00:00:25.10"));
        QCOMPARE(v.sEndSelection, QString("00:01:15.30"));
        QCOMPARE(v.sCurrentPosition, QString("00:00:33.25"));
        QCOMPARE(v.sDurationSelection, QString("00:00:50.20"));
        QCOMPARE(v.sDurationLastSegment, QString("00:00:49.69")); // 49.6999969 in single precision
        QCOMPARE(v.sDurationSegmentAfterStartSelection, QString("00:01:39.90"));
        QCOMPARE(v.sDurationSegmentAfterCurrentPosition, QString("00:01:31.75"));
    }

    void markersOutOfOrderGiveANegativeDuration() {
        const SegmentVariables v = calculateSegmentVariables({10.0f, 60.0f, 45.0f, 0.0f, 10});
        QCOMPARE(v.sDurationSelection, QString("00:00:-1.00"));
    }

    void statusTexts() {
        const SegmentVariables v = calculateSegmentVariables({10.0f, 40.0f, 60.0f, 1.5f, 10});
        QCOMPARE(selectionStatusText(v), QString("Selection 00:00:04.00 – 00:00:06.00 (00:00:02.00)"));
        QCOMPARE(positionStatusText(v), QString("Position 00:00:01.50"));
    }
};

QTEST_GUILESS_MAIN(tst_TimeStrings)
#include "tst_timestrings.moc"
