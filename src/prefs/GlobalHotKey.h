#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <memory>

// The window system's one global hot key: a key combination that reaches this
// application whichever application is in front. X11 has a passive key grab
// on the root window; elsewhere (a Wayland session, even through XWayland;
// offscreen; no display) no client can take a key from the others, so the
// null variant only logs.
class GlobalHotKey
{
public:
    // The identifier of the record/pause key, the one hot key there is.
    static constexpr quint32 kRecordPauseHotKeyID = 0x12342600;

    enum OperatingMode : int { Normal = 0, AllDisabled = 1 };

    // The variant for the running platform; LUMEX_HOTKEY=none forces the
    // null one. Needs the QGuiApplication.
    static GlobalHotKey &instance();

    virtual ~GlobalHotKey() = default;

    // False where no key can be taken from other clients.
    virtual bool isSystemWide() const = 0;

    // Replaces the hot key `identifier` with the combination of a virtual key
    // code and modifier flags. False when the window system refused it.
    virtual bool setHotKey(quint32 identifier, int virtualKey, quint32 modifierFlags) = 0;
    virtual void removeHotKey(quint32 identifier) = 0;

    // While AllDisabled, no hot key is held, so the combination reaches the
    // focused window as an ordinary key.
    virtual OperatingMode operatingMode() const = 0;
    virtual void setOperatingMode(OperatingMode mode) = 0;

    // The identifier of the hot key a native event presses, or 0. A held key
    // answers once: its automatic repeats answer 0.
    virtual quint32 hotKeyForNativeEvent(const QByteArray &eventType, void *message) = 0;

    // Presses of a hot key that were repeats of a held key (for tests).
    virtual int ignoredRepeats() const { return 0; }

protected:
    GlobalHotKey() = default;
};
