#pragma once

#include "CaptureDevice.h"

#include <QList>
#include <QObject>

#include <memory>

class GstBusReader;

// Every capture device the program can use, kept up to date, with a signal
// for each device that comes and goes: the platform's "device was connected"
// and "was disconnected" notifications.
//
// Two providers feed it:
// - GStreamer's device monitor (cameras of class Video/Source, microphones of
//   Audio/Source: V4L2, PulseAudio, PipeWire), unless the environment sets
//   LUMEX_CAPTURE_HARDWARE=0;
// - test devices, so that every capture path runs where there is no
//   hardware. LUMEX_TEST_DEVICES holds entries separated by ";", each
//   "KIND:ID[:DISPLAY NAME]" with KIND one of camera (videotestsrc, 640x480
//   at 30 frames per second), microphone (audiotestsrc, 48 kHz stereo),
//   muxed (both behind one device, reported with the muxed type only),
//   broken (a camera whose open fails), and for the recording's guard
//   silent-microphone, loud-microphone (clipping) and frozen-camera (a
//   still picture; see CaptureDevice::setTestSignal). The device's uniqueID is
//   "test:ID". Example:
//   LUMEX_TEST_DEVICES="camera:cam1:Test Camera;microphone:mic1;muxed:dv1:Test Camcorder"
//   Tests add and remove test devices while the program runs with
//   addTestDevice() and removeTestDevice(); removing one that is open fails
//   its session as an unplugged device does.
//
// Lives on the main thread; the monitor's bus is read there.
class CaptureDeviceRegistry final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CaptureDeviceRegistry)

public:
    static constexpr const char *kTestDevicesVariable = "LUMEX_TEST_DEVICES";
    static constexpr const char *kHardwareVariable = "LUMEX_CAPTURE_HARDWARE";

    static CaptureDeviceRegistry &instance();
    ~CaptureDeviceRegistry() override;

    // Every device, hardware first in the monitor's order, then test devices
    // in the order they were added.
    QList<CaptureDevicePtr> devices() const;
    QList<CaptureDevicePtr> devicesWithMediaType(const QString &mediaType) const;
    CaptureDevicePtr deviceWithUniqueID(const QString &uniqueID) const;
    // The system's default microphone: the one the sound server marks as its
    // default, else the first one.
    CaptureDevicePtr defaultMicrophone() const { return defaultInputDeviceWithMediaType(MediaType::Sound); }
    // The system's default device of a media type: the one the system marks
    // as its default, else the first one; null when there is none.
    CaptureDevicePtr defaultInputDeviceWithMediaType(const QString &mediaType) const;

    // Adds a test device from one "KIND:ID[:NAME]" entry; null when the
    // entry is malformed or the ID is taken.
    CaptureDevicePtr addTestDevice(const QString &entry);
    bool removeTestDevice(const QString &uniqueID);

signals:
    void deviceWasConnected(const CaptureDevicePtr &device);
    void deviceWasDisconnected(const CaptureDevicePtr &device);

private:
    CaptureDeviceRegistry();
    void startMonitor();
    void handleMonitorMessage(GstMessage *message);
    CaptureDevicePtr addHardware(GstDevice *device);
    void removeHardware(GstDevice *device);

    Gst::ObjectRef<GstDeviceMonitor> m_monitor;
    std::unique_ptr<GstBusReader> m_busReader;
    QList<CaptureDevicePtr> m_hardware;
    QList<CaptureDevicePtr> m_testDevices;
};
