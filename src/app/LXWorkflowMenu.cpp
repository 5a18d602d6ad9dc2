#include "LXWorkflowMenu.h"

LXWorkflowMenu::LXWorkflowMenu(QWidget *parent)
    : QMenu(parent)
{
    setToolTipsVisible(true);
}

QAction *LXWorkflowMenu::insertItemWithTitle(const QString &title, int index)
{
    if (!title.contains(kSeparator)) {
        auto *action = new QAction(title, this);
        const QList<QAction *> existing = actions();
        insertAction(index >= 0 && index < existing.size() ? existing.at(index) : nullptr, action);
        return action;
    }
    const QStringList pieces = title.split(kSeparator);
    auto *action = new QAction(pieces.value(0), this);
    if (pieces.size() >= 2)
        action->setToolTip(pieces.at(1));
    addAction(action);
    return action;
}
