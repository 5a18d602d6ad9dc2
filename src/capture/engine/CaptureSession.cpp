#include "CaptureSession.h"

#include "CaptureDeviceRegistry.h"
#include "CompressionOptions.h"
#include "GstBusReader.h"
#include "Log.h"
#include "TeeBranch.h"

#include <chrono>
#include <cmath>
#include <cstring>

CaptureDeviceInput::CaptureDeviceInput(CaptureDevicePtr device)
    : m_device(std::move(device))
{
    const bool muxed = m_device->hasMediaType(MediaType::Muxed);
    if (muxed || m_device->hasMediaType(MediaType::Video))
        m_connections.append(std::make_shared<CaptureConnection>(this, MediaType::Video, CaptureDevice::kVideoPad));
    if (muxed || m_device->hasMediaType(MediaType::Sound))
        m_connections.append(std::make_shared<CaptureConnection>(this, MediaType::Sound, CaptureDevice::kAudioPad));
}

QList<CaptureConnectionPtr> CaptureOutput::connections() const
{
    QList<CaptureConnectionPtr> result;
    if (!m_session)
        return result;
    bool haveVideo = false, haveSound = false;
    for (const CaptureConnectionPtr &connection : m_session->activeConnections()) {
        bool &have = connection->mediaType() == MediaType::Video ? haveVideo : haveSound;
        if (m_chosen.isEmpty() ? !have : m_chosen.contains(connection))
            result.append(connection);
        have = true;
    }
    return result;
}

CaptureSession::CaptureSession()
{
    Gst::ensureInitialized();
    qRegisterMetaType<Error>("Error");
}

CaptureSession::~CaptureSession()
{
    stopRunning();
    for (const CaptureOutputPtr &output : std::as_const(m_outputs))
        output->m_session = nullptr;
}

bool CaptureSession::addInput(const CaptureInputPtr &input, Error *error)
{
    if (!input || !input->device()->isOpen()) {
        if (error)
            *error
                = Gst::resourceError(GST_RESOURCE_ERROR_NOT_FOUND, QStringLiteral("The capture device is not open."));
        return false;
    }
    for (const CaptureInputPtr &present : std::as_const(m_inputs)) {
        if (present == input || present->device() == input->device()) {
            if (error)
                *error = Gst::resourceError(
                    GST_RESOURCE_ERROR_BUSY, QStringLiteral("The capture device is already an input of this session."));
            return false;
        }
    }
    const bool wasRunning = isRunning();
    stopRunning();
    m_inputs.append(input);
    if (wasRunning)
        startRunning();
    return true;
}

void CaptureSession::removeInput(const CaptureInputPtr &input)
{
    if (!m_inputs.contains(input))
        return;
    const bool wasRunning = isRunning();
    stopRunning();
    m_inputs.removeAll(input);
    if (wasRunning)
        startRunning();
}

bool CaptureSession::addOutput(const CaptureOutputPtr &output, Error *error)
{
    if (!output || output->m_session) {
        if (error)
            *error = Gst::coreError(
                GST_CORE_ERROR_FAILED, QStringLiteral("The capture output belongs to a session already."));
        return false;
    }
    output->m_session = this;
    m_outputs.append(output);
    if (isRunning())
        output->sessionDidStartRunning();
    return true;
}

void CaptureSession::removeOutput(const CaptureOutputPtr &output)
{
    if (!output || output->m_session != this)
        return;
    if (isRunning())
        output->sessionWillStopRunning();
    output->m_session = nullptr;
    m_outputs.removeAll(output);
}

QList<CaptureConnectionPtr> CaptureSession::activeConnections() const
{
    QList<CaptureConnectionPtr> result;
    bool haveVideo = false, haveSound = false;
    for (const CaptureInputPtr &input : m_inputs) {
        for (const CaptureConnectionPtr &connection : input->connections()) {
            if (!connection->isEnabled())
                continue;
            const bool video = connection->mediaType() == MediaType::Video;
            bool &have = video ? haveVideo : haveSound;
            if (!have || (video && m_streamsEveryVideo)) {
                have = true;
                result.append(connection);
            }
        }
    }
    return result;
}

