#pragma once

#include <QObject>
#include <QPointer>

#include <memory>

class LXController;
class LXPanelWindow;
class QWidget;

// The transfers window: the uploads in progress.
class TransfersController final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TransfersController)

public:
    explicit TransfersController(QObject *parent = nullptr);
    ~TransfersController() override;

    LXController *controller() const { return m_controller; }
    void setController(LXController *controller) { m_controller = controller; }
    QWidget *window();

    // Starts following the upload queue while the window is shown.
    void startPollingSubmissions();

signals:
    void windowWillClose();

private:
    QPointer<LXController> m_controller;
    std::unique_ptr<LXPanelWindow> m_window;
};
