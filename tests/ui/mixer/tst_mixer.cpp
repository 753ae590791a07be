#include "application/AppDelegate.h"
#include "core/mixer/TrackLists.h"
#include "document/Document.h"
#include "document/WaveformPlot.h"
#include "mixer/MixerStripView.h"
#include "mixer/Window_Multiple_Tracks.h"
#include "plans/PlanRunner.h"
#include "support/Fixtures.h"
#include "support/Gui.h"
#include "support/Listening.h"

#include <QApplication>
#include <QDir>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QToolTip>

namespace {
QStringList column(Window_Multiple_Tracks& mixer, int c) {
    QStringList cells;
    QAbstractItemModel* model = mixer.tableAudioTracks->model();
    for (int r = 0; r < model->rowCount(); ++r)
        cells << model->index(r, c).data().toString();
    return cells;
}
} // namespace

using namespace tracklists;

// The track mixer window, with real documents, sox and the private sound server.
class tst_Mixer : public QObject {
    Q_OBJECT
    QTemporaryDir m_root;
    std::unique_ptr<AppDelegate> m_app;
    QString m_sources;

    QString tone(const QString& name, double seconds, int frequency) {
        const QString path = m_sources + "/" + name;
        if (!QFile::exists(path))
            fixtures::makeTone(path, seconds, frequency, 0.9);
        return path;
    }
    // Windows of tones of these lengths (and pitches), in this order.
    QList<Document*> open(const QList<std::pair<int, int>>& tones) {
        QList<Document*> documents;
        for (const auto& [seconds, frequency] : tones) {
            Document* d = gui::openInNewWindow(
                *m_app, tone(QString("tone %1 s %2 Hz.wav").arg(seconds).arg(frequency), seconds, frequency));
            if (!d)
                return {};
            documents << d;
        }
        return documents;
    }
    void select(Window_Multiple_Tracks& mixer, int row) { mixer.tableAudioTracks->selectRow(row); }
    bool join(Window_Multiple_Tracks& mixer) {
        QSignalSpy mixed(&mixer, &Window_Multiple_Tracks::mixed);
        mixer.btnMix->click();
        return mixed.wait(60000);
    }

private slots:
    void initTestCase() {
        m_app = gui::startApplication(m_root.filePath("home"));
        QVERIFY(m_app && gui::waitIdle(*m_app));
        m_sources = m_root.filePath("sources");
        QVERIFY(QDir().mkpath(m_sources));
    }
    void cleanup() {
        for (Document* d : m_app->documents())
            delete d;
        QVERIFY(gui::waitIdle(*m_app));
    }

    void fewerThanTwoWindowsIsRefused() {
        QVERIFY(open({{2, 440}}).size() == 1);
        const auto alert = gui::answerAlert();
        m_app->actionJoinTracks->trigger();
        QTRY_VERIFY(alert->shown);
        QCOMPARE(alert->informativeText,
                 QString("You need more than one audio track to be able to open the mixer."));
        QVERIFY(!QApplication::activeModalWidget());
        QCOMPARE(m_app->documents().size(), 1);
        QCOMPARE(m_app->actionJoinTracks->shortcut(), QKeySequence("Ctrl+J"));
    }

