#include "Window_Noise_Reduction.h"

#include "app/DialogRows.h"
#include "app/TextNumbers.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>

Window_Noise_Reduction::Window_Noise_Reduction(QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(QStringLiteral("Noise Reduction"));
    form()->addRow(QStringLiteral("Reduction:"),
                   sliderRow(this, sliderLevel, labelLevel, "sliderLevel", "labelLevel", 0, 100, 25));
    connect(sliderLevel, &QSlider::valueChanged, this, &Window_Noise_Reduction::OnChangeLevel);
    OnChangeLevel();
}

void Window_Noise_Reduction::OnChangeLevel() {
    showScaled(labelLevel, sliderLevel, 100, "%.2f");
}

QString Window_Noise_Reduction::validate() {
    f_Level = floatValue(labelLevel->text());
    return {};
}

EffectValues Window_Noise_Reduction::effectValues() const {
    return {{QStringLiteral("f_Level"), QVariant::fromValue(f_Level)}};
}
