#include "PreferencesController.h"

#include "LXPanelWindow.h"

#include <QLabel>
#include <QVBoxLayout>

PreferencesController::PreferencesController(QObject *parent)
    : QObject(parent)
{ }

PreferencesController::~PreferencesController() = default;

QWidget *PreferencesController::window()
{
    if (!m_window) {
        m_window = std::make_unique<LXPanelWindow>();
        m_window->setWindowTitle(tr("Preferences"));
        m_window->setObjectName(QStringLiteral("Preferences"));
        auto *layout = new QVBoxLayout(m_window.get());
        layout->addWidget(new QLabel(tr("Record/pause shortcut settings will appear here."), m_window.get()));
        m_window->resize(380, 160);
    }
    return m_window.get();
}

void PreferencesController::registerRecordPauseShortcutKey()
{
    // No global key is grabbed until the hot key is built; the defaults it
    // reads are registered by the application controller.
}
