#include "application/AppDelegate.h"
#include "document/Document.h"
#include "document/WaveformPlot.h"
#include "document/Window_Split_Silence.h"
#include "support/DialogDriving.h"
#include "support/Fixtures.h"
#include "support/Gui.h"
#include "timeline/View_Audio_Wave.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QSignalSpy>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>

using namespace dialogs;

namespace {
// A document's history, as a split must leave it.
struct History {
    QString current;
    QStringList versions;
    quint64 position, length;
    bool operator==(const History&) const = default;
};
History historyOf(const Document* d) {
    return {d->track().s_WAV_File_Path, d->history().array_WAV_Files(),
            d->history().u_array_WAV_Files_Position(), d->history().u_array_WAV_Files_Length()};
}
} // namespace

// The three splits with the real tools, and the windows their pieces open in.
class tst_Split : public QObject {
    Q_OBJECT
    QTemporaryDir m_root;
    std::unique_ptr<AppDelegate> m_app;
    QString m_pattern; // tone 0–4 s, silence 4–6 s, tone 6–10 s
    QString m_speech;  // three phrases with 3 s of silence between them
    QList<double> m_phraseLengths;

    Document* openPattern() { return gui::openInNewWindow(*m_app, m_pattern); }

    // Runs a split and waits until the windows it opened (or refreshed) have loaded.
    QList<Document*> split(Document* d, const std::function<void()>& command) {
        const QList<Document*> before = m_app->documents();
        QSignalSpy handed(d, &Document::splitHandedOver);
        command();
        if (!handed.wait(30000))
            return {};
        QList<Document*> added = m_app->documents();
        for (Document* old : before)
            added.removeAll(old);
        if (!QTest::qWaitFor(
                [&] {
                    return std::all_of(added.begin(), added.end(),
                                       [](Document* a) { return a->b_Audio_Loaded; });
                },
                20000) ||
            !gui::waitIdle(*m_app))
            return {};
        return added;
    }

    static void checkPiece(const Document* piece, const QString& path, double seconds) {
        QCOMPARE(piece->track().s_WAV_File_Path, path);
        QCOMPARE(piece->windowTitle(), QFileInfo(path).fileName());
        QCOMPARE(piece->history().array_WAV_Files(), QStringList({path}));
        const double length = fixtures::wavInfo(path).seconds();
        QVERIFY2(std::abs(length - seconds) < 0.03, qPrintable(QString("%1: %2 s").arg(path).arg(length)));
    }

    // Drives the split-on-silence dialog: the minimum typed, then OK.
    static void answerSilenceDialog(const QString& minimum) {
        gui::whenModal<Window_Split_Silence>([minimum](Window_Split_Silence* w) {
            typeInto(w->textMinimum, minimum);
            clickButton(w, QDialogButtonBox::Ok);
        });
    }

private slots:
    void initTestCase() {
        m_app = gui::startApplication(m_root.filePath("home"));
        QVERIFY(m_app && gui::waitIdle(*m_app));
        m_pattern = fixtures::makePattern(m_root.path());

        // Each phrase spoken, made a working WAV, its own leading and trailing quiet trimmed.
        const QStringList phrases{"Good morning, and welcome to the recording.",
                                  "This is the second phrase of the test.", "And this one is the last."};
        QStringList parts;
        const QString silence = m_root.filePath("gap3.wav");
        fixtures::makeSilence(silence, 3);
        for (int i = 0; i < phrases.size(); ++i) {
            const QString spoken = m_root.filePath(QString("spoken%1.wav").arg(i));
            const QString phrase = m_root.filePath(QString("phrase%1.wav").arg(i));
            QCOMPARE(fixtures::run("espeak-ng", {"-w", spoken, phrases[i]}), 0);
            QCOMPARE(
                fixtures::run("sox", {spoken, "-r", "44100", "-c", "2", "-b", "16", phrase, "silence", "1",
                                      "0.01", "0.5%", "reverse", "silence", "1", "0.01", "0.5%", "reverse"}),
                0);
            m_phraseLengths.append(fixtures::wavInfo(phrase).seconds());
            parts << phrase;
            if (i + 1 < phrases.size())
                parts << silence;
        }
        m_speech = m_root.filePath("speech.wav");
        fixtures::join(parts, m_speech);
    }

