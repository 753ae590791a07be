#include "application/AppDelegate.h"
#include "document/Document.h"
#include "document/ImportPlans.h"
#include "support/Fixtures.h"
#include "support/Gui.h"
#include "text/FileSize.h"
#include "timeline/View_Audio_Wave.h"
#include "tools/Duration.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>
#include <cmath>

namespace {
void writeBytes(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QByteArray randomBytes(quint32 seed, int count) {
    QRandomGenerator generator(seed);
    QByteArray bytes(count, Qt::Uninitialized);
    for (char& byte : bytes)
        byte = char(generator.bounded(256));
    return bytes;
}
} // namespace

class tst_Import : public QObject {
    Q_OBJECT
    QTemporaryDir m_root;
    std::unique_ptr<AppDelegate> m_app;
    QString m_sources;

    // Opens `path` in a new window through the open dialog, as File ▸ Open does.
    Document* openInNewWindow(const QString& path) {
        gui::answerFileDialog(path);
        m_app->openDocument();
        return m_app->documents().last();
    }

    QStringList workFiles() const {
        return QDir(m_app->session().s_Output_Folder)
            .entryList(QDir::Files | QDir::NoDotAndDotDot, QDir::Name);
    }

    void expectUnreadable(const QString& path, Document* document, const std::function<void()>& open) {
        const QByteArray before = fixtures::digest(path);
        const QStringList filesBefore = workFiles();
        const QString current = document ? document->track().s_WAV_File_Path : QString();
        const auto alert = gui::answerAlert();
        open();
        QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 30000);
        QCOMPARE(alert->text, QString("Error"));
        QVERIFY2(alert->informativeText.contains(QFileInfo(path).fileName()),
                 qPrintable(alert->informativeText));
        QVERIFY(alert->informativeText.contains("could not be read"));
        QCOMPARE(alert->buttons, QStringList({"Close"}));
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(fixtures::digest(path), before); // never written
        QCOMPARE(workFiles(), filesBefore);
        Document* shown = document ? document : m_app->documents().last();
        QVERIFY(shown->findChild<QToolBar*>()->isEnabled());
        QVERIFY(shown->btnOpen->isEnabled());
        if (document) { // a loaded document keeps its track
            QCOMPARE(document->track().s_WAV_File_Path, current);
            QCOMPARE(document->history().array_WAV_Files(), QStringList({current}));
        } else { // a new window is never left empty: it takes the silence track, as on Cancel
            QTRY_VERIFY(shown->b_Audio_Loaded);
            QCOMPARE(shown->track().s_WAV_File_Path, m_app->session().sSilenceWavPath);
            QCOMPARE(shown->windowTitle(), QString("silence.wav"));
            QCOMPARE(shown->history().array_WAV_Files(), QStringList({m_app->session().sSilenceWavPath}));
        }
    }

private slots:
    void initTestCase() {
        m_app = gui::startApplication(m_root.filePath("home"));
        QVERIFY(m_app);
        QVERIFY(gui::waitIdle(*m_app));
        m_sources = m_root.filePath("sources with blanks");
        QVERIFY(QDir().mkpath(m_sources));
        const QString tone = m_sources + "/tone.wav";
        fixtures::makeTone(tone, 3.5, 440, 0.5);
        for (const char* extension :
             {"flac", "mp3", "ogg", "aiff", "aif", "aifc", "au", "caf", "ac3", "wma", "spx"})
            QCOMPARE(fixtures::run("ffmpeg",
                                   {"-v", "error", "-i", tone, m_sources + "/tone." + QString(extension)}),
                     0);
        QCOMPARE(
            fixtures::run("sox", {tone, "-r", "8000", "-c", "1", "-t", "amr-nb", m_sources + "/tone.amr"}),
            0);
        QVERIFY(QFile::copy("/usr/share/sounds/alsa/Front_Center.wav", m_sources + "/Front_Center.wav"));
        QVERIFY(QFile::copy("/usr/share/sounds/freedesktop/stereo/bell.oga", m_sources + "/bell.ogg"));
    }

    void cleanup() {
        for (Document* d : m_app->documents())
            delete d;
        QVERIFY(gui::waitIdle(*m_app));
    }

