#include "application/AppDelegate.h"
#include "document/Document.h"
#include "document/ImportPlans.h"
#include "support/Fixtures.h"
#include "support/Gui.h"
#include "widgets/Icons.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>
#include <QXmlStreamReader>
#include <cmath>

namespace {
QString source(const QString& path) {
    return qEnvironmentVariable("TANSELO_SOURCE_DIR") + "/" + path;
}

// How far apart two images of one size are: the mean difference of their
// channels, 0 to 255.
double meanDifference(const QImage& a, const QImage& b) {
    const QImage x = a.convertToFormat(QImage::Format_ARGB32), y = b.convertToFormat(QImage::Format_ARGB32);
    double sum = 0;
    for (int row = 0; row < x.height(); ++row)
        for (int column = 0; column < x.width(); ++column) {
            const QColor p = x.pixelColor(column, row), q = y.pixelColor(column, row);
            sum += std::abs(p.red() - q.red()) + std::abs(p.green() - q.green()) +
                   std::abs(p.blue() - q.blue()) + std::abs(p.alpha() - q.alpha());
        }
    return sum / (4.0 * x.width() * x.height());
}

// The keys of a desktop entry's main group (QSettings would take ';' for a comment).
QMap<QString, QString> desktopEntry(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    QMap<QString, QString> keys;
    bool inMain = false;
    for (const QString& line : QString::fromUtf8(file.readAll()).split('\n')) {
        if (line.startsWith('['))
            inMain = line == "[Desktop Entry]";
        else if (inMain && line.contains('=') && !line.startsWith('#'))
            keys.insert(line.section('=', 0, 0), line.section('=', 1));
    }
    return keys;
}

// shared-mime-info's types, each with the extensions its globs name.
QMap<QString, QStringList> knownTypes() {
    QFile file("/usr/share/mime/packages/freedesktop.org.xml");
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QMap<QString, QStringList> types;
    QString type;
    for (QXmlStreamReader xml(&file); !xml.atEnd();) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("mime-type")) {
            type = xml.attributes().value("type").toString();
            types.insert(type, {});
        } else if (xml.name() == QLatin1String("glob")) {
            const QString pattern = xml.attributes().value("pattern").toString().toLower();
            if (pattern.startsWith("*."))
                types[type] << pattern.mid(2);
        }
    }
    return types;
}
} // namespace

// The editor as a desktop application: its identity and icon, its desktop
// entry and metainfo.
class tst_Desktop : public QObject {
    Q_OBJECT
    QTemporaryDir m_root;

private slots:
    void theWindowsShowTheApplicationsIcon() {
        auto app = gui::startApplication(m_root.filePath("home"));
        QVERIFY(app);
        Document* window = gui::firstDocument(*app);
        QVERIFY(window);
        QCOMPARE(QGuiApplication::desktopFileName(), QString("org.tanselo.Tanselo"));
        const QImage shown = window->windowIcon().pixmap(64, 64).toImage();
        QCOMPARE(shown.size(), QSize(64, 64));
        // The PNG the desktop installs, rendered from the same drawing.
        const QImage installed(qEnvironmentVariable("TANSELO_BUILD_DIR") +
                               "/icons/hicolor/64x64/apps/org.tanselo.Tanselo.png");
        QCOMPARE(installed.size(), QSize(64, 64));
        const double same = meanDifference(shown, installed);
        QVERIFY2(same < 6, qPrintable(QString::number(same)));
        const double play =
            meanDifference(shown, toolbarIcon("play").pixmap(64, 64).toImage().scaled(64, 64));
        QVERIFY2(play > 30, qPrintable(QString::number(play)));
        // Not blank: the teal background fills the middle of the edge.
        QVERIFY(shown.pixelColor(4, 32).alpha() > 200);
        delete window;
    }

    // The painted toolbar icons are drawn in the palette's window text colour:
    // light on a dark theme, dark on a light one, and redrawn when it changes.
    void thePaintedIconsFollowThePalette() {
        auto app = gui::startApplication(m_root.filePath("home-palette"));
        QVERIFY(app);
        const QPalette light = QApplication::palette();
        QPalette dark = light;
        dark.setColor(QPalette::Window, QColor(0x20, 0x20, 0x20));
        dark.setColor(QPalette::WindowText, QColor(0xf0, 0xf0, 0xf0));
        dark.setColor(QPalette::Button, QColor(0x30, 0x30, 0x30));
        dark.setColor(QPalette::ButtonText, QColor(0xf0, 0xf0, 0xf0));

        const auto inkOf = [](Document* window, QAction* action, const QColor& ink) {
            QWidget* button = window->findChild<QToolBar*>()->widgetForAction(action);
            const QImage image = button->grab().toImage();
            int near = 0;
            for (int y = 0; y < image.height(); ++y)
                for (int x = 0; x < image.width(); ++x) {
                    const QColor c = image.pixelColor(x, y);
                    near += std::abs(c.red() - ink.red()) + std::abs(c.green() - ink.green()) +
                                std::abs(c.blue() - ink.blue()) <
                            30;
                }
            return near;
        };
        QApplication::setPalette(dark);
        Document* window = gui::firstDocument(*app);
        QVERIFY(window);
        QVERIFY(QTest::qWaitForWindowExposed(window));
        for (QAction* action : {window->btnCut, window->btnTools, window->btnUndo})
            QVERIFY2(inkOf(window, action, QColor(0xf0, 0xf0, 0xf0)) > 15, qPrintable(action->text()));
        QCOMPARE(inkOf(window, window->btnCut, light.color(QPalette::WindowText)), 0);

        // Back to the light palette: the same buttons are drawn dark again.
        QApplication::setPalette(light);
        QTRY_VERIFY(inkOf(window, window->btnCut, light.color(QPalette::WindowText)) > 15);
        delete window;
    }

