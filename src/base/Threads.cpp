#include "Threads.h"

#include "Log.h"

#include <QCoreApplication>
#include <QMetaObject>

#include <exception>
#include <thread>

void runOnWorkerThread(std::function<void()> work, std::function<void(const QString &)> onException)
{
    std::thread([work = std::move(work), onException = std::move(onException)] {
        QString failure;
        try {
            work();
            return;
        } catch (const std::exception &e) {
            failure = QString::fromLocal8Bit(e.what());
        } catch (...) {
            failure = QStringLiteral("unknown exception");
        }
        Log::format(QStringLiteral("Uncaught exception in a worker thread: %@"), { failure });
        if (onException)
            onException(failure);
    }).detach();
}

void deliverOnMainThread(const QPointer<QObject> &context, std::function<void()> fn)
{
    QCoreApplication *app = QCoreApplication::instance();
    if (!app)
        return;
    QMetaObject::invokeMethod(
        app,
        [context, fn = std::move(fn)] {
            if (context)
                fn();
        },
        Qt::QueuedConnection);
}
