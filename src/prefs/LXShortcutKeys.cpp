#include "LXShortcutKeys.h"

#include <X11/X.h>
#include <X11/keysym.h>

#include <QChar>

#include <utility>

namespace LXShortcutKeys {
namespace {

struct Key
{
    int virtualKey;
    quint32 keysym;
    const char16_t *name;
};

// Virtual key codes of the original (ANSI) layout, their X key symbols and
// their names in a shortcut.
constexpr Key kKeys[] = {
    { 0x00, XK_a, u"A" },
    { 0x01, XK_s, u"S" },
    { 0x02, XK_d, u"D" },
    { 0x03, XK_f, u"F" },
    { 0x04, XK_h, u"H" },
    { 0x05, XK_g, u"G" },
    { 0x06, XK_z, u"Z" },
    { 0x07, XK_x, u"X" },
    { 0x08, XK_c, u"C" },
    { 0x09, XK_v, u"V" },
    { 0x0B, XK_b, u"B" },
    { 0x0C, XK_q, u"Q" },
    { 0x0D, XK_w, u"W" },
    { 0x0E, XK_e, u"E" },
    { 0x0F, XK_r, u"R" },
    { 0x10, XK_y, u"Y" },
    { 0x11, XK_t, u"T" },
    { 0x12, XK_1, u"1" },
    { 0x13, XK_2, u"2" },
    { 0x14, XK_3, u"3" },
    { 0x15, XK_4, u"4" },
    { 0x16, XK_6, u"6" },
    { 0x17, XK_5, u"5" },
    { 0x18, XK_equal, u"=" },
    { 0x19, XK_9, u"9" },
    { 0x1A, XK_7, u"7" },
    { 0x1B, XK_minus, u"-" },
    { 0x1C, XK_8, u"8" },
    { 0x1D, XK_0, u"0" },
    { 0x1E, XK_bracketright, u"]" },
    { 0x1F, XK_o, u"O" },
    { 0x20, XK_u, u"U" },
    { 0x21, XK_bracketleft, u"[" },
    { 0x22, XK_i, u"I" },
    { 0x23, XK_p, u"P" },
    { 0x24, XK_Return, u"↩" },
    { 0x25, XK_l, u"L" },
    { 0x26, XK_j, u"J" },
    { 0x27, XK_apostrophe, u"'" },
    { 0x28, XK_k, u"K" },
    { 0x29, XK_semicolon, u";" },
    { 0x2A, XK_backslash, u"\\" },
    { 0x2B, XK_comma, u"," },
    { 0x2C, XK_slash, u"/" },
    { 0x2D, XK_n, u"N" },
    { 0x2E, XK_m, u"M" },
    { 0x2F, XK_period, u"." },
    { 0x30, XK_Tab, u"⇥" },
    { 0x31, XK_space, u"Space" },
    { 0x32, XK_grave, u"`" },
    { 0x33, XK_BackSpace, u"⌫" },
    { 0x35, XK_Escape, u"⎋" },
    { 0x41, XK_KP_Decimal, u"." },
    { 0x43, XK_KP_Multiply, u"*" },
    { 0x45, XK_KP_Add, u"+" },
    { 0x47, XK_Clear, u"⌧" },
    { 0x4B, XK_KP_Divide, u"/" },
    { 0x4C, XK_KP_Enter, u"⌤" },
    { 0x4E, XK_KP_Subtract, u"-" },
    { 0x51, XK_KP_Equal, u"=" },
    { 0x52, XK_KP_0, u"0" },
    { 0x53, XK_KP_1, u"1" },
    { 0x54, XK_KP_2, u"2" },
    { 0x55, XK_KP_3, u"3" },
    { 0x56, XK_KP_4, u"4" },
    { 0x57, XK_KP_5, u"5" },
    { 0x58, XK_KP_6, u"6" },
    { 0x59, XK_KP_7, u"7" },
    { 0x5B, XK_KP_8, u"8" },
    { 0x5C, XK_KP_9, u"9" },
    { 0x7A, XK_F1, u"F1" },
    { 0x78, XK_F2, u"F2" },
    { 0x63, XK_F3, u"F3" },
    { 0x76, XK_F4, u"F4" },
    { 0x60, XK_F5, u"F5" },
    { 0x61, XK_F6, u"F6" },
    { 0x62, XK_F7, u"F7" },
    { 0x64, XK_F8, u"F8" },
    { 0x65, XK_F9, u"F9" },
    { 0x6D, XK_F10, u"F10" },
    { 0x67, XK_F11, u"F11" },
    { 0x6F, XK_F12, u"F12" },
    { 0x69, XK_F13, u"F13" },
    { 0x6B, XK_F14, u"F14" },
    { 0x71, XK_F15, u"F15" },
    { 0x6A, XK_F16, u"F16" },
    { 0x40, XK_F17, u"F17" },
    { 0x4F, XK_F18, u"F18" },
    { 0x50, XK_F19, u"F19" },
    { 0x5A, XK_F20, u"F20" },
    { 0x72, XK_Help, u"Help" },
    { 0x73, XK_Home, u"↖" },
    { 0x74, XK_Page_Up, u"⇞" },
    { 0x75, XK_Delete, u"⌦" },
    { 0x77, XK_End, u"↘" },
    { 0x79, XK_Page_Down, u"⇟" },
    { 0x7B, XK_Left, u"←" },
    { 0x7C, XK_Right, u"→" },
    { 0x7D, XK_Down, u"↓" },
    { 0x7E, XK_Up, u"↑" },
};

const Key *byVirtualKey(int virtualKey)
{
    for (const Key &key : kKeys) {
        if (key.virtualKey == virtualKey)
            return &key;
    }
    return nullptr;
}

struct Modifier
{
    quint32 flag;
    quint16 xMask;
    const char16_t *glyph;
};

// In the order their glyphs are shown.
constexpr Modifier kModifiers[] = {
    { kControlFlag, ControlMask, u"\u2303" },
    { kOptionFlag, Mod1Mask, u"\u2325" },
    { kShiftFlag, ShiftMask, u"\u21E7" },
    { kCommandFlag, Mod4Mask, u"\u2318" },
    { kFunctionFlag, 0, u"fn" },
};

} // namespace

std::optional<quint32> keysymForVirtualKey(int virtualKey)
{
    if (const Key *key = byVirtualKey(virtualKey))
        return key->keysym;
    return std::nullopt;
}

std::optional<int> virtualKeyForKeysym(quint32 keysym)
{
    if (keysym >= XK_A && keysym <= XK_Z)
        keysym += XK_a - XK_A;
    for (const Key &key : kKeys) {
        if (key.keysym == keysym)
            return key.virtualKey;
    }
    return std::nullopt;
}

QString keyName(int virtualKey)
{
    const Key *key = byVirtualKey(virtualKey);
    return key ? QString::fromUtf16(key->name) : QString();
}

bool isFunctionKey(int virtualKey)
{
    const Key *key = byVirtualKey(virtualKey);
    return key && key->keysym >= XK_F1 && key->keysym <= XK_F20;
}

quint16 xModifiersForFlags(quint32 flags)
{
    quint16 mask = 0;
    for (const Modifier &modifier : kModifiers) {
        if (flags & modifier.flag)
            mask |= modifier.xMask;
    }
    return mask;
}

quint32 flagsForXModifiers(quint16 xModifiers)
{
    quint32 flags = 0;
    for (const Modifier &modifier : kModifiers) {
        if (modifier.xMask && (xModifiers & modifier.xMask))
            flags |= modifier.flag;
    }
    return flags;
}

std::optional<quint32> keysymForQtKey(int qtKey, bool keypad)
{
    if (keypad) {
        if (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9)
            return XK_KP_0 + (qtKey - Qt::Key_0);
        static constexpr std::pair<int, quint32> kKeypad[] = { { Qt::Key_Period, XK_KP_Decimal },
            { Qt::Key_Asterisk, XK_KP_Multiply }, { Qt::Key_Plus, XK_KP_Add }, { Qt::Key_Slash, XK_KP_Divide },
            { Qt::Key_Minus, XK_KP_Subtract }, { Qt::Key_Equal, XK_KP_Equal }, { Qt::Key_Enter, XK_KP_Enter } };
        for (const auto &[key, keysym] : kKeypad) {
            if (key == qtKey)
                return keysym;
        }
    }
    // Qt's codes of the printable Latin-1 keys are their X key symbols.
    if (qtKey >= Qt::Key_Space && qtKey <= Qt::Key_AsciiTilde)
        return QChar(qtKey).toLower().unicode();
    if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F20)
        return XK_F1 + (qtKey - Qt::Key_F1);
    static constexpr std::pair<int, quint32> kSpecial[] = { { Qt::Key_Return, XK_Return },
        { Qt::Key_Enter, XK_KP_Enter }, { Qt::Key_Tab, XK_Tab }, { Qt::Key_Backtab, XK_Tab },
        { Qt::Key_Backspace, XK_BackSpace }, { Qt::Key_Escape, XK_Escape }, { Qt::Key_Delete, XK_Delete },
        { Qt::Key_Clear, XK_Clear }, { Qt::Key_Help, XK_Help }, { Qt::Key_Home, XK_Home }, { Qt::Key_End, XK_End },
        { Qt::Key_PageUp, XK_Page_Up }, { Qt::Key_PageDown, XK_Page_Down }, { Qt::Key_Left, XK_Left },
        { Qt::Key_Right, XK_Right }, { Qt::Key_Up, XK_Up }, { Qt::Key_Down, XK_Down } };
    for (const auto &[key, keysym] : kSpecial) {
        if (key == qtKey)
            return keysym;
    }
    return std::nullopt;
}

quint32 flagsForQtModifiers(Qt::KeyboardModifiers modifiers)
{
    static constexpr std::pair<Qt::KeyboardModifier, quint32> kFlags[]
        = { { Qt::ShiftModifier, kShiftFlag }, { Qt::ControlModifier, kControlFlag }, { Qt::AltModifier, kOptionFlag },
              { Qt::MetaModifier, kCommandFlag }, { Qt::KeypadModifier, kNumericPadFlag } };
    quint32 flags = 0;
    for (const auto &[modifier, flag] : kFlags) {
        if (modifiers & modifier)
            flags |= flag;
    }
    return flags;
}

} // namespace LXShortcutKeys

QString LXShortcutDisplayString(int virtualKey, quint32 modifierFlags)
{
    QString glyphs;
    for (const LXShortcutKeys::Modifier &modifier : LXShortcutKeys::kModifiers) {
        if (modifierFlags & modifier.flag)
            glyphs += QString::fromUtf16(modifier.glyph);
    }
    const QString name = LXShortcutKeys::keyName(virtualKey);
    return glyphs.isEmpty() ? name : glyphs + QLatin1Char(' ') + name;
}
