#pragma once

#include "MixerTracks.h"

#include <QRectF>
#include <QSizeF>
#include <functional>

// The strip under the mixer's table draws every row as a bar on the joint
// time line, one lane per row in table order, so that overlaps and gaps show
// at a glance. Its geometry is worked out here, without a display.
struct StripBar {
    QRectF rect;
    QString label; // what the bar says: the file it came from and its working name, or what fits of that
    QString tip;   // the row's tooltip
    bool selected = false;
    bool labelFits = false; // the name fits inside the bar
};
struct StripLayout {
    quint64 span = 0; // the seconds the strip's width stands for: where the last track ends
    QList<StripBar> bars;
};

// `textWidth` measures a label in the strip's font.
StripLayout layOutStrip(const AudioTracks& tracks, qint64 selected, const QSizeF& size,
                        const std::function<qreal(const QString&)>& textWidth);

// The bar under `point`; -1 where there is none.
qsizetype stripBarAt(const StripLayout& layout, const QPointF& point);

// Pixels kept free around a bar and around its label.
inline constexpr qreal StripGap = 2.0;