    void cleanup() {
        for (Document* d : m_app->documents())
            delete d;
        QVERIFY(gui::waitIdle(*m_app));
        m_app->u_Open_New_Document = 0;
    }

    void theToolsMenuHoldsTheThreeSplits() {
        Document* d = openPattern();
        QVERIFY(d);
        QVERIFY(d->editingActions().popupMenuTools->actions().contains(
            d->splitActions().popupMenuSplit->menuAction()));
        QStringList names;
        for (QAction* action : d->splitActions().popupMenuSplit->actions())
            names << action->objectName();
        QCOMPARE(names, QStringList({"OnPopupSplit2PartsCurrentPosition",
                                     "OnPopupSplit3PartsBeforeSelectionAfter", "OnPopupSplitOnSilence"}));
    }

    void twoPartsAtThePlayPositionOpenInTheSourcesColour() {
        Document* d = openPattern();
        QVERIFY(d);
        d->changeColor(QColor(200, 40, 160));
        d->track().f_Audio_Position = 4;
        const History before = historyOf(d);
        QAction* command =
            d->splitActions().popupMenuSplit->findChild<QAction*>("OnPopupSplit2PartsCurrentPosition");
        const QList<Document*> pieces = split(d, [&] { command->trigger(); });
        QCOMPARE(pieces.size(), 2);
        const QString folder = m_app->session().s_Output_Folder,
                      base = QFileInfo(d->track().s_WAV_File_Path).completeBaseName();
        checkPiece(pieces[0], folder + "/" + base + "_PART_1.wav", 4.0);
        checkPiece(pieces[1], folder + "/" + base + "_PART_2.wav", 6.0);
        QVERIFY(fixtures::rms(pieces[1]->track().s_WAV_File_Path, 0.1, 1.9) <
                0.001); // the silence leads piece 2
        QVERIFY(fixtures::rms(pieces[1]->track().s_WAV_File_Path, 2.1, 5.9) > 0.05);
        for (const Document* piece : pieces)
            QCOMPARE(piece->audioPlot->color(), QColor(200, 40, 160));
        QVERIFY(historyOf(d) == before);
        QVERIFY(QFile::exists(d->track().s_WAV_File_Path));
        QCOMPARE(m_app->u_Open_New_Document, 0u);
    }

    void threePartsAroundTheSelection() {
        Document* d = openPattern();
        QVERIFY(d);
        d->track().f_Selection_Start = 20;
        d->track().f_Selection_End = 50;
        const History before = historyOf(d);
        const QList<Document*> pieces =
            split(d, [&] { d->splitActions().OnPopupSplit3PartsBeforeSelectionAfter(); });
        QCOMPARE(pieces.size(), 3);
        const QString base =
            m_app->session().s_Output_Folder + "/" + QFileInfo(d->track().s_WAV_File_Path).completeBaseName();
        checkPiece(pieces[0], base + "_PART_1.wav", 2.0);
        checkPiece(pieces[1], base + "_PART_2.wav", 3.0);
        checkPiece(pieces[2], base + "_PART_3.wav", 5.0);
        for (const Document* piece : pieces)
            QCOMPARE(piece->audioPlot->color(), QColor(0, 255, 0));
        QVERIFY(historyOf(d) == before);
    }

    void atPositionZeroTheFirstPieceIsEmptyAndOpensAllTheSame() {
        Document* d = openPattern();
        QVERIFY(d);
        d->track().f_Audio_Position = 0;
        const QList<Document*> pieces =
            split(d, [&] { d->splitActions().OnPopupSplit2PartsCurrentPosition(); });
        QCOMPARE(pieces.size(), 2);
        QVERIFY(fixtures::wavInfo(pieces[0]->track().s_WAV_File_Path).seconds() < 0.03);
        QCOMPARE(pieces[0]->track().i_Audio_Duration_Seconds, qint64(0));
        QVERIFY(pieces[0]->b_Audio_Loaded);
        QVERIFY(std::abs(fixtures::wavInfo(pieces[1]->track().s_WAV_File_Path).seconds() - 10.0) < 0.03);
    }

