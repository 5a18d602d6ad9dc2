#include "VKPopUpButton.h"

#include <QAction>
#include <QActionEvent>
#include <QMenu>
#include <QPainter>
#include <QPainterPath>
#include <QStandardItemModel>

namespace {

// The title of an item's place in the menu: its own, or its submenu's.
constexpr int kTopTitleRole = Qt::UserRole + 1;

} // namespace

VKPopUpButton::VKPopUpButton(QWidget *parent)
    : QComboBox(parent)
{
    setCursor(Qt::PointingHandCursor);
    setMinimumHeight(28);
    setSizeAdjustPolicy(QComboBox::AdjustToContents);
    connect(this, &QComboBox::activated, this, [this](int index) {
        if (auto *item = itemData(index).value<QAction *>(); item && m_menu)
            item->trigger();
    });
}

void VKPopUpButton::setMenu(QMenu *menu)
{
    if (m_menu == menu)
        return;
    if (m_menu)
        m_menu->removeEventFilter(this);
    m_menu = menu;
    if (m_menu)
        m_menu->installEventFilter(this);
    mirrorMenu();
    updateGeometry();
    update();
}

void VKPopUpButton::setTitle(const QString &title)
{
    m_title = title;
    showChosenItem();
    updateGeometry();
    update();
}

bool VKPopUpButton::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (type == QEvent::ActionAdded || type == QEvent::ActionRemoved || type == QEvent::ActionChanged)
        mirrorMenu();
    return QComboBox::eventFilter(watched, event);
}

void VKPopUpButton::mirrorMenu()
{
    const QSignalBlocker blocker(this);
    clear();
    if (!m_menu)
        return;
    auto add = [this](const QString &text, QAction *item, const QString &topTitle) {
        addItem(item->icon(), text, QVariant::fromValue(item));
        setItemData(count() - 1, topTitle, kTopTitleRole);
        if (item->isEnabled())
            return;
        // Screen readers read a list item's description, not whether it is
        // enabled.
        setItemData(count() - 1, tr("In use, cannot be chosen"), Qt::AccessibleDescriptionRole);
        if (auto *model = qobject_cast<QStandardItemModel *>(this->model()))
            model->item(count() - 1)->setEnabled(false);
    };
    for (QAction *item : m_menu->actions()) {
        if (item->isSeparator())
            continue;
        QMenu *submenu = item->menu();
        if (!submenu) {
            add(item->text(), item, item->text());
            continue;
        }
        submenu->removeEventFilter(this);
        submenu->installEventFilter(this);
        for (QAction *subitem : submenu->actions())
            if (!subitem->isSeparator())
                add(tr("%1 — %2", "a device, then the device recorded with it").arg(item->text(), subitem->text()),
                    subitem, item->text());
    }
    showChosenItem();
}

void VKPopUpButton::showChosenItem()
{
    // A checked submenu item is the choice; otherwise the first item whose
    // own or whose menu's title the button shows.
    int chosen = -1;
    for (int i = 0; i < count() && chosen < 0; ++i)
        if (const auto *item = itemData(i).value<QAction *>(); item && item->isChecked())
            chosen = i;
    for (int i = 0; i < count() && chosen < 0; ++i)
        if (!m_title.isEmpty() && itemData(i, kTopTitleRole).toString() == m_title)
            chosen = i;
    const QSignalBlocker blocker(this);
    setCurrentIndex(chosen);
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
