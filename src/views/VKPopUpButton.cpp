#include "VKPopUpButton.h"

#include <QMenu>
#include <QPainter>
#include <QPainterPath>

VKPopUpButton::VKPopUpButton(QWidget *parent)
    : QComboBox(parent)
{
    setCursor(Qt::PointingHandCursor);
    setMinimumHeight(28);
    setSizeAdjustPolicy(QComboBox::AdjustToContents);
}

void VKPopUpButton::setMenu(QMenu *menu)
{
    m_menu = menu;
    updateGeometry();
    update();
}

void VKPopUpButton::setTitle(const QString &title)
{
    m_title = title;
    updateGeometry();
    update();
}

QString VKPopUpButton::title() const
{
    return m_menu ? m_title : currentText();
}

void VKPopUpButton::showPopup()
{
    if (!m_menu) {
        QComboBox::showPopup();
        return;
    }
    m_menu->popup(mapToGlobal(rect().bottomLeft()));
}

QSize VKPopUpButton::sizeHint() const
{
    // Room for the longest item, the rounded ends and the chevrons.
    int widest = 0;
    for (int i = 0; i < count(); ++i)
        widest = qMax(widest, fontMetrics().horizontalAdvance(itemText(i)));
    if (m_menu) {
        for (const QAction *item : m_menu->actions())
            widest = qMax(widest, fontMetrics().horizontalAdvance(item->text()) + 24);
        widest = qMax(widest, fontMetrics().horizontalAdvance(m_title));
    }
    const int height = qMax(28, fontMetrics().height() + 12);
    return { qMin(widest, 320) + height / 2 + int(height * 0.9) + 6, height };
}

QSize VKPopUpButton::minimumSizeHint() const
{
    const QSize hint = sizeHint();
    return { qMin(hint.width(), 120), hint.height() };
}

void VKPopUpButton::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF r = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QPainterPath shape;
    shape.addRoundedRect(r, r.height() / 2, r.height() / 2);
    p.fillPath(shape, isEnabled() ? QColor(12, 12, 14, 235) : QColor(12, 12, 14, 140));
    p.setPen(hasFocus() ? QPen(QColor(255, 120, 100), 2) : QPen(QColor(255, 255, 255, 55), 1));
    p.drawPath(shape);

    const QColor textColor = isEnabled() ? QColor(238, 238, 242) : QColor(130, 130, 135);
    p.setPen(textColor);
    const qreal arrowSpace = r.height() * 0.9;
    const QRectF textRect = r.adjusted(r.height() / 2, 0, -arrowSpace, 0);
    p.drawText(textRect, Qt::AlignVCenter | Qt::AlignLeft,
        fontMetrics().elidedText(title(), Qt::ElideRight, int(textRect.width())));

    // Two small chevrons, as pop-up buttons show.
    const qreal cx = r.right() - arrowSpace / 2 - 2;
    const qreal cy = r.center().y();
    const qreal s = r.height() * 0.12;
    QPen pen(textColor, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    p.setPen(pen);
    p.drawPolyline(QPolygonF { { cx - s, cy - s * 0.6 }, { cx, cy - s * 1.6 }, { cx + s, cy - s * 0.6 } });
    p.drawPolyline(QPolygonF { { cx - s, cy + s * 0.6 }, { cx, cy + s * 1.6 }, { cx + s, cy + s * 0.6 } });
}
