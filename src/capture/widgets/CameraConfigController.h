#pragma once

#include "CaptureDevice.h"
#include "Error.h"

#include <QObject>

#include <memory>
#include <optional>
#include <variant>

class Authorization;
class CaptureMovieFileOutput;
class CaptureSession;
class CaptureVideoPreviewWidget;
class OrvaneServerInterface;
class QDialog;
class QLabel;
class QLineEdit;
class QPushButton;
class QTimer;
class QWidget;
namespace Ui {
class CameraConfig;
}

// The camera configuration window loaded from "CameraConfig": makes this
// computer a camera the server can drive. The camera and microphone the
// agent records from, a live preview with a level meter, and binding the
// agent to the server, all behind a lock that asks polkit for administrator
// rights once.
class CameraConfigController final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CameraConfigController)

public:
    // A list entry: the Automatic choice, the separator, or a device.
    struct Automatic
    {
    };
    struct Separator
    {
    };
    using Entry = std::variant<Automatic, Separator, CaptureDevicePtr>;

    explicit CameraConfigController(QObject *parent = nullptr);
    ~CameraConfigController() override;

    QWidget *window();

    const QList<Entry> &cameraList() const { return m_cameraList; }
    const QList<Entry> &microphoneList() const { return m_microphoneList; }
    int selectedCameraIndex() const { return m_selectedCameraIndex; }
    int selectedMicrophoneIndex() const { return m_selectedMicrophoneIndex; }
    void setSelectedCameraIndex(int index);
    void setSelectedMicrophoneIndex(int index);
    CaptureDevicePtr selectedCamera() const;
    CaptureDevicePtr selectedMicrophone() const;

    bool isUnlocked() const { return bool(m_authorization); }
    // Asks polkit (with a dialog where it needs one) and unlocks when it
    // agrees, later, on the main thread.
    void unlock();
    void lock();
    bool agentIsBound() const { return m_agentIsBound; }
    bool notPerformingBind() const { return m_notPerformingBind; }
    QString bindButtonTitle() const;

    void bindCameraToServer();
    void dismissBindAuthPanel(bool ok);
    QDialog *serverAuthPanel() const { return m_serverAuthPanel; }

    std::shared_ptr<CaptureSession> captureSession() const { return m_captureSession; }
    bool isLevelTimerRunning() const;
    // 0 to 40.
    int audioLevel() const;

signals:
    // The window is about to close.
    void windowWillClose();
    void lockedStateChanged();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void windowDidLoad();
    void readAgentConfiguration(bool takeSelection);
    void devicesDidChange();
    QList<Entry> sources(const QString &mediaType) const;
    void fillPopUp(int which);
    void refreshCameraAndMicrophonePreviews();
    void updateAudioLevels();
    void tearDownCaptureSession();
    void didBindCamera(const std::optional<Error> &error, bool bind);
    void setAgentRunning(bool running);
    void didSetAgentRunning(const std::optional<Error> &error);
    void updateLockedState();
    void showAlert(QWidget *parent, const QString &message, const QString &information);

    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<Ui::CameraConfig> m_ui;
    CaptureVideoPreviewWidget *m_captureView = nullptr;
    QDialog *m_serverAuthPanel = nullptr;
    QLabel *m_serverAuthDescriptionTextField = nullptr;
    QPushButton *m_serverAuthOKButton = nullptr;
    QLineEdit *m_serverField = nullptr;
    QLineEdit *m_userField = nullptr;
    QLineEdit *m_passwordField = nullptr;
    QLineEdit *m_cameraNameField = nullptr;
    std::shared_ptr<CaptureMovieFileOutput> m_movieFileOutput;
    QTimer *m_audioLevelTimer = nullptr;
    std::shared_ptr<CaptureSession> m_captureSession;
    std::shared_ptr<OrvaneServerInterface> m_podcastServer;
    QList<Entry> m_cameraList;
    QList<Entry> m_microphoneList;
    int m_selectedCameraIndex = 0;
    int m_selectedMicrophoneIndex = 0;
    std::shared_ptr<Authorization> m_authorization;
    bool m_askingForRights = false;
    bool m_agentIsBound = false;
    bool m_notPerformingBind = true;
};
