#include "LXController.h"

#include "Format.h"
#include "LXMainWindow.h"

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
    m_currentCredentials = QVariantMap {
        { QStringLiteral("user"), user },
        { QStringLiteral("password"), password },
        { QStringLiteral("server"), host },
    };
    loginToServer();
}

void LXController::loginToServer()
{
    m_server = OrvaneServerInterface::create(m_currentCredentials, m_job);
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
    QVariantList prepared;
    prepared.reserve(workflows->size());
    for (const QVariant &entry : *workflows) {
        QVariantMap workflow = entry.toMap();
        workflow.insert(QStringLiteral("titleAndDescription"),
            lxFormat(QStringLiteral("%@\n$$$$\n%@"),
                { workflow.value(QStringLiteral("title")), workflow.value(QStringLiteral("description")) }));
        prepared.append(workflow);
    }
    m_currentCredentials.insert(QStringLiteral("workflows"), prepared);
    fillWorkflowMenu();

    QPointer<LXController> self(this);
    m_server->getCamerasForDelegate(
        this, [self](const std::optional<QVariantList> &cameras, const std::optional<Error> &cameraError) {
            if (self)
                self->didGetCameras(cameras, cameraError);
        });
}

QVariantList LXController::workflows() const
{
    return m_currentCredentials.value(QStringLiteral("workflows")).toList();
}

void LXController::fillWorkflowMenu()
{
    if (!m_window)
        return;
    QStringList titles;
    for (const QVariant &workflow : workflows())
        titles << workflow.toMap().value(QStringLiteral("titleAndDescription")).toString();
    m_window->setWorkflows(titles);
    updateWorkflowPopUp();
}

void LXController::chooseWorkflow(int index)
{
    const QVariantList list = workflows();
    if (m_job && index >= 0 && index < list.size())
        m_job->setWorkflow(list.at(index).toMap());
    updateWorkflowPopUp();
}

void LXController::userDidConnectWithNotice(const QVariant &)
{
    m_connected = true;
    m_window->setConnected(true, m_currentCredentials.value(QStringLiteral("user")).toString(),
        m_currentCredentials.value(QStringLiteral("server")).toString());
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
    resetJobAndRecordingState();
    lookForInterruptedRecordings();
}
