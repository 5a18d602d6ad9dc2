#pragma once

#include <QObject>

#include <memory>

class LXPanelWindow;
class QWidget;

// The Preferences window: the global record/pause shortcut.
class PreferencesController final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PreferencesController)

public:
    explicit PreferencesController(QObject *parent = nullptr);
    ~PreferencesController() override;

    QWidget *window();

    // Registers the global record/pause key from "GlobalKeyCode" and
    // "GlobalKeyModifiers".
    static void registerRecordPauseShortcutKey();

private:
    std::unique_ptr<LXPanelWindow> m_window;
};
