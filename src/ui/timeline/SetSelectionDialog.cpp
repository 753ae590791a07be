#include "SetSelectionDialog.h"

#include "timeline/TimeStrings.h"
#include "timeline/TypedSelection.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

SetSelectionDialog::SetSelectionDialog(float start, float end, float length, QWidget* parent)
    : QDialog(parent), m_length(length) {
    setObjectName(QStringLiteral("SetSelectionDialog"));
    setWindowTitle(tr("Set Selection"));
    fieldStart = new QLineEdit(timeString(start), this);
    fieldStart->setObjectName(QStringLiteral("fieldStart"));
    fieldEnd = new QLineEdit(timeString(end), this);
    fieldEnd->setObjectName(QStringLiteral("fieldEnd"));
    for (QLineEdit* field : {fieldStart, fieldEnd})
        field->setToolTip(tr("Hours, minutes, seconds and hundredths (00:07:29.50), or seconds (449.5)"));
    labelProblem = new QLabel(this);
    labelProblem->setObjectName(QStringLiteral("labelProblem"));
    labelProblem->setWordWrap(true);
    labelProblem->setStyleSheet(QStringLiteral("color: #b00020"));
    labelProblem->hide();
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &SetSelectionDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &SetSelectionDialog::reject);

    auto* form = new QFormLayout;
    form->addRow(tr("&Start:"), fieldStart);
    form->addRow(tr("&End:"), fieldEnd);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(labelProblem);
    layout->addWidget(buttons);
    fieldStart->selectAll();
}

void SetSelectionDialog::accept() {
    const TypedSelection selection = typedSelection(fieldStart->text(), fieldEnd->text(), m_length);
    if (!selection.problem.isEmpty()) {
        labelProblem->setText(selection.problem);
        labelProblem->show();
        return;
    }
    m_start = selection.start;
    m_end = selection.end;
    QDialog::accept();
}
