#include "QTCaptureDeviceAdditions.h"

#include "CaptureDeviceRegistry.h"
#include "OrvaneKeys.h"
#include "OrvaneServerInterface.h"

namespace QTCaptureDeviceAdditions {

QList<CaptureDevicePtr> inputDevicesWithMediaTypes(const QStringList &mediaTypes)
{
    QList<CaptureDevicePtr> devices;
    devices.reserve(mediaTypes.size());
    for (const QString &mediaType : mediaTypes)
        devices += CaptureDeviceRegistry::instance().devicesWithMediaType(mediaType);
    return devices;
}

bool isBoundToOrvaneServer(const CaptureDevice &device)
{
    const auto interface = OrvaneServerInterface::create({}, nullptr);
    Error ignored;
    const std::optional<QVariantMap> configuration = interface->getCameraAgentConfigurationError(&ignored);
    // An agent without a camera name is not bound, whatever inputs it lists.
    if (!configuration || !configuration->contains(OrvaneKeys::Agent::CameraName))
        return false;
    if (configuration->value(OrvaneKeys::Agent::RecordingVideoInput).toString() == device.uniqueID())
        return true;
    return configuration->value(OrvaneKeys::Agent::RecordingAudioInput).toString() == device.uniqueID();
}

} // namespace QTCaptureDeviceAdditions
