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

// A temporary file this process is writing, which a new recording in the
// same folder must not take for a leftover.
struct ActiveTemporary
{
    QString key;
    explicit ActiveTemporary(const QString &path)
        : key(QFileInfo(path).absoluteFilePath())
    {
        std::lock_guard lock(s_remuxMutex);
        s_activeRemuxes.insert(key);
    }
    ~ActiveTemporary()
    {
        std::lock_guard lock(s_remuxMutex);
        s_activeRemuxes.remove(key);
    }
};

// How much of one track the muxer keeps while it waits for another's next
// sample. Files interleave far more closely; a track with nothing to give
// for longer (one that starts late, or has a hole) is told so by gaps (see
// fillLaggingTracks).
constexpr GstClockTime kInterleave = 5 * GST_SECOND;

// What the copy saw of the original's samples, and the range it keeps, in
// the movie's own times (stream time); an unbounded range keeps all.
struct Copy
{
    GstElement *muxer = nullptr;
    GstClockTime keepFrom = 0;
    GstClockTime keepUntil = GST_CLOCK_TIME_NONE;
    std::atomic<GstClockTime> first { GST_CLOCK_TIME_NONE };
    std::atomic<GstClockTime> end { 0 };
    std::mutex tracksMutex;
    std::vector<struct Track *> tracks; // owned by their pads' probes
};

// One track of the copy. A trim restamps the track so that the kept range
// starts the new movie, and drops what lies outside it: the muxer sees only
// the range, as if the movie had been recorded so.
struct Track
{
    Copy *copy;
    GstPad *pad; // the demuxer's
    GstSegment segment; // as the demuxer sent it
    GstSegment sent; // as the muxer has it
    bool hasSegment = false;
    bool ended = false;
    // How far the muxer has this track, in running time: by its samples, or
    // by the gaps that stand in for samples still to come.
    GstClockTime reached = 0;
};

// The demuxer hands over samples in time order, so a track that lags far
// behind another has nothing to give for a while (its first sample lies
// further on, or it has a hole). The muxer waits for every track, and must
// be told there is nothing to wait for, or it stops the copy.
void fillLaggingTracks(Track *leading, GstClockTime now)
{
    Copy *copy = leading->copy;
    std::lock_guard lock(copy->tracksMutex);
    for (Track *other : copy->tracks) {
        if (other == leading || other->ended || !other->hasSegment || now < other->reached + kInterleave / 2)
            continue;
        const GstClockTime until = now - kInterleave / 4;
        const GstClockTime from = gst_segment_position_from_running_time(&other->sent, GST_FORMAT_TIME, other->reached);
        const GstClockTime to = gst_segment_position_from_running_time(&other->sent, GST_FORMAT_TIME, until);
        other->reached = until;
        Gst::PadRef peer(gst_pad_get_peer(other->pad), Gst::Ref::Adopt);
        if (peer && GST_CLOCK_TIME_IS_VALID(from) && GST_CLOCK_TIME_IS_VALID(to) && to > from)
            gst_pad_send_event(peer.get(), gst_event_new_gap(from, to - from));
    }
}

void noteSample(Copy *copy, GstClockTime start, GstClockTime duration)
{
    const GstClockTime end = start + (GST_CLOCK_TIME_IS_VALID(duration) ? duration : 0);
    GstClockTime seen = copy->end.load();
    while (end > seen && !copy->end.compare_exchange_weak(seen, end)) { }
    GstClockTime first = copy->first.load();
    while ((first == GST_CLOCK_TIME_NONE || start < first) && !copy->first.compare_exchange_weak(first, start)) { }
}

