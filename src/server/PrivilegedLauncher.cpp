#include "PrivilegedLauncher.h"

#include "CStringArray.h"
#include "Paths.h"
#include "Process.h"

#include <cerrno>
#include <optional>
#include <sys/socket.h>
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

PkexecLauncher::PkexecLauncher(QString pkexecPath)
    : m_pkexecPath(std::move(pkexecPath))
{ }

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
