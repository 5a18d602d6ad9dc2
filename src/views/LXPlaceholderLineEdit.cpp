#include "LXPlaceholderLineEdit.h"

#include <QPainter>

LXPlaceholderLineEdit::LXPlaceholderLineEdit(QWidget *parent)
    : QLineEdit(parent)
{
    setTextMargins(0, 0, 22, 0);
}

void LXPlaceholderLineEdit::setPlaceholderImageVisible(bool visible)
{
    m_imageVisible = visible;
    update();
}

void LXPlaceholderLineEdit::paintEvent(QPaintEvent *event)
{
    QLineEdit::paintEvent(event);
    if (!m_imageVisible || !text().isEmpty())
        return;
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const qreal d = qMin(height() * 0.5, 16.0);
    const QRectF mark(width() - d - 8, (height() - d) / 2, d, d);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(230, 120, 40));
    p.drawEllipse(mark);
    p.setPen(QPen(Qt::white, d * 0.14, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(mark.center().x(), mark.top() + d * 0.22), QPointF(mark.center().x(), mark.top() + d * 0.58));
    p.drawPoint(QPointF(mark.center().x(), mark.top() + d * 0.76));
}
