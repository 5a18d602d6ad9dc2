#pragma once

#include "CameraConfigController.h"
#include "CaptureDevicesController.h"
#include "CaptureDevicesControllerDelegate.h"
#include "CountdownView.h"
#include "Error.h"
#include "GLScreenGrabController.h"
#include "InputDeviceMenu.h"
#include "LXLoginPanelController.h"
#include "OrvaneServerInterface.h"
#include "PodcastJob.h"
#include "PreferencesController.h"
#include "StopWatch.h"
#include "TransfersController.h"
#include "TransfersControllerDelegate.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QVariantMap>

#include <memory>
#include <optional>

class QAction;

class QTimer;
class LXMainWindow;

// The spine of the application: the main window's controller and the
// application's delegate. It owns the current job, the server interface, the
// credentials, the stop-watch and the secondary windows, and keeps the two
// values everything else is derived from: the controller state and the
// source mode. Main thread only.
//
// One class over several files, each holding one area of behaviour:
// LXController.cpp (construction, state and mode, the derived properties and
// the table of what they depend on, the job reset), +Login, +Sources,
// +Recording, +Submission, +Alerts, +Windows (secondary windows) and +Quit.
class LXController final : public QObject,
                           public LXLoginPanelDelegate,
                           public CaptureDevicesControllerDelegate,
                           public TransfersControllerDelegate
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LXController)

    Q_PROPERTY(State state READ state WRITE setState NOTIFY stateChanged)
    Q_PROPERTY(Mode mode READ mode WRITE setMode NOTIFY modeChanged)
    Q_PROPERTY(bool localRecordingChosen READ localRecordingChosen WRITE setLocalRecordingChosen NOTIFY
            localRecordingChosenChanged)
    Q_PROPERTY(QString recordPauseMenuTitle READ recordPauseMenuTitle NOTIFY recordPauseMenuTitleChanged)
    Q_PROPERTY(bool canRecordOrPause READ canRecordOrPause NOTIFY canRecordOrPauseChanged)
    Q_PROPERTY(bool hasBegunRecording READ hasBegunRecording NOTIFY hasBegunRecordingChanged)
    Q_PROPERTY(bool canBeginRecording READ canBeginRecording NOTIFY canBeginRecordingChanged)
    Q_PROPERTY(bool videoModeIsSelected READ videoModeIsSelected NOTIFY videoModeIsSelectedChanged)
    Q_PROPERTY(bool audioModeIsSelected READ audioModeIsSelected NOTIFY audioModeIsSelectedChanged)
    Q_PROPERTY(bool screenModeIsSelected READ screenModeIsSelected NOTIFY screenModeIsSelectedChanged)
    Q_PROPERTY(bool isSmallerPreviewHidden READ isSmallerPreviewHidden NOTIFY isSmallerPreviewHiddenChanged)
    Q_PROPERTY(QString recordOrPauseImage READ recordOrPauseImage NOTIFY recordOrPauseImageChanged)
    Q_PROPERTY(
        bool microphoneListShouldBeHidden READ microphoneListShouldBeHidden NOTIFY microphoneListShouldBeHiddenChanged)
    Q_PROPERTY(QString currentModeString READ currentModeString)

