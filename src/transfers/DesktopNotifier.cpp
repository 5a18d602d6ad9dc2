#include "DesktopNotifier.h"

#include "Log.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

DesktopNotifier::DesktopNotifier(QObject *parent)
    : QObject(parent)
{ }

void DesktopNotifier::notifyUploadEnded(const QString &title, bool completed)
{
    if (completed)
        notify(tr("Podcast Published"), lxFormat(tr("\"%@\" has been uploaded."), { title }));
    else
        notify(tr("Podcast Not Published"),
            lxFormat(tr("\"%@\" could not be uploaded. You can retry it in the Transfers window."), { title }));
}

void DesktopNotifier::notify(const QString &summary, const QString &body)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        Log::format(QStringLiteral("No desktop notification service: %@"), { bus.lastError().message() });
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kService, QStringLiteral("Notify"));
    // The notification closes after the server's own time (-1); its id is of
    // no use, as it is never replaced.
    call << QStringLiteral("Lumex") << 0u << QString() << summary << body << QStringList() << QVariantMap() << -1;
    // Asynchronous: a hung or missing service must never stall the window.
    // The answer is awaited on its own, so it is logged even when the
    // notifier has gone meanwhile.
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(call));
    connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [](QDBusPendingCallWatcher *finished) {
        const QDBusPendingReply<uint> reply = *finished;
        if (reply.isError())
            Log::format(QStringLiteral("No desktop notification service: %@"), { reply.error().message() });
        finished->deleteLater();
    });
}

void DesktopNotifier::notifyIfUploadEnded(const QVariantMap &upload, const QString &fallbackTitle)
{
    const QString uuid = upload.value(QStringLiteral("upload_uuid")).toString();
    const QString status = upload.value(QStringLiteral("status")).toString();
    const bool completed = status == QLatin1String("completed");
    // An open transfers window keeps polling after the end: one notice each.
    if (uuid.isEmpty() || (!completed && status != QLatin1String("error")) || m_notifiedUploads.contains(uuid))
        return;
    m_notifiedUploads.insert(uuid);
    const QVariantMap metadata = upload.value(QStringLiteral("metadata")).toMap();
    const QString title
        = metadata.value(QStringLiteral("Title"), metadata.value(QStringLiteral("UserMetadata_Title"))).toString();
    notifyUploadEnded(title.isEmpty() ? fallbackTitle : title, completed);
}