GstPadProbeReturn watchTrack(GstPad *pad, GstPadProbeInfo *info, gpointer data)
{
    auto *track = static_cast<Track *>(data);
    Copy *copy = track->copy;
    const bool trimming = copy->keepFrom > 0 || GST_CLOCK_TIME_IS_VALID(copy->keepUntil);
    if (GST_PAD_PROBE_INFO_TYPE(info) & GST_PAD_PROBE_TYPE_BUFFER) {
        GstBuffer *buffer = GST_PAD_PROBE_INFO_BUFFER(info);
        if (track->ended)
            return GST_PAD_PROBE_DROP;
        if (!GST_BUFFER_PTS_IS_VALID(buffer))
            return trimming ? GST_PAD_PROBE_DROP : GST_PAD_PROBE_OK;
        const GstClockTime time = gst_segment_to_stream_time(&track->segment, GST_FORMAT_TIME, GST_BUFFER_PTS(buffer));
        if (!GST_CLOCK_TIME_IS_VALID(time) || time < copy->keepFrom)
            return GST_PAD_PROBE_DROP;
        if (GST_CLOCK_TIME_IS_VALID(copy->keepUntil) && time >= copy->keepUntil) {
            // Past the range: this track ends here, and the demuxer stops
            // reading once every track has.
            track->ended = true;
            Gst::PadRef peer(gst_pad_get_peer(pad), Gst::Ref::Adopt);
            if (peer)
                gst_pad_send_event(peer.get(), gst_event_new_eos());
            return GST_PAD_PROBE_DROP;
        }
        noteSample(copy, time, GST_BUFFER_DURATION(buffer));
        const GstClockTime running
            = gst_segment_to_running_time(&track->sent, GST_FORMAT_TIME, GST_BUFFER_DTS_OR_PTS(buffer));
        if (GST_CLOCK_TIME_IS_VALID(running)) {
            track->reached = std::max(track->reached, running);
            fillLaggingTracks(track, running);
        }
        return GST_PAD_PROBE_OK;
    }
    GstEvent *event = GST_PAD_PROBE_INFO_EVENT(info);
    if (GST_EVENT_TYPE(event) == GST_EVENT_EOS && track->ended)
        return GST_PAD_PROBE_DROP;
    if (GST_EVENT_TYPE(event) != GST_EVENT_SEGMENT)
        return GST_PAD_PROBE_OK;
    const GstSegment *segment = nullptr;
    gst_event_parse_segment(event, &segment);
    track->segment = *segment;
    track->sent = *segment;
    track->hasSegment = segment->format == GST_FORMAT_TIME;
    if (!trimming || segment->format != GST_FORMAT_TIME)
        return GST_PAD_PROBE_OK;
    // The kept range's start becomes the new movie's zero: the buffers keep
    // their times, and the segment says where they now begin.
    GstSegment kept = *segment;
    if (segment->time >= copy->keepFrom) {
        // A track that begins after the mark (its movie says so with an
        // edit) begins as far into the copy.
        kept.base = segment->time - copy->keepFrom;
    } else {
        kept.start = segment->start + (copy->keepFrom - segment->time);
        kept.time = copy->keepFrom;
        kept.base = 0;
    }
    kept.position = kept.start;
    track->sent = kept;
    gst_event_unref(event);
    GST_PAD_PROBE_INFO_DATA(info) = gst_event_new_segment(&kept);
    return GST_PAD_PROBE_OK;
}

// The time of the last key frame at or before `time` in the movie's video
// track, read from the start of the file; `time` itself for a movie without
// pictures, or when it cannot be told.
struct KeyFrameSearch
{
    GstClockTime time;
    std::atomic<GstClockTime> found { GST_CLOCK_TIME_NONE };
};

GstPadProbeReturn watchForKeyFrames(GstPad *pad, GstPadProbeInfo *info, gpointer data)
{
    auto *search = static_cast<KeyFrameSearch *>(data);
    if (!(GST_PAD_PROBE_INFO_TYPE(info) & GST_PAD_PROBE_TYPE_BUFFER))
        return GST_PAD_PROBE_OK;
    // A pad whose sink has ended gets its buffers refused, and the demuxer
    // stops once every track is refused.
    if (g_object_get_data(G_OBJECT(pad), "lumex-ended"))
        return GST_PAD_PROBE_OK;
    GstBuffer *buffer = GST_PAD_PROBE_INFO_BUFFER(info);
    Gst::CharPtr name(gst_pad_get_name(pad));
    bool end = !g_str_has_prefix(name.get(), "video");
    if (!end && GST_BUFFER_PTS_IS_VALID(buffer)) {
        Gst::EventPtr sticky(gst_pad_get_sticky_event(pad, GST_EVENT_SEGMENT, 0));
        const GstSegment *segment = nullptr;
        if (sticky)
            gst_event_parse_segment(sticky.get(), &segment);
        const GstClockTime at = segment ? gst_segment_to_stream_time(segment, GST_FORMAT_TIME, GST_BUFFER_PTS(buffer))
                                        : GST_CLOCK_TIME_NONE;
        if (!GST_CLOCK_TIME_IS_VALID(at) || at > search->time)
            end = true;
        else if (!GST_BUFFER_FLAG_IS_SET(buffer, GST_BUFFER_FLAG_DELTA_UNIT))
            search->found = at;
    }
    if (!end)
        return GST_PAD_PROBE_DROP;
    g_object_set_data(G_OBJECT(pad), "lumex-ended", GINT_TO_POINTER(1));
    Gst::PadRef peer(gst_pad_get_peer(pad), Gst::Ref::Adopt);
    if (peer)
        gst_pad_send_event(peer.get(), gst_event_new_eos());
    return GST_PAD_PROBE_DROP;
}

