#pragma once

#include "SimEnvironment.h"

#include <QStringList>

// orvxagentd until the real recorder arrives: "-f MOVIEPATH" writes a small
// text file in place of the movie and notes every pause (SIGUSR1), resume
// (SIGUSR2) and the final stop (SIGTERM) in it.
class PlaceholderRecorder final
{
public:
    // Must run first thing in main: signals that arrive before the loop
    // waits for them stay pending instead of killing the process.
    static void blockControlSignals();

    explicit PlaceholderRecorder(const SimEnvironment &environment) : m_environment(environment) {}

    // Returns the exit status.
    int run(const QStringList &arguments);

private:
    static constexpr int kFaultStatus = 3;

    bool append(const QByteArray &line) const;
    int waitForSignals() const;

    SimEnvironment m_environment;
    QString m_moviePath;
};
