#include "CaptureMovieFileOutput.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QPointer>

#include <mutex>
#include <thread>
#include <vector>

namespace {

// Which buffers of a recording reach the file and where they land on the
// file's timeline. Shared by the video and the sound branch, so both shift
// by the same amounts and stay in sync. Times are the pipeline's running
// time; called from streaming threads and the main thread.
class Timeline final
{
public:
    explicit Timeline(GstClockTime start) : m_start(start) {}

    // The file time of a buffer captured at `runningTime`, or nothing when
    // it falls before the start, into a pause or after the end.
    std::optional<GstClockTime> map(GstClockTime runningTime) const
    {
        std::lock_guard lock(m_mutex);
        if (runningTime < m_start || runningTime >= m_stop || runningTime >= m_pausedAt)
            return std::nullopt;
        GstClockTime shift = m_start;
        for (const auto &[begin, end] : m_pauses) {
            if (runningTime >= end)
                shift += end - begin;
            else if (runningTime >= begin)
                return std::nullopt;
        }
        return runningTime - shift;
    }

    void pause(GstClockTime now)
    {
        std::lock_guard lock(m_mutex);
        if (m_pausedAt == GST_CLOCK_TIME_NONE)
            m_pausedAt = std::max(now, m_start);
    }
    void resume(GstClockTime now)
    {
        std::lock_guard lock(m_mutex);
        if (m_pausedAt == GST_CLOCK_TIME_NONE)
            return;
        m_pauses.emplace_back(m_pausedAt, std::max(now, m_pausedAt));
        m_pausedAt = GST_CLOCK_TIME_NONE;
    }
    void finish(GstClockTime now)
    {
        std::lock_guard lock(m_mutex);
        m_stop = std::min(m_stop, now);
    }
    bool isPaused() const
    {
        std::lock_guard lock(m_mutex);
        return m_pausedAt != GST_CLOCK_TIME_NONE;
    }
    GstClockTime recorded(GstClockTime now) const
    {
        std::lock_guard lock(m_mutex);
        GstClockTime end = std::min({now, m_stop, m_pausedAt});
        if (end == GST_CLOCK_TIME_NONE || end < m_start)
            return 0;
        GstClockTime paused = 0;
        for (const auto &[begin, stop] : m_pauses)
            paused += stop - begin;
        return end - m_start - std::min(paused, end - m_start);
    }

private:
    mutable std::mutex m_mutex;
    const GstClockTime m_start;
    GstClockTime m_stop = GST_CLOCK_TIME_NONE;
    GstClockTime m_pausedAt = GST_CLOCK_TIME_NONE;
    std::vector<std::pair<GstClockTime, GstClockTime>> m_pauses;
};

// What the probe at the head of one branch needs.
struct BranchProbe
{
    std::shared_ptr<Timeline> timeline;
    GstElement *sizeFilter = nullptr; // owned by the recording's bin
    std::optional<CompressionOptions> options;
    GstSegment segment;
};

GstPadProbeReturn branchProbe(GstPad *, GstPadProbeInfo *info, gpointer data)
{
    auto *probe = static_cast<BranchProbe *>(data);
    if (info->type & GST_PAD_PROBE_TYPE_BUFFER) {
        GstBuffer *buffer = GST_PAD_PROBE_INFO_BUFFER(info);
        const GstClockTime pts = GST_BUFFER_PTS(buffer);
        if (!GST_CLOCK_TIME_IS_VALID(pts) || probe->segment.format != GST_FORMAT_TIME)
            return GST_PAD_PROBE_DROP;
        const GstClockTime runningTime = gst_segment_to_running_time(&probe->segment, GST_FORMAT_TIME, pts);
        const std::optional<GstClockTime> fileTime = probe->timeline->map(runningTime);
        if (!fileTime)
            return GST_PAD_PROBE_DROP;
        buffer = gst_buffer_make_writable(buffer);
        const GstClockTime shift = runningTime - *fileTime;
        GST_BUFFER_PTS(buffer) = *fileTime;
        if (GST_BUFFER_DTS_IS_VALID(buffer)) {
            const GstClockTime dts = gst_segment_to_running_time(&probe->segment, GST_FORMAT_TIME, GST_BUFFER_DTS(buffer));
            GST_BUFFER_DTS(buffer) = GST_CLOCK_TIME_IS_VALID(dts) && dts > shift ? dts - shift : 0;
        }
        GST_PAD_PROBE_INFO_DATA(info) = buffer;
        return GST_PAD_PROBE_OK;
    }
    GstEvent *event = GST_PAD_PROBE_INFO_EVENT(info);
    if (!event)
        return GST_PAD_PROBE_OK;
    switch (GST_EVENT_TYPE(event)) {
    case GST_EVENT_SEGMENT: {
        // The branch gets a segment of its own from zero: buffers carry file
        // time from here on.
        const GstSegment *segment = nullptr;
        gst_event_parse_segment(event, &segment);
        gst_segment_copy_into(segment, &probe->segment);
        GstSegment fresh;
        gst_segment_init(&fresh, GST_FORMAT_TIME);
        GstEvent *replacement = gst_event_new_segment(&fresh);
        gst_event_set_seqnum(replacement, gst_event_get_seqnum(event));
        gst_event_unref(event);
        GST_PAD_PROBE_INFO_DATA(info) = replacement;
        break;
    }
    case GST_EVENT_CAPS: {
        if (!probe->sizeFilter || !probe->options)
            break;
        GstCaps *caps = nullptr;
        gst_event_parse_caps(event, &caps);
        const GstStructure *s = gst_caps_get_structure(caps, 0);
        int width = 0, height = 0, parN = 1, parD = 1;
        if (s && gst_structure_get_int(s, "width", &width) && gst_structure_get_int(s, "height", &height)) {
            gst_structure_get_fraction(s, "pixel-aspect-ratio", &parN, &parD);
            Gst::CapsPtr wanted = probe->options->videoCapsForSource(width, height, parN, parD);
            g_object_set(probe->sizeFilter, "caps", wanted.get(), nullptr);
        }
        break;
    }
    default:
        break;
    }
    return GST_PAD_PROBE_OK;
}

} // namespace

