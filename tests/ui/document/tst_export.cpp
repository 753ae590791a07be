#include "ExportFixture.h"

#include "tools/ToolRunner.h"

#include <QKeyEvent>

using namespace exportTest;

// Real exports through the real dialog, checked with ffprobe.
class tst_Export : public ExportFixture {
    Q_OBJECT
    gui::UrlCatcher m_catcher;

    // The arguments of the last ffmpeg run that wrote `destination`.
    QStringList lastRunTo(const QString& destination) const {
        const QList<ToolRun>& runs = m_app->runner().runs();
        for (auto run = runs.crbegin(); run != runs.crend(); ++run)
            // The export's run, not the one that reads its length back.
            if (run->arguments.value(run->arguments.size() - 1) == destination &&
                run->arguments != QStringList({"-i", destination}))
                return run->arguments;
        return {};
    }

    // Counts every export dialog that shows, closing each at once.
    struct DialogCounter : QObject {
        int shown = 0;
        QElapsedTimer sinceSecondPress;
        qint64 shownAfterMs = -1;
        bool pressing = false, shownWhilePressing = false;
        bool eventFilter(QObject* watched, QEvent* event) override {
            if (event->type() == QEvent::Show && qobject_cast<Window_AF_WAV*>(watched)) {
                ++shown;
                shownAfterMs = sinceSecondPress.isValid() ? sinceSecondPress.elapsed() : -1;
                shownWhilePressing = pressing;
                QTimer::singleShot(0, watched, [watched] { static_cast<Window_AF_WAV*>(watched)->reject(); });
            }
            return false;
        }
    };

private slots:
    void initTestCase() { start(&m_catcher); }
    void cleanupTestCase() { stop(); }
    void cleanup() { closeAll(); }

    void theDefaultsExportAWavOfTheTrackAndTheFirstButtonOpensIt() {
        Document* d = openTone();
        QVERIFY(d);
        QString proposed;
        std::shared_ptr<gui::AlertSeen> alert;
        bool focusOnFormat = false;
        withDialog(d, [&](Window_AF_WAV* w) {
            // The dialog is modal before the window system has activated it, and
            // only an active window's focus widget is the application's.
            QVERIFY(QTest::qWaitForWindowActive(w));
            focusOnFormat = QApplication::focusWidget() == w->comboFormat;
            QCOMPARE(w->windowTitle(), QString("Export Audio"));
            QCOMPARE(w->comboFormat->currentText(), QString("WAV"));
            QCOMPARE(w->comboSampleRate->currentText(), QString("44100"));
            QCOMPARE(w->comboChannels->currentText(), QString("Stereo"));
            QCOMPARE(w->comboBitrate->currentText(), QString("40k"));
            QCOMPARE(w->comboBitrate->count(), 16);
            QCOMPARE(w->s_WAV_File_Path, d->track().s_WAV_File_Path);
            QVERIFY(w->btnExport->isDefault());
            // The proposal stands in the folder the track was opened from; it is accepted as it is.
            const QString destination = m_root.filePath("recordings/output.wav");
            QVERIFY(exportOnce(w, {}, destination, alert, "Play Audio File", &proposed));
        });
        QVERIFY(focusOnFormat);
        QCOMPARE(proposed, m_root.filePath("recordings/output.wav"));
        const QString out = m_root.filePath("recordings/output.wav");
        QCOMPARE(lastRunTo(out), QStringList({"-i", d->track().s_WAV_File_Path, "-vn", "-ar", "44100", "-ac",
                                              "2", "-ab", "40k", out}));
        const auto info = probe(out);
        QCOMPARE(info.value("codec_name"), QString("pcm_s16le"));
        QCOMPARE(info.value("sample_rate"), QString("44100"));
        QCOMPARE(info.value("channels"), QString("2"));
        checkLength(out, d->track().s_WAV_File_Path);
        QVERIFY(alert->shown);
        QCOMPARE(alert->text, QString("Success"));
        // The stated sentence, then where the file is and what it holds.
        QCOMPARE(alert->informativeText,
                 "Audio file saved successfully.\n\n" + out + "\nWAV audio: pcm_s16le, 44100 Hz, stereo");
        QCOMPARE(alert->buttons, QStringList({"Play Audio File", "Close"}));
        QCOMPARE(m_catcher.urls, QList<QUrl>({QUrl::fromLocalFile(out)}));
        QCOMPARE(d->history().u_array_WAV_Files_Length(), 1u); // the document is unchanged
    }