GstClockTime keyFrameAtOrBefore(const QString &path, GstClockTime time)
{
    if (time == 0)
        return 0;
    Gst::ElementRef pipeline(gst_pipeline_new("keyframe"), Gst::Ref::Adopt);
    Gst::ElementRef source = Gst::make("filesrc");
    Gst::ElementRef demux = Gst::make("qtdemux");
    if (!pipeline || !source || !demux)
        return time;
    g_object_set(source.get(), "location", QFile::encodeName(path).constData(), nullptr);
    gst_bin_add_many(GST_BIN(pipeline.element()), source.element(), demux.element(), nullptr);
    if (!Gst::link(source.element(), demux.element(), nullptr))
        return time;
    KeyFrameSearch search { time };
    const Gst::SignalConnection padAdded(demux.element(), "pad-added",
        G_CALLBACK(+[](GstElement *demux, GstPad *pad, gpointer data) {
            Gst::ElementRef sink = Gst::make("fakesink");
            if (!sink)
                return;
            g_object_set(sink.get(), "sync", FALSE, "async", FALSE, nullptr);
            GstObject *parent = gst_object_get_parent(GST_OBJECT(demux));
            Gst::add(GST_ELEMENT(parent), sink);
            gst_object_unref(parent);
            gst_element_sync_state_with_parent(sink.element());
            gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_BUFFER, watchForKeyFrames, data, nullptr);
            Gst::PadRef into(gst_element_get_static_pad(sink.element(), "sink"), Gst::Ref::Adopt);
            Gst::link(pad, into.get(), nullptr);
        }),
        &search);
    Gst::BusRef bus(gst_element_get_bus(pipeline.element()), Gst::Ref::Adopt);
    if (gst_element_set_state(pipeline.element(), GST_STATE_PLAYING) != GST_STATE_CHANGE_FAILURE)
        Gst::MessagePtr(gst_bus_timed_pop_filtered(
            bus.get(), 30 * GST_SECOND, GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR)));
    gst_element_set_state(pipeline.element(), GST_STATE_NULL);
    const GstClockTime found = search.found.load();
    return GST_CLOCK_TIME_IS_VALID(found) ? found : time;
}

// Each track goes straight into the new file, from the demuxer's one
// thread: a queue per track would cost two thread hand-overs per sample,
// which is most of a copy's time. The muxer holds a few seconds of each track
// instead (see kInterleave), so a track whose next sample lies further on
// waits for the other. The demuxer names its pads by kind, as the muxer's
// request pads are. A track that cannot be joined fails the copy through the
// bus.
void addTrack(GstElement *, GstPad *pad, gpointer data)
{
    auto *copy = static_cast<Copy *>(data);
    Gst::CharPtr name(gst_pad_get_name(pad));
    const bool video = g_str_has_prefix(name.get(), "video");
    Gst::PadRef target(gst_element_request_pad_simple(copy->muxer, video ? "video_%u" : "audio_%u"), Gst::Ref::Adopt);
    if (!target) {
        GST_ELEMENT_ERROR(copy->muxer, CORE, PAD, ("Cannot add a track to the new movie."), (nullptr));
        return;
    }
    auto *track = new Track { copy, pad, {}, {} };
    {
        std::lock_guard lock(copy->tracksMutex);
        copy->tracks.push_back(track);
    }
    gst_pad_add_probe(pad, GstPadProbeType(GST_PAD_PROBE_TYPE_BUFFER | GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM), watchTrack,
        track, [](gpointer data) { delete static_cast<Track *>(data); });
    if (!Gst::link(pad, target.get(), nullptr))
        GST_ELEMENT_ERROR(copy->muxer, CORE, NEGOTIATION, ("Cannot read a track of the movie."), (nullptr));
}