struct CaptureMovieFileOutput::Recording
{
    struct Branch
    {
        CaptureConnectionPtr connection;
        Gst::ElementRef tee;
        Gst::PadRef teePad;
        Gst::PadRef binPad;
    };

    QUrl url;
    QString path;
    Gst::ElementRef bin;
    std::shared_ptr<Timeline> timeline;
    QList<Branch> branches;
    QList<CaptureConnectionPtr> connections;
    std::optional<Error> error;
    bool detached = false;
    bool completed = false;
};

CaptureMovieFileOutput::CaptureMovieFileOutput() = default;

CaptureMovieFileOutput::~CaptureMovieFileOutput()
{
    // A session that outlives its output would still feed the branches.
    if (session())
        sessionWillStopRunning();
}

QUrl CaptureMovieFileOutput::outputFileURL() const
{
    return m_current ? m_current->url : QUrl();
}

void CaptureMovieFileOutput::setCompressionOptions(const std::optional<CompressionOptions> &options,
                                                   const CaptureConnectionPtr &connection)
{
    if (connection)
        m_options.insert(connection.get(), options);
}

std::optional<CompressionOptions> CaptureMovieFileOutput::compressionOptionsForConnection(const CaptureConnectionPtr &connection) const
{
    return connection ? m_options.value(connection.get()) : std::nullopt;
}

void CaptureMovieFileOutput::recordToOutputFileURL(const QUrl &url)
{
    if (m_current) {
        RecordingPtr finishing = std::exchange(m_current, nullptr);
        finishRecording(finishing);
    }
    m_pendingURL = QUrl();
    if (url.isEmpty())
        return;
    if (session() && session()->isRunning())
        startRecording(url);
    else
        m_pendingURL = url; // starts when the session runs
}

void CaptureMovieFileOutput::pauseRecording()
{
    if (m_current && session())
        m_current->timeline->pause(session()->runningTime());
}

void CaptureMovieFileOutput::resumeRecording()
{
    if (m_current && session())
        m_current->timeline->resume(session()->runningTime());
}

