#include "LXTimerBackgroundView.h"

#include <QPainter>
#include <QPainterPath>

LXTimerBackgroundView::LXTimerBackgroundView(QWidget *parent)
    : QWidget(parent)
{ }

void LXTimerBackgroundView::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    QPainterPath shape;
    shape.addRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 7.5, 7.5);
    p.fillPath(shape, QColor::fromRgbF(0, 0, 0, 0.7f));
    p.setPen(QPen(QColor::fromRgbF(1, 1, 1, 0.7f), 1));
    p.drawPath(shape);
}
