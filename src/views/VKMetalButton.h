#pragma once

#include <QPushButton>

// A brushed-metal push button for the button strip under the pages.
class VKMetalButton final : public QPushButton
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VKMetalButton)

public:
    explicit VKMetalButton(const QString &text, QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};
