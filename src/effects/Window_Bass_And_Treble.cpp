#include "Window_Bass_And_Treble.h"

#include "app/DialogRows.h"
#include "app/TextNumbers.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>

Window_Bass_And_Treble::Window_Bass_And_Treble(QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(QStringLiteral("Bass and Treble"));
    form()->addRow(QStringLiteral("Bass (dB):"),
                   sliderRow(this, sliderBass, labelBass, "sliderBass", "labelBass", -200, 200, 50));
    form()->addRow(QStringLiteral("Treble (dB):"),
                   sliderRow(this, sliderTreble, labelTreble, "sliderTreble", "labelTreble", -200, 200, 30));
    connect(sliderBass, &QSlider::valueChanged, this, &Window_Bass_And_Treble::OnSliderChangeBass);
    connect(sliderTreble, &QSlider::valueChanged, this, &Window_Bass_And_Treble::OnSliderChangeTreble);
    OnSliderChangeBass();
    OnSliderChangeTreble();
}

void Window_Bass_And_Treble::OnSliderChangeBass() {
    labelBass->setText(QString::asprintf("%.02f", double(sliderBass->value()) / 10));
}

void Window_Bass_And_Treble::OnSliderChangeTreble() {
    labelTreble->setText(QString::asprintf("%.02f", double(sliderTreble->value()) / 10));
}

QString Window_Bass_And_Treble::validate() {
    f_Bass = floatValue(labelBass->text());
    f_Treble = floatValue(labelTreble->text());
    return {};
}

EffectValues Window_Bass_And_Treble::effectValues() const {
    return {{QStringLiteral("f_Bass"), QVariant::fromValue(f_Bass)},
            {QStringLiteral("f_Treble"), QVariant::fromValue(f_Treble)}};
}
