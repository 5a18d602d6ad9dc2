#include "LXShortcutKeys.h"

#include <QTest>

#include <X11/X.h>
#include <X11/keysym.h>

using namespace LXShortcutKeys;

class TestShortcutKeys final : public QObject
{
    Q_OBJECT

private slots:
    // Every key code that names a key comes back from its key symbol, and
    // no two codes share one; letters are found in either case.
    void everyKeyTranslatesBothWays()
    {
        int named = 0;
        for (int code = 0; code < 128; ++code) {
            const std::optional<quint32> keysym = keysymForVirtualKey(code);
            QCOMPARE(keysym.has_value(), !keyName(code).isEmpty());
            if (!keysym)
                continue;
            ++named;
            QCOMPARE(virtualKeyForKeysym(*keysym), std::optional<int>(code));
        }
        QVERIFY2(named >= 26 + 10 + 20 + 4, "letters, digits, F1-F20 and the arrows at least");
        QCOMPARE(virtualKeyForKeysym(XK_Q), std::optional<int>(12));
        QCOMPARE(virtualKeyForKeysym(XK_VoidSymbol), std::nullopt);
        QVERIFY(isFunctionKey(96) && isFunctionKey(0x5A) && !isFunctionKey(0) && !isFunctionKey(0x7B));
        // Qt's keys, where the platform gives no key symbol, reach the same codes.
        const std::tuple<int, bool, int> qtKeys[]
            = { { Qt::Key_A, false, 0 }, { Qt::Key_BracketRight, false, 0x1E }, { Qt::Key_F20, false, 0x5A },
                  { Qt::Key_Down, false, 0x7D }, { Qt::Key_Enter, true, 0x4C }, { Qt::Key_7, true, 0x59 } };
        for (const auto &[qtKey, keypad, code] : qtKeys)
            QCOMPARE(virtualKeyForKeysym(keysymForQtKey(qtKey, keypad).value_or(0)), std::optional<int>(code));
    }

    void modifiersTranslateBothWays()
    {
        QCOMPARE(xModifiersForFlags(kCommandFlag), quint16(Mod4Mask));
        QCOMPARE(
            xModifiersForFlags(kShiftFlag | kControlFlag | kOptionFlag), quint16(ShiftMask | ControlMask | Mod1Mask));
        QCOMPARE(xModifiersForFlags(kNumericPadFlag | kFunctionFlag), quint16(0));
        const quint32 all = kShiftFlag | kControlFlag | kOptionFlag | kCommandFlag;
        QCOMPARE(flagsForXModifiers(xModifiersForFlags(all)), all);
        QCOMPARE(flagsForXModifiers(LockMask | Mod2Mask), 0u); // Caps Lock and Num Lock are no modifiers here
    }

    void displayString_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<quint32>("flags");
        QTest::addColumn<QString>("text");
        QTest::newRow("default") << 120 << kCommandFlag << QStringLiteral("\u2318 F2");
        QTest::newRow("no modifier, no space") << 96 << 0u << QStringLiteral("F5");
        QTest::newRow("glyph order") << 0 << (kCommandFlag | kShiftFlag | kOptionFlag | kControlFlag)
                                     << QStringLiteral("\u2303\u2325\u21E7\u2318 A");
        QTest::newRow("numeric pad shows no glyph")
            << 0x52 << (kNumericPadFlag | kControlFlag) << QStringLiteral("\u2303 0");
        QTest::newRow("function") << 0x7B << kFunctionFlag << QStringLiteral("fn \u2190");
    }
    void displayString()
    {
        QFETCH(int, key);
        QFETCH(quint32, flags);
        QFETCH(QString, text);
        QCOMPARE(LXShortcutDisplayString(key, flags), text);
    }
};

QTEST_GUILESS_MAIN(TestShortcutKeys)
#include "tst_shortcutkeys.moc"
