#include "edit/Window_Silence_Insert.h"
#include "edit/Window_Silence_Trim.h"
#include "support/DialogDriving.h"
#include "support/Gui.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTimer>
#include <functional>

namespace {
using namespace dialogs;

QStringList labelTexts(QDialog* dialog) {
    QStringList texts;
    for (QLabel* label : dialog->findChildren<QLabel*>())
        texts << label->text();
    return texts;
}

int checkedCount(const Window_Silence_Trim& dialog) {
    return int(dialog.radioStart->isChecked()) + int(dialog.radioEnd->isChecked()) +
           int(dialog.radioEntire->isChecked());
}

} // namespace

class tst_SilenceDialogs : public QObject {
    Q_OBJECT
private slots:
    // Insert Silence

    void insertDefaults() {
        Window_Silence_Insert dialog;
        QCOMPARE(dialog.windowTitle(), QString("Insert Silence"));
        QVERIFY(dialog.isModal());
        QVERIFY(dialog.textLengthInMS);
        QCOMPARE(dialog.textLengthInMS->text(), QString("1000"));
        QCOMPARE(dialog.u_Length_In_MS, quint64(1000));
        QCOMPARE(dialog.bOK, false);
        QVERIFY(labelTexts(&dialog).contains("Length (ms):"));
        QPushButton* ok = buttonOf(&dialog, QDialogButtonBox::Ok);
        QPushButton* cancel = buttonOf(&dialog, QDialogButtonBox::Cancel);
        QVERIFY(ok);
        QVERIFY(cancel);
        QVERIFY(ok->isDefault());
        QVERIFY(!cancel->isDefault());
    }

    void insertOkAccepts() {
        Window_Silence_Insert dialog;
        const int result = runModal<Window_Silence_Insert>(dialog, [](Window_Silence_Insert* d) {
            typeInto(d->textLengthInMS, "250");
            clickButton(d, QDialogButtonBox::Ok);
        });
        QCOMPARE(result, 1);
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(dialog.u_Length_In_MS, quint64(250));
        QCOMPARE(dialog.bOK, true);
        QVERIFY(!dialog.isVisible());
    }

    void insertDefaultsAcceptedAsShown() {
        Window_Silence_Insert dialog;
        const int result = runModal<Window_Silence_Insert>(
            dialog, [](Window_Silence_Insert* d) { clickButton(d, QDialogButtonBox::Ok); });
        QCOMPARE(result, 1);
        QCOMPARE(dialog.u_Length_In_MS, quint64(1000));
        QCOMPARE(dialog.bOK, true);
    }

    void insertReturnKeyPressesOk() {
        Window_Silence_Insert dialog;
        const int result = runModal<Window_Silence_Insert>(dialog, [](Window_Silence_Insert* d) {
            typeInto(d->textLengthInMS, "300");
            QTest::keyClick(d->textLengthInMS, Qt::Key_Return);
        });
        QCOMPARE(result, 1);
        QCOMPARE(dialog.u_Length_In_MS, quint64(300));
        QCOMPARE(dialog.bOK, true);
    }

    void insertReadsLeniently() {
        Window_Silence_Insert dialog;
        const int result = runModal<Window_Silence_Insert>(dialog, [](Window_Silence_Insert* d) {
            typeInto(d->textLengthInMS, " 75ms");
            clickButton(d, QDialogButtonBox::Ok);
        });
        QCOMPARE(result, 1);
        QCOMPARE(dialog.u_Length_In_MS, quint64(75));
    }

    // A negative length is not refused: it converts to the unsigned field as it stands.
    void insertNegativeConvertsAsItStands() {
        Window_Silence_Insert dialog;
        const int result = runModal<Window_Silence_Insert>(dialog, [](Window_Silence_Insert* d) {
            typeInto(d->textLengthInMS, "-5");
            clickButton(d, QDialogButtonBox::Ok);
        });
        QCOMPARE(result, 1);
        QCOMPARE(dialog.u_Length_In_MS, quint64(-5));
        QCOMPARE(dialog.u_Length_In_MS, quint64(18446744073709551611ULL));
        QCOMPARE(dialog.bOK, true);
    }

    void insertRefuses_data() {
        QTest::addColumn<QString>("typed");
        QTest::newRow("zero") << "0";
        QTest::newRow("letters") << "abc";
        QTest::newRow("empty") << "";
        QTest::newRow("sign alone") << "-";
    }
    void insertRefuses() {
        QFETCH(QString, typed);
        Window_Silence_Insert dialog;
        quint64 lengthWhileOpen = 1;
        const Refusal refusal = refuseOnce<Window_Silence_Insert>(
            dialog, [typed](Window_Silence_Insert* d) { typeInto(d->textLengthInMS, typed); },
            // The refusal leaves the dialog up, with what was typed, for another try.
            [typed, &lengthWhileOpen](Window_Silence_Insert* d) {
                lengthWhileOpen = d->u_Length_In_MS;
                return d->textLengthInMS->text() == typed;
            });
        QVERIFY(refusal.alert.shown);
        QCOMPARE(refusal.alert.text, QString("Error"));
        QCOMPARE(refusal.alert.informativeText, QString("Length invalid."));
        QCOMPARE(refusal.alert.buttons, QStringList({"Close"}));
        QVERIFY(refusal.stillOpen);
        QCOMPARE(lengthWhileOpen, quint64(0));
        QCOMPARE(refusal.result, 0);
        QCOMPARE(dialog.u_Length_In_MS, quint64(0));
        QCOMPARE(dialog.bOK, false);
    }

