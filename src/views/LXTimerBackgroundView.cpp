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
    const QRectF r = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QPainterPath shape;
    shape.addRoundedRect(r, 8, 8);
    QLinearGradient g(r.topLeft(), r.bottomLeft());
    g.setColorAt(0, QColor(8, 8, 10, 230));
    g.setColorAt(1, QColor(26, 26, 30, 230));
    p.fillPath(shape, g);
    p.setPen(QPen(QColor(255, 255, 255, 40), 1));
    p.drawPath(shape);
}
