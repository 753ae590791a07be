#pragma once

// What the editing tests share: an application in a temporary home, the
// pattern file (tone 0–4 s, silence 4–6 s, tone 6–10 s) and checks of a result.

#include "application/AppDelegate.h"
#include "document/Document.h"
#include "document/WaveformPlot.h"
#include "edit/Window_Silence_Insert.h"
#include "edit/Window_Silence_Trim.h"
#include "effects/Clipping.h"
#include "support/Fixtures.h"
#include "support/Gui.h"
#include "timeline/View_Audio_Wave.h"
#include <QObject>

#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QRadioButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>
#include <vector>

namespace editing {
// A stretch of the expected result: tone or silence from one time to another.
struct Span {
    double from, to;
    bool tone;
};
using Spans = QList<Span>;
constexpr double Margin = 0.06; // keep windows away from the joins

inline std::vector<short> frames(const QString& path) {
    return fixtures::samples(path);
}

// Names carry the second they were made in. Waits until this second is later
// than every name in the folder, as it is for a user who takes a moment
// between two edits.
inline void waitPastEveryStamp(const QString& folder) {
    QString newest;
    for (const QString& name : QDir(folder).entryList({"2*.wav"}, QDir::Files))
        newest = std::max(newest, name.left(19));
    QVERIFY(QTest::qWaitFor(
        [&] { return QDateTime::currentDateTime().toString("yyyy-MM-dd-HH-mm-ss") > newest; }, 5000));
}
} // namespace editing

using namespace editing;

class EditingFixture : public QObject {
protected:
    QTemporaryDir m_root;
    std::unique_ptr<AppDelegate> m_app;
    QString m_pattern;

    // A new window holding the pattern: tone 0–4 s, silence 4–6 s, tone 6–10 s.
    Document* openPattern() {
        gui::answerFileDialog(m_pattern);
        m_app->openDocument();
        Document* d = m_app->documents().last();
        QSignalSpy loaded(d, &Document::loaded);
        if (!loaded.wait(30000))
            return nullptr;
        waitPastEveryStamp(m_app->session().s_Output_Folder);
        return d;
    }

    void setMarkers(Document* d, float start, float end, float position) {
        d->track().f_Selection_Start = start;
        d->track().f_Selection_End = end;
        d->track().f_Audio_Position = position;
    }

    // Copies 20–50 % (2–5 s: tone for two seconds, then one of silence).
    bool copyClip(Document* d) {
        setMarkers(d, 20, 50, 0);
        QSignalSpy copied(d, &Document::copied);
        d->editingActions().Operation_Copy();
        if (!copied.wait(20000))
            return false;
        waitPastEveryStamp(m_app->session().s_Output_Folder);
        return true;
    }

    QStringList workFiles() const { return QDir(m_app->session().s_Output_Folder).entryList(QDir::Files); }

    // Runs an edit and waits for its result; `m_added` gets the files it left.
    bool edit(Document* d, const std::function<void()>& action) {
        const QStringList before = workFiles();
        QSignalSpy adopted(d, &Document::adopted);
        action();
        const bool done = adopted.wait(30000) && gui::waitIdle(*m_app);
        m_added = workFiles();
        for (const QString& name : before)
            m_added.removeAll(name);
        return done;
    }
    QStringList m_added;

    // A 3 s tone at -1 dBFS, which amplifying to 200 % clips, and the count
    // of samples sox says it clipped when it does that on its own.
    std::optional<qint64> makeToneThatClips(const QString& path) {
        if (fixtures::run("sox", {"-n", "-r", "44100", "-c", "2", "-b", "16", path, "synth", "3", "sine",
                                  "440", "vol", "-1dB"}) != 0)
            return std::nullopt;
        QString said;
        fixtures::run("sox", {"-v", "2", path, m_root.filePath("amplified.wav")}, &said);
        return clippedSamples(said);
    }

    void checkResult(Document* d, int versionsBefore, double length, const Spans& spans) {
        const fixtures::WavInfo info = fixtures::wavInfo(d->track().s_WAV_File_Path);
        QVERIFY2(info.ok, qPrintable(d->track().s_WAV_File_Path));
        QVERIFY2(std::abs(info.seconds() - length) < 0.03, qPrintable(QString::number(info.seconds())));
        for (const Span& span : spans) {
            const double level =
                fixtures::rms(d->track().s_WAV_File_Path, span.from + Margin, span.to - Margin);
            QVERIFY2(span.tone ? level > 0.05 : level < 0.001,
                     qPrintable(QString("%1–%2 s: %3").arg(span.from).arg(span.to).arg(level)));
        }
        QCOMPARE(d->history().u_array_WAV_Files_Length(), quint64(versionsBefore + 1));
        QCOMPARE(d->history().array_WAV_Files().last(), d->track().s_WAV_File_Path);
        const QString name = QFileInfo(d->track().s_WAV_File_Path).fileName();
        QVERIFY2(QRegularExpression("^\\d{4}(-\\d\\d){5}(Before)?\\.wav$").match(name).hasMatch(),
                 qPrintable(name));
        QCOMPARE(d->windowTitle(), name);
        QCOMPARE(d->track().s_WAV_File_URL, "file://" + m_app->session().s_Output_Folder + "/" + name);
        QCOMPARE(d->track().f_Audio_Position, 0.0f);
        // ffmpeg reports hundredths, rounded; the document keeps the whole seconds of that.
        const qint64 whole = qint64(std::floor(std::round(info.seconds() * 100) / 100));
        QCOMPARE(d->track().i_Audio_Duration_Seconds, whole);
        QCOMPARE(d->track().f_Audio_Length, float(whole));
        // Only the result is new, and the padded clip of a mix, which stays by design.
        QStringList left = m_added;
        left.removeAll(name);
        left.removeIf([](const QString& n) { return n.endsWith("_PAD.wav"); });
        QVERIFY2(left.isEmpty(), qPrintable(left.join(", ")));
    }

    void startWithPattern() {
        m_app = gui::startApplication(m_root.filePath("home"));
        QVERIFY(m_app && gui::waitIdle(*m_app));
        m_pattern = fixtures::makePattern(m_root.path());
    }

    void closeAll() { QVERIFY(gui::closeAllWindows(*m_app)); }
};
