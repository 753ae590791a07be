#include "Window_Silence_Insert.h"

#include "text/TextNumbers.h"

#include <QFormLayout>
#include <QLineEdit>

Window_Silence_Insert::Window_Silence_Insert(QWidget* parent) : ParameterDialog(parent) {
    setWindowTitle(QStringLiteral("Insert Silence"));

    textLengthInMS = new QLineEdit(this);
    textLengthInMS->setObjectName(QStringLiteral("textLengthInMS"));
    form()->addRow(QStringLiteral("Length (ms):"), textLengthInMS);

    windowDidLoad();
}

void Window_Silence_Insert::windowDidLoad() {
    u_Length_In_MS = 1000;
    textLengthInMS->setText(QString::asprintf("%d", int(u_Length_In_MS)));
}

QString Window_Silence_Insert::validate() {
    // A negative entry is not refused here: it converts to quint64 as it stands.
    u_Length_In_MS = quint64(intValue(textLengthInMS->text()));
    if (u_Length_In_MS == 0)
        return QStringLiteral("Length invalid.");
    return {};
}

void Window_Silence_Insert::cancelled() {
    u_Length_In_MS = 0;
}
