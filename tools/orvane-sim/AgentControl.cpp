#include "AgentControl.h"

#include "AgentConfig.h"
#include "Console.h"
#include "FaultFile.h"
#include "OrvaneKeys.h"
#include "Paths.h"
#include "StateLock.h"
#include "ToolFailure.h"

#include <QDateTime>

namespace {

int failWith(const QString &text)
{
    Console::out(text + QLatin1Char('\n'));
    return ToolFailure::kRefused;
}

} // namespace

AgentControl::AgentControl(const SimEnvironment &environment)
    : m_environment(environment)
    , m_store(environment.stateFolder())
{ }

int AgentControl::run(const QStringList &arguments)
{
    if (arguments.size() != 2 || arguments[0] != QLatin1String("agent")
        || (arguments[1] != QLatin1String("start") && arguments[1] != QLatin1String("stop"))) {
        Console::err(QStringLiteral("usage: orvxctlexec agent start|stop\n"));
        return ToolFailure::kUsage;
    }

    try {
        m_environment.adoptSysroot();
        m_store.ensureFolder();
        {
            StateLock lock(m_store.lockFile());
            m_store.ensureSeeded();
        }
        const Fault fault = FaultFile(m_store).take(QStringLiteral("agent"), FaultFile::Phase::Any);
        fault.perform();
        if (const auto status = fault.exitStatus())
            return *status;

        if (!m_environment.isPrivileged())
            return failWith(QStringLiteral("Error: administrator rights are required."));
        return setRunning(arguments[1] == QLatin1String("start"));
    } catch (const ToolFailure &failure) {
        Console::out(failure.message());
        return failure.status();
    }
}

int AgentControl::setRunning(bool running)
{
    StateLock lock(m_store.lockFile());
    QVariantMap agent = m_store.read(StateStore::kAgent);
    const bool isRunning = agent.value(QStringLiteral("running")).toBool();
    if (running && isRunning)
        return failWith(QStringLiteral("Error: agent is already running."));
    if (!running && !isRunning)
        return failWith(QStringLiteral("Error: agent is not running."));
    if (running
        && AgentConfig(Paths::globalAgentConfig()).values().value(OrvaneKeys::Agent::CameraName).toString().isEmpty())
        return failWith(QStringLiteral("Error: the agent is not bound to a server."));

    agent.insert(QStringLiteral("running"), running);
    if (running)
        agent.insert(QStringLiteral("started_at"), QDateTime::currentDateTimeUtc());
    else
        agent.remove(QStringLiteral("started_at"));
    m_store.write(StateStore::kAgent, agent);
    Console::out(running ? QStringLiteral("Agent started.\n") : QStringLiteral("Agent stopped.\n"));
    return 0;
}
