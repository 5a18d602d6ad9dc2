#pragma once

#include <QWidget>

// The dark rounded plate behind the elapsed-time display.
class LXTimerBackgroundView final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LXTimerBackgroundView)

public:
    explicit LXTimerBackgroundView(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};
