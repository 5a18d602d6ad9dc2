#include "LXController.h"

#include "LXDefaultsKeys.h"
#include "LXMainWindow.h"
#include "LXNotificationCenter.h"
#include "LXUserDefaults.h"

#include <QApplication>
#include <QHash>
#include <QMetaProperty>
#include <QTimer>

namespace {

// Which derived properties each key feeds; the one place that knows.
const QHash<QByteArray, QList<QByteArray>> &dependents()
{
    static const QHash<QByteArray, QList<QByteArray>> table {
        { "state", { "recordPauseMenuTitle", "canRecordOrPause", "hasBegunRecording", "recordOrPauseImage" } },
        { "mode",
            { "recordPauseMenuTitle", "canRecordOrPause", "canBeginRecording", "videoModeIsSelected",
                "audioModeIsSelected", "screenModeIsSelected", "isSmallerPreviewHidden", "recordOrPauseImage",
                "microphoneListShouldBeHidden" } },
        // Listed as a dependency although the value does not consult it.
        { "localRecordingChosen", { "microphoneListShouldBeHidden" } },
    };
    return table;
}

} // namespace

LXController::LXController()
{
    // Local capture reads the spool folder before any server interface exists.
    OrvaneServerInterface::initialize();
    m_screenGrabController = std::make_unique<GLScreenGrabController>();
    m_captureDevicesController = new CaptureDevicesController(this);
    m_captureDevicesController->setController(this);
    m_transfersController = new TransfersController(this);
    m_transfersController->setController(this);
    m_localRecordingChosen = false;
}

LXController::~LXController()
{
    LXNotificationCenter::defaultCenter().removeObserver(this);
    stopMonitoringMicrophone();
    delete m_preferencesController;
    if (m_captureDevicesController)
        m_captureDevicesController->setController(nullptr);
    m_recordingTime.reset();
    m_job.reset();
    m_server.reset();
    m_currentCredentials.clear();
    if (m_loginPanel)
        delete m_loginPanel;
}

void LXController::awakeFromNib()
{
    m_window = std::make_unique<LXMainWindow>();
    LXMainWindow *w = m_window.get();
    m_state = State::Idle;
    m_mode = Mode::NoSource;
    m_recordingTime = std::make_unique<StopWatch>();

    LXUserDefaults::standard().registerDefaults(LXDefaultsKeys::GlobalKeyCode, LXDefaultsKeys::GlobalKeyModifiers);
    PreferencesController::registerRecordPauseShortcutKey();

    LXNotificationCenter &center = LXNotificationCenter::defaultCenter();
    center.addObserver(
        this, kUserDidConnectNotice, [this](const QVariant &object) { userDidConnectWithNotice(object); });
    center.addObserver(this, kRecordPauseKeyShortcutTriggered, [this](const QVariant &) { recordPauseKeyTriggered(); });

    w->setMetadataLengthLimits(220, 1000);

    // Bindings of the window to the derived properties.
    for (auto changed : { &LXController::recordPauseMenuTitleChanged, &LXController::recordOrPauseImageChanged,
             &LXController::canRecordOrPauseChanged, &LXController::microphoneListShouldBeHiddenChanged })
        connect(this, changed, this, &LXController::updateBoundControls);
    // The page decides whether recording is possible.
    connect(w, &LXMainWindow::pageChanged, this, &LXController::canRecordOrPauseChanged);

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
    connect(w, &LXMainWindow::sourceClicked, this, [this](LXMainWindow::Source source) {
        static constexpr Mode modes[] = { Mode::Video, Mode::Audio, Mode::Screen, Mode::File };
        sourceClicked(modes[int(source)], QGuiApplication::keyboardModifiers());
    });
    connect(w, &LXMainWindow::backClicked, this, [this] { backClicked(QGuiApplication::keyboardModifiers()); });
    connect(w, &LXMainWindow::filesDropped, this, &LXController::prepareToSubmitFiles);
    connect(w, &LXMainWindow::workflowChosen, this, &LXController::chooseWorkflow);
    connectRecordingAndSubmission();

    updateBoundControls();
    updateDockIcon();
    w->setConnected(false);
    w->show();
    showLoginPanel();
}

void LXController::announceDependents(const char *key)
{
    const QMetaObject *meta = metaObject();
    for (const QByteArray &name : dependents().value(key)) {
        const QMetaProperty property = meta->property(meta->indexOfProperty(name.constData()));
        property.notifySignal().invoke(this, Qt::DirectConnection);
    }
}

void LXController::observeValueForKeyPath(const char *keyPath)
{
    if (qstrcmp(keyPath, "state") == 0)
        updateDockIcon();
    else if (qstrcmp(keyPath, "job.camera") == 0 || qstrcmp(keyPath, "job.localAudioDeviceName") == 0)
        emit canBeginRecordingChanged();
}

void LXController::setState(State state)
{
    if (m_state == state)
        return;
    m_state = state;
    emit stateChanged();
    announceDependents("state");
    observeValueForKeyPath("state");
}

void LXController::setMode(Mode mode)
{
    if (m_mode == mode)
        return;
    m_mode = mode;
    emit modeChanged();
    announceDependents("mode");
}

void LXController::setLocalRecordingChosen(bool chosen)
{
    if (m_localRecordingChosen == chosen)
        return;
    m_localRecordingChosen = chosen;
    emit localRecordingChosenChanged();
    announceDependents("localRecordingChosen");
}

