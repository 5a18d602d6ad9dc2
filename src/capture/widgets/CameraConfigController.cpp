#include "CameraConfigController.h"

#include "CaptureDeviceRegistry.h"
#include "CaptureMovieFileOutput.h"
#include "CaptureSession.h"
#include "CaptureVideoPreviewWidget.h"
#include "Format.h"
#include "InputDeviceMenu.h"
#include "Log.h"
#include "OrvaneKeys.h"
#include "OrvaneServerInterface.h"
#include "PrivilegedLauncher.h"
#include "QTCaptureDeviceAdditions.h"
#include "ui_CameraConfig.h"

#include <QCloseEvent>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QSysInfo>
#include <QTimer>
#include <QVBoxLayout>

#include <cmath>

namespace {

// The polkit action of the privileged helpers; its auth_admin_keep lets the
// runs that follow an unlock go through without another prompt.
const QString kAgentAction = QStringLiteral("com.tarn.lumex.camera-agent");

CaptureDevicePtr defaultDevice(const QString &mediaType)
{
    CaptureDeviceRegistry &registry = CaptureDeviceRegistry::instance();
    if (mediaType == MediaType::Sound)
        return registry.defaultMicrophone();
    const QList<CaptureDevicePtr> devices = registry.devicesWithMediaType(mediaType);
    for (const CaptureDevicePtr &device : devices) {
        if (device->isDefault())
            return device;
    }
    return devices.isEmpty() ? nullptr : devices.first();
}

// The padlock the lock button's text speaks of, its shackle raised while
// unlocked. Drawn here: icon themes name and draw locks differently.
QIcon padlock(bool open, const QColor &color)
{
    QPixmap pixmap(64, 64);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    const qreal top = open ? 0 : 8;
    QPainterPath shackle;
    shackle.moveTo(20, 32);
    shackle.lineTo(20, top + 12);
    shackle.arcTo(20, top, 24, 24, 180, -180);
    shackle.lineTo(44, open ? top + 18 : 32);
    p.setPen(QPen(color, 6, Qt::SolidLine, Qt::RoundCap));
    p.drawPath(shackle);
    p.setPen(Qt::NoPen);
    p.setBrush(color);
    p.drawRoundedRect(QRectF(12, 30, 40, 32), 5, 5);
    return QIcon(pixmap);
}

} // namespace

CameraConfigController::CameraConfigController(QObject *parent)
    : QObject(parent)
    , m_podcastServer(OrvaneServerInterface::create({}, nullptr))
{
    readAgentConfiguration(false);
    m_agentIsBound = !m_podcastServer->cameraName().isNull();
}

CameraConfigController::~CameraConfigController()
{
    tearDownCaptureSession();
}

void CameraConfigController::readAgentConfiguration(bool takeSelection)
{
    Error error;
    const std::optional<QVariantMap> configuration = m_podcastServer->getCameraAgentConfigurationError(&error);
    if (!configuration) {
        Log::format(QStringLiteral("Unable to open orvxagentd configuration file: %@"), { describeError(error) });
        return;
    }
    if (!takeSelection) {
        m_podcastServer->setCameraName(configuration->value(OrvaneKeys::Agent::CameraName).toString());
        m_podcastServer->setServer(configuration->value(OrvaneKeys::Agent::TunnelHost).toString());
        return;
    }
    const auto indexOf = [](const QList<Entry> &list, const QVariant &configured) {
        if (!configured.isValid() || configured.toString() == OrvaneKeys::Agent::Automatic)
            return 0;
        for (int index = 0; index < list.size(); ++index) {
            const auto *device = std::get_if<CaptureDevicePtr>(&list[index]);
            if (device && (*device)->uniqueID() == configured.toString())
                return index;
        }
        return 0;
    };
    m_selectedCameraIndex = indexOf(m_cameraList, configuration->value(OrvaneKeys::Agent::RecordingVideoInput));
    m_selectedMicrophoneIndex = indexOf(m_microphoneList, configuration->value(OrvaneKeys::Agent::RecordingAudioInput));
}

QWidget *CameraConfigController::window()
{
    if (!m_window) {
        m_window = std::make_unique<QWidget>(nullptr, Qt::Window);
        m_ui = std::make_unique<Ui::CameraConfig>();
        m_ui->setupUi(m_window.get());
        windowDidLoad();
    }
    return m_window.get();
}

