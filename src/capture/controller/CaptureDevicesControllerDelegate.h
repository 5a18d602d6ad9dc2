#pragma once

#include "Error.h"

#include <memory>
#include <optional>

class PodcastJob;

// What CaptureDevicesController needs of the application controller. Kept
// this narrow so tests can stand in for the application.
class CaptureDevicesControllerDelegate
{
public:
    virtual ~CaptureDevicesControllerDelegate() = default;
    virtual std::shared_ptr<PodcastJob> job() = 0;
    // The device lists changed; menus built from them are stale.
    virtual void rebuildInputDevicesList() = 0;
    virtual void alertUserToError(const Error &error) = 0;
    // A local recording ended: nullopt for a clean stop.
    virtual void localJobDidStop(const std::optional<Error> &error) = 0;
};
