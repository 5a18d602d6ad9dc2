#include "VKColorBox.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

VKColorBox::VKColorBox(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent, false);
}

void VKColorBox::setBackgroundColor(const QColor &color)
{
    m_background = color;
    update();
}

void VKColorBox::setGradient(const QColor &top, const QColor &bottom)
{
    m_gradientTop = top;
    m_gradientBottom = bottom;
    update();
}

void VKColorBox::setDrawsGradient(bool draws)
{
    m_drawsGradient = draws;
    update();
}

void VKColorBox::setFrameColor(const QColor &color)
{
    m_frame = color;
    update();
}

void VKColorBox::setTopSeparatorColor(const QColor &color)
{
    m_topSeparator = color;
    update();
}

void VKColorBox::setBottomSeparatorColor(const QColor &color)
{
    m_bottomSeparator = color;
    update();
}

void VKColorBox::setCornerRadius(qreal radius)
{
    m_cornerRadius = radius;
    update();
}

void VKColorBox::setContentView(QWidget *view)
{
    if (m_content == view)
        return;
    if (m_content)
        m_content->hide();
    m_content = view;
    if (m_content) {
        m_content->setParent(this);
        m_content->setGeometry(rect());
        m_content->show();
    }
}

void VKColorBox::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    if (m_content)
        m_content->setGeometry(rect());
}

void VKColorBox::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing, m_cornerRadius > 0);
    const QRectF r = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QPainterPath shape;
    if (m_cornerRadius > 0)
        shape.addRoundedRect(r, m_cornerRadius, m_cornerRadius);
    else
        shape.addRect(rect());

    if (m_drawsGradient && m_gradientTop.isValid() && m_gradientBottom.isValid()) {
        QLinearGradient gradient(rect().topLeft(), rect().bottomLeft());
        gradient.setColorAt(0, m_gradientTop);
        gradient.setColorAt(1, m_gradientBottom);
        p.fillPath(shape, gradient);
    } else {
        p.fillPath(shape, m_background);
    }
    if (m_frame.isValid() && m_frame.alpha() > 0) {
        p.setPen(QPen(m_frame, 1));
        p.drawPath(shape);
    }
    p.setRenderHint(QPainter::Antialiasing, false);
    if (m_topSeparator.isValid()) {
        p.setPen(QPen(m_topSeparator, 1));
        p.drawLine(0, 0, width(), 0);
    }
    if (m_bottomSeparator.isValid()) {
        p.setPen(QPen(m_bottomSeparator, 1));
        p.drawLine(0, height() - 1, width(), height() - 1);
    }
}
