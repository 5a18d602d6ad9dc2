#include "CaptureDevice.h"

#include <QByteArray>

namespace {

QString stringProperty(const GstStructure *props, const char *key)
{
    if (!props)
        return {};
    const gchar *value = gst_structure_get_string(props, key);
    return value ? QString::fromUtf8(value) : QString();
}

// A source bin from a launch description whose children `videoOut` and
// `audioOut` (when given) become its video and audio pads.
Gst::ElementRef sourceBin(const QByteArray &description, const char *videoOut, const char *audioOut, Error *error)
{
    Gst::ElementRef bin = Gst::parseBin(description, false, error);
    if (bin
        && ((videoOut && !Gst::addGhostPad(bin.element(), videoOut, "src", CaptureDevice::kVideoPad))
            || (audioOut && !Gst::addGhostPad(bin.element(), audioOut, "src", CaptureDevice::kAudioPad)))) {
        *error = Gst::coreError(GST_CORE_ERROR_PAD, QStringLiteral("Cannot build capture source"));
        return {};
    }
    return bin;
}

// Takes an element to READY on a private bus, so that the device's own
// refusal (busy, missing, no permission) comes back as its GError.
bool bringToReady(GstElement *element, Error *error)
{
    Gst::BusRef bus(gst_bus_new(), Gst::Ref::Adopt);
    gst_element_set_bus(element, bus.get());
    const GstStateChangeReturn result = gst_element_set_state(element, GST_STATE_READY);
    bool ok = result != GST_STATE_CHANGE_FAILURE;
    if (!ok) {
        Gst::MessagePtr message(gst_bus_pop_filtered(bus.get(), GST_MESSAGE_ERROR));
        if (const auto e = Gst::errorFromMessage(message.get()))
            setError(error, e->domain, e->code, e->localizedDescription);
        else
            *error = Gst::coreError(GST_CORE_ERROR_STATE_CHANGE, QStringLiteral("The device refused to open"));
        gst_element_set_state(element, GST_STATE_NULL);
    }
    gst_element_set_bus(element, nullptr);
    return ok;
}

} // namespace

CaptureDevice::CaptureDevice(GstDevice *device, QString uniqueID)
    : m_kind(Kind::Hardware)
    , m_uniqueID(std::move(uniqueID))
    , m_gstDevice(device, Gst::Ref::Add)
{
    Gst::CharPtr name(gst_device_get_display_name(device));
    m_displayName = QString::fromUtf8(name.get());
    m_isVideo = gst_device_has_classes(device, "Video/Source");
    Gst::StructurePtr props(gst_device_get_properties(device));
    gboolean isDefault = FALSE;
    if (props && gst_structure_get_boolean(props.get(), "is-default", &isDefault))
        m_isDefault = isDefault;
}

CaptureDevice::CaptureDevice(Kind kind, QString uniqueID, QString displayName)
    : m_kind(kind)
    , m_uniqueID(std::move(uniqueID))
    , m_displayName(std::move(displayName))
    , m_isVideo(kind != Kind::TestMicrophone)
{ }

CaptureDevice::~CaptureDevice()
{
    close();
}

QStringList CaptureDevice::mediaTypes() const
{
    switch (m_kind) {
    case Kind::TestMuxed:
        return { MediaType::Muxed };
    case Kind::Hardware:
        return { m_isVideo ? MediaType::Video : MediaType::Sound };
    case Kind::TestMicrophone:
        return { MediaType::Sound };
    case Kind::TestCamera:
    case Kind::TestBroken:
    case Kind::Screen:
        return { MediaType::Video };
    }
    return {};
}