    void theListStacksTheTracksAndTheRowsMoveAndGo() {
        QCOMPARE(open({{10, 440}, {20, 660}, {30, 880}}).size(), 3);
        Window_Multiple_Tracks mixer(m_app->session(), [this] { return m_app->openTracks(); });
        mixer.show();
        QAbstractItemModel* model = mixer.tableAudioTracks->model();
        QCOMPARE(model->headerData(0, Qt::Horizontal).toString(), QString("Track"));
        QCOMPARE(model->headerData(1, Qt::Horizontal).toString(), QString("Length"));
        QCOMPARE(model->headerData(2, Qt::Horizontal).toString(), QString("Start"));
        QCOMPARE(model->headerData(2, Qt::Horizontal, Qt::UserRole).toString(), QString("key3"));
        QCOMPARE(column(mixer, 2), QStringList({"00:00:00", "00:00:10", "00:00:30"}));
        QCOMPARE(column(mixer, 1), QStringList({"00:00:10", "00:00:20", "00:00:30"}));
        QCOMPARE(column(mixer, 0).first(),
                 QFileInfo(m_app->documents()[0]->track().s_WAV_File_Path).fileName());
        QCOMPARE(mixer.Status_Play, 0u);
        QVERIFY(!mixer.btnPlay->isEnabled() && !mixer.btnPause->isEnabled() && !mixer.btnStop->isEnabled());

        // Nothing selected: the row actions do nothing.
        mixer.OnMoveUp();
        mixer.OnRemove();
        QCOMPARE(durations(mixer.arrayTracks), QList<quint64>({10, 20, 30}));

        select(mixer, 2);
        QCOMPARE(mixer.u_Current_Index_Selected, 2u);
        QCOMPARE(mixer.textPosition->text(), QString("30"));
        QCOMPARE(mixer.strip->selected(), 2);
        mixer.OnMoveUp();
        QCOMPARE(durations(mixer.arrayTracks), QList<quint64>({10, 30, 20}));
        QCOMPARE(column(mixer, 2), QStringList({"00:00:00", "00:00:10", "00:00:40"}));
        QCOMPARE(mixer.u_Current_Index_Selected, ~quint64(0)); // select again
        QVERIFY(mixer.tableAudioTracks->selectionModel()->selectedRows().isEmpty());
        QCOMPARE(starts(mixer.strip->tracks()), QList<quint64>({0, 10, 40}));

        select(mixer, 0);
        select(mixer, 2);
        mixer.OnMoveDown(); // the last row: nothing below it
        QCOMPARE(durations(mixer.arrayTracks), QList<quint64>({10, 30, 20}));

        select(mixer, 0);
        mixer.OnRemove();
        QCOMPARE(durations(mixer.arrayTracks), QList<quint64>({30, 20}));
        QCOMPARE(column(mixer, 2), QStringList({"00:00:00", "00:00:30"}));
        select(mixer, 1);
        const auto alert = gui::answerAlert();
        mixer.OnRemove();
        QTRY_VERIFY(alert->shown);
        QCOMPARE(alert->informativeText, QString("There must remain at least 2 tracks to mix."));
        QCOMPARE(alert->buttons, QStringList({"Close"}));
        QCOMPARE(mixer.arrayTracks.size(), 2);

        mixer.OnRefresh(); // back to every open track, stacked
        QCOMPARE(durations(mixer.arrayTracks), QList<quint64>({10, 20, 30}));

        mixer.resize(500, 200);
        QVERIFY(mixer.width() >= 600 && mixer.height() >= 300);
    }