    void splittingAgainRefreshesTheWindowsShowingThePieces() {
        Document* d = openPattern();
        QVERIFY(d);
        d->track().f_Audio_Position = 4;
        const QList<Document*> pieces =
            split(d, [&] { d->splitActions().OnPopupSplit2PartsCurrentPosition(); });
        QCOMPARE(pieces.size(), 2);
        d->changeColor(QColor(10, 20, 250));
        QSignalSpy refreshed(pieces[1], &Document::loaded);
        QVERIFY(split(d, [&] { d->splitActions().OnPopupSplit2PartsCurrentPosition(); }).isEmpty());
        QVERIFY(refreshed.size() > 0 || refreshed.wait(10000));
        QCOMPARE(m_app->documents().size(), 3); // no window added
        for (const Document* piece : pieces) {
            QCOMPARE(piece->audioPlot->color(), QColor(10, 20, 250));
            // A refresh clears the history, deleting the file it lists: the piece itself.
            QCOMPARE(piece->history().array_WAV_Files(), QStringList({piece->track().s_WAV_File_Path}));
            QVERIFY(!QFile::exists(piece->track().s_WAV_File_Path));
        }
        QCOMPARE(m_app->u_Open_New_Document, 2u); // no new document took the entries
    }

    void aPieceAWindowStillKeepsIsNeverWrittenOver() {
        Document* d = openPattern();
        QVERIFY(d);
        d->track().f_Audio_Position = 4;
        const QList<Document*> first =
            split(d, [&] { d->splitActions().OnPopupSplit2PartsCurrentPosition(); });
        QCOMPARE(first.size(), 2);
        // The first piece's window edits it: the piece is now its undo.
        Document* edited = first[0];
        const QString kept = edited->track().s_WAV_File_Path;
        const QByteArray keptAudio = fixtures::digest(kept);
        edited->track().f_Selection_Start = 0;
        edited->track().f_Selection_End = 50;
        edited->editingActions().Operation_Delete();
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(edited->history().array_WAV_Files().first(), kept);
        QVERIFY(edited->track().s_WAV_File_Path != kept);

        // Splitting elsewhere writes its pieces under the next stem, the kept piece untouched.
        d->track().f_Audio_Position = 7;
        const QList<Document*> second =
            split(d, [&] { d->splitActions().OnPopupSplit2PartsCurrentPosition(); });
        QCOMPARE(second.size(), 2);
        const QString base =
            m_app->session().s_Output_Folder + "/" + QFileInfo(d->track().s_WAV_File_Path).completeBaseName();
        checkPiece(second[0], base + " (2)_PART_1.wav", 7.0);
        checkPiece(second[1], base + " (2)_PART_2.wav", 3.0);
        QCOMPARE(fixtures::digest(kept), keptAudio);
        QVERIFY(std::abs(fixtures::wavInfo(kept).seconds() - 4.0) < 0.03);
        // The window that did not edit its piece shows it still, as it was.
        QVERIFY(std::abs(fixtures::wavInfo(first[1]->track().s_WAV_File_Path).seconds() - 6.0) < 0.03);
        edited->Operation_Undo();
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(edited->track().s_WAV_File_Path, kept);
        QCOMPARE(edited->track().i_Audio_Duration_Seconds, qint64(4));
    }

    void splitOnSilenceOpensOnePiecePerPhrase() {
        Document* d = gui::openInNewWindow(*m_app, m_speech);
        QVERIFY(d);
        const History before = historyOf(d);
        answerSilenceDialog("0.1");
        const QList<Document*> pieces = split(d, [&] { d->splitActions().OnPopupSplitOnSilence(); });
        QCOMPARE(pieces.size(), 3);
        const QString base = QFileInfo(d->track().s_WAV_File_Path).path() + "/" +
                             QFileInfo(d->track().s_WAV_File_Path).completeBaseName();
        for (int i = 0; i < 3; ++i) {
            const QString path = base + QString("_PART_%1.wav").arg(i + 1, 3, 10, QChar('0'));
            QCOMPARE(pieces[i]->track().s_WAV_File_Path, path);
            QCOMPARE(pieces[i]->windowTitle(), QFileInfo(path).fileName());
            const double length = fixtures::wavInfo(path).seconds();
            QVERIFY2(
                std::abs(length - m_phraseLengths[i]) < 0.05,
                qPrintable(
                    QString("piece %1: %2 s, phrase %3 s").arg(i + 1).arg(length).arg(m_phraseLengths[i])));
        }
        QVERIFY(historyOf(d) == before);

        // Again, with the pieces' windows still open: they are reloaded, none is added.
        const int windows = int(m_app->documents().size());
        QSignalSpy refreshed(pieces[2], &Document::loaded);
        answerSilenceDialog("0.1");
        QVERIFY(split(d, [&] { d->splitActions().OnPopupSplitOnSilence(); }).isEmpty());
        QVERIFY(refreshed.size() > 0 || refreshed.wait(10000));
        QCOMPARE(int(m_app->documents().size()), windows);
        bool ranSox = false;
        for (const ToolRun& run : m_app->runner().runs())
            ranSox |=
                run.arguments.mid(1) == QStringList({base + "_PART_.wav", "silence", "1", "0.10", "1%", "1",
                                                     "2.00", "1%", ":", "newfile", ":", "restart"});
        QVERIFY(ranSox);
    }

