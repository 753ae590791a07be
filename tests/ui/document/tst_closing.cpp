// Closing a window and quitting ask first when a window holds versions made
// since its track was opened or last exported: Export… (closing goes on
// after an export), Close Without Exporting, or Cancel. Windows with nothing
// new close as they always have.

#include "ui/edit/EditingFixture.h"

#include "document/ExportActions.h"
#include "document/Window_AF_WAV.h"
#include "session/Manifest.h"

#include <QComboBox>
#include <QLabel>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>

namespace {
// Answers the export dialogs as they come, one destination each in turn: a
// WAV written there, then Close. `written` counts the exports that ended
// with a file.
void exportWhenAsked(QStringList destinations, const std::shared_ptr<int>& written) {
    if (destinations.isEmpty())
        return;
    const QString destination = destinations.takeFirst();
    gui::whenModal<Window_AF_WAV>([destination, destinations, written](Window_AF_WAV* w) {
        QSignalSpy ended(w, &Window_AF_WAV::exportEnded);
        gui::answerFileDialog(destination);
        gui::answerAlert("Close"); // the success alert
        QTest::mouseClick(w->btnExport, Qt::LeftButton);
        if ((ended.size() > 0 || ended.wait(60000)) && ended.last().at(1).toBool())
            ++*written;
        QTest::mouseClick(w->btnClose, Qt::LeftButton);
        exportWhenAsked(destinations, written);
    });
}

bool sameSamples(const QString& a, const QString& b) {
    const std::vector<short> left = fixtures::samples(a);
    return !left.empty() && left == fixtures::samples(b);
}
} // namespace

class tst_Closing : public EditingFixture {
    Q_OBJECT

    // The pattern, opened from a file of its own name, with 0–10 % deleted.
    Document* editedTrack(const QString& name) {
        const QString path = m_root.filePath(name);
        if (!QFileInfo::exists(path) && !QFile::copy(m_pattern, path))
            return nullptr;
        Document* d = gui::openInNewWindow(*m_app, path);
        if (!d)
            return nullptr;
        waitPastEveryStamp(m_app->session().s_Output_Folder);
        setMarkers(d, 0, 10, 0);
        if (!edit(d, [&] { d->editingActions().Operation_Delete(); }))
            return nullptr;
        waitPastEveryStamp(m_app->session().s_Output_Folder);
        return d;
    }

    // Closes `d` answering the question with `press`; what was asked.
    std::shared_ptr<gui::AlertSeen> closeAnswering(Document* d, const QString& press, bool* closed) {
        const auto alert = gui::answerAlert(press);
        *closed = d->close();
        if (!alert->shown)
            alert->stop = true;
        return alert;
    }

    // The quit of a process of its own (the editor ends itself): started as
    // the user starts it, one track edited, Quit answered with `answer`.
    // Returns its exit code; -1 when it did not end by itself.
    int quitInAChild(const QString& home, const QString& answer, const QString& exportTo = {}) {
        QProcess child;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("TANSELO_QUIT_HOME", home);
        environment.insert("TANSELO_QUIT_ANSWER", answer);
        environment.insert("TANSELO_QUIT_EXPORT", exportTo);
        child.setProcessEnvironment(environment);
        child.setProcessChannelMode(QProcess::ForwardedChannels);
        child.start(QCoreApplication::applicationFilePath(), {"aWindowWithNothingNewClosesWithoutAQuestion"});
        if (!child.waitForFinished(120000) || child.exitStatus() != QProcess::NormalExit)
            return -1;
        return child.exitCode();
    }

    Manifest manifestNow() const {
        m_app->settleManifest();
        QFile file(manifestPath(m_app->session().s_Output_Folder));
        return file.open(QIODevice::ReadOnly) ? readManifest(file.readAll()) : Manifest();
    }