void LXController::setJob(const std::shared_ptr<PodcastJob> &job)
{
    m_job = job;
    // Observing "job.camera" means a new job is a new camera too.
    observeValueForKeyPath("job.camera");
}

void LXController::setJobCamera(const QVariantMap &camera)
{
    if (!m_job)
        return;
    m_job->setCamera(camera);
    observeValueForKeyPath("job.camera");
}

void LXController::setJobLocalAudioDeviceName(const QString &name)
{
    if (!m_job)
        return;
    m_job->setLocalAudioDeviceName(name);
    observeValueForKeyPath("job.localAudioDeviceName");
}

QString LXController::recordPauseMenuTitle() const
{
    switch (m_state) {
    case State::Starting:
    case State::Recording:
        return tr("Pause Recording");
    case State::Paused:
        return tr("Resume Recording");
    default:
        return tr("Record Podcast");
    }
}

bool LXController::canRecordOrPause() const
{
    if (m_mode == Mode::NoSource || m_state == State::Starting)
        return false;
    return m_window && m_window->currentPage() == LXMainWindow::Page::Record && m_sheetsOnMainWindow == 0;
}

bool LXController::hasBegunRecording() const
{
    return m_state == State::Starting || m_state == State::Recording || m_state == State::Paused;
}

bool LXController::canBeginRecording() const
{
    const bool hasCamera = m_job && !m_job->camera().isEmpty();
    const bool hasAudioDevice = m_job && !m_job->localAudioDeviceName().isNull();
    switch (m_mode) {
    case Mode::Video:
        return hasCamera;
    case Mode::Audio:
        return m_localRecordingChosen ? hasAudioDevice : hasCamera;
    case Mode::Screen:
        return hasAudioDevice;
    default:
        return false;
    }
}

QString LXController::recordOrPauseImage() const
{
    if (m_state == State::Starting || m_state == State::Recording)
        return QStringLiteral("PausedOff");
    if (m_mode == Mode::Audio)
        return QStringLiteral("RecordAudio");
    if (m_mode == Mode::Screen)
        return QStringLiteral("RecordScreen");
    return QStringLiteral("RecordVideo");
}

bool LXController::microphoneListShouldBeHidden() const
{
    return m_mode == Mode::Audio || m_mode == Mode::Screen;
}

QString LXController::currentModeString() const
{
    switch (m_mode) {
    case Mode::Video:
        return QStringLiteral("Video");
    case Mode::Audio:
        return QStringLiteral("Audio");
    case Mode::Screen:
        return QStringLiteral("Screen");
    case Mode::File:
        return QStringLiteral("File");
    case Mode::NoSource:
        break;
    }
    return QStringLiteral("");
}

void LXController::updateBoundControls()
{
    if (!m_window)
        return;
    m_window->setRecordControls(
        recordPauseMenuTitle(), recordOrPauseImage(), canRecordOrPause() && !m_waitingOnRecordOrPauseResponse);
    // Sound-only sources pick from the microphone menu; video picks a camera
    // and, in its submenu, the microphone.
    m_window->setDevicePopUpsHidden(!microphoneListShouldBeHidden(), microphoneListShouldBeHidden());
    m_window->setAcceptsFileDrops(m_state == State::Idle);
}

void LXController::resetJobAndRecordingState()
{
    setLocalRecordingChosen(false);
    setMode(Mode::NoSource);
    setState(State::Idle);

    auto job = std::make_shared<PodcastJob>();
    setJob(job);
    if (m_server)
        m_server->setJob(job);
    m_currentJobCompletedUploading = false;

    const QVariantList workflows = this->workflows();
    if (!workflows.isEmpty()) {
        const QString previous = LXUserDefaults::standard().valueForLumexKey(LXDefaultsKeys::PreviousWorkflowChosen);
        bool chosen = false;
        // Every match is taken, so the last workflow of that title wins.
        for (const QVariant &workflow : workflows) {
            const QVariantMap map = workflow.toMap();
            if (!previous.isNull() && map.value(QStringLiteral("title")).toString() == previous) {
                job->setWorkflow(map);
                chosen = true;
            }
        }
        if (!chosen)
            job->setWorkflow(workflows.first().toMap());
    }

    setRecordPauseAction(RecordPauseAction::Record);

    if (m_recordingTime)
        m_recordingTime->reset();
    setTimerTextHidden(false);
    setTimerValue(QString());
    for (QTimer **timer :
        { &m_everySecondTimer, &m_remoteCameraSnapshotRefreshTimer, &m_selectedRemoteCameraPreviewUpdateTimer }) {
        if (*timer) {
            (*timer)->stop();
            (*timer)->deleteLater();
            *timer = nullptr;
        }
    }
    delete m_countdownView;
    if (m_window) {
        m_window->setTitlePlaceholderImageVisible(false);
        m_window->setMetadata(job->title(), job->jobDescription());
    }
    updateWorkflowPopUp();
}

void LXController::updateWorkflowPopUp()
{
    if (!m_window)
        return;
    const QVariantMap workflow = m_job ? m_job->workflow() : QVariantMap();
    m_window->setChosenWorkflowTitle(workflow.value(QStringLiteral("title")).toString());
}
