#include "LocalAgentTask.h"

#include "CStringArray.h"
#include "Process.h"

#include <cerrno>
#include <csignal>
#include <sys/wait.h>
#include <system_error>
#include <thread>

extern char **environ;

std::shared_ptr<LocalAgentTask> LocalAgentTask::launch(
    const QString &program, const QStringList &arguments, int *errnoOut)
{
    CStringArray argv(QStringList { program } + arguments);
    // The agent gets our standard streams and nothing else we hold open.
    pid_t pid = -1;
    const int rc = spawnBoundProcess(&pid, argv.first(), argv.data(), environ, SIGTERM);
    if (rc != 0) {
        if (errnoOut)
            *errnoOut = rc;
        return nullptr;
    }
    return std::make_shared<LocalAgentTask>(pid);
}

LocalAgentTask::LocalAgentTask(pid_t pid)
    : m_pid(pid)
{ }

LocalAgentTask::~LocalAgentTask()
{
    std::lock_guard locker(m_mutex);
    if (m_pid <= 0 || m_reaped || !pollLocked())
        return;
    // Nobody will ask about this child again, but it must not stay a zombie
    // once it ends: reap it from a thread of its own.
    const pid_t pid = m_pid;
    try {
        std::thread([pid] { waitForChild(pid, nullptr); }).detach();
    } catch (const std::system_error &) {
        // No thread to be had: the child stays a zombie until we exit,
        // which is harmless; a destructor must not throw.
    }
}

bool LocalAgentTask::pollLocked()
{
    if (m_pid <= 0 || m_reaped)
        return false;
    int status = 0;
    const pid_t rc = waitForChild(m_pid, &status, WNOHANG);
    if (rc == 0)
        return true;
    m_reaped = true;
    if (rc == m_pid)
        m_status = decodeWaitStatus(status);
    // rc < 0: not (or no longer) our child, so nothing of ours is running.
    return false;
}

bool LocalAgentTask::isRunning()
{
    std::lock_guard locker(m_mutex);
    return pollLocked();
}

int LocalAgentTask::terminationStatus()
{
    std::lock_guard locker(m_mutex);
    pollLocked();
    return m_reaped ? m_status : -1;
}

int LocalAgentTask::sendSignal(int signal)
{
    std::lock_guard locker(m_mutex);
    // Checking under the lock means a reaped id, which the system may already
    // have handed to another process, is never signalled.
    if (!pollLocked()) {
        errno = ESRCH;
        return -1;
    }
    return ::kill(m_pid, signal);
}

int LocalAgentTask::terminate()
{
    m_terminated = true;
    return sendSignal(SIGTERM);
}

bool LocalAgentTask::waitUntilExit(std::chrono::milliseconds limit)
{
    // Polled rather than a blocking wait, so the lock is never held for long
    // and the others may still ask about or signal the child meanwhile.
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (isRunning()) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
}
