#include "AudioLevelMeter.h"

#include <QPainter>
#include <QPainterPath>

AudioLevelMeter::AudioLevelMeter(QWidget *parent)
    : QWidget(parent)
{
    setAccessibleName(tr("Microphone level"));
    setMinimumHeight(8);
    m_timer.setInterval(100);
    connect(&m_timer, &QTimer::timeout, this, &AudioLevelMeter::sample);
}

void AudioLevelMeter::setConnection(const CaptureConnectionPtr &connection)
{
    m_connection = connection;
    if (m_connection)
        m_timer.start();
    else
        m_timer.stop();
    sample();
}

void AudioLevelMeter::sample()
{
    const float level = m_connection ? m_connection->averagePowerLevel() : kFloorDecibels;
    const qreal fraction = qBound(0.0, qreal(1.0f - level / kFloorDecibels), 1.0);
    if (qFuzzyCompare(fraction + 1, m_fraction + 1))
        return;
    m_fraction = fraction;
    update();
}

void AudioLevelMeter::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF r = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QPainterPath shape;
    shape.addRoundedRect(r, r.height() / 2, r.height() / 2);
    p.fillPath(shape, QColor(12, 12, 14, 235));
    if (m_fraction > 0) {
        // Green up to -12 dB, amber to -3 dB, red above.
        QLinearGradient lit(r.topLeft(), r.topRight());
        lit.setColorAt(0, QColor(60, 200, 90));
        lit.setColorAt(1 - 12 / -kFloorDecibels, QColor(60, 200, 90));
        lit.setColorAt(1 - 3 / -kFloorDecibels, QColor(240, 190, 40));
        lit.setColorAt(1, QColor(230, 50, 40));
        p.save();
        p.setClipRect(QRectF(r.left(), r.top(), r.width() * m_fraction, r.height()));
        p.fillPath(shape, lit);
        p.restore();
    }
    p.setPen(QPen(QColor(255, 255, 255, 55), 1));
    p.drawPath(shape);
}
