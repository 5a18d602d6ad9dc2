#pragma once

#include "CaptureDevicesController.h"
#include "CountdownView.h"
#include "Credentials.h"
#include "DeviceChooser.h"
#include "Error.h"
#include "InterruptedRecordings.h"
#include "LXLoginPanelController.h"
#include "OrvaneServerInterface.h"
#include "PodcastJob.h"
#include "RecordingClock.h"
#include "RecordingRoute.h"
#include "RemoteCameraPreviews.h"
#include "SecondaryWindows.h"
#include "TransfersControllerDelegate.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QVariantMap>

#include <memory>
#include <optional>

class GLScreenGrabController;
class LXMainWindow;
class QAction;
class QTimer;
class RecordingJournal;
class RecordingWatch;

// The spine of the application: the main window's controller and the
// application's delegate. It keeps the two values everything else is derived
// from, the controller state and the source mode, with the properties
// derived from them; the current job and the signed-in session; and the
// flows from signing in through recording to publishing. The rest is done by
// collaborators with state of their own: the recording route (how the chosen
// device records), the device chooser, the server cameras' snapshots, the
// interrupted recordings and the window's pages. Main thread only.
//
// One class over several files, each holding one area of behaviour:
// LXController.cpp (construction, state and mode, the derived properties and
// the table of what they depend on, the job reset), +Login, +Sources,
// +Recording, +Submission, +Alerts, +Windows (secondary windows, uploads)
// and +Quit.
class LXController final : public QObject,
                           public LXLoginPanelDelegate,
                           public CaptureDevicesControllerDelegate,
                           public TransfersControllerDelegate,
                           public RecordingRouteDelegate
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
    Q_PROPERTY(QString timerValue READ timerValue NOTIFY timerValueChanged)
    Q_PROPERTY(bool timerTextHidden READ timerTextHidden NOTIFY timerTextHiddenChanged)
    Q_PROPERTY(bool waitingOnRecordOrPauseResponse READ waitingOnRecordOrPauseResponse NOTIFY
            waitingOnRecordOrPauseResponseChanged)