GstElement *CaptureSession::teeForConnection(const CaptureConnectionPtr &connection) const
{
    for (const Stream &stream : m_streams)
        if (stream.connection == connection)
            return stream.tee;
    return nullptr;
}

GstElement *CaptureSession::teeForRecording(
    const CaptureConnectionPtr &connection, const CompressionOptions *encodedAs, Error *error)
{
    for (Stream &stream : m_streams) {
        if (stream.connection != connection)
            continue;
        if (!encodedAs)
            return stream.tee;
        if (stream.encodedTee)
            return stream.encodedTee;
        const CompressionOptions &options = *encodedAs;
        GstElement *pipeline = m_pipeline.element();
        Gst::ElementRef queue = Gst::make("queue", error);
        Gst::ElementRef encoder = queue ? options.createEncoderBin(error) : Gst::ElementRef();
        Gst::ElementRef tee = encoder ? Gst::make("tee", error) : Gst::ElementRef();
        if (!tee)
            return nullptr;
        // As a movie's own encoder would: room for a stall, no back-pressure
        // on the live sources.
        g_object_set(queue.get(), "max-size-buffers", 0u, "max-size-bytes", 0u, "max-size-time",
            guint64(3 * GST_SECOND), nullptr);
        g_object_set(tee.get(), "allow-not-linked", TRUE, nullptr);
        for (const Gst::ElementRef *element : { &queue, &encoder, &tee })
            Gst::add(pipeline, *element);
        if (!Gst::link(queue.element(), encoder.element(), error)
            || !Gst::link(encoder.element(), tee.element(), error))
            return nullptr;
        std::shared_ptr<TeeBranch> branch = TeeBranch::request(stream.tee, error);
        Gst::PadRef queueSink(gst_element_get_static_pad(queue.element(), "sink"), Gst::Ref::Adopt);
        if (!branch || !branch->link(queueSink.get(), error))
            return nullptr;
        // Its format is fixed at the first movie: a branch added later takes
        // it as it is, and does not make the encoder announce it again (a
        // muxer already writing would take that for a change of format).
        Gst::PadRef teeSink(gst_element_get_static_pad(tee.element(), "sink"), Gst::Ref::Adopt);
        gst_pad_add_probe(
            teeSink.get(), GST_PAD_PROBE_TYPE_EVENT_UPSTREAM,
            [](GstPad *, GstPadProbeInfo *info, gpointer) {
                return GST_EVENT_TYPE(GST_PAD_PROBE_INFO_EVENT(info)) == GST_EVENT_RECONFIGURE ? GST_PAD_PROBE_DROP
                                                                                               : GST_PAD_PROBE_OK;
            },
            nullptr, nullptr);
        for (const Gst::ElementRef *element : { &tee, &encoder, &queue })
            gst_element_sync_state_with_parent(element->element());
        stream.encodedBranch = std::move(branch);
        stream.encodedTee = tee.element();
        return stream.encodedTee;
    }
    *error = Gst::coreError(GST_CORE_ERROR_FAILED, QStringLiteral("The capture session has no stream to record."));
    return nullptr;
}

GstClockTime CaptureSession::runningTime() const
{
    if (!m_pipeline)
        return GST_CLOCK_TIME_NONE;
    GstClock *clock = gst_element_get_clock(m_pipeline.element());
    if (!clock)
        return 0;
    const GstClockTime now = gst_clock_get_time(clock);
    gst_object_unref(clock);
    const GstClockTime base = gst_element_get_base_time(m_pipeline.element());
    return now > base ? now - base : 0;
}

CaptureConnectionPtr CaptureSession::videoConnection() const
{
    for (const CaptureConnectionPtr &connection : activeConnections())
        if (connection->mediaType() == MediaType::Video)
            return connection;
    return nullptr;
}

