// Remote camera snapshots at scale: 100 simulated cameras, each fetched over
// HTTPS every 2 s, the chosen one asked for a new snapshot every 5 s. Prints
// the main thread's longest stall (a 1 ms timer's largest gap) and the CPU
// share of this process over the run. Usage: bench_snapshots [SECONDS=60]
#include "LXController.h"
#include "SimSandbox.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>

#include <sys/resource.h>

namespace {

double cpuSeconds(int who)
{
    rusage usage {};
    getrusage(who, &usage);
    return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec + (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const double seconds = argc > 1 ? QString::fromLocal8Bit(argv[1]).toDouble() : 60.0;
    SimSandbox sim;
    QVariantList cameras;
    for (int i = 1; i <= 100; ++i)
        cameras << QVariantMap { { "name", QStringLiteral("Camera %1").arg(i, 3, 10, QLatin1Char('0')) },
            { "location", "Bench" } };
    QProcess host;
    if (!sim.installTools()
        || !SimSandbox::writePlist(sim.state("cameras.plist"), QVariantMap { { "cameras", cameras } })
        || !sim.startPreviewHost(host)) {
        std::fprintf(stderr, "bench_snapshots: the simulator did not start\n");
        return 1;
    }

    LXController controller;
    controller.awakeFromNib();
    LXUserLoginPanelController *panel = controller.loginPanel();
    panel->hostnameField()->setText(SimSandbox::kServerHost);
    panel->usernameField()->setText(SimSandbox::kUser);
    panel->passwordField()->setText(SimSandbox::kPassword);
    controller.loginPanelDidClickConnect(panel);
    if (!QTest::qWaitFor([&] { return controller.remoteCameraSnapshotRefreshTimer() != nullptr; }, 30000)) {
        std::fprintf(stderr, "bench_snapshots: sign-in failed\n");
        return 1;
    }
    controller.setJobCamera(controller.remoteCameras().value(0).toMap());

    QElapsedTimer clock;
    qint64 last = 0, longest = 0;
    QTimer probe;
    probe.setTimerType(Qt::PreciseTimer);
    QObject::connect(&probe, &QTimer::timeout, [&] {
        const qint64 now = clock.nsecsElapsed();
        longest = qMax(longest, now - last);
        last = now;
    });
    const double cpu0 = cpuSeconds(RUSAGE_SELF), children0 = cpuSeconds(RUSAGE_CHILDREN);
    clock.start();
    probe.start(1);
    QTest::qWait(int(seconds * 1000));
    const double wall = clock.nsecsElapsed() / 1e9;
    const double cpu = cpuSeconds(RUSAGE_SELF) - cpu0, children = cpuSeconds(RUSAGE_CHILDREN) - children0;
    probe.stop();

    int withSnapshot = 0;
    for (const QVariant &camera : controller.remoteCameras())
        withSnapshot += !QImage::fromData(camera.toMap().value("previewData").toByteArray()).isNull();
    std::printf("cameras: %lld, with a snapshot at the end: %d, run: %.1f s\n",
        qlonglong(controller.remoteCameras().size()), withSnapshot, wall);
    std::printf("longest main-thread stall: %.1f ms (target <= 16 ms)\n", longest / 1e6);
    std::printf(
        "CPU of the application process: %.1f%% of one core (target <= 5%%), incl. the 1 ms probe\n", 100 * cpu / wall);
    std::printf(
        "CPU of its finished children (the tool's preview requests): %.1f%% of one core\n", 100 * children / wall);
    host.kill();
    host.waitForFinished();
    return 0;
}
