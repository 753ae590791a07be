#include "application/AppDelegate.h"
#include "document/Document.h"
#include "document/WaveformPlot.h"
#include "support/Fixtures.h"
#include "support/Gui.h"
#include "timeline/SetSelectionDialog.h"
#include "timeline/TimeStrings.h"
#include "timeline/View_Audio_Wave.h"
#include "timeline/View_Time_Rule.h"
#include "timeline/ZoomActions.h"

#include <QAction>
#include <QColorDialog>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

namespace {
using States = QList<bool>;
States buttonStates(const Document* d) {
    // Play, Record, Pause, Stop, SoundPreferences, ZoomPlus, ZoomMinus, Save, Undo, Redo, Copy, Cut, Paste,
    // Delete, Tools
    return {d->btnPlay->isEnabled(),
            d->btnRecord->isEnabled(),
            d->btnPause->isEnabled(),
            d->btnStop->isEnabled(),
            d->btnSoundPreferences->isEnabled(),
            d->btnZoomPlus->isEnabled(),
            d->btnZoomMinus->isEnabled(),
            d->btnSave->isEnabled(),
            d->btnUndo->isEnabled(),
            d->btnRedo->isEnabled(),
            d->btnCopy->isEnabled(),
            d->btnCut->isEnabled(),
            d->btnPaste->isEnabled(),
            d->btnDelete->isEnabled(),
            d->btnTools->isEnabled()};
}
const States AfterFirstTimer = {false, true, false, false, true, false, false, false,
                                true,  true, false, false, true, false, false};
const States AfterLoading = {true, true, false, false, true, true, true, true,
                             true, true, true,  true,  true, true, true};

bool waitLoaded(Document* d) {
    QSignalSpy loaded(d, &Document::loaded);
    return loaded.wait(20000);
}
} // namespace

class tst_Document : public QObject {
    Q_OBJECT
    QTemporaryDir m_root;
    std::unique_ptr<AppDelegate> m_app;
    QString m_folder;
    QString m_tone;

    QString workCopy(const QString& name, double seconds) {
        const QString path = m_folder + "/" + name;
        fixtures::makeTone(path, seconds);
        return path;
    }

private slots:
    void initTestCase() {
        m_app = gui::startApplication(m_root.filePath("home"));
        QVERIFY(m_app);
        m_folder = m_app->session().s_Output_Folder;
        m_tone = m_root.filePath("tone 10 s.wav");
        fixtures::makeTone(m_tone, 10, 1000, 0.5);
    }

    void cleanup() {
        for (Document* d : m_app->documents())
            delete d;
        QVERIFY(gui::waitIdle(*m_app));
        // Loading over the silence track deletes it with the old history, as
        // it must; the next test starts from a fresh one.
        if (!QFile::exists(m_app->session().sSilenceWavPath))
            QCOMPARE(fixtures::run("sox", {"-n", "-r", "44100", "-c", "2", m_app->session().sSilenceWavPath,
                                           "trim", "0.0", "60.0"}),
                     0);
    }

    void buttonStatesAfterTheFirstTimerAndAfterLoading() {
        Document* d = m_app->newDocument();
        QCOMPARE(d->minimumSize(), QSize(800, 140));
        QVERIFY(QTest::qWaitFor([d] { return d->audioPlot->plotOpacity() == 0.5; }, 5000));
        QVERIFY(!d->b_Audio_Loaded);
        QCOMPARE(buttonStates(d), AfterFirstTimer);
        QCOMPARE(d->audioPlot->backgroundColor(), QColor(0, 0, 0));
        QCOMPARE(d->audioPlot->color(), QColor(0, 255, 0));
        QCOMPARE(d->track().f_Selection_Start, 40.0f);
        QCOMPARE(d->track().f_Selection_End, 60.0f);
        QVERIFY(waitLoaded(d));
        QCOMPARE(buttonStates(d), AfterLoading);
        QVERIFY(d->b_Audio_Loaded && d->viewAudioPlot->b_Audio_Loaded && d->viewTimeRule->b_Audio_Loaded);
        QCOMPARE(d->windowTitle(), QString("silence.wav"));
        QCOMPARE(d->track().i_Audio_Duration_Seconds, qint64(60));
        QCOMPARE(d->track().f_Audio_Length, 60.0f);
        QCOMPARE(d->viewTimeRule->i_Audio_Duration_Seconds, qint64(60));
        QCOMPARE(d->labelDuration->text(), QString("Length 00:01:00"));
        QCOMPARE(d->history().array_WAV_Files(), QStringList({m_app->session().sSilenceWavPath}));
    }

