#pragma once

#include <QObject>

// Tells when the application's last visible window has gone, once the
// hiding that caused it is done, so whoever decides whether the application
// ends with it sees the windows as they are.
class LastWindowWatcher final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LastWindowWatcher)

public:
    explicit LastWindowWatcher(QObject *parent = nullptr);

signals:
    void lastWindowClosed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void check();

    bool m_checkPending = false;
};
