// The manifest a running editor keeps of its windows, for a start after it
// died: what it says after edits, undo, a colour and a copy, and that a clean
// end removes it.

#include "ui/edit/EditingFixture.h"

#include "document/HistoryWindow.h"
#include "effects/EffectDialogs.h"
#include "session/Manifest.h"
#include "transport/TransportActions.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QMenu>
#include <QProcess>
#include <QTreeWidget>
#include <csignal>

class tst_Recovery : public EditingFixture {
    Q_OBJECT

    Manifest manifestNow() const {
        m_app->settleManifest();
        QFile file(manifestPath(m_app->session().s_Output_Folder));
        return file.open(QIODevice::ReadOnly) ? readManifest(file.readAll()) : Manifest();
    }
    static QStringList names(const QStringList& paths) {
        QStringList result;
        for (const QString& path : paths)
            result << QFileInfo(path).fileName();
        return result;
    }

    // What a window showed: its source, colour, position, labels and the
    // digest of each version's audio, by file name.
    static QJsonObject windowFacts(const Document* d) {
        QJsonArray files, labels, digests;
        for (const Version& v : d->history().versions()) {
            files.append(QFileInfo(v.path).fileName());
            labels.append(v.label);
            digests.append(QString::fromLatin1(fixtures::digest(v.path).toHex()));
        }
        return {{"source", d->labelSource->text()},
                {"colour", d->audioPlot->color().name()},
                {"position", double(d->history().u_array_WAV_Files_Position())},
                {"title", d->windowTitle()},
                {"files", files},
                {"labels", labels},
                {"digests", digests}};
    }

    // The facts of a window as they read after Reopen: its files back under
    // names no new result can take, the title naming the shown one so.
    static QJsonObject withRecoveredNames(QJsonObject facts) {
        QJsonArray files;
        for (const QJsonValue& file : facts.value("files").toArray())
            files.append(recoveredName(file.toString()));
        facts.insert("files", files);
        facts.insert("title", recoveredName(facts.value("title").toString()));
        return facts;
    }

    // Runs buildWindowsAndDie in a process of its own with `home`,
    // and returns what its windows held when it was killed.
    // `during` "echo": killed while an echo runs over a long track instead.
    QJsonArray windowsOfAKilledEditor(const QString& home, const QString& during = {}) {
        QProcess child;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("TANSELO_RECOVERY_HOME", home);
        environment.insert("TANSELO_RECOVERY_DURING", during);
        child.setProcessEnvironment(environment);
        child.setProcessChannelMode(QProcess::ForwardedChannels);
        // One test named, not all: the child dies in initTestCase, before any.
        child.start(QCoreApplication::applicationFilePath(), {"aCleanEndRemovesIt"});
        if (!child.waitForFinished(120000) || child.exitStatus() != QProcess::CrashExit)
            return {};
        QFile facts(home + "/facts.json");
        return facts.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(facts.readAll()).array()
                                               : QJsonArray();
    }

    // Starts the editor on `home` as main() does and answers its question.
    std::shared_ptr<gui::AlertSeen> restartAndAnswer(const QString& home, const QString& answer,
                                                     bool* reopened) {
        m_app.reset();
        m_app = gui::startApplication(home);
        const auto alert = gui::answerAlert(answer);
        *reopened = m_app && m_app->offerRecovery();
        return alert;
    }

    // The editor that dies, run in a process of its own by the tests below:
    // a silence window, a track with three versions after two undos and a
    // redo in a colour of its own, another track; what they hold is written
    // down, then the process is killed.
    // A ten-minute track, opened and cut once, then killed while an echo
    // over it runs: its output is half written.
    void dieDuringAnEcho() {
        const QString track = m_root.filePath("ten minutes.wav");
        fixtures::makeTone(track, 600, 440, 0.5);
        Document* d = gui::openInNewWindow(*m_app, track);
        QVERIFY(d);
        waitPastEveryStamp(m_app->session().s_Output_Folder);
        setMarkers(d, 0, 1, 0);
        QVERIFY(edit(d, [&] { d->editingActions().Operation_Delete(); }));
        waitPastEveryStamp(m_app->session().s_Output_Folder);
        writeFacts();
        d->effectActions().fillEffectsMenu();
        gui::whenModal<EffectDialog>("Window_Echo", [](EffectDialog* echo) { echo->OnOK(); });
        d->effectActions().popupMenuEffects->findChild<QAction*>("OnPopupEchoEntireTrack")->trigger();
        QVERIFY(QTest::qWaitFor([&] { return m_app->runner().runningProcessId() != 0; }, 10000));
        QTest::qWait(300); // its output has begun
        std::raise(SIGKILL);
    }

