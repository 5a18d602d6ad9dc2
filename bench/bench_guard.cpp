// How soon the recording guard speaks up, and what it costs. A capture
// session runs a test camera and microphone (640x480@30, 48 kHz stereo) as a
// recording does, and the guard checks it as the record page does. Prints:
// - for each condition, the seconds from its cause (the test device goes
//   silent, clips or freezes) to the banner's signal, and from the cause's
//   end to the banner's clearing (targets: silence 10 s ± 1 s, frozen
//   picture 3 s ± 1 s);
// - a removed microphone: the seconds until the session has replaced it
//   and says so, the recording going on (target at most 2 s);
// - the guard's cost: CPU seconds per second of sessions that count their
//   streams' health and are checked, less those of sessions that are not,
//   as a share of one core (target at most 1%), median of alternating runs.
//
// Usage: bench_guard [SECONDS PER COST RUN]   (default 5)

#include "CaptureDeviceRegistry.h"
#include "CaptureSession.h"
#include "RecordingGuard.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <sys/resource.h>

namespace {

double cpuSeconds()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec + (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

struct Running
{
    std::shared_ptr<CaptureSession> session = std::make_shared<CaptureSession>();
    QList<CaptureInputPtr> inputs;
    RecordingGuard::Reading reading;

    bool start(const QStringList &ids)
    {
        for (const QString &id : ids) {
            CaptureDevicePtr device = CaptureDeviceRegistry::instance().deviceWithUniqueID(id);
            Error error;
            if (!device || !device->open(&error))
                return false;
            inputs << std::make_shared<CaptureDeviceInput>(device);
            if (!session->addInput(inputs.last(), &error))
                return false;
        }
        session->startRunning();
        for (const CaptureConnectionPtr &connection : session->activeConnections())
            (connection->mediaType() == MediaType::Sound ? reading.sound : reading.picture) = connection;
        reading.begun = reading.recording = true;
        return session->isRunning();
    }
    ~Running()
    {
        session->stopRunning();
        for (const CaptureInputPtr &input : std::as_const(inputs))
            input->device()->close();
    }
};

// Runs the event loop until `done` or `limitMs`; the seconds waited, or -1.
double waitFor(const std::function<bool()> &done, int limitMs)
{
    QElapsedTimer timer;
    timer.start();
    while (!done()) {
        if (timer.elapsed() > limitMs)
            return -1;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return timer.elapsed() / 1000.0;
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("LUMEX_CAPTURE_HARDWARE", "0");
    qputenv("LUMEX_TEST_DEVICES", "camera:cam:Bench Camera;microphone:mic:Bench Microphone");
    QApplication app(argc, argv);
    const int costSeconds = argc > 1 ? std::max(1, atoi(argv[1])) : 5;
    CaptureDeviceRegistry &registry = CaptureDeviceRegistry::instance();

    std::printf("condition            shows after   clears after\n");
    struct Case
    {
        const char *name;
        const char *device;
        CaptureDevice::TestSignal signal;
        QString id;
    };
    using Signal = CaptureDevice::TestSignal;
    for (const Case &c : { Case { "silence", "test:mic", Signal::Silent, RecordingGuard::kSilence },
             Case { "clipping", "test:mic", Signal::Clipping, RecordingGuard::kClipping },
             Case { "frozen picture", "test:cam", Signal::Frozen, RecordingGuard::kFrozen } }) {
        Running running;
        if (!running.start({ "test:cam", "test:mic" })) {
            std::fprintf(stderr, "The test devices did not start.\n");
            return 1;
        }
        RecordingGuard guard;
        QTimer checks;
        QObject::connect(&checks, &QTimer::timeout, [&] { guard.check(running.reading, StreamHealth::nowMs()); });
        checks.start(RecordingGuard::kCheckIntervalMs);
        waitFor([] { return false; }, 1500); // a second of normal recording first
        const CaptureDevicePtr device = registry.deviceWithUniqueID(c.device);
        device->setTestSignal(c.signal);
        const double shows = waitFor([&] { return guard.raisedConditions().contains(c.id); }, 20000);
        device->setTestSignal(Signal::Normal);
        const double clears = waitFor([&] { return !guard.raisedConditions().contains(c.id); }, 20000);
        std::printf("%-20s %8.2f s %12.2f s\n", c.name, shows, clears);
    }

    {
        // Unplugged: the test device fails its source as hardware does, and
        // the recording goes on without it.
        registry.addTestDevice(QStringLiteral("microphone:gone:Unplugged Microphone"));
        Running running;
        if (running.start({ "test:cam", "test:gone" })) {
            running.session->setContinuesWithoutFailedDevices(true);
            bool told = false;
            QObject::connect(running.session.get(), &CaptureSession::inputLost, [&] { told = true; });
            waitFor([] { return false; }, 1000);
            registry.removeTestDevice(QStringLiteral("test:gone"));
            const double shows = waitFor([&] { return told; }, 10000);
            waitFor([] { return false; }, 1000);
            std::printf("%-20s %8.2f s   (the session %s a second later)\n", "removed microphone", shows,
                running.session->isRunning() ? "still runs" : "has stopped");
        }
    }

    // Alternating runs with and without the guard, so the machine's load
    // falls on both alike.
    std::vector<double> with, without;
    for (int round = 0; round < 3; ++round) {
        for (const bool guarded : { true, false }) {
            CaptureSession::setCountsStreamHealth(guarded);
            Running running;
            running.start({ "test:cam", "test:mic" });
            RecordingGuard guard;
            QTimer checks;
            if (guarded) {
                QObject::connect(
                    &checks, &QTimer::timeout, [&] { guard.check(running.reading, StreamHealth::nowMs()); });
                checks.start(RecordingGuard::kCheckIntervalMs);
            }
            waitFor([] { return false; }, 500);
            const double cpu = cpuSeconds();
            QElapsedTimer wall;
            wall.start();
            waitFor([] { return false; }, costSeconds * 1000);
            (guarded ? with : without).push_back((cpuSeconds() - cpu) / (wall.elapsed() / 1000.0));
        }
    }
    std::sort(with.begin(), with.end());
    std::sort(without.begin(), without.end());
    std::printf("CPU per second: guarded %.4f, unguarded %.4f; the guard costs %.2f%% of a core\n", with[1], without[1],
        (with[1] - without[1]) * 100);
    return 0;
}
