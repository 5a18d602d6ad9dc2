#include "Fault.h"

#include "Console.h"

#include <chrono>
#include <csignal>
#include <thread>
#include <unistd.h>

namespace {

void sleepFor(double seconds)
{
    // Sleep in slices: a "forever" hang is written as a huge number, which
    // must not overflow the clock's representation.
    constexpr double kSlice = 3600.0;
    while (seconds > 0) {
        const double now = seconds < kSlice ? seconds : kSlice;
        std::this_thread::sleep_for(std::chrono::duration<double>(now));
        seconds -= now;
    }
}

void dieBy(int signalNumber)
{
    std::signal(signalNumber, SIG_DFL);
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, signalNumber);
    sigprocmask(SIG_UNBLOCK, &set, nullptr);
    std::raise(signalNumber);
    // Signals whose default action is to carry on still end the run.
    _exit(128 + signalNumber);
}

} // namespace

bool Fault::appliesBeforeAuthentication() const
{
    return setting("before_auth").toBool();
}

void Fault::perform() const
{
    if (const QVariant hang = setting("hang"); hang.isValid())
        sleepFor(hang.toDouble());
    if (const QVariant bytes = setting("stderr_flood"); bytes.isValid())
        Console::flood(STDERR_FILENO, bytes.toLongLong());
    if (const QVariant bytes = setting("stdout_flood"); bytes.isValid())
        Console::flood(STDOUT_FILENO, bytes.toLongLong());
    if (const QVariant sig = setting("signal"); sig.isValid() && sig.toInt() > 0)
        dieBy(sig.toInt());
    if (const QVariant text = setting("stdout"); text.isValid())
        Console::out(text.toString());
    if (const QVariant text = setting("stderr"); text.isValid())
        Console::err(text.toString());
}

std::optional<int> Fault::exitStatus() const
{
    const QVariant status = setting("status");
    if (!status.isValid())
        return std::nullopt;
    return status.toInt();
}

bool Fault::suppressesPropertyList() const
{
    return setting("no_plist").toBool();
}

bool Fault::failsUpload() const
{
    return setting("upload_error").toBool();
}