    void aCancelledOpenDialogLoadsTheSilenceTrack() {
        const auto dialog = gui::answerFileDialog({});
        m_app->openDocument();
        QCOMPARE(m_app->u_Open_New_Document, 1u);
        Document* d = m_app->documents().last();
        QVERIFY(waitLoaded(d));
        QCOMPARE(m_app->u_Open_New_Document, 0u);
        QCOMPARE(d->windowTitle(), QString("silence.wav"));
        QCOMPARE(d->track().s_WAV_File_Path, m_app->session().sSilenceWavPath);
        QCOMPARE(d->track().s_WAV_File_URL, m_app->session().sSilenceWavURL);
        QCOMPARE(d->track().i_Audio_Duration_Seconds, qint64(60));
        QCOMPARE(d->history().array_WAV_Files(), QStringList({m_app->session().sSilenceWavPath}));

        // The dialog asked for one existing file of the fifteen accepted kinds.
        QVERIFY(dialog->shown);
        QCOMPARE(dialog->title, QString("Select an audio file."));
        QCOMPARE(dialog->fileMode, int(QFileDialog::ExistingFile));
        QCOMPARE(dialog->nameFilters.size(), 1);
        const QStringList offered = dialog->nameFilters.first().section('(', 1).chopped(1).split(' ');
        QCOMPARE(offered,
                 QStringList({"*.ac3", "*.aifc", "*.aiff", "*.aif", "*.amr", "*.au", "*.caf", "*.cda",
                              "*.flac", "*.mp3", "*.ogg", "*.raw", "*.spx", "*.wav", "*.wma"}));
    }

    void theWaveformOfAToneShowsGreenOverBlack() {
        Document* d = gui::firstDocument(*m_app);
        QVERIFY(d);
        QVERIFY(gui::openInto(d, m_tone, [d] { d->OnToolbarOpen(); }));
        QCOMPARE(d->track().s_File_Path, m_tone);
        d->resize(1000, 400);
        QTest::qWait(50);
        QCOMPARE(d->audioPlot->geometry(), d->viewAudioPlot->rect());
        QCOMPARE(d->audioPlot->points().size(), std::size_t(1024));
        const QImage image = d->viewAudioPlot->grab().toImage();
        const int mid = image.height() / 2;
        const QColor wave = image.pixelColor(image.width() / 10, mid);
        QVERIFY2(wave.green() > 100 && wave.red() < 40 && wave.blue() < 40, qPrintable(wave.name()));
        const QColor above = image.pixelColor(image.width() / 10, 3);
        QVERIFY2(above.red() < 10 && above.green() < 10 && above.blue() < 10, qPrintable(above.name()));
        const QColor inBand = image.pixelColor(image.width() / 2, mid);
        QVERIFY2(inBand.green() > inBand.red() + 40 && inBand.red() > 40, qPrintable(inBand.name()));
        const QColor right = image.pixelColor(image.width() * 95 / 100, mid);
        QVERIFY2(right.green() > 100, qPrintable(right.name()));
    }

    void editingInputIsDisabledWhileAPlanRuns() {
        Document* d = gui::firstDocument(*m_app);
        QVERIFY(d);
        QVERIFY(d->centralWidget()->isEnabled());
        const QToolBar* toolBar = d->findChild<QToolBar*>();
        QVERIFY(toolBar->isEnabled());
        bool done = false;
        m_app->runner().submit(
            {{step::Run{Tool::FFmpeg, {"-re", "-f", "lavfi", "-i", "anullsrc=d=1", "-f", "null", "-"}}}},
            nullptr, [&](const PlanOutcome&) { done = true; });
        QVERIFY(!toolBar->isEnabled());
        QVERIFY(!d->centralWidget()->isEnabled());
        QVERIFY(!m_app->actionUndo->isEnabled());
        QTRY_COMPARE(d->statusBar()->currentMessage(), QString("Running ffmpeg (step 1 of 1)…"));
        QTRY_VERIFY_WITH_TIMEOUT(done, 10000);
        QTRY_VERIFY(toolBar->isEnabled());
        QVERIFY(d->centralWidget()->isEnabled());
        QVERIFY(m_app->actionUndo->isEnabled());
        QVERIFY(d->statusBar()->currentMessage().isEmpty());
    }

