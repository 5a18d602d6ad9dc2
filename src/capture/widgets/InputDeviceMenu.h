#pragma once

#include <QMenu>

// A menu whose item titled "kSeparatorItem" becomes a separator. Menus are
// filled from lists of titles, and this is how such a list asks for one.
class InputDeviceMenu final : public QMenu
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(InputDeviceMenu)

public:
    static inline const QString kSeparatorItem = QStringLiteral("kSeparatorItem");

    using QMenu::QMenu;

    // Inserts a titled item at `index` (appended when past the end). The
    // separator is always appended at the end, whatever the index: the lists
    // only ever ask for one between their groups as they are built.
    QAction *insertItemWithTitle(
        const QString &title, const std::function<void()> &action, const QKeySequence &keyEquivalent, int index);
};
