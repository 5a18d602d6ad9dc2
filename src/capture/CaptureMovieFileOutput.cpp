#include "CaptureMovieFileOutput.h"

#include <gst/pbutils/pbutils.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QSet>
#include <QSocketNotifier>
#include <QTimer>

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <mutex>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

// Which buffers of a recording reach the file and where they land on the
// file's timeline. Shared by the video and the sound branch, so both shift
// by the same amounts and stay in sync. Times are the pipeline's running
// time; called from streaming threads and the main thread.
class Timeline final
{
public:
    explicit Timeline(GstClockTime start)
        : m_start(start)
    { }

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
        GstClockTime end = std::min({ now, m_stop, m_pausedAt });
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

// Temporary files of rewrites running in this process, which a new
// recording in the same folder must not take for leftovers.
std::mutex s_remuxMutex;
QSet<QString> s_activeRemuxes;

constexpr const char *kRemuxSuffix = ".remux";

// Rewrites of another process (the capture agent shares the spool folder)
// keep writing to theirs; one untouched for this long was left by a crash.
constexpr qint64 kStaleRemuxSeconds = 60;

// A stop that takes longer than this (a wedged encoder or disk) gives up on
// the file's end; what the muxer has written so far stays playable.
constexpr int kFinishTimeoutMs = 20000;

void removeStaleRemuxFiles(const QString &folder)
{
    const QDateTime staleBefore = QDateTime::currentDateTime().addSecs(-kStaleRemuxSeconds);
    const QFileInfoList leftovers
        = QDir(folder).entryInfoList({ QStringLiteral("*") + QLatin1String(kRemuxSuffix) }, QDir::Files | QDir::Hidden);
    std::lock_guard lock(s_remuxMutex);
    for (const QFileInfo &file : leftovers)
        if (!s_activeRemuxes.contains(file.absoluteFilePath()) && file.lastModified() < staleBefore)
            QFile::remove(file.absoluteFilePath());
}

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

struct CaptureMovieFileOutput::Recording
{
    struct Branch
    {
        CaptureConnectionPtr connection;
        Gst::ElementRef tee;
        Gst::PadRef teePad;
        Gst::PadRef binPad;
        gulong probeId = 0;
    };

    Recording() = default;
    Recording(const Recording &) = delete;
    Recording &operator=(const Recording &) = delete;
    ~Recording()
    {
        // An output destroyed while a file was finishing: the file keeps
        // what the muxer has written.
        if (bin && !completed)
            gst_element_set_state(bin.element(), GST_STATE_NULL);
    }

    QUrl url;
    QString path;
    Gst::ElementRef bin;
    Gst::BusRef bus; // the bin's own, once it has left the session
    QPointer<QSocketNotifier> busNotifier;
    std::shared_ptr<Timeline> timeline;
    QList<Branch> branches;
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
    recording->timeline = std::make_shared<Timeline>(session()->runningTime());
    m_current = recording;

    if (recording->connections.isEmpty()) {
        // Nothing would ever reach the muxer, so it would never finish.
        abandonRecording(recording,
            Gst::coreError(GST_CORE_ERROR_FAILED, QStringLiteral("The capture session has nothing to record.")));
        return;
    }
    removeStaleRemuxFiles(QFileInfo(recording->path).absolutePath());

