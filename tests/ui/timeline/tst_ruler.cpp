#include "support/Fixtures.h"
#include "timeline/RulerScale.h"
#include "timeline/View_Time_Rule.h"

#include <QImage>
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
