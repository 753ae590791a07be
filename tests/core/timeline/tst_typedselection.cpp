#include "timeline/TimeStrings.h"
#include "timeline/TypedSelection.h"

#include <QRandomGenerator>
#include <QTest>

class tst_TypedSelection : public QObject {
    Q_OBJECT
private slots:
    void timesAsTheStatusBarShowsThemOrAsSeconds_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("seconds");
        QTest::newRow("segment form") << "00:07:29.50" << 449.5;
        QTest::newRow("hours") << "01:02:03.04" << 3723.04;
        QTest::newRow("minutes and seconds") << "7:30" << 450.0;
        QTest::newRow("seconds") << "449.5" << 449.5;
        QTest::newRow("whole seconds, spaces") << " 12 " << 12.0;
        QTest::newRow("a fraction alone") << ".25" << 0.25;
    }
    void timesAsTheStatusBarShowsThemOrAsSeconds() {
        QFETCH(QString, text);
        QFETCH(double, seconds);
        const std::optional<double> read = typedSeconds(text);
        QVERIFY(read);
        QVERIFY2(std::abs(*read - seconds) < 1e-9, qPrintable(QString::number(*read, 'f', 6)));
    }

    void whatIsNoTime_data() {
        QTest::addColumn<QString>("text");
        for (const char* text : {"", "abc", "-1", "00:61:00", "00:00:60", "1:2:3:4", "12,5", "7:30x", "::"})
            QTest::newRow(text) << QString(text);
    }
    void whatIsNoTime() {
        QFETCH(QString, text);
        QVERIFY(!typedSeconds(text));
        const TypedSelection selection = typedSelection(text, "00:00:05.00", 60);
        QVERIFY(selection.problem.startsWith(QString("“%1” is not a time.").arg(text.trimmed())));
    }

    void theSelectedSecondReadsBackAsTyped() {
        // A 15-minute track: 00:07:29.50 to 00:07:30.50 is that very second in
        // the status bar and in every tool's arguments.
        const TypedSelection selection = typedSelection("00:07:29.50", "00:07:30.50", 900);
        QVERIFY(selection.problem.isEmpty());
        const SegmentVariables v = calculateSegmentVariables({900, selection.start, selection.end, 0, 900});
        QCOMPARE(v.sStartSelection, QString("00:07:29.50"));
        QCOMPARE(v.sEndSelection, QString("00:07:30.50"));
        QCOMPARE(v.sDurationSelection, QString("00:00:01.00"));
    }

    void anyHundredthReadsBack() {
        QRandomGenerator random(25);
        for (int i = 0; i < 2000; ++i) {
            const float length = float(random.bounded(1, 4 * 3600)) + float(random.bounded(100)) / 100.0f;
            const qint64 hundredths = random.bounded(qint64(length * 100));
            const double seconds = double(hundredths) / 100.0;
            const float percent = percentReading(seconds, length);
            const QString expected =
                QString::asprintf("%02lld:%02lld:%02lld.%02lld", hundredths / 360000, hundredths / 6000 % 60,
                                  hundredths / 100 % 60, hundredths % 100);
            QCOMPARE(timeString((percent * length) / 100.0f), expected);
        }
    }

    void anEndBeforeTheStartOrPastTheTrackIsSaid() {
        QCOMPARE(typedSelection("10", "5", 60).problem, QString("The selection must end after it starts."));
        QCOMPARE(typedSelection("10", "10", 60).problem, QString("The selection must end after it starts."));
        QCOMPARE(typedSelection("10", "00:01:00.50", 60).problem,
                 QString("The track is only 00:01:00.00 long."));
        QVERIFY(typedSelection("0", "60", 60).problem.isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_TypedSelection)
#include "tst_typedselection.moc"
