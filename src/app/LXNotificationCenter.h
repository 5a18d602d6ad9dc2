#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QVariant>

#include <functional>
#include <vector>

// Application-wide notices ("UserDidConnectNotice",
// "RecordPauseKeyShortcutTriggered"). Observers are called on the posting
// thread before post() returns, never queued: the login flow relies on the
// observer having run by the time the poster goes on.
class LXNotificationCenter final
{
public:
    using Handler = std::function<void(const QVariant &object)>;

    static LXNotificationCenter &defaultCenter();

    // `handler` runs for every post of `name` while `observer` exists.
    void addObserver(QObject *observer, const QString &name, Handler handler);
    void removeObserver(QObject *observer, const QString &name = QString());
    void post(const QString &name, const QVariant &object = QVariant());

private:
    struct Entry
    {
        QPointer<QObject> observer;
        QString name;
        Handler handler;
    };
    std::vector<Entry> m_entries;
};

inline const QString kUserDidConnectNotice = QStringLiteral("UserDidConnectNotice");
inline const QString kRecordPauseKeyShortcutTriggered = QStringLiteral("RecordPauseKeyShortcutTriggered");
