#include "LXController.h"

#include "LXMainWindow.h"
#include "LXProgressSpinner.h"
#include "Log.h"
#include "Sheets.h"

#include <QMessageBox>

QWidget *LXController::alertParent() const
{
    if (m_loginPanel)
        return m_loginPanel->loginPanel();
    return m_window.get();
}

void LXController::alertUserToError(const Error &error)
{
    QMessageBox *alert = Sheets::errorAlert(alertParent(), error);
    connect(alert, &QMessageBox::finished, this, &LXController::alertDidEnd);
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
