// The review before publishing: opening the player on a 10-minute recording
// until its first picture is there (target at most 300 ms), a seek until the
// picture at the new place is there (target at most 100 ms), and trimming a
// 1-hour recording (target at most 5 s).
//
// The recordings are made for the benchmark, as fast as the encoder goes:
// a live camera would take the hour it records. The pictures (640x360 at 30
// frames a second, a key frame every second, as our recorder makes them)
// and the sound (AAC at 48 kHz) come from test sources that are not paced
// by a clock, so an hour of media takes a minute or two to encode. The trim
// has no encoder in its pipeline: it copies the samples as they are.
//
// Usage: bench_review [FOLDER]   (default: a temporary folder)

#include "MoviePlayer.h"
#include "MovieRewriter.h"

#include <gst/gst.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr qint64 kSecond = 1'000'000'000;

bool makeRecording(const QString &path, int seconds)
{
    if (QFile::exists(path))
        return true;
    const QByteArray aac = gst_element_factory_find("voaacenc") ? "voaacenc" : "avenc_aac";
    const QByteArray description = "videotestsrc num-buffers=" + QByteArray::number(seconds * 30)
        + " pattern=ball ! video/x-raw,width=640,height=360,framerate=30/1 ! timeoverlay ! "
          "x264enc speed-preset=ultrafast tune=zerolatency key-int-max=30 option-string=scenecut=0 ! queue ! "
          "qtmux name=mux ! filesink location=\""
        + QFile::encodeName(path) + "\" audiotestsrc num-buffers=" + QByteArray::number(seconds * 48000 / 1024)
        + " samplesperbuffer=1024 ! audio/x-raw,rate=48000,channels=2 ! " + aac + " ! queue ! mux.";
    GstElement *pipeline = gst_parse_launch(description.constData(), nullptr);
    if (!pipeline)
        return false;
    gst_element_set_state(pipeline, GST_STATE_PLAYING);
    GstMessage *message = gst_bus_timed_pop_filtered(
        GST_ELEMENT_BUS(pipeline), 1800 * GST_SECOND, GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR));
    const bool made = message && GST_MESSAGE_TYPE(message) == GST_MESSAGE_EOS;
    if (message)
        gst_message_unref(message);
    gst_element_set_state(pipeline, GST_STATE_NULL);
    gst_object_unref(pipeline);
    return made;
}

// Milliseconds until the player shows a new picture, or -1.
double untilPicture(MoviePlayer &player, const std::function<void()> &action)
{
    QEventLoop loop;
    QElapsedTimer timer;
    const QMetaObject::Connection shown
        = QObject::connect(&player, &MoviePlayer::frameChanged, &loop, &QEventLoop::quit);
    QTimer::singleShot(10000, &loop, &QEventLoop::quit);
    timer.start();
    action();
    loop.exec();
    QObject::disconnect(shown);
    const double ms = double(timer.nsecsElapsed()) / 1e6;
    return ms >= 10000 ? -1 : ms;
}

void report(const char *what, std::vector<double> ms, double target)
{
    std::sort(ms.begin(), ms.end());
    std::printf(
        "%-34s median %8.1f ms   worst %8.1f ms   target %6.0f ms\n", what, ms[ms.size() / 2], ms.back(), target);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    gst_init(&argc, &argv);
    QTemporaryDir temporary;
    const QString folder = argc > 1 ? QString::fromLocal8Bit(argv[1]) : temporary.path();
    const QString tenMinutes = folder + QStringLiteral("/ten-minutes.mov");
    const QString oneHour = folder + QStringLiteral("/one-hour.mov");
    QElapsedTimer made;
    made.start();
    if (!makeRecording(tenMinutes, 600) || !makeRecording(oneHour, 3600)) {
        std::fprintf(stderr, "bench_review: the recordings could not be made\n");
        return 1;
    }
    std::printf("recordings made in %.1f s\n", double(made.elapsed()) / 1000);

    std::vector<double> opening, seeking;
    for (int run = 0; run < 5; ++run) {
        MoviePlayer player;
        opening.push_back(untilPicture(player, [&] { player.open({ tenMinutes }); }));
        for (const qint64 to : { 120 * kSecond, 301 * kSecond, 45 * kSecond, 555 * kSecond })
            seeking.push_back(untilPicture(player, [&] { player.seek(to); }));
    }
    report("open 10 min, first picture", opening, 300);
    report("seek, picture at the new place", seeking, 100);

    std::vector<double> trimming;
    for (int run = 0; run < 3; ++run) {
        const QString copy = folder + QStringLiteral("/trimmed.mov");
        QFile::remove(copy);
        QElapsedTimer timer;
        timer.start();
        const std::optional<Error> error = MovieRewriter::trimMovie(oneHour, copy, 600 * kSecond, 3000 * kSecond);
        trimming.push_back(double(timer.nsecsElapsed()) / 1e6);
        if (error) {
            std::fprintf(stderr, "bench_review: %s\n", qPrintable(error->localizedDescription));
            return 1;
        }
    }
    report("trim 1 h to 40 min (copy, no encode)", trimming, 5000);
    return 0;
}
