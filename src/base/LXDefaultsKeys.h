#pragma once

#include "Paths.h"

#include <QString>
#include <QVariant>
#include <QVariantMap>

// A setting of the application's own defaults domain: its key, the type its
// value is read as (T: qint64, QString or QVariantMap) and its registered
// default, computed when registered (none when null). Registered defaults
// are fallbacks only and never written to the store.
template<typename T> struct LXSetting
{
    QString key;
    QVariant (*registeredDefault)() = nullptr;
};

// Every setting of the application's domain, each declared once.
namespace LXDefaultsKeys {

// Virtual key code of the record/pause hot key; registered F2.
inline const LXSetting<qint64> GlobalKeyCode { QStringLiteral("GlobalKeyCode"), [] { return QVariant(qint64(120)); } };

// The hot key's modifier flags (Shift 0x20000, Control 0x40000, Option
// 0x80000, Command 0x100000); registered Command.
inline const LXSetting<qint64> GlobalKeyModifiers { QStringLiteral("GlobalKeyModifiers"),
    [] { return QVariant(qint64(0x100000)); } };

// The folder local recordings are written to; registered the job data folder
// with the home expanded at registration. The program never writes it.
inline const LXSetting<QString> LocalRecordSpoolPath { QStringLiteral("LocalRecordSpoolPath"),
    [] { return QVariant(Paths::applicationSupport()); } };

// The last device choice of a mode ("Video", "Audio", "Screen", "File"):
// "isLocalRecording", "camera", "microphone".
inline LXSetting<QVariantMap> lastDeviceSelectionFor(const QString &modeName)
{
    return { QStringLiteral("lastDeviceSelectionFor") + modeName };
}

// Title of the workflow a new job starts with.
inline const LXSetting<QString> PreviousWorkflowChosen { QStringLiteral("previousWorkflowChosen") };
// What the login panel offers.
inline const LXSetting<QString> LoginPanelLastLoginHost { QStringLiteral("loginPanelLastLoginHost") };
inline const LXSetting<QString> LoginPanelLastLoginUsername { QStringLiteral("loginPanelLastLoginUsername") };

// The desktop portal's token for the screen the user last agreed to share
// (Wayland), so a later run need not ask again.
inline const LXSetting<QString> ScreenCastRestoreToken { QStringLiteral("ScreenCastRestoreToken") };

} // namespace LXDefaultsKeys
