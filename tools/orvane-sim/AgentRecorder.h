#pragma once

#include "SimEnvironment.h"

#include <QStringList>

// orvxagentd: records a local job with the capture layer. "-f MOVIEPATH"
// records what the user's agent configuration asks for: "Capture" is
// "Audio:PRESET", "Screen:PRESET" or "Video:PRESET"; "AudioDevice" names the
// microphone by uniqueID ("(null)", "Automatic" or no value: the system's
// default microphone; a muxed device records only its sound); "VideoDevice"
// the camera of a video recording, by uniqueID or by display name (the
// client writes the job camera's name); the screen is the X display of
// $DISPLAY, or in a Wayland session the desktop portal's screen cast. SIGUSR1 pauses, SIGUSR2 resumes, SIGTERM (or
// SIGINT) finishes the file and exits 0; a second one while finishing exits 0 at once, leaving the fragmented file as
// it is.
class AgentRecorder final
{
public:
    // Must run first thing in main, before any thread starts: the control
    // signals stay blocked in every thread and are read from a signalfd.
    // Children get the default mask back (see run() for GStreamer's plugin
    // scanner).
    static void blockControlSignals();

    explicit AgentRecorder(const SimEnvironment &environment)
        : m_environment(environment)
    { }

    // Returns the exit status.
    int run(const QStringList &arguments);

    static constexpr int kFaultStatus = 3;
    // No such device, no microphone, no display: nothing to record from.
    static constexpr int kNoSource = 4;
    // The recording failed once running.
    static constexpr int kRecordingFailed = 5;

private:
    SimEnvironment m_environment;
};
