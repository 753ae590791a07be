// Names are made from the second an operation begins in. With the naming
// clock fixed, every operation of every window lands in one second, so every
// name that could meet does: each window must still keep its own audio, every
// file a window names must still be there, and the copied audio must be what
// was copied.

#include "plans/RemovedFiles.h"
#include "ui/edit/EditingFixture.h"

#include <QRandomGenerator>
#include <QScopeGuard>
#include <cmath>
#include <random>

namespace {
const QDateTime Fixed(QDate(2026, 3, 5), QTime(14, 7, 59));

// A pure tone's RMS is its gain over √2, however it is cut or reversed.
double toneLevel(double gain) {
    return gain / std::sqrt(2.0);
}

bool sameLevel(double level, double expected) {
    return std::abs(level - expected) < 0.15 * expected;
}
} // namespace

class tst_Collisions : public EditingFixture {
    Q_OBJECT

    struct Window {
        Document* d = nullptr;
        double gain = 0;
        QString source;
    };
    QList<Window> m_windows;
    double m_clipGain = 0; // the gain of the window the copied audio came from

    double level(const QString& path) const {
        return fixtures::rms(path, 0, fixtures::wavInfo(path).seconds());
    }

    // Every file the window names is there and holds its own tone; the
    // current one is as long as the window shows.
    void checkWindow(const Window& w, const QString& when) {
        const Document* d = w.d;
        const QString what = QString("%1, gain %2: ").arg(when).arg(w.gain);
        QVERIFY2(QFile::exists(d->track().s_WAV_File_Path),
                 qPrintable(what + d->track().s_WAV_File_Path + " is missing"));
        QCOMPARE(d->windowTitle(), QFileInfo(d->track().s_WAV_File_Path).fileName());
        for (const QString& version : d->history().array_WAV_Files()) {
            QVERIFY2(QFile::exists(version), qPrintable(what + version + " is missing"));
            const fixtures::WavInfo info = fixtures::wavInfo(version);
            QVERIFY2(info.ok, qPrintable(what + version));
            if (info.seconds() >= 0.1)
                QVERIFY2(sameLevel(level(version), toneLevel(w.gain)),
                         qPrintable(what + QString("%1 has level %2").arg(version).arg(level(version))));
        }
        const double seconds = fixtures::wavInfo(d->track().s_WAV_File_Path).seconds();
        const qint64 whole = qint64(std::floor(std::round(seconds * 100) / 100));
        QVERIFY2(
            d->track().i_Audio_Duration_Seconds == whole,
            qPrintable(
                what +
                QString("shows %1 s, holds %2 s").arg(d->track().i_Audio_Duration_Seconds).arg(seconds)));
    }

    void checkClipboard(const QString& when) {
        const QString clip = m_app->session().s_Copied_WAV_File;
        // After a cut the copied audio is a version of the window it was cut
        // in, and goes with that window's history when a file is opened there.
        if (clip.isEmpty() || (!QFile::exists(clip) && removedFiles::wasRemoved(clip)))
            return;
        QVERIFY2(QFile::exists(clip), qPrintable(when + ": the copied audio " + clip + " is missing"));
        if (fixtures::wavInfo(clip).seconds() >= 0.1)
            QVERIFY2(sameLevel(level(clip), toneLevel(m_clipGain)),
                     qPrintable(QString("%1: the copied audio has level %2, copied at gain %3")
                                    .arg(when)
                                    .arg(level(clip))
                                    .arg(m_clipGain)));
    }

    void checkAll(const QString& when) {
        for (const Window& w : std::as_const(m_windows)) {
            checkWindow(w, when);
            if (QTest::currentTestFailed())
                return;
        }
        checkClipboard(when);
    }

    // Three windows, each a 6 s tone of a gain of its own.
    void openThree() {
        m_windows.clear();
        const double gains[] = {0.1, 0.3, 0.6};
        for (int i = 0; i < 3; ++i) {
            const QString source = m_root.filePath(QString("tone-%1.wav").arg(i));
            fixtures::makeTone(source, 6, 1000, gains[i]);
            Document* d = gui::openInNewWindow(*m_app, source);
            QVERIFY(d);
            m_windows.append({d, gains[i], source});
        }
    }

    bool runTogether(const QList<std::function<void()>>& actions) {
        for (const auto& action : actions)
            action();
        return gui::waitIdle(*m_app, 60000);
    }

private slots:
    void initTestCase() { startWithPattern(); }
    void init() {
        setNamingClock([] { return Fixed; });
        openThree();
    }
    void cleanup() {
        setNamingClock({});
        m_clipGain = 0;
        m_app->session().s_Copied_WAV_File.clear();
        closeAll();
    }

    void twoWindowsReversingInOneSecondKeepTheirOwnAudio() {
        const Window a = m_windows[0], b = m_windows[1];
        QVERIFY(runTogether({[&] { a.d->effectActions().OnPopupReverseEntireTrack(); },
                             [&] { b.d->effectActions().OnPopupReverseEntireTrack(); }}));
        QCOMPARE(a.d->history().array_WAV_Files().size(), 2);
        QCOMPARE(b.d->history().array_WAV_Files().size(), 2);
        QVERIFY(a.d->track().s_WAV_File_Path != b.d->track().s_WAV_File_Path);
        checkAll("after the two reverses");
    }

