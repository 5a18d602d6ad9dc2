#pragma once

#include "LXDefaultsKeys.h"

#include <QString>
#include <QVariant>
#include <QVariantMap>

#include <mutex>
#include <type_traits>

// The per-user defaults store: a property-list file written atomically on
// every change, registered defaults kept in memory only, and the
// administrator's kiosk file, read afresh on every forced lookup, whose keys
// override the user's values.
//
// A store that cannot be read or parsed counts as empty; it is set aside
// (renamed with a ".corrupt" suffix) before the first change is written, so
// the user's file is never silently replaced by nothing.
class LXUserDefaults final
{
public:
    // The store at Paths::userDefaultsFile() with the kiosk file at
    // Paths::kioskFile().
    static LXUserDefaults &standard();

    LXUserDefaults(const QString &storePath, const QString &kioskPath);
    LXUserDefaults(const LXUserDefaults &) = delete;
    LXUserDefaults &operator=(const LXUserDefaults &) = delete;

    // The stored value, else the registered default, else invalid.
    QVariant objectForKey(const QString &key) const;
    // Stores and writes at once; an invalid value removes the key.
    void setObject(const QVariant &value, const QString &key);
    void removeObject(const QString &key);
    void registerDefaults(const QVariantMap &defaults);

    qint64 integerForKey(const QString &key) const;
    QString stringForKey(const QString &key) const;

    // Writes anything a failed write left pending; true when the file on disk
    // holds the store.
    bool synchronize();

    // The kiosk value when the kiosk file holds the key, else objectForKey().
    QVariant objectForLumexKey(const QString &key) const;
    // True when the kiosk file holds the key, whatever its value. Linux has no
    // managed-settings source beyond it.
    bool objectIsForcedForLumexKey(const QString &key) const;

    // A setting of the application's domain, read through
    // objectForLumexKey so the kiosk file forces it everywhere.
    template<typename T> T valueForLumexKey(const LXSetting<T> &setting) const
    {
        const QVariant value = objectForLumexKey(setting.key);
        if constexpr (std::is_same_v<T, QString>)
            return value.typeId() == QMetaType::QString ? value.toString() : QString();
        else if constexpr (std::is_same_v<T, QVariantMap>)
            return value.toMap();
        else
            return value.toLongLong();
    }
    template<typename T> bool isForced(const LXSetting<T> &setting) const
    {
        return objectIsForcedForLumexKey(setting.key);
    }
    template<typename T> void setValue(const QVariant &value, const LXSetting<T> &setting)
    {
        setObject(value, setting.key);
    }

    // Registers the defaults of `settings` (those that have one).
    template<typename... T> void registerDefaults(const LXSetting<T> &...settings)
    {
        QVariantMap defaults;
        ((settings.registeredDefault ? void(defaults.insert(settings.key, settings.registeredDefault())) : void()),
            ...);
        registerDefaults(defaults);
    }

    QString storePath() const { return m_storePath; }

private:
    void loadLocked() const;
    bool writeLocked();
    QVariantMap kioskValues() const;

    const QString m_storePath;
    const QString m_kioskPath;
    mutable std::mutex m_mutex;
    mutable bool m_loaded = false;
    mutable bool m_storeDamaged = false;
    mutable QVariantMap m_values;
    QVariantMap m_registered;
    bool m_dirty = false;
};
