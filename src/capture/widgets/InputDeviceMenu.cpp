#include "InputDeviceMenu.h"

QAction *InputDeviceMenu::insertItemWithTitle(
    const QString &title, const std::function<void()> &action, const QKeySequence &keyEquivalent, int index)
{
    if (title == kSeparatorItem)
        return addSeparator();
    auto *item = new QAction(title, this);
    item->setShortcut(keyEquivalent);
    if (action)
        connect(item, &QAction::triggered, this, action);
    const QList<QAction *> items = actions();
    insertAction(index >= 0 && index < items.size() ? items.at(index) : nullptr, item);
    return item;
}
