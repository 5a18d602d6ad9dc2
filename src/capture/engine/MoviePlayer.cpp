#include "MoviePlayer.h"

#include "GstBusReader.h"
#include "Threads.h"

#include <gst/app/gstappsink.h>
#include <gst/video/video.h>

#include <QFile>
#include <QFileInfo>
#include <QMutexLocker>

#include <atomic>
#include <cmath>

// The latest picture of each file, written on the streaming threads and
// read on the main thread.
struct MoviePlayer::Frames
{
    MoviePlayer *player;
    mutable QMutex mutex;
    QImage images[2];
    std::atomic<bool> notifying { false };
};

namespace {

struct Sink
{
    std::shared_ptr<void> frames; // keeps Frames alive while the sink lives
    int file;
};

GstFlowReturn takeSample(GstAppSink *appsink, bool preroll, gpointer data)
{
    auto *sink = static_cast<Sink *>(data);
    auto *frames = static_cast<MoviePlayer::Frames *>(sink->frames.get());
    GstSample *sample = preroll ? gst_app_sink_pull_preroll(appsink) : gst_app_sink_pull_sample(appsink);
    if (!sample)
        return GST_FLOW_OK;
    GstVideoInfo info;
    GstBuffer *buffer = gst_sample_get_buffer(sample);
    GstMapInfo map;
    if (gst_video_info_from_caps(&info, gst_sample_get_caps(sample)) && buffer
        && gst_buffer_map(buffer, &map, GST_MAP_READ)) {
        const QImage view(map.data, GST_VIDEO_INFO_WIDTH(&info), GST_VIDEO_INFO_HEIGHT(&info),
            GST_VIDEO_INFO_PLANE_STRIDE(&info, 0), QImage::Format_RGB32);
        QImage copy = view.copy();
        gst_buffer_unmap(buffer, &map);
        {
            QMutexLocker lock(&frames->mutex);
            frames->images[sink->file] = std::move(copy);
        }
        // One notice at a time: a main thread that is busy sees the latest.
        // The notice keeps the pictures alive; the player it goes to drops
        // it should the player be gone first.
        if (!frames->notifying.exchange(true))
            QMetaObject::invokeMethod(
                frames->player,
                [shared = std::static_pointer_cast<MoviePlayer::Frames>(sink->frames)] {
                    shared->notifying = false;
                    emit shared->player->frameChanged();
                },
                Qt::QueuedConnection);
    }
    gst_sample_unref(sample);
    return GST_FLOW_OK;
}

} // namespace

MoviePlayer::MoviePlayer(QObject *parent)
    : QObject(parent)
{
    m_positionTimer.setInterval(100);
    connect(&m_positionTimer, &QTimer::timeout, this, &MoviePlayer::updatePosition);
}

MoviePlayer::~MoviePlayer()
{
    close();
}

bool MoviePlayer::hasSoundServer()
{
    static const bool answers = [] {
        Gst::ensureInitialized();
        // A server that answers lets its sink open; without one it fails at
        // once, and the sound plays to nowhere.
        Gst::ElementRef probe = Gst::make("pulsesink");
        if (!probe)
            return false;
        const bool opened = gst_element_set_state(probe.element(), GST_STATE_READY) == GST_STATE_CHANGE_SUCCESS;
        gst_element_set_state(probe.element(), GST_STATE_NULL);
        return opened;
    }();
    return answers;
}

void MoviePlayer::close()
{
    ++m_generation;
    m_positionTimer.stop();
    m_busReader.reset();
    if (m_pipeline)
        gst_element_set_state(m_pipeline.element(), GST_STATE_NULL);
    m_pipeline = {};
    m_frames.reset();
    m_paths.clear();
    m_levels.clear();
    m_position = 0;
    m_duration = -1;
    m_pendingSeek = -1;
    m_prerolled = m_hasPicture = m_hasSound = false;
    setPlaying(false);
}

