#include "ConfigKeyEditor.h"

#include "LXShortcutKeys.h"

#include <QApplication>
#include <QKeyEvent>

using namespace LXShortcutKeys;

namespace {

// Virtual key codes the editor treats specially.
constexpr int kKeyQ = 12;
constexpr int kKeyReturn = 36;
constexpr int kKeyTab = 48;
constexpr int kKeyEscape = 53;
constexpr int kKeyEnter = 76;

constexpr quint32 kAnyModifierMask = 0x1E0000; // Shift, Control, Option, Command
constexpr quint32 kKeptModifierMask = 0x3E0000; // those and the numeric pad
constexpr quint32 kShortcutModifierMask = 0x3C0000; // the same without Shift

// One path from a key event to a virtual key code: through the X key symbol,
// the event's own where the platform gives one (xcb), else Qt's key's.
std::optional<int> virtualKeyForEvent(const QKeyEvent *event)
{
    if (const quint32 keysym = event->nativeVirtualKey()) {
        if (const std::optional<int> virtualKey = virtualKeyForKeysym(keysym))
            return virtualKey;
    }
    const std::optional<quint32> keysym = keysymForQtKey(event->key(), event->modifiers().testFlag(Qt::KeypadModifier));
    return keysym ? virtualKeyForKeysym(*keysym) : std::nullopt;
}

bool isModifierKey(int qtKey)
{
    return (qtKey >= Qt::Key_Shift && qtKey <= Qt::Key_ScrollLock) || qtKey == Qt::Key_Super_L
        || qtKey == Qt::Key_Super_R || qtKey == Qt::Key_Hyper_L || qtKey == Qt::Key_Hyper_R || qtKey == Qt::Key_AltGr;
}

} // namespace

ConfigKeyEditor::ConfigKeyEditor(ConfigKeyEditorMaster *master, QWidget *parent)
    : QLineEdit(parent)
    , m_master(master)
{
    // Keys, not text: no input method composes into this field.
    setAttribute(Qt::WA_InputMethodEnabled, false);
    setContextMenuPolicy(Qt::NoContextMenu);
}

ConfigKeyEditor::~ConfigKeyEditor()
{
    _restoreHotKeyOperationMode();
}

void ConfigKeyEditor::keyDown(QKeyEvent *event)
{
    const std::optional<int> virtualKey = virtualKeyForEvent(event);
    if (!virtualKey) {
        if (!isModifierKey(event->key())) {
            QApplication::beep();
            emit keyRefused();
        }
        return;
    }
    if (*virtualKey == kKeyEscape) {
        m_master->controlTextDidCancelEditing(this);
        return;
    }
    const quint32 flags = flagsForQtModifiers(event->modifiers());
    const quint32 modifiers = (flags & kAnyModifierMask) ? flags & kKeptModifierMask : 0;
    if (!modifiers && (*virtualKey == kKeyReturn || *virtualKey == kKeyEnter || *virtualKey == kKeyTab)) {
        QLineEdit::keyPressEvent(event);
        endEditing();
        return;
    }
    // Command-Q keeps quitting while a shortcut is being typed.
    if (*virtualKey == kKeyQ && modifiers == kCommandFlag) {
        m_master->terminate();
        return;
    }
    // A letter with Shift alone would take a capital from every application.
    if (!isFunctionKey(*virtualKey) && !(modifiers & kShortcutModifierMask)) {
        QApplication::beep();
        emit keyRefused();
        return;
    }
    m_virtualKey = *virtualKey;
    m_modifiers = modifiers;
    const QString display = LXShortcutDisplayString(*virtualKey, modifiers);
    setText(display);
    emit textEdited(display);
    selectAll();
    endEditing();
    m_master->keyEditorFinished(display, m_textField, *virtualKey, modifiers);
}

void ConfigKeyEditor::endEditing()
{
    // The window itself takes the focus: a cleared focus would come back
    // to the editor the next time the window is activated.
    window()->setFocus(Qt::OtherFocusReason);
}

bool ConfigKeyEditor::event(QEvent *event)
{
    // Claiming every key before the shortcut map sees it keeps menu
    // shortcuts from firing while a combination is typed.
    if (event->type() == QEvent::ShortcutOverride) {
        event->accept();
        return true;
    }
    const bool handled = QLineEdit::event(event);
    if (event->type() == QEvent::WindowActivate) {
        _disableHotKeyOperationMode();
    } else if (event->type() == QEvent::WindowDeactivate) {
        _restoreHotKeyOperationMode();
        if (hasFocus())
            m_master->controlTextDidCancelEditing(this);
    }
    return handled;
}

void ConfigKeyEditor::keyPressEvent(QKeyEvent *event)
{
    keyDown(event);
}

void ConfigKeyEditor::mousePressEvent(QMouseEvent *event)
{
    QLineEdit::mousePressEvent(event);
    selectAll();
}

void ConfigKeyEditor::focusInEvent(QFocusEvent *event)
{
    QLineEdit::focusInEvent(event);
    m_virtualKey.reset();
    _disableHotKeyOperationMode();
}

void ConfigKeyEditor::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    _restoreHotKeyOperationMode();
    // Qt takes the focus away before telling the window's widgets that the
    // window is no longer active; editing ends there too, for good, or the
    // window's return to the front would resume it.
    if (event->reason() == Qt::ActiveWindowFocusReason)
        m_master->controlTextDidCancelEditing(this);
}

void ConfigKeyEditor::_disableHotKeyOperationMode()
{
    if (!isActiveWindow() || !hasFocus() || !m_operationModeEnabled)
        return;
    GlobalHotKey &hotKey = GlobalHotKey::instance();
    m_savedHotKeyOperatingMode = hotKey.operatingMode();
    hotKey.setOperatingMode(GlobalHotKey::AllDisabled);
    // Other clients' global shortcuts too: every key comes here.
    if (hotKey.isSystemWide())
        grabKeyboard();
    m_operationModeEnabled = false;
}

void ConfigKeyEditor::_restoreHotKeyOperationMode()
{
    if (m_operationModeEnabled)
        return;
    GlobalHotKey &hotKey = GlobalHotKey::instance();
    if (hotKey.isSystemWide())
        releaseKeyboard();
    hotKey.setOperatingMode(m_savedHotKeyOperatingMode);
    m_operationModeEnabled = true;
}
