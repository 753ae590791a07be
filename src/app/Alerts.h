#pragma once

#include <QString>

class QWidget;

// The one way failures are shown: a modal alert with the message "Error", an
// informative text and one button "Close".
void showErrorAlert(QWidget* parent, const QString& informativeText);