    static QString readText(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    // The child's part: what it had is written down in its home, then Quit
    // is pressed. An editor still running afterwards says so and ends.
    void quitAsTheChild() {
        const QString home = qEnvironmentVariable("TANSELO_QUIT_HOME");
        Document* d = editedTrack("interview.wav");
        QVERIFY(d);
        QFile facts(home + "/facts.txt");
        QVERIFY(facts.open(QIODevice::WriteOnly));
        facts.write((m_app->session().s_Output_Folder + '\n' + d->track().s_WAV_File_Path).toUtf8());
        facts.close();
        const auto written = std::make_shared<int>(0);
        if (const QString to = qEnvironmentVariable("TANSELO_QUIT_EXPORT"); !to.isEmpty())
            exportWhenAsked({to}, written);
        const auto alert = gui::answerAlert(qEnvironmentVariable("TANSELO_QUIT_ANSWER"));
        m_app->actionQuit->trigger();
        m_app->settleManifest();
        QFile after(home + "/still-running.txt");
        QVERIFY(after.open(QIODevice::WriteOnly));
        after.write(alert->text.toUtf8());
        after.close();
        std::fflush(nullptr);
        std::_Exit(3);
    }

private slots:
    void initTestCase() {
        const QString home = qEnvironmentVariable("TANSELO_QUIT_HOME", m_root.filePath("home"));
        m_app = gui::startApplication(home);
        QVERIFY(m_app && gui::waitIdle(*m_app));
        m_pattern = fixtures::makePattern(m_root.path());
        if (qEnvironmentVariableIsSet("TANSELO_QUIT_HOME"))
            quitAsTheChild();
    }

    void cleanup() { QVERIFY(gui::closeAllWindows(*m_app)); }

    void aWindowWithNothingNewClosesWithoutAQuestion() {
        // Opened and closed: nothing to ask about.
        Document* d = openPattern();
        QVERIFY(d);
        QVERIFY(!d->hasUnexportedChanges());
        bool closed = false;
        auto alert = closeAnswering(d, "Cancel", &closed);
        QVERIFY(closed);
        QVERIFY(!alert->shown);
        // Edited, then undone back to the file that was opened: nothing new either.
        d = editedTrack("undone.wav");
        QVERIFY(d);
        QVERIFY(d->hasUnexportedChanges());
        d->Operation_Undo();
        QVERIFY(gui::waitIdle(*m_app));
        QVERIFY(!d->hasUnexportedChanges());
        alert = closeAnswering(d, "Cancel", &closed);
        QVERIFY(closed);
        QVERIFY(!alert->shown);
        // The silence window every start shows holds nothing of the user's.
        Document* silence = gui::firstDocument(*m_app);
        QVERIFY(silence);
        QVERIFY(!silence->hasUnexportedChanges());
    }

    void closingAnEditedWindowAsksAndCancelKeepsIt() {
        Document* d = editedTrack("interview.wav");
        QVERIFY(d);
        const QStringList versions = d->history().array_WAV_Files();
        bool closed = true;
        const auto alert = closeAnswering(d, "Cancel", &closed);
        QVERIFY(alert->shown);
        QCOMPARE(alert->text, QString("Export the changes to “interview.wav” before closing?"));
        QCOMPARE(alert->buttons, QStringList({"Export…", "Close Without Exporting", "Cancel"}));
        QVERIFY(!closed);
        QVERIFY(d->isVisible());
        QCOMPARE(d->history().array_WAV_Files(), versions);
        for (const QString& version : versions)
            QVERIFY(QFileInfo::exists(version));
        // Escape is Cancel too.
        bool escaped = false;
        gui::whenModal<QMessageBox>([&](QMessageBox* box) {
            escaped = true;
            QTest::keyClick(box, Qt::Key_Escape);
        });
        QVERIFY(!d->close());
        QVERIFY(escaped);
        QVERIFY(d->isVisible());
        // Close Without Exporting closes it: its versions are out of reach,
        // listed nowhere a start after a crash would look.
        QPointer<Document> window = d;
        QVERIFY(closeAnswering(d, "Close Without Exporting", &closed)->shown);
        QVERIFY(closed);
        QTRY_VERIFY(!window);
        QTRY_VERIFY(manifestNow().windows.isEmpty());
    }

    void exportThenClose() {
        Document* d = editedTrack("interview.wav");
        QVERIFY(d);
        const std::vector<short> edited = fixtures::samples(d->track().s_WAV_File_Path);
        QVERIFY(!edited.empty());
        const QString out = m_root.filePath("interview-edited.wav");
        const auto written = std::make_shared<int>(0);
        exportWhenAsked({out}, written);
        QPointer<Document> window = d;
        bool closed = false;
        QVERIFY(closeAnswering(d, "Export…", &closed)->shown);
        QCOMPARE(*written, 1);
        QVERIFY(closed);
        QTRY_VERIFY(!window);
        QVERIFY(fixtures::samples(out) == edited);
    }

    void anExportDialogClosedWithoutAFileKeepsTheWindow() {
        Document* d = editedTrack("interview.wav");
        QVERIFY(d);
        gui::whenModal<Window_AF_WAV>(
            [](Window_AF_WAV* w) { QTest::mouseClick(w->btnClose, Qt::LeftButton); });
        bool closed = true;
        QVERIFY(closeAnswering(d, "Export…", &closed)->shown);
        QVERIFY(!closed);
        QVERIFY(d->isVisible());
        QVERIFY(d->hasUnexportedChanges());
    }

    void anExportedVersionClosesWithoutAQuestion() {
        Document* d = editedTrack("interview.wav");
        QVERIFY(d);
        const auto written = std::make_shared<int>(0);
        exportWhenAsked({m_root.filePath("exported.wav")}, written);
        d->btnSave->trigger();
        QCOMPARE(*written, 1);
        QVERIFY(!d->hasUnexportedChanges());
        // The manifest marks it, so a window reopened after a crash asks as this one would.
        const Manifest m = manifestNow();
        QCOMPARE(m.windows.size(), 1);
        QCOMPARE(m.windows[0].kept, 1);
        // A new edit is new again; undoing it to the export is not.
        setMarkers(d, 0, 10, 0);
        QVERIFY(edit(d, [&] { d->editingActions().Operation_Delete(); }));
        QVERIFY(d->hasUnexportedChanges());
        d->Operation_Undo();
        QVERIFY(gui::waitIdle(*m_app));
        bool closed = false;
        QVERIFY(!closeAnswering(d, "Cancel", &closed)->shown);
        QVERIFY(closed);
    }

    void quitAsksOnceForEveryWindowWithSomethingNew() {
        Document* first = editedTrack("first.wav");
        Document* clean = openPattern();
        Document* second = editedTrack("second.wav");
        QVERIFY(first && clean && second);
        // Cancel: nothing ends.
        auto alert = gui::answerAlert("Cancel");
        QVERIFY(!m_app->readyToQuit());
        QVERIFY(alert->shown);
        QCOMPARE(alert->text, QString("Export the changes to 2 tracks before quitting?"));
        QVERIFY2(alert->informativeText.startsWith("“first.wav” and “second.wav” hold versions"),
                 qPrintable(alert->informativeText));
        QCOMPARE(alert->buttons, QStringList({"Export…", "Close Without Exporting", "Cancel"}));
        QCOMPARE(m_app->documents(), (QList<Document*>{first, clean, second}));
        QVERIFY(first->hasUnexportedChanges() && second->hasUnexportedChanges());
        // Export…: one export dialog after the other, then quitting goes on.
        const QString toFirst = m_root.filePath("first-out.wav"),
                      toSecond = m_root.filePath("second-out.wav");
        const auto written = std::make_shared<int>(0);
        exportWhenAsked({toFirst, toSecond}, written);
        alert = gui::answerAlert("Export…");
        QVERIFY(m_app->readyToQuit());
        QCOMPARE(*written, 2);
        QVERIFY(sameSamples(toFirst, first->track().s_WAV_File_Path));
        QVERIFY(sameSamples(toSecond, second->track().s_WAV_File_Path));
        // Now nothing is new: Quit asks nothing.
        alert = gui::answerAlert("Cancel");
        QVERIFY(m_app->readyToQuit());
        QTest::qWait(100);
        QVERIFY(!alert->shown);
        alert->stop = true;
        // An export dialog closed without a file stops the quit.
        setMarkers(first, 0, 10, 0);
        QVERIFY(edit(first, [&] { first->editingActions().Operation_Delete(); }));
        gui::whenModal<Window_AF_WAV>(
            [](Window_AF_WAV* w) { QTest::mouseClick(w->btnClose, Qt::LeftButton); });
        alert = gui::answerAlert("Export…");
        QVERIFY(!m_app->readyToQuit());
        QCOMPARE(alert->text, QString("Export the changes to “first.wav” before closing?"));
        // Close Without Exporting: quitting goes on, nothing written.
        alert = gui::answerAlert("Close Without Exporting");
        QVERIFY(m_app->readyToQuit());
        QVERIFY(alert->shown);
    }

    void quitWithCancelKeepsTheEditorRunning() {
        const QString home = m_root.filePath("cancel");
        QCOMPARE(quitInAChild(home, "Cancel"), 3);
        QCOMPARE(readText(home + "/still-running.txt"),
                 QString("Export the changes to “interview.wav” before closing?"));
        const QStringList facts = readText(home + "/facts.txt").split('\n');
        QCOMPARE(facts.size(), 2);
        QVERIFY(QFileInfo::exists(manifestPath(facts[0]))); // no clean end
    }

    void quitWithoutExportingEndsTheEditor() {
        const QString home = m_root.filePath("discard");
        QCOMPARE(quitInAChild(home, "Close Without Exporting"), 0);
        QVERIFY(!QFileInfo::exists(home + "/still-running.txt"));
        const QStringList facts = readText(home + "/facts.txt").split('\n');
        QCOMPARE(facts.size(), 2);
        QVERIFY(!QFileInfo::exists(manifestPath(facts[0]))); // a clean end
    }

    void quitWithExportWritesTheFileThenEnds() {
        const QString home = m_root.filePath("export");
        const QString out = m_root.filePath("interview-final.wav");
        QCOMPARE(quitInAChild(home, "Export…", out), 0);
        QVERIFY(!QFileInfo::exists(home + "/still-running.txt"));
        const QStringList facts = readText(home + "/facts.txt").split('\n');
        QCOMPARE(facts.size(), 2);
        QVERIFY(!QFileInfo::exists(manifestPath(facts[0])));
        QVERIFY2(sameSamples(out, facts[1]),
                 qPrintable(out)); // the work folder keeps its files until the next start
    }
};

QTEST_MAIN(tst_Closing)
#include "tst_closing.moc"
