#pragma once

#include <QComboBox>
#include <QMenu>
#include <QPointer>

// A black, rounded pop-up button for the dark pages of the main window
// (camera and microphone menus). A menu it pops is also mirrored, item by
// item (a submenu's items as "ITEM — SUBITEM"), into the combo box's own
// list, so screen readers read every item, whether it can be chosen and the
// current choice, and the arrow keys choose an item as a click would.
class VKPopUpButton final : public QComboBox
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VKPopUpButton)

public:
    explicit VKPopUpButton(QWidget *parent = nullptr);

    // With a menu, the button pops that menu (whose items may have
    // submenus) instead of its own list, and shows `title`.
    void setMenu(QMenu *menu);
    QMenu *menu() const { return m_menu; }
    void setTitle(const QString &title);
    QString title() const;

    void showPopup() override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void mirrorMenu();
    void showChosenItem();

    QPointer<QMenu> m_menu;
    QString m_title;
};
