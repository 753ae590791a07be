#include "MixerStripView.h"

#include "mixer/MixerStrip.h"

#include <QPainter>

MixerStripView::MixerStripView(QWidget* parent) : QWidget(parent) {
    setMinimumHeight(60);
    setToolTip(tr("Where each track plays in the joined track"));
}

void MixerStripView::show(const AudioTracks& tracks, qint64 selected) {
    m_tracks = tracks;
    m_selected = selected;
    update();
}

void MixerStripView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().base());
    const QFontMetricsF metrics(font());
    const StripLayout layout = layOutStrip(
        m_tracks, m_selected, size(), [&](const QString& text) { return metrics.horizontalAdvance(text); });
    const QColor bar = palette().color(QPalette::Mid), chosen = palette().color(QPalette::Highlight);
    for (const StripBar& b : layout.bars) {
        painter.fillRect(b.rect, b.selected ? chosen : bar);
        if (!b.labelFits)
            continue;
        painter.setPen(palette().color(b.selected ? QPalette::HighlightedText : QPalette::Text));
        painter.drawText(b.rect.adjusted(StripGap, 0, -StripGap, 0), Qt::AlignVCenter | Qt::AlignLeft,
                         b.label);
    }
}
