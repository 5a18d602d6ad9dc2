#include "LXProgressSpinner.h"

#include <QPainter>
#include <QTimerEvent>

LXProgressSpinner::LXProgressSpinner(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    hide();
}

void LXProgressSpinner::startAnimation()
{
    if (!m_timerId)
        m_timerId = startTimer(80);
    show();
}

void LXProgressSpinner::stopAnimation()
{
    if (m_timerId)
        killTimer(m_timerId);
    m_timerId = 0;
    hide();
}

void LXProgressSpinner::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_timerId)
        return;
    m_step = (m_step + 1) % 12;
    update();
}

void LXProgressSpinner::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const qreal side = qMin(width(), height());
    p.translate(width() / 2.0, height() / 2.0);
    const QColor base = palette().color(QPalette::WindowText);
    for (int i = 0; i < 12; ++i) {
        QColor c = base;
        c.setAlphaF(0.15 + 0.85 * ((12 + i - m_step) % 12) / 11.0);
        p.setPen(QPen(c, side * 0.09, Qt::SolidLine, Qt::RoundCap));
        p.drawLine(QPointF(0, -side * 0.24), QPointF(0, -side * 0.44));
        p.rotate(30);
    }
}
