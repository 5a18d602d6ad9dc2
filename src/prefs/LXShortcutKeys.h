#pragma once

#include <QString>
#include <QtGlobal>
#include <qnamespace.h>

#include <optional>

// The record/pause shortcut as the defaults store it: a virtual key code of
// the original keyboard layout and the modifier flag bits below. The X key
// grab works with key symbols and X modifier masks, so every stored value
// has a translation both ways.
namespace LXShortcutKeys {

inline constexpr quint32 kShiftFlag = 0x20000;
inline constexpr quint32 kControlFlag = 0x40000;
inline constexpr quint32 kOptionFlag = 0x80000;
inline constexpr quint32 kCommandFlag = 0x100000;
inline constexpr quint32 kNumericPadFlag = 0x200000;
inline constexpr quint32 kFunctionFlag = 0x800000;

// The X key symbol of a virtual key code, if the code names a key.
std::optional<quint32> keysymForVirtualKey(int virtualKey);
// The virtual key code of an X key symbol (letters in either case).
std::optional<int> virtualKeyForKeysym(quint32 keysym);

// The name a shortcut shows for the key: "F2", "A", "←"; empty for an
// unknown code.
QString keyName(int virtualKey);

// F1 to F20: accepted as a shortcut with no modifier.
bool isFunctionKey(int virtualKey);

// X modifier masks of the flags (Command is the Super key, Option is Alt)
// and back; the numeric-pad and function flags have no X modifier.
quint16 xModifiersForFlags(quint32 flags);
quint32 flagsForXModifiers(quint16 xModifiers);

// The X key symbol of a Qt key, for platforms whose key events carry no
// native key symbol (offscreen); `keypad` picks the keypad's symbols.
std::optional<quint32> keysymForQtKey(int qtKey, bool keypad);
// The flags of Qt's modifiers (Meta is Command, Alt is Option).
quint32 flagsForQtModifiers(Qt::KeyboardModifiers modifiers);

} // namespace LXShortcutKeys

// The text shown for a shortcut: one glyph per modifier (⌃ ⌥ ⇧ ⌘, fn),
// then one space, then the key's name; no space without modifiers. The
// default, Command-F2, reads "⌘ F2".
QString LXShortcutDisplayString(int virtualKey, quint32 modifierFlags);
