// Cost of a local 640x480@30 recording through CaptureDevicesController,
// next to gst-launch-1.0 running the same elements: CPU seconds per recorded
// second, peak resident memory, frames written against frames expected.
// Targets: at most 1.15x the bare pipeline's CPU, no dropped frame, under
// 120 MB resident for the whole application.
//
// With "screen": the screen beside the camera, both with the microphone,
// into two movies, next to gst-launch-1.0 running the same elements on the
// same inputs; also the start offset between the two movies (the first
// picture to reach each file). Targets: at most 1.10x the bare pipeline's
// CPU, under 150 MB resident, offset at most one frame. Needs an X display
// (xvfb-run -a -s "-screen 0 1920x1080x24" bench_capture screen).
//
// Usage: bench_capture [screen] [SECONDS]   (default 10)

#include "BenchCaptureDelegate.h"
#include "CaptureDevicesController.h"
#include "CaptureMovieFileOutput.h"
#include "LXDefaultsKeys.h"
#include "LXUserDefaults.h"
#include "PodcastJob.h"

#include <gst/gst.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include <csignal>
#include <vector>

#include <cstdio>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

double cpuSeconds(int who)
{
    rusage usage {};
    getrusage(who, &usage);
    return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec + (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

long peakResidentKiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    status.open(QIODevice::ReadOnly);
    for (const QByteArray &line : status.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').value(0).toLong();
    return 0;
}

int countVideoFrames(const QString &path)
{
    const QByteArray description = "filesrc location=\"" + path.toUtf8()
        + "\" ! qtdemux name=d d.video_0 ! fakesink name=sink signal-handoffs=true";
    GstElement *pipeline = gst_parse_launch(description.constData(), nullptr);
    if (!pipeline)
        return -1;
    int frames = 0;
    GstElement *sink = gst_bin_get_by_name(GST_BIN(pipeline), "sink");
    g_signal_connect(sink, "handoff",
        G_CALLBACK(+[](GstElement *, GstBuffer *, GstPad *, gpointer n) { ++*static_cast<int *>(n); }), &frames);
    gst_object_unref(sink);
    gst_element_set_state(pipeline, GST_STATE_PLAYING);
    GstBus *bus = gst_element_get_bus(pipeline);
    if (GstMessage *m
        = gst_bus_timed_pop_filtered(bus, 60 * GST_SECOND, GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR)))
        gst_message_unref(m);
    gst_object_unref(bus);
    gst_element_set_state(pipeline, GST_STATE_NULL);
    gst_object_unref(pipeline);
    return frames;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LUMEX_CAPTURE_HARDWARE", "0");
    qputenv("LUMEX_TEST_DEVICES", "camera:cam1;microphone:mic1");
    QApplication app(argc, argv);
    const bool screen = argc > 1 && qstrcmp(argv[1], "screen") == 0;
    const int seconds = argc > 1 + screen ? std::max(2, atoi(argv[1 + screen])) : 10;
    if (screen && qEnvironmentVariableIsEmpty("DISPLAY")) {
        std::fprintf(stderr, "The screen case needs an X display: run it under xvfb-run.\n");
        return 2;
    }
    QTemporaryDir dir;
    qputenv("HOME", dir.path().toUtf8());
    qputenv("LUMEX_SYSROOT", dir.path().toUtf8());
    LXUserDefaults::standard().setObject(dir.path(), LXDefaultsKeys::LocalRecordSpoolPath.key);

    // Through the client.
    BenchController controller;
    CaptureDevicesController devices;
    devices.setController(&controller);
    if (screen)
        devices.setupRecordingForScreenWithVideoDeviceUniqueID(
            std::make_shared<CaptureDevice>(
                CaptureDevice::Kind::Screen, QStringLiteral("screen"), QStringLiteral("Screen")),
            QStringLiteral("test:cam1"), QStringLiteral("test:mic1"));
    else
        devices.setupRecordingForVideoDeviceUniqueID(QStringLiteral("test:cam1"), QStringLiteral("test:mic1"));
    if (!devices.captureSession())
        return 1;
    const QString path = controller.theJob->movieFilePaths()->last();
    const QString screenPath = controller.theJob->movieFilePaths()->first();
    // When the first picture reached each movie's muxer.
    QList<qint64> firstPicture;
    for (const auto &output : devices.movieFileOutputs())
        QObject::connect(output.get(), &CaptureMovieFileOutput::firstSampleRecorded,
            [&firstPicture](const QString &mediaType, qint64 ns) {
                if (mediaType == MediaType::Video)
                    firstPicture << ns;
            });
    const double cpuBefore = cpuSeconds(RUSAGE_SELF);
    QElapsedTimer wall;
    wall.start();
    devices.beginRecording();
    QTimer::singleShot(seconds * 1000, [&] { devices.stopRecording(); });
    QEventLoop loop;
    QTimer poll;
    poll.callOnTimeout([&] {
        if (controller.stopped)
            loop.quit();
    });
    poll.start(50);
    loop.exec();
    const double clientCpu = cpuSeconds(RUSAGE_SELF) - cpuBefore;
    const double recorded = wall.elapsed() / 1000.0;
    const long peakKiB = peakResidentKiB();
    const int frames = countVideoFrames(path);

    // The bare pipeline.
    const QString barePath = dir.path() + QStringLiteral("/bare.mov");
    // Its CPU time comes from wait4() on that very child, so nothing else
    // the benchmark started is counted with it.
    QByteArray pipeline = "videotestsrc is-live=true pattern=smpte ! video/x-raw,width=640,height=480,framerate=30/1 ! "
                          "timeoverlay ! videoconvert ! videoscale ! video/x-raw,format=I420 ! "
                          "x264enc tune=zerolatency speed-preset=veryfast key-int-max=60 ! queue ! mux. "
                          "audiotestsrc is-live=true wave=sine ! audio/x-raw,rate=48000,channels=2 ! audioconvert ! "
                          "audioresample ! voaacenc bitrate=192000 ! tee name=sound ! queue ! mux. "
                          "qtmux name=mux fragment-duration=500 ! filesink location="
        + barePath.toUtf8();
    // The same elements for the screen's movie, fitted as the client fits
    // it; the sound encoded once for both, as the client does.
    if (screen)
        pipeline += " ximagesrc use-damage=false show-pointer=true ! video/x-raw,framerate=15/1 ! videoconvert ! "
                    "videoscale ! video/x-raw,format=I420 ! x264enc tune=zerolatency+stillimage "
                    "speed-preset=veryfast key-int-max=15 ! queue ! smux. sound. ! queue ! smux. qtmux name=smux "
                    "fragment-duration=500 ! filesink location="
            + barePath.toUtf8() + ".screen.mov";
    // One argument per token: gst-launch quotes an argument that holds spaces.
    QList<QByteArray> tokens = pipeline.split(' ');
    std::vector<char *> argvBare { const_cast<char *>("gst-launch-1.0"), const_cast<char *>("-e"),
        const_cast<char *>("-q") };
    for (QByteArray &t : tokens)
        argvBare.push_back(t.data());
    argvBare.push_back(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        ::execvp("gst-launch-1.0", argvBare.data());
        ::_exit(127);
    }
    QThread::sleep(seconds);
    ::kill(child, SIGINT); // with -e: end-of-stream, a finished file
    int status = 0;
    rusage childUsage {};
    ::wait4(child, &status, 0, &childUsage);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        std::fprintf(stderr, "gst-launch-1.0 ended with status %d\n", status);
    const double bareCpu = childUsage.ru_utime.tv_sec + childUsage.ru_stime.tv_sec
        + (childUsage.ru_utime.tv_usec + childUsage.ru_stime.tv_usec) / 1e6;

    std::printf("recorded seconds              %8.2f\n", recorded);
    std::printf("client CPU s per recorded s   %8.3f\n", clientCpu / recorded);
    std::printf("gst-launch CPU s per s        %8.3f\n", bareCpu / seconds);
    std::printf("ratio client / bare           %8.2f   (target <= %s)\n",
        bareCpu > 0 ? (clientCpu / recorded) / (bareCpu / seconds) : 0.0, screen ? "1.10" : "1.15");
    std::printf("client peak resident MB       %8.1f   (target < %d)\n", peakKiB / 1024.0, screen ? 150 : 120);
    std::printf("frames written / expected     %5d / %d%s\n", frames, int(recorded * 30), screen ? " (camera)" : "");
    if (screen) {
        std::printf(
            "frames written / expected     %5d / %d (screen)\n", countVideoFrames(screenPath), int(recorded * 15));
        std::printf("start offset between movies   %8.1f ms (target <= one frame: 33.3 ms)\n",
            firstPicture.size() == 2 ? std::abs(firstPicture[0] - firstPicture[1]) / 1e6 : -1.0);
    }
    return 0;
}
