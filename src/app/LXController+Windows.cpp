#include "LXController.h"

#include "CameraConfigController.h"
#include "CaptureDevicesController.h"
#include "DesktopNotifier.h"
#include "DeviceChooser.h"
#include "DonePage.h"
#include "InterruptedRecordings.h"
#include "LXMainWindow.h"
#include "MetadataPage.h"
#include "PreferencesController.h"
#include "RecordPage.h"
#include "RemoteCameraPreviews.h"
#include "SourceChooserPage.h"
#include "TransfersController.h"

#include <QApplication>
#include <QScreen>
#include <QTimer>

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

void LXController::connectWindow()
{
    LXMainWindow *w = m_window.get();
    // The window's state is bound to the derived properties.
    for (auto changed : { &LXController::recordPauseMenuTitleChanged, &LXController::recordOrPauseImageChanged,
             &LXController::canRecordOrPauseChanged, &LXController::microphoneListShouldBeHiddenChanged,
             &LXController::canBeginRecordingChanged, &LXController::waitingOnRecordOrPauseResponseChanged })
        connect(this, changed, this, &LXController::updateBoundControls);
    // The page and the sheets on the window decide whether recording is possible.
    connect(w, &LXMainWindow::pageChanged, this, &LXController::canRecordOrPauseChanged);
    connect(w, &LXMainWindow::sheetsChanged, this, &LXController::canRecordOrPauseChanged);
    // Closing the main window only hides it; whether that was the last
    // window, and whether the application may end with it, is decided once
    // the hiding is done (see eventFilter).
    connect(w, &LXMainWindow::closeRequested, this, [this] { m_window->hide(); });
    qApp->installEventFilter(this);
    connect(w, &LXMainWindow::quitRequested, this, &LXController::requestQuit);
    connect(w, &LXMainWindow::preferencesRequested, this, &LXController::showPreferencesWindow);
    connect(w, &LXMainWindow::transfersRequested, this, &LXController::showTransfersWindow);
    connect(w, &LXMainWindow::cameraConfigurationRequested, this, &LXController::configureLocalCamera);
    connect(w, &LXMainWindow::signInRequested, this, [this] {
        if (!m_loginPanel)
            showLoginPanel();
        else
            m_loginPanel->beginLoginSheet();
    });
    connect(w->sourceChooserPage(), &SourceChooserPage::sourceClicked, this, [this](SourceChooserPage::Source source) {
        static constexpr Mode modes[] = { Mode::Video, Mode::Audio, Mode::Screen, Mode::File };
        sourceClicked(modes[int(source)], QGuiApplication::keyboardModifiers());
    });
    connect(w, &LXMainWindow::backClicked, this, [this] { backClicked(QGuiApplication::keyboardModifiers()); });
    connect(w, &LXMainWindow::filesDropped, this, &LXController::prepareToSubmitFiles);
    connect(w, &LXMainWindow::recordPauseClicked, this, &LXController::recordPauseButtonClicked);
    connect(w, &LXMainWindow::recordPauseMenuItemInvoked, this, &LXController::recordPauseResumeMenuItemInvoked);
    connect(w, &LXMainWindow::publishClicked, this, &LXController::publishClicked);
    connect(w, &LXMainWindow::submitClicked, this, &LXController::submitClicked);
    connect(w, &LXMainWindow::cancelClicked, this, &LXController::cancelClicked);
    connect(w, &LXMainWindow::startOverClicked, this, &LXController::startOverClicked);
    connect(w->donePage(), &DonePage::newPodcastClicked, this,
        [this] { newPodcastClicked(QGuiApplication::keyboardModifiers()); });

    MetadataPage *metadata = w->metadataPage();
    connect(metadata, &MetadataPage::workflowChosen, this, &LXController::chooseWorkflow);
    connect(metadata, &MetadataPage::titleEdited, this, [this](const QString &title) {
        if (m_job)
            m_job->setTitle(title);
    });
    connect(metadata, &MetadataPage::descriptionEdited, this, [this](const QString &description) {
        if (m_job)
            m_job->setJobDescription(description);
    });

    RecordPage *record = w->recordPage();
    connect(m_devices, &DeviceChooser::localMicrophoneChosen, this, &LXController::localMicrophoneSelected);
    connect(m_devices, &DeviceChooser::remoteMicrophoneChosen, this, &LXController::remoteMicrophoneSelected);
    connect(m_devices, &DeviceChooser::remoteCameraChosen, this, &LXController::remoteCameraSelected);
    connect(m_devices, &DeviceChooser::localCameraAndMicrophoneChosen, this,
        &LXController::localCameraAndMicrophoneSelected);
    connect(m_devices, &DeviceChooser::nothingChosen, this, [this] {
        m_route.reset();
        setJobCamera(QVariantMap());
        setJobLocalAudioDeviceName(QString());
    });
    connect(m_devices, &DeviceChooser::chosenCameraTitleChanged, record, &RecordPage::setChosenCamera);
    connect(m_devices, &DeviceChooser::chosenMicrophoneTitleChanged, record, &RecordPage::setChosenMicrophone);
    connect(m_devices, &DeviceChooser::microphoneLevelConnectionChanged, record,
        &RecordPage::setMicrophoneLevelConnection);
    // The job's camera and the mode decide whose snapshot the record page shows.
    connect(this, &LXController::canBeginRecordingChanged, this, &LXController::showChosenRemoteCameraPreview);
    connect(m_previews, &RemoteCameraPreviews::snapshotChanged, this, &LXController::showChosenRemoteCameraPreview);
    connect(m_interruptedRecordings, &InterruptedRecordings::publishRequested, this,
        &LXController::publishRecoveredRecording);
}

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

