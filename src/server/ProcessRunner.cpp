#include "ProcessRunner.h"

#include "CStringArray.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

extern char **environ;

namespace {

[[noreturn]] void throwStartError(const char *what)
{
    throw ProcessStartError(std::string(what) + std::strerror(errno));
}

DescriptorPair pipeOrThrow()
{
    DescriptorPair pipe = makePipe();
    if (!pipe.valid())
        throwStartError("cannot create a pipe: ");
    return pipe;
}

FileDescriptor devNullOrThrow(int flags)
{
    FileDescriptor fd = openDevNull(flags);
    if (!fd.valid())
        throwStartError("cannot open /dev/null: ");
    return fd;
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
    ignoreSigpipe();

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
    DescriptorPair in, out, err;
    FileDescriptor childIn = input.isNull() ? devNullOrThrow(O_RDONLY) : FileDescriptor();
    FileDescriptor childOut = output ? FileDescriptor() : devNullOrThrow(O_WRONLY);
    FileDescriptor childErr = error ? FileDescriptor() : devNullOrThrow(O_WRONLY);
    if (!input.isNull()) {
        in = pipeOrThrow();
        childIn = std::move(in.first);
        // Never block in write(): a child that answers while it still reads
        // must have its output drained in between.
        ::fcntl(in.second.get(), F_SETFL, ::fcntl(in.second.get(), F_GETFL) | O_NONBLOCK);
    }
    if (output) {
        out = pipeOrThrow();
        childOut = std::move(out.second);
    }
    if (error) {
        err = pipeOrThrow();
        childErr = std::move(err.second);
    }

    pid_t pid = -1;
    const int rc = spawnProcess(&pid, program.constData(), argv.data(), environment ? envp.data() : environ,
        { { childIn.get(), STDIN_FILENO }, { childOut.get(), STDOUT_FILENO }, { childErr.get(), STDERR_FILENO } });
    childIn.reset();
    childOut.reset();
    childErr.reset();
    if (rc != 0) {
        throw ProcessStartError(QStringLiteral("%1 could not be started: %2")
                                    .arg(launchPath, QString::fromLocal8Bit(std::strerror(rc)))
                                    .toStdString());
    }

    FileDescriptor &inWrite = in.second;
    FileDescriptor &outRead = out.first;
    FileDescriptor &errRead = err.first;
    const QByteArray inputBytes = input.toUtf8();
    qsizetype written = 0;
    if (inWrite.valid() && inputBytes.isEmpty())
        inWrite.reset();
    QByteArray outBytes, errBytes;

    while (inWrite.valid() || outRead.valid() || errRead.valid()) {
        pollfd fds[3];
        nfds_t n = 0;
        int inIdx = -1, outIdx = -1, errIdx = -1;
        if (inWrite.valid()) {
            inIdx = int(n);
            fds[n++] = pollfd { inWrite.get(), POLLOUT, 0 };
        }
        if (outRead.valid()) {
            outIdx = int(n);
            fds[n++] = pollfd { outRead.get(), POLLIN, 0 };
        }
        if (errRead.valid()) {
            errIdx = int(n);
            fds[n++] = pollfd { errRead.get(), POLLIN, 0 };
        }
        if (::poll(fds, n, -1) < 0) {
            if (errno == EINTR)
                continue;
            break;
        }
        if (inIdx >= 0 && fds[inIdx].revents) {
            const ssize_t w = ::write(inWrite.get(), inputBytes.constData() + written, inputBytes.size() - written);
            if (w > 0)
                written += w;
            if ((w < 0 && errno != EINTR && errno != EAGAIN) || written >= inputBytes.size())
                inWrite.reset(); // all written, or the child stopped reading: it sees end of file
        }
        char buffer[65536];
        auto drain = [&buffer](FileDescriptor &fd, QByteArray &into, short revents) {
            if (!revents)
                return;
            const ssize_t r = ::read(fd.get(), buffer, sizeof buffer);
            if (r > 0)
                into.append(buffer, r);
            else if (r == 0 || (errno != EINTR && errno != EAGAIN))
                fd.reset();
        };
        if (outIdx >= 0)
            drain(outRead, outBytes, fds[outIdx].revents);
        if (errIdx >= 0)
            drain(errRead, errBytes, fds[errIdx].revents);
    }

    int rawStatus = 0;
    const int32_t status = waitForChild(pid, &rawStatus) == pid ? decodeWaitStatus(rawStatus) : -1;
    if (output)
        *output = outBytes;
    if (error)
        *error = errBytes.isEmpty() ? QStringLiteral("") : QString::fromUtf8(errBytes); // empty, not nil
    return status;
}
