// From the countdown's close to the first recorded sample, for a local video
// recording (the client's own recorder, attached to the running preview)
// and a local audio recording (the capture agent, started through the
// server interface), with test devices. "Recorded" means the buffer entered
// the movie's muxer; both sides stamp CLOCK_MONOTONIC, which the agent's
// process shares with ours. Target: at most 250 ms.
//
// Usage: bench_first_sample [RUNS]   (default 5)

#include "BenchCaptureDelegate.h"
#include "CaptureDevicesController.h"
#include "CaptureMovieFileOutput.h"
#include "LXDefaultsKeys.h"
#include "LXUserDefaults.h"
#include "LocalAgentTask.h"
#include "OrvaneServerInterface.h"
#include "PodcastJob.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <vector>

namespace {

qint64 monotonicNs()
{
    timespec now {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return qint64(now.tv_sec) * 1000000000 + now.tv_nsec;
}

void report(const char *what, std::vector<double> ms)
{
    if (ms.empty()) {
        std::printf("%-40s no sample recorded\n", what);
        return;
    }
    std::sort(ms.begin(), ms.end());
    std::printf("%-40s median %6.1f ms, worst %6.1f ms of %zu (target <= 250 ms)\n", what, ms[ms.size() / 2], ms.back(),
        ms.size());
}

// One local video recording per run: the preview runs for a second, then
// the countdown closes.
void video(int runs, std::vector<double> *pictures, std::vector<double> *sound)
{
    BenchController controller;
    CaptureDevicesController devices;
    devices.setController(&controller);
    for (int i = 0; i < runs; ++i) {
        devices.setupRecordingForVideoDeviceUniqueID(QStringLiteral("test:cam1"), QStringLiteral("test:mic1"));
        if (!devices.captureSession()) {
            std::fprintf(stderr, "no capture session\n");
            return;
        }
        QTest::qWait(1000);
        std::shared_ptr<CaptureMovieFileOutput> output;
        for (const CaptureOutputPtr &candidate : devices.captureSession()->outputs())
            if (auto file = std::dynamic_pointer_cast<CaptureMovieFileOutput>(candidate))
                output = file;
        qint64 picture = 0, audio = 0;
        QObject::connect(output.get(), &CaptureMovieFileOutput::firstSampleRecorded,
            [&](const QString &type, qint64 ns) { (type == MediaType::Video ? picture : audio) = ns; });
        const qint64 close = monotonicNs();
        devices.beginRecording();
        (void)QTest::qWaitFor([&] { return picture && audio; }, 5000);
        if (picture)
            pictures->push_back((picture - close) / 1e6);
        if (audio)
            sound->push_back((audio - close) / 1e6);
        controller.stopped = false;
        devices.stopRecording();
        (void)QTest::qWaitFor([&] { return controller.stopped; }, 20000);
    }
}

// One local audio recording per run through the agent; its stamp is in the
// simulator's state folder.
void audio(int runs, const QString &root, std::vector<double> *sound)
{
    const QString stamp = root + QStringLiteral("/var/lib/orvane-sim/agent-first-sample");
    for (int i = 0; i < runs; ++i) {
        auto job = std::make_shared<PodcastJob>();
        job->setLocalAudioDeviceName(QStringLiteral("test:mic1"));
        auto interface = OrvaneServerInterface::create({}, job);
        QFile::remove(stamp);
        Error error;
        const qint64 close = monotonicNs();
        if (interface->startLocalAudioJob(job.get(), &error) != 0) {
            std::fprintf(stderr, "agent: %s\n", qPrintable(error.localizedDescription));
            return;
        }
        (void)QTest::qWaitFor([&] { return QFile::exists(stamp); }, 5000);
        QFile file(stamp);
        if (file.open(QIODevice::ReadOnly))
            sound->push_back((file.readAll().trimmed().toLongLong() - close) / 1e6);
        const std::shared_ptr<LocalAgentTask> agent = job->localAgentTask();
        interface->stopLocalJob(job.get(), &error);
        (void)QTest::qWaitFor([&] { return !agent || !agent->isRunning(); }, 20000);
    }
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LUMEX_CAPTURE_HARDWARE", "0");
    qputenv("LUMEX_TEST_DEVICES", "camera:cam1:Test Camera;microphone:mic1");
    QApplication app(argc, argv);
    const int runs = argc > 1 ? std::max(1, atoi(argv[1])) : 5;
    QTemporaryDir root;
    qputenv("HOME", root.path().toUtf8());
    qputenv("LUMEX_SYSROOT", root.path().toUtf8());
    const QString tools = root.path() + QStringLiteral("/usr/libexec/orvane/");
    QDir().mkpath(tools);
    for (const char *tool : { "orvxexec", "orvxagentd" }) {
        const QString built = QStringLiteral(LUMEX_SIM_ROOT "/usr/libexec/orvane/") + QLatin1String(tool);
        QFile::copy(built, tools + QLatin1String(tool));
        QFile::setPermissions(tools + QLatin1String(tool), QFile::permissions(built));
    }
    LXUserDefaults::standard().setObject(root.path(), LXDefaultsKeys::LocalRecordSpoolPath.key);

    std::vector<double> pictures, sound, agent;
    video(runs, &pictures, &sound);
    audio(runs, root.path(), &agent);
    report("local video: first picture in the muxer", pictures);
    report("local video: first sound in the muxer", sound);
    report("local audio (agent): first sound", agent);
    return 0;
}