    void undoAndRedoReloadTheChosenVersion() {
        Document* d = gui::firstDocument(*m_app);
        QVERIFY(d);
        const QString two = workCopy("2024-01-01-00-00-02.wav", 2);
        const QString three = workCopy("2024-01-01-00-00-03.wav", 3);
        for (const QString& version : {two, three}) {
            d->track().s_WAV_File_Path = version;
            d->Add_WAV_File_To_Undo_Redo_Array("Cut");
        }
        d->track().f_Selection_Start = 12;
        d->track().f_Selection_End = 34;
        d->Operation_Undo();
        QVERIFY(waitLoaded(d));
        QCOMPARE(d->track().s_WAV_File_Path, two);
        QCOMPARE(d->windowTitle(), QString("2024-01-01-00-00-02.wav"));
        QCOMPARE(d->track().s_WAV_File_URL, "file://" + two);
        QCOMPARE(d->track().i_Audio_Duration_Seconds, qint64(2));
        QCOMPARE(d->track().f_Audio_Length, 2.0f);
        QCOMPARE(d->viewTimeRule->i_Audio_Duration_Seconds, qint64(2));
        QCOMPARE(d->track().f_Selection_Start, 12.0f);
        QCOMPARE(d->track().f_Selection_End, 34.0f);
        d->Operation_Undo();
        QVERIFY(waitLoaded(d));
        QCOMPARE(d->windowTitle(), QString("silence.wav"));
        QCOMPARE(d->track().s_WAV_File_URL, m_app->session().sSilenceWavURL);
        QCOMPARE(d->track().i_Audio_Duration_Seconds, qint64(60));
        d->Operation_Undo(); // stays at the oldest version, reloaded all the same
        QVERIFY(waitLoaded(d));
        QCOMPARE(d->history().u_array_WAV_Files_Position(), 0u);
        d->Operation_Redo();
        QVERIFY(waitLoaded(d));
        d->Operation_Redo();
        QVERIFY(waitLoaded(d));
        QCOMPARE(d->track().s_WAV_File_Path, three);
        QCOMPARE(d->track().i_Audio_Duration_Seconds, qint64(3));
        d->Operation_Redo(); // nothing undone: the newest version again
        QVERIFY(waitLoaded(d));
        QCOMPARE(d->track().s_WAV_File_Path, three);
        QCOMPARE(buttonStates(d), AfterLoading);
    }

    void aVersionOutsideTheWorkFolderIsShownFromInsideIt() {
        Document* d = gui::firstDocument(*m_app);
        QVERIFY(d);
        const QString outside = m_root.filePath("outside.wav");
        fixtures::makeTone(outside, 4);
        d->track().s_WAV_File_Path = outside;
        d->Add_WAV_File_To_Undo_Redo_Array("Cut");
        d->Operation_Redo();
        QVERIFY(waitLoaded(d));
        QCOMPARE(d->track().s_WAV_File_Path, outside);
        QCOMPARE(d->track().s_WAV_File_URL, "file://" + m_folder + "/outside.wav");
        QCOMPARE(d->track().i_Audio_Duration_Seconds, qint64(4));
    }

    void undoBeforeAnythingIsLoadedDoesNothing() {
        Document* d = m_app->newDocument();
        d->Operation_Undo();
        d->Operation_Redo();
        QVERIFY(d->history().array_WAV_Files().isEmpty());
        QCOMPARE(d->history().u_array_WAV_Files_Position(), 0u);
        QVERIFY(waitLoaded(d));
    }