// Identity of a monitored device, most stable first:
// - PipeWire and PulseAudio name their nodes from the card's udev identity
//   (bus, vendor, model and serial), which survives replugging and restarts;
// - V4L2 devices carry udev's ID_SERIAL (vendor, model, serial number), the
//   same for a camera on any port; without one, the physical port path, the
//   same for any camera on that port; the /dev node (which moves between
//   plug-ins) only as a last resort;
// - anything else: its class and display name.
// The registry appends the port path when two devices would share an ID (two
// identical cameras without serial numbers).
QString CaptureDevice::uniqueIDForGstDevice(GstDevice *device)
{
    Gst::StructurePtr props(gst_device_get_properties(device));
    const QString nodeName = stringProperty(props.get(), "node.name");
    if (!nodeName.isEmpty())
        return QStringLiteral("pipewire:") + nodeName;
    if (g_object_class_find_property(G_OBJECT_GET_CLASS(device), "internal-name")) {
        gchar *internal = nullptr;
        g_object_get(device, "internal-name", &internal, nullptr);
        Gst::CharPtr owned(internal);
        if (internal && *internal)
            return QStringLiteral("pulse:") + QString::fromUtf8(internal);
    }
    const QString api = stringProperty(props.get(), "device.api");
    const QString serial = stringProperty(props.get(), "device.serial");
    if (!serial.isEmpty())
        return api + QStringLiteral(":serial:") + serial;
    const QString busPath = stringProperty(props.get(), "device.bus_path");
    if (!busPath.isEmpty())
        return api + QStringLiteral(":port:") + busPath;
    const QString path = stringProperty(props.get(), "device.path");
    if (!path.isEmpty())
        return api + QStringLiteral(":path:") + path;
    Gst::CharPtr classes(gst_device_get_device_class(device));
    Gst::CharPtr name(gst_device_get_display_name(device));
    return QStringLiteral("device:%1:%2").arg(QString::fromUtf8(classes.get()), QString::fromUtf8(name.get()));
}

Gst::ElementRef CaptureDevice::buildSource(Error *error)
{
    // Test sources are live so that they pace themselves like hardware and
    // time-stamp with the pipeline clock.
    static const QByteArray testVideo
        = "videotestsrc name=v is-live=true pattern=smpte ! video/x-raw,width=640,height=480,framerate=30/1 "
          "! timeoverlay name=vout";
    static const QByteArray testAudio = "audiotestsrc name=a is-live=true wave=sine freq=440 volume=0.3 "
                                        "! audio/x-raw,rate=48000,channels=2 ! identity name=aout";
    Gst::ElementRef bin;
    switch (m_kind) {
    case Kind::TestCamera:
        bin = sourceBin(testVideo, "vout", nullptr, error);
        break;
    case Kind::TestMicrophone:
        bin = sourceBin(testAudio, nullptr, "aout", error);
        break;
    case Kind::TestMuxed:
        bin = sourceBin(testVideo + ' ' + testAudio, "vout", "aout", error);
        break;
    case Kind::TestBroken:
        bin = sourceBin("v4l2src name=v device=/dev/lumex-missing-camera ! identity name=vout", "vout", nullptr, error);
        break;
    case Kind::Screen: {
        if (m_pipeWireFd >= 0) {
            // The compositor sends a frame only when the screen changes; the
            // last one is repeated so the recording keeps a steady rate.
            const QByteArray description
                = "pipewiresrc name=v always-copy=true do-timestamp=true keepalive-time=200 fd="
                + QByteArray::number(m_pipeWireFd) + " path=" + QByteArray::number(m_pipeWireNode)
                + " ! videorate ! video/x-raw,framerate=15/1 ! videoconvert name=vout";
            bin = sourceBin(description, "vout", nullptr, error);
            // Its clock follows the compositor and starts again whenever the
            // stream is renegotiated; the recording keeps the pipeline's.
            if (bin) {
                Gst::ElementRef source(gst_bin_get_by_name(GST_BIN(bin.element()), "v"), Gst::Ref::Adopt);
                if (source)
                    GST_OBJECT_FLAG_UNSET(source.element(), GST_ELEMENT_FLAG_PROVIDE_CLOCK);
            }
            break;
        }
        const QString display = m_xDisplay.isEmpty() ? qEnvironmentVariable("DISPLAY") : m_xDisplay;
        // Damage events only help when little changes; a steady rate keeps
        // the encoder's timing simple.
        const QByteArray description = "ximagesrc name=v use-damage=false show-pointer=true display-name=\""
            + display.toUtf8() + "\" ! video/x-raw,framerate=15/1 ! videoconvert name=vout";
        bin = sourceBin(description, "vout", nullptr, error);
        break;
    }
    case Kind::Hardware: {
        Gst::ElementRef element(gst_device_create_element(m_gstDevice.get(), nullptr), Gst::Ref::Adopt);
        if (!element) {
            *error = Gst::coreError(
                GST_CORE_ERROR_MISSING_PLUGIN, QStringLiteral("No source element for %1").arg(m_displayName));
            return {};
        }
        bin = Gst::ElementRef(gst_bin_new(nullptr), Gst::Ref::Adopt);
        // Cameras may give compressed frames (MJPEG); decodebin turns any of
        // them into raw video, and a plain converter follows for the rest.
        Gst::ElementRef tail = Gst::make(m_isVideo ? "decodebin" : "audioconvert", error);
        Gst::ElementRef convert = m_isVideo ? Gst::make("videoconvert", error) : Gst::ElementRef();
        if (!tail || (m_isVideo && !convert))
            return {};
        Gst::add(bin.element(), element);
        Gst::add(bin.element(), tail);
        if (!Gst::link(element.element(), tail.element(), error))
            return {};
        GstElement *last = tail.element();
        if (m_isVideo) {
            Gst::add(bin.element(), convert);
            m_decoderPads = Gst::SignalConnection(tail.element(), "pad-added",
                G_CALLBACK(+[](GstElement *, GstPad *pad, gpointer data) {
                    Gst::PadRef sink(gst_element_get_static_pad(GST_ELEMENT(data), "sink"), Gst::Ref::Adopt);
                    if (!gst_pad_is_linked(sink.get()) && gst_pad_link(pad, sink.get()) != GST_PAD_LINK_OK)
                        GST_ELEMENT_ERROR(GST_ELEMENT(data), CORE, NEGOTIATION,
                            ("The camera's frames cannot be converted."), (nullptr));
                }),
                convert.element());
            last = convert.element();
        }
        Gst::PadRef target(gst_element_get_static_pad(last, "src"), Gst::Ref::Adopt);
        gst_element_add_pad(bin.element(), gst_ghost_pad_new(m_isVideo ? kVideoPad : kAudioPad, target.get()));
        break;
    }
    }
    return bin;
}

