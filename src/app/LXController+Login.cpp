#include "LXController.h"

#include "DeviceChooser.h"
#include "LXMainWindow.h"
#include "LXNotificationCenter.h"
#include "LXWorkflowMenu.h"
#include "MetadataPage.h"
#include "RecordPage.h"
#include "RecordingJournal.h"
#include "RemoteCameraPreviews.h"

#include <QLineEdit>

void LXController::showLoginPanel()
{
    if (m_loginPanel)
        m_loginPanel->deleteLater();
    m_loginPanel = new LXUserLoginPanelController(this);
    m_loginPanel->setDelegate(this);
    m_loginPanel->beginLoginSheet();
    m_inBetweenMainWindowAndLoginPanel = false;
}

void LXController::loginPanelDidClickConnect(LXLoginPanelController *panel)
{
    const QString user = panel->usernameField()->text();
    const QString host = panel->hostnameField()->text();
    const QString password = panel->passwordField()->text();
    if (user.isNull() || host.isNull() || password.isNull())
        return;
    m_credentials = Credentials { user, password, host };
    m_workflows.clear();
    loginToServer();
}

void LXController::loginToServer()
{
    m_server = OrvaneServerInterface::create(m_credentials, m_job);
    // The server cameras' snapshots answer with this sign-in's credentials.
    m_previews->setSession(m_server);
    QPointer<LXController> self(this);
    m_server->getWorkflowsForDelegate(
        this, [self](const std::optional<QVariantList> &workflows, const std::optional<Error> &error) {
            if (self)
                self->didGetWorkflows(workflows, error);
        });
}

void LXController::didGetWorkflows(const std::optional<QVariantList> &workflows, const std::optional<Error> &error)
{
    if (error) {
        alertUserToError(*error);
        return;
    }
    if (!workflows) {
        // Neither a list nor an error: the tool's answer could not be read.
        alertUserToError(
            Error { kServerInterfaceErrorDomain, -1, tr("The server's list of workflows could not be read.") });
        return;
    }
    m_workflows = LXWorkflowMenu::prepared(*workflows);
    m_window->metadataPage()->setWorkflows(m_workflows);
    updateWorkflowPopUp();

    QPointer<LXController> self(this);
    m_server->getCamerasForDelegate(
        this, [self](const std::optional<QVariantList> &cameras, const std::optional<Error> &cameraError) {
            if (self)
                self->didGetCameras(cameras, cameraError);
        });
}

void LXController::chooseWorkflow(int index)
{
    if (m_job && index >= 0 && index < m_workflows.size())
        m_job->setWorkflow(m_workflows.at(index).toMap());
    updateWorkflowPopUp();
    scheduleJournal();
}

void LXController::didGetCameras(const std::optional<QVariantList> &cameras, const std::optional<Error> &error)
{
    if (m_loginPanel) {
        m_loginPanel->endLoginSheet();
        m_loginPanel->deleteLater();
        m_loginPanel = nullptr;
    }
    if (error) {
        alertUserToError(*error);
        return;
    }
    setRemoteCameras(cameras.value_or(QVariantList()));
    rebuildInputDevicesList();
    // The notice tells who listens that a sign-in succeeded; what it means
    // for this window is done here, in order, and carries no credentials.
    LXNotificationCenter::defaultCenter().post(kUserDidConnectNotice);
    userDidConnect();

    m_previews->startRefreshing(
        [this] { return !m_localRecordingChosen; }, [this] { return chosenRemoteCameraName(); });
    showChosenRemoteCameraPreview();
}

void LXController::userDidConnect()
{
    m_connected = true;
    m_window->setConnected(true, m_credentials.user, m_credentials.server);
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
    resetJobAndRecordingState();
    // A recording an earlier run left is offered to the same user on the
    // same server only.
    m_journalAtSignIn = RecordingJournal::read();
    if (m_journalAtSignIn
        && (m_journalAtSignIn->value(RecordingJournal::kUser).toString() != m_credentials.user
            || m_journalAtSignIn->value(RecordingJournal::kServer).toString() != m_credentials.server))
        m_journalAtSignIn.reset();
    lookForInterruptedRecordings();
}

QString LXController::chosenRemoteCameraName() const
{
    const QVariantMap camera = m_job ? m_job->camera() : QVariantMap();
    if (m_localRecordingChosen || camera.value(QStringLiteral("isLocalDevice")).toBool())
        return QString();
    return camera.value(QStringLiteral("name")).toString();
}

void LXController::showChosenRemoteCameraPreview()
{
    // Only the video page shows a server camera's picture; audio and screen
    // show their own.
    m_window->recordPage()->setRemotePreview(
        m_mode == Mode::Video ? m_previews->snapshotOfCameraNamed(chosenRemoteCameraName()) : QImage());
}