    void openingIntoTheSameWindowRestartsTheHistoryAndDeletesItsFiles() {
        Document* d = gui::firstDocument(*m_app);
        QVERIFY(d);
        const QString edit = workCopy("2024-01-01-00-01-00.wav", 1);
        d->track().s_WAV_File_Path = edit;
        d->Add_WAV_File_To_Undo_Redo_Array("Cut");
        // Two versions: the editor asks first, and Open… goes on as always.
        const auto asked = gui::answerAlert("Open…");
        QVERIFY(gui::openInto(d, m_tone, [d] { d->OnToolbarOpen(); }));
        QVERIFY(asked->shown);
        QCOMPARE(d->track().s_File_Path, m_tone);
        QCOMPARE(d->track().i_Audio_Duration_Seconds, qint64(10));
        QCOMPARE(d->history().array_WAV_Files(), QStringList({d->track().s_WAV_File_Path}));
        QCOMPARE(d->history().u_array_WAV_Files_Length(), 1u);
        QVERIFY(!QFile::exists(edit));
        QVERIFY(!QFile::exists(m_app->session().sSilenceWavPath)); // listed, so deleted: required
        const QString imported = d->track().s_WAV_File_Path;
        QVERIFY(imported.startsWith(m_folder + "/"));

        // Cancelling the dialog there replaces the track with the (now missing) silence track.
        gui::answerFileDialog({});
        d->OnToolbarOpen();
        QVERIFY(waitLoaded(d));
        QCOMPARE(d->windowTitle(), QString("silence.wav"));
        QCOMPARE(d->history().array_WAV_Files(), QStringList({m_app->session().sSilenceWavPath}));
        QCOMPARE(d->track().i_Audio_Duration_Seconds, qint64(0));
        QVERIFY(!QFile::exists(imported));
        QVERIFY(QFile::exists(m_tone)); // the opened file is never touched
    }

    void zoomMinusAtOneStaysOneAndLaysTheViewsOutAgain() {
        Document* d = gui::firstDocument(*m_app);
        QVERIFY(d);
        d->resize(1000, 400);
        QTest::qWait(20);
        d->viewAudioPlot->grab();
        const int w = d->scrollviewAudioPlot->viewport()->width();
        QCOMPARE(d->viewAudioPlot->f_AudioPlot_Width, float(w));
        d->resize(1300, 400); // the view grows with the window, the plot width waits
        QTest::qWait(20);
        d->viewAudioPlot->grab();
        const int wider = d->scrollviewAudioPlot->viewport()->width();
        QCOMPARE(d->viewAudioPlot->width(), wider);
        QCOMPARE(d->viewAudioPlot->f_AudioPlot_Width, float(w));
        QCOMPARE(d->audioPlot->width(), w);
        d->zoomActions().OnToolbarZoomMinus();
        QCOMPARE(d->zoomActions().u_Zoom_Factor, 1u);
        QCOMPARE(d->viewAudioPlot->f_AudioPlot_Width, float(wider));
        QCOMPARE(d->audioPlot->width(), wider);
    }

    void zoomPlusThreeTimesMakesEverythingFourWidthsWide() {
        Document* d = gui::firstDocument(*m_app);
        QVERIFY(d);
        d->resize(1000, 400);
        QTest::qWait(20);
        d->track().f_Audio_Position = 15.0f;
        d->viewAudioPlot->grab();
        const int w = d->scrollviewAudioPlot->viewport()->width();
        for (int i = 0; i < 3; ++i)
            d->btnZoomPlus->trigger();
        QCOMPARE(d->zoomActions().u_Zoom_Factor, 4u);
        QCOMPARE(d->viewAudioPlot->width(), 4 * w);
        QCOMPARE(d->viewTimeRule->width(), 4 * w);
        QCOMPARE(d->viewTimePlusAudioPlot->width(), 4 * w);
        QCOMPARE(d->viewAudioPlot->f_AudioPlot_Width, float(4 * w));
        QCOMPARE(d->audioPlot->width(), 4 * w);
        QVERIFY(d->viewTimeRule->geometry().bottom() <
                d->viewAudioPlot->geometry().top()); // ruler above the plot
        QCOMPARE(d->scrollviewAudioPlot->horizontalScrollBar()->maximum(), 3 * w);
        // The markers keep their percentages and move to their new x.
        d->viewAudioPlot->grab();
        QCOMPARE(d->track().f_Selection_Start, 40.0f);
        QCOMPARE(d->viewAudioPlot->rect_Selection_Start.x(), 0.4 * 4 * w - 10);
        QCOMPARE(d->viewAudioPlot->rect_Selection_End.x(), 0.6 * 4 * w - 10);
        QCOMPARE(d->viewAudioPlot->rect_Position_Top.x(), 0.25 * 4 * w - 10);
        d->btnZoomMinus->trigger();
        QCOMPARE(d->zoomActions().u_Zoom_Factor, 3u);
        QCOMPARE(d->viewAudioPlot->width(), 3 * w);
    }

