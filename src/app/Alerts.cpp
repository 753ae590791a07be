#include "Alerts.h"

#include <QMessageBox>

void showErrorAlert(QWidget* parent, const QString& informativeText) {
    QMessageBox box(parent);
    box.setIcon(QMessageBox::Warning);
    box.setWindowTitle(QStringLiteral("Tanselo"));
    box.setText(QStringLiteral("Error"));
    box.setInformativeText(informativeText);
    box.addButton(QStringLiteral("Close"), QMessageBox::AcceptRole);
    box.exec();
}
