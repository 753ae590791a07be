#include "View_Time_Rule.h"

#include <QPainter>

View_Time_Rule::View_Time_Rule(QWidget* parent) : QWidget(parent) {
    setFixedHeight(24);
}

void View_Time_Rule::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    painter.setPen(Qt::black);
    painter.drawLine(0, height() - 1, width(), height() - 1);
}