    void formats_data() {
        QTest::addColumn<int>("format");
        QTest::addColumn<int>("rate");
        QTest::addColumn<int>("channels");
        QTest::addColumn<int>("bitRate");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("codec");
        QTest::addColumn<QString>("sampleRate");
        QTest::addColumn<QString>("channelCount");
        QTest::newRow("WAV 22050 Hz mono") << 0 << 4 << 0 << 3 << "mono.wav"
                                           << "pcm_s16le"
                                           << "22050"
                                           << "1";
        QTest::newRow("M4A") << 1 << 6 << 1 << 3 << "song.m4a"
                             << "aac"
                             << "44100"
                             << "2";
        QTest::newRow("MP3 48000 Hz, 128k item") << 2 << 7 << 1 << 10 << "song.mp3"
                                                 << "mp3"
                                                 << "48000"
                                                 << "2";
        QTest::newRow("typed .flac") << 0 << 6 << 1 << 3 << "song.flac"
                                     << "flac"
                                     << "44100"
                                     << "2";
        QTest::newRow("typed .ogg, 128k item") << 0 << 6 << 1 << 10 << "song.ogg"
                                               << "vorbis"
                                               << "44100"
                                               << "2";
        QTest::newRow("MP3 chosen, typed .wav") << 2 << 6 << 1 << 3 << "changed.wav"
                                                << "pcm_s16le"
                                                << "44100"
                                                << "2";
    }
    void formats() {
        QFETCH(int, format);
        QFETCH(int, rate);
        QFETCH(int, channels);
        QFETCH(int, bitRate);
        QFETCH(QString, name);
        QFETCH(QString, codec);
        QFETCH(QString, sampleRate);
        QFETCH(QString, channelCount);
        Document* d = openTone();
        QVERIFY(d);
        const QString out = m_out + "/" + name;
        const gui::AlertSeen alert = exportVia(d, {format, rate, channels, bitRate}, out);
        QCOMPARE(alert.text, QString("Success"));
        const auto info = probe(out);
        QCOMPARE(info.value("codec_name"), codec);
        QCOMPARE(info.value("sample_rate"), sampleRate);
        QCOMPARE(info.value("channels"), channelCount);
        checkLength(out, d->track().s_WAV_File_Path);
        if (codec == "mp3") { // the item "128k" passes 160k
            QCOMPARE(lastRunTo(out).at(8), QString("160k"));
            const double bitRateSeen = info.value("bit_rate").toDouble();
            QVERIFY2(std::abs(bitRateSeen - 160000) < 160000 * 0.05, qPrintable(info.value("bit_rate")));
        }
    }

    void vorbisRefusingTheDefaultBitRateEndsInAnErrorNamingTheDestination() {
        Document* d = openTone();
        QVERIFY(d);
        const QString out = m_out + "/refused.ogg";
        const gui::AlertSeen alert = exportVia(d, {}, out);
        QCOMPARE(alert.text, QString("Error"));
        QVERIFY2(alert.informativeText.contains("produced no file"), qPrintable(alert.informativeText));
        QVERIFY(alert.informativeText.contains(out));
        QVERIFY(!QFile::exists(out)); // no empty file left behind
    }

    // The item "128k" passes 160k: the message tells the rate the file has,
    // as ffprobe reads it, beside its full path.
    void theSuccessMessageNamesThePathAndTheBitRateFfprobeReads() {
        Document* d = openTone();
        QVERIFY(d);
        const QString out = m_out + "/episode.mp3";
        const gui::AlertSeen alert = exportVia(d, {2, 6, 1, 10}, out);
        QCOMPARE(alert.text, QString("Success"));
        QString probed;
        fixtures::run("ffprobe",
                      {"-v", "error", "-select_streams", "a:0", "-show_entries", "stream=bit_rate", "-of",
                       "csv=p=0", out},
                      &probed);
        QCOMPARE(probed.trimmed().toInt() / 1000, 160);
        QCOMPARE(alert.informativeText,
                 "Audio file saved successfully.\n\n" + out + "\nMP3 audio: mp3, 44100 Hz, stereo, 160 kb/s");
    }

    // A folder typed into the file dialog that is not there yet is made; an
    // export that fails takes away the folders it made.
    void aFolderThatIsNotThereYetIsMade() {
        Document* d = openTone();
        QVERIFY(d);
        const QString out = m_out + "/new/season two/episode.mp3";
        QVERIFY(!QFileInfo::exists(m_out + "/new"));
        const gui::AlertSeen alert = exportVia(d, {2, -2, -2, -2}, out);
        QCOMPARE(alert.text, QString("Success"));
        QVERIFY2(alert.informativeText.startsWith("Audio file saved successfully.\n\n" + out + "\n"),
                 qPrintable(alert.informativeText));
        QCOMPARE(probe(out).value("codec_name"), QString("mp3"));
        checkLength(out, d->track().s_WAV_File_Path);

        const QString refused = m_out + "/made/for/refused.ogg"; // vorbis refuses the default 40k
        const gui::AlertSeen failed = exportVia(d, {}, refused);
        QCOMPARE(failed.text, QString("Error"));
        QVERIFY(failed.informativeText.contains("produced no file"));
        QVERIFY(!QFileInfo::exists(m_out + "/made"));
        QVERIFY(QFileInfo::exists(out)); // the folders of another export stay
    }

