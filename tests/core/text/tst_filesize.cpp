#include "text/FileSize.h"

#include <QTest>

class tst_FileSize : public QObject {
    Q_OBJECT
private slots:
    void sizes_data() {
        QTest::addColumn<qint64>("bytes");
        QTest::addColumn<QString>("text");
        QTest::newRow("0") << qint64(0) << "0.00 bytes";
        QTest::newRow("1000") << qint64(1000) << "1000.00 bytes";
        QTest::newRow("1024") << qint64(1024) << "1024.00 bytes";
        QTest::newRow("1025") << qint64(1025) << "1.00 KB";
        QTest::newRow("1048576") << qint64(1048576) << "1024.00 KB";
        QTest::newRow("1048577") << qint64(1048577) << "1.00 MB";
        QTest::newRow("1.5 GB") << qint64(1610612736) << "1.50 GB";
        QTest::newRow("3 TB") << qint64(3) * 1024 * 1024 * 1024 * 1024 << "3.00 TB";
        QTest::newRow("beyond TB stays TB") << qint64(2048) * 1024 * 1024 * 1024 * 1024 << "2048.00 TB";
    }
    void sizes() {
        QFETCH(qint64, bytes);
        QFETCH(QString, text);
        QCOMPARE(fileSizeText(bytes), text);
    }
};

QTEST_GUILESS_MAIN(tst_FileSize)
#include "tst_filesize.moc"