    void eachAcceptedTypeBecomesAWorkingWav_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<double>("seconds");
        for (const char* extension :
             {"wav", "flac", "mp3", "ogg", "aiff", "aif", "aifc", "au", "caf", "ac3", "wma", "spx", "amr"})
            QTest::newRow(extension) << QString("tone.%1").arg(extension) << 3.5;
        QTest::newRow("alsa-utils wav") << "Front_Center.wav" << 68545.0 / 48000.0;
        QTest::newRow("freedesktop oga") << "bell.ogg" << 0.139478;
    }
    void eachAcceptedTypeBecomesAWorkingWav() {
        QFETCH(QString, name);
        QFETCH(double, seconds);
        const QString source = m_sources + "/" + name;
        const QByteArray before = fixtures::digest(source);
        gui::answerFileDialog(source);
        m_app->openDocument();
        Document* d = m_app->documents().last();
        QSignalSpy loaded(d, &Document::loaded);
        QVERIFY(loaded.wait(30000));

        const fixtures::WavInfo wav = fixtures::wavInfo(d->track().s_WAV_File_Path);
        QVERIFY2(wav.isWorkingWav(), qPrintable(d->track().s_WAV_File_Path));
        QVERIFY2(std::abs(wav.seconds() - seconds) < 0.05, qPrintable(QString::number(wav.seconds())));
        QCOMPARE(fixtures::digest(source), before);

        const QString workName = QFileInfo(d->track().s_WAV_File_Path).fileName();
        QVERIFY(QRegularExpression("^\\d{4}-\\d\\d-\\d\\d-\\d\\d-\\d\\d-\\d\\d\\.wav$")
                    .match(workName)
                    .hasMatch());
        QCOMPARE(QFileInfo(d->track().s_WAV_File_Path).path(), m_app->session().s_Output_Folder);
        QCOMPARE(d->windowTitle(), workName);
        QCOMPARE(d->track().s_WAV_File_URL, "file://" + d->track().s_WAV_File_Path);
        QCOMPARE(d->track().s_File_Path, source);
        QCOMPARE(d->track().s_File_URL, "file://" + source);
        QCOMPARE(d->track().s_File_Extension, QFileInfo(name).suffix());
        QCOMPARE(d->track().s_File_Name_Without_Extension, QFileInfo(name).completeBaseName());
        QCOMPARE(d->track().s_Folder_Path, m_sources);
        QCOMPARE(d->track().i_Audio_Duration_Seconds, qint64(std::floor(wav.seconds())));
        QCOMPARE(d->labelDuration->text(), "Length " + clockText(qint64(std::floor(wav.seconds()))));
        QCOMPARE(d->track().s_File_Size, fileSizeText(QFileInfo(source).size()));
        QCOMPARE(d->labelSize->text(), d->track().s_File_Size);
        QCOMPARE(d->labelSource->text(), name);
        QCOMPARE(d->history().array_WAV_Files(), QStringList({d->track().s_WAV_File_Path}));
        QCOMPARE(m_app->u_Open_New_Document, 0u);
    }

    void aFileWithItsLengthInItsHeaderIsMeasuredWithoutARun() {
        // The room an import needs is measured before it runs: from the header
        // where the file has its length there, with ffmpeg where it has not.
        for (const char* extension : {"wav", "flac", "aiff", "mp3", "ogg"}) {
            const QString source = m_sources + "/tone." + QString(extension);
            const QList<PlannedRun> runs = plannedRuns(buildImportPlan(source, m_root.filePath("out.wav")));
            const bool probed = runs.first().arguments == QStringList({"-i", source});
            QCOMPARE(probed, QByteArray(extension) == "mp3" || QByteArray(extension) == "ogg");
        }
        // A header that cannot be read is measured by ffmpeg all the same.
        const QString broken = m_root.filePath("broken.wav");
        writeBytes(broken, "RIFF-not-really");
        QCOMPARE(plannedRuns(buildImportPlan(broken, m_root.filePath("out.wav"))).first().arguments,
                 QStringList({"-i", broken}));
    }

    void theSizeTextOfAKnownFile() {
        // 3.5 s of 16-bit stereo at 44.1 kHz and a 44-byte header: 617444 bytes.
        const QString source = m_sources + "/tone.wav";
        QCOMPARE(QFileInfo(source).size(), qint64(617444));
        Document* d = openInNewWindow(source);
        QSignalSpy loaded(d, &Document::loaded);
        QVERIFY(loaded.wait(30000));
        QCOMPARE(d->labelSize->text(), QString("602.97 KB"));
        QCOMPARE(d->labelDuration->text(), QString("Length 00:00:03"));
    }

    void randomBytesNamedMp3AreRefused() {
        const QString path = m_sources + "/not audio.mp3";
        writeBytes(path, randomBytes(7, 64 * 1024));
        expectUnreadable(path, nullptr, [&] { openInNewWindow(path); });
    }

    void anEmptyFileIsRefused() {
        const QString path = m_sources + "/empty.wav";
        writeBytes(path, {});
        expectUnreadable(path, nullptr, [&] { openInNewWindow(path); });
    }

    void rawAndCdaFilesAreRefused() {
        for (const QString name : {"pcm.raw", "track01.cda"}) {
            const QString path = m_sources + "/" + name;
            writeBytes(path, randomBytes(11, 44 * 1024));
            expectUnreadable(path, nullptr, [&] { openInNewWindow(path); });
        }
    }

    void aLoadedDocumentKeepsItsTrackWhenTheNewFileIsRefused() {
        Document* d = openInNewWindow(m_sources + "/tone.flac");
        QSignalSpy loaded(d, &Document::loaded);
        QVERIFY(loaded.wait(30000));
        const QString path = m_sources + "/garbage.ogg";
        writeBytes(path, randomBytes(3, 4096));
        expectUnreadable(path, d, [&] {
            gui::answerFileDialog(path);
            d->OnToolbarOpen();
        });
        QCOMPARE(d->track().i_Audio_Duration_Seconds, qint64(3));
    }

    void aFileDeletedBetweenChoosingAndConvertingIsRefused() {
        const QString path = m_sources + "/vanishing.wav";
        QVERIFY(QFile::copy(m_sources + "/tone.wav", path));
        // Keep the runner busy so the conversion waits while the file disappears.
        m_app->runner().submit(
            {{step::Run{Tool::FFmpeg, {"-re", "-f", "lavfi", "-i", "anullsrc=d=1", "-f", "null", "-"}}}},
            nullptr, {});
        const auto alert = gui::answerAlert();
        Document* d = openInNewWindow(path);
        QTRY_VERIFY(!d->findChild<QToolBar*>()->isEnabled() && !QApplication::activeModalWidget());
        QVERIFY(QFile::remove(path));
        QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 30000);
        QCOMPARE(alert->text, QString("Error"));
        QVERIFY(alert->informativeText.contains("vanishing.wav"));
        QCOMPARE(alert->buttons, QStringList({"Close"}));
        QVERIFY(gui::waitIdle(*m_app));
        QTRY_VERIFY(d->b_Audio_Loaded);
        QCOMPARE(d->windowTitle(), QString("silence.wav"));
        QVERIFY(d->findChild<QToolBar*>()->isEnabled());
    }
};

QTEST_MAIN(tst_Import)
#include "tst_import.moc"