namespace {

// A new element in the pipeline, or null with `error` set.
GstElement *addElement(GstElement *pipeline, const char *factory, Error *error)
{
    Gst::ElementRef element = Gst::make(factory, error);
    if (!element)
        return nullptr;
    Gst::add(pipeline, element);
    return element.element();
}

// A sink that takes whatever comes, as fast as it comes.
GstElement *addDrain(GstElement *pipeline, Error *error)
{
    GstElement *sink = addElement(pipeline, "fakesink", error);
    if (sink)
        g_object_set(sink, "sync", FALSE, "async", FALSE, nullptr);
    return sink;
}

// Samples at full scale, in the raw formats a converter hands on; other
// formats are not counted.
template<typename T> quint64 countClipped(const T *samples, gsize count, T limit)
{
    quint64 clipped = 0;
    for (gsize i = 0; i < count; ++i)
        clipped += (samples[i] >= limit || samples[i] <= -limit) ? 1 : 0;
    return clipped;
}

void countSound(StreamHealth &health, GstPad *pad, const GstMapInfo &map)
{
    Gst::CapsPtr caps(gst_pad_get_current_caps(pad));
    const GstStructure *s = caps ? gst_caps_get_structure(caps.get(), 0) : nullptr;
    const char *format = s ? gst_structure_get_string(s, "format") : nullptr;
    if (!format)
        return;
    quint64 samples = 0;
    quint64 clipped = 0;
    // A converted signal may stop a rounding short of the largest value.
    if (!std::strcmp(format, "S16LE")) {
        samples = map.size / 2;
        clipped = countClipped(reinterpret_cast<const qint16 *>(map.data), samples, qint16(32760));
    } else if (!std::strcmp(format, "S32LE")) {
        samples = map.size / 4;
        clipped = countClipped(reinterpret_cast<const qint32 *>(map.data), samples, qint32(2147000000));
    } else if (!std::strcmp(format, "F32LE")) {
        samples = map.size / 4;
        clipped = countClipped(reinterpret_cast<const float *>(map.data), samples, 0.9998f);
    } else {
        return;
    }
    health.samples += samples;
    health.clippedSamples += clipped;
}

// A camera that hangs often repeats its last frame: frames are told apart
// by a signature of every 31st byte, a prime so the samples wander across
// rows, cheap enough for every frame.
void countFrame(StreamHealth &health, const GstMapInfo &map)
{
    quint64 signature = 1469598103934665603ull ^ map.size;
    for (gsize i = 0; i < map.size; i += 31)
        signature = (signature ^ map.data[i]) * 1099511628211ull;
    ++health.frames;
    if (health.lastSignature.exchange(signature) != signature || health.lastChangedFrameMs.load() < 0)
        health.lastChangedFrameMs = StreamHealth::nowMs();
}

std::atomic<bool> s_countsHealth { true };

struct HealthProbe
{
    std::shared_ptr<StreamHealth> health;
    bool sound;
};

GstPadProbeReturn countBuffer(GstPad *pad, GstPadProbeInfo *info, gpointer data)
{
    auto *probe = static_cast<HealthProbe *>(data);
    GstBuffer *buffer = GST_PAD_PROBE_INFO_BUFFER(info);
    GstMapInfo map;
    if (!buffer || !gst_buffer_map(buffer, &map, GST_MAP_READ))
        return GST_PAD_PROBE_OK;
    if (probe->sound)
        countSound(*probe->health, pad, map);
    else
        countFrame(*probe->health, map);
    gst_buffer_unmap(buffer, &map);
    return GST_PAD_PROBE_OK;
}

} // namespace

void CaptureSession::setCountsStreamHealth(bool counts)
{
    s_countsHealth = counts;
}

qint64 StreamHealth::nowMs()
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

