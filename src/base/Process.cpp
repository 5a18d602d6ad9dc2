#include "Process.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
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
