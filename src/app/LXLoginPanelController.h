#pragma once

#include <QObject>
#include <QPointer>

#include <memory>

class QDialog;
class QLabel;
class QLineEdit;
class QPushButton;
class QWidget;
class LXProgressSpinner;
class LXLoginPanelController;
namespace Ui {
class LoginPanel;
}

// What the login panel asks of whoever shows it. Methods a delegate does not
// override do nothing, as messages to a delegate that does not answer them.
class LXLoginPanelDelegate
{
public:
    virtual ~LXLoginPanelDelegate() = default;
    virtual void loginPanelDidClickConnect(LXLoginPanelController *panel) { Q_UNUSED(panel); }
    virtual void loginPanelDidClickCancel(LXLoginPanelController *panel) { Q_UNUSED(panel); }
    // The window a sheet would attach to; none means a free-standing panel.
    virtual QWidget *windowForSheet() { return nullptr; }
};

// The login panel loaded from "LoginPanel": server, user name and password,
// a connect button that is enabled exactly when all three are filled in, and
// a spinner while connecting. Host and user name are remembered; the
// password never is.
class LXLoginPanelController : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LXLoginPanelController)

public:
    explicit LXLoginPanelController(QObject *parent = nullptr);
    ~LXLoginPanelController() override;

    QDialog *loginPanel() const { return m_panel.get(); }
    QLineEdit *hostnameField() const;
    QLineEdit *usernameField() const;
    QLineEdit *passwordField() const;
    QLabel *progressField() const;
    LXProgressSpinner *progressIndicator() const;
    QPushButton *connectButton() const;
    QPushButton *cancelButton() const;

    LXLoginPanelDelegate *delegate() const { return m_delegate; }
    void setDelegate(LXLoginPanelDelegate *delegate) { m_delegate = delegate; }

    void setControlsEnabled(bool enabled);
    void controlTextDidChange();

public slots:
    virtual void doConnect();
    virtual void doCancel();

protected:
    void awakeFromNib();

private:
    std::unique_ptr<QDialog> m_panel;
    std::unique_ptr<Ui::LoginPanel> m_ui;
    LXLoginPanelDelegate *m_delegate = nullptr;
};

// The login panel as the application shows it: a sheet on the delegate's
// window when it names one, a free-standing panel otherwise.
class LXUserLoginPanelController final : public LXLoginPanelController
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LXUserLoginPanelController)

public:
    explicit LXUserLoginPanelController(QObject *parent = nullptr);

    void beginLoginSheet();
    void endLoginSheet();

    bool _mustAuthenticateToDirectory() const { return m_mustAuthenticateToDirectory; }
    void _setMustAuthenticateToDirectory(bool must) { m_mustAuthenticateToDirectory = must; }

    void doConnect() override;
    void doCancel() override;

private:
    QPointer<QWidget> m_parentWindow;
    bool m_mustAuthenticateToDirectory = false;
    bool m_authenticatedToDirectory = false;
};