void CameraConfigController::windowDidLoad()
{
    m_window->installEventFilter(this);
    m_captureView = new CaptureVideoPreviewWidget(m_ui->previewPage);
    m_ui->previewLayout->addWidget(m_captureView);
    m_ui->ibProgressSpinner->hide();
    // A level, not a progress: green as the main window's meter, not the accent.
    QPalette meter = m_ui->ibAudioLevelMeter->palette();
    meter.setColor(QPalette::Highlight, QColor(60, 200, 90));
    m_ui->ibAudioLevelMeter->setPalette(meter);
    m_ui->ibBindButton->setText(bindButtonTitle());
    connect(m_ui->ibAuthView, &QPushButton::clicked, this, [this] { isUnlocked() ? lock() : unlock(); });
    connect(m_ui->ibBindButton, &QPushButton::clicked, this, &CameraConfigController::bindCameraToServer);
    connect(m_ui->cameraPopUp, &QComboBox::activated, this, &CameraConfigController::setSelectedCameraIndex);
    connect(m_ui->microphonePopUp, &QComboBox::activated, this, &CameraConfigController::setSelectedMicrophoneIndex);
    updateLockedState();

    // The sheet asking for the server administrator before a bind or unbind.
    m_serverAuthPanel = new QDialog(m_window.get());
    m_serverAuthPanel->setObjectName(QStringLiteral("ServerAuthPanel"));
    m_serverAuthPanel->setWindowModality(Qt::WindowModal);
    auto *layout = new QVBoxLayout(m_serverAuthPanel);
    m_serverAuthDescriptionTextField = new QLabel(m_serverAuthPanel);
    m_serverAuthDescriptionTextField->setWordWrap(true);
    layout->addWidget(m_serverAuthDescriptionTextField);
    // The administrator's account on the server and the name this camera
    // takes there, handed to the tool with the bind.
    auto *fields = new QFormLayout;
    const struct
    {
        QLineEdit **field;
        QString label, name, description;
    } rows[] = {
        { &m_serverField, tr("Server:"), tr("Server"), tr("The address of the server this camera is bound to") },
        { &m_userField, tr("User name:"), tr("User name"), tr("The account of the server's administrator") },
        { &m_passwordField, tr("Password:"), tr("Password"), tr("The password of the administrator's account") },
        { &m_cameraNameField, tr("Camera name:"), tr("Camera name"), tr("The name this camera has on the server") },
    };
    for (const auto &row : rows) {
        *row.field = new QLineEdit(m_serverAuthPanel);
        (*row.field)->setAccessibleName(row.name);
        (*row.field)->setAccessibleDescription(row.description);
        fields->addRow(row.label, *row.field);
    }
    m_passwordField->setEchoMode(QLineEdit::Password);
    m_serverField->setObjectName(QStringLiteral("serverField"));
    m_userField->setObjectName(QStringLiteral("userField"));
    m_passwordField->setObjectName(QStringLiteral("passwordField"));
    m_cameraNameField->setObjectName(QStringLiteral("cameraNameField"));
    layout->addLayout(fields);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, m_serverAuthPanel);
    m_serverAuthOKButton = buttons->button(QDialogButtonBox::Ok);
    m_serverAuthOKButton->setAccessibleDescription(tr("Binds or unbinds this camera with the administrator's account"));
    buttons->button(QDialogButtonBox::Cancel)->setAccessibleDescription(tr("Closes this sheet and changes nothing"));
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] { dismissBindAuthPanel(true); });
    connect(buttons, &QDialogButtonBox::rejected, this, [this] { dismissBindAuthPanel(false); });

    m_audioLevelTimer = new QTimer(this);
    m_audioLevelTimer->setInterval(100);
    connect(m_audioLevelTimer, &QTimer::timeout, this, &CameraConfigController::updateAudioLevels);

    devicesDidChange();
    readAgentConfiguration(true);
    fillPopUp(0);
    fillPopUp(1);
    CaptureDeviceRegistry &registry = CaptureDeviceRegistry::instance();
    connect(&registry, &CaptureDeviceRegistry::deviceWasConnected, this, &CameraConfigController::devicesDidChange);
    connect(&registry, &CaptureDeviceRegistry::deviceWasDisconnected, this, &CameraConfigController::devicesDidChange);
    refreshCameraAndMicrophonePreviews();
}

QList<CameraConfigController::Entry> CameraConfigController::sources(const QString &mediaType) const
{
    QList<Entry> list { Automatic {} };
    // Unfiltered: the devices the agent records from are the point here.
    const QList<CaptureDevicePtr> devices
        = QTCaptureDeviceAdditions::inputDevicesWithMediaTypes({ mediaType, MediaType::Muxed });
    if (!devices.isEmpty())
        list.append(Separator {});
    for (const CaptureDevicePtr &device : devices)
        list.append(device);
    return list;
}

