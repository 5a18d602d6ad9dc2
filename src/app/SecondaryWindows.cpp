#include "SecondaryWindows.h"

#include "CameraConfigController.h"
#include "CaptureDevicesController.h"
#include "PreferencesController.h"
#include "TransfersController.h"

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

SecondaryWindows::SecondaryWindows(
    TransfersControllerDelegate *transfersDelegate, CaptureDevicesController *devices, QObject *parent)
    : QObject(parent)
    , m_devices(devices)
    , m_transfers(new TransfersController(this))
{
    m_transfers->setController(transfersDelegate);
}

SecondaryWindows::~SecondaryWindows()
{
    delete m_preferences;
}

void SecondaryWindows::configureLocalCamera()
{
    if (m_cameraConfig) {
        m_cameraConfig->window()->raise();
        m_cameraConfig->window()->activateWindow();
        return;
    }
    m_cameraConfig = new CameraConfigController(this);
    centre(m_cameraConfig->window());
    connect(
        m_cameraConfig, &CameraConfigController::windowWillClose, this, &SecondaryWindows::cameraConfigWindowClosed);
    m_cameraConfig->window()->show();
}

void SecondaryWindows::cameraConfigWindowClosed()
{
    if (m_cameraConfig) {
        disconnect(m_cameraConfig, nullptr, this, nullptr);
        m_cameraConfig->deleteLater();
        m_cameraConfig = nullptr;
    }
    // Binding may have taken or freed devices.
    if (m_devices)
        m_devices->refreshDevices();
}

void SecondaryWindows::showPreferencesWindow()
{
    const bool first = !m_preferences;
    if (first) {
        m_preferences = new PreferencesController(this);
        connect(m_preferences, &PreferencesController::quitRequested, this, &SecondaryWindows::quitRequested);
        centre(m_preferences->window());
    }
    bringToFront(m_preferences->window());
}

void SecondaryWindows::showTransfersWindow()
{
    if (!m_transfers)
        return;
    bringToFront(m_transfers->window());
    m_transfers->startPollingSubmissions();
    connect(m_transfers, &TransfersController::windowWillClose, this, &SecondaryWindows::transfersWindowClosed,
        Qt::UniqueConnection);
}

void SecondaryWindows::transfersWindowClosed()
{
    if (!m_transfers)
        return;
    disconnect(m_transfers, nullptr, this, nullptr);
    m_transfers->deleteLater();
    m_transfers = nullptr;
}
