// The cost of running the server tool through launchCommand, side by side
// with a bare fork/exec/wait of the same program, and round trips per second
// of a workflow query against the bundled simulator.
#include "OrvaneServerInterface.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <sys/wait.h>
#include <unistd.h>

namespace {

double bareForkExecWait(const QByteArray &program, int iterations)
{
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < iterations; ++i) {
        const pid_t pid = ::fork();
        if (pid == 0) {
            char *const argv[] = { const_cast<char *>(program.constData()), nullptr };
            ::execv(program.constData(), argv);
            ::_exit(127);
        }
        int status = 0;
        ::waitpid(pid, &status, 0);
    }
    return timer.nsecsElapsed() / 1e3 / iterations;
}

double viaLaunchCommand(OrvaneServerInterface &interface, int iterations)
{
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < iterations; ++i) {
        QString output, error;
        interface.launchCommand(QStringLiteral("--listworkflows"), std::nullopt, &output, &error);
    }
    return timer.nsecsElapsed() / 1e3 / iterations;
}

} // namespace

int main(int argc, char *argv[])
{
    QTemporaryDir root;
    const QString tools = root.path() + QStringLiteral("/usr/libexec/orvane");
    QDir().mkpath(tools);
    // The same tiny program on both sides, so only the runner differs.
    QFile::copy(QStringLiteral("/bin/true"), tools + QStringLiteral("/orvxexec"));
    qputenv("LUMEX_SYSROOT", root.path().toUtf8());
    qputenv("HOME", root.path().toUtf8());

    auto interface = OrvaneServerInterface::create(
        Credentials { QStringLiteral("demo"), QStringLiteral("lumex"), QStringLiteral("localhost") },
        std::make_shared<PodcastJob>());

    const int iterations = 2000;
    const QByteArray program = QFile::encodeName(tools + QStringLiteral("/orvxexec"));
    // Interleave the two a few times so both see the same machine state.
    double bare = 0, ours = 0;
    for (int round = 0; round < 3; ++round) {
        bare += bareForkExecWait(program, iterations);
        ours += viaLaunchCommand(*interface, iterations);
    }
    bare /= 3;
    ours /= 3;
    std::printf("bare fork/exec/wait of the tool:   %7.1f us per run\n", bare);
    std::printf("launchCommand (pipes, password):   %7.1f us per run\n", ours);
    std::printf("overhead ratio: %.2fx (target <= 1.30x)\n", ours / bare);

    // Round trips against the simulator, when the build has one.
    QString simRoot = QString::fromLocal8Bit(LUMEX_SIM_ROOT);
    if (argc > 1)
        simRoot = QString::fromLocal8Bit(argv[1]);
    if (!QFile::exists(simRoot + QStringLiteral("/usr/libexec/orvane/orvxexec"))) {
        std::printf("simulator not found under %s: round trips skipped\n", qPrintable(simRoot));
        return 0;
    }
    QTemporaryDir simCopy;
    const QString simTools = simCopy.path() + QStringLiteral("/usr/libexec/orvane");
    QDir().mkpath(simTools);
    QFile::copy(simRoot + QStringLiteral("/usr/libexec/orvane/orvxexec"), simTools + QStringLiteral("/orvxexec"));
    qputenv("LUMEX_SYSROOT", simCopy.path().toUtf8());
    Error error;
    interface->getWorkflowsError(&error); // seeds the simulator's state
    QElapsedTimer timer;
    timer.start();
    int trips = 0;
    while (timer.elapsed() < 3000) {
        const auto list = interface->getWorkflowsError(&error);
        if (!list) {
            std::fprintf(stderr, "workflow query failed: %s\n", qPrintable(error.localizedDescription));
            return 1;
        }
        ++trips;
    }
    std::printf("--listworkflows against the simulator: %.1f round trips per second (%d in %.1f s)\n",
        trips / (timer.elapsed() / 1000.0), trips, timer.elapsed() / 1000.0);
    return 0;
}