bool CaptureMovieFileOutput::isRecordingPaused() const
{
    return m_current && m_current->timeline->isPaused();
}

std::chrono::nanoseconds CaptureMovieFileOutput::recordedDuration() const
{
    if (!m_current || !session())
        return std::chrono::nanoseconds(0);
    return std::chrono::nanoseconds(m_current->timeline->recorded(session()->runningTime()));
}

void CaptureMovieFileOutput::sessionDidStartRunning()
{
    if (!m_pendingURL.isEmpty())
        startRecording(std::exchange(m_pendingURL, QUrl()));
}

void CaptureMovieFileOutput::startRecording(const QUrl &url)
{
    auto recording = std::make_shared<Recording>();
    recording->url = url;
    recording->path = url.toLocalFile();
    recording->connections = connections();
    recording->timeline = std::make_shared<Timeline>(session()->runningTime());
    m_current = recording;

    Error error;
    recording->bin = Gst::ElementRef(gst_bin_new(nullptr), Gst::Ref::Adopt);
    GstBin *bin = GST_BIN(recording->bin.element());
    // The sink's end-of-stream comes to the bus wrapped, so the output learns
    // that its file is complete while the rest of the pipeline plays on.
    g_object_set(bin, "message-forward", TRUE, nullptr);
    Gst::ElementRef mux = Gst::make("qtmux");
    Gst::ElementRef sink = Gst::make("filesink");
    if (!mux || !sink) {
        abandonRecording(recording, Gst::coreError(GST_CORE_ERROR_MISSING_PLUGIN, QStringLiteral("The QuickTime muxer is not installed.")));
        return;
    }
    g_object_set(mux.get(), "fragment-duration", guint(m_fragmentDuration.count()), nullptr);
    // Unbuffered: a fragment is on disk as soon as the muxer has written it,
    // not when a stdio buffer fills.
    g_object_set(sink.get(), "location", recording->path.toUtf8().constData(), "async", FALSE, nullptr);
    gst_util_set_object_arg(G_OBJECT(sink.get()), "buffer-mode", "unbuffered");
    gst_bin_add_many(bin, mux.element(), sink.element(), nullptr);
    gst_element_link(mux.element(), sink.element());

    for (const CaptureConnectionPtr &connection : std::as_const(recording->connections)) {
        const bool video = connection->mediaType() == MediaType::Video;
        const std::optional<CompressionOptions> chosen = compressionOptionsForConnection(connection);
        const CompressionOptions options = chosen ? *chosen : CompressionOptions::platformDefault(connection->mediaType());
        Gst::ElementRef encoder = options.createEncoderBin(&error);
        Gst::ElementRef queue = Gst::make("queue");
        if (!encoder || !queue) {
            abandonRecording(recording, error);
            return;
        }
        // Room for a stall of the disk or the encoder without back-pressure
        // on the live sources.
        g_object_set(queue.get(), "max-size-buffers", 0u, "max-size-bytes", 0u, "max-size-time",
                     guint64(3 * GST_SECOND), nullptr);
        gst_bin_add_many(bin, queue.element(), encoder.element(), nullptr);
        gst_element_link(queue.element(), encoder.element());
        Gst::PadRef encoderSrc(gst_element_get_static_pad(encoder.element(), "src"), Gst::Ref::Adopt);
        Gst::PadRef muxPad(gst_element_request_pad_simple(mux.element(), video ? "video_%u" : "audio_%u"), Gst::Ref::Adopt);
        if (!muxPad || gst_pad_link(encoderSrc.get(), muxPad.get()) != GST_PAD_LINK_OK) {
            abandonRecording(recording, Gst::coreError(GST_CORE_ERROR_NEGOTIATION, QStringLiteral("The encoder does not fit the QuickTime muxer.")));
            return;
        }
        Gst::PadRef queueSink(gst_element_get_static_pad(queue.element(), "sink"), Gst::Ref::Adopt);
        GstPad *ghost = gst_ghost_pad_new(video ? "video" : "audio", queueSink.get());
        gst_element_add_pad(recording->bin.element(), ghost);

        auto *probe = new BranchProbe{recording->timeline, nullptr, chosen, {}};
        gst_segment_init(&probe->segment, GST_FORMAT_UNDEFINED);
        if (video) {
            probe->options = options;
            probe->sizeFilter = gst_bin_get_by_name(GST_BIN(encoder.element()), "size");
            if (probe->sizeFilter)
                gst_object_unref(probe->sizeFilter); // the bin keeps it alive
        }
        GstElement *tee = session()->teeForConnection(connection);
        Recording::Branch branch{connection, Gst::ElementRef(tee, Gst::Ref::Add),
                                 Gst::PadRef(gst_element_request_pad_simple(tee, "src_%u"), Gst::Ref::Adopt),
                                 Gst::PadRef(ghost, Gst::Ref::Add)};
        gst_pad_add_probe(branch.teePad.get(),
                          GstPadProbeType(GST_PAD_PROBE_TYPE_BUFFER | GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM),
                          branchProbe, probe, [](gpointer p) { delete static_cast<BranchProbe *>(p); });
        recording->branches.append(std::move(branch));
    }

    gst_bin_add(GST_BIN(session()->pipeline()), recording->bin.element());
    if (!gst_element_sync_state_with_parent(recording->bin.element())) {
        // The sink posted why (a folder that does not exist, no permission);
        // the bus handler ends the recording with that error.
        return;
    }
    for (const Recording::Branch &branch : std::as_const(recording->branches))
        gst_pad_link(branch.teePad.get(), branch.binPad.get());
}

