#include "MixerStrip.h"

#include <algorithm>

StripLayout layOutStrip(const AudioTracks& tracks, qint64 selected, const QSizeF& size,
                        const std::function<qreal(const QString&)>& textWidth) {
    StripLayout layout;
    for (const Object_Audio_Track& track : tracks)
        layout.span = std::max(layout.span, track.f_Position_To_Start + track.f_Duration);
    if (tracks.isEmpty() || size.width() <= 0 || size.height() <= 0)
        return layout;
    const double perSecond = size.width() / double(std::max<quint64>(layout.span, 1));
    const qreal lane = size.height() / qreal(tracks.size());
    for (qsizetype i = 0; i < tracks.size(); ++i) {
        const Object_Audio_Track& track = tracks[i];
        StripBar bar;
        // A track of no length still shows, one pixel wide.
        const qreal width = std::max(1.0, double(track.f_Duration) * perSecond);
        const qreal left = std::min(double(track.f_Position_To_Start) * perSecond, size.width() - width);
        bar.rect = QRectF(left, i * lane + StripGap / 2, width, std::max(1.0, lane - StripGap));
        bar.label = track.s_Name;
        bar.selected = i == selected;
        bar.labelFits = textWidth && textWidth(bar.label) + 2 * StripGap <= width;
        layout.bars.append(bar);
    }
    return layout;
}
