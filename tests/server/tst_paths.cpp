#include "Paths.h"

#include "TestSupport.h"

class TestPaths : public QObject
{
    Q_OBJECT

private slots:
    void sysrootPrefixesSystemPathsOnly()
    {
        qputenv("LUMEX_SYSROOT", "/tmp/sim-root/");
        qputenv("HOME", "/home/ann");
        QCOMPARE(Paths::orvxexec(), QStringLiteral("/tmp/sim-root/usr/libexec/orvane/orvxexec"));
        QCOMPARE(Paths::orvxctlexec(), QStringLiteral("/tmp/sim-root/usr/libexec/orvane/orvxctlexec"));
        QCOMPARE(Paths::orvxagentd(), QStringLiteral("/tmp/sim-root/usr/libexec/orvane/orvxagentd"));
        QCOMPARE(
            Paths::globalAgentConfig(), QStringLiteral("/tmp/sim-root/Library/Preferences/com.tarn.orvxagentd.plist"));
        QCOMPARE(Paths::kioskFile(), QStringLiteral("/tmp/sim-root/Library/Preferences/com.tarn.Lumex.kiosk.plist"));
        QCOMPARE(Paths::mkdirTool(), QStringLiteral("/bin/mkdir"));
        QCOMPARE(Paths::nullDevice(), QStringLiteral("/dev/null"));
        QCOMPARE(Paths::userAgentConfig(), QStringLiteral("/home/ann/Library/Preferences/com.tarn.orvxagentd.plist"));
        QCOMPARE(Paths::userDefaultsFile(), QStringLiteral("/home/ann/Library/Preferences/com.tarn.Lumex.plist"));
        QCOMPARE(Paths::applicationSupport(), QStringLiteral("/home/ann/Library/Application Support/Lumex"));

        qunsetenv("LUMEX_SYSROOT");
        QCOMPARE(Paths::orvxexec(), QStringLiteral("/usr/libexec/orvane/orvxexec"));
        QCOMPARE(Paths::expandTilde(QStringLiteral("~notme/x")), QStringLiteral("~notme/x"));
        QCOMPARE(Paths::expandTilde(QStringLiteral("/abs/~")), QStringLiteral("/abs/~"));
    }

    void jobDataFolderIsComputedOncePerProcess()
    {
        qputenv("HOME", "/home/first");
        const QString first = Paths::jobDataFolder();
        QCOMPARE(first, QStringLiteral("/home/first/Library/Application Support/Lumex"));
        qputenv("HOME", "/home/second");
        QCOMPARE(Paths::jobDataFolder(), first);
    }
};

QTEST_GUILESS_MAIN(TestPaths)
#include "tst_paths.moc"