void CaptureMovieFileOutput::finishRecording(const RecordingPtr &recording)
{
    m_finishing.append(recording);
    if (session())
        recording->timeline->finish(session()->runningTime());
    deliverWillFinish(recording);
    detachBranches(recording, true);
}

void CaptureMovieFileOutput::detachBranches(const RecordingPtr &recording, bool sendEndOfStream)
{
    if (recording->detached)
        return;
    recording->detached = true;
    for (const Recording::Branch &branch : std::as_const(recording->branches)) {
        if (!gst_pad_is_linked(branch.teePad.get())) {
            if (sendEndOfStream)
                gst_pad_send_event(branch.binPad.get(), gst_event_new_eos());
            continue;
        }
        // Unlinked where the tee is idle, so no buffer is half way through;
        // the end-of-stream then closes the file's track.
        struct Detach
        {
            Gst::PadRef binPad;
            bool sendEndOfStream;
        };
        gst_pad_add_probe(
            branch.teePad.get(), GST_PAD_PROBE_TYPE_IDLE,
            [](GstPad *pad, GstPadProbeInfo *, gpointer data) {
                auto *detach = static_cast<Detach *>(data);
                gst_pad_unlink(pad, detach->binPad.get());
                if (detach->sendEndOfStream)
                    gst_pad_send_event(detach->binPad.get(), gst_event_new_eos());
                return GST_PAD_PROBE_REMOVE;
            },
            new Detach{branch.binPad, sendEndOfStream}, [](gpointer p) { delete static_cast<Detach *>(p); });
    }
}

void CaptureMovieFileOutput::removeBin(const RecordingPtr &recording)
{
    for (const Recording::Branch &branch : std::as_const(recording->branches))
        gst_element_release_request_pad(branch.tee.element(), branch.teePad.get());
    gst_element_set_state(recording->bin.element(), GST_STATE_NULL);
    if (GstObject *parent = gst_object_get_parent(GST_OBJECT(recording->bin.get()))) {
        gst_bin_remove(GST_BIN(parent), recording->bin.element());
        gst_object_unref(parent);
    }
}

void CaptureMovieFileOutput::abandonRecording(const RecordingPtr &recording, const Error &error)
{
    if (recording->completed)
        return;
    recording->error = error;
    if (m_current == recording) {
        m_current = nullptr;
        m_finishing.append(recording);
        deliverWillFinish(recording);
    }
    if (session())
        recording->timeline->finish(session()->runningTime());
    detachBranches(recording, false);
    completeRecording(recording, false);
}

