#pragma once

#include "CaptureDevicesControllerDelegate.h"
#include "PodcastJob.h"

#include <QList>

// Stands in for the application controller: hands out a job and records
// every call the devices controller makes.
class FakeApplicationController final : public CaptureDevicesControllerDelegate
{
public:
    std::shared_ptr<PodcastJob> theJob = std::make_shared<PodcastJob>();
    int rebuilds = 0;
    QList<Error> alerts;
    QList<std::optional<Error>> stops;

    std::shared_ptr<PodcastJob> job() override { return theJob; }
    void rebuildInputDevicesList() override { ++rebuilds; }
    void alertUserToError(const Error &error) override { alerts.append(error); }
    void localJobDidStop(const std::optional<Error> &error) override { stops.append(error); }
};
