#include "PrivilegedLauncher.h"

#include "CStringArray.h"
#include "Paths.h"

#include <QFile>

#include <cerrno>
#include <csignal>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char **environ;

namespace {

struct SpawnResult
{
    bool started = false;
    int status = -1; // raw waitpid status
};

// Starts `argv` with one end of a socketpair as its standard input and
// output, talks over the other end as the platform's privileged pipe did,
// and waits for it.
SpawnResult runOverSocketPair(CStringArray &argv, char **envp, const QByteArray *input, QByteArray *output)
{
    // Writing to a helper that has gone must not end this process.
    ::signal(SIGPIPE, SIG_IGN);
    int sv[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sv) != 0)
        return {};

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, sv[1], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, sv[1], STDOUT_FILENO);
    posix_spawn_file_actions_addclosefrom_np(&actions, 3);
    pid_t pid = -1;
    const int rc = ::posix_spawn(&pid, argv.first(), &actions, nullptr, argv.data(), envp);
    posix_spawn_file_actions_destroy(&actions);
    ::close(sv[1]);
    if (rc != 0) {
        ::close(sv[0]);
        return {};
    }

    if (input) {
        qsizetype written = 0;
        while (written < input->size()) {
            const ssize_t w = ::send(sv[0], input->constData() + written, input->size() - written, MSG_NOSIGNAL);
            if (w < 0 && errno == EINTR)
                continue;
            if (w <= 0)
                break;
            written += w;
        }
    }
    ::shutdown(sv[0], SHUT_WR);
    QByteArray bytes;
    char buffer[16384];
    for (;;) {
        const ssize_t r = ::read(sv[0], buffer, sizeof buffer);
        if (r < 0 && errno == EINTR)
            continue;
        if (r <= 0)
            break;
        bytes.append(buffer, r);
    }
    ::close(sv[0]);
    if (output)
        *output = bytes;

    SpawnResult result;
    result.started = true;
    while (::waitpid(pid, &result.status, 0) < 0 && errno == EINTR) { }
    return result;
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

int32_t PkexecLauncher::execute(
    const QString &helper, const QStringList &arguments, const QByteArray *input, QByteArray *output)
{
    CStringArray argv = argumentVector(QStringLiteral("/usr/bin/pkexec"), helper, arguments);
    const SpawnResult result = runOverSocketPair(argv, environ, input, output);
    if (!result.started)
        return kCannotLaunch;
    if (WIFEXITED(result.status)) {
        switch (WEXITSTATUS(result.status)) {
        case 127:
            return kNotAuthorized;
        case 126:
            return kCanceled;
        default:
            return 0;
        }
    }
    return 0;
}

int32_t DirectLauncher::execute(
    const QString &helper, const QStringList &arguments, const QByteArray *input, QByteArray *output)
{
    CStringArray env = CStringArray::environment();
    env.append(QByteArray(Paths::kPrivilegedRunVariable) + "=1");
    CStringArray argv = argumentVector(QString(), helper, arguments);
    const SpawnResult result = runOverSocketPair(argv, env.data(), input, output);
    return result.started ? 0 : kCannotLaunch;
}