    void setSelectionSelectsTheTypedTimesAndShowsThem() {
        // A quarter of an hour: the second from 7:29.50 to 7:30.50, typed.
        const QString quarter = m_root.filePath("quarter of an hour.wav");
        QVERIFY(fixtures::writeWav(quarter, std::vector<short>(2 * 44100, 0), 900));
        Document* d = gui::openInNewWindow(*m_app, quarter);
        QVERIFY(d);
        d->resize(1000, 400);
        d->show();
        QVERIFY(QTest::qWaitForWindowExposed(d));
        d->zoomActions().setZoomFactor(30);
        QScrollBar* bar = d->scrollviewAudioPlot->horizontalScrollBar();
        QCOMPARE(bar->value(), 0);

        // A malformed time keeps the dialog open and says why; then the right ones.
        bool refused = false, closedByRefusal = true;
        gui::whenModal<SetSelectionDialog>([&](SetSelectionDialog* dialog) {
            dialog->fieldStart->setText("7 and a half minutes");
            dialog->fieldEnd->setText("00:07:30.50");
            QTest::keyClick(dialog->fieldEnd, Qt::Key_Return);
            refused = dialog->labelProblem->isVisible() &&
                      dialog->labelProblem->text().startsWith("“7 and a half minutes” is not a time.");
            closedByRefusal = !dialog->isVisible();
            dialog->fieldStart->setText("00:07:29.50");
            QTest::keyClick(dialog->fieldEnd, Qt::Key_Return);
        });
        d->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(d));
        QTest::keyClick(d, Qt::Key_G, Qt::ControlModifier);
        QVERIFY(refused);
        QVERIFY(!closedByRefusal);
        const SegmentVariables v = d->track().Calculate_Segment_Variables();
        QCOMPARE(v.sStartSelection, QString("00:07:29.50"));
        QCOMPARE(v.sEndSelection, QString("00:07:30.50"));
        QCOMPARE(v.sDurationSelection, QString("00:00:01.00"));
        QCOMPARE(d->labelSelection->text(), QString("Selection 00:07:29.50 – 00:07:30.50 (00:00:01.00)"));
        QCOMPARE(d->track().f_Audio_Position, v.f_StartSelection);
        // The view went there.
        const int content = d->viewAudioPlot->width(), visible = d->scrollviewAudioPlot->viewport()->width();
        const double from = 449.5 / 900 * content, to = 450.5 / 900 * content;
        QVERIFY2(from >= bar->value() && to <= bar->value() + visible,
                 qPrintable(QString("%1–%2 against %3+%4").arg(from).arg(to).arg(bar->value()).arg(visible)));

