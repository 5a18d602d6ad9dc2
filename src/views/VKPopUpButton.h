#pragma once

#include <QComboBox>
#include <QMenu>
#include <QPointer>

// A black, rounded pop-up button for the dark pages of the main window
// (camera and microphone menus).
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

private:
    QPointer<QMenu> m_menu;
    QString m_title;
};
