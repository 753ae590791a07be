// The layers of the source tree and the one direction their includes take:
// src/core includes only src/core, src/ui includes src/ui and src/core, and
// src/app may include all three. Every quoted include of every file under src
// is resolved the way the build resolves it (beside the file first, then each
// layer's folder), and the count of includes per pair of layers is printed.
// Inside a layer, the folders (one per subsystem) include one another without
// a circle, so each stands on the ones below it.

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QTest>
#include <functional>

namespace {
const QStringList Layers{"core", "ui", "app"}; // from the ground up

QString sourceRoot() {
    return qEnvironmentVariable("TANSELO_SOURCE_DIR") + QStringLiteral("/src");
}

// The file an include names, as seen from `file`, relative to src
// ("core/plans/Plan.h"); empty when it names no file of the tree (a generated
// file, a system header).
QString resolveInclude(const QString& file, const QString& included) {
    const QDir root(sourceRoot());
    if (const QString beside = QFileInfo(file).dir().filePath(included); QFile::exists(beside))
        return root.relativeFilePath(QFileInfo(beside).canonicalFilePath());
    for (const QString& layer : Layers)
        if (QFile::exists(root.filePath(layer + u'/' + included)))
            return layer + u'/' + included;
    return {};
}

QString layerOf(const QString& path) {
    return path.section(u'/', 0, 0);
}

// "ui/edit" for "ui/edit/EditingActions.cpp"; empty for a file at a layer's top.
QString folderOf(const QString& path) {
    return path.count(u'/') >= 2 ? path.section(u'/', 0, 1) : QString();
}

// Every quoted include under src, as (including file, included file), both
// relative to src.
QList<std::pair<QString, QString>> allIncludes() {
    static const QRegularExpression include(QStringLiteral("^\\s*#\\s*include\\s+\"([^\"]+)\""),
                                            QRegularExpression::MultilineOption);
    QList<std::pair<QString, QString>> includes;
    QDirIterator it(sourceRoot(), {"*.h", "*.cpp", "*.c"}, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString file = it.next();
        QFile source(file);
        if (!source.open(QIODevice::ReadOnly))
            continue;
        const QString from = QDir(sourceRoot()).relativeFilePath(file);
        for (auto match = include.globalMatch(QString::fromUtf8(source.readAll())); match.hasNext();)
            if (const QString to = resolveInclude(file, match.next().captured(1)); !to.isEmpty())
                includes.append({from, to});
    }
    return includes;
}

// A circle in `graph` as "a -> b -> a", or empty when there is none.
QString findCircle(const QMap<QString, QSet<QString>>& graph) {
    QMap<QString, int> state; // 1 on the path being walked, 2 done
    QStringList path;
    std::function<QString(const QString&)> walk = [&](const QString& node) -> QString {
        state[node] = 1;
        path << node;
        QStringList next(graph.value(node).begin(), graph.value(node).end());
        next.sort();
        for (const QString& to : next) {
            if (state.value(to) == 1)
                return (path.mid(path.indexOf(to)) << to).join(" -> ");
            if (state.value(to) == 0)
                if (const QString circle = walk(to); !circle.isEmpty())
                    return circle;
        }
        path.removeLast();
        state[node] = 2;
        return {};
    };
    for (const QString& node : graph.keys())
        if (state.value(node) == 0)
            if (const QString circle = walk(node); !circle.isEmpty())
                return circle;
    return {};
}
} // namespace

class tst_Layering : public QObject {
    Q_OBJECT

private slots:
    void everyIncludePointsDownOrAcross() {
        QMap<QString, int> pairs; // "ui -> core": count
        QStringList upward;
        QDirIterator it(sourceRoot(), {"*.h", "*.cpp", "*.c"}, QDir::Files, QDirIterator::Subdirectories);
        int files = 0;
        for (; it.hasNext(); ++files) {
            const QString file = QDir(sourceRoot()).relativeFilePath(it.next());
            QVERIFY2(Layers.contains(layerOf(file)),
                     qPrintable(file + " lies outside src/core, src/ui and src/app"));
        }
        QVERIFY(files > 100);
        for (const auto& [file, included] : allIncludes()) {
            const QString from = layerOf(file);
            const QString to = layerOf(included);
            pairs[from + " -> " + to] += 1;
            if (Layers.indexOf(to) > Layers.indexOf(from))
                upward << QStringLiteral("%1 includes %2").arg(file, included);
        }
        for (const QString& from : Layers)
            for (const QString& to : Layers)
                qInfo("%s -> %s: %d", qPrintable(from), qPrintable(to), pairs.value(from + " -> " + to));
        QVERIFY2(upward.isEmpty(), qPrintable(upward.join('\n')));
        QVERIFY(pairs.value("ui -> core") > 0); // the walk saw the layers meet
    }

    void noCircleBetweenTheFoldersOfALayer() {
        QMap<QString, QSet<QString>> folders; // "ui/edit" -> the folders of its layer it includes
        for (const auto& [file, included] : allIncludes()) {
            const QString from = folderOf(file);
            const QString to = folderOf(included);
            if (!from.isEmpty() && !to.isEmpty() && from != to && layerOf(from) == layerOf(to))
                folders[from].insert(to);
        }
        QVERIFY(folders.value("ui/document").contains("ui/edit")); // the walk saw folders meet
        const QString circle = findCircle(folders);
        QVERIFY2(circle.isEmpty(), qPrintable("the folders include one another in a circle: " + circle));
    }

    void aCircleIsFound() {
        QCOMPARE(findCircle({{"a", {"b"}}, {"b", {"c"}}, {"c", {"a"}}}), QString("a -> b -> c -> a"));
        QCOMPARE(findCircle({{"a", {"b", "c"}}, {"b", {"c"}}}), QString());
    }
};

QTEST_GUILESS_MAIN(tst_Layering)
#include "tst_layering.moc"