    // A track that ends in silence: sox starts a last piece and writes only
    // its header. No window opens for it and no file of no frames is left.
    void aTrackEndingInSilenceOpensOnlyItsSoundingPieces() {
        const QString gap = m_root.filePath("end-gap.wav"), ending = m_root.filePath("ends-quiet.wav");
        fixtures::makeSilence(gap, 3);
        fixtures::join({m_speech, gap}, ending);
        Document* d = gui::openInNewWindow(*m_app, ending);
        QVERIFY(d);
        answerSilenceDialog("0.1");
        const QList<Document*> pieces = split(d, [&] { d->splitActions().OnPopupSplitOnSilence(); });
        QCOMPARE(pieces.size(), 3);
        for (int i = 0; i < 3; ++i)
            QVERIFY(fixtures::wavInfo(pieces[i]->track().s_WAV_File_Path).seconds() > 0.5);
        const QDir folder(m_app->session().s_Output_Folder);
        const QString stem = QFileInfo(d->track().s_WAV_File_Path).completeBaseName();
        const QStringList made = folder.entryList({stem + "_PART_*.wav"}, QDir::Files);
        QCOMPARE(made.size(), 3);
        for (const QString& name : made)
            QVERIFY2(fixtures::wavInfo(folder.filePath(name)).seconds() > 0, qPrintable(name));
        QVERIFY(!QFile::exists(pieces[2]->track().s_WAV_File_Path.replace("_PART_003", "_PART_004")));
    }

    void aStaleHigherNumberedPieceOfAnEarlierSplitIsOpenedToo() {
        Document* d = gui::openInNewWindow(*m_app, m_speech);
        QVERIFY(d);
        const QString base = QFileInfo(d->track().s_WAV_File_Path).path() + "/" +
                             QFileInfo(d->track().s_WAV_File_Path).completeBaseName();
        // An earlier split of this version that made four pieces.
        fixtures::makeTone(base + "_PART_004.wav", 1.5);
        answerSilenceDialog("0.1");
        const QList<Document*> pieces = split(d, [&] { d->splitActions().OnPopupSplitOnSilence(); });
        QCOMPARE(pieces.size(), 4);
        QCOMPARE(pieces[3]->windowTitle(), QFileInfo(base + "_PART_004.wav").fileName());
        QCOMPARE(pieces[3]->track().i_Audio_Duration_Seconds, qint64(1));
    }

    void theSilenceDialogChecksItsDurations() {
        Window_Split_Silence dialog;
        QCOMPARE(dialog.textMinimum->text(), QString("0.5"));
        QCOMPARE(dialog.textMaximum->text(), QString("2.0"));
        QCOMPARE(dialog.labelThreshold->text(), QString::number(dialog.sliderThreshold->value()));
        const auto refused = [&](const QString& minimum, const QString& maximum) {
            return refuseOnce<Window_Split_Silence>(dialog, [=](Window_Split_Silence* w) {
                typeInto(w->textMinimum, minimum);
                typeInto(w->textMaximum, maximum);
            });
        };
        for (const auto& [minimum, maximum, message] :
             {std::tuple{"0.04", "2.0", "Minimum duration invalid."},
              std::tuple{"none", "2.0", "Minimum duration invalid."},
              std::tuple{"0.5", "0.01", "Maximum duration invalid."},
              std::tuple{"0.5", "", "Maximum duration invalid."}}) {
            const Refusal refusal = refused(minimum, maximum);
            QCOMPARE(refusal.alert.text, QString("Error"));
            QCOMPARE(refusal.alert.informativeText, QString(message));
            QVERIFY(refusal.stillOpen);
            QCOMPARE(refusal.result, 0);
        }
    }