void MoviePlayer::open(const QStringList &paths, qint64 knownDuration)
{
    close();
    m_knownDuration = knownDuration;
    if (paths.isEmpty())
        return;
    Gst::ensureInitialized();
    m_paths = paths.mid(0, 2);
    m_frames = std::make_shared<Frames>();
    m_frames->player = this;
    m_pipeline = Gst::ElementRef(gst_pipeline_new("review"), Gst::Ref::Adopt);
    for (int file = 0; file < m_paths.size(); ++file) {
        Gst::ElementRef source = Gst::make("filesrc");
        Gst::ElementRef decode = Gst::make("decodebin");
        if (!source || !decode) {
            emit failed(tr("This computer cannot play movies: a GStreamer plug-in is missing."));
            return;
        }
        g_object_set(source.get(), "location", QFile::encodeName(m_paths[file]).constData(), nullptr);
        Gst::add(m_pipeline.element(), source);
        Gst::add(m_pipeline.element(), decode);
        Gst::link(source.element(), decode.element(), nullptr);
        // Queued to the main thread with the file's number: streams are
        // added there, where the pipeline is changed.
        g_object_set_data(G_OBJECT(decode.element()), "lumex-file", GINT_TO_POINTER(file));
        g_signal_connect(decode.element(), "pad-added", G_CALLBACK(+[](GstElement *decode, GstPad *pad, gpointer data) {
            auto *player = static_cast<MoviePlayer *>(data);
            player->addStream(pad, GPOINTER_TO_INT(g_object_get_data(G_OBJECT(decode), "lumex-file")));
        }),
            this);
    }
    m_busReader
        = std::make_unique<GstBusReader>(Gst::BusRef(gst_element_get_bus(m_pipeline.element()), Gst::Ref::Adopt),
            [this](GstMessage *message) { handleMessage(message); });
    if (gst_element_set_state(m_pipeline.element(), GST_STATE_PAUSED) == GST_STATE_CHANGE_FAILURE) {
        m_busReader->readPending();
        emit failed(tr("The recording cannot be played."));
    }
}

// On a streaming thread: each stream ends in a sink of its own, added while
// the pipeline prerolls.
void MoviePlayer::addStream(GstPad *pad, int file)
{
    Gst::CapsPtr caps(gst_pad_get_current_caps(pad));
    if (!caps)
        caps.reset(gst_pad_query_caps(pad, nullptr));
    const char *kind
        = caps && !gst_caps_is_empty(caps.get()) ? gst_structure_get_name(gst_caps_get_structure(caps.get(), 0)) : "";
    const bool video = g_str_has_prefix(kind, "video/");
    const bool sound = g_str_has_prefix(kind, "audio/") && file == 0;
    QByteArray description;
    if (video)
        description = "queue max-size-buffers=3 ! videoconvert ! videoscale ! "
                      "video/x-raw,format=BGRx,pixel-aspect-ratio=1/1 ! appsink name=pictures max-buffers=1 drop=true";
    else if (sound)
        description = "queue ! audioconvert ! audioresample ! volume name=volume ! "
            + QByteArray(hasSoundServer() ? "pulsesink" : "fakesink sync=true");
    else
        description = "fakesink sync=false";
    Gst::ElementRef branch = Gst::parseBin(description, true, nullptr);
    if (!branch)
        return;
    // Set before the pipeline starts and cleared only once it has stopped.
    GstElement *pipeline = m_pipeline.element();
    if (video) {
        Gst::ElementRef appsink(gst_bin_get_by_name(GST_BIN(branch.element()), "pictures"), Gst::Ref::Adopt);
        GstAppSinkCallbacks callbacks {};
        callbacks.new_preroll = [](GstAppSink *sink, gpointer data) { return takeSample(sink, true, data); };
        callbacks.new_sample = [](GstAppSink *sink, gpointer data) { return takeSample(sink, false, data); };
        gst_app_sink_set_callbacks(GST_APP_SINK(appsink.element()), &callbacks,
            new Sink { std::static_pointer_cast<void>(m_frames), file },
            [](gpointer data) { delete static_cast<Sink *>(data); });
        if (file == 0)
            m_hasPicture = true;
    }
    if (sound)
        m_hasSound = true;
    Gst::add(pipeline, branch);
    Gst::PadRef into(gst_element_get_static_pad(branch.element(), "sink"), Gst::Ref::Adopt);
    Gst::link(pad, into.get(), nullptr);
    gst_element_sync_state_with_parent(branch.element());
}

void MoviePlayer::handleMessage(GstMessage *message)
{
    if (!m_pipeline)
        return;
    switch (GST_MESSAGE_TYPE(message)) {
    case GST_MESSAGE_ASYNC_DONE: {
        // A recording still being written tells the length of its first
        // part only; the recorder knows how far it has got.
        gint64 duration = -1;
        if (!gst_element_query_duration(m_pipeline.element(), GST_FORMAT_TIME, &duration))
            duration = -1;
        duration = std::max<gint64>(duration, m_knownDuration);
        if (duration > 0 && duration != m_duration) {
            m_duration = duration;
            emit durationChanged(duration);
        }
        if (!m_prerolled) {
            m_prerolled = true;
            if (!m_hasPicture && !m_paths.isEmpty())
                scanLevels(m_paths.first());
        }
        if (m_pendingSeek >= 0)
            seek(std::exchange(m_pendingSeek, -1));
        updatePosition();
        break;
    }
    case GST_MESSAGE_EOS:
        // At the end it stays on the last picture, ready to play again from
        // the start.
        gst_element_set_state(m_pipeline.element(), GST_STATE_PAUSED);
        setPlaying(false);
        if (m_duration > 0) {
            m_position = m_duration;
            emit positionChanged(m_position);
        }
        break;
    case GST_MESSAGE_ERROR:
        if (std::optional<Error> error = Gst::errorFromMessage(message)) {
            qWarning("Review player: %s", qPrintable(error->localizedDescription));
            gst_element_set_state(m_pipeline.element(), GST_STATE_NULL);
            setPlaying(false);
            emit failed(tr("The recording cannot be played."));
        }
        break;
    default:
        break;
    }
}

