#pragma once

#include <QPointer>

#include <functional>

class QObject;
class QString;

// Runs `work` on a new detached thread. Anything it throws is caught and
// logged there, so no failure of a worker ends the program; `onException`
// then runs in its place with the exception's text.
void runOnWorkerThread(std::function<void()> work, std::function<void(const QString &)> onException = {});

// Queues `fn` to run on the main thread, unless `context` is gone by then.
// Call it from any thread; `context` must have been captured (QPointer) on
// the main thread.
void deliverOnMainThread(const QPointer<QObject> &context, std::function<void()> fn);
