#include "Alerts.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

int showAlert(QWidget* parent, const QString& text, const QString& informativeText,
              const QStringList& buttons, int escape) {
    QMessageBox box(parent);
    box.setIcon(text == QStringLiteral("Error") ? QMessageBox::Warning : QMessageBox::Information);
    box.setWindowTitle(QStringLiteral("Tanselo"));
    box.setText(text);
    box.setInformativeText(informativeText);
    QList<QPushButton*> added;
    for (const QString& button : buttons)
        added.append(
            box.addButton(button, added.isEmpty() ? QMessageBox::AcceptRole : QMessageBox::RejectRole));
    if (!added.isEmpty())
        box.setDefaultButton(added.first());
    if (escape >= 0 && escape < added.size())
        box.setEscapeButton(added.at(escape));
    box.exec();
    return int(added.indexOf(qobject_cast<QPushButton*>(box.clickedButton())));
}

void showErrorAlert(QWidget* parent, const QString& informativeText) {
    showAlert(parent, QStringLiteral("Error"), informativeText, {QStringLiteral("Close")});
}

ClosingAnswer askBeforeClosing(QWidget* parent, const QStringList& sources) {
    return closingAnswer(showAlert(parent, closingQuestion(sources), closingDetails(sources),
                                   closingButtons(), int(ClosingAnswer::Cancel)));
}

void showWithCloseButton(QDialog& dialog, QWidget* content) {
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    auto* layout = new QVBoxLayout(&dialog);
    layout->addWidget(content);
    layout->addWidget(buttons);
    dialog.exec();
}
