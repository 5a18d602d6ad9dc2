#include "VKMetalButton.h"

#include <QPainter>
#include <QPainterPath>

VKMetalButton::VKMetalButton(const QString &text, QWidget *parent)
    : QPushButton(text, parent)
{
    setCursor(Qt::PointingHandCursor);
}

QSize VKMetalButton::sizeHint() const
{
    const QSize text = fontMetrics().size(Qt::TextShowMnemonic, this->text());
    return { qMax(96, text.width() + 36), qMax(30, text.height() + 14) };
}

void VKMetalButton::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF r = QRectF(rect()).adjusted(1, 1, -1, -1);
    QPainterPath shape;
    shape.addRoundedRect(r, 7, 7);
    const bool down = isDown();
    QLinearGradient metal(r.topLeft(), r.bottomLeft());
    if (!isEnabled()) {
        metal.setColorAt(0, QColor(70, 70, 74));
        metal.setColorAt(1, QColor(56, 56, 60));
    } else if (down) {
        metal.setColorAt(0, QColor(136, 138, 144));
        metal.setColorAt(1, QColor(160, 162, 168));
    } else {
        metal.setColorAt(0, QColor(196, 198, 204));
        metal.setColorAt(0.5, QColor(160, 162, 168));
        metal.setColorAt(0.51, QColor(148, 150, 156));
        metal.setColorAt(1, QColor(172, 174, 180));
    }
    p.fillPath(shape, metal);
    // Fine horizontal grain.
    p.setClipPath(shape);
    p.setPen(QPen(QColor(255, 255, 255, 14), 1));
    for (qreal y = r.top() + 2; y < r.bottom(); y += 2)
        p.drawLine(QPointF(r.left(), y), QPointF(r.right(), y));
    p.setClipping(false);
    p.setPen(hasFocus() ? QPen(QColor(170, 30, 24), 2) : QPen(QColor(0, 0, 0, 180), 1));
    p.drawPath(shape);
    p.setPen(isEnabled() ? QColor(24, 24, 28) : QColor(110, 110, 116));
    QFont f = font();
    f.setWeight(QFont::DemiBold);
    p.setFont(f);
    p.drawText(r.translated(0, down ? 1 : 0), Qt::AlignCenter | Qt::TextShowMnemonic, text());
}
