#include "EditingFixture.h"

using namespace editing;

// Each edit run with the real tools on the pattern, checked by its samples.
class tst_Editing : public EditingFixture {
    Q_OBJECT
private slots:
    void initTestCase() { startWithPattern(); }
    void cleanup() { closeAll(); }

    void copyFillsTheClipboardAndLeavesTheTrack() {
        Document* d = openPattern();
        QVERIFY(d);
        const QString track = d->track().s_WAV_File_Path;
        QVERIFY(copyClip(d));
        const QString clip = m_app->session().s_Copied_WAV_File;
        QVERIFY(clip.startsWith(m_app->session().s_Output_Folder + "/"));
        const fixtures::WavInfo info = fixtures::wavInfo(clip);
        QVERIFY(std::abs(info.seconds() - 3.0) < 0.03);
        QVERIFY(fixtures::rms(clip, 0.1, 1.9) > 0.05);
        QVERIFY(fixtures::rms(clip, 2.1, 2.9) < 0.001);
        QCOMPARE(d->track().s_WAV_File_Path, track);
        QCOMPARE(d->history().u_array_WAV_Files_Length(), 1u);
        QCOMPARE(QDir(m_app->session().s_Output_Folder).entryList({"*Before.wav", "*After.wav"}),
                 QStringList());
    }

    void cutAndDelete_data() {
        QTest::addColumn<bool>("cut");
        QTest::newRow("cut") << true;
        QTest::newRow("delete") << false;
    }
    void cutAndDelete() {
        QFETCH(bool, cut);
        Document* d = openPattern();
        QVERIFY(d);
        m_app->session().s_Copied_WAV_File.clear();
        setMarkers(d, 20, 50, 3);
        QVERIFY(edit(
            d, [&] { cut ? d->editingActions().Operation_Cut() : d->editingActions().Operation_Delete(); }));
        checkResult(d, 1, 7, {{0, 2, true}, {2, 3, false}, {3, 7, true}});
        if (cut)
            QCOMPARE(m_app->session().s_Copied_WAV_File,
                     d->track().s_WAV_File_Path); // the clipboard names the remainder
        else
            QVERIFY(m_app->session().s_Copied_WAV_File.isEmpty());
        QCOMPARE(d->track().f_Selection_Start, 20.0f); // markers keep their percentages
    }

    void paste_data() {
        QTest::addColumn<int>("place");
        QTest::addColumn<double>("length");
        QTest::addColumn<Spans>("spans");
        QTest::newRow("start")
            << int(PastePlace::Start) << 13.0
            << Spans{{0, 2, true}, {2, 3, false}, {3, 7, true}, {7, 9, false}, {9, 13, true}};
        QTest::newRow("position 7.5 s")
            << int(PastePlace::CurrentPosition) << 13.0
            << Spans{{0, 4, true}, {4, 6, false}, {6, 9.5, true}, {9.5, 10.5, false}, {10.5, 13, true}};
        QTest::newRow("start of selection")
            << int(PastePlace::StartOfSelection) << 13.0
            << Spans{{0, 4, true}, {4, 5, false}, {5, 7, true}, {7, 9, false}, {9, 13, true}};
        QTest::newRow("end of selection")
            << int(PastePlace::EndOfSelection) << 13.0
            << Spans{{0, 4, true}, {4, 5, false}, {5, 7, true}, {7, 9, false}, {9, 13, true}};
        QTest::newRow("end") << int(PastePlace::End) << 13.0
                             << Spans{{0, 4, true}, {4, 6, false}, {6, 12, true}, {12, 13, false}};
    }
    void paste() {
        QFETCH(int, place);
        QFETCH(double, length);
        QFETCH(Spans, spans);
        Document* d = openPattern();
        QVERIFY(d && copyClip(d));
        const QString clip = m_app->session().s_Copied_WAV_File;
        setMarkers(d, 20, 50, 7.5f);
        QVERIFY(edit(d, [&] {
            switch (PastePlace(place)) {
            case PastePlace::Start:
                d->editingActions().OnPopupMenuPasteAtStart();
                break;
            case PastePlace::CurrentPosition:
                d->editingActions().OnPopupMenuPasteAtCurrentPosition();
                break;
            case PastePlace::StartOfSelection:
                d->editingActions().OnPopupMenuPasteAtStartOfSelection();
                break;
            case PastePlace::EndOfSelection:
                d->editingActions().OnPopupMenuPasteAtEndOfSelection();
                break;
            case PastePlace::End:
                d->editingActions().OnPopupMenuPasteAtEnd();
                break;
            }
        }));
        checkResult(d, 1, length, spans);
        QCOMPARE(m_app->session().s_Copied_WAV_File, clip); // the same clip can be pasted again
        QVERIFY(QFile::exists(clip));
    }

