#include "ParameterDialog.h"

#include "Alerts.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>
#include <QVBoxLayout>

ParameterDialog::ParameterDialog(QWidget* parent) : QDialog(parent) {
    setModal(true);

    auto* layout = new QVBoxLayout(this);
    form_ = new QFormLayout;
    layout->addLayout(form_);

    buttons_ = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons_->button(QDialogButtonBox::Ok)->setDefault(true);
    layout->addWidget(buttons_);

    connect(buttons_, &QDialogButtonBox::accepted, this, &ParameterDialog::OnOK);
    connect(buttons_, &QDialogButtonBox::rejected, this, &ParameterDialog::OnCancel);
}

void ParameterDialog::OnOK() {
    const QString problem = validate();
    if (!problem.isEmpty()) {
        showErrorAlert(this, problem);
        return;
    }
    bOK = true;
    done(QDialog::Accepted);
}

void ParameterDialog::OnCancel() {
    cancelled();
    bOK = false;
    done(QDialog::Rejected);
}

// QDialog sends both Escape and a close of a visible dialog to reject(), so the
// one override covers every way out that is not OK.
void ParameterDialog::reject() {
    OnCancel();
}
