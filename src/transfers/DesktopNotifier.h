#pragma once

#include <QObject>
#include <QSet>
#include <QString>
#include <QVariantMap>

// Tells the user through the desktop's notification service (the
// freedesktop one on the session bus) how an upload ended, so a long upload
// needs no watching. The call never waits for the service: a desktop
// without one costs a log line and nothing else.
class DesktopNotifier final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(DesktopNotifier)

public:
    static inline const QString kService = QStringLiteral("org.freedesktop.Notifications");
    static inline const QString kPath = QStringLiteral("/org/freedesktop/Notifications");

    explicit DesktopNotifier(QObject *parent = nullptr);

    // The upload titled `title` was completed, or ended in an error.
    void notifyUploadEnded(const QString &title, bool completed);
    // Notifies once per upload when `upload` (a record of the upload list)
    // has completed or failed; an upload whose metadata has no title is
    // named `fallbackTitle`.
    void notifyIfUploadEnded(const QVariantMap &upload, const QString &fallbackTitle);
    void notify(const QString &summary, const QString &body);

private:
    QSet<QString> m_notifiedUploads;
};
