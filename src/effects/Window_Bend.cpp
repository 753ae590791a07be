#include "Window_Bend.h"

#include "app/TextNumbers.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>

Window_Bend::Window_Bend(QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(QStringLiteral("Bend"));

    textStart = new QLineEdit(QStringLiteral("1000"), this);
    textStart->setObjectName(QStringLiteral("textStart"));
    form()->addRow(QStringLiteral("Start (ms):"), textStart);

    sliderCents = new QSlider(Qt::Horizontal, this);
    sliderCents->setObjectName(QStringLiteral("sliderCents"));
    // sox refuses a bend of 0 cents, so the slider never offers it.
    sliderCents->setRange(1, 1200);
    sliderCents->setValue(300);
    labelCents = new QLabel(this);
    labelCents->setObjectName(QStringLiteral("labelCents"));
    labelCents->setMinimumWidth(labelCents->fontMetrics().horizontalAdvance(QStringLiteral("-00000")));
    auto* centsRow = new QHBoxLayout;
    centsRow->addWidget(sliderCents);
    centsRow->addWidget(labelCents);
    form()->addRow(QStringLiteral("Bend (cents):"), centsRow);

    textDuration = new QLineEdit(QStringLiteral("2000"), this);
    textDuration->setObjectName(QStringLiteral("textDuration"));
    form()->addRow(QStringLiteral("Duration (ms):"), textDuration);

    connect(sliderCents, &QSlider::valueChanged, this, &Window_Bend::OnChangeCents);
    OnChangeCents();
}

void Window_Bend::OnChangeCents() {
    labelCents->setText(QString::asprintf("%d", sliderCents->value()));
}

QString Window_Bend::validate() {
    // Negative whole entries convert to quint64 as they stand.
    f_Start = quint64(intValue(textStart->text()));
    f_Cents = intValue(labelCents->text());
    f_Duration = quint64(intValue(textDuration->text()));
    if (f_Duration == 0)
        return QStringLiteral("Duration invalid.");
    return {};
}

EffectValues Window_Bend::effectValues() const {
    return {{QStringLiteral("f_Start"), QVariant::fromValue(f_Start)},
            {QStringLiteral("f_Cents"), QVariant::fromValue(f_Cents)},
            {QStringLiteral("f_Duration"), QVariant::fromValue(f_Duration)}};
}
