#pragma once

// This process's resident memory in KiB (VmRSS), or 0 when it cannot be read.
long residentMemoryKiB();
