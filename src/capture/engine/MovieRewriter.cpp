#include "MovieRewriter.h"

#include "GstHandles.h"

#include <gst/pbutils/pbutils.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QUrl>

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Temporary files of rewrites running in this process, which a new
// recording in the same folder must not take for leftovers.
std::mutex s_remuxMutex;
QSet<QString> s_activeRemuxes;

// Rewrites of another process (the capture agent shares the spool folder)
// keep writing to theirs; one untouched for this long was left by a crash.
constexpr qint64 kStaleRemuxSeconds = 60;

bool fsyncPath(const QByteArray &path, int flags)
{
    const int fd = ::open(path.constData(), flags | O_CLOEXEC);
    if (fd < 0)
        return false;
    const bool ok = ::fsync(fd) == 0;
    ::close(fd);
    return ok;
}

// The container duration of a movie file, read by the discoverer.
std::optional<GstClockTime> movieDuration(const QString &path)
{
    GError *raw = nullptr;
    GstDiscoverer *made = gst_discoverer_new(30 * GST_SECOND, &raw);
    Gst::ErrorPtr error(raw);
    if (!made)
        return std::nullopt;
    std::unique_ptr<GstDiscoverer, void (*)(GstDiscoverer *)> owner(made, [](GstDiscoverer *d) { g_object_unref(d); });
    const QByteArray uri = QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()).toEncoded();
    GstDiscovererInfo *info = gst_discoverer_discover_uri(made, uri.constData(), &raw);
    Gst::ErrorPtr discoverError(raw);
    if (!info)
        return std::nullopt;
    const GstClockTime duration = gst_discoverer_info_get_duration(info);
    const GstDiscovererResult result = gst_discoverer_info_get_result(info);
    g_object_unref(info);
    if (result != GST_DISCOVERER_OK || !GST_CLOCK_TIME_IS_VALID(duration))
        return std::nullopt;
    return duration;
}

} // namespace

void MovieRewriter::removeStaleTemporaries(const QString &folder)
{
    const QDateTime staleBefore = QDateTime::currentDateTime().addSecs(-kStaleRemuxSeconds);
    const QFileInfoList leftovers = QDir(folder).entryInfoList(
        { QStringLiteral("*") + QLatin1String(MovieRewriter::kTemporarySuffix) }, QDir::Files | QDir::Hidden);
    std::lock_guard lock(s_remuxMutex);
    for (const QFileInfo &file : leftovers)
        if (!s_activeRemuxes.contains(file.absoluteFilePath()) && file.lastModified() < staleBefore)
            QFile::remove(file.absoluteFilePath());
}

