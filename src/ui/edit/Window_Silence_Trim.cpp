#include "Window_Silence_Trim.h"

#include "text/TextNumbers.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QRadioButton>
#include <QWidget>

Window_Silence_Trim::Window_Silence_Trim(QWidget* parent) : ParameterDialog(parent) {
    setWindowTitle(QStringLiteral("Trim Silence"));

    auto* where = new QWidget(this);
    auto* row = new QHBoxLayout(where);
    row->setContentsMargins(0, 0, 0, 0);
    radioStart = new QRadioButton(QStringLiteral("Start"), where);
    radioEnd = new QRadioButton(QStringLiteral("End"), where);
    radioEntire = new QRadioButton(QStringLiteral("Both ends"), where);
    radioStart->setObjectName(QStringLiteral("radioStart"));
    radioEnd->setObjectName(QStringLiteral("radioEnd"));
    radioEntire->setObjectName(QStringLiteral("radioEntire"));
    row->addWidget(radioStart);
    row->addWidget(radioEnd);
    row->addWidget(radioEntire);
    form()->addRow(QStringLiteral("Trim silence from:"), where);

    textDuration = new QLineEdit(this);
    textDuration->setObjectName(QStringLiteral("textDuration"));
    form()->addRow(QStringLiteral("Minimum silence (ms):"), textDuration);

    connect(radioStart, &QRadioButton::clicked, this, &Window_Silence_Trim::OnRadioStart);
    connect(radioEnd, &QRadioButton::clicked, this, &Window_Silence_Trim::OnRadioEnd);
    connect(radioEntire, &QRadioButton::clicked, this, &Window_Silence_Trim::OnRadioEntire);

    windowDidLoad();
}

void Window_Silence_Trim::windowDidLoad() {
    choose(radioEntire);
    textDuration->setText(QStringLiteral("1500"));
}

// The chosen button goes on first: the buttons share a parent and so exclude one
// another, and a checked one could not be turned off on its own.
void Window_Silence_Trim::choose(QRadioButton* chosen) {
    chosen->setChecked(true);
    for (QRadioButton* other : {radioStart, radioEnd, radioEntire})
        if (other != chosen)
            other->setChecked(false);
}

void Window_Silence_Trim::OnRadioStart() {
    choose(radioStart);
}
void Window_Silence_Trim::OnRadioEnd() {
    choose(radioEnd);
}
void Window_Silence_Trim::OnRadioEntire() {
    choose(radioEntire);
}

QString Window_Silence_Trim::validate() {
    if (radioStart->isChecked())
        u_Start_End_Or_Entire = 1;
    else if (radioEnd->isChecked())
        u_Start_End_Or_Entire = 2;
    else if (radioEntire->isChecked())
        u_Start_End_Or_Entire = 3;

    u_Miliseconds = quint64(intValue(textDuration->text()));
    if (u_Miliseconds == 0)
        return QStringLiteral("Duration invalid.");
    return {};
}
