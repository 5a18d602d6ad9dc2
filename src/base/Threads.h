#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>
#include <type_traits>
#include <utility>

// Runs `work` on a new detached thread. Anything it throws is caught and
// logged there, so no failure of a worker ends the program; `onException`
// then runs in its place with the exception's text.
void runOnWorkerThread(std::function<void()> work, std::function<void(const QString &)> onException = {});

// Queues `fn` to run on the main thread, unless `context` is gone by then.
// Call it from any thread; `context` must have been captured (QPointer) on
// the main thread.
void deliverOnMainThread(const QPointer<QObject> &context, std::function<void()> fn);

namespace ThreadsDetail {

// `done` takes the context first when it asks for it.
template<typename Context, typename Done, typename... Result>
void finish(Context *context, Done &done, Result &&...result)
{
    if constexpr (std::is_invocable_v<Done &, Context *, Result...>)
        done(context, std::forward<Result>(result)...);
    else
        done(std::forward<Result>(result)...);
}

} // namespace ThreadsDetail

// The one way of doing blocking work off the main thread: `work()` runs on a
// new detached thread; its result goes to `done` on the main thread, as
// `done(context, result)` or `done(result)` (`done(context)` or `done()` for
// work without a result), unless `context` is gone by then. Should `work`
// throw, the exception is logged there and `fallback(text)`, called on the
// worker, makes the result `done` receives instead; work without a result
// takes `fallback(text)` for its side effects, and `done` still follows.
//
// Call it on the main thread: the context is watched from here on.
template<typename Context, typename Work, typename Done, typename Fallback>
void runInBackground(Context *context, Work work, Done done, Fallback fallback)
{
    static_assert(std::is_base_of_v<QObject, Context>, "the context is a QObject, whose end drops the delivery");
    using Result = std::invoke_result_t<Work &>;
    const QPointer<QObject> guard(context);
    if constexpr (std::is_void_v<Result>) {
        auto deliver = [guard, context, done] {
            deliverOnMainThread(guard, [context, done]() mutable { ThreadsDetail::finish(context, done); });
        };
        runOnWorkerThread([work, deliver]() mutable { work(), deliver(); },
            [fallback, deliver](const QString &failure) mutable { fallback(failure), deliver(); });
    } else {
        auto deliver = [guard, context, done](Result result) {
            deliverOnMainThread(guard, [context, done, result = std::move(result)]() mutable {
                ThreadsDetail::finish(context, done, std::move(result));
            });
        };
        runOnWorkerThread([work, deliver]() mutable { deliver(work()); },
            [fallback, deliver](const QString &failure) mutable { deliver(fallback(failure)); });
    }
}

// Work without a result whose failure needs nothing but the log line.
template<typename Context, typename Work, typename Done> void runInBackground(Context *context, Work work, Done done)
{
    static_assert(std::is_void_v<std::invoke_result_t<Work &>>, "work with a result names its fallback");
    runInBackground(context, std::move(work), std::move(done), [](const QString &) {});
}
