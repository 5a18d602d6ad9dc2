#pragma once

#include <QMainWindow>

class QLabel;

// The main window. Until a user has signed in it only says so.
class LXMainWindow final : public QMainWindow
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LXMainWindow)

public:
    explicit LXMainWindow(QWidget *parent = nullptr);

private:
    QLabel *m_statusLabel = nullptr;
};
