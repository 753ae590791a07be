// Tracks ▸ Measure Loudness…: the window shows ffmpeg's EBU R128 figures of
// the track and, beside them, of the selection measured alone.

#include "application/AppDelegate.h"
#include "document/Document.h"
#include "loudness/LoudnessWindow.h"
#include "support/Fixtures.h"
#include "support/Gui.h"

#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QTemporaryDir>
#include <QTest>

namespace {
// The number a figure's text starts with: "-30.0 LUFS" → -30.0.
double number(const QLabel* label) {
    return label->text().section(' ', 0, 0).toDouble();
}
} // namespace

class tst_MeasureLoudness : public QObject {
    Q_OBJECT
    QTemporaryDir m_root;
    std::unique_ptr<AppDelegate> m_app;
    QString m_halves; // 5 s of a 1 kHz sine at -30 dBFS, then 5 s at -20 dBFS

    // Measures from the Tracks menu and waits for every figure asked for.
    LoudnessWindow* measure(Document* d, bool selection) {
        auto* tracks = d->menuBar()->findChild<QMenu*>("menuTracks");
        QAction* item = d->loudnessActions().actionMeasureLoudness;
        if (!tracks || !tracks->actions().contains(item) || !item->isEnabled())
            return nullptr;
        item->trigger();
        LoudnessWindow* w = d->loudnessActions().loudnessWindow();
        if (!w)
            return nullptr;
        const int column = selection ? LoudnessWindow::ColumnSelection : LoudnessWindow::ColumnTrack;
        if (!QTest::qWaitFor(
                [&] { return !w->figure(LoudnessWindow::RowSamplePeak, column)->text().isEmpty(); }, 30000) ||
            !gui::waitIdle(*m_app))
            return nullptr;
        return w;
    }

private slots:
    void initTestCase() {
        m_app = gui::startApplication(m_root.filePath("home"));
        QVERIFY(m_app && gui::waitIdle(*m_app));
        QStringList parts;
        for (int dbfs : {-30, -20}) {
            parts << m_root.filePath(QString("part%1.wav").arg(dbfs));
            QCOMPARE(fixtures::run("sox", {"-D", "-n", "-r", "44100", "-c", "2", "-b", "16", parts.last(),
                                           "synth", "5", "sine", "1000", "vol", QString("%1dB").arg(dbfs)}),
                     0);
        }
        m_halves = m_root.filePath("halves.wav");
        fixtures::join(parts, m_halves);
    }

    void theTrackAndTheSelectionAreMeasuredEachAlone() {
        Document* d = gui::openInNewWindow(*m_app, m_halves);
        QVERIFY(d);
        d->track().setSelection(0, 50); // the quiet half
        LoudnessWindow* w = measure(d, true);
        QVERIFY(w);
        QVERIFY(w->isVisible());
        QVERIFY(!w->isModal()); // it stays open beside the track
        QCOMPARE(w->windowTitle(), QString("Loudness of “halves.wav”"));
        const auto at = [w](int row, int column) { return w->figure(row, column); };
        const int track = LoudnessWindow::ColumnTrack, selection = LoudnessWindow::ColumnSelection;
        QVERIFY2(std::abs(number(at(LoudnessWindow::RowIntegrated, selection)) + 30) <= 0.3,
                 qPrintable(at(LoudnessWindow::RowIntegrated, selection)->text()));
        QVERIFY(at(LoudnessWindow::RowIntegrated, selection)->text().endsWith(" LUFS"));
        QVERIFY2(std::abs(number(at(LoudnessWindow::RowSamplePeak, selection)) + 30) <= 0.1,
                 qPrintable(at(LoudnessWindow::RowSamplePeak, selection)->text()));
        QVERIFY(at(LoudnessWindow::RowTruePeak, selection)->text().endsWith(" dBTP"));
        QVERIFY(at(LoudnessWindow::RowRange, selection)->text().endsWith(" LU"));
        // The track as a whole: louder than its quiet half, peaking at the loud one.
        const double whole = number(at(LoudnessWindow::RowIntegrated, track));
        QVERIFY2(whole > -29 && whole < -19.7, qPrintable(QString::number(whole)));
        QVERIFY(std::abs(number(at(LoudnessWindow::RowSamplePeak, track)) + 20) <= 0.1);
        // How far the track is from each target, said as the core says it.
        QString said;
        QCOMPARE(fixtures::run("ffmpeg", loudnessMeasureArguments(d->track().s_WAV_File_Path), &said), 0);
        const std::optional<LoudnessReading> reading = readLoudnessSummary(said);
        QVERIFY(reading);
        QCOMPARE(at(LoudnessWindow::RowIntegrated, track)->text(),
                 loudnessFigureText(reading->integrated, "LUFS"));
        for (int i = 0; i < loudnessTargets().size(); ++i)
            QCOMPARE(w->distance(i)->text(), targetDistanceText(*reading, loudnessTargets()[i]));
        QVERIFY(w->distance(0)->text().endsWith("LU too quiet"));
        QVERIFY(w->labelStatus->text().isEmpty());

        // The loud half, measured again in the same window.
        d->track().setSelection(50, 100);
        QVERIFY(measure(d, true) == w);
        QVERIFY2(std::abs(number(at(LoudnessWindow::RowIntegrated, selection)) + 20) <= 0.3,
                 qPrintable(at(LoudnessWindow::RowIntegrated, selection)->text()));

        // All of the track selected: the track alone.
        d->track().setSelection(0, 100);
        QVERIFY(measure(d, false) == w);
        QVERIFY(at(LoudnessWindow::RowIntegrated, selection)->text().isEmpty());
        w->close();
        QVERIFY(gui::closeAllWindows(*m_app));
    }
};

QTEST_MAIN(tst_MeasureLoudness)
#include "tst_measureloudness.moc"