    void insertAcceptsAfterARefusal() {
        Window_Silence_Insert dialog;
        const Refusal refusal = refuseOnce<Window_Silence_Insert>(
            dialog, [](Window_Silence_Insert* d) { typeInto(d->textLengthInMS, "0"); }, {},
            [](Window_Silence_Insert* d) { typeInto(d->textLengthInMS, "40"); });
        QCOMPARE(refusal.alert.informativeText, QString("Length invalid."));
        QCOMPARE(refusal.result, 1);
        QCOMPARE(dialog.u_Length_In_MS, quint64(40));
        QCOMPARE(dialog.bOK, true);
    }

    void insertBacksOut_data() {
        QTest::addColumn<QString>("how");
        QTest::newRow("Cancel button") << "cancel";
        QTest::newRow("window closed") << "close";
        QTest::newRow("Escape") << "escape";
    }
    void insertBacksOut() {
        QFETCH(QString, how);
        Window_Silence_Insert dialog;
        const int result = runModal<Window_Silence_Insert>(dialog, [how](Window_Silence_Insert* d) {
            typeInto(d->textLengthInMS, "250");
            if (how == "cancel")
                clickButton(d, QDialogButtonBox::Cancel);
            else if (how == "close")
                d->close();
            else
                QTest::keyClick(d, Qt::Key_Escape);
        });
        QCOMPARE(result, 0);
        QCOMPARE(dialog.result(), int(QDialog::Rejected));
        QCOMPARE(dialog.u_Length_In_MS, quint64(0));
        QCOMPARE(dialog.bOK, false);
        QVERIFY(!dialog.isVisible());
    }

    // A second showing that is cancelled forgets the earlier confirmation.
    void insertCancelAfterAnEarlierOk() {
        Window_Silence_Insert dialog;
        QCOMPARE(runModal<Window_Silence_Insert>(
                     dialog, [](Window_Silence_Insert* d) { clickButton(d, QDialogButtonBox::Ok); }),
                 1);
        QCOMPARE(dialog.bOK, true);
        QCOMPARE(runModal<Window_Silence_Insert>(
                     dialog, [](Window_Silence_Insert* d) { clickButton(d, QDialogButtonBox::Cancel); }),
                 0);
        QCOMPARE(dialog.bOK, false);
        QCOMPARE(dialog.u_Length_In_MS, quint64(0));
    }

    // Trim Silence

    void trimDefaults() {
        Window_Silence_Trim dialog;
        QCOMPARE(dialog.windowTitle(), QString("Trim Silence"));
        QVERIFY(dialog.isModal());
        QVERIFY(!dialog.radioStart->isChecked());
        QVERIFY(!dialog.radioEnd->isChecked());
        QVERIFY(dialog.radioEntire->isChecked());
        QCOMPARE(dialog.textDuration->text(), QString("1500"));
        QCOMPARE(dialog.u_Start_End_Or_Entire, quint64(0));
        QCOMPARE(dialog.u_Miliseconds, quint64(0));
        QCOMPARE(dialog.bOK, false);
        const QStringList labels = labelTexts(&dialog);
        QVERIFY(labels.contains("Trim silence from:"));
        QVERIFY(labels.contains("Minimum silence (ms):"));
        QCOMPARE(dialog.radioStart->text(), QString("Start"));
        QCOMPARE(dialog.radioEnd->text(), QString("End"));
        QCOMPARE(dialog.radioEntire->text(), QString("Both ends"));
        QVERIFY(buttonOf(&dialog, QDialogButtonBox::Ok)->isDefault());
    }

    // Each slot, called on its own, turns its button on and the other two off,
    // whichever was on before.
    void trimRadioSlots() {
        Window_Silence_Trim dialog;
        const QList<QPair<const char*, QRadioButton*>> actions = {{"OnRadioStart", dialog.radioStart},
                                                                  {"OnRadioEnd", dialog.radioEnd},
                                                                  {"OnRadioEntire", dialog.radioEntire}};
        for (const auto& before : actions) {
            for (const auto& action : actions) {
                QVERIFY(QMetaObject::invokeMethod(&dialog, before.first));
                QVERIFY(before.second->isChecked());
                QCOMPARE(checkedCount(dialog), 1);
                QVERIFY(QMetaObject::invokeMethod(&dialog, action.first));
                QVERIFY2(action.second->isChecked(), action.first);
                QCOMPARE(checkedCount(dialog), 1);
            }
        }
    }

