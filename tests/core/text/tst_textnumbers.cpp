#include "text/TextNumbers.h"

#include <QTest>
#include <cfloat>
#include <cmath>
#include <limits>

class tst_TextNumbers : public QObject {
    Q_OBJECT
private slots:
    void reads_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("value");
        QTest::newRow("plain") << "1000" << 1000;
        QTest::newRow("leading blanks, trailing letters") << " 42abc" << 42;
        QTest::newRow("letters") << "abc" << 0;
        QTest::newRow("empty") << "" << 0;
        QTest::newRow("minus") << "-5" << -5;
        QTest::newRow("plus") << "+7" << 7;
        QTest::newRow("zero") << "0" << 0;
        QTest::newRow("too large") << "99999999999999" << std::numeric_limits<int>::max();
        QTest::newRow("too small") << "-99999999999999" << std::numeric_limits<int>::min();
        QTest::newRow("fraction dropped") << "1.5" << 1;
        QTest::newRow("sign alone") << "  -" << 0;
        QTest::newRow("tab and newline") << "\t\n 12" << 12;
        QTest::newRow("blank after sign") << "- 5" << 0;
        QTest::newRow("two signs") << "+-5" << 0;
        QTest::newRow("exactly the largest") << "2147483647" << std::numeric_limits<int>::max();
        QTest::newRow("exactly the smallest") << "-2147483648" << std::numeric_limits<int>::min();
        QTest::newRow("one past the largest") << "2147483648" << std::numeric_limits<int>::max();
        QTest::newRow("leading zeros") << "007" << 7;
        QTest::newRow("very long") << QString(400, u'9') << std::numeric_limits<int>::max();
    }
    void reads() {
        QFETCH(QString, text);
        QFETCH(int, value);
        QCOMPARE(intValue(text), value);
    }

    void readsReals_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<float>("value");
        QTest::newRow("plain") << "1000" << 1000.0f;
        QTest::newRow("fraction") << "0.5" << 0.5f;
        QTest::newRow("negative fraction") << "-1.0" << -1.0f;
        QTest::newRow("plus") << "+2.25" << 2.25f;
        QTest::newRow("leading blanks") << " \t 3.5" << 3.5f;
        QTest::newRow("trailing letters") << "1.5abc" << 1.5f;
        QTest::newRow("comma is no decimal mark") << "1,5" << 1.0f;
        QTest::newRow("letters") << "abc" << 0.0f;
        QTest::newRow("empty") << "" << 0.0f;
        QTest::newRow("sign alone") << "-" << 0.0f;
        QTest::newRow("point alone") << "." << 0.0f;
        QTest::newRow("no leading digit") << ".25" << 0.25f;
        QTest::newRow("no fraction digits") << "7." << 7.0f;
        QTest::newRow("exponent") << "1.5e3" << 1500.0f;
        QTest::newRow("capital exponent with sign") << "25E-2" << 0.25f;
        QTest::newRow("exponent without digits") << "2e" << 2.0f;
        QTest::newRow("exponent sign without digits") << "2e+x" << 2.0f;
        QTest::newRow("blank after sign") << "- 5" << 0.0f;
        QTest::newRow("two points") << "1.2.3" << 1.2f;
        QTest::newRow("zero") << "0" << 0.0f;
        QTest::newRow("beyond float") << "1e99" << FLT_MAX;
        QTest::newRow("beyond float, negative") << "-1e99" << -FLT_MAX;
        QTest::newRow("beyond double") << "1e999" << FLT_MAX;
        QTest::newRow("huge exponent") << "9e99999999999999999999" << FLT_MAX;
        QTest::newRow("many digits") << QString(400, u'9') << FLT_MAX;
        QTest::newRow("below double") << "1e-999" << 0.0f;
        QTest::newRow("infinity is no number") << "inf" << 0.0f;
        QTest::newRow("nan is no number") << "nan" << 0.0f;
        QTest::newRow("hex is no number") << "0x10" << 0.0f;
    }
    void readsReals() {
        QFETCH(QString, text);
        QFETCH(float, value);
        const float read = floatValue(text);
        QVERIFY(std::isfinite(read));
        QCOMPARE(read, value);
    }
};

QTEST_GUILESS_MAIN(tst_TextNumbers)
#include "tst_textnumbers.moc"
