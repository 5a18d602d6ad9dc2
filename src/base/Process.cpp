#include "Process.h"

#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <deque>
#include <fcntl.h>
#include <mutex>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

void FileDescriptor::reset(int fd)
{
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = fd;
}

DescriptorPair makePipe()
{
    int fds[2];
    if (::pipe2(fds, O_CLOEXEC) != 0)
        return {};
    return DescriptorPair { FileDescriptor(fds[0]), FileDescriptor(fds[1]) };
}

DescriptorPair makeSocketPair()
{
    int fds[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, fds) != 0)
        return {};
    return DescriptorPair { FileDescriptor(fds[0]), FileDescriptor(fds[1]) };
}

FileDescriptor openDevNull(int flags)
{
    return FileDescriptor(::open("/dev/null", flags | O_CLOEXEC));
}

int spawnProcess(pid_t *pid, const char *path, char *const argv[], char *const envp[],
    std::initializer_list<ChildDescriptor> mappings)
{
    // We ignore SIGPIPE (below); the child must not inherit that, or a tool
    // whose reader went away would carry on writing into nowhere.
    posix_spawnattr_t attributes;
    int rc = posix_spawnattr_init(&attributes);
    if (rc != 0)
        return rc;
    sigset_t defaults;
    sigemptyset(&defaults);
    sigaddset(&defaults, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &defaults);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    posix_spawn_file_actions_t actions;
    rc = posix_spawn_file_actions_init(&actions);
    if (rc != 0) {
        posix_spawnattr_destroy(&attributes);
        return rc;
    }
    // dup2 clears close-on-exec on the copy; the originals close with the rest.
    for (const ChildDescriptor &m : mappings) {
        if (rc == 0)
            rc = posix_spawn_file_actions_adddup2(&actions, m.parentFd, m.childFd);
    }
    if (rc == 0)
        rc = posix_spawn_file_actions_addclosefrom_np(&actions, 3);
    if (rc == 0)
        rc = ::posix_spawn(pid, path, &actions, &attributes, argv, envp);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    return rc;
}

namespace {

struct BoundSpawn
{
    const char *path;
    char *const *argv;
    char *const *envp;
    int deathSignal;
    pid_t pid = -1;
    int error = 0;
    bool done = false;
};

// Runs in the child between fork and exec: async-signal-safe calls only.
[[noreturn]] void execBoundChild(const BoundSpawn &spawn, pid_t parent, int reportFd)
{
    ::prctl(PR_SET_PDEATHSIG, spawn.deathSignal);
    // The parent may have died before the signal was armed: then it never
    // comes, and nobody wants this child any more.
    if (::getppid() != parent)
        ::_exit(127);
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    struct sigaction defaultAction = {};
    defaultAction.sa_handler = SIG_DFL;
    ::sigaction(SIGPIPE, &defaultAction, nullptr);
    // Everything from 3 up goes, but the report pipe, which closes on exec.
    if (reportFd > 3)
        ::close_range(3, unsigned(reportFd) - 1, 0);
    ::close_range(unsigned(reportFd) + 1, ~0U, 0);
    ::execve(spawn.path, spawn.argv, spawn.envp);
    const int error = errno;
    [[maybe_unused]] const ssize_t written = ::write(reportFd, &error, sizeof error);
    ::_exit(127);
}

void forkBoundChild(BoundSpawn &spawn)
{
    const pid_t parent = ::getpid();
    // Closed by a successful exec; carries exec's error otherwise.
    DescriptorPair report = makePipe();
    if (!report.valid()) {
        spawn.error = errno;
        return;
    }
    const pid_t child = ::fork();
    if (child < 0) {
        spawn.error = errno;
        return;
    }
    if (child == 0)
        execBoundChild(spawn, parent, report.second.get());
    report.second.reset();
    int childError = 0;
    ssize_t got;
    do {
        got = ::read(report.first.get(), &childError, sizeof childError);
    } while (got < 0 && errno == EINTR);
    if (got == sizeof childError) {
        waitForChild(child, nullptr);
        spawn.error = childError;
        return;
    }
    spawn.pid = child;
}

// The one thread that makes bound children. It is never joined nor
// destroyed: it must outlive every caller, and its end would send the
// death signal to every child it made.
class BoundSpawner final
{
public:
    static BoundSpawner *instance()
    {
        static BoundSpawner *const s_spawner = [] {
            auto *spawner = new BoundSpawner;
            // It takes none of the process's signals: they are for the
            // threads that wait for them.
            sigset_t all, previous;
            sigfillset(&all);
            pthread_sigmask(SIG_SETMASK, &all, &previous);
            try {
                std::thread([spawner] { spawner->run(); }).detach();
            } catch (const std::system_error &) {
                delete spawner;
                spawner = nullptr;
            }
            pthread_sigmask(SIG_SETMASK, &previous, nullptr);
            return spawner;
        }();
        return s_spawner;
    }

    void spawn(BoundSpawn &request)
    {
        std::unique_lock locker(m_mutex);
        m_queue.push_back(&request);
        m_changed.notify_all();
        m_changed.wait(locker, [&request] { return request.done; });
    }

private:
    [[noreturn]] void run()
    {
        std::unique_lock locker(m_mutex);
        for (;;) {
            m_changed.wait(locker, [this] { return !m_queue.empty(); });
            BoundSpawn *request = m_queue.front();
            m_queue.pop_front();
            locker.unlock();
            forkBoundChild(*request);
            locker.lock();
            request->done = true;
            m_changed.notify_all();
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<BoundSpawn *> m_queue;
};

} // namespace

int spawnBoundProcess(pid_t *pid, const char *path, char *const argv[], char *const envp[], int deathSignal)
{
    BoundSpawner *spawner = BoundSpawner::instance();
    if (!spawner)
        return EAGAIN;
    BoundSpawn request { path, argv, envp, deathSignal };
    spawner->spawn(request);
    if (request.error == 0)
        *pid = request.pid;
    return request.error;
}

pid_t waitForChild(pid_t pid, int *rawStatus, int options)
{
    int status = 0;
    pid_t rc;
    do {
        rc = ::waitpid(pid, &status, options);
    } while (rc < 0 && errno == EINTR);
    if (rawStatus)
        *rawStatus = status;
    return rc;
}

int decodeWaitStatus(int rawStatus)
{
    if (WIFEXITED(rawStatus))
        return WEXITSTATUS(rawStatus);
    if (WIFSIGNALED(rawStatus))
        return WTERMSIG(rawStatus);
    return -1;
}

void ignoreSigpipe()
{
    static const bool done = [] {
        struct sigaction action = {};
        action.sa_handler = SIG_IGN;
        sigemptyset(&action.sa_mask);
        ::sigaction(SIGPIPE, &action, nullptr);
        return true;
    }();
    (void)done;
}
