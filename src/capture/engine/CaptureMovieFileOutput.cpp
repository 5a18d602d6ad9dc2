#include "CaptureMovieFileOutput.h"

#include "GstBusReader.h"
#include "MovieRewriter.h"
#include "RecordingTimeline.h"
#include "TeeBranch.h"
#include "Threads.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QPointer>
#include <QTimer>

#include <ctime>
#include <vector>

namespace {

// A stop that takes longer than this (a wedged encoder or disk) gives up on
// the file's end; what the muxer has written so far stays playable.
constexpr int kFinishTimeoutMs = 20000;

// The pipeline's running time as the timeline counts it.
qint64 timelineTime(GstClockTime time)
{
    return GST_CLOCK_TIME_IS_VALID(time) ? qint64(time) : RecordingTimeline::kNever;
}

// What the probe at the head of one branch needs.
struct BranchProbe
{
    std::shared_ptr<RecordingTimeline> timeline;
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
        if (!GST_CLOCK_TIME_IS_VALID(runningTime))
            return GST_PAD_PROBE_DROP;
        const std::optional<qint64> fileTime = probe->timeline->map(qint64(runningTime));
        if (!fileTime)
            return GST_PAD_PROBE_DROP;
        buffer = gst_buffer_make_writable(buffer);
        const GstClockTime shift = runningTime - GstClockTime(*fileTime);
        GST_BUFFER_PTS(buffer) = GstClockTime(*fileTime);
        if (GST_BUFFER_DTS_IS_VALID(buffer)) {
            const GstClockTime dts
                = gst_segment_to_running_time(&probe->segment, GST_FORMAT_TIME, GST_BUFFER_DTS(buffer));
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
    Recording() = default;
    Recording(const Recording &) = delete;
    Recording &operator=(const Recording &) = delete;
    ~Recording()
    {
        // An output destroyed while a file was finishing: the file keeps
        // what the muxer has written.
        busReader.reset();
        branches.clear();
        if (bin && !completed)
            gst_element_set_state(bin.element(), GST_STATE_NULL);
    }

    QUrl url;
    QString path;
    Gst::ElementRef bin;
    std::unique_ptr<GstBusReader> busReader; // the bin's own, once it has left the session
    std::shared_ptr<RecordingTimeline> timeline;
    std::vector<std::unique_ptr<TeeBranch>> branches; // while in the session
    QList<Gst::PadRef> binPads; // one per stream, where its branch enters the bin
    QList<CaptureConnectionPtr> connections;
    std::optional<Error> error;
    bool detached = false;
    bool completed = false;
    bool discard = false;
};

CaptureMovieFileOutput::CaptureMovieFileOutput() = default;

CaptureMovieFileOutput::~CaptureMovieFileOutput()
{
    // Nobody is told any more; branches leave the tees of a session that
    // may play on.
    m_delegate = nullptr;
    if (m_current)
        m_finishing.append(std::exchange(m_current, nullptr));
    for (const RecordingPtr &recording : std::as_const(m_finishing)) {
        if (recording->completed)
            continue;
        recording->completed = true;
        removeBin(recording);
    }
}

QUrl CaptureMovieFileOutput::outputFileURL() const
{
    return m_current ? m_current->url : QUrl();
}

void CaptureMovieFileOutput::setCompressionOptions(
    const std::optional<CompressionOptions> &options, const CaptureConnectionPtr &connection)
{
    if (connection)
        m_options.insert(connection.get(), options);
}

std::optional<CompressionOptions> CaptureMovieFileOutput::compressionOptionsForConnection(
    const CaptureConnectionPtr &connection) const
{
    return connection ? m_options.value(connection.get()) : std::nullopt;
}

void CaptureMovieFileOutput::recordToOutputFileURL(const QUrl &url, FinishMode current)
{
    if (m_current) {
        RecordingPtr finishing = std::exchange(m_current, nullptr);
        finishing->discard = current == FinishMode::Discard;
        finishRecording(finishing);
    } else if (!m_pendingURL.isEmpty()) {
        // Asked for while the session was not running, and it never ran
        // since: the caller still waits for the end of that recording.
        finishUnstartedRecording(std::exchange(m_pendingURL, QUrl()),
            m_sessionFailure.value_or(Gst::coreError(GST_CORE_ERROR_STATE_CHANGE,
                QStringLiteral("The recording did not start: the capture session is not running."))));
    }
    if (url.isEmpty())
        return;
    if (session() && session()->isRunning())
        startRecording(url);
    else
        m_pendingURL = url; // starts when the session runs
}

qint64 CaptureMovieFileOutput::now() const
{
    return m_actionTime ? timelineTime(*m_actionTime) : timelineTime(session()->runningTime());
}

void CaptureMovieFileOutput::pauseRecording()
{
    if (m_current && session())
        m_current->timeline->pause(now());
}

void CaptureMovieFileOutput::resumeRecording()
{
    if (m_current && session())
        m_current->timeline->resume(now());
}

bool CaptureMovieFileOutput::isRecordingPaused() const
{
    return m_current && m_current->timeline->isPaused();
}

std::chrono::nanoseconds CaptureMovieFileOutput::recordedDuration() const
{
    if (!m_current || !session())
        return std::chrono::nanoseconds(0);
    return std::chrono::nanoseconds(m_current->timeline->recorded(now()));
}

void CaptureMovieFileOutput::sessionDidStartRunning()
{
    m_sessionFailure.reset();
    if (!m_pendingURL.isEmpty())
        startRecording(std::exchange(m_pendingURL, QUrl()));
}

void CaptureMovieFileOutput::startRecording(const QUrl &url)
{
    auto recording = std::make_shared<Recording>();
    recording->url = url;
    recording->path = url.toLocalFile();
    recording->connections = connections();
    recording->timeline = std::make_shared<RecordingTimeline>(now());
    m_current = recording;

    if (recording->connections.isEmpty()) {
        // Nothing would ever reach the muxer, so it would never finish.
        abandonRecording(recording,
            Gst::coreError(GST_CORE_ERROR_FAILED, QStringLiteral("The capture session has nothing to record.")));
        return;
    }
    MovieRewriter::removeStaleTemporaries(QFileInfo(recording->path).absolutePath());

    Error error;
    if (!buildRecordingBin(recording, &error)) {
        abandonRecording(recording, error);
        return;
    }
    gst_bin_add(GST_BIN(session()->pipeline()), recording->bin.element());
    if (!gst_element_sync_state_with_parent(recording->bin.element())) {
        // The sink posted why (a folder that does not exist, no permission);
        // the bus handler ends the recording with that error.
        return;
    }
    for (qsizetype i = 0; i < recording->binPads.size(); ++i) {
        if (!recording->branches[size_t(i)]->link(recording->binPads[i].get(), &error)) {
            abandonRecording(recording, error);
            return;
        }
    }
}

bool CaptureMovieFileOutput::buildRecordingBin(const RecordingPtr &recording, Error *error)
{
    recording->bin = Gst::ElementRef(gst_bin_new(nullptr), Gst::Ref::Adopt);
    GstElement *bin = recording->bin.element();
    // The sink's end-of-stream comes to the bus wrapped, so the output learns
    // that its file is complete while the rest of the pipeline plays on.
    g_object_set(bin, "message-forward", TRUE, nullptr);
    Gst::ElementRef mux = Gst::make("qtmux");
    Gst::ElementRef sink = Gst::make("filesink");
    if (!mux || !sink) {
        *error = Gst::coreError(GST_CORE_ERROR_MISSING_PLUGIN, QStringLiteral("The QuickTime muxer is not installed."));
        return false;
    }
    g_object_set(mux.get(), "fragment-duration", guint(m_fragmentDuration.count()), nullptr);
    // Unbuffered: a fragment is on disk as soon as the muxer has written it,
    // not when a stdio buffer fills.
    g_object_set(sink.get(), "location", recording->path.toUtf8().constData(), "async", FALSE, nullptr);
    gst_util_set_object_arg(G_OBJECT(sink.get()), "buffer-mode", "unbuffered");
    Gst::add(bin, mux);
    Gst::add(bin, sink);
    if (!Gst::link(mux.element(), sink.element(), error))
        return false;

    for (const CaptureConnectionPtr &connection : std::as_const(recording->connections)) {
        const bool video = connection->mediaType() == MediaType::Video;
        const std::optional<CompressionOptions> chosen = compressionOptionsForConnection(connection);
        const CompressionOptions options
            = chosen ? *chosen : CompressionOptions::platformDefault(connection->mediaType());
        const bool shared = !video && m_sharesSoundEncoding;
        GstElement *tee = session()->teeForRecording(connection, shared ? &options : nullptr, error);
        if (!tee)
            return false;
        Gst::ElementRef encoder = shared ? Gst::make("identity", error) : options.createEncoderBin(error);
        Gst::ElementRef queue = encoder ? Gst::make("queue", error) : Gst::ElementRef();
        if (!encoder || !queue)
            return false;
        // Room for a stall of the disk or the encoder without back-pressure
        // on the live sources.
        g_object_set(queue.get(), "max-size-buffers", 0u, "max-size-bytes", 0u, "max-size-time",
            guint64(3 * GST_SECOND), nullptr);
        Gst::add(bin, queue);
        Gst::add(bin, encoder);
        if (!Gst::link(queue.element(), encoder.element(), error))
            return false;
        Gst::PadRef encoderSrc(gst_element_get_static_pad(encoder.element(), "src"), Gst::Ref::Adopt);
        Gst::PadRef muxPad(
            gst_element_request_pad_simple(mux.element(), video ? "video_%u" : "audio_%u"), Gst::Ref::Adopt);
        if (!Gst::link(encoderSrc.get(), muxPad.get(), nullptr)) {
            *error = Gst::coreError(
                GST_CORE_ERROR_NEGOTIATION, QStringLiteral("The encoder does not fit the QuickTime muxer."));
            return false;
        }
        watchFirstSample(muxPad.get(), connection->mediaType());
        Gst::PadRef queueSink(gst_element_get_static_pad(queue.element(), "sink"), Gst::Ref::Adopt);
        GstPad *ghost = gst_ghost_pad_new(video ? "video" : "audio", queueSink.get());
        gst_element_add_pad(bin, ghost);

        std::unique_ptr<TeeBranch> branch = TeeBranch::request(tee, error);
        if (!branch)
            return false;
        auto *probe = new BranchProbe { recording->timeline, nullptr, chosen, {} };
        gst_segment_init(&probe->segment, GST_FORMAT_UNDEFINED);
        if (video) {
            probe->options = options;
            probe->sizeFilter = gst_bin_get_by_name(GST_BIN(encoder.element()), "size");
            if (probe->sizeFilter)
                gst_object_unref(probe->sizeFilter); // the bin keeps it alive
        }
        branch->addProbe(GstPadProbeType(GST_PAD_PROBE_TYPE_BUFFER | GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM), branchProbe,
            probe, [](gpointer p) { delete static_cast<BranchProbe *>(p); });
        recording->branches.push_back(std::move(branch));
        recording->binPads.append(Gst::PadRef(ghost, Gst::Ref::Add));
    }
    return true;
}

void CaptureMovieFileOutput::watchFirstSample(GstPad *muxPad, const QString &mediaType)
{
    struct Watch
    {
        QPointer<CaptureMovieFileOutput> output;
        QString mediaType;
    };
    gst_pad_add_probe(
        muxPad, GST_PAD_PROBE_TYPE_BUFFER,
        [](GstPad *, GstPadProbeInfo *, gpointer data) {
            timespec now {};
            clock_gettime(CLOCK_MONOTONIC, &now);
            const qint64 ns = qint64(now.tv_sec) * 1000000000 + now.tv_nsec;
            const auto *watch = static_cast<Watch *>(data);
            // The application object, not the output, carries the call: the
            // output may be gone by the time this thread gets here.
            QMetaObject::invokeMethod(
                QCoreApplication::instance(),
                [output = watch->output, type = watch->mediaType, ns] {
                    if (output)
                        emit output->firstSampleRecorded(type, ns);
                },
                Qt::QueuedConnection);
            return GST_PAD_PROBE_REMOVE;
        },
        new Watch { this, mediaType }, [](gpointer data) { delete static_cast<Watch *>(data); });
}

void CaptureMovieFileOutput::finishRecording(const RecordingPtr &recording)
{
    m_finishing.append(recording);
    if (session())
        recording->timeline->finish(now());
    deliverWillFinish(recording);
    releaseFromSession(recording);
    if (recording->completed)
        return;
    for (const Gst::PadRef &pad : std::as_const(recording->binPads))
        gst_pad_send_event(pad.get(), gst_event_new_eos());
    QTimer::singleShot(kFinishTimeoutMs, this, [this, weak = std::weak_ptr<Recording>(recording)] {
        if (const RecordingPtr stuck = weak.lock(); stuck && !stuck->completed)
            abandonRecording(
                stuck, Gst::coreError(GST_CORE_ERROR_FAILED, QStringLiteral("The movie file could not be finished.")));
    });
}

void CaptureMovieFileOutput::finishUnstartedRecording(const QUrl &url, const Error &error)
{
    auto recording = std::make_shared<Recording>();
    recording->url = url;
    recording->path = url.toLocalFile();
    recording->connections = connections();
    recording->error = error;
    recording->completed = true;
    m_finishing.append(recording);
    deliverWillFinish(recording);
    deliverDidFinish(recording);
}

// The bin leaves the session's pipeline with the media it has queued and
// gets a bus of its own: it drains into the file on its own threads while
// the session plays on or stops, and nothing waits for it on the main
// thread.
void CaptureMovieFileOutput::releaseFromSession(const RecordingPtr &recording)
{
    if (recording->detached || !recording->bin)
        return;
    recording->detached = true;
    GstElement *bin = recording->bin.element();
    // Removal unlinks the tee pads; a buffer already on its way into the
    // bin completes first, as the end-of-stream sent afterwards takes the
    // ghost pad's stream lock.
    Gst::removeFromParent(bin);
    recording->branches.clear();
    if (GST_STATE(bin) < GST_STATE_PAUSED && GST_STATE_PENDING(bin) < GST_STATE_PAUSED) {
        // Never got going (its sink refused to open): nothing to drain.
        abandonRecording(recording,
            recording->error.value_or(
                Gst::coreError(GST_CORE_ERROR_STATE_CHANGE, QStringLiteral("The movie file could not be opened."))));
        return;
    }
    Gst::BusRef bus(gst_bus_new(), Gst::Ref::Adopt);
    gst_element_set_bus(bin, bus.get());
    recording->busReader = std::make_unique<GstBusReader>(
        std::move(bus), [this, weak = std::weak_ptr<Recording>(recording)](GstMessage *message) {
            if (const RecordingPtr r = weak.lock())
                handleRecordingMessage(r, message);
        });
}

void CaptureMovieFileOutput::removeBin(const RecordingPtr &recording)
{
    const bool ownBus = bool(recording->busReader);
    recording->busReader.reset();
    recording->branches.clear();
    if (!recording->bin)
        return;
    gst_element_set_state(recording->bin.element(), GST_STATE_NULL);
    Gst::removeFromParent(recording->bin.element());
    if (ownBus)
        gst_element_set_bus(recording->bin.element(), nullptr);
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
        recording->timeline->finish(now());
    completeRecording(recording, false);
}

void CaptureMovieFileOutput::endOfStream(const RecordingPtr &recording)
{
    if (m_current == recording) {
        // Not asked for: the source ended (a device unplugged). The file is
        // complete up to there and ends like a stopped one, with the reason.
        m_current = nullptr;
        m_finishing.append(recording);
        if (session())
            recording->timeline->finish(now());
        if (!recording->error)
            recording->error
                = Gst::coreError(GST_CORE_ERROR_FAILED, QStringLiteral("The capture device stopped sending media."));
        deliverWillFinish(recording);
    }
    completeRecording(recording, !recording->discard);
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
    // The worker holds no part of the output; the output is looked up on
    // the main thread, and its going drops the delivery.
    const QString path = recording->path;
    const Recording *key = recording.get();
    // A rewrite that throws keeps the movie as it was, and it still finishes.
    runInBackground(
        this,
        [path] {
            if (const std::optional<Error> failure = MovieRewriter::rewriteAsPlainMovie(path))
                qWarning(
                    "Keeping the movie %s as it was: %s", qPrintable(path), qPrintable(failure->localizedDescription));
        },
        [key](CaptureMovieFileOutput *self) {
            const QList<RecordingPtr> finishing = self->m_finishing;
            for (const RecordingPtr &r : finishing)
                if (r.get() == key)
                    self->deliverDidFinish(r);
        });
}

void CaptureMovieFileOutput::deliverWillFinish(const RecordingPtr &recording)
{
    QMetaObject::invokeMethod(
        this,
        [this, recording] {
            if (m_delegate)
                m_delegate->captureOutputWillFinishRecording(
                    this, recording->url, recording->connections, recording->error);
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
                m_delegate->captureOutputDidFinishRecording(
                    this, recording->url, recording->connections, recording->error);
        },
        Qt::QueuedConnection);
}

CaptureMovieFileOutput::RecordingPtr CaptureMovieFileOutput::recordingForMessageSource(GstObject *source) const
{
    QList<RecordingPtr> all = m_finishing;
    if (m_current)
        all.append(m_current);
    for (const RecordingPtr &recording : all)
        if (recording->bin
            && (source == GST_OBJECT(recording->bin.get())
                || gst_object_has_as_ancestor(source, GST_OBJECT(recording->bin.get()))))
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
    return handleRecordingMessage(recording, message);
}

bool CaptureMovieFileOutput::handleRecordingMessage(const RecordingPtr &recording, GstMessage *message)
{
    if (recording->completed)
        return true;
    switch (GST_MESSAGE_TYPE(message)) {
    case GST_MESSAGE_ERROR:
        abandonRecording(recording, Gst::errorFromMessage(message).value_or(Error {}));
        return true;
    case GST_MESSAGE_EOS:
        // A bin on its own sums up its sink's end-of-stream as its own.
        if (GST_MESSAGE_SRC(message) == GST_OBJECT(recording->bin.get()))
            endOfStream(recording);
        return true;
    case GST_MESSAGE_ELEMENT: {
        const GstStructure *s = gst_message_get_structure(message);
        if (!s || !gst_structure_has_name(s, "GstBinForwarded"))
            return false;
        GstMessage *forwarded = nullptr;
        gst_structure_get(s, "message", GST_TYPE_MESSAGE, &forwarded, nullptr);
        Gst::MessagePtr inner(forwarded);
        if (inner && GST_MESSAGE_TYPE(inner.get()) == GST_MESSAGE_EOS)
            endOfStream(recording);
        return true;
    }
    default:
        return false;
    }
}

void CaptureMovieFileOutput::sessionDidFail(const Error &error)
{
    // A file being written is still closed properly, up to the failure, and
    // the error goes with it to the delegate; one only asked for ends now,
    // as the session will not run again by itself.
    m_sessionFailure = error;
    if (m_current && !m_current->error)
        m_current->error = error;
    if (!m_pendingURL.isEmpty())
        finishUnstartedRecording(std::exchange(m_pendingURL, QUrl()), error);
}

void CaptureMovieFileOutput::sessionWillStopRunning()
{
    // The file leaves the pipeline and drains on its own; a URL still
    // waiting starts when the session runs again.
    if (m_current)
        finishRecording(std::exchange(m_current, nullptr));
}
