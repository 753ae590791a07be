#include "tools/Duration.h"

#include <QTest>

class tst_Duration : public QObject {
    Q_OBJECT
private slots:
    void probeArgumentsAreInputOnly() {
        QCOMPARE(probeArguments("/w/a b.wav"), QStringList({"-i", "/w/a b.wav"}));
    }

    void parse_data() {
        QTest::addColumn<QString>("output");
        QTest::addColumn<qint64>("seconds");
        QTest::newRow("59.99 s") << "  Duration: 00:00:59.99, start: 0.000000, bitrate: 1411 kb/s"
                                 << qint64(59);
        QTest::newRow("0.5 s") << "Duration: 00:00:00.50, start: 0.000000" << qint64(0);
        QTest::newRow("3:25.97") << "Input #0\n  Duration: 00:03:25.97, start: 0.0" << qint64(205);
        QTest::newRow("hours") << "Duration: 02:01:05.00, start" << qint64(2 * 3600 + 65);
        QTest::newRow("no marker") << "x.wav: No such file or directory" << qint64(0);
        QTest::newRow("empty") << "" << qint64(0);
        QTest::newRow("marker at the very end") << "garbage Duration:" << qint64(0);
        QTest::newRow("short tail") << "Duration: 00:0" << qint64(0);
        QTest::newRow("N/A") << "Duration: N/A, bitrate: N/A" << qint64(0);
        QTest::newRow("first marker counts") << "Duration: 00:00:07.00\nDuration: 00:00:09.00" << qint64(7);
    }
    void parse() {
        QFETCH(QString, output);
        QFETCH(qint64, seconds);
        QCOMPARE(secondsFromProbeOutput(output), seconds);
    }

    void durationTextIsElevenCharactersAfterTheColon() {
        QCOMPARE(durationTextFromOutput("  Duration: 00:03:25.47, start: 0.000000"), QString(" 00:03:25.4"));
        QCOMPARE(durationTextFromOutput("Duration: 00:0"), QString(" 00:0"));
        QVERIFY(durationTextFromOutput("nothing here").isEmpty());
    }

    void fieldsReadLeniently() {
        QCOMPARE(secondsFromDurationText(" 00:03:25.4"), qint64(205));
        QCOMPARE(secondsFromDurationText(" 1x:2y:3z.0"), qint64(3600 + 120 + 3));
        QCOMPARE(secondsFromDurationText(" ab:cd:ef.g"), qint64(0));
        QCOMPARE(secondsFromDurationText(""), qint64(0));
    }

    void clockTextOfSeconds() {
        QCOMPARE(clockText(0), QString("00:00:00"));
        QCOMPARE(clockText(205), QString("00:03:25"));
        QCOMPARE(clockText(3600 * 101 + 61), QString("101:01:01"));
    }
};

QTEST_GUILESS_MAIN(tst_Duration)
#include "tst_duration.moc"