    void aStartOfItsOwnAndStartsThatAreNotNumbers() {
        QCOMPARE(open({{10, 440}, {20, 660}}).size(), 2);
        Window_Multiple_Tracks mixer(m_app->session(), [this] { return m_app->openTracks(); });
        mixer.show();
        select(mixer, 1);
        mixer.textPosition->setText("5");
        mixer.OnUpdatePosition();
        QCOMPARE(starts(mixer.arrayTracks), QList<quint64>({0, 5}));
        // The row stays highlighted and addressed.
        QCOMPARE(mixer.tableAudioTracks->selectionModel()->selectedRows().value(0).row(), 1);
        QCOMPARE(mixer.u_Current_Index_Selected, 1u);
        QCOMPARE(column(mixer, 2), QStringList({"00:00:00", "00:00:05"}));
        QCOMPARE(starts(mixer.strip->tracks()), QList<quint64>({0, 5}));

        mixer.OnRefresh();
        select(mixer, 0);
        mixer.textPosition->setText("5");
        mixer.OnUpdatePosition(); // no row would start at 0: row 0 stays at 0
        QCOMPARE(starts(mixer.arrayTracks), QList<quint64>({0, 10}));

        for (const QString typed : {"five", "-3", "2.5", ""}) {
            const auto alert = gui::answerAlert();
            mixer.textPosition->setText(typed);
            mixer.OnUpdatePosition();
            QTRY_VERIFY(alert->shown);
            QVERIFY2(alert->informativeText.contains("whole number of seconds"), qPrintable(typed));
            QCOMPARE(starts(mixer.arrayTracks), QList<quint64>({0, 10}));
        }

        // Return in the start field sets the start and never joins.
        const qsizetype runs = m_app->runner().runs().size();
        select(mixer, 1);
        mixer.textPosition->setText("7");
        QTest::keyClick(mixer.textPosition, Qt::Key_Return);
        QCOMPARE(starts(mixer.arrayTracks), QList<quint64>({0, 7}));
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(m_app->runner().runs().size(), runs);
        QVERIFY(mixer.isVisible());
    }

    // A 10 s, B 20 s and C 5 s at 0, 10 and 30: a 35-second track in a new green window.
    void joiningOpensTheJoinedTrackAfterTenSeconds() {
        const QList<Document*> sources = open({{10, 440}, {20, 880}, {5, 1320}});
        QCOMPARE(sources.size(), 3);
        QStringList sourceFiles;
        for (Document* d : sources)
            sourceFiles << d->track().s_WAV_File_Path;
        gui::whenModal<Window_Multiple_Tracks>([](Window_Multiple_Tracks* mixer) {
            mixer->tableAudioTracks->selectRow(2);
            mixer->textPosition->setText("30");
            mixer->OnUpdatePosition();
            mixer->btnMix->click();
        });
        const qsizetype runsBefore = m_app->runner().runs().size();
        QElapsedTimer clock;
        clock.start();
        m_app->OnMultipleTrackConcatenate(); // returns when the mixer has closed
        QVERIFY2(clock.elapsed() >= 10000, qPrintable(QString::number(clock.elapsed())));
        const QList<ToolRun> runs = m_app->runner().runs().mid(runsBefore);
        QCOMPARE(runs.size(), 3);
        QCOMPARE(runs[0].arguments, QStringList({sourceFiles[1], paddedPath(sourceFiles[1]), "pad", "10"}));
        QCOMPARE(runs[1].arguments, QStringList({sourceFiles[2], paddedPath(sourceFiles[2]), "pad", "30"}));
        QCOMPARE(runs[2].arguments, QStringList({"-m", sourceFiles[0], paddedPath(sourceFiles[1]),
                                                 paddedPath(sourceFiles[2]), m_app->s_Mixed_WAV_File}));

        QCOMPARE(m_app->documents().size(), 4);
        Document* joined = m_app->documents().last();
        QTRY_VERIFY_WITH_TIMEOUT(joined->b_Audio_Loaded, 20000);
        QCOMPARE(joined->track().s_WAV_File_Path, m_app->s_Mixed_WAV_File);
        QCOMPARE(joined->windowTitle(), QFileInfo(m_app->s_Mixed_WAV_File).fileName());
        QCOMPARE(joined->track().i_Audio_Duration_Seconds, qint64(35));
        QCOMPARE(joined->audioPlot->color(), QColor(0, 255, 0));
        const std::vector<short> all = fixtures::samples(m_app->s_Mixed_WAV_File);
        QVERIFY(std::abs(pitch(all, 1, 9) - 440) < 5);
        QVERIFY(std::abs(pitch(all, 11, 29) - 880) < 8);
        QVERIFY(std::abs(pitch(all, 31, 34.5) - 1320) < 12);
        for (Document* d : sources) // the sources are as they were
            QCOMPARE(d->history().array_WAV_Files(), QStringList({d->track().s_WAV_File_Path}));
    }

