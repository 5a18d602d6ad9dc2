#pragma once

#include <QWidget>

// A secondary window that tells its controller when it is about to close.
class LXPanelWindow final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LXPanelWindow)

public:
    explicit LXPanelWindow(QWidget *parent = nullptr);

signals:
    void willClose();

protected:
    void closeEvent(QCloseEvent *event) override;
};
