#include "LXController.h"

#include "ChosenFilesRoute.h"
#include "DesktopNotifier.h"
#include "DeviceChooser.h"
#include "DonePage.h"
#include "InterruptedRecordings.h"
#include "LXMainWindow.h"
#include "LastWindowWatcher.h"
#include "MetadataPage.h"
#include "RecordPage.h"
#include "RecordingJournal.h"
#include "RecordingWatch.h"
#include "RemoteCameraPreviews.h"
#include "SecondaryWindows.h"
#include "SourceChooserPage.h"
#include "TransfersController.h"

#include <QApplication>

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
    // the hiding is done.
    connect(w, &LXMainWindow::closeRequested, this, [this] { m_window->hide(); });
    connect(new LastWindowWatcher(this), &LastWindowWatcher::lastWindowClosed, this, [this] {
        if (applicationShouldTerminateAfterLastWindowClosed())
            requestQuit();
    });
    connect(w, &LXMainWindow::quitRequested, this, &LXController::requestQuit);
    connect(m_windows, &SecondaryWindows::quitRequested, this, &LXController::requestQuit);
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
    connect(
        w, &LXMainWindow::newPodcastClicked, this, [this] { newPodcastClicked(QGuiApplication::keyboardModifiers()); });
    connect(w, &LXMainWindow::workflowChosen, this, &LXController::chooseWorkflow);
    connect(w, &LXMainWindow::titleEdited, this, [this](const QString &title) {
        if (m_job)
            m_job->setTitle(title);
        scheduleJournal();
    });
    connect(w, &LXMainWindow::descriptionEdited, this, [this](const QString &description) {
        if (m_job)
            m_job->setJobDescription(description);
        scheduleJournal();
    });

    connect(m_captureDevicesController, &CaptureDevicesController::recordingDeviceLost, m_watch,
        &RecordingWatch::deviceLost);
    connect(m_devices, &DeviceChooser::localMicrophoneChosen, this, &LXController::localMicrophoneSelected);
    connect(m_devices, &DeviceChooser::remoteMicrophoneChosen, this, &LXController::remoteMicrophoneSelected);
    connect(m_devices, &DeviceChooser::remoteCameraChosen, this, &LXController::remoteCameraSelected);
    connect(m_devices, &DeviceChooser::localCameraAndMicrophoneChosen, this,
        &LXController::localCameraAndMicrophoneSelected);
    connect(m_devices, &DeviceChooser::screenCameraChosen, this, &LXController::screenCameraSelected);
    connect(m_devices, &DeviceChooser::nothingChosen, this, [this] {
        m_route.reset();
        setJobCamera(QVariantMap());
        setJobLocalAudioDeviceName(QString());
    });
    connect(m_devices, &DeviceChooser::chosenCameraTitleChanged, this,
        [this](const QString &title) { m_window->recordPage()->setChosenCamera(title); });
    connect(m_devices, &DeviceChooser::chosenMicrophoneTitleChanged, this,
        [this](const QString &title) { m_window->recordPage()->setChosenMicrophone(title); });
    connect(m_devices, &DeviceChooser::microphoneLevelConnectionChanged, this,
        [this](const CaptureConnectionPtr &connection) {
            m_window->recordPage()->setMicrophoneLevelConnection(connection);
        });
    // The job's camera and the mode decide whose snapshot the record page shows.
    connect(this, &LXController::canBeginRecordingChanged, this, &LXController::showChosenRemoteCameraPreview);
    connect(m_previews, &RemoteCameraPreviews::snapshotChanged, this, &LXController::showChosenRemoteCameraPreview);
    connect(m_interruptedRecordings, &InterruptedRecordings::publishRequested, this,
        &LXController::publishRecoveredRecording);
    connect(m_interruptedRecordings, &InterruptedRecordings::continueRequested, this,
        &LXController::continueJournaledRecording);
    connect(m_interruptedRecordings, &InterruptedRecordings::discardRequested, this,
        &LXController::discardJournaledRecording);
}

void LXController::notifyIfWatchedUploadEnded(const QVariantMap &upload)
{
    if (!m_notifier)
        m_notifier = new DesktopNotifier(this);
    m_notifier->notifyIfUploadEnded(upload, m_job ? m_job->title() : QString());
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
    if (TransfersController *transfers = transfersController())
        transfers->startPollingSubmissions();
}

void LXController::lookForInterruptedRecordings()
{
    m_interruptedRecordings->lookFor(
        m_job ? m_job->movieFilePaths().value_or(QStringList()) : QStringList(), m_journalAtSignIn, remoteCameras());
}

void LXController::publishRecoveredRecording(
    const QStringList &paths, const QDateTime &started, const QDateTime &interrupted)
{
    if (!m_job)
        return;
    prepareToSubmitFiles(paths);
    setRoute(std::make_unique<ChosenFilesRoute>(*this, ChosenFilesRoute::Files::InterruptedRecording));
    if (started.isValid())
        m_job->setStartedAt(started);
    m_job->setStoppedAt(interrupted);
    // What was entered before the interruption comes back with the files.
    const QVariantMap journal = m_journalAtSignIn.value_or(QVariantMap());
    if (journal.value(RecordingJournal::kFiles).toStringList().contains(paths.first())) {
        m_job->setTitle(journal.value(RecordingJournal::kTitle).toString());
        m_job->setJobDescription(journal.value(RecordingJournal::kDescription).toString());
        if (const QVariantMap workflow = journal.value(RecordingJournal::kWorkflow).toMap(); !workflow.isEmpty())
            m_job->setWorkflow(workflow);
        m_window->metadataPage()->setMetadata(m_job->title(), m_job->jobDescription());
        updateWorkflowPopUp();
    }
    openReview(); // Lumex's own recording: both movies of a pair, trimmable
}
