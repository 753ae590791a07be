#include "Window_Split_Silence.h"

#include "text/TextNumbers.h"
#include "widgets/DialogRows.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>

namespace {
// Speech and music fall silent well below a tenth of full scale; the slider
// keeps to the range where a split is useful.
constexpr int ThresholdMinimum = 0, ThresholdMaximum = 20, ThresholdStart = 1;
} // namespace

Window_Split_Silence::Window_Split_Silence(QWidget* parent) : ParameterDialog(parent) {
    setWindowTitle(QStringLiteral("Split on Silence"));
    textMinimum = textField(this, "textMinimum", "");
    textMaximum = textField(this, "textMaximum", "");
    form()->addRow(QStringLiteral("Sound before a piece starts (s):"), textMinimum);
    form()->addRow(QStringLiteral("Silence that ends a piece (s):"), textMaximum);
    form()->addRow(QStringLiteral("Silence below (%):"),
                   sliderRow(this, sliderThreshold, labelThreshold, "sliderThreshold", "labelThreshold",
                             ThresholdMinimum, ThresholdMaximum, ThresholdStart));
    connect(sliderThreshold, &QSlider::valueChanged, this, &Window_Split_Silence::OnChangeThreshold);
    windowDidLoad();
}

void Window_Split_Silence::windowDidLoad() {
    textMinimum->setText(QStringLiteral("0.5"));
    textMaximum->setText(QStringLiteral("2.0"));
    OnChangeThreshold();
}

void Window_Split_Silence::OnChangeThreshold() {
    showWhole(labelThreshold, sliderThreshold);
}

QString Window_Split_Silence::validate() {
    f_Minimum = floatValue(textMinimum->text());
    f_Maximum = floatValue(textMaximum->text());
    f_Threshold = intValue(labelThreshold->text()); // the label, as shown to the user
    return splitting::silenceSettingsProblem(f_Minimum, f_Maximum);
}
