#include "app/TextNumbers.h"

#include <QTest>
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
};

QTEST_GUILESS_MAIN(tst_TextNumbers)
#include "tst_textnumbers.moc"
