#pragma once

#include "ConfigKeyEditor.h"

#include <QObject>

#include <memory>

class LXPanelWindow;
class QComboBox;
class QLabel;
class QWidget;
namespace Ui {
class Preferences;
}

// The Preferences window loaded from "Preferences": the global record/pause
// shortcut, chosen from Command-F1 to Command-F12 or typed into the field.
// Every change is stored and the key re-registered at once.
class PreferencesController final : public QObject, public ConfigKeyEditorMaster
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PreferencesController)

public:
    explicit PreferencesController(QObject *parent = nullptr);
    ~PreferencesController() override;

    QWidget *window();
    QLabel *recordPauseShortcutLabelTextField() const;
    QComboBox *recordPauseShortcutComboBox() const;
    ConfigKeyEditor *configKeyEditor() const { return m_configKeyEditor; }

    // Grabs the global record/pause key from "GlobalKeyCode" and
    // "GlobalKeyModifiers", replacing the one grabbed before.
    static void registerRecordPauseShortcutKey();

    void refreshPreferenceValues();
    void refreshPreferenceForcedValues();
    // The shortcut list closed on item `selectedIndex`.
    void comboBoxWillDismiss(int selectedIndex);
    void keyEditorFinished(const QString &display, QWidget *textView, int virtualKey, quint32 modifiers) override;
    void controlTextDidCancelEditing(ConfigKeyEditor *editor) override;
    void terminate() override;

signals:
    void quitRequested();

private:
    void windowDidLoad();

    std::unique_ptr<LXPanelWindow> m_window;
    std::unique_ptr<Ui::Preferences> m_ui;
    ConfigKeyEditor *m_configKeyEditor = nullptr;
};