    void fiftySixKPassesSixtyFourK() {
        Document* d = openTone();
        QVERIFY(d);
        const QString out = m_out + "/56k.mp3";
        QCOMPARE(exportVia(d, {2, 6, 1, 5}, out).text, QString("Success"));
        QCOMPARE(lastRunTo(out).at(8), QString("64k"));
        QVERIFY(std::abs(probe(out).value("bit_rate").toDouble() - 64000) < 64000 * 0.05);
    }

    void theLastTwoBitRatesRunNothingAndShowNothing_data() {
        QTest::addColumn<int>("index");
        QTest::newRow("224k") << 14;
        QTest::newRow("256k") << 15;
    }
    void theLastTwoBitRatesRunNothingAndShowNothing() {
        QFETCH(int, index);
        Document* d = openTone();
        QVERIFY(d);
        const QString out = m_out + "/silent-stop.mp3";
        const qsizetype runsBefore = m_app->runner().runs().size();
        withDialog(d, [&](Window_AF_WAV* w) {
            choose(w, {2, 6, 1, index});
            gui::answerFileDialog(out);
            auto alert = gui::answerAlert();
            QTest::mouseClick(w->btnExport, Qt::LeftButton);
            QTest::qWait(500);
            alert->stop = true;
            QVERIFY(!alert->shown);
            QVERIFY(!m_app->runner().isBusy());
        });
        QCOMPARE(m_app->runner().runs().size(), runsBefore);
        QVERIFY(!QFile::exists(out));
    }

    void theDialogStaysOpenForASecondExportWithOtherSettings() {
        Document* d = openTone();
        QVERIFY(d);
        bool openAfterFirst = false;
        withDialog(d, [&](Window_AF_WAV* w) {
            std::shared_ptr<gui::AlertSeen> first, second;
            QVERIFY(exportOnce(w, {}, m_out + "/first.wav", first, "Close"));
            openAfterFirst = w->isVisible() && QApplication::activeModalWidget() == w;
            QVERIFY(exportOnce(w, {2, 1, 0, 0}, m_out + "/second.mp3", second, "Close"));
            QCOMPARE(first->text, QString("Success"));
            QCOMPARE(second->text, QString("Success"));
        });
        QVERIFY(openAfterFirst);
        QCOMPARE(probe(m_out + "/first.wav").value("sample_rate"), QString("44100"));
        const auto second = probe(m_out + "/second.mp3");
        QCOMPARE(second.value("sample_rate"), QString("8000"));
        QCOMPARE(second.value("channels"), QString("1"));
    }

    void returnExportsAndEscapeCloses() {
        Document* d = openTone();
        QVERIFY(d);
        const QString out = m_out + "/by-keyboard.wav";
        int result = -2;
        std::shared_ptr<gui::AlertSeen> alert;
        gui::whenModal<Window_AF_WAV>([&](Window_AF_WAV* w) {
            QSignalSpy ended(w, &Window_AF_WAV::exportEnded);
            gui::answerFileDialog(out);
            alert = gui::answerAlert("Close");
            QTest::keyClick(w->comboFormat, Qt::Key_Return);
            QVERIFY(ended.wait(30000));
            QTest::keyClick(w, Qt::Key_Escape);
        });
        Window_AF_WAV dialog(m_app->session(), m_app->session().protectedFiles(), d);
        dialog.s_WAV_File_Path = d->track().s_WAV_File_Path;
        result = dialog.exec();
        QCOMPARE(result, 0);
        QCOMPARE(alert->text, QString("Success"));
        QCOMPARE(probe(out).value("codec_name"), QString("pcm_s16le"));
    }

    void withoutAnOpenedFileTheProposalStandsInMusicElseAtHome() {
        Document* d = openTone();
        QVERIFY(d);
        m_app->session().lastOpenFolder.clear();
        const QString home = QDir::homePath();
        QString proposed;
        withDialog(d, [&](Window_AF_WAV* w) {
            std::shared_ptr<gui::AlertSeen> alert;
            QVERIFY(exportOnce(w, {1, -2, -2, -2}, {}, alert, {}, &proposed));
        });
        QCOMPARE(proposed, home + "/output.m4a");
        QVERIFY(QDir(home).mkpath("Music"));
        withDialog(d, [&](Window_AF_WAV* w) {
            std::shared_ptr<gui::AlertSeen> alert;
            QVERIFY(exportOnce(w, {2, -2, -2, -2}, {}, alert, {}, &proposed));
        });
        QCOMPARE(proposed, home + "/Music/output.mp3");
    }

