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