    // Where the desktop's icon theme has the standard icon, the toolbar shows it.
    void aThemeIconIsTakenWhereTheDesktopHasOne() {
        const QString themes = m_root.filePath("icons");
        QVERIFY(QDir().mkpath(themes + "/tanselo-test/24x24/actions"));
        QFile index(themes + "/tanselo-test/index.theme");
        QVERIFY(index.open(QIODevice::WriteOnly));
        index.write("[Icon Theme]\nName=tanselo-test\nDirectories=24x24/actions\n\n"
                    "[24x24/actions]\nSize=24\nType=Fixed\n");
        index.close();
        QImage magenta(24, 24, QImage::Format_ARGB32);
        magenta.fill(Qt::magenta);
        QVERIFY(magenta.save(themes + "/tanselo-test/24x24/actions/edit-cut.png"));

        const QStringList paths = QIcon::themeSearchPaths();
        const QString theme = QIcon::themeName();
        QIcon::setThemeSearchPaths({themes});
        QIcon::setThemeName("tanselo-test");
        QVERIFY(QIcon::hasThemeIcon("edit-cut"));
        QCOMPARE(toolbarIcon("cut").pixmap(24, 24).toImage().pixelColor(12, 12), QColor(Qt::magenta));
        // No theme icon for it: painted, not magenta.
        QVERIFY(toolbarIcon("copy").pixmap(24, 24).toImage().pixelColor(12, 12) != QColor(Qt::magenta));
        QVERIFY(!toolbarIcon("copy").isNull());
        QIcon::setThemeName(theme);
        QIcon::setThemeSearchPaths(paths);
        QVERIFY(toolbarIcon("cut").pixmap(24, 24).toImage().pixelColor(12, 12) != QColor(Qt::magenta));
    }

    void theDesktopEntryAndMetainfoValidate() {
        QString said;
        QCOMPARE(
            fixtures::run("desktop-file-validate", {source("resources/org.tanselo.Tanselo.desktop")}, &said),
            0);
        QVERIFY2(said.trimmed().isEmpty(), qPrintable(said));
        QCOMPARE(fixtures::run("appstreamcli",
                               {"validate", "--no-net", source("resources/org.tanselo.Tanselo.metainfo.xml")},
                               &said),
                 0);
        QVERIFY2(said.contains("Validation was successful"), qPrintable(said));
    }

    void theDesktopEntryOpensTheAcceptedFormats() {
        const QMap<QString, QString> entry = desktopEntry(source("resources/org.tanselo.Tanselo.desktop"));
        QCOMPARE(entry.value("Exec"), QString("tanselo %F"));
        QCOMPARE(entry.value("Icon"), QString("org.tanselo.Tanselo"));
        QCOMPARE(entry.value("Categories"), QString("AudioVideo;Audio;AudioVideoEditing;"));
        const QStringList listed = entry.value("MimeType").split(';', Qt::SkipEmptyParts);
        QVERIFY(!listed.isEmpty());

        const QMap<QString, QStringList> known = knownTypes();
        QVERIFY2(known.size() > 500, "shared-mime-info is missing");
        const QSet<QString> accepted(openableExtensions().cbegin(), openableExtensions().cend());
        QSet<QString> covered;
        for (const QString& type : listed) {
            QVERIFY2(known.contains(type), qPrintable(type + " is not a type shared-mime-info knows"));
            const QStringList extensions = known.value(type);
            QVERIFY2(std::any_of(extensions.begin(), extensions.end(),
                                 [&](const QString& e) { return accepted.contains(e); }),
                     qPrintable(type + " names none of the formats the editor opens"));
            for (const QString& e : extensions)
                covered.insert(e);
        }
        // Every accepted format that shared-mime-info knows as audio is listed.
        for (auto it = known.cbegin(); it != known.cend(); ++it)
            if (it.key().startsWith("audio/"))
                for (const QString& e : it.value())
                    QVERIFY2(!accepted.contains(e) || covered.contains(e), qPrintable(e + " is not offered"));
    }
};

QTEST_MAIN(tst_Desktop)
#include "tst_desktop.moc"
