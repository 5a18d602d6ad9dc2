#pragma once

#include "GstHandles.h"

#include <QString>
#include <QStringList>

#include <memory>

// The media types a device or a connection carries. The values are the
// four-letter codes the system's capture framework used, so they read the
// same in logs.
namespace MediaType {
inline const QString Video = QStringLiteral("vide");
inline const QString Sound = QStringLiteral("soun");
inline const QString Muxed = QStringLiteral("muxx");
} // namespace MediaType

// One capture device: a camera, a microphone, a device that gives both
// (muxed) or the X screen. Devices are shared: the registry keeps one object
// per uniqueID, so a device opened by one part of the program is seen open
// by every other.
//
// Opening builds the device's source (a bin with a ghost pad "video" and/or
// "audio" giving raw media) and takes it to READY, which is where GStreamer
// opens the hardware; a refusal there is the device's open error.
class CaptureDevice final
{
public:
    enum class Kind {
        Hardware, // a GstDevice from the device monitor
        TestCamera, // videotestsrc
        TestMicrophone, // audiotestsrc
        TestMuxed, // both, behind one device
        TestBroken, // a camera whose open always fails
        Screen, // ximagesrc on an X display, or the portal's PipeWire stream
    };

    // A device found by the GStreamer device monitor.
    CaptureDevice(GstDevice *device, QString uniqueID);
    // A device the program makes itself (test devices, the screen).
    CaptureDevice(Kind kind, QString uniqueID, QString displayName);
    ~CaptureDevice();
    CaptureDevice(const CaptureDevice &) = delete;
    CaptureDevice &operator=(const CaptureDevice &) = delete;

    QString uniqueID() const { return m_uniqueID; }
    QString localizedDisplayName() const { return m_displayName; }
    Kind kind() const { return m_kind; }
    // A muxed device reports the muxed type only.
    QStringList mediaTypes() const;
    bool hasMediaType(const QString &mediaType) const { return mediaTypes().contains(mediaType); }
    // Whether the system marks this device as its default input.
    bool isDefault() const { return m_isDefault; }
    GstDevice *gstDevice() const { return m_gstDevice.get(); }

    bool open(Error *error);
    bool isOpen() const { return bool(m_source); }
    void close();

    // What a session sees when the hardware goes away under it: the source
    // posts a resource error. Test devices do this when they are removed.
    void postDisconnectedError();

    // The open device's source bin, for a session to place in its pipeline.
    GstElement *source() const { return m_source.element(); }

    // The uniqueID of a monitored device: an identity that survives
    // restarts and replugging (see CaptureDevice.cpp).
    static QString uniqueIDForGstDevice(GstDevice *device);

    // The raw media types a source bin offers as ghost pads.
    static constexpr const char *kVideoPad = "video";
    static constexpr const char *kAudioPad = "audio";

    // The X display a Screen device records (empty: $DISPLAY).
    void setDisplayName(const QString &display) { m_xDisplay = display; }
    // In a Wayland session a Screen device records the desktop portal's
    // stream instead: its PipeWire remote (kept open by the caller while the
    // device is open) and node.
    void setPipeWireStream(int fd, quint32 nodeId)
    {
        m_pipeWireFd = fd;
        m_pipeWireNode = nodeId;
    }

    // What a test device sends, so that a recording's guard can be seen at
    // work: a microphone gone silent or clipping, a camera whose picture
    // froze. Applies at once to an open device; no effect on others.
    enum class TestSignal { Normal, Silent, Clipping, Frozen };
    void setTestSignal(TestSignal signal);

private:
    Gst::ElementRef buildSource(Error *error);
    void applyTestSignal();

    Kind m_kind;
    QString m_uniqueID;
    QString m_displayName;
    QString m_xDisplay;
    int m_pipeWireFd = -1;
    quint32 m_pipeWireNode = 0;
    bool m_isDefault = false;
    bool m_isVideo = false;
    TestSignal m_testSignal = TestSignal::Normal;
    Gst::ObjectRef<GstDevice> m_gstDevice;
    Gst::ElementRef m_source;
    Gst::SignalConnection m_decoderPads; // a camera's decoder, while open
};

using CaptureDevicePtr = std::shared_ptr<CaptureDevice>;
