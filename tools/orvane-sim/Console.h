#pragma once

#include <QByteArray>
#include <QString>

// Unbuffered writes to the standard streams. The tools mix plain text with
// floods of megabytes and may die by a signal right after, so nothing may sit
// in a stdio buffer.
class Console final
{
public:
    static void out(const QString &text);
    static void err(const QString &text);
    // Text that is already UTF-8, such as a property list.
    static void outUtf8(const QByteArray &text);

    // Writes `bytes` bytes of 'x' lines to `fd`, blocking while the reader
    // does not drain the pipe.
    static void flood(int fd, qint64 bytes);

private:
    static void writeAll(int fd, const QByteArray &data);
};