    void closingTheMixerByHandOpensNothing() {
        QCOMPARE(open({{2, 440}, {2, 880}}).size(), 2);
        gui::whenModal<Window_Multiple_Tracks>([](Window_Multiple_Tracks* mixer) {
            QSignalSpy mixed(mixer, &Window_Multiple_Tracks::mixed);
            mixer->btnMix->click();
            if (mixed.wait(30000))
                mixer->reject(); // the window's close button, during the wait
        });
        const QString before = m_app->s_Mixed_WAV_File;
        m_app->actionJoinTracks->trigger();
        QVERIFY(m_app->s_Mixed_WAV_File != before);
        QVERIFY(QFile::exists(m_app->s_Mixed_WAV_File)); // joined, though not opened
        QTest::qWait(300);
        QCOMPARE(m_app->documents().size(), 2);
    }

    void joiningTwiceRestartsTheWaitAndPadsThePaddedCopies() {
        const QList<Document*> sources = open({{3, 440}, {2, 880}});
        QCOMPARE(sources.size(), 2);
        Window_Multiple_Tracks mixer(m_app->session(), [this] { return m_app->openTracks(); });
        mixer.show();
        QVERIFY(join(mixer));
        QVERIFY(mixer.labelClosing->text().contains("opens in"));
        QVERIFY(mixer.secondsUntilClose() >= 9);
        QCOMPARE(mixer.arrayTracks[1].s_Path, paddedPath(sources[1]->track().s_WAV_File_Path));
        QTest::qWait(1500);
        QVERIFY(mixer.secondsUntilClose() <= 9);
        QVERIFY(join(mixer));
        QVERIFY(mixer.secondsUntilClose() >= 9); // the wait starts again
        const QString twice = paddedPath(paddedPath(sources[1]->track().s_WAV_File_Path));
        QVERIFY(twice.endsWith("_PAD_PAD.wav"));
        QCOMPARE(mixer.arrayTracks[1].s_Path, twice);
        QCOMPARE(fixtures::wavInfo(twice).seconds(), 3.0 + 3.0 + 2.0); // padded by 3 s twice
        QVERIFY(std::abs(fixtures::wavInfo(mixer.mixedFile()).seconds() - 8.0) < 0.01);
        mixer.reject(); // closed by hand: nothing opens
        QVERIFY(!mixer.bOK);
        QCOMPARE(mixer.secondsUntilClose(), 0);
        QTest::qWait(300);
        QCOMPARE(m_app->documents().size(), 2);
    }

    void aTrackWhoseFileIsGoneIsNamedAndNothingRuns() {
        const QList<Document*> sources = open({{2, 440}, {2, 880}});
        QCOMPARE(sources.size(), 2);
        Window_Multiple_Tracks mixer(m_app->session(), [this] { return m_app->openTracks(); });
        mixer.show();
        QVERIFY(QFile::remove(sources[1]->track().s_WAV_File_Path));
        const qsizetype runs = m_app->runner().runs().size();
        const auto alert = gui::answerAlert();
        mixer.btnMix->click();
        QTRY_VERIFY(alert->shown);
        QVERIFY(alert->informativeText.contains(QFileInfo(sources[1]->track().s_WAV_File_Path).fileName()));
        QVERIFY(alert->informativeText.contains("Refresh"));
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(m_app->runner().runs().size(), runs);
        QCOMPARE(mixer.secondsUntilClose(), 0);
        QVERIFY(QFile::exists(sources[0]->track().s_WAV_File_Path));
    }

