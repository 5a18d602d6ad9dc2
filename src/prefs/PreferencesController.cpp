#include "PreferencesController.h"

#include "ConfigKeyEditor.h"
#include "DisplaySession.h"
#include "GlobalHotKey.h"
#include "LXDefaultsKeys.h"
#include "LXPanelWindow.h"
#include "LXShortcutKeys.h"
#include "LXUserDefaults.h"
#include "ui_Preferences.h"

#include <QComboBox>
#include <QLabel>

namespace {

// Key codes of F1 to F12, the items of the shortcut list in order.
constexpr int kFunctionKeyCodes[] = { 122, 120, 99, 118, 96, 97, 98, 100, 101, 109, 103, 111 };

} // namespace

PreferencesController::PreferencesController(QObject *parent)
    : QObject(parent)
{ }

PreferencesController::~PreferencesController() = default;

QWidget *PreferencesController::window()
{
    if (!m_window) {
        m_window = std::make_unique<LXPanelWindow>();
        m_ui = std::make_unique<Ui::Preferences>();
        m_ui->setupUi(m_window.get());
        m_window->setObjectName(QStringLiteral("Preferences"));
        QComboBox *comboBox = m_ui->recordPauseShortcutComboBox;
        for (int index = 0; index < int(std::size(kFunctionKeyCodes)); ++index)
            comboBox->addItem(QStringLiteral("\u2318 F%1").arg(index + 1));
        m_configKeyEditor = new ConfigKeyEditor(this);
        comboBox->setLineEdit(m_configKeyEditor);
        m_configKeyEditor->setAccessibleName(comboBox->accessibleName());
        m_configKeyEditor->setAccessibleDescription(
            tr("Press the key combination you want while this field has focus"));
        comboBox->setCompleter(nullptr);
        comboBox->setInsertPolicy(QComboBox::NoInsert);
        // Editing switches the hot key off, so it starts with a click or a
        // Tab, not whenever the window comes to the front and focuses its
        // first field: the window itself holds the focus until then.
        comboBox->setFocusPolicy(Qt::StrongFocus);
        m_configKeyEditor->setFocusPolicy(Qt::StrongFocus);
        m_window->setFocus(Qt::OtherFocusReason);
        m_configKeyEditor->setTextField(comboBox);
        connect(comboBox, &QComboBox::activated, this, &PreferencesController::comboBoxWillDismiss);
        windowDidLoad();
    }
    return m_window.get();
}

QLabel *PreferencesController::recordPauseShortcutLabelTextField() const
{
    return m_ui ? m_ui->recordPauseShortcutLabelTextField : nullptr;
}

QComboBox *PreferencesController::recordPauseShortcutComboBox() const
{
    return m_ui ? m_ui->recordPauseShortcutComboBox : nullptr;
}

void PreferencesController::windowDidLoad()
{
    if (DisplaySession::isWayland())
        m_ui->explanationLabel->setText(tr("This desktop offers no global record/pause key: on Wayland no application "
                                           "may take a key from the others. Use the Recording menu to start or pause "
                                           "a recording."));
    m_window->adjustSize();
    m_window->setFixedSize(m_window->size());
    refreshPreferenceValues();
}

void PreferencesController::refreshPreferenceValues()
{
    LXUserDefaults &defaults = LXUserDefaults::standard();
    const qint64 keyCode = defaults.valueForLumexKey(LXDefaultsKeys::GlobalKeyCode);
    const qint64 modifiers = defaults.valueForLumexKey(LXDefaultsKeys::GlobalKeyModifiers);
    QComboBox *comboBox = m_ui->recordPauseShortcutComboBox;
    comboBox->setCurrentIndex(-1);
    comboBox->setEditText(LXShortcutDisplayString(int(keyCode), quint32(modifiers)));
    refreshPreferenceForcedValues();
    defaults.synchronize();
}

void PreferencesController::refreshPreferenceForcedValues()
{
    const LXUserDefaults &defaults = LXUserDefaults::standard();
    // Forcing one of the two alone leaves the shortcut editable on purpose.
    const bool forced
        = defaults.isForced(LXDefaultsKeys::GlobalKeyCode) && defaults.isForced(LXDefaultsKeys::GlobalKeyModifiers);
    const bool editable = !forced && !DisplaySession::isWayland();
    m_ui->recordPauseShortcutLabelTextField->setEnabled(editable);
    m_ui->recordPauseShortcutComboBox->setEnabled(editable);
}

void PreferencesController::comboBoxWillDismiss(int selectedIndex)
{
    if (selectedIndex < 0 || selectedIndex >= int(std::size(kFunctionKeyCodes)))
        return;
    LXUserDefaults &defaults = LXUserDefaults::standard();
    defaults.setValue(qint64(LXShortcutKeys::kCommandFlag), LXDefaultsKeys::GlobalKeyModifiers);
    defaults.setValue(qint64(kFunctionKeyCodes[selectedIndex]), LXDefaultsKeys::GlobalKeyCode);
    defaults.synchronize();
    registerRecordPauseShortcutKey();
}

void PreferencesController::keyEditorFinished(const QString &, QWidget *, int virtualKey, quint32 modifiers)
{
    LXUserDefaults &defaults = LXUserDefaults::standard();
    defaults.setValue(qint64(modifiers), LXDefaultsKeys::GlobalKeyModifiers);
    defaults.setValue(qint64(virtualKey), LXDefaultsKeys::GlobalKeyCode);
    defaults.synchronize();
    registerRecordPauseShortcutKey();
}

void PreferencesController::controlTextDidCancelEditing(ConfigKeyEditor *editor)
{
    editor->endEditing();
}

void PreferencesController::terminate()
{
    emit quitRequested();
}

void PreferencesController::registerRecordPauseShortcutKey()
{
    const LXUserDefaults &defaults = LXUserDefaults::standard();
    const qint64 keyCode = defaults.valueForLumexKey(LXDefaultsKeys::GlobalKeyCode);
    const qint64 modifiers = defaults.valueForLumexKey(LXDefaultsKeys::GlobalKeyModifiers);
    GlobalHotKey &hotKey = GlobalHotKey::instance();
    hotKey.removeHotKey(GlobalHotKey::kRecordPauseHotKeyID);
    hotKey.setHotKey(GlobalHotKey::kRecordPauseHotKeyID, int(keyCode & 0xFFFF), quint32(modifiers));
}
