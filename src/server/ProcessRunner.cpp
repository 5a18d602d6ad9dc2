#include "ProcessRunner.h"

#include "CStringArray.h"

#include <QFile>

#include <QFileInfo>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char **environ;

namespace {

// A file descriptor that closes itself.
class Fd
{
public:
    Fd() = default;
    explicit Fd(int fd)
        : m_fd(fd)
    { }
    ~Fd() { reset(); }
    Fd(const Fd &) = delete;
    Fd &operator=(const Fd &) = delete;
    Fd(Fd &&other) noexcept
        : m_fd(other.release())
    { }
    Fd &operator=(Fd &&other) noexcept
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
    void reset(int fd = -1)
    {
        if (m_fd >= 0)
            ::close(m_fd);
        m_fd = fd;
    }

private:
    int m_fd = -1;
};

struct Pipe
{
    Fd read;
    Fd write;
};

Pipe makePipe()
{
    int fds[2];
    if (::pipe2(fds, O_CLOEXEC) != 0)
        throw ProcessStartError(std::string("cannot create a pipe: ") + std::strerror(errno));
    return Pipe { Fd(fds[0]), Fd(fds[1]) };
}

Fd openNull(int flags)
{
    const int fd = ::open("/dev/null", flags | O_CLOEXEC);
    if (fd < 0)
        throw ProcessStartError(std::string("cannot open /dev/null: ") + std::strerror(errno));
    return Fd(fd);
}

// Writing to a child that has already exited must fail with EPIPE, not end
// this process.
void ignoreSigpipeOnce()
{
    static const bool done = [] {
        struct sigaction action = {};
        action.sa_handler = SIG_IGN;
        sigemptyset(&action.sa_mask);
        ::sigaction(SIGPIPE, &action, nullptr);
        return true;
    }();
    Q_UNUSED(done);
}

int32_t waitForExit(pid_t pid)
{
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0) {
        if (errno != EINTR)
            return -1;
    }
    if (WIFEXITED(status))
        return WEXITSTATUS(status);
    if (WIFSIGNALED(status))
        return WTERMSIG(status);
    return -1;
}

} // namespace

bool isExecutableFile(const QString &path)
{
    if (path.isEmpty())
        return false;
    return ::access(QFile::encodeName(path).constData(), X_OK) == 0;
}

int32_t runExecutable(const QString &launchPath, const std::optional<QStringList> &arguments, const QString &input,
    QByteArray *output, QString *error, const std::optional<QStringList> &environment)
{
    if (launchPath.isNull() || !isExecutableFile(launchPath))
        return -1;
    ignoreSigpipeOnce();

    const QByteArray program = QFile::encodeName(launchPath);
    CStringArray argv;
    argv.append(launchPath);
    if (arguments) {
        for (const QString &arg : *arguments)
            argv.append(arg);
    }
    CStringArray envp;
    if (environment) {
        for (const QString &entry : *environment)
            envp.append(entry);
    }

    // Parent ends of the pipes the caller asked for; the rest is /dev/null.
    Pipe in, out, err;
    Fd childIn = input.isNull() ? openNull(O_RDONLY) : Fd();
    Fd childOut = output ? Fd() : openNull(O_WRONLY);
    Fd childErr = error ? Fd() : openNull(O_WRONLY);
    if (!input.isNull()) {
        in = makePipe();
        childIn = std::move(in.read);
        // Never block in write(): a child that answers while it still reads
        // must have its output drained in between.
        ::fcntl(in.write.get(), F_SETFL, ::fcntl(in.write.get(), F_GETFL) | O_NONBLOCK);
    }
    if (output) {
        out = makePipe();
        childOut = std::move(out.write);
    }
    if (error) {
        err = makePipe();
        childErr = std::move(err.write);
    }

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, childIn.get(), STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, childOut.get(), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, childErr.get(), STDERR_FILENO);
    posix_spawn_file_actions_addclosefrom_np(&actions, 3);
    pid_t pid = -1;
    const int rc
        = ::posix_spawn(&pid, program.constData(), &actions, nullptr, argv.data(), environment ? envp.data() : environ);
    posix_spawn_file_actions_destroy(&actions);
    childIn.reset();
    childOut.reset();
    childErr.reset();
    if (rc != 0) {
        throw ProcessStartError(QStringLiteral("%1 could not be started: %2")
                                    .arg(launchPath, QString::fromLocal8Bit(std::strerror(rc)))
                                    .toStdString());
    }

    const QByteArray inputBytes = input.toUtf8();
    qsizetype written = 0;
    if (in.write.valid() && inputBytes.isEmpty())
        in.write.reset();
    QByteArray outBytes, errBytes;

    while (in.write.valid() || out.read.valid() || err.read.valid()) {
        pollfd fds[3];
        nfds_t n = 0;
        int inIdx = -1, outIdx = -1, errIdx = -1;
        if (in.write.valid()) {
            inIdx = int(n);
            fds[n++] = pollfd { in.write.get(), POLLOUT, 0 };
        }
        if (out.read.valid()) {
            outIdx = int(n);
            fds[n++] = pollfd { out.read.get(), POLLIN, 0 };
        }
        if (err.read.valid()) {
            errIdx = int(n);
            fds[n++] = pollfd { err.read.get(), POLLIN, 0 };
        }
        if (::poll(fds, n, -1) < 0) {
            if (errno == EINTR)
                continue;
            break;
        }
        if (inIdx >= 0 && fds[inIdx].revents) {
            const ssize_t w = ::write(in.write.get(), inputBytes.constData() + written, inputBytes.size() - written);
            if (w > 0)
                written += w;
            if ((w < 0 && errno != EINTR && errno != EAGAIN) || written >= inputBytes.size())
                in.write.reset(); // all written, or the child stopped reading: it sees end of file
        }
        char buffer[65536];
        auto drain = [&buffer](Fd &fd, QByteArray &into, short revents) {
            if (!revents)
                return;
            const ssize_t r = ::read(fd.get(), buffer, sizeof buffer);
            if (r > 0)
                into.append(buffer, r);
            else if (r == 0 || (errno != EINTR && errno != EAGAIN))
                fd.reset();
        };
        if (outIdx >= 0)
            drain(out.read, outBytes, fds[outIdx].revents);
        if (errIdx >= 0)
            drain(err.read, errBytes, fds[errIdx].revents);
    }

    const int32_t status = waitForExit(pid);
    if (output)
        *output = outBytes;
    if (error)
        *error = errBytes.isEmpty() ? QStringLiteral("") : QString::fromUtf8(errBytes); // empty, not nil
    return status;
}