bool CaptureDevice::open(Error *error)
{
    if (isOpen())
        return true;
    Gst::ensureInitialized();
    Error local;
    Error *out = error ? error : &local;
    Gst::ElementRef bin = buildSource(out);
    if (!bin)
        return false;
    if (!bringToReady(bin.element(), out)) {
        m_decoderPads.disconnect();
        return false;
    }
    m_source = std::move(bin);
    applyTestSignal();
    return true;
}

void CaptureDevice::setTestSignal(TestSignal signal)
{
    m_testSignal = signal;
    applyTestSignal();
}

void CaptureDevice::applyTestSignal()
{
    if (!m_source)
        return;
    Gst::ElementRef sound(gst_bin_get_by_name(GST_BIN(m_source.element()), "a"), Gst::Ref::Adopt);
    if (sound) {
        // A square wave at full volume sits at full scale: clipping.
        const bool clipping = m_testSignal == TestSignal::Clipping;
        g_object_set(sound.element(), "wave", clipping ? 1 : 0, "volume",
            m_testSignal == TestSignal::Silent ? 0.0
                : clipping                     ? 1.0
                                               : 0.3,
            nullptr);
    }
    // A frozen picture: the bars without their corner of noise, and no clock.
    const bool frozen = m_testSignal == TestSignal::Frozen;
    Gst::ElementRef picture(gst_bin_get_by_name(GST_BIN(m_source.element()), "v"), Gst::Ref::Adopt);
    Gst::ElementRef clock(gst_bin_get_by_name(GST_BIN(m_source.element()), "vout"), Gst::Ref::Adopt);
    if (picture && clock && g_object_class_find_property(G_OBJECT_GET_CLASS(clock.element()), "silent")) {
        g_object_set(picture.element(), "pattern", frozen ? 13 : 0, nullptr); // smpte75 : smpte
        g_object_set(clock.element(), "silent", frozen, nullptr);
    }
}

void CaptureDevice::close()
{
    if (!m_source)
        return;
    gst_element_set_state(m_source.element(), GST_STATE_NULL);
    m_decoderPads.disconnect();
    // A session that still holds the bin in its pipeline drops it there.
    Gst::removeFromParent(m_source.element());
    m_source = {};
}

void CaptureDevice::postDisconnectedError()
{
    if (!m_source)
        return;
    GST_ELEMENT_ERROR(m_source.element(), RESOURCE, NOT_FOUND,
        ("The capture device %s was disconnected.", m_displayName.toUtf8().constData()), (nullptr));
}
