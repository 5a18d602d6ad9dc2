#include "PrivilegedLauncher.h"

#include "CStringArray.h"
#include "Paths.h"
#include "Process.h"
#include "Threads.h"

#include <QObject>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <mutex>
#include <optional>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace {

// The helper's decoded status, or nullopt when it could not be started.
using RunResult = std::optional<int>;

// Starts `argv` with one end of a socketpair as its standard input and
// output, talks over the other end as the platform's privileged pipe did,
// and waits for it.
RunResult runOverSocketPair(CStringArray &argv, char **envp, const QByteArray *input, QByteArray *output)
{
    ignoreSigpipe();
    DescriptorPair pair = makeSocketPair();
    if (!pair.valid())
        return std::nullopt;
    pid_t pid = -1;
    const int rc = spawnProcess(&pid, argv.first(), argv.data(), envp,
        { { pair.second.get(), STDIN_FILENO }, { pair.second.get(), STDOUT_FILENO } });
    pair.second.reset();
    if (rc != 0)
        return std::nullopt;

    const int fd = pair.first.get();
    if (input) {
        qsizetype written = 0;
        while (written < input->size()) {
            const ssize_t w = ::send(fd, input->constData() + written, input->size() - written, MSG_NOSIGNAL);
            if (w < 0 && errno == EINTR)
                continue;
            if (w <= 0)
                break;
            written += w;
        }
    }
    ::shutdown(fd, SHUT_WR);
    QByteArray bytes;
    char buffer[16384];
    for (;;) {
        const ssize_t r = ::read(fd, buffer, sizeof buffer);
        if (r < 0 && errno == EINTR)
            continue;
        if (r <= 0)
            break;
        bytes.append(buffer, r);
    }
    pair.first.reset();
    if (output)
        *output = bytes;

    int rawStatus = 0;
    return waitForChild(pid, &rawStatus) == pid ? decodeWaitStatus(rawStatus) : -1;
}

// A rights check in progress, which the end of its asker stops.
class RunningCheck final
{
public:
    // Runs `command` to its end, or until stopped; its standard streams go
    // to "/dev/null".
    ActionRight run(const QStringList &command)
    {
        ignoreSigpipe();
        CStringArray argv;
        for (const QString &argument : command)
            argv.append(argument);
        const FileDescriptor devNull = openDevNull(O_RDWR);
        if (!devNull.valid())
            return { PrivilegedLauncher::kCannotLaunch, QString::fromLocal8Bit(std::strerror(errno)) };
        pid_t pid = -1;
        {
            std::lock_guard locker(m_mutex);
            if (m_stopped)
                return { PrivilegedLauncher::kCanceled, QString() };
            const int rc = spawnProcess(&pid, argv.first(), argv.data(), environ,
                { { devNull.get(), STDIN_FILENO }, { devNull.get(), STDOUT_FILENO },
                    { devNull.get(), STDERR_FILENO } });
            if (rc != 0)
                return { PrivilegedLauncher::kCannotLaunch, QString::fromLocal8Bit(std::strerror(rc)) };
            m_pid = pid;
        }
        // Waited for without reaping first, so the id cannot pass to another
        // process while stop() may still signal it.
        siginfo_t info = {};
        while (::waitid(P_PID, id_t(pid), &info, WEXITED | WNOWAIT) != 0 && errno == EINTR) { }
        {
            std::lock_guard locker(m_mutex);
            m_pid = -1;
        }
        int rawStatus = 0;
        return { waitForChild(pid, &rawStatus) == pid ? decodeWaitStatus(rawStatus) : -1, QString() };
    }

    void stop()
    {
        std::lock_guard locker(m_mutex);
        m_stopped = true;
        if (m_pid > 0)
            ::kill(m_pid, SIGTERM);
    }

private:
    std::mutex m_mutex;
    pid_t m_pid = -1;
    bool m_stopped = false;
};

CStringArray argumentVector(const QString &first, const QString &helper, const QStringList &arguments)
{
    CStringArray args;
    if (!first.isEmpty())
        args.append(first);
    args.append(helper);
    for (const QString &a : arguments)
        args.append(a);
    return args;
}

} // namespace

std::shared_ptr<PrivilegedLauncher> PrivilegedLauncher::standard()
{
    if (!Paths::sysroot().isEmpty() || ::geteuid() == 0)
        return std::make_shared<DirectLauncher>();
    return std::make_shared<PkexecLauncher>();
}

void PrivilegedLauncher::askRightToPerform(
    QObject *context, const QString &actionId, std::function<void(const ActionRight &)> done) const
{
    const std::optional<QStringList> command = rightsCheckCommand(actionId);
    auto check = std::make_shared<RunningCheck>();
    if (command)
        QObject::connect(context, &QObject::destroyed, [check] { check->stop(); });
    runInBackground(
        context, [command, check] { return command ? check->run(*command) : ActionRight {}; }, std::move(done),
        [](const QString &failure) {
            return ActionRight { kCannotLaunch, failure };
        });
}

PkexecLauncher::PkexecLauncher(QString pkexecPath, QString pkcheckPath)
    : m_pkexecPath(std::move(pkexecPath))
    , m_pkcheckPath(std::move(pkcheckPath))
{ }

std::optional<QStringList> PkexecLauncher::rightsCheckCommand(const QString &actionId) const
{
    return QStringList { m_pkcheckPath, QStringLiteral("--action-id"), actionId, QStringLiteral("--process"),
        QString::number(::getpid()), QStringLiteral("--allow-user-interaction") };
}

int32_t PkexecLauncher::execute(
    const QString &helper, const QStringList &arguments, const QByteArray *input, QByteArray *output)
{
    CStringArray argv = argumentVector(m_pkexecPath, helper, arguments);
    const RunResult result = runOverSocketPair(argv, environ, input, output);
    if (!result)
        return kCannotLaunch;
    // pkexec passes the helper's status on, so a helper's own 126 or 127
    // reads the same as pkexec's refusals.
    switch (*result) {
    case 127:
        return kNotAuthorized;
    case 126:
        return kCanceled;
    default:
        return 0;
    }
}

int32_t DirectLauncher::execute(
    const QString &helper, const QStringList &arguments, const QByteArray *input, QByteArray *output)
{
    CStringArray env = CStringArray::environment();
    env.append(QByteArray(Paths::kPrivilegedRunVariable) + "=1");
    CStringArray argv = argumentVector(QString(), helper, arguments);
    return runOverSocketPair(argv, env.data(), input, output) ? 0 : kCannotLaunch;
}