void CameraConfigController::devicesDidChange()
{
    const CaptureDevicePtr camera = selectedCamera();
    const CaptureDevicePtr microphone = selectedMicrophone();
    m_cameraList = sources(MediaType::Video);
    m_microphoneList = sources(MediaType::Sound);
    // The same choice stays selected while its device is there.
    const auto indexOf = [](const QList<Entry> &list, const CaptureDevicePtr &device) {
        for (int index = 0; device && index < list.size(); ++index) {
            if (const auto *entry = std::get_if<CaptureDevicePtr>(&list[index]); entry && *entry == device)
                return index;
        }
        return 0;
    };
    m_selectedCameraIndex = indexOf(m_cameraList, camera);
    m_selectedMicrophoneIndex = indexOf(m_microphoneList, microphone);
    m_ui->ibCameraPreviewTabView->setCurrentIndex(m_cameraList.size() > 1 ? 0 : 1);
    fillPopUp(0);
    fillPopUp(1);
}

void CameraConfigController::fillPopUp(int which)
{
    QComboBox *popUp = which == 0 ? m_ui->cameraPopUp : m_ui->microphonePopUp;
    const QList<Entry> &list = which == 0 ? m_cameraList : m_microphoneList;
    popUp->clear();
    for (const Entry &entry : list) {
        if (std::holds_alternative<Separator>(entry))
            popUp->insertSeparator(popUp->count());
        else if (const auto *device = std::get_if<CaptureDevicePtr>(&entry))
            popUp->addItem((*device)->localizedDisplayName());
        else
            popUp->addItem(tr("Automatic"));
    }
    popUp->setCurrentIndex(which == 0 ? m_selectedCameraIndex : m_selectedMicrophoneIndex);
}

CaptureDevicePtr CameraConfigController::selectedCamera() const
{
    const Entry entry = m_cameraList.value(m_selectedCameraIndex);
    const auto *device = std::get_if<CaptureDevicePtr>(&entry);
    return device ? *device : nullptr;
}

CaptureDevicePtr CameraConfigController::selectedMicrophone() const
{
    const Entry entry = m_microphoneList.value(m_selectedMicrophoneIndex);
    const auto *device = std::get_if<CaptureDevicePtr>(&entry);
    return device ? *device : nullptr;
}

void CameraConfigController::setSelectedCameraIndex(int index)
{
    if (index < 0 || index >= m_cameraList.size() || std::holds_alternative<Separator>(m_cameraList[index]))
        return;
    m_selectedCameraIndex = index;
    m_ui->cameraPopUp->setCurrentIndex(index);
    refreshCameraAndMicrophonePreviews();
    if (isUnlocked()) {
        const CaptureDevicePtr camera = selectedCamera();
        m_podcastServer->setGlobalAgentConfigValue(camera ? camera->uniqueID() : OrvaneKeys::Agent::Automatic,
            OrvaneKeys::Agent::VideoDevice, m_authorization);
    }
}

void CameraConfigController::setSelectedMicrophoneIndex(int index)
{
    if (index < 0 || index >= m_microphoneList.size() || std::holds_alternative<Separator>(m_microphoneList[index]))
        return;
    m_selectedMicrophoneIndex = index;
    m_ui->microphonePopUp->setCurrentIndex(index);
    refreshCameraAndMicrophonePreviews();
    if (isUnlocked()) {
        const CaptureDevicePtr microphone = selectedMicrophone();
        m_podcastServer->setGlobalAgentConfigValue(microphone ? microphone->uniqueID() : OrvaneKeys::Agent::Automatic,
            OrvaneKeys::Agent::AudioDevice, m_authorization);
    }
}

