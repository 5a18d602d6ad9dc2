#pragma once

#include <QObject>

#include <memory>

class LXPanelWindow;
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
    void windowWillClose();

private:
    std::unique_ptr<LXPanelWindow> m_window;
};
