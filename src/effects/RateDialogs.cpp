#include "RateDialogs.h"

#include "app/DialogRows.h"
#include "app/TextNumbers.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>

RateDialog::RateDialog(const QString& title, QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(title);
    form()->addRow(QStringLiteral("Percentage:"),
                   sliderRow(this, sliderPercentage, labelPercentage, "sliderPercentage", "labelPercentage",
                             50, 200, 125));
    labelPercentage->setMinimumWidth(
        labelPercentage->fontMetrics().horizontalAdvance(QStringLiteral("000.00")));
    connect(sliderPercentage, &QSlider::valueChanged, this, &RateDialog::OnChangePercentage);
    OnChangePercentage();
}

void RateDialog::OnChangePercentage() {
    labelPercentage->setText(QString::asprintf("%.02f", double(sliderPercentage->value())));
}

QString RateDialog::validate() {
    f_Percentage = floatValue(labelPercentage->text());
    return {};
}

EffectValues RateDialog::effectValues() const {
    return {{QStringLiteral("f_Percentage"), QVariant::fromValue(f_Percentage)}};
}

Window_Speed::Window_Speed(QWidget* parent) : RateDialog(QStringLiteral("Speed"), parent) {}

Window_Tempo::Window_Tempo(QWidget* parent) : RateDialog(QStringLiteral("Tempo"), parent) {}