    // A start far out would pad until the disk is full: refused with the
    // longest a WAV holds before anything runs.
    void aStartPastWhatAWavHoldsIsRefusedBeforeAnythingRuns() {
        const QList<Document*> sources = open({{2, 440}, {2, 880}});
        QCOMPARE(sources.size(), 2);
        Window_Multiple_Tracks mixer(m_app->session(), [this] { return m_app->openTracks(); });
        mixer.show();
        select(mixer, 1);
        mixer.textPosition->setText("2147483647");
        mixer.OnUpdatePosition();
        QCOMPARE(starts(mixer.arrayTracks), QList<quint64>({0, 2147483647}));
        const QStringList files = QDir(m_app->session().s_Output_Folder).entryList(QDir::Files);
        const qsizetype runs = m_app->runner().runs().size();
        const auto alert = gui::answerAlert();
        mixer.btnMix->click();
        QTRY_VERIFY(alert->shown);
        QVERIFY2(alert->informativeText.startsWith("The joined track would last") &&
                     alert->informativeText.contains("at most 06:45:47"),
                 qPrintable(alert->informativeText));
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(m_app->runner().runs().size(), runs);
        QCOMPARE(QDir(m_app->session().s_Output_Folder).entryList(QDir::Files), files);
        QCOMPARE(mixer.secondsUntilClose(), 0);
    }

    // A join asked for while another operation runs waits its turn; a source
    // window closed meanwhile still gives its track, its files untouched.
    void aJoinWaitsForARunningPlanAndOutlivesAClosedSource() {
        const QList<Document*> sources = open({{2, 440}, {3, 880}});
        QCOMPARE(sources.size(), 2);
        const QString closedTrack = sources[1]->track().s_WAV_File_Path;
        const QByteArray closedBytes = fixtures::digest(closedTrack);
        Window_Multiple_Tracks mixer(m_app->session(), [this] { return m_app->openTracks(); });
        mixer.show();
        delete sources[1];
        m_app->runner().submit(
            {{step::Run{Tool::FFmpeg, {"-re", "-f", "lavfi", "-i", "anullsrc=d=1", "-f", "null", "-"}}}},
            nullptr, {});
        QSignalSpy mixed(&mixer, &Window_Multiple_Tracks::mixed);
        mixer.btnMix->click();
        QVERIFY(!mixer.btnMix->isEnabled());
        QCOMPARE(mixer.labelClosing->text(), QString("Joining the tracks…"));
        QVERIFY(mixed.wait(30000));
        QVERIFY(mixer.btnMix->isEnabled());
        QVERIFY(std::abs(fixtures::wavInfo(mixer.mixedFile()).seconds() - 5.0) < 0.01);
        QCOMPARE(fixtures::digest(closedTrack), closedBytes);
        mixer.reject();
    }

    void thePreviewPlaysTheSelectedRow() {
        QCOMPARE(open({{30, 1000}, {30, 440}}).size(), 2);
        Window_Multiple_Tracks mixer(m_app->session(), [this] { return m_app->openTracks(); });
        mixer.show();
        select(mixer, 0);
        QCOMPARE(mixer.Status_Play, 3u);
        QVERIFY(mixer.btnPlay->isEnabled() && !mixer.btnPause->isEnabled() && !mixer.btnStop->isEnabled());
        mixer.OnPlay();
        QCOMPARE(mixer.Status_Play, 1u);
        QVERIFY(!mixer.btnPlay->isEnabled() && mixer.btnPause->isEnabled() && mixer.btnStop->isEnabled());
        const std::vector<short> heard = listening::hear(500);
        QVERIFY2(!heard.empty(), "the preview is not heard");
        QVERIFY(std::abs(listening::frequency(heard) - 1000) < 15);
        mixer.OnPause();
        QCOMPARE(mixer.Status_Play, 2u);
        QVERIFY(mixer.btnPlay->isEnabled() && !mixer.btnPause->isEnabled() && mixer.btnStop->isEnabled());
        mixer.OnPlay(); // resumes
        QCOMPARE(mixer.Status_Play, 1u);
        select(mixer, 1); // another row stops the preview
        QCOMPARE(mixer.Status_Play, 3u);
        QVERIFY(mixer.btnPlay->isEnabled() && !mixer.btnStop->isEnabled());
        QTest::qWait(300);
        QVERIFY2(listening::level(listening::listen(400)) < 0.01, "the first row still plays");
        mixer.OnPlay();
        const std::vector<short> second = listening::hear(500);
        QVERIFY(!second.empty());
        QVERIFY(std::abs(listening::frequency(second) - 440) < 8);
        mixer.OnStop();
        QCOMPARE(mixer.Status_Play, 3u);
    }

