#pragma once

#include <QMenu>
#include <QVariantList>
#include <QVariantMap>

// The workflow pop-up's menu. A title of the form "TITLE\n$$$$\nDESCRIPTION"
// becomes an item titled TITLE with DESCRIPTION as its tool tip.
class LXWorkflowMenu final : public QMenu
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LXWorkflowMenu)

public:
    // The server's workflows as the menu shows them: each with
    // "titleAndDescription", in the server's order, duplicates kept.
    static QVariantList prepared(const QVariantList &workflows);
    // The workflow titled `previousTitle`, the last of that title winning;
    // the first workflow when none has it; nothing for an empty list.
    static QVariantMap preferred(const QVariantList &workflows, const QString &previousTitle);

    static inline const QString kSeparator = QStringLiteral("\n$$$$\n");

    explicit LXWorkflowMenu(QWidget *parent = nullptr);

    // Items with the separator are appended at the end whatever `index` asks,
    // as they always were; others are inserted at `index`.
    QAction *insertItemWithTitle(const QString &title, int index);
};