void MoviePlayer::play()
{
    if (!m_pipeline)
        return;
    if (m_duration > 0 && m_position >= m_duration)
        seek(0);
    gst_element_set_state(m_pipeline.element(), GST_STATE_PLAYING);
    setPlaying(true);
}

void MoviePlayer::pause()
{
    if (!m_pipeline)
        return;
    gst_element_set_state(m_pipeline.element(), GST_STATE_PAUSED);
    setPlaying(false);
    updatePosition();
}

void MoviePlayer::seek(qint64 position)
{
    if (!m_pipeline)
        return;
    position = std::max<qint64>(0, m_duration > 0 ? std::min(position, m_duration) : position);
    m_position = position;
    emit positionChanged(position);
    if (!m_prerolled) {
        m_pendingSeek = position;
        return;
    }
    // Accurate: the frame shown is the frame at the position, not the key
    // frame before it.
    gst_element_seek_simple(
        m_pipeline.element(), GST_FORMAT_TIME, GstSeekFlags(GST_SEEK_FLAG_FLUSH | GST_SEEK_FLAG_ACCURATE), position);
}

QImage MoviePlayer::frame() const
{
    if (!m_frames)
        return {};
    QMutexLocker lock(&m_frames->mutex);
    return m_frames->images[0];
}

QImage MoviePlayer::insetFrame() const
{
    if (!m_frames)
        return {};
    QMutexLocker lock(&m_frames->mutex);
    return m_frames->images[1];
}

void MoviePlayer::updatePosition()
{
    gint64 position = 0;
    if (!m_pipeline || !m_playing || !gst_element_query_position(m_pipeline.element(), GST_FORMAT_TIME, &position))
        return;
    if (position != m_position) {
        m_position = position;
        emit positionChanged(position);
    }
}

void MoviePlayer::setPlaying(bool playing)
{
    if (playing)
        m_positionTimer.start();
    else
        m_positionTimer.stop();
    if (playing == m_playing)
        return;
    m_playing = playing;
    emit playingChanged(playing);
}

void MoviePlayer::scanLevels(const QString &path)
{
    const int generation = m_generation;
    runInBackground(
        this,
        [path] {
            // The whole recording decoded as fast as it goes, its loudness
            // noted every tenth of a second.
            QVector<float> levels;
            Gst::ElementRef pipeline(
                gst_parse_launch("filesrc name=source ! decodebin ! audioconvert ! level interval=100000000 ! "
                                 "fakesink sync=false",
                    nullptr),
                Gst::Ref::Adopt);
            if (!pipeline)
                return levels;
            Gst::ElementRef source(gst_bin_get_by_name(GST_BIN(pipeline.element()), "source"), Gst::Ref::Adopt);
            g_object_set(source.get(), "location", QFile::encodeName(path).constData(), nullptr);
            Gst::BusRef bus(gst_element_get_bus(pipeline.element()), Gst::Ref::Adopt);
            gst_element_set_state(pipeline.element(), GST_STATE_PLAYING);
            while (Gst::MessagePtr message { gst_bus_timed_pop_filtered(bus.get(), 30 * GST_SECOND,
                GstMessageType(GST_MESSAGE_ELEMENT | GST_MESSAGE_EOS | GST_MESSAGE_ERROR)) }) {
                if (GST_MESSAGE_TYPE(message.get()) != GST_MESSAGE_ELEMENT)
                    break;
                const GstStructure *s = gst_message_get_structure(message.get());
                const GValue *rms
                    = s && gst_structure_has_name(s, "level") ? gst_structure_get_value(s, "rms") : nullptr;
                // One value per channel, in the GValueArray the element
                // still uses.
                G_GNUC_BEGIN_IGNORE_DEPRECATIONS
                const GValueArray *channels = rms && G_VALUE_TYPE(rms) == g_type_from_name("GValueArray")
                    ? static_cast<GValueArray *>(g_value_get_boxed(rms))
                    : nullptr;
                if (!channels || channels->n_values == 0)
                    continue;
                double loudest = -200;
                for (guint i = 0; i < channels->n_values; ++i)
                    loudest = std::max(loudest, g_value_get_double(&channels->values[i]));
                G_GNUC_END_IGNORE_DEPRECATIONS
                // -60 dB and below draws as silence.
                levels << float(std::clamp((loudest + 60.0) / 60.0, 0.0, 1.0));
            }
            gst_element_set_state(pipeline.element(), GST_STATE_NULL);
            return levels;
        },
        [this, generation](const QVector<float> &levels) {
            if (generation != m_generation)
                return;
            m_levels = levels;
            emit levelsChanged();
        },
        [](const QString &) { return QVector<float>(); });
}
