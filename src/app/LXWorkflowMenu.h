#pragma once

#include <QMenu>

// The workflow pop-up's menu. A title of the form "TITLE\n$$$$\nDESCRIPTION"
// becomes an item titled TITLE with DESCRIPTION as its tool tip.
class LXWorkflowMenu final : public QMenu
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LXWorkflowMenu)

public:
    static inline const QString kSeparator = QStringLiteral("\n$$$$\n");

    explicit LXWorkflowMenu(QWidget *parent = nullptr);

    // Items with the separator are appended at the end whatever `index` asks,
    // as they always were; others are inserted at `index`.
    QAction *insertItemWithTitle(const QString &title, int index);
};
