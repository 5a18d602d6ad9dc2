#include "FaultFile.h"

#include "StateLock.h"

#include <QFileInfo>

Fault FaultFile::take(const QString &key, Phase phase) const
{
    // Most runs have no fault file; don't serialise them on the lock.
    if (!QFileInfo::exists(m_store.filePath(StateStore::kFaults)))
        return {};

    StateLock lock(m_store.lockFile());
    QVariantMap faults = m_store.read(StateStore::kFaults);
    if (!faults.contains(key))
        return {};

    QVariantMap entry = faults.value(key).toMap();
    const Fault fault(entry);
    if (phase == Phase::BeforeAuthentication && !fault.appliesBeforeAuthentication())
        return {};
    if (phase == Phase::AfterAuthentication && fault.appliesBeforeAuthentication())
        return {};

    const QString kRemaining = QStringLiteral("remaining");
    if (entry.contains(kRemaining)) {
        const qint64 remaining = entry.value(kRemaining).toLongLong();
        if (remaining <= 1)
            faults.remove(key);
        else {
            entry.insert(kRemaining, remaining - 1);
            faults.insert(key, entry);
        }
        m_store.write(StateStore::kFaults, faults);
        if (remaining <= 0)
            return {};
    }
    return fault;
}
