#pragma once

#include "effects/EffectDialogs.h"

#include <array>

class QLabel;
class QSlider;

// Twenty bands of a graphic equalizer, each a vertical slider in decibels,
// and one bandwidth for them all (the slider counts thousandths).
class Window_Equalizer : public EffectDialog {
    Q_OBJECT
public:
    static constexpr int bands = 20;

    explicit Window_Equalizer(QWidget* parent = nullptr);

    // Band n (1 to 20) is sliderdB[n - 1], named "sliderdB01" … "sliderdB20",
    // shown in labeldB[n - 1] ("labeldB01" …).
    std::array<QSlider*, bands> sliderdB{};
    std::array<QLabel*, bands> labeldB{};
    QSlider* sliderBandwidthQ = nullptr;
    QLabel* labelBandwidthQ = nullptr;

    // f_dB_01 … f_dB_20, band by band, as the labels show them.
    std::array<qint64, bands> f_dB{};
    float f_BandwidthQ = 1;

    EffectValues effectValues() const override;

public slots:
    void OnChangedB01();
    void OnChangedB02();
    void OnChangedB03();
    void OnChangedB04();
    void OnChangedB05();
    void OnChangedB06();
    void OnChangedB07();
    void OnChangedB08();
    void OnChangedB09();
    void OnChangedB10();
    void OnChangedB11();
    void OnChangedB12();
    void OnChangedB13();
    void OnChangedB14();
    void OnChangedB15();
    void OnChangedB16();
    void OnChangedB17();
    void OnChangedB18();
    void OnChangedB19();
    void OnChangedB20();
    void OnChangeBandwidthQ();

protected:
    QString validate() override;

private:
    void showBand(int index);
};