void LXController::notifyIfWatchedUploadEnded(const QVariantMap &upload)
{
    const QString uuid = upload.value(QStringLiteral("upload_uuid")).toString();
    const QString status = upload.value(QStringLiteral("status")).toString();
    const bool completed = status == QLatin1String("completed");
    // An open transfers window keeps polling after the end: one notice each.
    if (uuid.isEmpty() || (!completed && status != QLatin1String("error")) || m_notifiedUploads.contains(uuid))
        return;
    m_notifiedUploads.insert(uuid);
    const QVariantMap metadata = upload.value(QStringLiteral("metadata")).toMap();
    QString title
        = metadata.value(QStringLiteral("Title"), metadata.value(QStringLiteral("UserMetadata_Title"))).toString();
    if (title.isEmpty() && m_job)
        title = m_job->title();
    if (!m_notifier)
        m_notifier = new DesktopNotifier(this);
    m_notifier->notifyUploadEnded(title, completed);
}

std::shared_ptr<OrvaneServerInterface> LXController::signedInServer()
{
    return m_connected ? m_server : nullptr;
}

void LXController::transferWasRetried(const QString &failedUUID, const QString &newUUID)
{
    // The current job's upload lives on in the retry: the done page and the
    // notification follow the new one.
    if (!m_job || m_job->uploadUUID() != failedUUID)
        return;
    m_job->setUploadUUID(newUUID);
    m_currentJobCompletedUploading = false;
    if (m_transfersController)
        m_transfersController->startPollingSubmissions();
}

void LXController::lookForInterruptedRecordings()
{
    m_interruptedRecordings->lookFor(m_job ? m_job->movieFilePaths().value_or(QStringList()) : QStringList());
}

bool LXController::isLookingForInterruptedRecordings() const
{
    return m_interruptedRecordings->isLooking();
}

QMessageBox *LXController::interruptedRecordingQuestion() const
{
    return m_interruptedRecordings->question();
}

void LXController::publishRecoveredRecording(
    const QString &path, const QDateTime &started, const QDateTime &interrupted)
{
    if (!m_job)
        return;
    prepareToSubmitFiles({ path });
    m_recoveredRecording = path;
    if (started.isValid())
        m_job->setStartedAt(started);
    m_job->setStoppedAt(interrupted);
}
