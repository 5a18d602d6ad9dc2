#pragma once

#include <QString>
#include <QStringList>

#include "Format.h"

// The one way diagnostics leave the program: one line to the system log
// (ident "Lumex"), mirrored to standard error when LUMEX_LOG_STDERR=1.
namespace Log {

void write(const QString &line);

// Formats a fixed text and writes it.
inline void format(const QString &fmt, std::initializer_list<FormatArg> args = {})
{
    write(lxFormat(fmt, args));
}

// Collects every line written while it exists, from any thread, so tests can
// assert on log output without a syslog daemon. Captures nest; the lines also
// still go to the system log.
class Capture final
{
public:
    Capture();
    ~Capture();
    Capture(const Capture &) = delete;
    Capture &operator=(const Capture &) = delete;

    QStringList lines() const;
    bool contains(const QString &line) const { return lines().contains(line); }
    void clear();

private:
    friend void write(const QString &line);
    void append(const QString &line);
    struct Private;
    Private *d;
};

} // namespace Log
