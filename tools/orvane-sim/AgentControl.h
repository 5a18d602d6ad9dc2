#pragma once

#include "SimEnvironment.h"
#include "StateStore.h"

#include <QStringList>

// orvxctlexec: starts and stops the local camera agent as a service. The
// running state is only a flag in the state folder; a bound agent shows up
// as an online camera while it is set. Every answer goes to standard output,
// which is all a privileged launch hands back, and failures begin "Error:".
class AgentControl final
{
public:
    explicit AgentControl(const SimEnvironment &environment);

    // Returns the exit status.
    int run(const QStringList &arguments);

private:
    int setRunning(bool running);

    SimEnvironment m_environment;
    StateStore m_store;
};