bool CaptureSession::buildPipeline(Error *error)
{
    m_pipeline = Gst::ElementRef(gst_pipeline_new("capture-session"), Gst::Ref::Adopt);
    const QList<CaptureConnectionPtr> active = activeConnections();
    for (const CaptureInputPtr &input : std::as_const(m_inputs)) {
        GstElement *source = input->device()->source();
        if (!source) {
            *error = Gst::resourceError(GST_RESOURCE_ERROR_NOT_FOUND,
                QStringLiteral("The capture device %1 is not open.").arg(input->device()->localizedDisplayName()));
            return false;
        }
        gst_bin_add(GST_BIN(m_pipeline.element()), source);
        for (const CaptureConnectionPtr &connection : input->connections()) {
            Gst::PadRef pad(gst_element_get_static_pad(source, connection->padName()), Gst::Ref::Adopt);
            if (active.contains(connection)) {
                if (!addStream(pad.get(), connection, error))
                    return false;
                continue;
            }
            // A stream nobody wants still has to flow somewhere.
            GstElement *sink = addDrain(m_pipeline.element(), error);
            if (!sink)
                return false;
            Gst::PadRef sinkPad(gst_element_get_static_pad(sink, "sink"), Gst::Ref::Adopt);
            if (!Gst::link(pad.get(), sinkPad.get(), error))
                return false;
        }
    }
    return true;
}

bool CaptureSession::addStream(GstPad *sourcePad, const CaptureConnectionPtr &connection, Error *error)
{
    GstElement *pipeline = m_pipeline.element();
    Stream stream;
    stream.connection = connection;
    const bool sound = connection->mediaType() == MediaType::Sound;
    GstElement *head = addElement(pipeline, sound ? "audioconvert" : "identity", error);
    if (!head)
        return false;
    stream.head = head;
    GstElement *tail = head;
    if (sound) {
        if (!(stream.level = addElement(pipeline, "level", error)) || !Gst::link(head, stream.level, error))
            return false;
        g_object_set(stream.level, "interval", guint64(100 * GST_MSECOND), "post-messages", TRUE, nullptr);
        tail = stream.level;
    }
    if (!(stream.tee = addElement(pipeline, "tee", error)) || !Gst::link(tail, stream.tee, error))
        return false;
    Gst::PadRef counted(gst_element_get_static_pad(head, "src"), Gst::Ref::Adopt);
    if (s_countsHealth)
        gst_pad_add_probe(counted.get(), GST_PAD_PROBE_TYPE_BUFFER, countBuffer,
            new HealthProbe { connection->health(), sound },
            [](gpointer data) { delete static_cast<HealthProbe *>(data); });
    g_object_set(stream.tee, "allow-not-linked", TRUE, nullptr);
    // A branch that always drains keeps the live sources running while no
    // output is attached.
    GstElement *queue = addElement(pipeline, "queue", error);
    GstElement *sink = queue ? addDrain(pipeline, error) : nullptr;
    if (!sink || !Gst::link(stream.tee, queue, error) || !Gst::link(queue, sink, error))
        return false;
    g_object_set(queue, "leaky", 2, "max-size-buffers", 2u, nullptr);
    Gst::PadRef headSink(gst_element_get_static_pad(head, "sink"), Gst::Ref::Adopt);
    if (!Gst::link(sourcePad, headSink.get(), nullptr)) {
        *error = Gst::coreError(GST_CORE_ERROR_NEGOTIATION, QStringLiteral("Cannot link the capture device"));
        return false;
    }
    m_streams.append(stream);
    return true;
}

void CaptureSession::startRunning()
{
    if (isRunning())
        return;
    Error error;
    if (!buildPipeline(&error)) {
        fail(error);
        return;
    }
    m_busReader
        = std::make_unique<GstBusReader>(Gst::BusRef(gst_element_get_bus(m_pipeline.element()), Gst::Ref::Adopt),
            [this](GstMessage *message) { handleMessage(message); });
    if (gst_element_set_state(m_pipeline.element(), GST_STATE_PLAYING) == GST_STATE_CHANGE_FAILURE) {
        m_busReader->readPending(); // reports the element's error and stops
        if (isRunning())
            fail(Gst::coreError(GST_CORE_ERROR_STATE_CHANGE, QStringLiteral("The capture session could not start.")));
        return;
    }
    for (const CaptureOutputPtr &output : std::as_const(m_outputs))
        output->sessionDidStartRunning();
}

