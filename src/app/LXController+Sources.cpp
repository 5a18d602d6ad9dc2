#include "LXController.h"

#include "CaptureDevicesController.h"
#include "ChosenFilesRoute.h"
#include "DeviceChooser.h"
#include "GLScreenGrabController.h"
#include "LXDefaultsKeys.h"
#include "LXMainWindow.h"
#include "LXUserDefaults.h"
#include "LocalAgentRoute.h"
#include "LocalCaptureRoute.h"
#include "RecordPage.h"
#include "RecordingWatch.h"
#include "RemoteCameraRoute.h"

#include <QAction>
#include <QDir>
#include <QFileDialog>

namespace {

const QString kUniqueID = QStringLiteral("uniqueID");

int pushDuration(Qt::KeyboardModifiers modifiers)
{
    return modifiers.testFlag(Qt::ShiftModifier) ? 2000 : 400;
}

DeviceChooser::Source chooserSource(LXController::Mode mode)
{
    switch (mode) {
    case LXController::Mode::Video:
        return DeviceChooser::Source::Video;
    case LXController::Mode::Audio:
        return DeviceChooser::Source::Audio;
    case LXController::Mode::Screen:
        return DeviceChooser::Source::Screen;
    default:
        return DeviceChooser::Source::None;
    }
}

} // namespace

void LXController::sourceClicked(Mode mode, Qt::KeyboardModifiers modifiers)
{
    if (mode == Mode::File) {
        setMode(Mode::File);
        delete m_openPanel;
        m_openPanel = m_window->makeMoviePanel();
        connect(m_openPanel, &QDialog::finished, this, &LXController::openPanelDidEnd);
        m_openPanel->open();
        return;
    }
    if (mode != Mode::Video && mode != Mode::Audio && mode != Mode::Screen)
        return;

    setMode(mode);
    if (!m_captureDevicesController->hasRefreshed())
        m_captureDevicesController->refreshDevices();
    RecordPage *page = m_window->recordPage();
    page->setHotkeySuggestion(QString());
    if (mode == Mode::Video) {
        page->setRemotePreview(QImage());
        page->setScreenPreviewImage(QImage());
    } else if (mode == Mode::Audio) {
        page->showSoundPicture();
    } else {
        setLocalRecordingChosen(true);
        page->setScreenPreviewImage(QImage());
        // In a Wayland session the desktop may first ask the user whether
        // to share the screen: the picture comes when it is answered.
        m_screenGrabController->grab(this, [this](const QImage &image, const std::optional<Error> &error) {
            if (m_mode != Mode::Screen)
                return;
            m_window->recordPage()->setScreenPreviewImage(image);
            if (error)
                alertUserToError(*error);
        });
        page->suggestRecordPauseKey();
    }
    m_window->showRecordPage(pushDuration(modifiers));
    rebuildInputDevicesList();
    m_watch->start();
}

void LXController::backClicked(Qt::KeyboardModifiers modifiers)
{
    setMode(Mode::NoSource);
    m_watch->stop();
    m_window->showSourceChooser(pushDuration(modifiers));
    tearDownLocalCameraAndMicrophone();
}

void LXController::openPanelDidEnd(int returnCode)
{
    const QStringList files = m_openPanel ? m_openPanel->selectedFiles() : QStringList();
    if (m_openPanel)
        m_openPanel->deleteLater();
    if (returnCode == QDialog::Accepted)
        prepareToSubmitFiles(files);
}

void LXController::prepareToSubmitFiles(const QStringList &paths)
{
    setMode(Mode::File);
    setRoute(std::make_unique<ChosenFilesRoute>(*this, ChosenFilesRoute::Files::UsersOwn));
    if (m_job)
        m_job->setMovieFilePaths(paths);
    m_window->showMetadataPageForFiles(paths);
    openReview();
}

bool LXController::applicationOpenFile(const QString &path)
{
    if (m_state != State::Idle)
        return false;
    prepareToSubmitFiles({ path });
    return true;
}

void LXController::applicationOpenFiles(const QStringList &paths)
{
    if (m_state == State::Idle)
        prepareToSubmitFiles(paths);
}

void LXController::openFilesFromDesktop(const QStringList &paths)
{
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
    if (paths.size() == 1)
        applicationOpenFile(paths.first());
    else if (!paths.isEmpty())
        applicationOpenFiles(paths);
}

void LXController::rebuildInputDevicesList()
{
    m_window->recordPage()->setDeviceMenus(m_devices->cameraMenu(), m_devices->microphoneMenu());
    m_devices->rebuild(chooserSource(m_mode), remoteCameras());
    // A device plugged in or out while a recording exists changes the menus
    // only: the recording keeps its devices, and the choice runs again when
    // it ends.
    if (m_mode != Mode::NoSource && !hasBegunRecording())
        selectAppropriateRecordingDevice();
    updateBoundControls();
}

void LXController::selectAppropriateRecordingDevice()
{
    m_devices->selectAppropriateRecordingDevice(chooserSource(m_mode),
        LXUserDefaults::standard().valueForLumexKey(LXDefaultsKeys::lastDeviceSelectionFor(currentModeString())));
}

void LXController::localMicrophoneSelected(QAction *item)
{
    const QString uniqueID = DeviceChooser::entryOf(item).value(kUniqueID).toString();
    setJobLocalAudioDeviceName(uniqueID);
    if (m_mode == Mode::Screen)
        return setUpScreenRecording();
    setRoute(std::make_unique<LocalAgentRoute>(*this, LocalAgentRoute::Media::Sound));
    m_devices->monitorMicrophone(uniqueID);
}

