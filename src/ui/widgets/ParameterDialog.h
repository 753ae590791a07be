#pragma once

#include <QDialog>
#include <QString>

class QDialogButtonBox;
class QFormLayout;

// What every parameter dialog shares: a form of controls above OK and Cancel.
// OK asks the subclass to read and check its controls; a refusal is shown as an
// error alert and the dialog stays open for another try. Cancel, Escape and
// closing the window all end the dialog the same way. After it ends, bOK says
// whether the user confirmed, and exec() returns 1 for OK and 0 otherwise.
class ParameterDialog : public QDialog {
    Q_OBJECT
public:
    explicit ParameterDialog(QWidget* parent = nullptr);

    bool bOK = false;

    // Shows the dialog modally; 1 when confirmed, 0 when cancelled.
    int run() { return exec(); }

public slots:
    void OnOK();
    void OnCancel();

    // Escape and the window's close button both arrive here.
    void reject() override;

protected:
    // Reads the controls into the dialog's properties. Empty when they are
    // acceptable, otherwise the text the alert shows.
    virtual QString validate() = 0;

    // Lets a subclass reset its properties when the user backs out.
    virtual void cancelled() {}

    // The layout subclasses fill with their labelled controls.
    QFormLayout* form() const { return form_; }
    // Where OK and Cancel are, for a subclass's own buttons beside them.
    QDialogButtonBox* buttonBox() const { return buttons_; }

private:
    QFormLayout* form_ = nullptr;
    QDialogButtonBox* buttons_ = nullptr;
};