void CaptureSession::stopRunning()
{
    if (!m_pipeline)
        return;
    for (const CaptureOutputPtr &output : std::as_const(m_outputs))
        output->sessionWillStopRunning();
    gst_element_set_state(m_pipeline.element(), GST_STATE_NULL);
    // The device keeps its source bin for the next session.
    for (const CaptureInputPtr &input : std::as_const(m_inputs)) {
        if (GstElement *source = input->device()->source()) {
            if (GST_OBJECT_PARENT(source) == GST_OBJECT(m_pipeline.get()))
                gst_bin_remove(GST_BIN(m_pipeline.element()), source);
            gst_element_set_state(source, GST_STATE_READY);
        }
        for (const CaptureConnectionPtr &connection : input->connections())
            connection->setAveragePowerLevel(-700.0f);
    }
    // A microphone that stood in for a lost one was ours alone.
    for (const CaptureDevicePtr &standIn : std::exchange(m_standIns, {})) {
        Gst::removeFromParent(standIn->source());
        standIn->close();
    }
    m_busReader.reset();
    m_streams.clear();
    m_pipeline = {};
}

bool CaptureSession::continueWithout(GstObject *failed, const Error &error)
{
    CaptureInputPtr lost;
    for (const CaptureInputPtr &input : std::as_const(m_inputs)) {
        GstElement *source = input->device()->source();
        if (source && (failed == GST_OBJECT(source) || gst_object_has_as_ancestor(failed, GST_OBJECT(source))))
            lost = input;
    }
    if (!lost)
        return false;
    GstElement *source = lost->device()->source();
    // Stopped before it is unlinked, so it cannot report the unlinking.
    gst_element_set_state(source, GST_STATE_NULL);
    CaptureDevicePtr standIn;
    for (const Stream &stream : std::as_const(m_streams)) {
        if (stream.connection->input() != lost.get())
            continue;
        Gst::PadRef sink(gst_element_get_static_pad(stream.head, "sink"), Gst::Ref::Adopt);
        Gst::CapsPtr caps(gst_pad_get_current_caps(sink.get()));
        if (Gst::PadRef peer(gst_pad_get_peer(sink.get()), Gst::Ref::Adopt); peer)
            gst_pad_unlink(peer.get(), sink.get());
        if (!caps)
            continue;
        const bool sound = stream.connection->mediaType() == MediaType::Sound;
        if (sound)
            standIn = openStandInMicrophone(lost->device());
        Error standInError;
        if (!linkStandIn(sink.get(), caps.get(), sound, standIn, &standInError)) {
            Log::format(QStringLiteral("No stand-in for a lost capture device: %@"), { describeError(standInError) });
            return false;
        }
    }
    // The device keeps its bin; it leaves our pipeline but not the input
    // list, so that its connections (and the meter reading them) stay.
    Gst::removeFromParent(source);
    emit inputLost(lost->device(), standIn, error);
    return true;
}

CaptureDevicePtr CaptureSession::openStandInMicrophone(const CaptureDevicePtr &lost)
{
    // A device of its own, free, and giving sound alone: a second camera's
    // microphone would bring a picture nobody asked for.
    CaptureDevicePtr microphone = CaptureDeviceRegistry::instance().defaultMicrophone();
    if (!microphone || microphone == lost || !microphone->mediaTypes().contains(MediaType::Sound)
        || microphone->hasMediaType(MediaType::Muxed) || microphone->isOpen() || !microphone->open(nullptr))
        return nullptr;
    return microphone;
}

