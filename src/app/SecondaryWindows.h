#pragma once

#include "CameraConfigController.h"
#include "PreferencesController.h"
#include "TransfersController.h"

#include <QObject>
#include <QPointer>

class CaptureDevicesController;

// The windows beside the main one: camera configuration (made on demand,
// let go when closed), preferences (made on first use, kept) and transfers
// (made at start; once closed, gone for the rest of the run).
class SecondaryWindows final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SecondaryWindows)

public:
    SecondaryWindows(
        TransfersControllerDelegate *transfersDelegate, CaptureDevicesController *devices, QObject *parent = nullptr);
    ~SecondaryWindows() override;

    CameraConfigController *cameraConfigController() const { return m_cameraConfig; }
    PreferencesController *preferencesController() const { return m_preferences; }
    TransfersController *transfersController() const { return m_transfers; }

    void configureLocalCamera();
    void cameraConfigWindowClosed();
    void showPreferencesWindow();
    // Once closed, the transfers window is gone: the request then goes to
    // no one, as it always has.
    void showTransfersWindow();
    void transfersWindowClosed();

signals:
    // Quitting was asked for from a secondary window.
    void quitRequested();

private:
    CaptureDevicesController *m_devices;
    QPointer<CameraConfigController> m_cameraConfig;
    QPointer<PreferencesController> m_preferences;
    QPointer<TransfersController> m_transfers;
};
