// The global record/pause key on a private X server, pressed with xdotool:
// one notice per press, the grab following every change, silenced while the
// key editor edits, and a combination another client holds.

#include "ConfigKeyEditor.h"
#include "GlobalHotKey.h"
#include "LXApplication.h"
#include "LXDefaultsKeys.h"
#include "LXNotificationCenter.h"
#include "LXUserDefaults.h"
#include "PreferencesController.h"

#include "TestSupport.h"
#include "capture/XvfbServer.h"

#include <xcb/xcb_keysyms.h>

#include <X11/keysym.h>

using namespace LXDefaultsKeys;

class TestGlobalHotKey : public QObject
{
    Q_OBJECT

    int m_presses = 0;

    static void xdotool(const QStringList &arguments)
    {
        QCOMPARE(QProcess::execute(QStringLiteral("xdotool"), arguments), 0);
    }
    static void setShortcut(qint64 code, qint64 flags)
    {
        LXUserDefaults::standard().setValue(code, GlobalKeyCode);
        LXUserDefaults::standard().setValue(flags, GlobalKeyModifiers);
        PreferencesController::registerRecordPauseShortcutKey();
    }

private slots:
    void initTestCase()
    {
        LXUserDefaults::standard().registerDefaults(GlobalKeyCode, GlobalKeyModifiers);
        LXNotificationCenter::defaultCenter().addObserver(this, kRecordPauseKeyShortcutTriggered,
            [this](const QVariant &object) { m_presses += object.value<QObject *>() == qApp; });
        PreferencesController::registerRecordPauseShortcutKey();
    }

    void oneNoticePerPressAndOnlyForTheCombination()
    {
        xdotool({ "key", "super+F3", "super+F2", "F2", "super+F2" });
        QTRY_COMPARE(m_presses, 2);
        const int repeats = GlobalHotKey::instance().ignoredRepeats();
        xdotool({ "keydown", "super+F2" });
        QTRY_VERIFY_WITH_TIMEOUT(GlobalHotKey::instance().ignoredRepeats() > repeats + 1, 10000);
        xdotool({ "keyup", "super+F2", "key", "super+F2" });
        QTRY_COMPARE(m_presses, 4);

        setShortcut(96, 0x40000); // Control-F5 replaces Command-F2 at once
        xdotool({ "key", "super+F2", "ctrl+F5" });
        QTRY_COMPARE(m_presses, 5);
        setShortcut(120, 0x100000);
    }

    void editingTheShortcutSilencesIt()
    {
        PreferencesController preferences;
        QWidget *window = preferences.window();
        window->show();
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window));
        QVERIFY(!preferences.configKeyEditor()->isEditing()); // not merely by opening the window
        QTest::keyClick(window, Qt::Key_Tab);
        QTRY_VERIFY(preferences.configKeyEditor()->isEditing());
        xdotool({ "key", "super+F2" }); // taken by the editor, not the hot key
        QTRY_VERIFY(!preferences.configKeyEditor()->isEditing());
        QCOMPARE(preferences.configKeyEditor()->key(), 120);
        QCOMPARE(m_presses, 5);
        xdotool({ "key", "super+F2" });
        QTRY_COMPARE(m_presses, 6);
    }

    // Record, pause, resume, pause: each press must count, also when a
    // window of ours has the focus (the grab used to report the release to
    // that window, so the key stayed held and the next press was a repeat).
    void everyPressTogglesWhateverHasTheFocus_data()
    {
        QTest::addColumn<bool>("focusedFirst"); // our window active before the first press
        QTest::newRow("our window has the focus") << true;
        QTest::newRow("our window comes forward on the first press") << false;
    }
    void everyPressTogglesWhateverHasTheFocus()
    {
        QFETCH(bool, focusedFirst);
        QWidget window;
        window.resize(100, 100);
        const auto activate = [&window] {
            window.show();
            window.activateWindow();
            return QTest::qWaitForWindowActive(&window);
        };
        if (focusedFirst)
            QVERIFY(activate());
        const int before = m_presses;
        for (int i = 1; i <= 4; ++i) {
            // Held until the application has answered, as a hand does.
            xdotool({ "keydown", "super+F2" });
            QTRY_COMPARE(m_presses, before + i);
            if (i == 1 && !focusedFirst)
                QVERIFY(activate());
            xdotool({ "keyup", "super+F2" });
        }
        xdotool({ "key", "F2" }); // a marker: everything before it has arrived
        QTRY_VERIFY(window.isActiveWindow());
        QCOMPARE(m_presses, before + 4);
    }

    void combinationHeldElsewhereIsLogged()
    {
        xcb_connection_t *other = xcb_connect(nullptr, nullptr);
        xcb_key_symbols_t *symbols = xcb_key_symbols_alloc(other);
        xcb_keycode_t *codes = xcb_key_symbols_get_keycode(symbols, XK_F6);
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(other)).data->root;
        QVERIFY(!xcb_request_check(other,
            xcb_grab_key_checked(other, 1, root, XCB_MOD_MASK_4, codes[0], XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
        Log::Capture log;
        setShortcut(97, 0x100000);
        QVERIFY(log.contains(
            QStringLiteral("Could not register the record/pause key \u2318 F6: another application holds it")));
        free(codes);
        xcb_key_symbols_free(symbols);
        xcb_disconnect(other);
    }
};

int main(int argc, char **argv)
{
    TestSandbox sandbox;
    XvfbServer xvfb;
    if (xvfb.display().isEmpty()) {
        qWarning("Xvfb could not be started");
        return 1;
    }
    qputenv("DISPLAY", xvfb.display().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "xcb");
    LXApplication app(argc, argv);
    TestGlobalHotKey test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_globalhotkey.moc"
