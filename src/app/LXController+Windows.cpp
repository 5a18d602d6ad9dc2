#include "LXController.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace {

void centre(QWidget *window)
{
    const QScreen *screen = window->screen() ? window->screen() : QGuiApplication::primaryScreen();
    if (!screen)
        return;
    QRect frame = window->frameGeometry();
    frame.moveCenter(screen->availableGeometry().center());
    window->move(frame.topLeft());
}

void bringToFront(QWidget *window)
{
    window->show();
    window->raise();
    window->activateWindow();
}

} // namespace

void LXController::configureLocalCamera()
{
    if (m_cameraConfigController) {
        m_cameraConfigController->window()->raise();
        m_cameraConfigController->window()->activateWindow();
        return;
    }
    m_cameraConfigController = new CameraConfigController(this);
    QWidget *window = m_cameraConfigController->window();
    centre(window);
    connect(m_cameraConfigController, &CameraConfigController::windowWillClose, this,
        &LXController::cameraConfigWindowClosed);
    window->show();
}

void LXController::cameraConfigWindowClosed()
{
    if (m_cameraConfigController) {
        disconnect(m_cameraConfigController, nullptr, this, nullptr);
        m_cameraConfigController->deleteLater();
        m_cameraConfigController = nullptr;
    }
    // Binding may have taken or freed devices.
    if (m_captureDevicesController)
        m_captureDevicesController->refreshDevices();
}

void LXController::showPreferencesWindow()
{
    const bool first = !m_preferencesController;
    if (first) {
        m_preferencesController = new PreferencesController(this);
        connect(m_preferencesController, &PreferencesController::quitRequested, this, &LXController::requestQuit);
    }
    QWidget *window = m_preferencesController->window();
    if (first)
        centre(window);
    bringToFront(window);
}

void LXController::showTransfersWindow()
{
    // Once closed, the transfers window is gone for the rest of the run:
    // the request then goes to no one, as it always has.
    if (!m_transfersController)
        return;
    bringToFront(m_transfersController->window());
    m_transfersController->startPollingSubmissions();
    connect(m_transfersController, &TransfersController::windowWillClose, this, &LXController::transfersWindowClosed,
        Qt::UniqueConnection);
}

void LXController::transfersWindowClosed()
{
    if (!m_transfersController)
        return;
    disconnect(m_transfersController, nullptr, this, nullptr);
    m_transfersController->deleteLater();
    m_transfersController = nullptr;
}
