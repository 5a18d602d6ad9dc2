#include "LXController.h"

#include "CameraConfigController.h"
#include "LXDefaultsKeys.h"
#include "LXGlyphs.h"
#include "LXMainWindow.h"
#include "LXNotificationCenter.h"
#include "LXPlaceholderLineEdit.h"
#include "LXProgressSpinner.h"
#include "LXPushView.h"
#include "LXRecordButton.h"
#include "LXSourceTile.h"
#include "LXUserDefaults.h"
#include "LXWorkflowMenu.h"
#include "Log.h"
#include "PreferencesController.h"
#include "TransfersController.h"
#include "VKPopUpButton.h"

#include <QAction>
#include <QApplication>
#include <QHash>
#include <QMessageBox>
#include <QMetaProperty>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
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

bool isCaptureDomain(const QString &domain)
{
    // GStreamer's error quarks take the place of the capture framework's.
    return domain.startsWith(QLatin1String("gst-")) || domain.startsWith(QLatin1String("gst_"));
}

// Cuts typing beyond `maximum` characters.
void limitLength(QLineEdit *field, int maximum)
{
    field->setMaxLength(maximum);
}

void limitLength(QPlainTextEdit *field, int maximum)
{
    QObject::connect(field, &QPlainTextEdit::textChanged, field, [field, maximum] {
        const QString text = field->toPlainText();
        if (text.size() <= maximum)
            return;
        QTextCursor cursor = field->textCursor();
        const int position = qMin(cursor.position(), maximum);
        QSignalBlocker blocker(field);
        field->setPlainText(text.left(maximum));
        cursor = field->textCursor();
        cursor.setPosition(position);
        field->setTextCursor(cursor);
    });
}

void centre(QWidget *window)
{
    const QScreen *screen = window->screen() ? window->screen() : QGuiApplication::primaryScreen();
    if (!screen)
        return;
    QRect frame = window->frameGeometry();
    frame.moveCenter(screen->availableGeometry().center());
    window->move(frame.topLeft());
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

    w->contentBox->setBackgroundColor(Qt::black);
    w->contentBox->setFrameColor(Qt::black);
    w->buttonBox->setFrameColor(Qt::black);
    w->buttonBox->setDrawsGradient(true);
    w->contentBox->setContentView(w->sourceChooserView);
    w->startOver->hide();
    w->publish->hide();

    m_recordingTime = std::make_unique<StopWatch>();

    LXUserDefaults::standard().registerDefaults(LXDefaultsKeys::GlobalKeyCode, LXDefaultsKeys::GlobalKeyModifiers);
    PreferencesController::registerRecordPauseShortcutKey();

    LXNotificationCenter &center = LXNotificationCenter::defaultCenter();
    center.addObserver(
        this, kUserDidConnectNotice, [this](const QVariant &object) { userDidConnectWithNotice(object); });
    center.addObserver(this, kRecordPauseKeyShortcutTriggered, [](const QVariant &) {
        // The record/pause flow answers this once recording is built.
    });

    limitLength(w->title, 220);
    limitLength(w->descriptionField, 1000);

    // Bindings of the window to the derived properties.
    connect(this, &LXController::recordPauseMenuTitleChanged, this, &LXController::updateBoundControls);
    connect(this, &LXController::recordOrPauseImageChanged, this, &LXController::updateBoundControls);
    connect(this, &LXController::canRecordOrPauseChanged, this, &LXController::updateBoundControls);
    connect(this, &LXController::microphoneListShouldBeHiddenChanged, this, &LXController::updateBoundControls);

    // Closing the main window only hides it; whether that was the last
    // window, and whether the application may end with it, is decided once
    // the hiding is done (see eventFilter).
    connect(w, &LXMainWindow::closeRequested, this, [this] { m_window->hide(); });
    qApp->installEventFilter(this);
    connect(w->quitMenuItem, &QAction::triggered, this, &LXController::requestQuit);
    connect(w->preferencesMenuItem, &QAction::triggered, this, &LXController::showPreferencesWindow);
    connect(w->transfersMenuItem, &QAction::triggered, this, &LXController::showTransfersWindow);
    connect(w->cameraConfigurationMenuItem, &QAction::triggered, this, &LXController::configureLocalCamera);
    connect(w->signInMenuItem, &QAction::triggered, this, [this] {
        if (!m_loginPanel)
            showLoginPanel();
        else
            m_loginPanel->beginLoginSheet();
    });
    connect(w->videoTile, &QAbstractButton::clicked, this, [this] { sourceClicked(Mode::Video); });
    connect(w->audioTile, &QAbstractButton::clicked, this, [this] { sourceClicked(Mode::Audio); });
    connect(w->screenTile, &QAbstractButton::clicked, this, [this] { sourceClicked(Mode::Screen); });
    connect(w->fileTile, &QAbstractButton::clicked, this, [this] { sourceClicked(Mode::File); });
    connect(w->startOver, &QPushButton::clicked, this, [this] {
        resetJobAndRecordingState();
        showPage(m_window->sourceChooserView);
    });

    updateBoundControls();
    updateDockIcon();
    m_window->setConnected(false);
    m_window->show();
    showLoginPanel();
}

