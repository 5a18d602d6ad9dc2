#pragma once

#include <QObject>

#include <memory>

class QWidget;

// The camera configuration window: makes this computer a camera the server
// can drive.
class CameraConfigController final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CameraConfigController)

public:
    explicit CameraConfigController(QObject *parent = nullptr);
    ~CameraConfigController() override;

    QWidget *window();

signals:
    // The window is about to close.
    void windowWillClose();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    std::unique_ptr<QWidget> m_window;
};
