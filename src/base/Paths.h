#pragma once

#include <QString>

// Every fixed path of the system, built in one place.
//
// LUMEX_SYSROOT, when set, prefixes every absolute path of the system (the
// helpers, "/Library/...", "/etc/...") so tests and the bundled simulator
// run without touching the machine. "/bin/mkdir" and "/dev/null" are never
// prefixed. Paths under "~" follow $HOME.
namespace Paths {

// The prefix in force (empty when LUMEX_SYSROOT is unset).
QString sysroot();

// `absolutePath` under the sysroot.
QString system(const QString &absolutePath);

// `path` with a leading "~" replaced by the user's home folder.
QString expandTilde(const QString &path);

QString orvxexec(); // "/usr/libexec/orvane/orvxexec"
QString orvxctlexec(); // "/usr/libexec/orvane/orvxctlexec"
QString orvxagentd(); // "/usr/libexec/orvane/orvxagentd"
QString mkdirTool(); // "/bin/mkdir", never prefixed
QString nullDevice(); // "/dev/null", never prefixed

QString globalAgentConfig(); // "/Library/Preferences/com.tarn.orvxagentd.plist"
QString userAgentConfig(); // "~/Library/Preferences/com.tarn.orvxagentd.plist"
QString kioskFile(); // "/Library/Preferences/com.tarn.Lumex.kiosk.plist"
QString agentAdHocDefaults(); // "/etc/orvane/orvxagentd.adhoc.plist-default"
QString userDefaultsFile(); // "~/Library/Preferences/com.tarn.Lumex.plist"
QString applicationSupport(); // "~/Library/Application Support/Lumex", expanded now

// The job data folder, "~/Library/Application Support/Lumex" expanded.
// Computed on first use and kept for the life of the process.
QString jobDataFolder();

// The environment variable by which the direct (non-pkexec) privileged
// launcher marks a helper's run as privileged; pkexec clears the environment,
// so a real privileged run never carries it.
inline constexpr const char *kPrivilegedRunVariable = "ORVANE_PRIVILEGED_RUN";

} // namespace Paths
