#include "GlobalHotKey.h"

#include "DisplaySession.h"
#include "LXShortcutKeys.h"
#include "Log.h"

#include <QGuiApplication>

#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>

#include <cstdlib>

namespace {

class NullHotKey final : public GlobalHotKey
{
public:
    bool isSystemWide() const override { return false; }
    bool setHotKey(quint32, int, quint32) override
    {
        if (!m_logged) {
            if (DisplaySession::isWayland())
                Log::format(QStringLiteral("No global record/pause key: a Wayland desktop lets no client take keys"));
            else
                Log::format(QStringLiteral("No global record/pause key: the display (%@) is not an X server"),
                    { QGuiApplication::platformName() });
            m_logged = true;
        }
        return false;
    }
    void removeHotKey(quint32) override { }
    OperatingMode operatingMode() const override { return m_mode; }
    void setOperatingMode(OperatingMode mode) override { m_mode = mode; }
    quint32 hotKeyForNativeEvent(const QByteArray &, void *) override { return 0; }

private:
    OperatingMode m_mode = Normal;
    bool m_logged = false;
};

struct KeySymbolsFree
{
    void operator()(xcb_key_symbols_t *symbols) const { xcb_key_symbols_free(symbols); }
};

// A passive grab of the combination on the root window, on Qt's own
// connection, so the key events arrive through Qt's native event filters.
class X11HotKey final : public GlobalHotKey
{
public:
    X11HotKey(xcb_connection_t *connection)
        : m_connection(connection)
        , m_root(xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root)
        , m_symbols(xcb_key_symbols_alloc(connection))
    { }

    bool isSystemWide() const override { return true; }
    bool setHotKey(quint32 identifier, int virtualKey, quint32 modifierFlags) override
    {
        removeHotKey(identifier);
        const std::optional<quint32> keysym = LXShortcutKeys::keysymForVirtualKey(virtualKey);
        xcb_keycode_t *codes = keysym ? xcb_key_symbols_get_keycode(m_symbols.get(), *keysym) : nullptr;
        const xcb_keycode_t keycode = codes ? codes[0] : XCB_NO_SYMBOL;
        std::free(codes);
        if (keycode == XCB_NO_SYMBOL) {
            Log::format(QStringLiteral("The record/pause key %@ has no key on this keyboard"),
                { LXShortcutDisplayString(virtualKey, modifierFlags) });
            return false;
        }
        m_identifier = identifier;
        m_keycode = keycode;
        m_modifiers = LXShortcutKeys::xModifiersForFlags(modifierFlags);
        m_name = LXShortcutDisplayString(virtualKey, modifierFlags);
        m_pressed = false;
        return m_mode == AllDisabled || grab();
    }

    void removeHotKey(quint32 identifier) override
    {
        if (identifier != m_identifier || !m_keycode)
            return;
        if (m_mode == Normal)
            ungrab();
        m_keycode = 0;
        m_identifier = 0;
    }

    OperatingMode operatingMode() const override { return m_mode; }
    void setOperatingMode(OperatingMode mode) override
    {
        if (mode == m_mode)
            return;
        m_mode = mode;
        if (!m_keycode)
            return;
        if (mode == AllDisabled)
            ungrab();
        else
            grab();
    }

    quint32 hotKeyForNativeEvent(const QByteArray &eventType, void *message) override
    {
        if (!m_keycode || eventType != "xcb_generic_event_t")
            return 0;
        const auto *event = static_cast<const xcb_generic_event_t *>(message);
        const uint8_t type = event->response_type & ~0x80;
        if (type != XCB_KEY_PRESS && type != XCB_KEY_RELEASE)
            return 0;
        const auto *key = reinterpret_cast<const xcb_key_press_event_t *>(event);
        if (key->detail != m_keycode)
            return 0;
        if (type == XCB_KEY_RELEASE) {
            // Taken from whichever of our windows it reaches: a popup that
            // grabs the keyboard while the key is down gets the release, and
            // a release missed here would make the next press a repeat.
            m_pressed = false;
            m_releaseTime = key->time;
            return 0;
        }
        // Only the press that activates the root grab counts; one reported
        // to a window of ours comes while no grab is held (the key editor).
        if (key->event != m_root)
            return 0;
        // A held key repeats as more presses (detectable auto-repeat) or as
        // release-press pairs carrying one timestamp. Held presses come at
        // the repeat rate, so a press long after the last one means its
        // release went to another client (one that grabbed the keyboard
        // meanwhile): it is a new press.
        const bool held = m_pressed && key->time - m_lastPressTime < kLongestRepeatGapMs;
        const bool repeat = held || (m_releaseTime && key->time == m_releaseTime);
        m_pressed = true;
        m_lastPressTime = key->time;
        if (repeat) {
            ++m_ignoredRepeats;
            return 0;
        }
        const uint16_t relevant = XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;
        return (key->state & relevant) == m_modifiers ? m_identifier : 0;
    }

    int ignoredRepeats() const override { return m_ignoredRepeats; }

private:
    // Caps Lock and Num Lock must not stop the combination.
    // Longer than any keyboard's repeat delay and interval.
    static constexpr xcb_timestamp_t kLongestRepeatGapMs = 2000;
    static constexpr uint16_t kLockVariants[]
        = { 0, XCB_MOD_MASK_LOCK, XCB_MOD_MASK_2, XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2 };

    bool grab()
    {
        bool ok = true;
        for (uint16_t variant : kLockVariants) {
            // Not owner_events: while a window of ours has the focus, the
            // grab would report the key's release (and its repeats) to that
            // window instead of the root, and the key would stay held here,
            // so the next press was taken for a repeat and lost.
            const xcb_void_cookie_t cookie = xcb_grab_key_checked(
                m_connection, 0, m_root, m_modifiers | variant, m_keycode, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
            if (xcb_generic_error_t *error = xcb_request_check(m_connection, cookie)) {
                ok = false;
                std::free(error);
            }
        }
        if (!ok)
            Log::format(
                QStringLiteral("Could not register the record/pause key %@: another application holds it"), { m_name });
        return ok;
    }

    void ungrab()
    {
        for (uint16_t variant : kLockVariants)
            xcb_ungrab_key(m_connection, m_keycode, m_root, m_modifiers | variant);
        xcb_flush(m_connection);
    }

    xcb_connection_t *const m_connection;
    const xcb_window_t m_root;
    const std::unique_ptr<xcb_key_symbols_t, KeySymbolsFree> m_symbols;
    quint32 m_identifier = 0;
    xcb_keycode_t m_keycode = 0;
    uint16_t m_modifiers = 0;
    QString m_name;
    OperatingMode m_mode = Normal;
    bool m_pressed = false;
    xcb_timestamp_t m_releaseTime = 0;
    xcb_timestamp_t m_lastPressTime = 0;
    int m_ignoredRepeats = 0;
};

std::unique_ptr<GlobalHotKey> makeHotKey()
{
    // Through XWayland a grab would see keys only while an X client has the
    // focus: no global key at all is the honest answer.
    if (qEnvironmentVariable("LUMEX_HOTKEY") != QLatin1String("none") && !DisplaySession::isWayland()) {
        if (auto *x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr) {
            if (xcb_connection_t *connection = x11->connection())
                return std::make_unique<X11HotKey>(connection);
        }
    }
    return std::make_unique<NullHotKey>();
}

} // namespace

GlobalHotKey &GlobalHotKey::instance()
{
    static const std::unique_ptr<GlobalHotKey> hotKey = makeHotKey();
    return *hotKey;
}
