#pragma once

#include <QWidget>

// A small spinning indicator, hidden while stopped.
class LXProgressSpinner final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LXProgressSpinner)

public:
    explicit LXProgressSpinner(QWidget *parent = nullptr);

    void startAnimation();
    void stopAnimation();
    bool isAnimating() const { return m_timerId != 0; }
    QSize sizeHint() const override { return { 18, 18 }; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    int m_timerId = 0;
    int m_step = 0;
};
