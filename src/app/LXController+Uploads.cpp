#include "LXController.h"

#include "DesktopNotifier.h"
#include "Log.h"

void LXController::notifyIfWatchedUploadEnded(const QVariantMap &upload)
{
    const QString uuid = upload.value(QStringLiteral("upload_uuid")).toString();
    const QString status = upload.value(QStringLiteral("status")).toString();
    const bool completed = status == QLatin1String("completed");
    // An open transfers window keeps polling after the end: one notice each.
    if (uuid.isEmpty() || (!completed && status != QLatin1String("error")) || m_notifiedUploads.contains(uuid))
        return;
    m_notifiedUploads.insert(uuid);
    const QVariantMap metadata = upload.value(QStringLiteral("metadata")).toMap();
    QString title
        = metadata.value(QStringLiteral("Title"), metadata.value(QStringLiteral("UserMetadata_Title"))).toString();
    if (title.isEmpty() && m_job)
        title = m_job->title();
    if (!m_notifier)
        m_notifier = new DesktopNotifier(this);
    m_notifier->notifyUploadEnded(title, completed);
}

std::shared_ptr<OrvaneServerInterface> LXController::signedInServer()
{
    return m_connected ? m_server : nullptr;
}

void LXController::transferWasRetried(const QString &failedUUID, const QString &newUUID)
{
    // The current job's upload lives on in the retry: the done page and the
    // notification follow the new one.
    if (!m_job || m_job->uploadUUID() != failedUUID)
        return;
    m_job->setUploadUUID(newUUID);
    m_currentJobCompletedUploading = false;
    if (m_transfersController)
        m_transfersController->startPollingSubmissions();
}
