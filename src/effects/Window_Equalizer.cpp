#include "Window_Equalizer.h"

#include "app/DialogRows.h"
#include "app/TextNumbers.h"

#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>

namespace {
// What the band's centre frequency is called under its slider.
const char* const bandNames[Window_Equalizer::bands] = {
    "24",  "34",   "48",   "68",   "96",   "136",  "193",  "273",  "386",   "546",
    "772", "1.1k", "1.5k", "2.2k", "3.1k", "4.4k", "6.2k", "8.7k", "12.4k", "17.5k"};

QString twoDigits(int n) {
    return QString::asprintf("%02d", n);
}
} // namespace

Window_Equalizer::Window_Equalizer(QWidget* parent) : EffectDialog(parent) {
    setWindowTitle(QStringLiteral("Equalizer"));

    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(4);
    for (int b = 0; b < bands; ++b) {
        QSlider* slider = new QSlider(Qt::Vertical, this);
        slider->setObjectName("sliderdB" + twoDigits(b + 1));
        slider->setRange(-20, 20);
        slider->setValue(0);
        slider->setMinimumHeight(140);
        slider->setTickPosition(QSlider::TicksBothSides);
        slider->setTickInterval(10);
        QLabel* label = new QLabel(this);
        label->setObjectName("labeldB" + twoDigits(b + 1));
        label->setAlignment(Qt::AlignCenter);
        label->setMinimumWidth(label->fontMetrics().horizontalAdvance(QStringLiteral("-00")));
        auto* name = new QLabel(QLatin1String(bandNames[b]), this);
        name->setAlignment(Qt::AlignCenter);
        grid->addWidget(label, 0, b, Qt::AlignHCenter);
        grid->addWidget(slider, 1, b, Qt::AlignHCenter);
        grid->addWidget(name, 2, b, Qt::AlignHCenter);
        sliderdB[std::size_t(b)] = slider;
        labeldB[std::size_t(b)] = label;
    }
    form()->addRow(QStringLiteral("Gain (dB):"), grid);

    form()->addRow(QStringLiteral("Bandwidth (Q):"),
                   sliderRow(this, sliderBandwidthQ, labelBandwidthQ, "sliderBandwidthQ", "labelBandwidthQ",
                             10, 5000, 1000));

    void (Window_Equalizer::*const changed[bands])() = {
        &Window_Equalizer::OnChangedB01, &Window_Equalizer::OnChangedB02, &Window_Equalizer::OnChangedB03,
        &Window_Equalizer::OnChangedB04, &Window_Equalizer::OnChangedB05, &Window_Equalizer::OnChangedB06,
        &Window_Equalizer::OnChangedB07, &Window_Equalizer::OnChangedB08, &Window_Equalizer::OnChangedB09,
        &Window_Equalizer::OnChangedB10, &Window_Equalizer::OnChangedB11, &Window_Equalizer::OnChangedB12,
        &Window_Equalizer::OnChangedB13, &Window_Equalizer::OnChangedB14, &Window_Equalizer::OnChangedB15,
        &Window_Equalizer::OnChangedB16, &Window_Equalizer::OnChangedB17, &Window_Equalizer::OnChangedB18,
        &Window_Equalizer::OnChangedB19, &Window_Equalizer::OnChangedB20};
    for (int b = 0; b < bands; ++b) {
        connect(sliderdB[std::size_t(b)], &QSlider::valueChanged, this, changed[b]);
        showBand(b);
    }
    connect(sliderBandwidthQ, &QSlider::valueChanged, this, &Window_Equalizer::OnChangeBandwidthQ);
    OnChangeBandwidthQ();
}

void Window_Equalizer::showBand(int index) {
    showWhole(labeldB[std::size_t(index)], sliderdB[std::size_t(index)]);
}

void Window_Equalizer::OnChangedB01() {
    showBand(0);
}
void Window_Equalizer::OnChangedB02() {
    showBand(1);
}
void Window_Equalizer::OnChangedB03() {
    showBand(2);
}
void Window_Equalizer::OnChangedB04() {
    showBand(3);
}
void Window_Equalizer::OnChangedB05() {
    showBand(4);
}
void Window_Equalizer::OnChangedB06() {
    showBand(5);
}
void Window_Equalizer::OnChangedB07() {
    showBand(6);
}
void Window_Equalizer::OnChangedB08() {
    showBand(7);
}
void Window_Equalizer::OnChangedB09() {
    showBand(8);
}
void Window_Equalizer::OnChangedB10() {
    showBand(9);
}
void Window_Equalizer::OnChangedB11() {
    showBand(10);
}
void Window_Equalizer::OnChangedB12() {
    showBand(11);
}
void Window_Equalizer::OnChangedB13() {
    showBand(12);
}
void Window_Equalizer::OnChangedB14() {
    showBand(13);
}
void Window_Equalizer::OnChangedB15() {
    showBand(14);
}
void Window_Equalizer::OnChangedB16() {
    showBand(15);
}
void Window_Equalizer::OnChangedB17() {
    showBand(16);
}
void Window_Equalizer::OnChangedB18() {
    showBand(17);
}
void Window_Equalizer::OnChangedB19() {
    showBand(18);
}
void Window_Equalizer::OnChangedB20() {
    showBand(19);
}

void Window_Equalizer::OnChangeBandwidthQ() {
    showScaled(labelBandwidthQ, sliderBandwidthQ, 1000, "%.2f");
}

QString Window_Equalizer::validate() {
    // Nothing is refused.
    for (std::size_t b = 0; b < f_dB.size(); ++b)
        f_dB[b] = intValue(labeldB[b]->text());
    f_BandwidthQ = floatValue(labelBandwidthQ->text());
    return {};
}

EffectValues Window_Equalizer::effectValues() const {
    EffectValues values{{QStringLiteral("f_BandwidthQ"), QVariant::fromValue(f_BandwidthQ)}};
    for (std::size_t b = 0; b < f_dB.size(); ++b)
        values.insert("f_dB_" + twoDigits(int(b) + 1), QVariant::fromValue(f_dB[b]));
    return values;
}
