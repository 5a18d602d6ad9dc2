// The Preferences window and its key editor, offscreen: what is shown, what
// the kiosk file locks, and what each typed combination stores.

#include "ConfigKeyEditor.h"
#include "LXDefaultsKeys.h"
#include "LXUserDefaults.h"
#include "Paths.h"
#include "PreferencesController.h"
#include "PropertyList.h"

#include "TestSupport.h"

#include <QComboBox>
#include <QLabel>

using namespace LXDefaultsKeys;

class TestPreferences : public QObject
{
    Q_OBJECT

    TestSandbox m_sandbox;
    std::unique_ptr<PreferencesController> m_preferences;
    LXUserDefaults &defaults() { return LXUserDefaults::standard(); }
    std::pair<qint64, qint64> stored()
    {
        return { defaults().valueForLumexKey(GlobalKeyCode), defaults().valueForLumexKey(GlobalKeyModifiers) };
    }

private slots:
    void initTestCase() { defaults().registerDefaults(GlobalKeyCode, GlobalKeyModifiers); }
    void init()
    {
        defaults().removeObject(GlobalKeyCode.key);
        defaults().removeObject(GlobalKeyModifiers.key);
        QFile::remove(Paths::kioskFile());
        m_preferences = std::make_unique<PreferencesController>();
    }

    void shownValueAndKioskLock_data()
    {
        QTest::addColumn<QVariantMap>("kiosk");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<bool>("wayland");
        QTest::newRow("nothing stored") << QVariantMap() << QStringLiteral("\u2318 F2") << true << false;
        QTest::newRow("both forced") << QVariantMap { { GlobalKeyCode.key, 96 }, { GlobalKeyModifiers.key, 0x40000 } }
                                     << QStringLiteral("\u2303 F5") << false << false;
        QTest::newRow("only the code forced")
            << QVariantMap { { GlobalKeyCode.key, 96 } } << QStringLiteral("\u2318 F5") << true << false;
        QTest::newRow("Wayland: no global key") << QVariantMap() << QStringLiteral("\u2318 F2") << false << true;
    }
    void shownValueAndKioskLock()
    {
        QFETCH(QVariantMap, kiosk);
        QFETCH(QString, shown);
        QFETCH(bool, enabled);
        QFETCH(bool, wayland);
        if (!kiosk.isEmpty())
            QVERIFY(QDir().mkpath(QFileInfo(Paths::kioskFile()).path())
                && PropertyList::writeFile(Paths::kioskFile(), kiosk, true));
        if (wayland)
            qputenv("WAYLAND_DISPLAY", "wayland-0");
        const QString explanation = m_preferences->window()->findChild<QLabel *>("explanationLabel")->text();
        qunsetenv("WAYLAND_DISPLAY");
        QCOMPARE(m_preferences->recordPauseShortcutComboBox()->currentText(), shown);
        QCOMPARE(m_preferences->recordPauseShortcutComboBox()->isEnabled(), enabled);
        QCOMPARE(m_preferences->recordPauseShortcutLabelTextField()->isEnabled(), enabled);
        QCOMPARE(explanation.contains(QStringLiteral("Recording menu")), wayland);
    }

    void listChoiceStoresCommandAndTheKey()
    {
        defaults().setValue(qint64(0x60000), GlobalKeyModifiers);
        m_preferences->window();
        for (int outside : { -1, 12 })
            m_preferences->comboBoxWillDismiss(outside);
        QCOMPARE(stored(), std::make_pair(qint64(120), qint64(0x60000)));
        Log::Capture log;
        m_preferences->comboBoxWillDismiss(4);
        QCOMPARE(stored(), std::make_pair(qint64(96), qint64(0x100000)));
        QVERIFY(log.contains(QStringLiteral("No global record/pause key: the display (offscreen) is not an X server")));
    }

    void typedCombination_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<qint64>("code");
        QTest::addColumn<qint64>("flags");
        QTest::addColumn<bool>("refused");
        QTest::addColumn<bool>("editing");
        QTest::newRow("Shift-A refused") << int(Qt::Key_A) << int(Qt::ShiftModifier) << 120LL << 0x100000LL << true
                                         << true;
        QTest::newRow("Control-A") << int(Qt::Key_A) << int(Qt::ControlModifier) << 0LL << 0x40000LL << false << false;
        QTest::newRow("F5 alone") << int(Qt::Key_F5) << 0 << 96LL << 0LL << false << false;
        QTest::newRow("Shift-Meta-keypad 5")
            << int(Qt::Key_5) << int(Qt::ShiftModifier | Qt::MetaModifier | Qt::KeypadModifier) << 0x57LL << 0x320000LL
            << false << false;
        QTest::newRow("Escape cancels") << int(Qt::Key_Escape) << 0 << 120LL << 0x100000LL << false << false;
    }
    void typedCombination()
    {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(qint64, code);
        QFETCH(qint64, flags);
        QFETCH(bool, refused);
        QFETCH(bool, editing);
        QWidget *window = m_preferences->window();
        window->show();
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window));
        ConfigKeyEditor *editor = m_preferences->configKeyEditor();
        editor->setFocus();
        QVERIFY(editor->isEditing());
        QSignalSpy beeps(editor, &ConfigKeyEditor::keyRefused);
        QTest::keyClick(editor, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
        QCOMPARE(stored(), std::make_pair(code, flags));
        QCOMPARE(beeps.size(), refused ? 1 : 0);
        QCOMPARE(editor->isEditing(), editing);
        QCOMPARE(editor->hasFocus(), editing);
    }

    void leavingTheWindowEndsEditing()
    {
        QWidget *window = m_preferences->window();
        window->show();
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window));
        m_preferences->configKeyEditor()->setFocus();
        QVERIFY(m_preferences->configKeyEditor()->isEditing());
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        QVERIFY(!m_preferences->configKeyEditor()->isEditing());
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window));
        QVERIFY(!m_preferences->configKeyEditor()->hasFocus());
    }
};

QTEST_MAIN(TestPreferences)
#include "tst_preferences.moc"