void CaptureMovieFileOutput::completeRecording(const RecordingPtr &recording, bool remux)
{
    if (recording->completed)
        return;
    recording->completed = true;
    removeBin(recording);
    if (!remux) {
        deliverDidFinish(recording);
        return;
    }
    QPointer<CaptureMovieFileOutput> self(this);
    std::thread([self, recording] {
        if (const std::optional<Error> failure = remuxToPlainMovie(recording->path))
            qWarning("Keeping the fragmented movie %s: %s", qPrintable(recording->path),
                     qPrintable(failure->localizedDescription));
        QMetaObject::invokeMethod(
            self.data(),
            [self, recording] {
                if (self)
                    self->deliverDidFinish(recording);
            },
            Qt::QueuedConnection);
    }).detach();
}

void CaptureMovieFileOutput::deliverWillFinish(const RecordingPtr &recording)
{
    QMetaObject::invokeMethod(
        this,
        [this, recording] {
            if (m_delegate)
                m_delegate->captureOutputWillFinishRecording(this, recording->url, recording->connections, recording->error);
        },
        Qt::QueuedConnection);
}

void CaptureMovieFileOutput::deliverDidFinish(const RecordingPtr &recording)
{
    QMetaObject::invokeMethod(
        this,
        [this, recording] {
            m_finishing.removeAll(recording);
            if (m_delegate)
                m_delegate->captureOutputDidFinishRecording(this, recording->url, recording->connections, recording->error);
        },
        Qt::QueuedConnection);
}

CaptureMovieFileOutput::RecordingPtr CaptureMovieFileOutput::recordingForMessageSource(GstObject *source) const
{
    QList<RecordingPtr> all = m_finishing;
    if (m_current)
        all.append(m_current);
    for (const RecordingPtr &recording : all)
        if (recording->bin && (source == GST_OBJECT(recording->bin.get()) ||
                               gst_object_has_as_ancestor(source, GST_OBJECT(recording->bin.get()))))
            return recording;
    return nullptr;
}

bool CaptureMovieFileOutput::handleBusMessage(GstMessage *message)
{
    const RecordingPtr recording = recordingForMessageSource(GST_MESSAGE_SRC(message));
    if (!recording)
        return false;
    if (recording->completed)
        return true; // late news from a file already closed
    switch (GST_MESSAGE_TYPE(message)) {
    case GST_MESSAGE_ERROR:
        abandonRecording(recording, Gst::errorFromMessage(message).value_or(Error{}));
        return true;
    case GST_MESSAGE_ELEMENT: {
        const GstStructure *s = gst_message_get_structure(message);
        if (!s || !gst_structure_has_name(s, "GstBinForwarded"))
            return false;
        GstMessage *forwarded = nullptr;
        gst_structure_get(s, "message", GST_TYPE_MESSAGE, &forwarded, nullptr);
        Gst::MessagePtr inner(forwarded);
        if (inner && GST_MESSAGE_TYPE(inner.get()) == GST_MESSAGE_EOS)
            completeRecording(recording, true);
        return true;
    }
    default:
        return false;
    }
}

void CaptureMovieFileOutput::sessionDidFail(const Error &error)
{
    // The file is still closed properly, up to the failure, and the error
    // goes with it to the delegate.
    if (m_current)
        m_current->error = error;
}

void CaptureMovieFileOutput::sessionWillStopRunning()
{
    // The pipeline stops right after this: every file still open is closed
    // here, waiting for its end-of-stream on the bus.
    m_pendingURL = QUrl();
    if (m_current)
        finishRecording(std::exchange(m_current, nullptr));
    GstElement *pipeline = session() ? session()->pipeline() : nullptr;
    if (!pipeline)
        return;
    Gst::BusRef bus(gst_element_get_bus(pipeline), Gst::Ref::Adopt);
    QElapsedTimer waited;
    waited.start();
    auto open = [this] {
        for (const RecordingPtr &r : std::as_const(m_finishing))
            if (!r->completed)
                return true;
        return false;
    };
    while (open() && waited.elapsed() < 5000) {
        Gst::MessagePtr message(gst_bus_timed_pop_filtered(bus.get(), 100 * GST_MSECOND,
                                                           GstMessageType(GST_MESSAGE_ELEMENT | GST_MESSAGE_ERROR)));
        if (message)
            handleBusMessage(message.get());
    }
    const QList<RecordingPtr> stuck = m_finishing;
    for (const RecordingPtr &recording : stuck)
        if (!recording->completed)
            abandonRecording(recording, Gst::coreError(GST_CORE_ERROR_FAILED, QStringLiteral("The movie file could not be finished.")));
}