bool LXController::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Hide && watched->isWidgetType() && static_cast<QWidget *>(watched)->isWindow()
        && !m_lastWindowCheckPending) {
        m_lastWindowCheckPending = true;
        QTimer::singleShot(0, this, &LXController::maybeLastWindowClosed);
    }
    return QObject::eventFilter(watched, event);
}

void LXController::maybeLastWindowClosed()
{
    m_lastWindowCheckPending = false;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget *window : windows) {
        if (window->isVisible() && window->windowType() != Qt::ToolTip && window->windowType() != Qt::Popup)
            return;
    }
    if (applicationShouldTerminateAfterLastWindowClosed())
        requestQuit();
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
    return m_window && m_window->contentBox->contentView() == m_window->previewRecordView && m_sheetsOnMainWindow == 0;
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
    m_window->recordPauseMenuItem->setText(recordPauseMenuTitle());
    m_window->recordPauseMenuItem->setEnabled(canRecordOrPause());
    auto *button = static_cast<LXRecordButton *>(m_window->recordPauseButton);
    button->setImageName(recordOrPauseImage());
    button->setToolTip(recordPauseMenuTitle());
    button->setEnabled(canRecordOrPause());
    // An empty menu offers nothing to choose: hidden as well.
    m_window->microphonesPopUpButton->setHidden(
        microphoneListShouldBeHidden() || m_window->microphonesPopUpButton->count() == 0);
}

void LXController::showPage(QWidget *page)
{
    QWidget *current = m_window->contentBox->contentView();
    const bool forward = current == m_window->sourceChooserView
        || (current == m_window->previewRecordView && page != m_window->sourceChooserView);
    m_window->contentBox->pushView(page, forward ? LXPushView::Direction::FromRight : LXPushView::Direction::FromLeft);
    m_window->startOver->setVisible(page != m_window->sourceChooserView && page != m_window->doneView);
    // The page decides whether recording is possible.
    emit canRecordOrPauseChanged();
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

    if (m_recordingTime)
        m_recordingTime->reset();
    m_timerTextHidden = false;
    m_timerValue = QString();
    for (QTimer **timer :
        { &m_everySecondTimer, &m_remoteCameraSnapshotRefreshTimer, &m_selectedRemoteCameraPreviewUpdateTimer }) {
        if (*timer) {
            (*timer)->stop();
            (*timer)->deleteLater();
            *timer = nullptr;
        }
    }
    if (m_window)
        m_window->title->setPlaceholderImageVisible(false);
    updateWorkflowPopUp();
}

void LXController::updateWorkflowPopUp()
{
    if (!m_window)
        return;
    const QVariantMap workflow = m_job ? m_job->workflow() : QVariantMap();
    const QString title = workflow.value(QStringLiteral("title")).toString();
    m_window->workflowPopUpButton->setText(title.split(LXWorkflowMenu::kSeparator).first());
}

