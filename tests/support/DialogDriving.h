#pragma once

// Driving a modal parameter dialog through its real widgets, as a user would.

#include "support/Gui.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>

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

} // namespace dialogs
