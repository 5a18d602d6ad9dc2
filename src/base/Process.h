#pragma once

#include <initializer_list>
#include <stdexcept>
#include <sys/types.h>

// Raised when a child that passed the executable test still cannot be
// started (a folder at the path, a file the kernel cannot run, no memory).
// Worker-thread entries catch it; see runOnWorkerThread.
class ProcessStartError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// A file descriptor that closes itself.
class FileDescriptor final
{
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int fd)
        : m_fd(fd)
    { }
    ~FileDescriptor() { reset(); }
    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;
    FileDescriptor(FileDescriptor &&other) noexcept
        : m_fd(other.release())
    { }
    FileDescriptor &operator=(FileDescriptor &&other) noexcept
    {
        reset(other.release());
        return *this;
    }

    int get() const { return m_fd; }
    bool valid() const { return m_fd >= 0; }
    int release()
    {
        const int fd = m_fd;
        m_fd = -1;
        return fd;
    }
    void reset(int fd = -1);

private:
    int m_fd = -1;
};

// Two connected descriptors, both close-on-exec, so that no child but the one
// they are handed to explicitly ever holds them.
struct DescriptorPair
{
    FileDescriptor first;
    FileDescriptor second;
    bool valid() const { return first.valid() && second.valid(); }
};

// A pipe: `first` reads, `second` writes. Both invalid, errno set, on failure.
DescriptorPair makePipe();
// A two-way stream socket pair. Both invalid, errno set, on failure.
DescriptorPair makeSocketPair();
// "/dev/null" opened close-on-exec with `flags`; invalid, errno set, on
// failure.
FileDescriptor openDevNull(int flags);

// One of our descriptors that becomes `childFd` in the child.
struct ChildDescriptor
{
    int parentFd;
    int childFd;
};

// Starts `path` with `argv` and `envp` through posix_spawn. The child gets
// the descriptors in `mappings`, its other standard streams as ours, and no
// other descriptor of ours at all: everything from 3 up is closed in it, so
// a descriptor opened elsewhere without close-on-exec cannot leak either.
// SIGPIPE is back to its default in the child.
// Returns 0 and the child's id in `pid`, or the error number.
int spawnProcess(pid_t *pid, const char *path, char *const argv[], char *const envp[],
    std::initializer_list<ChildDescriptor> mappings = {});

// Starts `path` with `argv` and `envp`, with our standard streams and no
// other descriptor of ours, and sees that it is sent `deathSignal` when this
// process ends in any way, kill -9 included: the kernel's parent-death
// signal. That signal follows the thread that made the child, so every such
// child is made by one thread that lives as long as the process; and a child
// whose parent died before the signal was armed exits at once instead of
// starting. Its signal mask is empty and SIGPIPE back to its default.
// Returns 0 and the child's id in `pid`, or the error number (a child that
// cannot be executed reports exec's).
int spawnBoundProcess(pid_t *pid, const char *path, char *const argv[], char *const envp[], int deathSignal);

// waitpid that carries on through signal interruptions. Returns what waitpid
// returns: the id, 0 (WNOHANG, still running) or -1.
pid_t waitForChild(pid_t pid, int *rawStatus, int options = 0);

// A wait status as our callers report it: the exit status, or the number of
// the signal that ended the child (never 0 for a crash); -1 otherwise.
int decodeWaitStatus(int rawStatus);

// Writing to a child that has already exited must fail with EPIPE, not end
// this process. Idempotent; every spawner calls it first.
void ignoreSigpipe();
