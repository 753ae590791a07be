#include "Window_Percentage.h"

#include "app/DialogRows.h"
#include "app/TextNumbers.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>

Window_Percentage::Window_Percentage(QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(QStringLiteral("Percentage"));
    form()->addRow(QStringLiteral("Amount (%):"),
                   sliderRow(this, sliderPercentage, labelPercentage, "sliderPercentage", "labelPercentage",
                             0, 100, 75));
    connect(sliderPercentage, &QSlider::valueChanged, this, &Window_Percentage::OnChangePercentage);
    OnChangePercentage();
}

void Window_Percentage::OnChangePercentage() {
    showWhole(labelPercentage, sliderPercentage);
}

QString Window_Percentage::validate() {
    f_Percentage = quint64(intValue(labelPercentage->text()));
    return {};
}

EffectValues Window_Percentage::effectValues() const {
    return {{QStringLiteral("f_Percentage"), QVariant::fromValue(f_Percentage)}};
}