        // Cancel leaves everything as it was.
        gui::whenModal<SetSelectionDialog>([](SetSelectionDialog* dialog) {
            dialog->fieldStart->setText("1");
            dialog->reject();
        });
        d->actionSetSelection->trigger();
        QCOMPARE(d->track().Calculate_Segment_Variables().sStartSelection, QString("00:07:29.50"));
    }

    void theStatusBarFollowsTheMarkers() {
        Document* d = gui::firstDocument(*m_app);
        QVERIFY(d);
        QCOMPARE(d->labelSelection->text(), QString("Selection 00:00:24.00 – 00:00:36.00 (00:00:12.00)"));
        QCOMPARE(d->labelPosition->text(), QString("Position 00:00:00.00"));
        d->resize(1000, 400);
        QTest::qWait(20);
        d->viewAudioPlot->grab();
        const int w = d->viewAudioPlot->width();
        QTest::mouseClick(d->viewAudioPlot, Qt::LeftButton, {}, QPoint(w / 4, 10));
        QCOMPARE(d->labelPosition->text(), "Position " + timeString(d->track().f_Audio_Position));
        QVERIFY(d->labelPosition->text().startsWith("Position 00:00:1"));
        const SegmentVariables v = d->track().Calculate_Segment_Variables();
        QCOMPARE(v.sStartSelection, QString("00:00:24.00"));
        QCOMPARE(v.sEndSelection, QString("00:00:36.00"));
        QCOMPARE(v.sDurationLastSegment, QString("00:00:24.00"));
        QCOMPARE(v.sStart, QString("00:00:00.00"));
    }

    void aColourChosenInTheColourDialogBecomesTheWaveformColour() {
        Document* d = gui::firstDocument(*m_app);
        QVERIFY(d);
        bool asked = false;
        gui::whenModal<QColorDialog>([&](QColorDialog* dialog) {
            asked = true;
            QCOMPARE(dialog->currentColor(), QColor(0, 255, 0));
            dialog->setCurrentColor(QColor(200, 30, 180));
            dialog->accept();
        });
        d->btnColour->trigger();
        QVERIFY(asked);
        QCOMPARE(d->audioPlot->color(), QColor(200, 30, 180));
    }

    void aBatchEntryShownByAnOpenDocumentRefreshesItThere() {
        // P1 is already open: that document reloads it (and clears its history,
        // deleting P1, as required); the one new document takes entry 0 again
        // and the mode stays 2 for the next new document, which takes P2.
        Document* d = gui::firstDocument(*m_app);
        QVERIFY(d);
        const QString p1 = workCopy("split_PART_1.wav", 1);
        const QString p2 = workCopy("split_PART_2.wav", 2);
        d->track().s_WAV_File_Path = p1;
        d->track().s_WAV_File_URL = "file://" + p1;
        d->Add_WAV_File_To_Undo_Redo_Array("Cut");
        m_app->array_Pre_Generated_Docs = {p1, p2};
        m_app->u_Pre_Generated_Docs_Index = 0;
        m_app->color_Pre_Generated_Docs = QColor(0, 0, 255);
        QSignalSpy refreshed(d, &Document::loaded);
        m_app->openPreGeneratedDocuments();
        QCOMPARE(m_app->documents().size(), 2);
        QVERIFY(refreshed.wait(10000));
        QCOMPARE(d->audioPlot->color(), QColor(0, 0, 255));
        QCOMPARE(d->track().i_Audio_Duration_Seconds, qint64(1));
        QCOMPARE(d->history().array_WAV_Files(), QStringList({p1}));
        QVERIFY(!QFile::exists(p1));
        Document* added = m_app->documents()[1];
        QVERIFY(QTest::qWaitFor([&] { return added->b_Audio_Loaded; }, 10000));
        QCOMPARE(added->windowTitle(), QString("split_PART_1.wav"));
        QCOMPARE(added->track().i_Audio_Duration_Seconds, qint64(0));
        QCOMPARE(m_app->u_Open_New_Document, 2u);
        Document* next = m_app->newDocument();
        QVERIFY(QTest::qWaitFor([&] { return next->b_Audio_Loaded; }, 10000));
        QCOMPARE(next->windowTitle(), QString("split_PART_2.wav"));
        QCOMPARE(m_app->u_Open_New_Document, 0u);
    }

    void theWindowCannotShrinkBelowItsMinimum() {
        Document* d = gui::firstDocument(*m_app);
        QVERIFY(d);
        d->resize(100, 50);
        QVERIFY(d->width() >= 800);
        QVERIFY(d->height() >= 140);
    }

    void aBatchOpensInNewWindowsInListOrderInTheProducersColour() {
        Document* producer = gui::firstDocument(*m_app);
        QVERIFY(producer);
        const QStringList parts = {workCopy("part_PART_1.wav", 1), workCopy("part_PART_2.wav", 2),
                                   workCopy("part_PART_3.wav", 3)};
        m_app->array_Pre_Generated_Docs = parts;
        m_app->u_Pre_Generated_Docs_Index = 0;
        m_app->color_Pre_Generated_Docs = QColor(255, 0, 0);
        m_app->openPreGeneratedDocuments();
        QCOMPARE(m_app->documents().size(), 4);
        const QList<Document*> added = m_app->documents().mid(1);
        QVERIFY(QTest::qWaitFor(
            [&] {
                return std::all_of(added.begin(), added.end(), [](Document* d) { return d->b_Audio_Loaded; });
            },
            20000));
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(added[i]->windowTitle(), QString("part_PART_%1.wav").arg(i + 1));
            QCOMPARE(added[i]->track().i_Audio_Duration_Seconds, qint64(i + 1));
            QCOMPARE(added[i]->audioPlot->color(), QColor(255, 0, 0));
            QCOMPARE(added[i]->history().array_WAV_Files(),
                     QStringList({parts[i]})); // used in place, not copied
        }
        QCOMPARE(m_app->u_Open_New_Document, 0u);
        QCOMPARE(m_app->u_Pre_Generated_Docs_Index, 3u);
    }

    // Each window takes the opening mode the application had when it was made:
    // a new-window command right after a batch neither turns the batch's
    // windows into file dialogs nor takes one of their entries.
    void aWindowAskedForDuringABatchsStartUpOpensItsOwnWay() {
        Document* producer = gui::firstDocument(*m_app);
        QVERIFY(producer);
        const QStringList parts = {workCopy("mode_PART_1.wav", 1), workCopy("mode_PART_2.wav", 2)};
        m_app->array_Pre_Generated_Docs = parts;
        m_app->u_Pre_Generated_Docs_Index = 0;
        m_app->openPreGeneratedDocuments();
        const auto dialog = gui::answerFileDialog(m_tone);
        m_app->openDocument(); // within the batch windows' start-up wait
        QCOMPARE(m_app->documents().size(), 4);
        const QList<Document*> added = m_app->documents().mid(1);
        QVERIFY(QTest::qWaitFor(
            [&] {
                return std::all_of(added.begin(), added.end(), [](Document* d) { return d->b_Audio_Loaded; });
            },
            20000));
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(added[0]->windowTitle(), QString("mode_PART_1.wav"));
        QCOMPARE(added[1]->windowTitle(), QString("mode_PART_2.wav"));
        QVERIFY(dialog->shown);
        QCOMPARE(added[2]->track().s_File_Path, m_tone);
        QCOMPARE(m_app->u_Open_New_Document, 0u);
    }

    // A file opened with the toolbar before the start-up load begins is the
    // window's track; the start-up load does not replace it.
    void aFileOpenedBeforeTheStartUpLoadIsKept() {
        m_app->u_Open_New_Document = 0;
        Document* d = m_app->newDocument();
        QVERIFY(!d->btnOpen->isEnabled()); // the toolbar waits for the start-up load...
        QVERIFY(!d->btnPlay->isEnabled()); // ...and shows the start-up states at once
        QVERIFY(gui::openInto(d, m_tone,
                              [d] { d->OnToolbarOpen(); })); // called directly, as a menu command would
        QTest::qWait(400);
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(d->track().s_File_Path, m_tone);
        QCOMPARE(d->history().array_WAV_Files(), QStringList({d->track().s_WAV_File_Path}));
        QVERIFY(d->btnOpen->isEnabled());
    }

    void anEmptyBatchOpensNothingAndLeavesTheModeAtTwo() {
        Document* producer = gui::firstDocument(*m_app);
        QVERIFY(producer);
        m_app->array_Pre_Generated_Docs.clear();
        m_app->u_Pre_Generated_Docs_Index = 0;
        m_app->openPreGeneratedDocuments();
        QCOMPARE(m_app->documents().size(), 1);
        QCOMPARE(m_app->u_Open_New_Document, 2u);
        // A document made now finds no entry and shows the silence track instead.
        Document* next = m_app->newDocument();
        QVERIFY(waitLoaded(next));
        QCOMPARE(next->windowTitle(), QString("silence.wav"));
        m_app->u_Open_New_Document = 0;
    }
};

QTEST_MAIN(tst_Document)
#include "tst_document.moc"
