#pragma once

#include <QString>

// The room a recording made on this computer has: the free space of the
// file system that holds the home folder, against the capture agent's
// cutoff plus a margin.
namespace RecordingDiskSpace {

// Whether the home folder's file system has more room than the cutoff;
// logs when it has not.
bool enoughForRecording();
// The cutoff in MB, margin included: the agent's own setting, then the
// machine's ad-hoc default, then 1024; plus 100.
double cutoffMB();
// How the user knows the file system: its label, or where it is mounted
// when it has none (the usual case on Linux).
QString volumeName();

} // namespace RecordingDiskSpace
