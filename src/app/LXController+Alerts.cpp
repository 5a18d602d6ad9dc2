#include "LXController.h"

#include "LXMainWindow.h"
#include "LXProgressSpinner.h"
#include "Log.h"

#include <QMessageBox>
#include <QPushButton>

namespace {

bool isCaptureDomain(const QString &domain)
{
    // GStreamer's error quarks take the place of the capture framework's.
    return domain.startsWith(QLatin1String("gst-")) || domain.startsWith(QLatin1String("gst_"));
}

} // namespace

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
    alert->setAccessibleName(alert->text());
    alert->setAccessibleDescription(alert->informativeText());
    alert->button(QMessageBox::Ok)->setAccessibleDescription(tr("Closes this message"));
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
