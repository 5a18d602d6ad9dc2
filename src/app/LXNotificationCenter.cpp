#include "LXNotificationCenter.h"

LXNotificationCenter &LXNotificationCenter::defaultCenter()
{
    static LXNotificationCenter center;
    return center;
}

void LXNotificationCenter::addObserver(QObject *observer, const QString &name, Handler handler)
{
    m_entries.push_back(Entry { observer, name, std::move(handler) });
}

void LXNotificationCenter::removeObserver(QObject *observer, const QString &name)
{
    std::erase_if(
        m_entries, [&](const Entry &e) { return e.observer == observer && (name.isNull() || e.name == name); });
}

void LXNotificationCenter::post(const QString &name, const QVariant &object)
{
    std::erase_if(m_entries, [](const Entry &e) { return e.observer.isNull(); });
    // Copy first: a handler may add or remove observers.
    std::vector<Entry> matching;
    for (const Entry &e : m_entries) {
        if (e.name == name)
            matching.push_back(e);
    }
    for (const Entry &e : matching) {
        if (e.observer)
            e.handler(object);
    }
}