public:
    enum class State : qint32 { Idle = 0, Starting = 1, Recording = 2, Paused = 3, Submitted = 4 };
    Q_ENUM(State)
    enum class Mode : qint32 { Video = 0, Audio = 1, Screen = 2, File = 3, NoSource = 4 };
    Q_ENUM(Mode)
    enum class TerminateReply { Now, Later };

    LXController();
    ~LXController() override;

    // Starts the application: state Idle, mode NoSource, defaults
    // registered, notices observed, the window and the login panel shown.
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

    GLScreenGrabController *screenGrabController() const { return m_screenGrabController.get(); }
    std::shared_ptr<PodcastJob> job() const { return m_job; }
    std::shared_ptr<PodcastJob> job() override { return m_job; }
    void setJob(const std::shared_ptr<PodcastJob> &job);
    // Changes of the job's camera and audio device go through these, so the
    // properties that depend on them are announced.
    void setJobCamera(const QVariantMap &camera);
    void setJobLocalAudioDeviceName(const QString &name);
    void resetJobAndRecordingState();
    void updateDockIcon();

    std::shared_ptr<OrvaneServerInterface> server() const override { return m_server; }
    const Credentials &credentials() const { return m_credentials; }
    QVariantList workflows() const { return m_workflows; }
    QVariantList remoteCameras() const { return m_previews->remoteCameras(); }
    // A list of values: the copy is as deep as the records the downloads
    // write into.
    void setRemoteCameras(const QVariantList &cameras) { m_previews->setRemoteCameras(cameras); }
    StopWatch *recordingTime() const { return m_clock->stopWatch(); }
    QString timerValue() const { return m_timerValue; }
    bool timerTextHidden() const { return m_timerTextHidden; }

    LXMainWindow *window() const { return m_window.get(); }
    LXUserLoginPanelController *loginPanel() const { return m_loginPanel; }
    QTimer *remoteCameraSnapshotRefreshTimer() const { return m_previews->refreshTimer(); }
    QTimer *selectedRemoteCameraPreviewUpdateTimer() const { return m_previews->chosenCameraUpdateTimer(); }
    TransfersController *transfersController() const { return m_windows->transfersController(); }
    PreferencesController *preferencesController() const { return m_windows->preferencesController(); }
    CameraConfigController *cameraConfigController() const { return m_windows->cameraConfigController(); }
    CaptureDevicesController *captureDevicesController() const override { return m_captureDevicesController; }

    // Login (+Login).
    void showLoginPanel();
    void loginPanelDidClickConnect(LXLoginPanelController *panel) override;
    void loginToServer();
    void didGetWorkflows(const std::optional<QVariantList> &workflows, const std::optional<Error> &error);
    void didGetCameras(const std::optional<QVariantList> &cameras, const std::optional<Error> &error);
    void userDidConnect();
    void refreshAllCameraPreviewImages() { m_previews->refreshIfWanted(); }
    void requestPreviewUpdateOfSelectedRemoteCamera() { m_previews->requestUpdateOfChosenCamera(); }

    // Sources and devices (+Sources). Shift held while clicking slows the
    // page's slide down.
    void sourceClicked(Mode mode, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void backClicked(Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void rebuildInputDevicesList() override;
    void selectAppropriateRecordingDevice();
    // What choosing a device item means for the recording; each item holds
    // its device entry.
    void localMicrophoneSelected(QAction *item);
    void remoteMicrophoneSelected(QAction *item);
    void remoteCameraSelected(QAction *item);
    void localCameraAndMicrophoneSelected(QAction *item);
    // On the screen's page: this computer's camera beside the screen, or
    // none ("No Camera").
    void screenCameraSelected(QAction *item);
    void tearDownLocalCameraAndMicrophone();
    void writeSelectedDevicesToDefaults();
    InputDeviceMenu *cameraMenu() const { return m_devices->cameraMenu(); }
    InputDeviceMenu *microphoneMenu() const { return m_devices->microphoneMenu(); }
    void openPanelDidEnd(int returnCode);

    // Files to publish: chosen in the open panel, dropped on the window, or
    // handed to the application (its command line, a second launch).
    void prepareToSubmitFiles(const QStringList &paths);
    bool applicationOpenFile(const QString &path);
    void applicationOpenFiles(const QStringList &paths);
    // Files from the command line or a second launch: the window comes to
    // the front and one file or several are opened as the desktop asks.
    void openFilesFromDesktop(const QStringList &paths);

    // The recording flow (+Recording), from the record button to the paused
    // recording that is published. The button takes the action the state
    // calls for.
    void recordClicked();
    void pauseClicked();
    void resumeClicked();
    void recordPauseResumeMenuItemInvoked();
    void recordPauseKeyTriggered();
    void countdownTimerDidClose();
    void updateTimer();
    void flashPause();
    void showCutoffWarningAndPauseRecordingIfApplicable();
    bool waitingOnRecordOrPauseResponse() const { return m_waitingOnRecordOrPauseResponse; }
    CountdownView *countdownView() const { return m_countdownView; }

    // The completions of the recording route.
    QObject *routeContext() override { return this; }
    void jobDidStart(const std::optional<Error> &error) override;
    void updateToRecordingView(const std::optional<Error> &error) override;
    // Failures of pause, resume and stop are shown; the state stays.
    void jobDidPause(const std::optional<Error> &error) override { jobDidStop(error); }
    void jobDidResume(const std::optional<Error> &error) override { jobDidStop(error); }
    void jobDidStop(const std::optional<Error> &error) override;
    void localJobDidStop(const std::optional<Error> &error) override;

    // The submission flow (+Submission): the metadata page, the hand-over,
    // the done page and the ways back.
    void publishClicked();
    void cancelClicked();
    void submitClicked();
    // The review on the metadata page plays what is about to be published.
    void openReview();
    // Trims the job's movies to the marks, then hands the copies over;
    // without marks, or should the trim fail, the movies go as they are.
    void handOverFiles(bool recorded);
    void newPodcastClicked(Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void startOverClicked();
    void startOverSheetDidEnd(int returnCode);
    QMessageBox *startOverSheet() const { return m_startOverSheet; }
    // Follows the upload of the current job after each poll of the queue.
    void updateSubmissionStatus() override;

    // Alerts (+Alerts).
    void alertUserToError(const Error &error) override;
    void alertDidEnd();

    // Secondary windows and uploads (+Windows).
    void configureLocalCamera() { m_windows->configureLocalCamera(); }
    void cameraConfigWindowClosed() { m_windows->cameraConfigWindowClosed(); }
    void showPreferencesWindow() { m_windows->showPreferencesWindow(); }
    void showTransfersWindow() { m_windows->showTransfersWindow(); }
    void transfersWindowClosed() { m_windows->transfersWindowClosed(); }
    // Notifies once per upload when `upload` (a row of the transfers list)
    // has completed or failed.
    void notifyIfWatchedUploadEnded(const QVariantMap &upload);
    std::shared_ptr<OrvaneServerInterface> signedInServer() override;
    void transferWasRetried(const QString &failedUUID, const QString &newUUID) override;
    // After a login: looks, off the main thread, for movies in the spool
    // folder that no job and no upload owns, and asks about each in turn.
    void lookForInterruptedRecordings();
    bool isLookingForInterruptedRecordings() const { return m_interruptedRecordings->isLooking(); }
    QMessageBox *interruptedRecordingQuestion() const { return m_interruptedRecordings->question(); }

    // Quitting (+Quit).
    bool applicationShouldTerminateAfterLastWindowClosed() const;
    TerminateReply applicationShouldTerminate();
    void quitWarningSheetDidEnd(int returnCode);
    // Asks to quit; quits at once unless a recording has begun.
    void requestQuit();
    QMessageBox *quitWarningSheet() const { return m_quitSheet; }
    // How long quitting waits for the recording's cancel to be answered.
    static constexpr int kQuitCancelTimeoutMs = 5000;
    // Lumex is told to end (SIGTERM at a logout, SIGINT, SIGHUP): a recording
    // made here is finished and kept for the next sign-in's offer, a
    // server's camera goes on recording, nothing is deleted; then the
    // application ends, after at most kEndTimeoutMs.
    void endWithoutAsking();
    static constexpr int kEndTimeoutMs = 10000;

    // A recording an earlier run left in the journal: a server camera that
    // is still recording, taken up again (to record on or to publish) or
    // cancelled.
    void continueJournaledRecording(const QVariantMap &journal, bool publish);
    void discardJournaledRecording(const QVariantMap &journal);

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
    void timerValueChanged();
    void timerTextHiddenChanged();
    void waitingOnRecordOrPauseResponseChanged();
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
    void chooseWorkflow(int index);
    QWidget *alertParent() const;
    void connectWindow();
    void showMainWindowBehindLoginPanel();
    // The way the chosen device records; it decides localRecordingChosen.
    void setRoute(std::unique_ptr<RecordingRoute> route);
    void showChosenRemoteCameraPreview();
    // The screen's recording as its devices now stand: the agent's, or with
    // a camera our own capture's, the camera inset in the preview.
    void setUpScreenRecording(int fromScreenShare = -1, quint32 screenNode = 0);
    // The server camera the job records with; null for none or a local one.
    QString chosenRemoteCameraName() const;
    void setTimerValue(const QString &value);
    void setTimerTextHidden(bool hidden);
    void setWaitingOnRecordOrPauseResponse(bool waiting);
    void recordPauseButtonClicked();
    void setSubmittedStatus(const QString &text);
    void publishRecoveredRecording(const QStringList &paths, const QDateTime &started, const QDateTime &interrupted);
    // The journal follows the recording: written once the events of the
    // moment are done, whole.
    void scheduleJournal();
    void writeJournal();
    // The paused recording's page, clock and buttons.
    void showPaused();

    std::unique_ptr<LXMainWindow> m_window;
    QPointer<LXUserLoginPanelController> m_loginPanel;
    Credentials m_credentials;
    QVariantList m_workflows;
    RecordingClock *m_clock = nullptr;
    QString m_timerValue;
    bool m_timerTextHidden = false;
    bool m_localRecordingChosen = false;
    int m_screenShareRequest = 0; // a newer choice drops the older's answer
    bool m_awaitingScreenShare = false;
    Mode m_mode = Mode::NoSource;
    State m_state = State::Idle;
    std::shared_ptr<PodcastJob> m_job;
    std::shared_ptr<OrvaneServerInterface> m_server;
    std::unique_ptr<RecordingRoute> m_route;
    std::unique_ptr<GLScreenGrabController> m_screenGrabController;
    QPointer<CaptureDevicesController> m_captureDevicesController;
    SecondaryWindows *m_windows = nullptr;
    DeviceChooser *m_devices = nullptr;
    RemoteCameraPreviews *m_previews = nullptr;
    InterruptedRecordings *m_interruptedRecordings = nullptr;
    class DesktopNotifier *m_notifier = nullptr;
    QPointer<QMessageBox> m_quitSheet;
    QPointer<QMessageBox> m_startOverSheet;
    QPointer<QFileDialog> m_openPanel;
    QPointer<CountdownView> m_countdownView;
    RecordingJournal *m_journal = nullptr;
    RecordingWatch *m_watch = nullptr;
    // The journal found at the last sign-in, offered from there.
    std::optional<QVariantMap> m_journalAtSignIn;
    bool m_journalDue = false;
    bool m_handOverPending = false;
    // The In and Out marks of the review, taken when Done is pressed.
    std::optional<std::pair<qint64, qint64>> m_trimMarks;
    bool m_ending = false;
    bool m_currentJobCompletedUploading = false;
    bool m_waitingOnRecordOrPauseResponse = false;
    bool m_inBetweenMainWindowAndLoginPanel = false;
    bool m_connected = false;
    bool m_shownAtStart = false;
};
