#include "DialogRows.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>

QHBoxLayout* sliderRow(QWidget* owner, QSlider*& slider, QLabel*& label, const char* sliderName,
                       const char* labelName, int minimum, int maximum, int start) {
    slider = new QSlider(Qt::Horizontal, owner);
    slider->setObjectName(QLatin1String(sliderName));
    slider->setRange(minimum, maximum);
    slider->setValue(start);
    slider->setMinimumWidth(240);
    label = new QLabel(owner);
    label->setObjectName(QLatin1String(labelName));
    label->setMinimumWidth(label->fontMetrics().horizontalAdvance(QStringLiteral("00.00")));
    auto* row = new QHBoxLayout;
    row->addWidget(slider);
    row->addWidget(label);
    return row;
}

QLineEdit* textField(QWidget* owner, const char* name, const char* text) {
    auto* field = new QLineEdit(QLatin1String(text), owner);
    field->setObjectName(QLatin1String(name));
    return field;
}

void showWhole(QLabel* label, const QSlider* slider, int factor) {
    label->setText(QString::asprintf("%d", slider->value() * factor));
}

void showScaled(QLabel* label, const QSlider* slider, double divisor, const char* format) {
    label->setText(QString::asprintf(format, double(slider->value()) / divisor));
}

QLabel* hintLabel(QWidget* owner, const QString& text) {
    auto* hint = new QLabel(text, owner);
    hint->setEnabled(false); // drawn in the muted colour of secondary text
    hint->setWordWrap(true);
    return hint;
}