// Copies the samples of the movie `from` into a new plain movie `to`,
// from the key frame at or before `range->first` to `range->second` when a
// range is given. Fails when the copy does not last as long as what it read.
std::optional<Error> copyMovie(const QString &from, const QString &to, qint64 size,
    std::optional<std::pair<GstClockTime, GstClockTime>> range = std::nullopt)
{
    Copy copy;
    if (range) {
        // From a key frame, so that the first picture decodes; the sound
        // starts with it.
        copy.keepFrom = keyFrameAtOrBefore(from, range->first);
        if (range->second > 0 && GST_CLOCK_TIME_IS_VALID(range->second))
            copy.keepUntil = range->second;
    }
    Gst::ElementRef pipeline(gst_pipeline_new("remux"), Gst::Ref::Adopt);
    Gst::ElementRef source = Gst::make("filesrc");
    Gst::ElementRef demux = Gst::make("qtdemux");
    Gst::ElementRef mux = Gst::make("qtmux");
    Gst::ElementRef sink = Gst::make("filesink");
    if (!source || !demux || !mux || !sink)
        return Gst::coreError(GST_CORE_ERROR_MISSING_PLUGIN, QStringLiteral("The QuickTime muxer is not installed."));
    copy.muxer = mux.element();
    g_object_set(mux.get(), "latency", kInterleave, nullptr);
    g_object_set(source.get(), "location", QFile::encodeName(from).constData(), nullptr);
    // Written in large blocks: a sample at a time costs a system call each.
    g_object_set(sink.get(), "location", QFile::encodeName(to).constData(), "buffer-mode", 0, "buffer-size",
        guint(4 << 20), nullptr);
    GstBin *bin = GST_BIN(pipeline.element());
    gst_bin_add_many(bin, source.element(), demux.element(), mux.element(), sink.element(), nullptr);
    Error linkError;
    if (!Gst::link(source.element(), demux.element(), &linkError)
        || !Gst::link(mux.element(), sink.element(), &linkError))
        return linkError;
    const Gst::SignalConnection padAdded(demux.element(), "pad-added", G_CALLBACK(addTrack), &copy);
    Gst::BusRef bus(gst_element_get_bus(pipeline.element()), Gst::Ref::Adopt);
    std::optional<Error> failure;
    if (gst_element_set_state(pipeline.element(), GST_STATE_PLAYING) == GST_STATE_CHANGE_FAILURE)
        failure = Gst::coreError(GST_CORE_ERROR_STATE_CHANGE, QStringLiteral("Cannot read %1").arg(from));
    if (!failure) {
        // A copy runs at disk speed; one that takes far longer than the
        // file's size explains is stuck.
        const GstClockTime timeout = 10 * GST_SECOND + GstClockTime(size) / (4 * 1024 * 1024) * GST_SECOND;
        Gst::MessagePtr message(
            gst_bus_timed_pop_filtered(bus.get(), timeout, GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR)));
        if (!message)
            failure = Gst::coreError(GST_CORE_ERROR_FAILED, QStringLiteral("Copying %1 timed out").arg(from));
        else
            failure = Gst::errorFromMessage(message.get());
    }
    gst_element_set_state(pipeline.element(), GST_STATE_NULL);
    if (failure)
        return failure;
    // Within a frame or two; a shorter copy lost samples on the way.
    constexpr GstClockTime tolerance = 200 * GST_MSECOND;
    const GstClockTime first = copy.first.load();
    const GstClockTime end = copy.end.load();
    const GstClockTime wanted = GST_CLOCK_TIME_IS_VALID(first) && end > first ? end - (range ? first : 0) : 0;
    const std::optional<GstClockTime> got = movieDuration(to);
    if (!got || *got + tolerance < wanted || *got > wanted + tolerance)
        return Gst::coreError(
            GST_CORE_ERROR_FAILED, QStringLiteral("The new copy of %1 does not last as long as it should").arg(from));
    if (!fsyncPath(QFile::encodeName(to), O_RDONLY))
        return Error { kPosixErrorDomain, errno, QStringLiteral("Cannot write %1").arg(to) };
    return std::nullopt;
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
    const ActiveTemporary active(temporary);

    // The original is good as it is when the copy fails.
    std::optional<Error> failure = copyMovie(path, temporary, before.st_size);
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

bool MovieRewriter::canTrim(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    // A QuickTime or MPEG-4 file opens with a box whose type is one of these.
    const QByteArray head = file.read(8);
    static const QList<QByteArray> kBoxes { "ftyp", "moov", "mdat", "wide", "free", "skip", "pnot" };
    return head.size() == 8 && kBoxes.contains(head.mid(4, 4));
}

std::optional<Error> MovieRewriter::trimMovie(
    const QString &source, const QString &destination, qint64 inNanoseconds, qint64 outNanoseconds)
{
    Gst::ensureInitialized();
    if (!canTrim(source))
        return Gst::coreError(GST_CORE_ERROR_NOT_IMPLEMENTED,
            QStringLiteral("%1 is not a QuickTime or MPEG-4 movie and cannot be trimmed").arg(source));
    const QString temporary = destination + QLatin1String(MovieRewriter::kTemporarySuffix);
    const ActiveTemporary active(temporary);
    std::optional<Error> failure = copyMovie(source, temporary, QFileInfo(source).size(),
        std::pair {
            GstClockTime(std::max<qint64>(0, inNanoseconds)), GstClockTime(std::max<qint64>(0, outNanoseconds)) });
    if (!failure && ::rename(QFile::encodeName(temporary).constData(), QFile::encodeName(destination).constData()) != 0)
        failure = Error { kPosixErrorDomain, errno, QStringLiteral("Cannot write %1").arg(destination) };
    if (failure) {
        QFile::remove(temporary);
        return failure;
    }
    fsyncPath(QFile::encodeName(QFileInfo(destination).absolutePath()), O_RDONLY | O_DIRECTORY);
    return std::nullopt;
}
