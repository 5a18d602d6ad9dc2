#include "LXDefaultsKeys.h"
#include "LXUserDefaults.h"
#include "Log.h"
#include "PropertyList.h"

#include "TestSupport.h"

class TestUserDefaults : public QObject
{
    Q_OBJECT

    std::unique_ptr<TestSandbox> m_sandbox;
    QString store() const { return m_sandbox->home() + QStringLiteral("/Library/Preferences/com.tarn.Lumex.plist"); }
    QString kiosk() const
    {
        return m_sandbox->sysroot() + QStringLiteral("/Library/Preferences/com.tarn.Lumex.kiosk.plist");
    }
    void writeKiosk(const QVariantMap &values)
    {
        QDir().mkpath(QFileInfo(kiosk()).absolutePath());
        QVERIFY(PropertyList::writeFile(kiosk(), values, true));
    }

private slots:
    void init() { m_sandbox = std::make_unique<TestSandbox>(); }
    void cleanup() { m_sandbox.reset(); }

    void registeredDefaultsAreNeverWritten()
    {
        LXUserDefaults defaults(store(), kiosk());
        defaults.registerDefaults(LXDefaultsKeys::GlobalKeyCode);
        QCOMPARE(defaults.integerForKey(LXDefaultsKeys::GlobalKeyCode.key), 120);
        defaults.setObject(QStringLiteral("host.example"), LXDefaultsKeys::LoginPanelLastLoginHost.key);

        const QVariantMap onDisk = PropertyList::readFile(store()).toMap();
        QCOMPARE(
            onDisk, (QVariantMap { { LXDefaultsKeys::LoginPanelLastLoginHost.key, QStringLiteral("host.example") } }));

        LXUserDefaults reopened(store(), kiosk());
        QCOMPARE(reopened.stringForKey(LXDefaultsKeys::LoginPanelLastLoginHost.key), QStringLiteral("host.example"));
        QVERIFY(!reopened.objectForKey(LXDefaultsKeys::GlobalKeyCode.key).isValid());

        reopened.removeObject(LXDefaultsKeys::LoginPanelLastLoginHost.key);
        QVERIFY(PropertyList::readFile(store()).toMap().isEmpty());
    }

    void kioskForcesValuesAndIsReadAfreshEachTime()
    {
        LXUserDefaults defaults(store(), kiosk());
        defaults.setObject(qint64(99), LXDefaultsKeys::GlobalKeyCode.key);
        QCOMPARE(defaults.objectForLumexKey(LXDefaultsKeys::GlobalKeyCode.key).toLongLong(), 99);
        QVERIFY(!defaults.objectIsForcedForLumexKey(LXDefaultsKeys::GlobalKeyCode.key));

        // Any value forces, even false or empty.
        writeKiosk(
            { { LXDefaultsKeys::GlobalKeyCode.key, qint64(96) }, { LXDefaultsKeys::GlobalKeyModifiers.key, false } });
        QCOMPARE(defaults.objectForLumexKey(LXDefaultsKeys::GlobalKeyCode.key).toLongLong(), 96);
        QVERIFY(defaults.objectIsForcedForLumexKey(LXDefaultsKeys::GlobalKeyCode.key));
        QVERIFY(defaults.objectIsForcedForLumexKey(LXDefaultsKeys::GlobalKeyModifiers.key));
        QVERIFY(!defaults.objectIsForcedForLumexKey(LXDefaultsKeys::LocalRecordSpoolPath.key));
        QCOMPARE(defaults.objectForKey(LXDefaultsKeys::GlobalKeyCode.key).toLongLong(), 99); // the user's value stays

        QFile::remove(kiosk());
        QVERIFY(!defaults.objectIsForcedForLumexKey(LXDefaultsKeys::GlobalKeyCode.key));
        QCOMPARE(defaults.objectForLumexKey(LXDefaultsKeys::GlobalKeyCode.key).toLongLong(), 99);
    }