bool CaptureSession::linkStandIn(
    GstPad *sink, GstCaps *caps, bool sound, const CaptureDevicePtr &microphone, Error *error)
{
    GstElement *pipeline = m_pipeline.element();
    Gst::CharPtr format(gst_caps_to_string(caps));
    const QByteArray filter = " ! capsfilter caps=\"" + QByteArray(format.get()).replace('"', "\\\"") + '"';
    // Without a microphone to take over: silence or black, stamped from
    // the running time on, as the device's own buffers were.
    const QByteArray description = microphone
        ? "audioconvert ! audioresample ! audioconvert" + filter
        : QByteArray(sound ? "audiotestsrc wave=silence" : "videotestsrc pattern=black")
            + " is-live=true timestamp-offset=" + QByteArray::number(qint64(runningTime())) + filter;
    Gst::ElementRef standIn = Gst::parseBin(description, true, error);
    Gst::PadRef out(standIn ? gst_element_get_static_pad(standIn.element(), "src") : nullptr, Gst::Ref::Adopt);
    if (!out)
        return false;
    Gst::add(pipeline, standIn);
    if (!Gst::link(out.get(), sink, error))
        return false;
    // Playing before the microphone starts: a source whose first push meets
    // a stopped converter is refused and falls silent for good.
    gst_element_sync_state_with_parent(standIn.element());
    if (microphone) {
        Gst::add(pipeline, Gst::ElementRef(microphone->source(), Gst::Ref::Add));
        Gst::PadRef from(gst_element_get_static_pad(microphone->source(), CaptureDevice::kAudioPad), Gst::Ref::Adopt);
        Gst::PadRef into(gst_element_get_static_pad(standIn.element(), "sink"), Gst::Ref::Adopt);
        if (!from || !into || !Gst::link(from.get(), into.get(), error))
            return false;
        m_standIns << microphone;
        gst_element_sync_state_with_parent(microphone->source());
    }
    return true;
}

void CaptureSession::fail(const Error &error)
{
    const QList<CaptureOutputPtr> outputs = m_outputs;
    for (const CaptureOutputPtr &output : outputs)
        output->sessionDidFail(error);
    stopRunning();
    emit runtimeError(error);
}

void CaptureSession::handleMessage(GstMessage *message)
{
    const QList<CaptureOutputPtr> outputs = m_outputs;
    for (const CaptureOutputPtr &output : outputs)
        if (output->handleBusMessage(message))
            return;
    switch (GST_MESSAGE_TYPE(message)) {
    case GST_MESSAGE_ERROR: {
        // Queued by an output's branch that has left the pipeline since.
        if (!gst_object_has_as_ancestor(GST_MESSAGE_SRC(message), GST_OBJECT(m_pipeline.get())))
            break;
        const Error error = Gst::errorFromMessage(message).value_or(Error {});
        if (m_continuesWithoutFailedDevices && continueWithout(GST_MESSAGE_SRC(message), error))
            break;
        fail(error);
        break;
    }
    case GST_MESSAGE_EOS:
        // Live sources end only when their device goes away.
        if (GST_MESSAGE_SRC(message) == GST_OBJECT(m_pipeline.get()))
            fail(Gst::coreError(GST_CORE_ERROR_FAILED, QStringLiteral("The capture device stopped sending media.")));
        break;
    case GST_MESSAGE_ELEMENT: {
        const GstStructure *s = gst_message_get_structure(message);
        if (!s || !gst_structure_has_name(s, "level"))
            break;
        for (const Stream &stream : std::as_const(m_streams)) {
            if (GST_MESSAGE_SRC(message) != GST_OBJECT(stream.level))
                continue;
            const GValue *rmsValue = gst_structure_get_value(s, "rms");
            if (!rmsValue)
                break;
            // Averaged as power, not as decibels, so one silent channel does
            // not drag a loud one to silence.
            double power = 0;
            guint channels = 0;
            // The level element still reports in the deprecated GValueArray.
            G_GNUC_BEGIN_IGNORE_DEPRECATIONS
            if (G_VALUE_HOLDS(rmsValue, g_value_array_get_type())) {
                GValueArray *array = static_cast<GValueArray *>(g_value_get_boxed(rmsValue));
                channels = array->n_values;
                for (guint i = 0; i < channels; ++i)
                    power += std::pow(10.0, g_value_get_double(g_value_array_get_nth(array, i)) / 10.0);
            }
            G_GNUC_END_IGNORE_DEPRECATIONS
            if (channels > 0 && power > 0)
                stream.connection->setAveragePowerLevel(float(10.0 * std::log10(power / channels)));
            else
                stream.connection->setAveragePowerLevel(-700.0f);
        }
        break;
    }
    default:
        break;
    }
}
