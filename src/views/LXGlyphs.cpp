#include "LXGlyphs.h"

#include <QPainter>
#include <QPainterPath>

namespace LXGlyphs {

namespace {

// All shapes are drawn in a 100×100 box and scaled into the target rect.
void drawCamera(QPainter &p)
{
    QPainterPath body;
    body.addRoundedRect(QRectF(8, 28, 60, 44), 9, 9);
    QPainterPath lens;
    lens.moveTo(70, 44);
    lens.lineTo(92, 31);
    lens.lineTo(92, 69);
    lens.lineTo(70, 56);
    lens.closeSubpath();
    p.drawPath(body.united(lens));
}

void drawMicrophone(QPainter &p, const QColor &color)
{
    QPainterPath capsule;
    capsule.addRoundedRect(QRectF(36, 8, 28, 52), 14, 14);
    p.drawPath(capsule);
    QPen pen(color, 6, Qt::SolidLine, Qt::RoundCap);
    p.setPen(pen);
    p.setBrush(Qt::NoBrush);
    p.drawArc(QRectF(24, 26, 52, 48), 200 * 16, 140 * 16);
    p.drawLine(QPointF(50, 74), QPointF(50, 88));
    p.drawLine(QPointF(36, 90), QPointF(64, 90));
}

void drawScreen(QPainter &p, const QColor &color)
{
    QPainterPath frame;
    frame.addRoundedRect(QRectF(8, 14, 84, 56), 6, 6);
    QPainterPath glass;
    glass.addRect(QRectF(15, 21, 70, 42));
    p.drawPath(frame.subtracted(glass));
    p.setBrush(QColor(color.red(), color.green(), color.blue(), 70));
    p.drawRect(QRectF(15, 21, 70, 42));
    p.setBrush(color);
    QPainterPath stand;
    stand.moveTo(42, 70);
    stand.lineTo(58, 70);
    stand.lineTo(62, 84);
    stand.lineTo(38, 84);
    stand.closeSubpath();
    p.drawPath(stand);
    p.drawRoundedRect(QRectF(30, 84, 40, 6), 3, 3);
}

void drawFilm(QPainter &p)
{
    QPainterPath strip;
    strip.addRoundedRect(QRectF(18, 8, 64, 84), 6, 6);
    QPainterPath holes;
    for (int i = 0; i < 6; ++i) {
        holes.addRect(QRectF(23, 14 + i * 13.2, 8, 7));
        holes.addRect(QRectF(69, 14 + i * 13.2, 8, 7));
    }
    holes.addRoundedRect(QRectF(36, 14, 28, 32), 3, 3);
    holes.addRoundedRect(QRectF(36, 54, 28, 32), 3, 3);
    p.drawPath(strip.subtracted(holes));
}

void drawLumex(QPainter &p, const QColor &color)
{
    QRadialGradient glow(QPointF(50, 50), 46);
    glow.setColorAt(0, QColor(255, 90, 80));
    glow.setColorAt(1, QColor(190, 20, 30));
    p.setBrush(glow);
    p.drawEllipse(QRectF(6, 6, 88, 88));
    p.setBrush(color);
    p.drawEllipse(QRectF(33, 33, 34, 34));
}

} // namespace

void draw(QPainter &painter, Glyph glyph, const QRectF &rect, const QColor &color)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal side = qMin(rect.width(), rect.height());
    painter.translate(rect.center().x() - side / 2, rect.center().y() - side / 2);
    painter.scale(side / 100.0, side / 100.0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    switch (glyph) {
    case Glyph::Camera:
        drawCamera(painter);
        break;
    case Glyph::Microphone:
        drawMicrophone(painter, color);
        break;
    case Glyph::Screen:
        drawScreen(painter, color);
        break;
    case Glyph::Film:
        drawFilm(painter);
        break;
    case Glyph::Record:
        painter.drawEllipse(QRectF(14, 14, 72, 72));
        break;
    case Glyph::Pause:
        painter.drawRoundedRect(QRectF(22, 14, 20, 72), 5, 5);
        painter.drawRoundedRect(QRectF(58, 14, 20, 72), 5, 5);
        break;
    case Glyph::Lumex:
        drawLumex(painter, color);
        break;
    }
    painter.restore();
}

} // namespace LXGlyphs