    void aTyped005IsAcceptedAndTheThresholdIsReadFromTheLabel() {
        Window_Split_Silence dialog;
        const int result = runModal<Window_Split_Silence>(dialog, [](Window_Split_Silence* w) {
            typeInto(w->textMinimum, "0.05");
            typeInto(w->textMaximum, "0.05");
            w->sliderThreshold->setFocus();
            QTest::keyClick(w->sliderThreshold, Qt::Key_Right);
            QTest::keyClick(w->sliderThreshold, Qt::Key_Right);
            QCOMPARE(w->labelThreshold->text(), QString::number(w->sliderThreshold->value()));
            w->labelThreshold->setText("7"); // what the label says counts
            clickButton(w, QDialogButtonBox::Ok);
        });
        QCOMPARE(result, 1);
        QVERIFY(dialog.bOK);
        QCOMPARE(dialog.f_Minimum, 0.05f);
        QCOMPARE(dialog.f_Threshold, qint64(7));
    }

    void soxAcceptsBothEndsOfTheThresholdSlider() {
        Window_Split_Silence dialog;
        const QString copy = m_root.filePath("ends/speech.wav");
        QDir().mkpath(m_root.filePath("ends"));
        QFile::copy(m_speech, copy);
        for (const int threshold : {dialog.sliderThreshold->minimum(), dialog.sliderThreshold->maximum()}) {
            QString output;
            const int code = fixtures::run(
                "sox", splitting::silenceArguments(copy, {0.5f, 2.0f, threshold}, splitting::base(copy)),
                &output);
            QVERIFY2(code == 0 && !output.contains("FAIL"), qPrintable(output));
        }
        QCOMPARE(dialog.sliderThreshold->value(), 1);
    }

    void cancellingTheSilenceDialogRunsNothing() {
        Document* d = openPattern();
        QVERIFY(d);
        const qsizetype runs = m_app->runner().runs().size();
        const int windows = int(m_app->documents().size());
        gui::whenModal<Window_Split_Silence>(
            [](Window_Split_Silence* w) { clickButton(w, QDialogButtonBox::Cancel); });
        d->splitActions().OnPopupSplitOnSilence();
        QVERIFY(gui::waitIdle(*m_app));
        QCOMPARE(m_app->runner().runs().size(), runs);
        QCOMPARE(int(m_app->documents().size()), windows);
    }

    void aSplitWhoseRunsFailOpensThePiecesPathsAndNeverCrashes() {
        Document* d = openPattern();
        QVERIFY(d);
        {
            // The tools find nothing to cut. (A file that is gone altogether
            // is said as such before anything runs.)
            QFile damaged(d->track().s_WAV_File_Path);
            QVERIFY(damaged.open(QIODevice::WriteOnly | QIODevice::Truncate));
            damaged.write("not audio at all");
        }
        // The missing piece is told, and the windows open for the pieces' paths all the same.
        const auto alert = gui::answerAlert();
        const QList<Document*> pieces =
            split(d, [&] { d->splitActions().OnPopupSplit3PartsBeforeSelectionAfter(); });
        QVERIFY(alert->shown);
        QVERIFY2(alert->informativeText.contains("Split into parts"), qPrintable(alert->informativeText));
        QCOMPARE(pieces.size(), 3);
        for (const Document* piece : pieces) {
            QVERIFY(!QFile::exists(piece->track().s_WAV_File_Path));
            QCOMPARE(piece->track().i_Audio_Duration_Seconds, qint64(0));
            QVERIFY(piece->windowTitle().endsWith(".wav"));
        }
        // On silence nothing is found, and nothing more happens.
        const int windows = int(m_app->documents().size());
        QSignalSpy handed(d, &Document::splitHandedOver);
        answerSilenceDialog("0.5");
        d->splitActions().OnPopupSplitOnSilence();
        QVERIFY(gui::waitIdle(*m_app));
        QTest::qWait(200);
        QCOMPARE(handed.size(), 0);
        QCOMPARE(int(m_app->documents().size()), windows);
    }
};

QTEST_MAIN(tst_Split)
#include "tst_split.moc"
