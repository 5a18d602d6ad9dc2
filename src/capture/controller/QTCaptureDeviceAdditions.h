#pragma once

#include "CaptureDevice.h"

#include <QList>
#include <QStringList>

// Operations the system adds to capture devices.
namespace QTCaptureDeviceAdditions {

// The input devices for each media type in turn, concatenated. A device
// with two of the types is listed twice, on purpose: callers rely on the
// plain concatenation.
QList<CaptureDevicePtr> inputDevicesWithMediaTypes(const QStringList &mediaTypes);

// Whether the machine-wide camera agent records from this device. Read
// afresh on every call: binding changes while the program runs.
bool isBoundToOrvaneServer(const CaptureDevice &device);

} // namespace QTCaptureDeviceAdditions