    void anExistingDestinationIsReplaced() {
        Document* d = openTone();
        QVERIFY(d);
        const QString out = m_out + "/existing.wav";
        QFile old(out);
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write(QByteArray(100000, 'x'));
        old.close();
        QCOMPARE(exportVia(d, {}, out).text, QString("Success"));
        QCOMPARE(probe(out).value("codec_name"), QString("pcm_s16le"));
        checkLength(out, d->track().s_WAV_File_Path);
    }

    void aNameWithBlanksQuotesAndShellWordsIsWrittenIntact() {
        Document* d = openTone();
        QVERIFY(d);
        // Typed into the save dialog as a user would. (Qt's own dialog reads
        // double quotes as a list of names, so those come below.)
        const QString name = QString::fromUtf8("it's my $(touch pwned); rm x; `id` Grüße 音.mp3");
        const QString out = m_out + "/" + name;
        QCOMPARE(exportVia(d, {2, 6, 1, 3}, out).text, QString("Success"));
        QVERIFY(QFile::exists(out));
        QVERIFY(!QFile::exists(m_out + "/pwned") && !QFile::exists("pwned"));
        QCOMPARE(probe(out).value("codec_name"), QString("mp3"));
        checkLength(out, d->track().s_WAV_File_Path);
    }

    void aNameWithDoubleQuotesIsWrittenIntact() {
        // What a desktop's own save dialog can hand over: the export's plan run
        // as the dialog runs it.
        Document* d = openTone();
        QVERIFY(d);
        const QString out = m_out + QString::fromUtf8("/say \"hi\"; $(touch pwned) – Ωmega.wav");
        const QStringList arguments = *exporting::exportArguments(d->track().s_WAV_File_Path, {}, out);
        bool done = false;
        m_app->runner().submit(
            exporting::buildExportPlan(out, arguments), nullptr, [&](const PlanOutcome& outcome) {
                QCOMPARE(exporting::judge(out, outcome.runs.last()).kind, exporting::Verdict::Saved);
                done = true;
            });
        QVERIFY(QTest::qWaitFor([&] { return done; }, 30000));
        QCOMPARE(probe(out).value("codec_name"), QString("pcm_s16le"));
        QVERIFY(!QFile::exists(m_out + "/pwned") && !QFile::exists("pwned"));
        checkLength(out, d->track().s_WAV_File_Path);
    }

    void theSaveCommandPressedTwiceWithinATenthOpensOneDialog() {
        Document* d = openTone();
        QVERIFY(d);
        DialogCounter counter;
        qApp->installEventFilter(&counter);
        counter.pressing = true;
        d->exportActions().Operation_Save();
        counter.pressing = false;
        QTest::qWait(20);
        counter.sinceSecondPress.start();
        counter.pressing = true;
        d->exportActions().Operation_Save();
        counter.pressing = false;
        QTest::qWait(600);
        qApp->removeEventFilter(&counter);
        QCOMPARE(counter.shown, 1);
        QVERIFY(!counter.shownWhilePressing);
        // The timer runs 0.1 s from the second press (coarse timers may fire up to 5 % early).
        QVERIFY2(counter.shownAfterMs >= 90, qPrintable(QString::number(counter.shownAfterMs)));
    }

    void theToolbarsExportOpensTheDialogAtOnce() {
        // At once: the dialog shows while the button's action is still running,
        // not from a timer after it has returned.
        Document* d = openTone();
        QVERIFY(d);
        DialogCounter counter;
        qApp->installEventFilter(&counter);
        counter.pressing = true;
        d->btnSave->trigger();
        counter.pressing = false;
        qApp->removeEventFilter(&counter);
        QCOMPARE(counter.shown, 1);
        QVERIFY(counter.shownWhilePressing);
    }

    void theFileMenusExportReachesTheActiveWindowsDocument() {
        Document* d = openTone();
        QVERIFY(d);
        d->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(d));
        QVERIFY(m_app->actionExport->isEnabled());
        QCOMPARE(m_app->actionExport->shortcut(), QKeySequence(QKeySequence::Save));
        bool shown = false;
        gui::whenModal<Window_AF_WAV>([&](Window_AF_WAV* w) {
            shown = w->s_WAV_File_Path == d->track().s_WAV_File_Path;
            w->reject();
        });
        m_app->actionExport->trigger();
        QVERIFY(QTest::qWaitFor([&] { return shown; }, 5000));
    }
};

QTEST_MAIN(tst_Export)
#include "tst_export.moc"