public:
    enum class State : qint32 { Idle = 0, Starting = 1, Recording = 2, Paused = 3, Submitted = 4 };
    Q_ENUM(State)
    enum class Mode : qint32 { Video = 0, Audio = 1, Screen = 2, File = 3, NoSource = 4 };
    Q_ENUM(Mode)
    enum class TerminateReply { Now, Later, Cancel };

    LXController();
    ~LXController() override;

    // Loads the main window and starts the application: state Idle, mode
    // NoSource, defaults registered, notices observed, login panel shown.
    void awakeFromNib();

    // State, mode and what is derived from them.
    State state() const { return m_state; }
    void setState(State state);
    Mode mode() const { return m_mode; }
    void setMode(Mode mode);
    bool localRecordingChosen() const { return m_localRecordingChosen; }
    void setLocalRecordingChosen(bool chosen);

    QString recordPauseMenuTitle() const;
    bool canRecordOrPause() const;
    bool hasBegunRecording() const;
    bool canBeginRecording() const;
    bool videoModeIsSelected() const { return m_mode == Mode::Video; }
    bool audioModeIsSelected() const { return m_mode == Mode::Audio; }
    bool screenModeIsSelected() const { return m_mode == Mode::Screen; }
    bool isSmallerPreviewHidden() const { return m_mode == Mode::Audio || m_mode == Mode::Screen; }
    QString recordOrPauseImage() const;
    bool microphoneListShouldBeHidden() const;
    QString currentModeString() const;

    std::shared_ptr<PodcastJob> job() const { return m_job; }
    std::shared_ptr<PodcastJob> job() override { return m_job; }
    void setJob(const std::shared_ptr<PodcastJob> &job);
    // Changes of the job's camera and audio device go through these, so the
    // properties that depend on them are announced.
    void setJobCamera(const QVariantMap &camera);
    void setJobLocalAudioDeviceName(const QString &name);
    void resetJobAndRecordingState();
    void updateDockIcon();

    std::shared_ptr<OrvaneServerInterface> server() const { return m_server; }
    QVariantMap currentCredentials() const { return m_currentCredentials; }
    QVariantList remoteCameras() const { return m_remoteCameras; }
    void setRemoteCameras(const QVariantList &cameras) { m_remoteCameras = cameras; }
    StopWatch *recordingTime() const { return m_recordingTime.get(); }
    QString timerValue() const { return m_timerValue; }
    bool timerTextHidden() const { return m_timerTextHidden; }

    LXMainWindow *window() const { return m_window.get(); }
    LXUserLoginPanelController *loginPanel() const { return m_loginPanel; }
    QTimer *remoteCameraSnapshotRefreshTimer() const { return m_remoteCameraSnapshotRefreshTimer; }
    QTimer *selectedRemoteCameraPreviewUpdateTimer() const { return m_selectedRemoteCameraPreviewUpdateTimer; }
    TransfersController *transfersController() const { return m_transfersController; }
    PreferencesController *preferencesController() const { return m_preferencesController; }
    CameraConfigController *cameraConfigController() const { return m_cameraConfigController; }
    CaptureDevicesController *captureDevicesController() const { return m_captureDevicesController; }
    GLScreenGrabController *screenGrabController() const { return m_screenGrabController.get(); }

    // Login (+Login).
    void showLoginPanel();
    void loginPanelDidClickConnect(LXLoginPanelController *panel) override;
    void loginToServer();
    void didGetWorkflows(const std::optional<QVariantList> &workflows, const std::optional<Error> &error);
    void didGetCameras(const std::optional<QVariantList> &cameras, const std::optional<Error> &error);
    void userDidConnectWithNotice(const QVariant &credentials);
    QVariantList workflows() const;
    void refreshAllCameraPreviewImages();
    void requestPreviewUpdateOfSelectedRemoteCamera();

    // Sources and devices (+Sources). Shift held while clicking slows the
    // page's slide down.
    void sourceClicked(Mode mode, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void backClicked(Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void rebuildInputDevicesList() override;
    void selectAppropriateRecordingDevice();
    // The device menus' item handlers; each item holds its device entry.
    void localMicrophoneSelected(QAction *item);
    void remoteMicrophoneSelected(QAction *item);
    void remoteCameraSelected(QAction *item);
    void localCameraAndMicrophoneSelected(QAction *item);
    void tearDownLocalCameraAndMicrophone();
    void writeSelectedDevicesToDefaults();
    InputDeviceMenu *cameraMenu() const { return m_cameraMenu.get(); }
    InputDeviceMenu *microphoneMenu() const { return m_microphoneMenu.get(); }
    QFileDialog *openPanel() const { return m_openPanel; }
    void openPanelDidEnd(int returnCode);

    // Files to publish: chosen in the open panel, dropped on the window, or
    // handed to the application (its command line, a second launch).
    void prepareToSubmitFiles(const QStringList &paths);
    bool applicationOpenFile(const QString &path);
    void applicationOpenFiles(const QStringList &paths);
    // Files from the command line or a second launch: the window comes to
    // the front and one file or several are opened as the desktop asks.
    void openFilesFromDesktop(const QStringList &paths);

    // The job's answers (+Recording).
    void jobDidPause(const std::optional<Error> &error);
    void jobDidResume(const std::optional<Error> &error);
    void jobDidStop(const std::optional<Error> &error);
    void localJobDidStop(const std::optional<Error> &error) override;
    // Follows the upload of the current job after each poll of the queue.
    void updateSubmissionStatus() override;

    // Alerts (+Alerts).
    void alertUserToError(const Error &error) override;
    void alertDidEnd();

    // Secondary windows (+Windows).
    void configureLocalCamera();
    void cameraConfigWindowClosed();
    void showPreferencesWindow();
    void showTransfersWindow();
    void transfersWindowClosed();

    // Quitting (+Quit).
    bool applicationShouldTerminateAfterLastWindowClosed() const;
    TerminateReply applicationShouldTerminate();
    void quitWarningSheetDidEnd(int returnCode);
    // Asks to quit; quits at once unless a recording has begun.
    void requestQuit();
    QMessageBox *quitWarningSheet() const { return m_quitSheet; }
    // How long quitting waits for the recording's cancel to be answered.
    static constexpr int kQuitCancelTimeoutMs = 5000;

signals:
    void stateChanged();
    void modeChanged();
    void localRecordingChosenChanged();
    void recordPauseMenuTitleChanged();
    void canRecordOrPauseChanged();
    void hasBegunRecordingChanged();
    void canBeginRecordingChanged();
    void videoModeIsSelectedChanged();
    void audioModeIsSelectedChanged();
    void screenModeIsSelectedChanged();
    void isSmallerPreviewHiddenChanged();
    void recordOrPauseImageChanged();
    void microphoneListShouldBeHiddenChanged();
    // The application should end now (the quit flow has agreed).
    void terminateRequested();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // Emits the change signal of every derived property that depends on `key`.
    void announceDependents(const char *key);
    void observeValueForKeyPath(const char *keyPath);
    void updateBoundControls();
    void updateWorkflowPopUp();
    void fillWorkflowMenu();
    void chooseWorkflow(int index);
    QWidget *alertParent() const;
    enum class DeviceAction { None, LocalMicrophone, RemoteMicrophone, RemoteCamera, LocalCameraAndMicrophone };
    QAction *addDeviceItem(InputDeviceMenu *menu, const QString &title, int glyph, DeviceAction action,
        const QVariantMap &entry, bool enabled = true);
    void sendDeviceAction(QAction *item);
    // Selects the item (a submenu item's camera) in its pop-up and sends its
    // action.
    void takeDeviceItem(QAction *item);
    void clearChosenDevices();
    QAction *parentCameraItem(QAction *submenuItem) const;
    void monitorMicrophone(const QString &uniqueID);
    void stopMonitoringMicrophone();
    // Quits when no window is left and the application may end with its
    // last window.
    void maybeLastWindowClosed();

    std::unique_ptr<LXMainWindow> m_window;
    QPointer<LXUserLoginPanelController> m_loginPanel;
    QVariantMap m_currentCredentials;
    std::unique_ptr<StopWatch> m_recordingTime;
    QString m_timerValue;
    bool m_timerTextHidden = false;
    bool m_localRecordingChosen = false;
    Mode m_mode = Mode::NoSource;
    State m_state = State::Idle;
    std::shared_ptr<PodcastJob> m_job;
    std::shared_ptr<OrvaneServerInterface> m_server;
    QVariantList m_remoteCameras;
    QTimer *m_everySecondTimer = nullptr;
    QTimer *m_remoteCameraSnapshotRefreshTimer = nullptr;
    QTimer *m_selectedRemoteCameraPreviewUpdateTimer = nullptr;
    QPointer<CameraConfigController> m_cameraConfigController;
    std::unique_ptr<GLScreenGrabController> m_screenGrabController;
    QPointer<CaptureDevicesController> m_captureDevicesController;
    QPointer<PreferencesController> m_preferencesController;
    QPointer<TransfersController> m_transfersController;
    QPointer<QMessageBox> m_quitSheet;
    std::unique_ptr<InputDeviceMenu> m_cameraMenu;
    std::unique_ptr<InputDeviceMenu> m_microphoneMenu;
    // A chosen microphone's own session while no camera session has it,
    // for the level meter.
    std::shared_ptr<CaptureSession> m_microphoneMonitor;
    QPointer<QFileDialog> m_openPanel;
    int m_sheetsOnMainWindow = 0;
    bool m_currentJobCompletedUploading = false;
    bool m_waitingOnRecordOrPauseResponse = false;
    bool m_inBetweenMainWindowAndLoginPanel = false;
    bool m_connected = false;
    bool m_lastWindowCheckPending = false;

    // Remote cameras and their snapshots (+Cameras).
public:
    // Downloads the snapshot of the camera with this "uuid" into its
    // dictionary in remoteCameras.
    void refreshCameraPreviewImageForUUID(const QString &uuid);
    // The place in remoteCameras of the camera whose snapshot download
    // `reply` is (the first match); -1, logged, when there is none.
    qsizetype cameraDictionaryForNetworkReply(class QNetworkReply *reply);

private:
    void previewDownloadDidReceiveAuthenticationChallenge(
        class QNetworkReply *reply, class QAuthenticator *authenticator);
    void previewDownloadDidReceiveResponse(QNetworkReply *reply);
    void previewDownloadDidReceiveData(QNetworkReply *reply);
    void previewDownloadDidFinishLoading(QNetworkReply *reply);
    void previewDownloadDidFailWithError(QNetworkReply *reply, const QString &error);
    // Starts one request of a snapshot download; redirects are followed
    // through previewDownloadDidFinish.
    QNetworkReply *startPreviewDownload(const class QUrl &url, const QString &previewHost, int redirects);
    void previewDownloadDidFinish(QNetworkReply *reply);
    bool isChosenRemoteCamera(const QVariantMap &camera) const;
    void showChosenRemoteCameraPreview();

    class QNetworkAccessManager *m_previewNetwork = nullptr;

    // The end of the watched upload told to the desktop, failed uploads
    // retried from the transfers window (+Uploads), and recordings that a
    // crash left in the spool folder offered for publishing (+Recovery).
public:
    // Notifies once per upload when `upload` (a row of the transfers list)
    // has completed or failed.
    void notifyIfWatchedUploadEnded(const QVariantMap &upload);
    std::shared_ptr<OrvaneServerInterface> signedInServer() override;
    void transferWasRetried(const QString &failedUUID, const QString &newUUID) override;
    // After a login: looks, off the main thread, for movies in the spool
    // folder that no job and no upload owns, and asks about each in turn.
    void lookForInterruptedRecordings();
    bool isLookingForInterruptedRecordings() const { return m_lookingForInterruptedRecordings; }
    QMessageBox *interruptedRecordingQuestion() const { return m_interruptedRecordingQuestion; }

private:
    void didFindInterruptedRecordings(const QStringList &paths);
    void offerNextInterruptedRecording();
    void interruptedRecordingQuestionDidEnd(const QString &path, bool publish);

    class DesktopNotifier *m_notifier = nullptr;
    QSet<QString> m_notifiedUploads;
    QStringList m_interruptedRecordings;
    // Asked about in this run, whatever the answer.
    QSet<QString> m_interruptedRecordingsAnswered;
    // The interrupted recording now on the metadata page, if any.
    QString m_recoveredRecording;
    QPointer<QMessageBox> m_interruptedRecordingQuestion;
    bool m_lookingForInterruptedRecordings = false;

    // The recording flow (+Recording): from the record button to the paused
    // recording that is published.
    Q_PROPERTY(QString timerValue READ timerValue NOTIFY timerValueChanged)
    Q_PROPERTY(bool timerTextHidden READ timerTextHidden NOTIFY timerTextHiddenChanged)
    Q_PROPERTY(bool waitingOnRecordOrPauseResponse READ waitingOnRecordOrPauseResponse NOTIFY
            waitingOnRecordOrPauseResponseChanged)

public:
    // The record/pause button's actions; the button takes the one the state
    // calls for.
    void recordClicked();
    void pauseClicked();
    void resumeClicked();
    void recordPauseResumeMenuItemInvoked();
    void recordPauseKeyTriggered();
    void jobDidStart(const std::optional<Error> &error);
    void countdownTimerDidClose();
    void updateToRecordingView(const std::optional<Error> &error);
    void updateTimer();
    void flashPause();
    // Whether the home folder's file system has room for a local recording.
    bool enoughDiskSpaceForRecording() const;
    void showCutoffWarningAndPauseRecordingIfApplicable();
    bool waitingOnRecordOrPauseResponse() const { return m_waitingOnRecordOrPauseResponse; }
    CountdownView *countdownView() const { return m_countdownView; }
    QTimer *everySecondTimer() const { return m_everySecondTimer; }
    // How countdowns made from now on schedule their ticks; empty for timers.
    void setCountdownScheduler(const CountdownView::Scheduler &scheduler) { m_countdownScheduler = scheduler; }

signals:
    void timerValueChanged();
    void timerTextHiddenChanged();
    void waitingOnRecordOrPauseResponseChanged();

private:
    enum class RecordPauseAction { Record, Pause, Resume };
    void connectRecordingAndSubmission();
    // Sends a job operation of the server interface with `didEnd` as its
    // completion; nothing without a server.
    void askServer(void (OrvaneServerInterface::*operation)(QObject *, OrvaneServerInterface::JobCallback),
        void (LXController::*didEnd)(const std::optional<Error> &));
    void setTimerValue(const QString &value);
    void setTimerTextHidden(bool hidden);
    void setWaitingOnRecordOrPauseResponse(bool waiting);
    void setRecordPauseAction(RecordPauseAction action) { m_recordPauseAction = action; }
    void recordPauseButtonClicked();
    void restartEverySecondTimer(int msec, void (LXController::*target)());
    bool isLocalVideo() const { return m_localRecordingChosen && m_mode == Mode::Video; }
    // Counts a sheet on the main window for as long as it is open.
    void trackSheetOnMainWindow(QMessageBox *sheet);

    RecordPauseAction m_recordPauseAction = RecordPauseAction::Record;
    QPointer<CountdownView> m_countdownView;
    CountdownView::Scheduler m_countdownScheduler;

    // The submission flow (+Submission): the metadata page, the hand-over,
    // the done page and the ways back.
public:
    void publishClicked();
    void cancelClicked();
    void submitClicked();
    void newPodcastClicked(Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void startOverClicked();
    void startOverSheetDidEnd(int returnCode);
    QMessageBox *startOverSheet() const { return m_startOverSheet; }
    bool currentJobCompletedUploading() const { return m_currentJobCompletedUploading; }

private:
    void setSubmittedStatus(const QString &text);

    QPointer<QMessageBox> m_startOverSheet;
};
