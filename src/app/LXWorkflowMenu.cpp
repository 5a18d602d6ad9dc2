#include "LXWorkflowMenu.h"

#include "Format.h"

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

QVariantList LXWorkflowMenu::prepared(const QVariantList &workflows)
{
    QVariantList list;
    list.reserve(workflows.size());
    for (const QVariant &entry : workflows) {
        QVariantMap workflow = entry.toMap();
        workflow.insert(QStringLiteral("titleAndDescription"),
            lxFormat(QStringLiteral("%@\n$$$$\n%@"),
                { workflow.value(QStringLiteral("title")), workflow.value(QStringLiteral("description")) }));
        list.append(workflow);
    }
    return list;
}

QVariantMap LXWorkflowMenu::preferred(const QVariantList &workflows, const QString &previousTitle)
{
    QVariantMap chosen = workflows.value(0).toMap();
    // Every match is taken, so the last workflow of that title wins.
    for (const QVariant &workflow : workflows)
        if (!previousTitle.isNull() && workflow.toMap().value(QStringLiteral("title")).toString() == previousTitle)
            chosen = workflow.toMap();
    return chosen;
}
