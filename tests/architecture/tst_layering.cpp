// The layers of the source tree and the one direction their includes take:
// src/core includes only src/core, src/ui includes src/ui and src/core, and
// src/app may include all three. Every quoted include of every file under src
// is resolved the way the build resolves it (beside the file first, then each
// layer's folder), and the count of includes per pair of layers is printed.

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QTest>

namespace {
const QStringList Layers{"core", "ui", "app"}; // from the ground up

QString sourceRoot() {
    return qEnvironmentVariable("TANSELO_SOURCE_DIR") + QStringLiteral("/src");
}

// The layer of the file an include names, as seen from `file`; empty when
// it names no file of the tree (a generated file, a system header).
QString layerOfInclude(const QString& file, const QString& included) {
    if (QFile::exists(QFileInfo(file).dir().filePath(included)))
        return QDir(sourceRoot()).relativeFilePath(file).section(u'/', 0, 0);
    for (const QString& layer : Layers)
        if (QFile::exists(sourceRoot() + u'/' + layer + u'/' + included))
            return layer;
    return {};
}
} // namespace

class tst_Layering : public QObject {
    Q_OBJECT

private slots:
    void everyIncludePointsDownOrAcross() {
        static const QRegularExpression include(QStringLiteral("^\\s*#\\s*include\\s+\"([^\"]+)\""),
                                                QRegularExpression::MultilineOption);
        QMap<QString, int> pairs; // "ui -> core": count
        QStringList upward;
        int files = 0;
        QDirIterator it(sourceRoot(), {"*.h", "*.cpp", "*.c"}, QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString file = it.next();
            const QString from = QDir(sourceRoot()).relativeFilePath(file).section(u'/', 0, 0);
            QVERIFY2(Layers.contains(from), qPrintable(file + " lies outside src/core, src/ui and src/app"));
            QFile source(file);
            QVERIFY(source.open(QIODevice::ReadOnly));
            ++files;
            for (auto match = include.globalMatch(QString::fromUtf8(source.readAll())); match.hasNext();) {
                const QString included = match.next().captured(1);
                const QString to = layerOfInclude(file, included);
                if (to.isEmpty())
                    continue;
                pairs[from + " -> " + to] += 1;
                if (Layers.indexOf(to) > Layers.indexOf(from))
                    upward << QStringLiteral("%1 includes \"%2\" of src/%3")
                                  .arg(QDir(sourceRoot()).relativeFilePath(file), included, to);
            }
        }
        QVERIFY(files > 100);
        for (const QString& from : Layers)
            for (const QString& to : Layers)
                qInfo("%s -> %s: %d", qPrintable(from), qPrintable(to), pairs.value(from + " -> " + to));
        QVERIFY2(upward.isEmpty(), qPrintable(upward.join('\n')));
        QVERIFY(pairs.value("ui -> core") > 0); // the walk saw the layers meet
    }
};

QTEST_GUILESS_MAIN(tst_Layering)
#include "tst_layering.moc"