std::optional<Error> MovieRewriter::rewriteAsPlainMovie(const QString &path)
{
    Gst::ensureInitialized();
    const QByteArray original = QFile::encodeName(path);
    struct stat before = {};
    if (::stat(original.constData(), &before) != 0)
        return Error { kPosixErrorDomain, errno, QStringLiteral("Cannot read %1").arg(path) };
    const QString temporary = path + QLatin1String(MovieRewriter::kTemporarySuffix);
    const QByteArray temporaryName = QFile::encodeName(temporary);
    const QString temporaryKey = QFileInfo(temporary).absoluteFilePath();
    {
        std::lock_guard lock(s_remuxMutex);
        s_activeRemuxes.insert(temporaryKey);
    }
    struct Unregister
    {
        QString key;
        ~Unregister()
        {
            std::lock_guard lock(s_remuxMutex);
            s_activeRemuxes.remove(key);
        }
    } unregister { temporaryKey };

    // Where the original's samples end, seen as they are copied; the new
    // file must reach as far.
    struct Copy
    {
        GstElement *muxer = nullptr;
        std::atomic<GstClockTime> end { 0 };
    } copy;

    Gst::ElementRef pipeline(gst_pipeline_new("remux"), Gst::Ref::Adopt);
    Gst::ElementRef source = Gst::make("filesrc");
    Gst::ElementRef demux = Gst::make("qtdemux");
    Gst::ElementRef mux = Gst::make("qtmux");
    Gst::ElementRef sink = Gst::make("filesink");
    if (!source || !demux || !mux || !sink)
        return Gst::coreError(GST_CORE_ERROR_MISSING_PLUGIN, QStringLiteral("The QuickTime muxer is not installed."));
    copy.muxer = mux.element();
    g_object_set(source.get(), "location", original.constData(), nullptr);
    g_object_set(sink.get(), "location", temporaryName.constData(), nullptr);
    GstBin *bin = GST_BIN(pipeline.element());
    gst_bin_add_many(bin, source.element(), demux.element(), mux.element(), sink.element(), nullptr);
    Error linkError;
    if (!Gst::link(source.element(), demux.element(), &linkError)
        || !Gst::link(mux.element(), sink.element(), &linkError))
        return linkError;
    // Each track goes through a queue of its own into the new file; the
    // demuxer names its pads by kind, as the muxer's request pads are. A
    // track that cannot be joined fails the rewrite through the bus.
    const Gst::SignalConnection padAdded(demux.element(), "pad-added",
        G_CALLBACK(+[](GstElement *, GstPad *pad, gpointer data) {
            auto *copy = static_cast<Copy *>(data);
            Gst::CharPtr name(gst_pad_get_name(pad));
            const bool video = g_str_has_prefix(name.get(), "video");
            Gst::PadRef target(
                gst_element_request_pad_simple(copy->muxer, video ? "video_%u" : "audio_%u"), Gst::Ref::Adopt);
            Gst::ElementRef queue = Gst::make("queue");
            if (!target || !queue) {
                GST_ELEMENT_ERROR(copy->muxer, CORE, PAD, ("Cannot add a track to the rewritten movie."), (nullptr));
                return;
            }
            GstObject *parent = gst_object_get_parent(GST_OBJECT(copy->muxer));
            Gst::add(GST_ELEMENT(parent), queue);
            gst_object_unref(parent);
            Gst::PadRef queueSink(gst_element_get_static_pad(queue.element(), "sink"), Gst::Ref::Adopt);
            Gst::PadRef queueSrc(gst_element_get_static_pad(queue.element(), "src"), Gst::Ref::Adopt);
            if (!Gst::link(queueSrc.get(), target.get(), nullptr)) {
                GST_ELEMENT_ERROR(
                    copy->muxer, CORE, NEGOTIATION, ("Cannot add a track to the rewritten movie."), (nullptr));
                return;
            }
            gst_element_sync_state_with_parent(queue.element());
            gst_pad_add_probe(
                pad, GST_PAD_PROBE_TYPE_BUFFER,
                [](GstPad *, GstPadProbeInfo *info, gpointer data) {
                    auto *copy = static_cast<Copy *>(data);
                    GstBuffer *buffer = GST_PAD_PROBE_INFO_BUFFER(info);
                    if (GST_BUFFER_PTS_IS_VALID(buffer)) {
                        const GstClockTime end = GST_BUFFER_PTS(buffer)
                            + (GST_BUFFER_DURATION_IS_VALID(buffer) ? GST_BUFFER_DURATION(buffer) : 0);
                        GstClockTime seen = copy->end.load();
                        while (end > seen && !copy->end.compare_exchange_weak(seen, end)) { }
                    }
                    return GST_PAD_PROBE_OK;
                },
                copy, nullptr);
            if (!Gst::link(pad, queueSink.get(), nullptr))
                GST_ELEMENT_ERROR(copy->muxer, CORE, NEGOTIATION, ("Cannot read a track of the movie."), (nullptr));
        }),
        &copy);
    Gst::BusRef bus(gst_element_get_bus(pipeline.element()), Gst::Ref::Adopt);
    std::optional<Error> failure;
    if (gst_element_set_state(pipeline.element(), GST_STATE_PLAYING) == GST_STATE_CHANGE_FAILURE)
        failure = Gst::coreError(GST_CORE_ERROR_STATE_CHANGE, QStringLiteral("Cannot read %1").arg(path));
    if (!failure) {
        // A copy runs at disk speed; one that takes far longer than the
        // file's size explains is stuck, and the original is good as it is.
        const GstClockTime timeout = 10 * GST_SECOND + GstClockTime(before.st_size) / (4 * 1024 * 1024) * GST_SECOND;
        Gst::MessagePtr message(
            gst_bus_timed_pop_filtered(bus.get(), timeout, GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR)));
        if (!message)
            failure = Gst::coreError(GST_CORE_ERROR_FAILED, QStringLiteral("Rewriting %1 timed out").arg(path));
        else
            failure = Gst::errorFromMessage(message.get());
    }
    gst_element_set_state(pipeline.element(), GST_STATE_NULL);
    if (!failure) {
        // Within a frame or two; a shorter copy lost samples on the way.
        constexpr GstClockTime tolerance = 200 * GST_MSECOND;
        const GstClockTime wanted = copy.end.load();
        const std::optional<GstClockTime> got = movieDuration(temporary);
        if (!got || *got + tolerance < wanted || *got > wanted + tolerance)
            failure = Gst::coreError(GST_CORE_ERROR_FAILED,
                QStringLiteral("The rewritten %1 does not last as long as the original").arg(path));
    }
    if (!failure && !fsyncPath(temporaryName, O_RDONLY))
        failure = Error { kPosixErrorDomain, errno, QStringLiteral("Cannot write %1").arg(temporary) };
    if (!failure) {
        // The application may have submitted and deleted the file, or a new
        // recording may stand there now: the rewrite must not replace it.
        struct stat now = {};
        if (::stat(original.constData(), &now) != 0 || now.st_dev != before.st_dev || now.st_ino != before.st_ino)
            failure = Error { kPosixErrorDomain, ESTALE,
                QStringLiteral("%1 was removed or replaced while it was rewritten").arg(path) };
    }
    if (!failure && ::rename(temporaryName.constData(), original.constData()) != 0)
        failure = Error { kPosixErrorDomain, errno, QStringLiteral("Cannot replace %1").arg(path) };
    if (failure) {
        QFile::remove(temporary);
        return failure;
    }
    fsyncPath(QFile::encodeName(QFileInfo(path).absolutePath()), O_RDONLY | O_DIRECTORY);
    return std::nullopt;
}
