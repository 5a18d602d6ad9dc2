#pragma once

#include "GlobalHotKey.h"

#include <QLineEdit>

#include <optional>

class ConfigKeyEditor;
class QKeyEvent;

// Whoever the key editor reports to: the window that edits the shortcut.
class ConfigKeyEditorMaster
{
public:
    virtual ~ConfigKeyEditorMaster() = default;
    virtual void keyEditorFinished(const QString &display, QWidget *textView, int virtualKey, quint32 modifiers) = 0;
    virtual void controlTextDidCancelEditing(ConfigKeyEditor *editor) = 0;
    // The key editor's Command-Q.
    virtual void terminate() = 0;
};

// The field editor of the shortcut combo box: it takes the next key
// combination typed instead of text. While it edits with its window active,
// the global hot key is off and the keyboard grabbed, so the combination
// being typed reaches it rather than triggering anything.
class ConfigKeyEditor final : public QLineEdit
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ConfigKeyEditor)

public:
    explicit ConfigKeyEditor(ConfigKeyEditorMaster *master, QWidget *parent = nullptr);
    ~ConfigKeyEditor() override;

    // The last accepted key code; none before a key is accepted.
    std::optional<int> key() const { return m_virtualKey; }
    quint32 modifier() const { return m_modifiers; }
    QWidget *textField() const { return m_textField; }
    void setTextField(QWidget *textField) { m_textField = textField; }

    bool isEditing() const { return !m_operationModeEnabled; }

    void keyDown(QKeyEvent *event);
    // No field of the window edits any more.
    void endEditing();

signals:
    // A key that cannot be a shortcut was typed (and the beep sounded).
    void keyRefused();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void _disableHotKeyOperationMode();
    void _restoreHotKeyOperationMode();

    ConfigKeyEditorMaster *const m_master;
    std::optional<int> m_virtualKey;
    quint32 m_modifiers = 0;
    QWidget *m_textField = nullptr;
    bool m_operationModeEnabled = true;
    GlobalHotKey::OperatingMode m_savedHotKeyOperatingMode = GlobalHotKey::Normal;
};
