#pragma once

#include "TransfersControllerDelegate.h"

#include <QObject>

#include <memory>

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

    TransfersControllerDelegate *controller() const { return m_controller; }
    void setController(TransfersControllerDelegate *controller) { m_controller = controller; }
    QWidget *window();

    // Starts following the upload queue while the window is shown.
    void startPollingSubmissions();

signals:
    void windowWillClose();

private:
    TransfersControllerDelegate *m_controller = nullptr;
    std::unique_ptr<LXPanelWindow> m_window;
};
