#include "LXUserDefaults.h"

#include "Log.h"
#include "Paths.h"
#include "PropertyList.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

LXUserDefaults &LXUserDefaults::standard()
{
    // Never destroyed, like the logging state: workers may read it at exit.
    static auto *defaults = new LXUserDefaults(Paths::userDefaultsFile(), Paths::kioskFile());
    return *defaults;
}

LXUserDefaults::LXUserDefaults(const QString &storePath, const QString &kioskPath)
    : m_storePath(storePath)
    , m_kioskPath(kioskPath)
{ }

void LXUserDefaults::loadLocked() const
{
    if (m_loaded)
        return;
    m_loaded = true;
    if (!QFileInfo::exists(m_storePath))
        return;
    QString error;
    const QVariant root = PropertyList::readFile(m_storePath, &error);
    if (root.typeId() == QMetaType::QVariantMap) {
        m_values = root.toMap();
        return;
    }
    m_storeDamaged = true;
    Log::format(QStringLiteral("User defaults at %@ could not be read and count as empty: %@"),
        { m_storePath, error.isEmpty() ? QStringLiteral("the root is not a dictionary") : error });
}

bool LXUserDefaults::writeLocked()
{
    QDir().mkpath(QFileInfo(m_storePath).absolutePath());
    if (m_storeDamaged && QFileInfo(m_storePath).isFile()) {
        // Keep what the user had; a person may still recover it by hand.
        const QString aside = m_storePath + QStringLiteral(".corrupt-")
            + QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMddHHmmss"));
        if (!QFile::rename(m_storePath, aside)) {
            Log::format(QStringLiteral("User defaults at %@ are damaged and could not be set aside; not saving."),
                { m_storePath });
            m_dirty = true;
            return false;
        }
        m_storeDamaged = false;
    }
    QString error;
    if (!PropertyList::writeFile(m_storePath, m_values, true, &error)) {
        Log::format(QStringLiteral("User defaults could not be saved to %@: %@"), { m_storePath, error });
        m_dirty = true;
        return false;
    }
    m_dirty = false;
    return true;
}

QVariant LXUserDefaults::objectForKey(const QString &key) const
{
    std::lock_guard locker(m_mutex);
    loadLocked();
    const auto it = m_values.constFind(key);
    if (it != m_values.cend())
        return it.value();
    return m_registered.value(key);
}

void LXUserDefaults::setObject(const QVariant &value, const QString &key)
{
    std::lock_guard locker(m_mutex);
    loadLocked();
    if (value.isValid())
        m_values.insert(key, value);
    else
        m_values.remove(key);
    writeLocked();
}

void LXUserDefaults::removeObject(const QString &key)
{
    setObject(QVariant(), key);
}

void LXUserDefaults::registerDefaults(const QVariantMap &defaults)
{
    std::lock_guard locker(m_mutex);
    for (auto it = defaults.cbegin(); it != defaults.cend(); ++it)
        m_registered.insert(it.key(), it.value());
}

qint64 LXUserDefaults::integerForKey(const QString &key) const
{
    return objectForKey(key).toLongLong();
}

QString LXUserDefaults::stringForKey(const QString &key) const
{
    const QVariant value = objectForKey(key);
    return value.typeId() == QMetaType::QString ? value.toString() : QString();
}

bool LXUserDefaults::synchronize()
{
    std::lock_guard locker(m_mutex);
    loadLocked();
    return m_dirty ? writeLocked() : true;
}

QVariantMap LXUserDefaults::kioskValues() const
{
    if (!QFileInfo(m_kioskPath).isFile())
        return {};
    // A damaged kiosk file forces nothing.
    return PropertyList::readFile(m_kioskPath).toMap();
}

QVariant LXUserDefaults::objectForLumexKey(const QString &key) const
{
    const QVariantMap forced = kioskValues();
    const auto it = forced.constFind(key);
    if (it != forced.cend())
        return it.value();
    return objectForKey(key);
}

bool LXUserDefaults::objectIsForcedForLumexKey(const QString &key) const
{
    return kioskValues().contains(key);
}
