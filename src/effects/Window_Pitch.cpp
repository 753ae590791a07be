#include "Window_Pitch.h"

#include "app/DialogRows.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>

Window_Pitch::Window_Pitch(QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(QStringLiteral("Pitch"));
    form()->addRow(QStringLiteral("Semitones:"),
                   sliderRow(this, sliderSemitones, labelSemitones, "sliderSemitones", "labelSemitones",
                             -1200, 1200, 300));
    connect(sliderSemitones, &QSlider::valueChanged, this, &Window_Pitch::OnChangeSemitones);
    OnChangeSemitones();
}

void Window_Pitch::OnChangeSemitones() {
    labelSemitones->setText(QString::asprintf("%.02f", double(sliderSemitones->value()) / 100));
}

QString Window_Pitch::validate() {
    f_Semitones = float(sliderSemitones->value());
    return {};
}

EffectValues Window_Pitch::effectValues() const {
    return {{QStringLiteral("f_Semitones"), QVariant::fromValue(f_Semitones)}};
}
