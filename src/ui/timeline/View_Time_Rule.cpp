#include "View_Time_Rule.h"

#include "timeline/RulerScale.h"

#include <QFontMetricsF>
#include <QPaintEvent>
#include <QPainter>

View_Time_Rule::View_Time_Rule(QWidget* parent) : QWidget(parent) {
    setFixedHeight(24);
}

QStringList View_Time_Rule::labels(double from, double to) const {
    QStringList texts;
    for (const ruler::Mark& mark : ruler::marks(width(), b_Audio_Loaded, i_Audio_Duration_Seconds, from, to))
        texts << mark.text;
    return texts;
}

void View_Time_Rule::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const double w = width();
    const double h = height();
    // Only the part that can be seen is drawn: zoomed, the ruler is millions
    // of points wide.
    // (A hidden widget, drawn into an image, has no visible region.)
    const QRect exposed =
        isVisible() ? event->rect() & visibleRegion().boundingRect() : event->rect() & rect();
    painter.fillRect(exposed, Qt::white);
    // The ruler's own coordinates have y growing upwards from the bottom: a
    // height y there is h - y here.
    auto top = [h](double y) { return h - y; };
    painter.fillRect(QRectF(exposed.left(), top(h - 15), exposed.width(), 1), Qt::black);

    QFont font(QStringLiteral("Verdana"));
    font.setPixelSize(10);
    painter.setFont(font);
    painter.setPen(Qt::black);
    const QFontMetricsF metrics(font);
    for (const ruler::Mark& mark :
         ruler::marks(w, b_Audio_Loaded, i_Audio_Duration_Seconds, exposed.left(), exposed.right() + 1)) {
        painter.fillRect(QRectF(mark.tickX, top(h - 10), 1, 6), Qt::black);
        painter.drawText(QPointF(mark.labelEnd - metrics.horizontalAdvance(mark.text), top(h - 15)),
                         mark.text);
    }
}
