#include "Log.h"

#include <QMutex>
#include <QMutexLocker>

#include <cstdio>
#include <syslog.h>
#include <vector>

namespace Log {

struct Capture::Private
{
    mutable QMutex mutex;
    QStringList lines;
};

namespace {

// Never destroyed: detached worker threads may still log while the process
// runs its exit handlers.
QMutex &capturesMutex()
{
    static QMutex *mutex = new QMutex;
    return *mutex;
}

std::vector<Capture *> &captures()
{
    static auto *list = new std::vector<Capture *>;
    return *list;
}

bool mirrorToStderr()
{
    static const bool mirror = qEnvironmentVariable("LUMEX_LOG_STDERR") == QLatin1String("1");
    return mirror;
}

void openSyslogOnce()
{
    static const bool opened = [] {
        openlog("Lumex", LOG_PID, LOG_USER);
        return true;
    }();
    Q_UNUSED(opened);
}

} // namespace

void write(const QString &line)
{
    openSyslogOnce();
    const QByteArray utf8 = line.toUtf8();
    syslog(LOG_NOTICE, "%s", utf8.constData());
    if (mirrorToStderr())
        std::fprintf(stderr, "Lumex: %s\n", utf8.constData());

    QMutexLocker locker(&capturesMutex());
    for (Capture *capture : captures())
        capture->append(line);
}

Capture::Capture()
    : d(new Private)
{
    QMutexLocker locker(&capturesMutex());
    captures().push_back(this);
}

Capture::~Capture()
{
    {
        QMutexLocker locker(&capturesMutex());
        std::erase(captures(), this);
    }
    delete d;
}

QStringList Capture::lines() const
{
    QMutexLocker locker(&d->mutex);
    return d->lines;
}

void Capture::clear()
{
    QMutexLocker locker(&d->mutex);
    d->lines.clear();
}

void Capture::append(const QString &line)
{
    QMutexLocker locker(&d->mutex);
    d->lines << line;
}

} // namespace Log
