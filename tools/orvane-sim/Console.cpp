#include "Console.h"

#include <cerrno>
#include <unistd.h>

void Console::out(const QString &text)
{
    writeAll(STDOUT_FILENO, text.toUtf8());
}

void Console::outUtf8(const QByteArray &text)
{
    writeAll(STDOUT_FILENO, text);
}

void Console::err(const QString &text)
{
    writeAll(STDERR_FILENO, text.toUtf8());
}

void Console::flood(int fd, qint64 bytes)
{
    constexpr qsizetype kLine = 80;
    QByteArray line(kLine - 1, 'x');
    line.append('\n');
    QByteArray chunk;
    chunk.reserve(kLine * 1024);
    for (int i = 0; i < 1024; ++i)
        chunk.append(line);

    while (bytes > 0) {
        const qsizetype n = qsizetype(qMin<qint64>(bytes, chunk.size()));
        if (n == chunk.size()) {
            writeAll(fd, chunk);
        } else {
            // Readers split on lines; the flood should end with a whole one.
            QByteArray tail = chunk.left(n);
            tail[n - 1] = '\n';
            writeAll(fd, tail);
        }
        bytes -= n;
    }
}

void Console::writeAll(int fd, const QByteArray &data)
{
    const char *p = data.constData();
    qsizetype left = data.size();
    while (left > 0) {
        const ssize_t n = ::write(fd, p, size_t(left));
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return; // the reader went away; nothing useful left to do
        }
        p += n;
        left -= n;
    }
}