QWidget *LXController::alertParent() const
{
    if (m_loginPanel)
        return m_loginPanel->loginPanel();
    return m_window.get();
}

void LXController::alertUserToError(const Error &error)
{
    auto *alert = new QMessageBox(alertParent());
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->setWindowModality(Qt::WindowModal);
    alert->setIcon(QMessageBox::Warning);
    bool built = false;
    if (isCaptureDomain(error.domain) && !error.localizedDescription.isEmpty()) {
        alert->setText(error.localizedDescription);
        built = true;
    }
    if (!built) {
        alert->setText(tr("Server communication error."));
        alert->setInformativeText(tr("An error occurred while communicating with the Orvane server. Please contact "
                                     "your network administrator for further help."));
    }
    if (error.code == 26) {
        alert->setText(tr("Authentication Failed"));
        alert->setInformativeText(tr("The username or password you entered may not be correct. Please retype the "
                                     "username and password and try again."));
    }
    // The tool's own words help whoever supports the user.
    if (!error.localizedDescription.trimmed().isEmpty() && !built)
        alert->setDetailedText(error.localizedDescription.trimmed());
    alert->setStandardButtons(QMessageBox::Ok);
    const bool onMainWindow = alert->parentWidget() == m_window.get();
    if (onMainWindow) {
        ++m_sheetsOnMainWindow;
        emit canRecordOrPauseChanged();
    }
    connect(alert, &QMessageBox::finished, this, [this, onMainWindow] {
        if (onMainWindow) {
            --m_sheetsOnMainWindow;
            emit canRecordOrPauseChanged();
        }
        alertDidEnd();
    });
    Log::format(QStringLiteral("Showing error to the user: %@"), { describeError(error) });
    alert->open();
}

void LXController::alertDidEnd()
{
    if (m_loginPanel) {
        m_loginPanel->progressIndicator()->stopAnimation();
        m_loginPanel->setControlsEnabled(true);
    }
}

bool LXController::applicationShouldTerminateAfterLastWindowClosed() const
{
    const bool panelVisible = m_loginPanel && m_loginPanel->loginPanel()->isVisible();
    return !panelVisible && !m_inBetweenMainWindowAndLoginPanel;
}

LXController::TerminateReply LXController::applicationShouldTerminate()
{
    if (!hasBegunRecording())
        return TerminateReply::Now;
    if (m_quitSheet)
        return TerminateReply::Later;
    auto *sheet = new QMessageBox(m_window.get());
    m_quitSheet = sheet;
    sheet->setAttribute(Qt::WA_DeleteOnClose);
    sheet->setWindowModality(Qt::WindowModal);
    sheet->setIcon(QMessageBox::Critical);
    sheet->setText(tr("Do you want to delete the recording and Quit?"));
    sheet->setInformativeText(tr("Your current recording will be deleted. This action cannot be undone."));
    QPushButton *cancel = sheet->addButton(tr("Cancel"), QMessageBox::RejectRole);
    QPushButton *quit = sheet->addButton(tr("Quit"), QMessageBox::DestructiveRole);
    sheet->setDefaultButton(cancel);
    sheet->setEscapeButton(cancel);
    ++m_sheetsOnMainWindow;
    emit canRecordOrPauseChanged();
    connect(sheet, &QMessageBox::finished, this, [this, sheet, quit] {
        --m_sheetsOnMainWindow;
        emit canRecordOrPauseChanged();
        // The alternate button answers 0, as the platform's sheets did.
        quitWarningSheetDidEnd(sheet->clickedButton() == quit ? 0 : 1);
    });
    sheet->open();
    return TerminateReply::Later;
}

