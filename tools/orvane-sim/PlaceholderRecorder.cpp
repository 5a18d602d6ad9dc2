#include "PlaceholderRecorder.h"

#include "AgentConfig.h"
#include "Console.h"
#include "FaultFile.h"
#include "server/Paths.h"
#include "ToolFailure.h"

#include <QFile>

#include <cerrno>
#include <csignal>

namespace {

sigset_t controlSignals()
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGUSR1);
    sigaddset(&set, SIGUSR2);
    sigaddset(&set, SIGTERM);
    sigaddset(&set, SIGINT);
    return set;
}

} // namespace

void PlaceholderRecorder::blockControlSignals()
{
    // Waiting for blocked signals with sigwaitinfo needs no handler at all,
    // so nothing runs in signal context.
    const sigset_t set = controlSignals();
    sigprocmask(SIG_BLOCK, &set, nullptr);
}

int PlaceholderRecorder::run(const QStringList &arguments)
{
    if (arguments.size() != 2 || arguments[0] != QLatin1String("-f") || arguments[1].isEmpty()) {
        Console::err(QStringLiteral("usage: orvxagentd -f MOVIEPATH\n"));
        return ToolFailure::kUsage;
    }
    m_moviePath = arguments[1];

    try {
        const StateStore store(m_environment.stateFolder());
        const Fault fault = FaultFile(store).take(QStringLiteral("orvxagentd"), FaultFile::Phase::Any);
        if (!fault.isNull()) {
            fault.perform();
            const int status = fault.exitStatus().value_or(kFaultStatus);
            Console::err(QStringLiteral("orvxagentd: cannot start capture (simulated failure), exiting with status %1.\n")
                             .arg(status));
            return status;
        }
    } catch (const ToolFailure &failure) {
        Console::err(failure.message());
        return failure.status();
    }

    QByteArray header = "orvxagentd placeholder recording\n";
    const QString capture = AgentConfig(Paths::userAgentConfig()).values().value(QStringLiteral("Capture")).toString();
    if (!capture.isEmpty())
        header += "Capture: " + capture.toUtf8() + '\n';

    QFile movie(m_moviePath);
    if (!movie.open(QIODevice::WriteOnly | QIODevice::Truncate) || movie.write(header) != header.size()) {
        Console::err(QStringLiteral("orvxagentd: cannot create %1: %2\n").arg(m_moviePath, movie.errorString()));
        return ToolFailure::kRefused;
    }
    movie.close();
    return waitForSignals();
}

bool PlaceholderRecorder::append(const QByteArray &line) const
{
    QFile movie(m_moviePath);
    return movie.open(QIODevice::WriteOnly | QIODevice::Append) && movie.write(line) == line.size();
}

int PlaceholderRecorder::waitForSignals() const
{
    const sigset_t set = controlSignals();
    for (;;) {
        siginfo_t info;
        const int signalNumber = sigwaitinfo(&set, &info);
        if (signalNumber < 0) {
            if (errno == EINTR)
                continue;
            return ToolFailure::kRefused;
        }
        switch (signalNumber) {
        case SIGUSR1:
            append("paused\n");
            break;
        case SIGUSR2:
            append("resumed\n");
            break;
        default:
            return append("stopped\n") ? 0 : ToolFailure::kRefused;
        }
    }
}
