#pragma once

#include "CaptureSession.h"
#include "InputDeviceMenu.h"

#include <QObject>
#include <QVariantList>

#include <memory>

class CaptureDevicesController;
class QAction;

// The two device menus of the record page and the choice among them: this
// computer's cameras (each with a submenu of microphones to record it with)
// and microphones, and the server's cameras, which record sound too. It
// remembers the last choice per source and, on entering a source, picks a
// device by a fixed order of preferences. What is chosen is reported by the
// signals named for the kind of device; the application decides what a
// choice means for the recording.
class DeviceChooser final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(DeviceChooser)

public:
    enum class Source { None, Video, Audio, Screen };

    explicit DeviceChooser(CaptureDevicesController *devices, QObject *parent = nullptr);
    ~DeviceChooser() override;

    InputDeviceMenu *cameraMenu() const { return m_cameraMenu.get(); }
    InputDeviceMenu *microphoneMenu() const { return m_microphoneMenu.get(); }

    // Both menus anew from this computer's devices and the server's cameras
    // (`remoteCameras`, their records). The screen is recorded here, so a
    // server camera cannot be its microphone.
    void rebuild(Source source, const QVariantList &remoteCameras);
    // Chooses a device for `source` from the saved choice `saved` (the
    // "lastDeviceSelection" record of that source), the system's default
    // devices and the menus' order; emits nothingChosen when none fits.
    void selectAppropriateRecordingDevice(Source source, const QVariantMap &saved);
    // Shows `item` as the chosen one in its pop-up and emits its choice.
    void take(QAction *item);
    // Marks the submenu item `item` (or none) as the chosen microphone of its
    // camera.
    void checkCameraMicrophone(QAction *item);
    // The camera whose submenu holds `item`.
    QAction *parentCameraItem(QAction *item) const;
    // A device item's record: "name", "uniqueID", "isLocalDevice" for this
    // computer's devices, the server's record for its cameras.
    static QVariantMap entryOf(const QAction *item);

    // Remembers the choice for the source called `sourceName`, as
    // selectAppropriateRecordingDevice reads it: whether it records here,
    // the camera (its uniqueID here, its name on the server) and the
    // microphone.
    void writeSelectionToDefaults(
        Source source, const QString &sourceName, bool local, const QVariantMap &camera, const QString &microphone);

    // The level of a chosen microphone that no camera session holds is read
    // by a session of its own.
    void monitorMicrophone(const QString &uniqueID);
    void stopMonitoringMicrophone();

signals:
    void localMicrophoneChosen(QAction *item);
    void remoteMicrophoneChosen(QAction *item);
    void remoteCameraChosen(QAction *item);
    void localCameraAndMicrophoneChosen(QAction *item);
    // On the screen's page: this computer's camera to record beside the
    // screen, or "No Camera" (an item without a device).
    void screenCameraChosen(QAction *item);
    void nothingChosen();
    // The title each pop-up shows for its chosen device.
    void chosenCameraTitleChanged(const QString &title);
    void chosenMicrophoneTitleChanged(const QString &title);
    // The sound whose level the meter shows; null hides the meter.
    void microphoneLevelConnectionChanged(const CaptureConnectionPtr &connection);

private:
    enum class Kind { None, LocalMicrophone, RemoteMicrophone, RemoteCamera, LocalCameraAndMicrophone, ScreenCamera };
    QAction *addItem(InputDeviceMenu *menu, const QString &title, int glyph, Kind kind, const QVariantMap &entry,
        bool enabled = true);

    CaptureDevicesController *m_devices;
    std::unique_ptr<InputDeviceMenu> m_cameraMenu;
    std::unique_ptr<InputDeviceMenu> m_microphoneMenu;
    std::shared_ptr<CaptureSession> m_microphoneMonitor;
};