void CameraConfigController::refreshCameraAndMicrophonePreviews()
{
    CaptureDevicePtr camera = selectedCamera();
    CaptureDevicePtr microphone = selectedMicrophone();
    tearDownCaptureSession();
    m_captureSession = std::make_shared<CaptureSession>();
    if (!camera && !(camera = defaultDevice(MediaType::Video)))
        camera = defaultDevice(MediaType::Muxed);
    if (!microphone && !(microphone = defaultDevice(MediaType::Sound)))
        microphone = defaultDevice(MediaType::Muxed);

    Error error;
    bool failed = false;
    if (camera) {
        failed = !camera->open(&error);
        const auto input = std::make_shared<CaptureDeviceInput>(camera);
        if (!failed && camera->hasMediaType(MediaType::Muxed) && (!microphone || microphone != camera)) {
            for (const CaptureConnectionPtr &connection : input->connections()) {
                if (connection->mediaType() == MediaType::Sound)
                    connection->setEnabled(false);
            }
        }
        failed = failed || !m_captureSession->addInput(input, &error);
    }
    // A muxed device chosen for both already gives its sound through the
    // camera's input.
    const bool soundThroughCamera = microphone && microphone->hasMediaType(MediaType::Muxed) && microphone == camera;
    if (soundThroughCamera) {
        m_audioLevelTimer->stop();
    } else if (microphone) {
        // Taken even after the camera failed: the error so far stops the
        // level timer of the preview before, as the microphone's own does.
        bool audioFailed = !microphone->open(&error);
        const auto input = std::make_shared<CaptureDeviceInput>(microphone);
        if (!audioFailed && microphone->hasMediaType(MediaType::Muxed)) {
            for (const CaptureConnectionPtr &connection : input->connections()) {
                if (connection->mediaType() == MediaType::Video)
                    connection->setEnabled(false);
            }
        }
        audioFailed = audioFailed || !m_captureSession->addInput(input, &error);
        failed = failed || audioFailed;
        if (failed) {
            m_audioLevelTimer->stop();
            Log::format(QStringLiteral("Error adding new audio input: %@"), { describeError(error) });
        } else if (!m_audioLevelTimer->isActive()) {
            m_audioLevelTimer->start();
        }
    }
    if (failed) {
        Log::format(QStringLiteral("Error setting up camera/microphone previews: %@"), { describeError(error) });
        return;
    }
    // Never records: it keeps the session's sound connections, whose levels
    // the meter reads, alive.
    m_movieFileOutput = std::make_shared<CaptureMovieFileOutput>();
    m_captureSession->addOutput(m_movieFileOutput, &error);
    m_captureView->setCaptureSession(m_captureSession);
    m_captureSession->startRunning();
}

void CameraConfigController::updateAudioLevels()
{
    if (!m_movieFileOutput)
        return;
    CaptureConnectionPtr sound;
    for (const CaptureConnectionPtr &connection : m_movieFileOutput->connections()) {
        if (connection->isEnabled() && connection->mediaType() == MediaType::Sound)
            sound = connection;
    }
    if (sound)
        m_ui->ibAudioLevelMeter->setValue(int(std::lround(40.0 * std::pow(10.0, sound->averagePowerLevel() * 0.05))));
}

bool CameraConfigController::isLevelTimerRunning() const
{
    return m_audioLevelTimer && m_audioLevelTimer->isActive();
}

int CameraConfigController::audioLevel() const
{
    return m_ui ? m_ui->ibAudioLevelMeter->value() : 0;
}

void CameraConfigController::tearDownCaptureSession()
{
    if (!m_captureSession)
        return;
    if (m_captureSession->isRunning())
        m_captureSession->stopRunning();
    for (const CaptureOutputPtr &output : m_captureSession->outputs())
        m_captureSession->removeOutput(output);
    for (const CaptureInputPtr &input : m_captureSession->inputs()) {
        m_captureSession->removeInput(input);
        if (input->device()->isOpen())
            input->device()->close();
    }
    if (m_captureView)
        m_captureView->setCaptureSession(nullptr);
    m_captureSession.reset();
}

QString CameraConfigController::bindButtonTitle() const
{
    return m_agentIsBound ? tr("Unbind") : tr("Bind");
}

void CameraConfigController::bindCameraToServer()
{
    m_ui->ibBindButton->setEnabled(false);
    m_notPerformingBind = false;
    m_serverAuthDescriptionTextField->setText(lxFormat(
        tr("Lumex requires that you authenticate as a server administrator to %@."), { m_podcastServer->server() }));
    m_serverAuthOKButton->setEnabled(true);
    m_serverField->setText(m_podcastServer->server());
    m_cameraNameField->setText(
        m_podcastServer->cameraName().isEmpty() ? QSysInfo::machineHostName() : m_podcastServer->cameraName());
    m_serverField->setReadOnly(m_agentIsBound);
    m_cameraNameField->setReadOnly(m_agentIsBound);
    m_serverAuthPanel->open();
}

void CameraConfigController::dismissBindAuthPanel(bool ok)
{
    if (!ok) {
        m_ui->ibBindButton->setEnabled(true);
        m_serverAuthPanel->hide();
        return;
    }
    m_ui->ibProgressSpinner->show();
    m_serverAuthOKButton->setEnabled(false);
    m_podcastServer->setServer(m_serverField->text().trimmed());
    m_podcastServer->setUser(m_userField->text().trimmed());
    m_podcastServer->setPassword(m_passwordField->text());
    m_podcastServer->setCameraName(m_cameraNameField->text().trimmed());
    const auto authorization = m_authorization ? m_authorization : std::make_shared<Authorization>();
    const bool bind = !m_agentIsBound;
    const auto didEnd = [this, bind](const std::optional<Error> &error) { didBindCamera(error, bind); };
    if (bind)
        m_podcastServer->bindCameraWithAuthorization(authorization, this, didEnd);
    else
        m_podcastServer->unbindCameraWithAuthorization(authorization, this, didEnd);
}