    void damagedKioskFileForcesNothing_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("garbage") << 0;
        QTest::newRow("array root") << 1;
        QTest::newRow("folder in its place") << 2;
    }

    void damagedKioskFileForcesNothing()
    {
        QFETCH(int, kind);
        QDir().mkpath(QFileInfo(kiosk()).absolutePath());
        if (kind == 0) {
            QFile f(kiosk());
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write("<?xml version=\"1.0\"?><plist><dict><key>GlobalKeyCode</key>");
        } else if (kind == 1) {
            QVERIFY(PropertyList::writeFile(kiosk(), QVariantList { QStringLiteral("GlobalKeyCode") }, true));
        } else {
            QVERIFY(QDir().mkpath(kiosk()));
        }
        LXUserDefaults defaults(store(), kiosk());
        defaults.registerDefaults(LXDefaultsKeys::GlobalKeyCode);
        QVERIFY(!defaults.objectIsForcedForLumexKey(LXDefaultsKeys::GlobalKeyCode.key));
        QCOMPARE(defaults.objectForLumexKey(LXDefaultsKeys::GlobalKeyCode.key).toInt(), 120);
    }

    void damagedStoreCountsAsEmptyAndIsKept()
    {
        QDir().mkpath(QFileInfo(store()).absolutePath());
        const QByteArray damaged = "<?xml version=\"1.0\"?><plist><dict><key>loginPanelLastLoginHost";
        {
            QFile f(store());
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write(damaged);
        }
        Log::Capture log;
        LXUserDefaults defaults(store(), kiosk());
        QVERIFY(!defaults.objectForKey(LXDefaultsKeys::LoginPanelLastLoginHost.key).isValid());
        QVERIFY(!log.lines().isEmpty());
        QVERIFY(defaults.synchronize());
        {
            QFile f(store()); // reading and synchronising alone never overwrite it
            QVERIFY(f.open(QIODevice::ReadOnly));
            QCOMPARE(f.readAll(), damaged);
        }
        defaults.setObject(QStringLiteral("ann"), LXDefaultsKeys::LoginPanelLastLoginUsername.key);
        QCOMPARE(PropertyList::readFile(store()).toMap().value(LXDefaultsKeys::LoginPanelLastLoginUsername.key),
            QVariant(QStringLiteral("ann")));
        const QStringList aside
            = QDir(QFileInfo(store()).absolutePath()).entryList({ QStringLiteral("com.tarn.Lumex.plist.corrupt-*") });
        QCOMPARE(aside.size(), 1);
        QFile kept(QFileInfo(store()).absolutePath() + QLatin1Char('/') + aside.first());
        QVERIFY(kept.open(QIODevice::ReadOnly));
        QCOMPARE(kept.readAll(), damaged);
    }

    void unwritableStoreKeepsValuesInMemory()
    {
        QVERIFY(QDir().mkpath(store())); // a folder where the file should be
        Log::Capture log;
        LXUserDefaults defaults(store(), kiosk());
        defaults.setObject(QStringLiteral("ann"), LXDefaultsKeys::LoginPanelLastLoginUsername.key);
        QCOMPARE(defaults.stringForKey(LXDefaultsKeys::LoginPanelLastLoginUsername.key), QStringLiteral("ann"));
        QVERIFY(!defaults.synchronize());
        QVERIFY(!log.lines().isEmpty());
        QVERIFY(QFileInfo(store()).isDir());
    }

    void typedGettersDoNotConfuseTypes()
    {
        LXUserDefaults defaults(store(), kiosk());
        defaults.setObject(QVariantMap { { QStringLiteral("isLocalRecording"), true } },
            LXDefaultsKeys::lastDeviceSelectionFor(QStringLiteral("Video")).key);
        QCOMPARE(defaults.dictionaryForKey(QStringLiteral("lastDeviceSelectionForVideo")).value("isLocalRecording"),
            QVariant(true));
        QVERIFY(defaults.stringForKey(QStringLiteral("lastDeviceSelectionForVideo")).isNull());
    }
};

QTEST_GUILESS_MAIN(TestUserDefaults)
#include "tst_userdefaults.moc"
