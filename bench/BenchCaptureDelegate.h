#pragma once

#include "CaptureDevicesControllerDelegate.h"
#include "PodcastJob.h"

#include <cstdio>
#include <memory>

// The capture benchmarks' stand-in for the application controller: one job,
// alerts on stderr, and a flag for the end of the recording.
class BenchController final : public CaptureDevicesControllerDelegate
{
public:
    std::shared_ptr<PodcastJob> theJob = std::make_shared<PodcastJob>();
    bool stopped = false;
    std::shared_ptr<PodcastJob> job() override { return theJob; }
    void rebuildInputDevicesList() override { }
    void alertUserToError(const Error &error) override
    {
        std::fprintf(stderr, "alert: %s\n", qPrintable(error.localizedDescription));
    }
    void localJobDidStop(const std::optional<Error> &) override { stopped = true; }
};