    void writeFacts() {
        m_app->settleManifest(); // what a kill a moment later would find
        QJsonArray facts;
        for (const Document* window : m_app->documents())
            if (window->history().array_WAV_Files() != QStringList{m_app->session().sSilenceWavPath})
                facts.append(windowFacts(window));
        QFile file(qEnvironmentVariable("TANSELO_RECOVERY_HOME") + "/facts.json");
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QJsonDocument(facts).toJson());
    }

    void buildWindowsAndDie() {
        if (qEnvironmentVariable("TANSELO_RECOVERY_DURING") == "echo")
            return dieDuringAnEcho();
        // The silence window every start shows records a take, which becomes its track.
        Document* recorded = gui::firstDocument(*m_app);
        QVERIFY(recorded);
        recorded->transportActions().OnToolbarRecord();
        QTRY_COMPARE(recorded->transportActions().m_RecordStatus, quint64(StatusRecording));
        QTest::qWait(1200);
        QSignalSpy taken(recorded, &Document::loaded);
        recorded->transportActions().OnToolbarStop();
        QVERIFY(taken.wait(20000) && gui::waitIdle(*m_app));
        QCOMPARE(recorded->history().u_array_WAV_Files_Position(), 1u); // the take-over state
        waitPastEveryStamp(m_app->session().s_Output_Folder);
        Document* d = openPattern();
        QVERIFY(d);
        for (float start : {20.0f, 0.0f}) { // two deletes, each in a second of its own
            setMarkers(d, start, start + 10, 0);
            QVERIFY(edit(d, [&] { d->editingActions().Operation_Delete(); }));
            waitPastEveryStamp(m_app->session().s_Output_Folder);
        }
        d->Operation_Undo();
        d->Operation_Undo();
        d->Operation_Redo();
        QVERIFY(gui::waitIdle(*m_app));
        d->changeColor(QColor("#c03070"));
        writeFacts();
        std::raise(SIGKILL);
    }

