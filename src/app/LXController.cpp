#include "LXController.h"

#include "CaptureDevicesController.h"
#include "CountdownView.h"
#include "DeviceChooser.h"
#include "GLScreenGrabController.h"
#include "InterruptedRecordings.h"
#include "LXApplicationIcon.h"
#include "LXDefaultsKeys.h"
#include "LXMainWindow.h"
#include "LXNotificationCenter.h"
#include "LXUserDefaults.h"
#include "LXWorkflowMenu.h"
#include "MetadataPage.h"
#include "PreferencesController.h"
#include "RecordPage.h"
#include "RecordingJournal.h"
#include "RecordingWatch.h"
#include "RemoteCameraPreviews.h"
#include "SecondaryWindows.h"

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
    m_captureDevicesController = new CaptureDevicesController(this, CaptureDevicesController::FirstRefresh::Later);
    m_captureDevicesController->setController(this);
    m_journal = new RecordingJournal(this);
    m_clock = new RecordingClock(this);
    connect(m_clock, &RecordingClock::ticked, this, &LXController::updateTimer);
    connect(m_clock, &RecordingClock::flashed, this, &LXController::flashPause);
    m_windows = new SecondaryWindows(this, m_captureDevicesController, this);
    m_localRecordingChosen = false;

    m_window = std::make_unique<LXMainWindow>();
    m_watch = new RecordingWatch(
        m_window.get(),
        [this] {
            // The guard hears the microphone through the record page's meter,
            // the agent's recordings too; the picture is our own capture's.
            const std::shared_ptr<CaptureSession> capture = m_captureDevicesController->captureSession();
            const RecordingGuard::Reading guarded { hasBegunRecording(), m_state == State::Recording,
                m_window->recordPage()->microphoneLevelConnection(),
                capture && m_captureDevicesController->isRecording() ? capture->videoConnection() : nullptr,
                m_job ? m_job->localAgentTask() : nullptr, m_mode == Mode::Screen };
            return RecordingWatch::Recording { guarded,
                m_route && m_route->recordsOnThisComputer() && m_mode != Mode::File, hasBegunRecording(),
                m_job ? m_job->movieFilePaths().value_or(QStringList()) : QStringList(), recordingTime()->elapsedTime(),
                m_route ? m_route->expectedBytesPerSecond() : 0 };
        },
        this);
    m_devices = new DeviceChooser(m_captureDevicesController, this);
    m_previews = new RemoteCameraPreviews(this);
    m_interruptedRecordings = new InterruptedRecordings(
        m_window.get(), [this] { return m_state == State::Idle && m_mode == Mode::NoSource; }, this);
    connectWindow();
}

LXController::~LXController()
{
    LXNotificationCenter::defaultCenter().removeObserver(this);
    if (m_captureDevicesController)
        m_captureDevicesController->setController(nullptr);
    m_route.reset();
    m_job.reset();
    m_server.reset();
    if (m_loginPanel)
        delete m_loginPanel;
}

void LXController::awakeFromNib()
{
    m_state = State::Idle;
    m_mode = Mode::NoSource;

    LXUserDefaults::standard().registerDefaults(LXDefaultsKeys::GlobalKeyCode, LXDefaultsKeys::GlobalKeyModifiers);
    PreferencesController::registerRecordPauseShortcutKey();
    LXNotificationCenter::defaultCenter().addObserver(
        this, kRecordPauseKeyShortcutTriggered, [this](const QVariant &) { recordPauseKeyTriggered(); });

    updateBoundControls();
    updateDockIcon();
    m_window->setConnected(false);
    showLoginPanel();
    // The login panel is what the person waits for: the main window behind
    // it and this computer's devices come once it has been drawn (or after
    // half a second at most).
    m_loginPanel->loginPanel()->installEventFilter(this);
    QTimer::singleShot(500, this, &LXController::showMainWindowBehindLoginPanel);
}

bool LXController::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint && watched == (m_loginPanel ? m_loginPanel->loginPanel() : nullptr)) {
        watched->removeEventFilter(this);
        QTimer::singleShot(0, this, &LXController::showMainWindowBehindLoginPanel);
    }
    return QObject::eventFilter(watched, event);
}

void LXController::showMainWindowBehindLoginPanel()
{
    if (m_shownAtStart)
        return;
    m_shownAtStart = true;
    m_window->show();
    if (m_loginPanel && m_loginPanel->loginPanel()->isVisible()) {
        m_loginPanel->loginPanel()->raise();
        m_loginPanel->loginPanel()->activateWindow();
    }
    QTimer::singleShot(0, m_captureDevicesController, &CaptureDevicesController::refreshDevices);
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
    scheduleJournal();
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

void LXController::setRoute(std::unique_ptr<RecordingRoute> route)
{
    m_route = std::move(route);
    if (m_route)
        setLocalRecordingChosen(m_route->recordsOnThisComputer());
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
    return m_window->currentPage() == LXMainWindow::Page::Record && !m_window->hasSheet();
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
        return hasAudioDevice && !m_awaitingScreenShare;
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
    static const char *const names[] = { "Video", "Audio", "Screen", "File", "" };
    return QString::fromLatin1(names[int(m_mode)]);
}

void LXController::updateBoundControls()
{
    // A recording begun can always be paused or resumed; a new one needs a
    // device that can record, or the countdown would run for nothing.
    const bool enabled
        = canRecordOrPause() && !m_waitingOnRecordOrPauseResponse && (hasBegunRecording() || canBeginRecording());
    m_window->setRecordControls(recordPauseMenuTitle(), recordOrPauseImage(), enabled);
    // Sound-only sources pick from the microphone menu; video picks a camera
    // and, in its submenu, the microphone.
    // The screen's page has both: the microphone, and a camera beside it.
    if (m_window->hasMadeLaterPages())
        m_window->recordPage()->setDevicePopUpsHidden(
            !microphoneListShouldBeHidden(), microphoneListShouldBeHidden() && m_mode != Mode::Screen);
    m_window->setAcceptsFileDrops(m_state == State::Idle);
}

void LXController::resetJobAndRecordingState()
{
    setLocalRecordingChosen(false);
    m_route.reset();
    setMode(Mode::NoSource);
    setState(State::Idle);

    auto job = std::make_shared<PodcastJob>();
    setJob(job);
    if (m_server)
        m_server->setJob(job);
    m_currentJobCompletedUploading = false;

    if (!m_workflows.isEmpty())
        job->setWorkflow(LXWorkflowMenu::preferred(
            m_workflows, LXUserDefaults::standard().valueForLumexKey(LXDefaultsKeys::PreviousWorkflowChosen)));

    m_clock->reset();
    setTimerTextHidden(false);
    setTimerValue(QString());
    m_previews->stopRefreshing();
    m_watch->stop();
    delete m_countdownView;
    m_window->metadataPage()->setTitlePlaceholderImageVisible(false);
    m_window->metadataPage()->setMetadata(job->title(), job->jobDescription());
    updateWorkflowPopUp();
}

void LXController::updateWorkflowPopUp()
{
    const QVariantMap workflow = m_job ? m_job->workflow() : QVariantMap();
    m_window->metadataPage()->setChosenWorkflowTitle(workflow.value(QStringLiteral("title")).toString());
}

void LXController::updateDockIcon()
{
    // The window icon stands in for the dock icon: badged while recording
    // only, not while counting down or paused.
    QApplication::setWindowIcon(LXApplicationIcon::icon(m_state == State::Recording));
}