    void theStripDrawsTheBarsWhereTheyBelong() {
        QCOMPARE(open({{10, 440}, {30, 660}}).size(), 2);
        Window_Multiple_Tracks mixer(m_app->session(), [this] { return m_app->openTracks(); });
        mixer.resize(800, 400);
        mixer.show();
        select(mixer, 1);
        QVERIFY(QTest::qWaitForWindowExposed(&mixer));
        const QImage image = mixer.strip->grab().toImage();
        const int w = image.width(), h = image.height();
        const QColor base = mixer.strip->palette().color(QPalette::Base);
        const QColor chosen = mixer.strip->palette().color(QPalette::Highlight);
        // Row 0 fills the first quarter of the upper lane, row 1 (selected) the rest of the lower.
        QVERIFY(image.pixelColor(w / 8, h / 4) != base);
        QCOMPARE(image.pixelColor(w / 2, h / 4), base);
        QCOMPARE(image.pixelColor(w * 7 / 8, 3 * h / 4 + 5), chosen);
        QCOMPARE(image.pixelColor(w / 8, 3 * h / 4), base);
    }

    // The rows show the working files' names; every cell's tooltip and each
    // bar of the strip also name the file the track came from.
    void theRowsAndTheBarsNameTheFileEachTrackCameFrom() {
        const QList<Document*> documents = open({{10, 440}, {30, 660}});
        QCOMPARE(documents.size(), 2);
        Window_Multiple_Tracks mixer(m_app->session(), [this] { return m_app->openTracks(); });
        mixer.resize(800, 400);
        mixer.show();
        QVERIFY(QTest::qWaitForWindowExposed(&mixer));
        QAbstractItemModel* model = mixer.tableAudioTracks->model();
        const QStringList sources = {"tone 10 s 440 Hz.wav", "tone 30 s 660 Hz.wav"};
        for (int row = 0; row < 2; ++row) {
            const QString working = QFileInfo(documents[row]->track().s_WAV_File_Path).fileName();
            QCOMPARE(documents[row]->labelSource->text(), sources[row]); // as the status bar says
            QCOMPARE(model->index(row, 0).data().toString(), working);
            for (int c = 0; c < 3; ++c)
                QCOMPARE(model->index(row, c).data(Qt::ToolTipRole).toString(),
                         working + ", from " + sources[row]);
        }
        // The strip: a hover over the second bar (lower lane, right three
        // quarters) shows its files; between bars, the strip's own words.
        MixerStripView* strip = mixer.strip;
        const QPoint overSecond(strip->width() * 5 / 8, strip->height() * 3 / 4);
        QHelpEvent hover(QEvent::ToolTip, overSecond, strip->mapToGlobal(overSecond));
        QApplication::sendEvent(strip, &hover);
        QTRY_VERIFY(QToolTip::isVisible());
        QCOMPARE(QToolTip::text(), model->index(1, 0).data(Qt::ToolTipRole).toString());
        QCOMPARE(strip->toolTipAt({strip->width() / 8, strip->height() / 4}),
                 model->index(0, 0).data(Qt::ToolTipRole).toString());
        QCOMPARE(strip->toolTipAt({strip->width() * 5 / 8, strip->height() / 4}),
                 QString("Where each track plays in the joined track"));
        QToolTip::hideText();
    }
};

QTEST_MAIN(tst_Mixer)
#include "tst_mixer.moc"
