#include "support/Fixtures.h"
#include "timeline/RulerScale.h"
#include "timeline/TimeStrings.h"
#include "timeline/View_Time_Rule.h"

#include <QImage>
#include <QRegularExpression>
#include <QTest>

namespace {
QStringList texts(const std::vector<ruler::Mark>& marks) {
    QStringList result;
    for (const ruler::Mark& mark : marks)
        result << mark.text;
    return result;
}
} // namespace

class tst_Ruler : public QObject {
    Q_OBJECT
private slots:
    void placeholderScaleAt405Points() {
        const auto marks = ruler::marks(405, false, 0);
        QCOMPARE(marks.size(), std::size_t(5));
        QList<double> ticks;
        for (const auto& mark : marks)
            ticks << mark.tickX;
        QCOMPARE(ticks, QList<double>({0, 81, 162, 243, 324}));
        QCOMPARE(texts(marks), QStringList({"00:00:03", "00:00:06", "00:00:09", "00:00:12", "00:00:15"}));
        QCOMPARE(marks.back().labelEnd, 400.0);
        QCOMPARE(marks.front().labelEnd, 76.0);
    }

    void twoMinutesAcrossTenDivisions() {
        const auto marks = ruler::marks(810, true, 120);
        QCOMPARE(texts(marks), QStringList({"00:00:12", "00:00:24", "00:00:36", "00:00:48", "00:01:00",
                                            "00:01:12", "00:01:24", "00:01:36", "00:01:48", "00:02:00"}));
    }

    void theSameTrackAtZoomTwoLabelsEverySixSeconds() {
        const auto marks = ruler::marks(1620, true, 120);
        QCOMPARE(marks.size(), std::size_t(20));
        QCOMPARE(marks[0].text, QString("00:00:06"));
        QCOMPARE(marks[1].text, QString("00:00:12"));
        QCOMPARE(marks[9].text, QString("00:01:00"));
        QCOMPARE(marks[19].text, QString("00:02:00"));
    }

    void aDurationOfZeroLabelsEveryTickZero() {
        const auto marks = ruler::marks(500, true, 0);
        QCOMPARE(marks.size(), std::size_t(7));
        for (const auto& mark : marks)
            QCOMPARE(mark.text, QString("00:00:00"));
    }

    void twoHoursAtANarrowWidthPrintMinutesAboveFiftyNine() {
        const auto marks = ruler::marks(810, true, 7200);
        QCOMPARE(marks[0].text, QString("00:12:00"));
        QCOMPARE(marks[5].text, QString("00:72:00"));
        QCOMPARE(marks.back().text, QString("00:120:00"));
    }

    void theLastLabelIsTheFirstWhoseEndReachesTheWidth() {
        QCOMPARE(ruler::marks(400, false, 0).size(), std::size_t(5)); // 405 >= 400 is the fifth
        QCOMPARE(ruler::marks(406, false, 0).size(), std::size_t(6));
        QCOMPARE(ruler::marks(1, false, 0).size(), std::size_t(1));
        QVERIFY(ruler::marks(0, true, 60).empty());
        QVERIFY(ruler::marks(-5, true, 60).empty());
    }

    void ticksAThirdOfASecondApartShowHundredths() {
        // Ten seconds over 30 divisions: a third of a second each, where whole
        // seconds would repeat ("00:00:00 00:00:00 00:00:01 ...").
        const auto marks = ruler::marks(2430, true, 10);
        QCOMPARE(marks.size(), std::size_t(30));
        const QStringList labels = texts(marks);
        QCOMPARE(labels.first(), QString("00:00:00.33"));
        QCOMPARE(labels[2], QString("00:00:01.00"));
        QCOMPARE(labels.last(), QString("00:00:10.00"));
        const QRegularExpression form("^\\d\\d:\\d\\d:\\d\\d\\.\\d\\d$");
        for (qsizetype i = 0; i < labels.size(); ++i) {
            QVERIFY2(form.match(labels[i]).hasMatch(), qPrintable(labels[i]));
            if (i > 0)
                QVERIFY2(labels[i] != labels[i - 1], qPrintable(labels.join(' ')));
            // Each names the time at the tick to its right, to within a hundredth.
            QVERIFY(std::abs(secondsOfTimeString(labels[i]) - 10.0 * double(i + 1) / 30.0) <= 0.011);
        }
        // A second a division or more: whole seconds, as always.
        QCOMPARE(ruler::marks(810, true, 10).front().text, QString("00:00:01"));
    }

    void aStretchOfTheRulerHasTheSameMarksAsTheWhole_data() {
        QTest::addColumn<double>("width");
        QTest::addColumn<bool>("loaded");
        QTest::addColumn<qint64>("duration");
        QTest::newRow("placeholder") << 4050.0 << false << qint64(0);
        QTest::newRow("two minutes at zoom 2") << 1620.0 << true << qint64(120);
        QTest::newRow("ten seconds, thirds") << 2430.0 << true << qint64(10);
        QTest::newRow("an hour at the deepest zoom") << 16'000'000.0 << true << qint64(3600);
    }
    void aStretchOfTheRulerHasTheSameMarksAsTheWhole() {
        QFETCH(double, width);
        QFETCH(bool, loaded);
        QFETCH(qint64, duration);
        const auto whole = ruler::marks(width, loaded, duration);
        for (const double from : {0.0, 300.0, width / 2 + 17, width - 500}) {
            const double to = from + 1000;
            std::vector<ruler::Mark> expected;
            for (const ruler::Mark& mark : whole)
                if (mark.tickX + ruler::Division >= from && mark.tickX <= to)
                    expected.push_back(mark);
            const auto part = ruler::marks(width, loaded, duration, from, to);
            QCOMPARE(part.size(), expected.size());
            for (std::size_t i = 0; i < part.size(); ++i) {
                QCOMPARE(part[i].tickX, expected[i].tickX);
                QCOMPARE(part[i].text, expected[i].text);
            }
        }
    }

    void drawnTicksBaselineAndLabels() {
        View_Time_Rule view;
        view.resize(810, 24);
        view.b_Audio_Loaded = true;
        view.i_Audio_Duration_Seconds = 120;
        const QImage image = view.grab().toImage();
        const int h = 24;
        auto dark = [&](int x, int y) { return qGray(image.pixel(x, y)) < 100; };
        // Baseline from y = H - 16 to H - 15 in the ruler's upward coordinates: row 15 from the top.
        QVERIFY(dark(40, h - 1 - (h - 16)));
        QVERIFY(dark(800, h - 1 - (h - 16)));
        QVERIFY(!dark(40, 20));
        // Ticks: 1 point wide at 0, 81, 162 …, 6 points high above the baseline.
        for (int x : {0, 81, 162, 729}) {
            QVERIFY2(dark(x, 11), qPrintable(QString::number(x)));
            QVERIFY2(!dark(x, 8), qPrintable(QString::number(x)));
        }
        QVERIFY(!dark(82, 11));
        // The first label ends 5 points before the tick at 81: ink right before x = 76, none after.
        int lastInk = -1;
        for (int x = 0; x < 81; ++x)
            for (int y = 0; y < 15; ++y)
                if (dark(x, y) && x != 0)
                    lastInk = std::max(lastInk, x);
        QVERIFY2(lastInk >= 70 && lastInk <= 76, qPrintable(QString::number(lastInk)));
    }
};

QTEST_MAIN(tst_Ruler)
#include "tst_ruler.moc"