    void pasteMixing_data() {
        QTest::addColumn<int>("place");
        QTest::addColumn<float>("start");
        QTest::addColumn<float>("end");
        QTest::addColumn<Spans>("spans");
        // Without a pad the silence at 4–6 s stays; with a 4-second pad the clip's tone fills it.
        QTest::newRow("start") << int(PastePlace::Start) << 20.0f << 50.0f
                               << Spans{{0, 4, true}, {4, 6, false}, {6, 10, true}};
        QTest::newRow("position 4.5 s") << int(PastePlace::CurrentPosition) << 20.0f << 50.0f
                                        << Spans{{0, 4, true}, {4, 6, true}, {6, 10, true}};
        QTest::newRow("start of selection") << int(PastePlace::StartOfSelection) << 40.0f << 60.0f
                                            << Spans{{0, 4, true}, {4, 6, true}, {6, 10, true}};
        QTest::newRow("end of selection") << int(PastePlace::EndOfSelection) << 20.0f << 40.0f
                                          << Spans{{0, 4, true}, {4, 6, true}, {6, 10, true}};
    }
    void pasteMixing() {
        QFETCH(int, place);
        QFETCH(float, start);
        QFETCH(float, end);
        QFETCH(Spans, spans);
        Document* d = openPattern();
        QVERIFY(d && copyClip(d));
        setMarkers(d, start, end, 4.5f);
        QVERIFY(edit(d, [&] {
            switch (PastePlace(place)) {
            case PastePlace::Start:
                d->editingActions().OnPopupPasteMixingAtStart();
                break;
            case PastePlace::CurrentPosition:
                d->editingActions().OnPopupPasteMixingAtCurrentPosition();
                break;
            case PastePlace::StartOfSelection:
                d->editingActions().OnPopupPasteMixingAtStartOfSelection();
                break;
            default:
                d->editingActions().OnPopupPasteMixingAtEndOfSelection();
                break;
            }
        }));
        checkResult(d, 1, 10, spans);
    }

    void insertSilence_data() {
        QTest::addColumn<int>("place");
        QTest::addColumn<Spans>("spans");
        QTest::newRow("start") << int(SilencePlace::Start)
                               << Spans{{0, 1, false}, {1, 5, true}, {5, 7, false}, {7, 11, true}};
        QTest::newRow("end") << int(SilencePlace::End)
                             << Spans{{0, 4, true}, {4, 6, false}, {6, 10, true}, {10, 11, false}};
        QTest::newRow("position 7.5 s")
            << int(SilencePlace::CurrentPosition)
            << Spans{{0, 4, true}, {4, 6, false}, {6, 7.5, true}, {7.5, 8.5, false}, {8.5, 11, true}};
    }
    void insertSilence() {
        QFETCH(int, place);
        QFETCH(Spans, spans);
        Document* d = openPattern();
        QVERIFY(d);
        setMarkers(d, 20, 50, 7.5f);
        bool asked = false;
        gui::whenModal<Window_Silence_Insert>([&](Window_Silence_Insert* dialog) {
            asked = true;
            QCOMPARE(dialog->textLengthInMS->text(), QString("1000"));
            QMetaObject::invokeMethod(dialog, "OnOK");
        });
        QVERIFY(edit(d, [&] {
            switch (SilencePlace(place)) {
            case SilencePlace::Start:
                d->editingActions().OnPopupSilenceInsertAtStart();
                break;
            case SilencePlace::End:
                d->editingActions().OnPopupSilenceInsertAtEnd();
                break;
            case SilencePlace::CurrentPosition:
                d->editingActions().OnPopupSilenceInsertAtCurrentPosition();
                break;
            }
        }));
        QVERIFY(asked);
        checkResult(d, 1, 11, spans);
    }

    void silenceTheSelection() {
        Document* d = openPattern();
        QVERIFY(d);
        setMarkers(d, 20, 50, 0);
        QVERIFY(edit(d, [&] { d->editingActions().OnPopupSilenceSelection(); }));
        checkResult(d, 1, 10, {{0, 2, true}, {2, 6, false}, {6, 10, true}});
    }

    void trim_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<double>("length");
        QTest::newRow("start") << 1 << 10.0;
        QTest::newRow("end: trims the start, then reverses") << 2 << 10.0;
        QTest::newRow("entire: the long silence goes too") << 3 << 8.0;
    }
    void trim() {
        QFETCH(int, mode);
        QFETCH(double, length);
        Document* d = openPattern();
        QVERIFY(d);
        const QString before = d->track().s_WAV_File_Path;
        gui::whenModal<Window_Silence_Trim>([&](Window_Silence_Trim* dialog) {
            QRadioButton* radio[] = {dialog->radioStart, dialog->radioEnd, dialog->radioEntire};
            radio[mode - 1]->click();
            QMetaObject::invokeMethod(dialog, "OnOK");
        });
        QVERIFY(edit(d, [&] { d->editingActions().OnPopupSilenceTrim(); }));
        const Spans spans = mode == 3 ? Spans{{0, 4, true}, {4.05, 8, true}}
                                      : Spans{{0, 4, true}, {4, 6, false}, {6, 10, true}};
        checkResult(d, 1, length, spans);
        if (mode == 2) { // sample by sample, the original read backwards
            const std::vector<short> original = frames(before), result = frames(d->track().s_WAV_File_Path);
            const std::size_t n = original.size() / 2, m = result.size() / 2;
            QVERIFY(m > n - 100 && m <= n);
            for (std::size_t j = 0; j < m; j += 997)
                QCOMPARE(result[2 * j], original[2 * (n - 1 - j)]);
        }
    }
};

QTEST_MAIN(tst_Editing)
#include "tst_editing.moc"