void LXController::quitWarningSheetDidEnd(int returnCode)
{
    if (returnCode != 0)
        return; // Cancel: keep running, the recording stays as it is
    if (!m_server) {
        emit terminateRequested();
        return;
    }
    // Ending the process at once would kill the worker before the agent or
    // the server heard of the cancel, leaving a recording running nobody
    // owns; so the quit follows the cancel's answer, or a few seconds.
    auto done = std::make_shared<bool>(false);
    QPointer<LXController> self(this);
    auto finish = [self, done] {
        if (*done || !self)
            return;
        *done = true;
        emit self->terminateRequested();
    };
    auto didStop = [self, finish](const std::optional<Error> &error) {
        if (self && error)
            Log::format(
                QStringLiteral("Cancelling the recording while quitting failed: %@"), { describeError(*error) });
        finish();
    };
    if (m_localRecordingChosen)
        m_server->cancelLocalJobWithDelegate(this, didStop);
    else
        m_server->cancelRemoteJobWithDelegate(this, didStop);
    QTimer::singleShot(kQuitCancelTimeoutMs, this, finish);
}

void LXController::requestQuit()
{
    if (applicationShouldTerminate() == TerminateReply::Now)
        emit terminateRequested();
}

void LXController::jobDidPause(const std::optional<Error> &error)
{
    if (error)
        alertUserToError(*error);
}

void LXController::jobDidResume(const std::optional<Error> &error)
{
    if (error)
        alertUserToError(*error);
}

void LXController::jobDidStop(const std::optional<Error> &error)
{
    if (error)
        alertUserToError(*error);
}

void LXController::localJobDidStop(const std::optional<Error> &error)
{
    if (!error) {
        if (m_server) {
            QPointer<LXController> self(this);
            m_server->submitAndDeleteJobFilesWithDelegate(this, [self](const std::optional<Error> &e) {
                if (self)
                    self->jobDidStop(e);
            });
        }
    } else {
        alertUserToError(*error);
    }
    if (m_state == State::Submitted)
        tearDownLocalCameraAndMicrophone();
}

void LXController::updateSubmissionStatus()
{
    // Nothing is submitted yet, so there is no upload to follow.
}

void LXController::updateDockIcon()
{
    // The window icon stands in for the dock icon; a red dot marks a
    // recording in progress.
    QPixmap pixmap(128, 128);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    LXGlyphs::draw(p, LXGlyphs::Glyph::Lumex, QRectF(4, 4, 120, 120), Qt::white);
    if (hasBegunRecording()) {
        p.setRenderHint(QPainter::Antialiasing);
        p.setPen(QPen(Qt::white, 5));
        p.setBrush(m_state == State::Paused ? QColor(240, 170, 30) : QColor(230, 30, 40));
        p.drawEllipse(QRectF(78, 6, 44, 44));
    }
    p.end();
    QApplication::setWindowIcon(QIcon(pixmap));
}

void LXController::sourceClicked(Mode mode)
{
    setMode(mode);
    showPage(m_window->previewRecordView);
}

void LXController::rebuildInputDevicesList()
{
    // Until device selection is built, the device menu is the server's
    // camera list.
    m_currentCredentials.insert(QStringLiteral("cameras"), m_remoteCameras);
    if (!m_window)
        return;
    VKPopUpButton *menu = m_window->camerasPopUpButton;
    menu->clear();
    for (const QVariant &camera : m_remoteCameras)
        menu->addItem(camera.toMap().value(QStringLiteral("name")).toString());
    menu->updateGeometry();
    updateBoundControls();
}

void LXController::tearDownLocalCameraAndMicrophone()
{
    // Nothing is set up locally until local capture is built.
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
    if (m_captureDevicesController)
        m_captureDevicesController->refreshDevices();
}

void LXController::showPreferencesWindow()
{
    const bool first = !m_preferencesController;
    if (first)
        m_preferencesController = new PreferencesController(this);
    QWidget *window = m_preferencesController->window();
    if (first)
        centre(window);
    window->show();
    window->raise();
    window->activateWindow();
}

void LXController::showTransfersWindow()
{
    // Once closed, the transfers window is gone for the rest of the run:
    // the request then goes to no one, as it always has.
    if (!m_transfersController)
        return;
    QWidget *window = m_transfersController->window();
    window->show();
    window->raise();
    window->activateWindow();
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
