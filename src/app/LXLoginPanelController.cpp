#include "LXLoginPanelController.h"

#include "LXDefaultsKeys.h"
#include "LXProgressSpinner.h"
#include "LXUserDefaults.h"
#include "ui_LoginPanel.h"

#include <QDialog>
#include <QLineEdit>
#include <QPushButton>

#include <pwd.h>
#include <unistd.h>

namespace {

// The login name of the person running us, from the password database:
// $USER is not always set (started from a service, a cron job, sudo -i).
QString currentLoginName()
{
    if (const passwd *entry = ::getpwuid(::getuid()); entry && entry->pw_name)
        return QString::fromLocal8Bit(entry->pw_name);
    return qEnvironmentVariable("USER");
}

} // namespace

LXLoginPanelController::LXLoginPanelController(QObject *parent)
    : QObject(parent)
    , m_panel(std::make_unique<QDialog>())
    , m_ui(std::make_unique<Ui::LoginPanel>())
{
    m_ui->setupUi(m_panel.get());
    m_panel->setObjectName(QStringLiteral("LoginPanel"));
    QFont heading = m_ui->headingLabel->font();
    heading.setPointSizeF(heading.pointSizeF() * 1.35);
    heading.setWeight(QFont::DemiBold);
    m_ui->headingLabel->setFont(heading);
    m_ui->explanationLabel->setForegroundRole(QPalette::PlaceholderText);
    m_panel->setMinimumWidth(440);
    m_panel->adjustSize();

    connect(m_ui->connectButton, &QPushButton::clicked, this, &LXLoginPanelController::doConnect);
    connect(m_ui->cancelButton, &QPushButton::clicked, this, &LXLoginPanelController::doCancel);
    // Escape and the window's close button cancel, as the Cancel button does.
    connect(m_panel.get(), &QDialog::rejected, this, &LXLoginPanelController::doCancel);
    for (QLineEdit *field : { m_ui->hostnameField, m_ui->usernameField, m_ui->passwordField })
        connect(field, &QLineEdit::textChanged, this, &LXLoginPanelController::controlTextDidChange);
    awakeFromNib();
}

LXLoginPanelController::~LXLoginPanelController()
{
    m_delegate = nullptr;
}

void LXLoginPanelController::awakeFromNib()
{
    LXUserDefaults &defaults = LXUserDefaults::standard();
    const QString host = defaults.valueForLumexKey(LXDefaultsKeys::LoginPanelLastLoginHost);
    QString user = defaults.valueForLumexKey(LXDefaultsKeys::LoginPanelLastLoginUsername);
    if (user.isNull())
        user = currentLoginName();
    if (!host.isNull())
        m_ui->hostnameField->setText(host);
    m_ui->usernameField->setText(user);
    m_ui->progressIndicator->stopAnimation();
    controlTextDidChange();
    // Start where typing is still needed.
    if (!host.isEmpty() && !user.isEmpty())
        m_ui->passwordField->setFocus();
}

QLineEdit *LXLoginPanelController::hostnameField() const
{
    return m_ui->hostnameField;
}
QLineEdit *LXLoginPanelController::usernameField() const
{
    return m_ui->usernameField;
}
QLineEdit *LXLoginPanelController::passwordField() const
{
    return m_ui->passwordField;
}
QLabel *LXLoginPanelController::progressField() const
{
    return m_ui->progressField;
}
LXProgressSpinner *LXLoginPanelController::progressIndicator() const
{
    return m_ui->progressIndicator;
}
QPushButton *LXLoginPanelController::connectButton() const
{
    return m_ui->connectButton;
}
QPushButton *LXLoginPanelController::cancelButton() const
{
    return m_ui->cancelButton;
}

void LXLoginPanelController::controlTextDidChange()
{
    m_ui->connectButton->setEnabled(!m_ui->hostnameField->text().isEmpty() && !m_ui->usernameField->text().isEmpty()
        && !m_ui->passwordField->text().isEmpty());
}

void LXLoginPanelController::setControlsEnabled(bool enabled)
{
    m_ui->connectButton->setEnabled(enabled);
    m_ui->hostnameField->setEnabled(enabled);
    m_ui->usernameField->setEnabled(enabled);
    m_ui->passwordField->setEnabled(enabled);
    if (enabled) {
        m_ui->progressField->clear();
        controlTextDidChange();
    }
}

void LXLoginPanelController::doConnect()
{
    if (!m_ui->connectButton->isEnabled())
        return; // Return pressed while a field is still empty
    m_ui->connectButton->setEnabled(false);
    m_ui->connectButton->repaint();
    m_ui->progressIndicator->startAnimation();
    m_ui->progressField->setText(tr("Connecting…"));
    LXUserDefaults &defaults = LXUserDefaults::standard();
    defaults.setValue(m_ui->hostnameField->text(), LXDefaultsKeys::LoginPanelLastLoginHost);
    defaults.setValue(m_ui->usernameField->text(), LXDefaultsKeys::LoginPanelLastLoginUsername);
    defaults.synchronize();
    if (m_delegate)
        m_delegate->loginPanelDidClickConnect(this);
}

void LXLoginPanelController::doCancel()
{
    if (m_delegate)
        m_delegate->loginPanelDidClickCancel(this);
}

LXUserLoginPanelController::LXUserLoginPanelController(QObject *parent)
    : LXLoginPanelController(parent)
{ }

void LXUserLoginPanelController::beginLoginSheet()
{
    m_parentWindow = delegate() ? delegate()->windowForSheet() : nullptr;
    QDialog *panel = loginPanel();
    if (m_parentWindow) {
        panel->setParent(m_parentWindow, Qt::Sheet | Qt::Dialog);
        panel->setWindowModality(Qt::WindowModal);
    }
    panel->show();
    panel->raise();
    panel->activateWindow();
}

void LXUserLoginPanelController::endLoginSheet()
{
    progressIndicator()->stopAnimation();
    loginPanel()->hide();
}

void LXUserLoginPanelController::doConnect()
{
    LXLoginPanelController::doConnect();
    hostnameField()->setEnabled(false);
    usernameField()->setEnabled(false);
    passwordField()->setEnabled(false);
}

void LXUserLoginPanelController::doCancel()
{
    endLoginSheet();
    passwordField()->clear();
    LXLoginPanelController::doCancel();
}
