#include "application/AppDelegate.h"
#include "document/Document.h"
#include "support/Fixtures.h"
#include "support/Gui.h"
#include "timeline/SpokenText.h"
#include "timeline/View_Audio_Wave.h"
#include "timeline/View_Time_Rule.h"

#include <QAccessible>
#include <QAction>
#include <QLabel>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

// What a screen reader hears of a window, and what the Tab key reaches.
class tst_Accessibility : public QObject {
    Q_OBJECT
    QTemporaryDir m_root;

    static QString said(QWidget* widget, QAccessible::Text text) {
        QAccessibleInterface* face = QAccessible::queryAccessibleInterface(widget);
        return face ? face->text(text) : QString();
    }

private slots:
    void timesAreSaidInWords() {
        QCOMPARE(spoken::time(0), QString("0 seconds"));
        QCOMPARE(spoken::time(1), QString("1 second"));
        QCOMPARE(spoken::time(3.5), QString("3.5 seconds"));
        QCOMPARE(spoken::time(65), QString("1 minute 5 seconds"));
        QCOMPARE(spoken::time(3725.2), QString("1 hour 2 minutes 5.2 seconds"));
        QCOMPARE(spoken::time(7200), QString("2 hours"));
        QCOMPARE(spoken::time(-3), QString("0 seconds"));
        QCOMPARE(spoken::time(std::nan("")), QString("0 seconds"));
        QCOMPARE(
            spoken::waveform("a.wav", true, 10, 2, 5, 3),
            QString("Track “a.wav”, 10 seconds long; selected from 2 seconds to 5 seconds; play position "
                    "at 3 seconds."));
        QCOMPARE(spoken::waveform("a.wav", false, 0, 0, 0, 0), QString("No track is loaded yet."));
        QCOMPARE(spoken::ruler(90), QString("Time from 0 seconds to 1 minute 30 seconds."));
    }

    void everyControlHasANameAndTheTabKeyReachesIt() {
        auto app = gui::startApplication(m_root.filePath("home"));
        QVERIFY(app);
        const QString tone = m_root.filePath("tone.wav");
        fixtures::makeTone(tone, 10, 440);
        Document* d = gui::openInNewWindow(*app, tone);
        QVERIFY(d);
        d->track().f_Selection_Start = 20;
        d->track().f_Selection_End = 50;
        d->track().f_Audio_Position = 3;
        emit d->viewAudioPlot->markersChanged(); // as a drag of the markers does

        QList<QWidget*> reachable;
        auto* bar = d->findChild<QToolBar*>();
        for (QAction* action : bar->actions())
            if (!action->isSeparator()) {
                QWidget* button = bar->widgetForAction(action);
                QCOMPARE(said(button, QAccessible::Name), action->text());
                QCOMPARE(said(button, QAccessible::Description), action->toolTip());
                reachable << button;
            }
        QCOMPARE(said(d->viewAudioPlot, QAccessible::Name), QString("Waveform"));
        QCOMPARE(
            said(d->viewAudioPlot, QAccessible::Description),
            QString("Track “%1”, 10 seconds long; selected from 2 seconds to 5 seconds; play position at 3 "
                    "seconds.")
                .arg(d->windowTitle()));
        QCOMPARE(said(d->viewTimeRule, QAccessible::Name), QString("Time ruler"));
        QCOMPARE(said(d->viewTimeRule, QAccessible::Description),
                 QString("Time from 0 seconds to 10 seconds."));
        QCOMPARE(said(d->labelSelection, QAccessible::Name), QString("Selection"));
        QVERIFY(said(d->labelSelection, QAccessible::Description).contains("00:00:02.00 – 00:00:05.00"));
        QCOMPARE(said(d->labelDuration, QAccessible::Name), QString("Length"));
        QVERIFY(said(d->labelDuration, QAccessible::Description).contains("00:00:10"));
        QCOMPARE(said(d->labelSource, QAccessible::Description), QString("tone.wav"));
        reachable << d->viewAudioPlot << d->viewTimeRule << d->labelSelection << d->labelPosition
                  << d->labelSource << d->labelDuration;

        // Tab goes round every one of them.
        d->show();
        d->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(d));
        reachable.first()->setFocus(Qt::TabFocusReason);
        QSet<QWidget*> visited;
        for (int press = 0; press < 200 && QApplication::focusWidget(); ++press) {
            visited.insert(QApplication::focusWidget());
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        for (QWidget* widget : std::as_const(reachable))
            QVERIFY2(!widget->isEnabled() || visited.contains(widget),
                     qPrintable(widget->accessibleName() + " is not reached by Tab"));
        delete d;
    }
};

QTEST_MAIN(tst_Accessibility)
#include "tst_accessibility.moc"