    void aPasteAtTheEndAndADeleteInAnotherWindowInOneSecondKeepTheirOwnAudio() {
        const Window a = m_windows[0], b = m_windows[1];
        setMarkers(a.d, 20, 50, 0);
        QSignalSpy copied(a.d, &Document::copied);
        a.d->editingActions().Operation_Copy();
        QVERIFY(copied.wait(20000) && gui::waitIdle(*m_app));
        m_clipGain = a.gain;
        setMarkers(b.d, 20, 50, 0);
        QVERIFY(runTogether({[&] { a.d->editingActions().OnPopupMenuPasteAtEnd(); },
                             [&] { b.d->editingActions().Operation_Delete(); }}));
        QVERIFY2(a.d->track().s_WAV_File_Path.endsWith("Before.wav"),
                 qPrintable(a.d->track().s_WAV_File_Path));
        QVERIFY(std::abs(fixtures::wavInfo(a.d->track().s_WAV_File_Path).seconds() - 7.8) < 0.05);
        QVERIFY(std::abs(fixtures::wavInfo(b.d->track().s_WAV_File_Path).seconds() - 4.2) < 0.05);
        checkAll("after the paste and the delete");
    }

    void aCopyInTheSecondOfAnEditCopiesTheSelection() {
        const Window a = m_windows[0];
        QVERIFY(runTogether({[&] { a.d->effectActions().OnPopupReverseEntireTrack(); }}));
        const QString track = a.d->track().s_WAV_File_Path;
        const QByteArray content = fixtures::digest(track);
        setMarkers(a.d, 40, 60, 0); // 2.4 to 3.6 s of the 6 s
        QSignalSpy copied(a.d, &Document::copied);
        a.d->editingActions().Operation_Copy();
        QVERIFY(copied.wait(20000) && gui::waitIdle(*m_app));
        m_clipGain = a.gain;
        const QString clip = m_app->session().s_Copied_WAV_File;
        QVERIFY(clip != track);
        QCOMPARE(fixtures::digest(track), content);
        // The selection as the time strings the tools were given.
        const SegmentVariables selection = a.d->track().Calculate_Segment_Variables();
        const double start = secondsOfTimeString(selection.sStartSelection);
        const double length = secondsOfTimeString(selection.sDurationSelection);
        QVERIFY(length > 1.1);
        QCOMPARE(fixtures::wavInfo(clip).frames, qRound(length * 44100));
        // The clip is the selection's samples, from the reversed track.
        const std::vector<short> all = fixtures::samples(track), part = fixtures::samples(clip);
        const auto from = all.begin() + 2 * qRound(start * 44100);
        QVERIFY(part.size() <= all.size());
        QVERIFY(std::equal(part.begin(), part.end(), from));
        checkAll("after the copy");
    }

    // Random rounds of operations queued back to back, one per window at
    // most, every one of them in the same second.
    void randomOperationsInOneSecondNeverMixWindowsUp() {
        const quint32 seed = qEnvironmentVariableIsSet("TANSELO_COLLISION_SEED")
                                 ? quint32(qEnvironmentVariableIntValue("TANSELO_COLLISION_SEED"))
                                 : QRandomGenerator::global()->generate();
        qInfo("seed %u (TANSELO_COLLISION_SEED repeats it)", seed);
        QRandomGenerator random(seed);
        const auto alert = gui::answerAlert(); // any alert fails the test below
        const auto stopAnswering = qScopeGuard([&] { alert->stop = true; });
        int actions = 0;
        QStringList log;
        while (actions < 200) {
            QList<int> order = {0, 1, 2};
            std::shuffle(order.begin(), order.end(), std::mt19937(random.generate()));
            order = order.mid(0, random.bounded(1, 4));
            QList<std::function<void()>> round;
            for (int index : std::as_const(order)) {
                const Window w = m_windows[index];
                Document* d = w.d;
                const int kind = random.bounded(7);
                const float start = float(random.bounded(10, 40)), end = start + float(random.bounded(5, 20));
                const bool longEnough = d->track().i_Audio_Duration_Seconds >= 3;
                log << QString("%1:%2").arg(index).arg(kind);
                switch (kind) {
                case 0:
                    round << [d] { d->effectActions().OnPopupReverseEntireTrack(); };
                    break;
                case 1:
                    round << [=, this] {
                        setMarkers(d, start, end, 0);
                        if (longEnough)
                            d->editingActions().Operation_Delete();
                    };
                    break;
                case 2:
                    round << [=, this] {
                        setMarkers(d, start, end, 0);
                        if (longEnough) {
                            d->editingActions().Operation_Cut();
                            m_clipGain = w.gain;
                        }
                    };
                    break;
                case 3:
                    round << [=, this] {
                        setMarkers(d, start, end, 0);
                        d->editingActions().Operation_Copy();
                        m_clipGain = w.gain;
                    };
                    break;
                case 4: // a new import of the window's own tone
                    round << [=] {
                        gui::answerFileDialog(w.source);
                        d->Open_And_Select_An_Audio_File();
                    };
                    break;
                case 5:
                    round << [d] { d->Operation_Undo(); };
                    break;
                default:
                    round << [d] { d->Operation_Redo(); };
                    break;
                }
            }
            actions += int(round.size());
            QVERIFY(runTogether(round));
            QVERIFY2(!alert->shown, qPrintable(alert->informativeText));
            checkAll(QString("after %1 actions (%2)").arg(actions).arg(log.mid(log.size() - 6).join(' ')));
            if (QTest::currentTestFailed()) {
                for (const Window& w : std::as_const(m_windows))
                    qInfo("window of gain %.1f: %s at %llu", w.gain,
                          qPrintable(w.d->history().array_WAV_Files().join(", ")),
                          w.d->history().u_array_WAV_Files_Position());
                qInfo("copied audio: %s", qPrintable(m_app->session().s_Copied_WAV_File));
                qInfo("work folder: %s", qPrintable(workFiles().join(", ")));
                return;
            }
        }
    }
};

QTEST_MAIN(tst_Collisions)
#include "tst_collisions.moc"
