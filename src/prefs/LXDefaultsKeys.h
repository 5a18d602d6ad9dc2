#pragma once

#include <QString>

// Every key of the application's defaults, declared once. Types and
// registered defaults are given beside each; the registering code uses the
// values below.
namespace LXDefaultsKeys {

// integer, registered 120 (F2)
inline const QString GlobalKeyCode = QStringLiteral("GlobalKeyCode");
inline constexpr int kDefaultGlobalKeyCode = 120;

// unsigned integer (modifier flag bits), registered 0x100000 (Command)
inline const QString GlobalKeyModifiers = QStringLiteral("GlobalKeyModifiers");
inline constexpr qint64 kDefaultGlobalKeyModifiers = 0x100000;

// string (folder), registered "~/Library/Application Support/Lumex" expanded
inline const QString LocalRecordSpoolPath = QStringLiteral("LocalRecordSpoolPath");

// dictionary per mode ("Video", "Audio", "Screen", "File"), no default
inline QString lastDeviceSelectionFor(const QString &modeName)
{
    return QStringLiteral("lastDeviceSelectionFor") + modeName;
}

// string, no default
inline const QString PreviousWorkflowChosen = QStringLiteral("previousWorkflowChosen");
inline const QString LoginPanelLastLoginHost = QStringLiteral("loginPanelLastLoginHost");
inline const QString LoginPanelLastLoginUsername = QStringLiteral("loginPanelLastLoginUsername");

// The local agent's own domain, read for "RecordingDiskSpaceCutoffInMB".
inline const QString AgentDomain = QStringLiteral("com.tarn.orvxagentd");
inline const QString RecordingDiskSpaceCutoffInMB = QStringLiteral("RecordingDiskSpaceCutoffInMB");

} // namespace LXDefaultsKeys
