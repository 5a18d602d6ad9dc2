#pragma once

#include <QComboBox>

// A black, rounded pop-up button for the dark pages of the main window
// (camera and microphone menus).
class VKPopUpButton final : public QComboBox
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VKPopUpButton)

public:
    explicit VKPopUpButton(QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};
