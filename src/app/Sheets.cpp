#include "Sheets.h"

#include "Format.h"

#include <QMessageBox>
#include <QPushButton>

namespace {

bool isCaptureDomain(const QString &domain)
{
    // GStreamer's error quarks take the place of the capture framework's.
    return domain.startsWith(QLatin1String("gst-")) || domain.startsWith(QLatin1String("gst_"));
}

QMessageBox *sheet(QWidget *parent, QMessageBox::Icon icon)
{
    auto *box = new QMessageBox(parent);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowModality(Qt::WindowModal);
    box->setIcon(icon);
    return box;
}

} // namespace

QMessageBox *Sheets::errorAlert(QWidget *parent, const Error &error)
{
    QMessageBox *alert = sheet(parent, QMessageBox::Warning);
    const bool builtFromError = isCaptureDomain(error.domain) && !error.localizedDescription.isEmpty();
    if (builtFromError) {
        alert->setText(error.localizedDescription);
    } else {
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
    if (!error.localizedDescription.trimmed().isEmpty() && !builtFromError)
        alert->setDetailedText(error.localizedDescription.trimmed());
    alert->setStandardButtons(QMessageBox::Ok);
    alert->setAccessibleName(alert->text());
    alert->setAccessibleDescription(alert->informativeText());
    alert->button(QMessageBox::Ok)->setAccessibleDescription(tr("Closes this message"));
    return alert;
}

QMessageBox *Sheets::deletionQuestion(
    QWidget *parent, const QString &question, QPushButton **destroy, const QString &destroyTitle, QPushButton **keep)
{
    QMessageBox *box = sheet(parent, QMessageBox::Critical);
    box->setText(question);
    box->setInformativeText(tr("Your current recording will be deleted. This action cannot be undone."));
    *destroy = box->addButton(destroyTitle, QMessageBox::DestructiveRole);
    *keep = box->addButton(tr("Cancel"), QMessageBox::RejectRole);
    box->setAccessibleName(box->text());
    box->setAccessibleDescription(box->informativeText());
    box->setEscapeButton(*keep);
    return box;
}

QMessageBox *Sheets::diskSpaceAlert(QWidget *parent, const QString &volume, bool whileRecording)
{
    QMessageBox *alert = sheet(parent, QMessageBox::Warning);
    alert->setObjectName(QStringLiteral("diskSpaceAlert"));
    alert->setText(tr("Not enough disk space available"));
    alert->setStandardButtons(QMessageBox::Ok);
    alert->setInformativeText(whileRecording
            ? lxFormat(tr("There is not enough disk space available on the volume %@ to continue recording the "
                          "podcast. Your recording has been paused."),
                { QVariant(volume) })
            : lxFormat(tr("There is not enough disk space available on the volume %@ to record a podcast."),
                { QVariant(volume) }));
    return alert;
}
