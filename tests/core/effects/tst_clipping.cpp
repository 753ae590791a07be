#include "effects/Clipping.h"
#include "support/Fixtures.h"

#include <QTemporaryDir>
#include <QTest>

class tst_Clipping : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;

    // What sox says when it turns a tone at -1 dBFS through `effect`.
    QString soxSays(const QStringList& effect) {
        const QString tone = m_dir.filePath("tone.wav"), out = m_dir.filePath("out.wav");
        if (!QFileInfo::exists(tone))
            fixtures::run("sox", {"-n", "-r", "44100", "-c", "2", "-b", "16", tone, "synth", "2", "sine",
                                  "440", "vol", "-1dB"});
        QString output;
        fixtures::run("sox", QStringList{tone, out} + effect, &output);
        return output;
    }

private slots:
    void anAmplifyThatClipsIsCountedAsSoxCountsIt() {
        const QString said = soxSays({"vol", "2"});
        const QRegularExpressionMatch own = QRegularExpression("vol: vol clipped (\\d+) samples").match(said);
        QVERIFY2(own.hasMatch(), qPrintable(said));
        QVERIFY2(clippedSamples(said) == std::optional<qint64>(own.captured(1).toLongLong()),
                 qPrintable(said));
        QVERIFY(*clippedSamples(said) > 1000);
    }

    void amplifysGainIsCountedWhereItClipsTheInput() {
        // Amplify is sox's "-v": its clipping is the input's balancing, not the output's.
        const QString tone = m_dir.filePath("tone.wav"), out = m_dir.filePath("out.wav");
        soxSays({"vol", "1"}); // makes the tone
        QString said;
        fixtures::run("sox", {"-v", "2", tone, out}, &said);
        const QRegularExpressionMatch own =
            QRegularExpression("balancing clipped (\\d+) samples").match(said);
        QVERIFY2(own.hasMatch(), qPrintable(said));
        QVERIFY2(clippedSamples(said) == std::optional<qint64>(own.captured(1).toLongLong()),
                 qPrintable(said));
    }

    void oneThatDoesNotClipSaysNothing() {
        const QString said = soxSays({"vol", "0.5"});
        QCOMPARE(clippedSamples(said), std::nullopt);
        QCOMPARE(clippedSamples(QString()), std::nullopt);
    }

    void theEffectsOwnCountBeforeDitherAndTheOutput() {
        const QString said = "sox WARN compand: compand clipped 1612 samples; decrease volume?\n"
                             "sox WARN dither: dither clipped 1426 samples; decrease volume?\n";
        QCOMPARE(clippedSamples(said), std::optional<qint64>(1612));
        QCOMPARE(clippedSamples("sox WARN dither: dither clipped 14 samples; decrease volume?\n"
                                "sox WARN sox: `/w/out.wav' output clipped 9 samples; decrease volume?"),
                 std::optional<qint64>(9));
        QCOMPARE(clippedSamples("sox WARN dither: dither clipped 14 samples; decrease volume?"),
                 std::optional<qint64>(14));
        QCOMPARE(clippedSamples("sox WARN wav: Premature EOF on .wav input file"), std::nullopt);
    }

    void theLineSaysItInWords() {
        QCOMPARE(clippingLine("Compand", 110482),
                 QString("Compand clipped 110,482 samples: lower its gain, or Undo"));
        QCOMPARE(clippingLine("Amplify", 3), QString("Amplify clipped 3 samples: lower its gain, or Undo"));
    }
};

QTEST_GUILESS_MAIN(tst_Clipping)
#include "tst_clipping.moc"
