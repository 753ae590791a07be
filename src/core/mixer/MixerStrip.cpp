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
        bar.tip = mixerTrackTip(track);
        bar.selected = i == selected;
        // The longest of these that fits: both names, the source's alone
        // (what the user knows the track by), the working file's alone.
        QStringList labels;
        if (!track.s_Source.isEmpty() && track.s_Source != track.s_Name)
            labels << track.s_Source + QStringLiteral(" · ") + track.s_Name << track.s_Source;
        labels << track.s_Name;
        for (const QString& label : labels) {
            if (textWidth && textWidth(label) + 2 * StripGap <= width) {
                bar.label = label;
                bar.labelFits = true;
                break;
            }
        }
        if (!bar.labelFits)
            bar.label = labels.last();
        layout.bars.append(bar);
    }
    return layout;
}

qsizetype stripBarAt(const StripLayout& layout, const QPointF& point) {
    for (qsizetype i = 0; i < layout.bars.size(); ++i)
        if (layout.bars[i].rect.contains(point))
            return i;
    return -1;
}