void CameraConfigController::didBindCamera(const std::optional<Error> &error, bool bind)
{
    m_ui->ibProgressSpinner->hide();
    if (error) {
        m_serverAuthOKButton->setEnabled(true);
        // The two sentences stand in opposite orders on purpose.
        if (bind)
            showAlert(m_serverAuthPanel, tr("Binding failed"),
                tr("Please confirm that the server is reachable and that the server administrator user name and "
                   "password are correct."));
        else
            showAlert(m_serverAuthPanel, tr("Unbinding failed"),
                tr("Please confirm that the server administrator user name and password are correct and that the "
                   "server is reachable."));
    } else {
        m_agentIsBound = bind;
        m_ui->ibBindButton->setText(bindButtonTitle());
        setAgentRunning(bind);
        m_serverAuthPanel->hide();
    }
    m_notPerformingBind = true;
    m_ui->ibBindButton->setEnabled(true);
}

void CameraConfigController::setAgentRunning(bool running)
{
    m_ui->ibProgressSpinner->show();
    const auto authorization = m_authorization ? m_authorization : std::make_shared<Authorization>();
    m_podcastServer->setAgentRunning(
        running, authorization, this, [this](const std::optional<Error> &error) { didSetAgentRunning(error); });
}

void CameraConfigController::didSetAgentRunning(const std::optional<Error> &error)
{
    m_ui->ibProgressSpinner->hide();
    if (!error) {
        m_window->close();
        return;
    }
    const QString status = error->localizedDescription.isEmpty()
        ? lxFormat(QStringLiteral("%d."), { error->code })
        : lxFormat(QStringLiteral("%d.\n%@"), { error->code, error->localizedDescription });
    showAlert(
        m_window.get(), tr("Unable to start/stop the camera agent."), tr("Received error status") + u' ' + status);
}

void CameraConfigController::showAlert(QWidget *parent, const QString &message, const QString &information)
{
    auto *alert = new QMessageBox(QMessageBox::Warning, message, message, QMessageBox::Ok, parent);
    alert->setInformativeText(information);
    alert->setAccessibleName(message);
    alert->setAccessibleDescription(information);
    alert->button(QMessageBox::Ok)->setAccessibleDescription(tr("Closes this message"));
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->setWindowModality(Qt::WindowModal);
    alert->open();
}

void CameraConfigController::unlock()
{
    if (isUnlocked() || m_askingForRights)
        return;
    // Where the helpers run directly (a sysroot, or root) polkit has no say,
    // and the launcher allows at once.
    auto authorization = std::make_shared<Authorization>();
    m_askingForRights = true;
    authorization->launcher().askRightToPerform(this, kAgentAction, [this, authorization](const ActionRight &right) {
        m_askingForRights = false;
        if (right.granted())
            m_authorization = authorization;
        else if (right.status == PrivilegedLauncher::kCannotLaunch)
            Log::format(QStringLiteral("Cannot ask polkit for rights: %@"), { right.reason });
        else
            Log::format(
                QStringLiteral("Not authorised to configure the camera agent (pkcheck status %d)"), { right.status });
        updateLockedState();
    });
}

void CameraConfigController::lock()
{
    m_authorization.reset();
    updateLockedState();
}

void CameraConfigController::updateLockedState()
{
    if (!m_ui)
        return;
    m_ui->ibAuthView->setChecked(isUnlocked());
    m_ui->ibAuthView->setText(
        isUnlocked() ? tr("Click the lock to prevent further changes.") : tr("Click the lock to make changes."));
    m_ui->ibAuthView->setIcon(padlock(isUnlocked(), m_ui->ibAuthView->palette().color(QPalette::ButtonText)));
    m_ui->ibAuthView->setAccessibleName(isUnlocked() ? tr("Unlocked") : tr("Locked"));
    m_ui->ibAuthView->setAccessibleDescription(m_ui->ibAuthView->text());
    emit lockedStateChanged();
}

bool CameraConfigController::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_window.get() && event->type() == QEvent::Close) {
        m_audioLevelTimer->stop();
        tearDownCaptureSession();
        m_movieFileOutput.reset();
        emit windowWillClose();
    }
    return QObject::eventFilter(watched, event);
}
