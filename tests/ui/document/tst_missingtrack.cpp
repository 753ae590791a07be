// A track's file removed outside the editor: every operation that would
// read it says so first, runs nothing and leaves the window as it was; undo
// and redo never move onto a version whose file is gone.

#include "application/AppDelegate.h"
#include "document/Document.h"
#include "document/Window_AF_WAV.h"
#include "support/Fixtures.h"
#include "support/Gui.h"
#include "timeline/View_Audio_Wave.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

class tst_MissingTrack : public QObject {
    Q_OBJECT
    QTemporaryDir m_root;
    std::unique_ptr<AppDelegate> m_app;
    QString m_source;

    // A window with two versions: the opened tone and its reverse.
    Document* openTwoVersions() {
        Document* d = gui::openInNewWindow(*m_app, m_source);
        if (!d)
            return nullptr;
        // In the second of the opening, the reverse would take the opened
        // version's name (as two results of one second do): wait past it.
        const QString opened = QFileInfo(d->track().s_WAV_File_Path).fileName().left(19);
        if (!QTest::qWaitFor(
                [&] { return QDateTime::currentDateTime().toString("yyyy-MM-dd-HH-mm-ss") > opened; }, 5000))
            return nullptr;
        QSignalSpy adopted(d, &Document::adopted);
        d->effectActions().OnPopupReverseEntireTrack();
        if (!adopted.wait(20000) || !gui::waitIdle(*m_app))
            return nullptr;
        return d;
    }

    // `act` is refused with the alert `expected` and changes nothing.
    void checkRefused(Document* d, const std::function<void()>& act, const QString& expected) {
        const QStringList versions = d->history().array_WAV_Files();
        const quint64 position = d->history().u_array_WAV_Files_Position();
        const QString path = d->track().s_WAV_File_Path, clip = m_app->session().s_Copied_WAV_File;
        const qsizetype runs = m_app->runner().runs().size();
        const auto alert = gui::answerAlert();
        act();
        QTRY_VERIFY_WITH_TIMEOUT(alert->shown, 5000);
        QVERIFY2(alert->informativeText.startsWith(expected), qPrintable(alert->informativeText));
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(m_app->runner().runs().size(), runs);
        QCOMPARE(d->history().array_WAV_Files(), versions);
        QCOMPARE(d->history().u_array_WAV_Files_Position(), position);
        QCOMPARE(d->track().s_WAV_File_Path, path);
        QCOMPARE(d->windowTitle(), QFileInfo(path).fileName());
        QCOMPARE(m_app->session().s_Copied_WAV_File, clip);
    }

private slots:
    void initTestCase() {
        m_app = gui::startApplication(m_root.filePath("home"));
        QVERIFY(m_app && gui::waitIdle(*m_app));
        m_source = m_root.filePath("tone.wav");
        fixtures::makeTone(m_source, 4, 440);
    }
    void cleanup() { QVERIFY(gui::closeAllWindows(*m_app)); }

    void everyOperationSaysTheTracksFileIsGone() {
        Document* d = openTwoVersions();
        QVERIFY(d);
        const QString gone = d->track().s_WAV_File_Path;
        QVERIFY(QFile::remove(gone));
        const QString said =
            QString("The track's file “%1” is no longer there; it was removed outside Tanselo. "
                    "Undo to an earlier version, or open the file again.")
                .arg(QFileInfo(gone).fileName());
        checkRefused(
            d, [d] { d->effectActions().OnPopupReverseEntireTrack(); }, said);
        checkRefused(
            d, [d] { d->editingActions().Operation_Copy(); }, said);
        checkRefused(
            d, [d] { d->editingActions().Operation_Cut(); }, said);
        checkRefused(
            d, [d] { d->editingActions().Operation_Delete(); }, said);
        checkRefused(
            d, [d] { d->splitActions().OnPopupSplit2PartsCurrentPosition(); }, said);
        checkRefused(
            d, [d] { d->btnSave->trigger(); }, said);
        checkRefused(
            d, [d] { d->transportActions().OnPopupMenuPlayFromStart(); }, said);
        QVERIFY(!qobject_cast<Window_AF_WAV*>(QApplication::activeModalWidget()));
        // Undo reaches the opened version, which is there, and works again.
        d->Operation_Undo();
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(d->history().u_array_WAV_Files_Position(), quint64(0));
        QCOMPARE(d->track().i_Audio_Duration_Seconds, qint64(4));
        QSignalSpy adopted(d, &Document::adopted);
        d->effectActions().OnPopupReverseEntireTrack();
        QVERIFY(adopted.wait(20000));
    }

    void undoAndRedoNeverMoveOntoAVersionThatIsGone() {
        Document* d = openTwoVersions();
        QVERIFY(d);
        const QStringList versions = d->history().array_WAV_Files();
        // Redo onto the reverse, removed while the window shows the tone.
        d->Operation_Undo();
        QVERIFY(gui::waitIdle(*m_app));
        QVERIFY(QFile::remove(versions[1]));
        const QString said = QString("The version “%1” is no longer there; it was removed outside Tanselo.")
                                 .arg(QFileInfo(versions[1]).fileName());
        checkRefused(
            d, [d] { d->Operation_Redo(); }, said);
        checkRefused(
            d, [d] { d->moveToVersion(1); }, said);
        QCOMPARE(d->track().i_Audio_Duration_Seconds, qint64(4)); // still the tone, shown whole
        // Undo onto the tone, removed while the window shows a later version.
        Document* e = openTwoVersions();
        QVERIFY(e);
        const QString first = e->history().array_WAV_Files().first();
        QVERIFY(QFile::remove(first));
        checkRefused(
            e, [e] { e->Operation_Undo(); },
            QString("The version “%1” is no longer there").arg(QFileInfo(first).fileName()));
    }
};

QTEST_MAIN(tst_MissingTrack)
#include "tst_missingtrack.moc"
