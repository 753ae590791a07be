// Effects ▸ Shorten Pauses: every pause longer than the length given becomes
// that long, and the sound around the pauses is left as it was.

#include "application/AppDelegate.h"
#include "document/Document.h"
#include "effects/EffectDialogs.h"
#include "support/Fixtures.h"
#include "support/Gui.h"

#include <QMenu>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>

class tst_ShortenPauses : public QObject {
    Q_OBJECT
    QTemporaryDir m_root;
    std::unique_ptr<AppDelegate> m_app;

    QString phrase(int frequency) {
        const QString path = m_root.filePath(QString("phrase%1.wav").arg(frequency));
        fixtures::run("sox", {"-D", "-n", "-r", "44100", "-c", "2", "-b", "16", path, "synth", "1.5", "sine",
                              QString::number(frequency), "vol", "0.5"});
        return path;
    }

private slots:
    void initTestCase() {
        m_app = gui::startApplication(m_root.filePath("home"));
        QVERIFY(m_app && gui::waitIdle(*m_app));
    }

    void fourSecondGapsBecomeOneSecondAndThePhrasesStay() {
        const QStringList phrases{phrase(440), phrase(660), phrase(880)};
        const QString gap = m_root.filePath("gap.wav");
        fixtures::run("sox", {"-D", "-n", "-r", "44100", "-c", "2", "-b", "16", gap, "trim", "0", "4"});
        const QString interview = m_root.filePath("interview.wav");
        fixtures::join({phrases[0], gap, phrases[1], gap, phrases[2]}, interview);

        Document* d = gui::openInNewWindow(*m_app, interview);
        QVERIFY(d);
        d->effectActions().fillEffectsMenu();
        QAction* action =
            d->effectActions().popupMenuEffects->findChild<QAction*>("OnPopupShortenPausesEntireTrack");
        QVERIFY(action);
        bool asked = false;
        gui::whenModal<EffectDialog>("Window_Shorten_Pauses", [&](EffectDialog* dialog) {
            asked = true;
            dialog->OnOK(); // the defaults: pauses of 1.0 s at most, below 1 %
        });
        QSignalSpy adopted(d, &Document::adopted);
        action->trigger();
        QVERIFY(adopted.wait(30000) && gui::waitIdle(*m_app));
        QVERIFY(asked);

        const QString result = d->track().s_WAV_File_Path;
        QVERIFY(fixtures::wavInfo(result).isWorkingWav());
        const double expected = 3 * 1.5 + 2 * 1.0;
        QVERIFY2(std::abs(fixtures::wavInfo(result).seconds() - expected) <= 0.1,
                 qPrintable(QString::number(fixtures::wavInfo(result).seconds())));
        // Each phrase is in the result sample for sample, in order, a second apart.
        const std::vector<short> samples = fixtures::samples(result);
        auto from = samples.begin();
        qsizetype lastEnd = -1;
        for (const QString& path : phrases) {
            const std::vector<short> words = fixtures::samples(path);
            // The sine starts at 0: the phrase is found from its first sound on.
            const auto sound = std::find_if(words.begin(), words.end(), [](short s) { return s != 0; });
            const auto at = std::search(from, samples.end(), sound, words.end());
            QVERIFY2(at != samples.end(), qPrintable(path));
            const qsizetype start = at - samples.begin(), end = start + (words.end() - sound);
            if (lastEnd >= 0) {
                const double pause = double(start - lastEnd) / 2 / 44100;
                QVERIFY2(std::abs(pause - 1.0) <= 0.1, qPrintable(QString::number(pause)));
            }
            lastEnd = end;
            from = samples.begin() + end;
        }
        QCOMPARE(d->history().versions().last().label, QString("Shorten Pauses"));
    }
};

QTEST_MAIN(tst_ShortenPauses)
#include "tst_shortenpauses.moc"