private slots:
    void initTestCase() {
        const QString home = qEnvironmentVariable("TANSELO_RECOVERY_HOME", m_root.filePath("home"));
        m_app = gui::startApplication(home);
        QVERIFY(m_app && gui::waitIdle(*m_app));
        m_pattern = fixtures::makePattern(m_root.path());
        if (qEnvironmentVariableIsSet("TANSELO_RECOVERY_HOME")) {
            buildWindowsAndDie();
            QFAIL("the editor was to be killed before this");
        }
    }

    void theManifestFollowsTheWindows() {
        Document* first = gui::firstDocument(*m_app);
        QVERIFY(first);
        Document* d = openPattern();
        QVERIFY(d);
        setMarkers(d, 20, 50, 0);
        QVERIFY(edit(d, [&] { d->editingActions().Operation_Cut(); }));
        waitPastEveryStamp(m_app->session().s_Output_Folder);
        setMarkers(d, 0, 10, 0);
        QVERIFY(edit(d, [&] { d->editingActions().Operation_Delete(); }));
        d->Operation_Undo();
        QTRY_VERIFY(!m_app->runner().isBusy());
        d->changeColor(QColor("#c03070"));

        // The first window, on its untouched silence track, has nothing to lose.
        const Manifest m = manifestNow();
        QCOMPARE(m.windows.size(), 1);
        const ManifestWindow& w = m.windows[0];
        QCOMPARE(w.source, QString("pattern.wav"));
        QCOMPARE(w.colour, QString("#c03070"));
        QCOMPARE(w.position, 1);
        QStringList files, labels;
        for (const ManifestVersion& v : w.versions) {
            files << v.file;
            labels << v.label;
        }
        QCOMPARE(files, names(d->history().array_WAV_Files()));
        QCOMPARE(labels.size(), 3);
        QCOMPARE(labels[0], QString("Opened pattern.wav"));
        QCOMPARE(w.versions[0].made, d->history().versions()[0].made);
        QCOMPARE(m.clipboard, QFileInfo(m_app->session().s_Copied_WAV_File).fileName());

        // An edit in it puts it in; a closed window leaves.
        setMarkers(first, 0, 50, 0);
        QVERIFY(edit(first, [&] { first->editingActions().Operation_Delete(); }));
        QCOMPARE(manifestNow().windows.size(), 2);
        QCOMPARE(manifestNow().windows[0].source, QString("silence.wav"));
        QCOMPARE(manifestNow().windows[0].versions.size(), 2);
        delete first;
        QTRY_COMPARE(manifestNow().windows.size(), 1);
        QCOMPARE(manifestNow().windows[0].source, QString("pattern.wav"));
    }

    void aCleanEndRemovesIt() {
        const QString manifest = manifestPath(m_app->session().s_Output_Folder);
        QVERIFY(QFileInfo::exists(manifest));
        m_app.reset();
        QVERIFY(!QFileInfo::exists(manifest));
    }

    void aKilledEditorsWindowsAreReopenedWithTheirHistories() {
        const QString home = m_root.filePath("killed");
        const QJsonArray before = windowsOfAKilledEditor(home);
        QCOMPARE(before.size(), 2); // the recording and the edited track
        QCOMPARE(before[0].toObject().value("labels").toArray(), QJsonArray({"Recorded"}));
        QCOMPARE(before[1].toObject().value("files").toArray().size(), 3);
        bool reopened = false;
        const auto alert = restartAndAnswer(home, "Reopen", &reopened);
        QVERIFY(alert->shown);
        QCOMPARE(alert->text, QString("Tanselo quit unexpectedly. Reopen the 2 tracks that were open?"));
        QCOMPARE(alert->buttons, QStringList({"Reopen", "Discard"}));
        QVERIFY(reopened);
        QCOMPARE(m_app->documents().size(), 2);
        for (Document* d : m_app->documents())
            QTRY_VERIFY_WITH_TIMEOUT(d->b_Audio_Loaded, 20000);
        QVERIFY(gui::waitIdle(*m_app));
        for (qsizetype i = 0; i < before.size(); ++i) {
            const QJsonObject was = withRecoveredNames(before[i].toObject());
            const QJsonObject is = windowFacts(m_app->documents()[i]);
            for (const char* fact : {"source", "colour", "position", "title", "files", "labels", "digests"})
                QCOMPARE(is.value(fact), was.value(fact));
        }
        // The History window lists the same labels.
        for (qsizetype i = 0; i < before.size(); ++i) {
            Document* d = m_app->documents()[i];
            d->actionHistory->trigger();
            auto* window = d->findChild<HistoryWindow*>();
            QVERIFY(window);
            QJsonArray listed;
            for (int row = 0; row < window->tableVersions->topLevelItemCount(); ++row)
                listed.append(window->tableVersions->topLevelItem(row)->text(HistoryWindow::ColumnLabel));
            QCOMPARE(listed, before[i].toObject().value("labels").toArray());
            window->close();
        }
        // Undo and redo go on across the kill, to the same audio.
        Document* edited = m_app->documents()[1];
        const QJsonArray digests = before[1].toObject().value("digests").toArray();
        edited->Operation_Undo();
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(QString::fromLatin1(fixtures::digest(edited->track().s_WAV_File_Path).toHex()),
                 digests[0].toString());
        edited->Operation_Redo();
        edited->Operation_Redo();
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(QString::fromLatin1(fixtures::digest(edited->track().s_WAV_File_Path).toHex()),
                 digests[2].toString());
        QVERIFY(!QFileInfo::exists(recoveryFolderPath(m_app->session().s_Output_Folder)));
    }

    void aKillDuringAnEffectGivesBackTheVersionsBeforeIt() {
        const QString home = m_root.filePath("during");
        const QJsonArray before = windowsOfAKilledEditor(home, "echo");
        QCOMPARE(before.size(), 1);
        bool reopened = false;
        const auto alert = restartAndAnswer(home, "Reopen", &reopened);
        QVERIFY(reopened);
        QCOMPARE(alert->text, QString("Tanselo quit unexpectedly. Reopen the track that was open?"));
        QCOMPARE(alert->informativeText, QString());
        QCOMPARE(m_app->documents().size(), 1);
        Document* d = m_app->documents().first();
        QTRY_VERIFY_WITH_TIMEOUT(d->b_Audio_Loaded, 20000);
        QVERIFY(gui::waitIdle(*m_app));
        const QJsonObject is = windowFacts(d);
        for (const char* fact : {"source", "position", "files", "labels", "digests"})
            QCOMPARE(is.value(fact), withRecoveredNames(before[0].toObject()).value(fact));
        // The half-written result is neither listed nor left in the folder.
        QStringList files = QDir(m_app->session().s_Output_Folder).entryList(QDir::Files);
        files.removeAll("silence.wav");
        QStringList listed;
        for (const QJsonValue& name : is.value("files").toArray())
            listed << name.toString();
        QCOMPARE(files, listed);
    }

    void discardingEmptiesTheFolderAsAnyStart() {
        const QString home = m_root.filePath("discarded");
        QCOMPARE(windowsOfAKilledEditor(home).size(), 2);
        bool reopened = true;
        const auto alert = restartAndAnswer(home, "Discard", &reopened);
        QVERIFY(alert->shown);
        QVERIFY(!reopened);
        QVERIFY(m_app->documents().isEmpty());
        QVERIFY(gui::waitIdle(*m_app));
        const QString folder = m_app->session().s_Output_Folder;
        QCOMPARE(QDir(folder).entryList(QDir::Files | QDir::NoDotAndDotDot), QStringList({"silence.wav"}));
        QVERIFY(!QFileInfo::exists(recoveryFolderPath(folder)));
        // And the start after a clean end asks nothing.
        m_app.reset();
        m_app = gui::startApplication(home);
        QVERIFY(!m_app->offerRecovery());
    }
};

QTEST_MAIN(tst_Recovery)
#include "tst_recovery.moc"
