#include "MixerStripView.h"

#include "mixer/MixerStrip.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

MixerStripView::MixerStripView(QWidget* parent) : QWidget(parent) {
    setMinimumHeight(60);
    setToolTip(tr("Where each track plays in the joined track"));
}

void MixerStripView::show(const AudioTracks& tracks, qint64 selected) {
    m_tracks = tracks;
    m_selected = selected;
    update();
}

StripLayout MixerStripView::layout() const {
    const QFontMetricsF metrics(font());
    return layOutStrip(m_tracks, m_selected, size(),
                       [&](const QString& text) { return metrics.horizontalAdvance(text); });
}

QString MixerStripView::toolTipAt(const QPoint& point) const {
    const StripLayout bars = layout();
    const qsizetype at = stripBarAt(bars, point);
    return at < 0 ? toolTip() : bars.bars[at].tip;
}

bool MixerStripView::event(QEvent* event) {
    // Each bar names its track's files; the strip's own tip is said elsewhere.
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        QToolTip::showText(help->globalPos(), toolTipAt(help->pos()), this);
        return true;
    }
    return QWidget::event(event);
}

void MixerStripView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().base());
    const QColor bar = palette().color(QPalette::Mid), chosen = palette().color(QPalette::Highlight);
    for (const StripBar& b : layout().bars) {
        painter.fillRect(b.rect, b.selected ? chosen : bar);
        if (!b.labelFits)
            continue;
        painter.setPen(palette().color(b.selected ? QPalette::HighlightedText : QPalette::Text));
        painter.drawText(b.rect.adjusted(StripGap, 0, -StripGap, 0), Qt::AlignVCenter | Qt::AlignLeft,
                         b.label);
    }
}