    // The same through clicks on the shown buttons.
    void trimRadioClicks() {
        Window_Silence_Trim dialog;
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        for (QRadioButton* radio : {dialog.radioStart, dialog.radioEnd, dialog.radioEntire, dialog.radioEnd,
                                    dialog.radioStart, dialog.radioEntire}) {
            QTest::mouseClick(radio, Qt::LeftButton);
            QVERIFY(radio->isChecked());
            QCOMPARE(checkedCount(dialog), 1);
        }
        dialog.close();
    }

    void trimOk_data() {
        QTest::addColumn<QString>("where");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<quint64>("mode");
        QTest::addColumn<quint64>("milliseconds");
        QTest::newRow("start") << "start"
                               << "2000" << quint64(1) << quint64(2000);
        QTest::newRow("end") << "end"
                             << "2000" << quint64(2) << quint64(2000);
        QTest::newRow("entire") << "entire"
                                << "750" << quint64(3) << quint64(750);
        QTest::newRow("entire after start") << "start,entire"
                                            << "1" << quint64(3) << quint64(1);
        QTest::newRow("end after start") << "start,end"
                                         << "3000x" << quint64(2) << quint64(3000);
        QTest::newRow("defaults untouched") << ""
                                            << "1500" << quint64(3) << quint64(1500);
    }
    void trimOk() {
        QFETCH(QString, where);
        QFETCH(QString, typed);
        QFETCH(quint64, mode);
        QFETCH(quint64, milliseconds);
        Window_Silence_Trim dialog;
        const int result = runModal<Window_Silence_Trim>(dialog, [where, typed](Window_Silence_Trim* d) {
            for (const QString& name : where.split(',', Qt::SkipEmptyParts)) {
                QRadioButton* radio = name == "start" ? d->radioStart
                                      : name == "end" ? d->radioEnd
                                                      : d->radioEntire;
                QTest::mouseClick(radio, Qt::LeftButton);
            }
            typeInto(d->textDuration, typed);
            clickButton(d, QDialogButtonBox::Ok);
        });
        QCOMPARE(result, 1);
        QCOMPARE(dialog.bOK, true);
        QCOMPARE(dialog.u_Start_End_Or_Entire, mode);
        QCOMPARE(dialog.u_Miliseconds, milliseconds);
    }

    void trimRefuses_data() {
        QTest::addColumn<QString>("typed");
        QTest::newRow("zero") << "0";
        QTest::newRow("letter") << "x";
        QTest::newRow("empty") << "";
    }
    void trimRefuses() {
        QFETCH(QString, typed);
        Window_Silence_Trim dialog;
        const Refusal refusal = refuseOnce<Window_Silence_Trim>(
            dialog,
            [typed](Window_Silence_Trim* d) {
                QTest::mouseClick(d->radioStart, Qt::LeftButton);
                typeInto(d->textDuration, typed);
            },
            [typed](Window_Silence_Trim* d) {
                return d->radioStart->isChecked() && d->textDuration->text() == typed;
            });
        QVERIFY(refusal.alert.shown);
        QCOMPARE(refusal.alert.text, QString("Error"));
        QCOMPARE(refusal.alert.informativeText, QString("Duration invalid."));
        QCOMPARE(refusal.alert.buttons, QStringList({"Close"}));
        QVERIFY(refusal.stillOpen);
        QCOMPARE(refusal.result, 0);
        QCOMPARE(dialog.bOK, false);
    }

    void trimBacksOut_data() {
        QTest::addColumn<QString>("how");
        QTest::newRow("Cancel button") << "cancel";
        QTest::newRow("window closed") << "close";
        QTest::newRow("Escape") << "escape";
    }
    void trimBacksOut() {
        QFETCH(QString, how);
        Window_Silence_Trim dialog;
        // Confirmed once first, so the cancel has a bOK to take back.
        QCOMPARE(runModal<Window_Silence_Trim>(
                     dialog, [](Window_Silence_Trim* d) { clickButton(d, QDialogButtonBox::Ok); }),
                 1);
        QCOMPARE(dialog.bOK, true);
        const int result = runModal<Window_Silence_Trim>(dialog, [how](Window_Silence_Trim* d) {
            typeInto(d->textDuration, "2000");
            if (how == "cancel")
                clickButton(d, QDialogButtonBox::Cancel);
            else if (how == "close")
                d->close();
            else
                QTest::keyClick(d, Qt::Key_Escape);
        });
        QCOMPARE(result, 0);
        QCOMPARE(dialog.result(), int(QDialog::Rejected));
        QCOMPARE(dialog.bOK, false);
        QVERIFY(!dialog.isVisible());
    }
};

QTEST_MAIN(tst_SilenceDialogs)
#include "tst_silencedialogs.moc"
