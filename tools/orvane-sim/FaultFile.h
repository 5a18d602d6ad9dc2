#pragma once

#include "Fault.h"
#include "StateStore.h"

// The fault file of the state folder, "faults.plist": a dictionary keyed by
// command option ("--submit", "agent", "orvxagentd"...). Tests write it.
class FaultFile final
{
public:
    // Commands that take a password look for faults twice: once before the
    // credentials are checked (entries with "before_auth") and once after.
    enum class Phase { Any, BeforeAuthentication, AfterAuthentication };

    explicit FaultFile(const StateStore &store)
        : m_store(store)
    { }

    // The fault for `key` in `phase`, or a null one. An entry with
    // "remaining" is counted down and removed when used up. Takes the state
    // lock itself, so the caller must not hold it.
    Fault take(const QString &key, Phase phase) const;

private:
    const StateStore &m_store;
};