void LXController::screenCameraSelected(QAction *item)
{
    setJobCamera(DeviceChooser::entryOf(item));
    setUpScreenRecording();
}

void LXController::setUpScreenRecording(int fromScreenShare, quint32 screenNode)
{
    const QString microphoneID = m_job ? m_job->localAudioDeviceName() : QString();
    const QString cameraID = m_job ? m_job->camera().value(kUniqueID).toString() : QString();
    tearDownLocalCameraAndMicrophone();
    const int request = ++m_screenShareRequest;
    if (m_awaitingScreenShare) {
        m_awaitingScreenShare = false;
        emit canBeginRecordingChanged();
    }
    // The screen alone is the agent's, as it always was; with a camera
    // beside it, our own capture records both in step.
    if (cameraID.isEmpty() || microphoneID.isNull()) {
        setRoute(std::make_unique<LocalAgentRoute>(*this, LocalAgentRoute::Media::Screen));
        m_devices->monitorMicrophone(microphoneID);
        return;
    }
    auto screen = std::make_shared<CaptureDevice>(CaptureDevice::Kind::Screen, QStringLiteral("screen"), tr("Screen"));
    if (m_screenGrabController->usesPortal() && fromScreenShare < 0) {
        // The screen is the desktop's to share: it may ask the user first
        // (once, for the preview's pictures too), and nothing records until
        // it has answered.
        m_awaitingScreenShare = true;
        emit canBeginRecordingChanged();
        using Stream = GLScreenGrabController::ScreenStream;
        m_screenGrabController->requestScreenStream(
            this, [this, request](const std::optional<Stream> &stream, const std::optional<Error> &error) {
                if (request != m_screenShareRequest || m_mode != Mode::Screen || hasBegunRecording())
                    return;
                if (stream)
                    return setUpScreenRecording(stream->fd, stream->nodeId);
                // The screen alone, as the capture agent records it; the
                // preview has told why in an alert when it asked as well.
                m_devices->take(m_devices->cameraMenu()->actions().value(0)); // "No Camera"
                m_window->recordPage()->showBanner(QStringLiteral("screen-share"),
                    tr("The screen is recorded without the camera. %1")
                        .arg(error ? error->localizedDescription : QString())
                        .trimmed());
            });
        return;
    }
    if (fromScreenShare >= 0)
        screen->setPipeWireStream(fromScreenShare, screenNode);
    m_captureDevicesController->setupRecordingForScreenWithVideoDeviceUniqueID(screen, cameraID, microphoneID);
    const std::shared_ptr<CaptureSession> session = m_captureDevicesController->captureSession();
    if (!session)
        return m_devices->take(m_devices->cameraMenu()->actions().value(0)); // "No Camera"
    setRoute(std::make_unique<LocalCaptureRoute>(*this));
    m_window->recordPage()->showCaptureSession(session, true);
}

void LXController::remoteMicrophoneSelected(QAction *item)
{
    setRoute(std::make_unique<RemoteCameraRoute>(*this, RemoteCameraRoute::Media::SoundOnly));
    m_devices->stopMonitoringMicrophone();
    // The server's camera records the sound.
    setJobCamera(DeviceChooser::entryOf(item));
}

void LXController::remoteCameraSelected(QAction *item)
{
    setRoute(std::make_unique<RemoteCameraRoute>(*this, RemoteCameraRoute::Media::Video));
    tearDownLocalCameraAndMicrophone();
    setJobCamera(DeviceChooser::entryOf(item));
    m_devices->checkCameraMicrophone(nullptr);
}

void LXController::localCameraAndMicrophoneSelected(QAction *item)
{
    tearDownLocalCameraAndMicrophone();
    const QVariantMap camera = DeviceChooser::entryOf(m_devices->parentCameraItem(item));
    const QString microphoneID = DeviceChooser::entryOf(item).value(kUniqueID).toString();
    setJobLocalAudioDeviceName(microphoneID);
    setJobCamera(camera);
    setRoute(std::make_unique<LocalCaptureRoute>(*this));
    m_devices->checkCameraMicrophone(item);
    m_captureDevicesController->setupRecordingForVideoDeviceUniqueID(camera.value(kUniqueID).toString(), microphoneID);
    const std::shared_ptr<CaptureSession> session = m_captureDevicesController->captureSession();
    if (!session) {
        // A camera that cannot be opened records nothing: the record button
        // stays off rather than counting down to an empty movie.
        setJobCamera(QVariantMap());
        setJobLocalAudioDeviceName(QString());
        return;
    }
    m_window->recordPage()->showCaptureSession(session);
}

void LXController::tearDownLocalCameraAndMicrophone()
{
    m_window->recordPage()->clearBanner(QStringLiteral("screen-share"));
    m_window->recordPage()->showLocalPreview(nullptr);
    m_window->recordPage()->setMicrophoneLevelConnection(nullptr);
    m_devices->stopMonitoringMicrophone();
    m_captureDevicesController->teardown();
}

void LXController::writeSelectedDevicesToDefaults()
{
    m_devices->writeSelectionToDefaults(chooserSource(m_mode), currentModeString(), m_localRecordingChosen,
        m_job ? m_job->camera() : QVariantMap(), m_job ? m_job->localAudioDeviceName() : QString());
}
