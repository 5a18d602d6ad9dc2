#include "LXSourceTile.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QVariantAnimation>

LXSourceTile::LXSourceTile(LXGlyphs::Glyph glyph, const QString &title, QWidget *parent)
    : QAbstractButton(parent)
    , m_glyph(glyph)
    , m_hoverAnimation(new QVariantAnimation(this))
    , m_pressAnimation(new QVariantAnimation(this))
{
    setText(title);
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(title);
    connect(m_hoverAnimation, &QVariantAnimation::valueChanged, this, [this](const QVariant &v) {
        m_hover = v.toReal();
        update();
    });
    connect(m_pressAnimation, &QVariantAnimation::valueChanged, this, [this](const QVariant &v) {
        m_press = v.toReal();
        update();
    });
}

QSize LXSourceTile::sizeHint() const
{
    return { 150, 150 };
}

QSize LXSourceTile::minimumSizeHint() const
{
    return { 96, 104 };
}

void LXSourceTile::animate(QVariantAnimation *animation, qreal &value, qreal target, int ms)
{
    animation->stop();
    animation->setStartValue(value);
    animation->setEndValue(target);
    animation->setDuration(ms);
    animation->setEasingCurve(QEasingCurve::OutCubic);
    animation->start();
}

void LXSourceTile::enterEvent(QEnterEvent *event)
{
    animate(m_hoverAnimation, m_hover, 1.0, 160);
    QAbstractButton::enterEvent(event);
}

void LXSourceTile::leaveEvent(QEvent *event)
{
    animate(m_hoverAnimation, m_hover, 0.0, 240);
    QAbstractButton::leaveEvent(event);
}

void LXSourceTile::mousePressEvent(QMouseEvent *event)
{
    animate(m_pressAnimation, m_press, 1.0, 80);
    QAbstractButton::mousePressEvent(event);
}

void LXSourceTile::mouseReleaseEvent(QMouseEvent *event)
{
    animate(m_pressAnimation, m_press, 0.0, 180);
    QAbstractButton::mouseReleaseEvent(event);
}

void LXSourceTile::keyPressEvent(QKeyEvent *event)
{
    // Space is the button's own key; Return and Enter are added because a
    // tile is the page's choice, as a default button would be.
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && event->modifiers() == Qt::NoModifier) {
        animateClick();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

void LXSourceTile::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const qreal inset = 6 + 3 * m_press;
    const QRectF card = QRectF(rect()).adjusted(inset, inset, -inset, -inset);

    QLinearGradient fill(card.topLeft(), card.bottomLeft());
    const int lift = int(18 * m_hover);
    fill.setColorAt(0, QColor(54 + lift, 56 + lift, 62 + lift));
    fill.setColorAt(1, QColor(34 + lift, 35 + lift, 40 + lift));
    QPainterPath shape;
    shape.addRoundedRect(card, 14, 14);
    p.fillPath(shape, fill);
    p.setPen(QPen(QColor(255, 255, 255, 28 + int(60 * m_hover)), 1.2));
    p.drawPath(shape);
    if (hasFocus()) {
        // A ring outside the card, in the margin, so it reads against the
        // page as well as against the card.
        QPainterPath ring;
        const QRectF around = card.adjusted(-3, -3, 3, 3);
        ring.addRoundedRect(around, 16, 16);
        p.setPen(QPen(QColor(255, 120, 100), 2.5));
        p.drawPath(ring);
    }

    const qreal glyphSide = card.height() * 0.42;
    const QRectF glyphRect(card.center().x() - glyphSide / 2, card.top() + card.height() * 0.16, glyphSide, glyphSide);
    const QColor glyphColor = isEnabled() ? QColor(235, 236, 240) : QColor(120, 120, 125);
    LXGlyphs::draw(p, m_glyph, glyphRect, glyphColor);

    QFont f = font();
    f.setPointSizeF(f.pointSizeF() * 1.1);
    f.setWeight(QFont::DemiBold);
    p.setFont(f);
    p.setPen(glyphColor);
    const QRectF textRect(card.left(), glyphRect.bottom() + card.height() * 0.06, card.width(),
        card.bottom() - glyphRect.bottom() - card.height() * 0.06);
    p.drawText(textRect, Qt::AlignHCenter | Qt::AlignTop, text());
}