    Error error;
    recording->bin = Gst::ElementRef(gst_bin_new(nullptr), Gst::Ref::Adopt);
    GstBin *bin = GST_BIN(recording->bin.element());
    // The sink's end-of-stream comes to the bus wrapped, so the output learns
    // that its file is complete while the rest of the pipeline plays on.
    g_object_set(bin, "message-forward", TRUE, nullptr);
    Gst::ElementRef mux = Gst::make("qtmux");
    Gst::ElementRef sink = Gst::make("filesink");
    if (!mux || !sink) {
        abandonRecording(recording,
            Gst::coreError(GST_CORE_ERROR_MISSING_PLUGIN, QStringLiteral("The QuickTime muxer is not installed.")));
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
        const CompressionOptions options
            = chosen ? *chosen : CompressionOptions::platformDefault(connection->mediaType());
        GstElement *tee = session()->teeForConnection(connection);
        if (!tee) {
            abandonRecording(recording,
                Gst::coreError(GST_CORE_ERROR_FAILED, QStringLiteral("The capture session has no stream to record.")));
            return;
        }
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
        Gst::PadRef muxPad(
            gst_element_request_pad_simple(mux.element(), video ? "video_%u" : "audio_%u"), Gst::Ref::Adopt);
        if (!muxPad || gst_pad_link(encoderSrc.get(), muxPad.get()) != GST_PAD_LINK_OK) {
            abandonRecording(recording,
                Gst::coreError(
                    GST_CORE_ERROR_NEGOTIATION, QStringLiteral("The encoder does not fit the QuickTime muxer.")));
            return;
        }
        Gst::PadRef queueSink(gst_element_get_static_pad(queue.element(), "sink"), Gst::Ref::Adopt);
        GstPad *ghost = gst_ghost_pad_new(video ? "video" : "audio", queueSink.get());
        gst_element_add_pad(recording->bin.element(), ghost);

        auto *probe = new BranchProbe { recording->timeline, nullptr, chosen, {} };
        gst_segment_init(&probe->segment, GST_FORMAT_UNDEFINED);
        if (video) {
            probe->options = options;
            probe->sizeFilter = gst_bin_get_by_name(GST_BIN(encoder.element()), "size");
            if (probe->sizeFilter)
                gst_object_unref(probe->sizeFilter); // the bin keeps it alive
        }
        Recording::Branch branch { connection, Gst::ElementRef(tee, Gst::Ref::Add),
            Gst::PadRef(gst_element_request_pad_simple(tee, "src_%u"), Gst::Ref::Adopt),
            Gst::PadRef(ghost, Gst::Ref::Add) };
        branch.probeId = gst_pad_add_probe(branch.teePad.get(),
            GstPadProbeType(GST_PAD_PROBE_TYPE_BUFFER | GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM), branchProbe, probe,
            [](gpointer p) { delete static_cast<BranchProbe *>(p); });
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
    releaseFromSession(recording);
    if (recording->completed)
        return;
    for (const Recording::Branch &branch : std::as_const(recording->branches))
        gst_pad_send_event(branch.binPad.get(), gst_event_new_eos());
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
    if (GstObject *parent = gst_object_get_parent(GST_OBJECT(bin))) {
        gst_bin_remove(GST_BIN(parent), bin);
        gst_object_unref(parent);
    }
    releaseBranches(recording);
    if (GST_STATE(bin) < GST_STATE_PAUSED && GST_STATE_PENDING(bin) < GST_STATE_PAUSED) {
        // Never got going (its sink refused to open): nothing to drain.
        abandonRecording(recording,
            recording->error.value_or(
                Gst::coreError(GST_CORE_ERROR_STATE_CHANGE, QStringLiteral("The movie file could not be opened."))));
        return;
    }
    recording->bus = Gst::BusRef(gst_bus_new(), Gst::Ref::Adopt);
    gst_element_set_bus(bin, recording->bus.get());
    GPollFD pollFd;
    gst_bus_get_pollfd(recording->bus.get(), &pollFd);
    recording->busNotifier = new QSocketNotifier(pollFd.fd, QSocketNotifier::Read, this);
    connect(
        recording->busNotifier, &QSocketNotifier::activated, this, [this, weak = std::weak_ptr<Recording>(recording)] {
            if (const RecordingPtr r = weak.lock())
                readRecordingBus(r);
        });
}

void CaptureMovieFileOutput::releaseBranches(const RecordingPtr &recording)
{
    for (Recording::Branch &branch : recording->branches) {
        if (branch.probeId)
            gst_pad_remove_probe(branch.teePad.get(), std::exchange(branch.probeId, 0));
        if (branch.teePad)
            gst_element_release_request_pad(branch.tee.element(), branch.teePad.get());
        branch.teePad = {};
    }
}

void CaptureMovieFileOutput::readRecordingBus(const RecordingPtr &recording)
{
    while (recording->bus && !recording->completed) {
        Gst::MessagePtr message(gst_bus_pop(recording->bus.get()));
        if (!message)
            break;
        handleRecordingMessage(recording, message.get());
    }
}

void CaptureMovieFileOutput::removeBin(const RecordingPtr &recording)
{
    delete recording->busNotifier.data();
    releaseBranches(recording);
    if (!recording->bin)
        return;
    gst_element_set_state(recording->bin.element(), GST_STATE_NULL);
    if (GstObject *parent = gst_object_get_parent(GST_OBJECT(recording->bin.get()))) {
        gst_bin_remove(GST_BIN(parent), recording->bin.element());
        gst_object_unref(parent);
    }
    if (recording->bus)
        gst_element_set_bus(recording->bin.element(), nullptr);
    recording->bus = {};
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
            recording->timeline->finish(session()->runningTime());
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
    // The worker holds no part of the output: the result goes to a context
    // that outlives it, and the output is looked up on the main thread.
    const QString path = recording->path;
    const Recording *key = recording.get();
    QPointer<CaptureMovieFileOutput> self(this);
    std::thread([self, key, path] {
        if (const std::optional<Error> failure = remuxToPlainMovie(path))
            qWarning("Keeping the movie %s as it was: %s", qPrintable(path), qPrintable(failure->localizedDescription));
        QCoreApplication *context = QCoreApplication::instance();
        if (!context)
            return;
        QMetaObject::invokeMethod(
            context,
            [self, key] {
                if (!self)
                    return;
                const QList<RecordingPtr> finishing = self->m_finishing;
                for (const RecordingPtr &r : finishing)
                    if (r.get() == key)
                        self->deliverDidFinish(r);
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

std::optional<Error> CaptureMovieFileOutput::remuxToPlainMovie(const QString &path)
{
    Gst::ensureInitialized();
    const QByteArray original = QFile::encodeName(path);
    struct stat before = {};
    if (::stat(original.constData(), &before) != 0)
        return Error { kPosixErrorDomain, errno, QStringLiteral("Cannot read %1").arg(path) };
    const QString temporary = path + QLatin1String(kRemuxSuffix);
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
    gst_element_link(source.element(), demux.element());
    gst_element_link(mux.element(), sink.element());
    // Each track goes through a queue of its own into the new file; the
    // demuxer names its pads by kind, as the muxer's request pads are.
    g_signal_connect(demux.element(), "pad-added", G_CALLBACK(+[](GstElement *, GstPad *pad, gpointer data) {
        auto *copy = static_cast<Copy *>(data);
        Gst::CharPtr name(gst_pad_get_name(pad));
        const bool video = g_str_has_prefix(name.get(), "video");
        Gst::PadRef target(
            gst_element_request_pad_simple(copy->muxer, video ? "video_%u" : "audio_%u"), Gst::Ref::Adopt);
        GstElement *queue = gst_element_factory_make("queue", nullptr);
        GstObject *parent = gst_object_get_parent(GST_OBJECT(copy->muxer));
        gst_bin_add(GST_BIN(parent), queue);
        gst_object_unref(parent);
        Gst::PadRef queueSink(gst_element_get_static_pad(queue, "sink"), Gst::Ref::Adopt);
        Gst::PadRef queueSrc(gst_element_get_static_pad(queue, "src"), Gst::Ref::Adopt);
        gst_pad_link(queueSrc.get(), target.get());
        gst_element_sync_state_with_parent(queue);
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
        gst_pad_link(pad, queueSink.get());
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
