#pragma once

#include <QString>
#include <QStringList>

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <sys/types.h>

// A child process of ours, known by its process id: the local capture agent
// of a recording. Unlike QProcess it never kills or waits for the child when
// it goes away; whether the child still runs is asked with waitpid(WNOHANG),
// so an exited child (a zombie) counts as not running and is reaped.
// A launched agent is sent SIGTERM, so that it finishes its movie, when this
// process ends in any way (see spawnBoundProcess).
class LocalAgentTask final
{
public:
    // Starts `program` with `arguments`, inheriting our standard streams and
    // environment. Returns null and sets `errnoOut` when it cannot be started.
    static std::shared_ptr<LocalAgentTask> launch(
        const QString &program, const QStringList &arguments, int *errnoOut = nullptr);

    // Adopts a child process that this process started itself.
    explicit LocalAgentTask(pid_t pid);
    ~LocalAgentTask();
    LocalAgentTask(const LocalAgentTask &) = delete;
    LocalAgentTask &operator=(const LocalAgentTask &) = delete;

    pid_t processIdentifier() const { return m_pid; }

    bool isRunning();

    // The exit status, or the number of the signal that ended it; -1 while it
    // runs.
    int terminationStatus();

    // Sends `signal` to the child while it runs. Returns kill()'s result: 0 on
    // success, -1 when the child has exited or no signal could be sent. Ids of
    // zero or below are never signalled.
    int sendSignal(int signal);

    // SIGTERM, as the platform's terminate.
    int terminate();
    // Whether terminate() was called: an agent that ends without it ended
    // by itself. Cheap enough to ask every second with isRunning().
    bool wasTerminated() const { return m_terminated.load(); }

    // Blocks until the child has exited or `limit` has passed; true when it
    // has exited. For worker threads only.
    bool waitUntilExit(std::chrono::milliseconds limit);

private:
    bool pollLocked();

    const pid_t m_pid;
    std::mutex m_mutex;
    bool m_reaped = false;
    std::atomic<bool> m_terminated { false };
    int m_status = -1;
};
