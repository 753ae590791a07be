#include "View_Audio_Wave.h"

#include <QPainter>

View_Audio_Wave::View_Audio_Wave(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumHeight(80);
}

void View_Audio_Wave::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const qreal w = width();
    const qreal h = height();
    painter.fillRect(rect(), Qt::black);
    if (b_Recording)
        return;
    if (!b_Audio_Loaded) {
        painter.setPen(QColor::fromRgbF(1.0, 0.0, 0.0, 1.0));
        QFont font(QStringLiteral("Verdana"));
        font.setPixelSize(24);
        painter.setFont(font);
        // The notice's origin sits W/20 from the left and H/6 from the bottom.
        painter.drawText(QPointF(std::trunc(w / 20), h - std::trunc(h / 6)),
                         QStringLiteral("No Audio Loaded"));
        return;
    }
    if (f_AudioPlot_Width == 0.0f)
        f_AudioPlot_Width = float(w);
    const qreal xs = f_Selection_Start * f_AudioPlot_Width / 100.0f;
    const qreal xe = f_Selection_End * f_AudioPlot_Width / 100.0f;
    painter.fillRect(QRectF(QPointF(std::min(xs, xe), 0), QPointF(std::max(xs, xe), h)), Qt::white);
}
