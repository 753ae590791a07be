#pragma once

// Driving a modal parameter dialog through its real widgets, as a user would.

#include "support/Gui.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>

namespace dialogs {

inline QPushButton* buttonOf(QDialog* dialog, QDialogButtonBox::StandardButton which) {
    auto* box = dialog->findChild<QDialogButtonBox*>();
    return box ? box->button(which) : nullptr;
}

inline void clickButton(QDialog* dialog, QDialogButtonBox::StandardButton which) {
    QPushButton* button = buttonOf(dialog, which);
    QVERIFY(button);
    QVERIFY(button->isVisible());
    QTest::mouseClick(button, Qt::LeftButton);
}

inline void typeInto(QLineEdit* field, const QString& text) {
    field->clear();
    QTest::keyClicks(field, text);
    QCOMPARE(field->text(), text);
}

// Shows `dialog` modally and lets `act` drive it once it is up. A dialog that is
// still open after 20 s is ended with -1 so a broken run fails instead of hanging.
template <typename D> int runModal(D& dialog, std::function<void(D*)> act) {
    D* expected = &dialog;
    gui::whenModal<D>([expected, act](D* shown) {
        QCOMPARE(shown, expected);
        act(shown);
    });
    QTimer watchdog;
    watchdog.setSingleShot(true);
    QObject::connect(&watchdog, &QTimer::timeout, &dialog, [&dialog] { dialog.done(-1); });
    watchdog.start(20000);
    return dialog.exec();
}

// What a refused OK showed, and how the dialog stood when the alert had gone.
struct Refusal {
    gui::AlertSeen alert;
    bool stillOpen = false; // up, modal, not confirmed, and as `check` wants it
    int result = -2;        // what exec() returned in the end
};

// Lets `fill` set the dialog's controls, presses OK and expects an alert.
// Then `retry` (when given) corrects the controls and presses OK again;
// otherwise the dialog is cancelled.
template <typename D>
Refusal refuseOnce(D& dialog, std::function<void(D*)> fill, std::function<bool(D*)> check = {},
                   std::function<void(D*)> retry = {}) {
    auto refusal = std::make_shared<Refusal>();
    refusal->result = runModal<D>(dialog, [fill, check, retry, refusal](D* d) {
        fill(d);
        auto seen = gui::answerAlert();
        clickButton(d, QDialogButtonBox::Ok);
        QVERIFY(QTest::qWaitFor([seen] { return seen->shown; }, 10000));
        refusal->alert = *seen;
        refusal->stillOpen =
            d->isVisible() && QApplication::activeModalWidget() == d && !d->bOK && (!check || check(d));
        if (retry) {
            retry(d);
            clickButton(d, QDialogButtonBox::Ok);
        } else {
            clickButton(d, QDialogButtonBox::Cancel);
        }
    });
    return *refusal;
}

} // namespace dialogs
