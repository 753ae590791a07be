#include "Window_Amplify.h"

#include "app/TextNumbers.h"

#include <QFormLayout>
#include <QLineEdit>

Window_Amplify::Window_Amplify(QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(QStringLiteral("Amplify"));

    textPercentage = new QLineEdit(QStringLiteral("100"), this);
    textPercentage->setObjectName(QStringLiteral("textPercentage"));
    form()->addRow(QStringLiteral("Volume (%):"), textPercentage);
}

QString Window_Amplify::validate() {
    // A negative entry converts to quint64 as it stands, like the other whole fields.
    u_Percentage = quint64(intValue(textPercentage->text()));
    if (u_Percentage == 0)
        return QStringLiteral("Percentage invalid.");
    return {};
}

EffectValues Window_Amplify::effectValues() const {
    return {{QStringLiteral("u_Percentage"), QVariant::fromValue(u_Percentage)}};
}
