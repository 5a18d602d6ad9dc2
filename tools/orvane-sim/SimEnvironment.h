#pragma once

#include <QString>

// Where a simulator tool lives and how it was launched.
//
// Everything is derived from the executable's own location, because a
// privileged launch through pkexec clears the environment: the tools sit at
// <root>/usr/libexec/orvane/<name>, and their state at
// <root>/var/lib/orvane-sim.
class SimEnvironment final
{
public:
    static SimEnvironment detect();

    // The tree the tools are installed in; empty when that is "/".
    QString root() const { return m_root; }
    QString stateFolder() const { return m_root + QStringLiteral("/var/lib/orvane-sim"); }

    // True for a run with administrator rights: either pkexec started us
    // (it leaves PKEXEC_UID behind) or the direct launcher marked the run.
    bool isPrivileged() const { return m_privileged; }

    // Makes the system paths of the core library (the machine-wide agent
    // configuration) resolve under our root when the caller did not name a
    // sysroot itself, as after pkexec.
    void adoptSysroot() const;

private:
    SimEnvironment(QString root, bool privileged)
        : m_root(std::move(root))
        , m_privileged(privileged)
    { }

    QString m_root;
    bool m_privileged;
};