std::optional<Error> CaptureMovieFileOutput::remuxToPlainMovie(const QString &path)
{
    Gst::ensureInitialized();
    const QString temporary = path + QStringLiteral(".remux");
    Gst::ElementRef pipeline(gst_pipeline_new("remux"), Gst::Ref::Adopt);
    Gst::ElementRef source = Gst::make("filesrc");
    Gst::ElementRef demux = Gst::make("qtdemux");
    Gst::ElementRef mux = Gst::make("qtmux");
    Gst::ElementRef sink = Gst::make("filesink");
    if (!source || !demux || !mux || !sink)
        return Gst::coreError(GST_CORE_ERROR_MISSING_PLUGIN, QStringLiteral("The QuickTime muxer is not installed."));
    g_object_set(source.get(), "location", path.toUtf8().constData(), nullptr);
    g_object_set(sink.get(), "location", temporary.toUtf8().constData(), nullptr);
    GstBin *bin = GST_BIN(pipeline.element());
    gst_bin_add_many(bin, source.element(), demux.element(), mux.element(), sink.element(), nullptr);
    gst_element_link(source.element(), demux.element());
    gst_element_link(mux.element(), sink.element());
    // Each track goes through a queue of its own into the new file; the
    // demuxer names its pads by kind, as the muxer's request pads are.
    g_signal_connect(demux.element(), "pad-added", G_CALLBACK(+[](GstElement *, GstPad *pad, gpointer data) {
                         auto *muxer = static_cast<GstElement *>(data);
                         Gst::CharPtr name(gst_pad_get_name(pad));
                         const bool video = g_str_has_prefix(name.get(), "video");
                         Gst::PadRef target(gst_element_request_pad_simple(muxer, video ? "video_%u" : "audio_%u"), Gst::Ref::Adopt);
                         GstElement *queue = gst_element_factory_make("queue", nullptr);
                         GstObject *parent = gst_object_get_parent(GST_OBJECT(muxer));
                         gst_bin_add(GST_BIN(parent), queue);
                         gst_object_unref(parent);
                         Gst::PadRef queueSink(gst_element_get_static_pad(queue, "sink"), Gst::Ref::Adopt);
                         Gst::PadRef queueSrc(gst_element_get_static_pad(queue, "src"), Gst::Ref::Adopt);
                         gst_pad_link(queueSrc.get(), target.get());
                         gst_element_sync_state_with_parent(queue);
                         gst_pad_link(pad, queueSink.get());
                     }),
                     mux.element());
    Gst::BusRef bus(gst_element_get_bus(pipeline.element()), Gst::Ref::Adopt);
    std::optional<Error> failure;
    if (gst_element_set_state(pipeline.element(), GST_STATE_PLAYING) == GST_STATE_CHANGE_FAILURE)
        failure = Gst::coreError(GST_CORE_ERROR_STATE_CHANGE, QStringLiteral("Cannot read %1").arg(path));
    if (!failure) {
        Gst::MessagePtr message(gst_bus_timed_pop_filtered(bus.get(), GST_CLOCK_TIME_NONE,
                                                           GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR)));
        failure = Gst::errorFromMessage(message.get());
    }
    gst_element_set_state(pipeline.element(), GST_STATE_NULL);
    if (!failure && ::rename(QFile::encodeName(temporary).constData(), QFile::encodeName(path).constData()) != 0)
        failure = Error{kPosixErrorDomain, errno, QStringLiteral("Cannot replace %1").arg(path)};
    if (failure)
        QFile::remove(temporary);
    return failure;
}
