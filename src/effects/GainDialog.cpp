#include "GainDialog.h"

#include "app/DialogRows.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>

GainDialog::GainDialog(const QString& title, int gainIn, int gainOut, QWidget* parent)
    : EffectDialog(parent), f_Gain_In(float(gainIn)), f_Gain_Out(float(gainOut)) {
    setWindowTitle(title);
    form()->addRow(QStringLiteral("Gain in (%):"),
                   sliderRow(this, sliderGainIn, labelGainIn, "sliderGainIn", "labelGainIn", 0, 100, gainIn));
    form()->addRow(
        QStringLiteral("Gain out (%):"),
        sliderRow(this, sliderGainOut, labelGainOut, "sliderGainOut", "labelGainOut", 0, 100, gainOut));
    connect(sliderGainIn, &QSlider::valueChanged, this, &GainDialog::OnChangeGainIn);
    connect(sliderGainOut, &QSlider::valueChanged, this, &GainDialog::OnChangeGainOut);
    OnChangeGainIn();
    OnChangeGainOut();
}

void GainDialog::OnChangeGainIn() {
    showWhole(labelGainIn, sliderGainIn);
}

void GainDialog::OnChangeGainOut() {
    showWhole(labelGainOut, sliderGainOut);
}

void GainDialog::readGains() {
    f_Gain_In = float(sliderGainIn->value());
    f_Gain_Out = float(sliderGainOut->value());
}

EffectValues GainDialog::withGains(EffectValues values) const {
    values.insert(QStringLiteral("f_Gain_In"), QVariant::fromValue(f_Gain_In));
    values.insert(QStringLiteral("f_Gain_Out"), QVariant::fromValue(f_Gain_Out));
    return values;
}

QComboBox* GainDialog::addModulationRow() {
    auto* combo = new QComboBox(this);
    combo->setObjectName(QStringLiteral("comboModulation"));
    combo->addItems({QStringLiteral("Triangular"), QStringLiteral("Sinusoidal")});
    combo->setCurrentIndex(0);
    form()->addRow(QStringLiteral("Modulation:"), combo);
    return combo;
}
