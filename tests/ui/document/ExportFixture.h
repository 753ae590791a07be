#pragma once

// What the export tests share: an application in a temporary home with a 10 s
// tone opened from a folder of its own, and driving the export dialog through
// its real widgets.

#include "application/AppDelegate.h"
#include "document/Document.h"
#include "document/Window_AF_WAV.h"
#include "support/DialogDriving.h"
#include "support/Fixtures.h"
#include "support/Gui.h"

#include <QComboBox>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <cmath>

namespace exportTest {

// What ffprobe says of a file: "codec_name", "sample_rate", "channels",
// "duration" and "bit_rate" (the format's), as text.
inline QMap<QString, QString> probe(const QString& path) {
    QString output;
    fixtures::run("ffprobe",
                  {"-v", "error", "-show_entries", "stream=codec_name,sample_rate,channels", "-show_entries",
                   "format=duration,bit_rate", "-of", "default=noprint_wrappers=1", path},
                  &output);
    QMap<QString, QString> fields;
    for (const QString& line : output.split('\n', Qt::SkipEmptyParts)) {
        const qsizetype equals = line.indexOf('=');
        if (equals > 0)
            fields.insert(line.left(equals), line.mid(equals + 1).trimmed());
    }
    return fields;
}

// The indexes to choose in the dialog's four lists; -2 leaves a list as it is.
struct Settings {
    int format = -2, sampleRate = -2, channels = -2, bitRate = -2;
};

} // namespace exportTest

class ExportFixture : public QObject {
protected:
    QTemporaryDir m_root;
    std::unique_ptr<AppDelegate> m_app;
    QString m_source; // the 10 s tone, in a folder of its own
    QString m_out;    // where the tests export to

    // `urlHandler` gets every file URL the editor asks the desktop to open
    // (through its slot "open"), so that nothing launches.
    void start(QObject* urlHandler) {
        QDesktopServices::setUrlHandler("file", urlHandler, "open");
        m_app = gui::startApplication(m_root.filePath("home"));
        QVERIFY(m_app && gui::waitIdle(*m_app));
        QDir().mkpath(m_root.filePath("recordings"));
        m_source = m_root.filePath("recordings/tone.wav");
        fixtures::makeTone(m_source, 10, 1000, 0.5);
        m_out = m_root.filePath("exports");
        QDir().mkpath(m_out);
    }

    void stop() { QDesktopServices::unsetUrlHandler("file"); }

    void closeAll() {
        for (Document* d : m_app->documents())
            delete d;
        QVERIFY(gui::waitIdle(*m_app));
    }

    Document* openTone() { return gui::openInNewWindow(*m_app, m_source); }

    static void choose(Window_AF_WAV* w, const exportTest::Settings& s) {
        const std::pair<QComboBox*, int> lists[] = {{w->comboFormat, s.format},
                                                    {w->comboSampleRate, s.sampleRate},
                                                    {w->comboChannels, s.channels},
                                                    {w->comboBitrate, s.bitRate}};
        for (const auto& [list, index] : lists)
            if (index != -2)
                list->setCurrentIndex(index);
    }

    // Inside a shown dialog: chooses, presses Export, answers the save dialog with
    // `destination` (cancels when empty) and waits for the export to end with its
    // alert answered by `press`. What the save dialog proposed goes to `proposed`.
    static bool exportOnce(Window_AF_WAV* w, const exportTest::Settings& s, const QString& destination,
                           std::shared_ptr<gui::AlertSeen>& alert, const QString& press = {},
                           QString* proposed = nullptr) {
        choose(w, s);
        QSignalSpy ended(w, &Window_AF_WAV::exportEnded);
        const auto saveDialog = gui::answerFileDialog(destination);
        alert = gui::answerAlert(press);
        QTest::mouseClick(w->btnExport, Qt::LeftButton);
        if (proposed)
            *proposed = saveDialog->proposed;
        if (destination.isEmpty()) {
            alert->stop = true;
            return true;
        }
        return ended.size() > 0 || ended.wait(60000);
    }

    // Opens the dialog from the toolbar and lets `act` drive it; closes it afterwards.
    void withDialog(Document* d, const std::function<void(Window_AF_WAV*)>& act) {
        bool shown = false;
        gui::whenModal<Window_AF_WAV>([&](Window_AF_WAV* w) {
            shown = true;
            act(w);
            QTest::mouseClick(w->btnClose, Qt::LeftButton);
        });
        d->btnSave->trigger();
        QVERIFY(shown);
    }

    // One export through the dialog; the alert that followed it.
    gui::AlertSeen exportVia(Document* d, const exportTest::Settings& s, const QString& destination,
                             const QString& press = "Close") {
        std::shared_ptr<gui::AlertSeen> alert;
        withDialog(d, [&](Window_AF_WAV* w) { QVERIFY(exportOnce(w, s, destination, alert, press)); });
        return alert ? *alert : gui::AlertSeen{};
    }

    // The exported audio lasts as long as the working WAV.
    static void checkLength(const QString& exported, const QString& wav) {
        const double length = exportTest::probe(exported).value("duration").toDouble();
        const double expected = fixtures::wavInfo(wav).seconds();
        QVERIFY2(std::abs(length - expected) < 0.05,
                 qPrintable(QString("%1 vs %2").arg(length).arg(expected)));
    }
};
