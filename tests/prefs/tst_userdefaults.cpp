// The defaults store on real files: what reaches the disk, what the kiosk
// file forces, and what a damaged or unwritable file does.

#include "LXDefaultsKeys.h"
#include "LXUserDefaults.h"
#include "Log.h"
#include "PropertyList.h"

#include "TestSupport.h"

using namespace LXDefaultsKeys;

class TestUserDefaults : public QObject
{
    Q_OBJECT

    std::unique_ptr<TestSandbox> m_sandbox;
    QString store() const { return m_sandbox->home() + QStringLiteral("/Library/Preferences/com.tarn.Lumex.plist"); }
    QString kiosk() const
    {
        return m_sandbox->sysroot() + QStringLiteral("/Library/Preferences/com.tarn.Lumex.kiosk.plist");
    }

private slots:
    void init() { m_sandbox = std::make_unique<TestSandbox>(); }
    void cleanup() { m_sandbox.reset(); }

    void registeredDefaultsAreNeverWritten()
    {
        LXUserDefaults defaults(store(), kiosk());
        defaults.registerDefaults(GlobalKeyCode);
        QCOMPARE(defaults.valueForLumexKey(GlobalKeyCode), 120);
        defaults.setValue(QStringLiteral("host.example"), LoginPanelLastLoginHost);
        QCOMPARE(
            PropertyList::readFile(store()).toMap(), (QVariantMap { { LoginPanelLastLoginHost.key, "host.example" } }));

        LXUserDefaults reopened(store(), kiosk());
        QCOMPARE(reopened.valueForLumexKey(LoginPanelLastLoginHost), QStringLiteral("host.example"));
        QVERIFY(!reopened.objectForKey(GlobalKeyCode.key).isValid());
        reopened.removeObject(LoginPanelLastLoginHost.key);
        QVERIFY(PropertyList::readFile(store()).toMap().isEmpty());
    }

    void kioskForcesValuesAndIsReadAfreshEachTime()
    {
        LXUserDefaults defaults(store(), kiosk());
        defaults.setValue(qint64(99), GlobalKeyCode);
        defaults.setValue(QStringLiteral("mine"), LoginPanelLastLoginHost);
        QCOMPARE(defaults.valueForLumexKey(GlobalKeyCode), 99);
        QVERIFY(!defaults.isForced(GlobalKeyCode));

        // Any value forces, even false or one of another type.
        QVERIFY(writeBytes(kiosk(),
            PropertyList::toXml(QVariantMap { { GlobalKeyCode.key, qint64(96) }, { GlobalKeyModifiers.key, false },
                { LoginPanelLastLoginHost.key, 7 } })));
        QCOMPARE(defaults.valueForLumexKey(GlobalKeyCode), 96);
        QVERIFY(defaults.isForced(GlobalKeyCode) && defaults.isForced(GlobalKeyModifiers));
        QVERIFY(!defaults.isForced(LocalRecordSpoolPath));
        QVERIFY(defaults.valueForLumexKey(LoginPanelLastLoginHost).isNull()); // not a text: no text
        QCOMPARE(defaults.objectForKey(GlobalKeyCode.key).toLongLong(), 99); // the user's value stays

        QFile::remove(kiosk());
        QVERIFY(!defaults.isForced(GlobalKeyCode));
        QCOMPARE(defaults.valueForLumexKey(GlobalKeyCode), 99);
        QCOMPARE(defaults.valueForLumexKey(LoginPanelLastLoginHost), QStringLiteral("mine"));
    }

    void damagedKioskFileForcesNothing_data()
    {
        QTest::addColumn<QByteArray>("contents"); // null: a folder in its place
        QTest::newRow("garbage") << QByteArray("<?xml version=\"1.0\"?><plist><dict><key>GlobalKeyCode</key>");
        QTest::newRow("array root") << PropertyList::toXml(QVariantList { QStringLiteral("GlobalKeyCode") });
        QTest::newRow("folder in its place") << QByteArray();
    }
    void damagedKioskFileForcesNothing()
    {
        QFETCH(QByteArray, contents);
        if (contents.isNull())
            QVERIFY(QDir().mkpath(kiosk()));
        else
            QVERIFY(writeBytes(kiosk(), contents));
        LXUserDefaults defaults(store(), kiosk());
        defaults.registerDefaults(GlobalKeyCode);
        QVERIFY(!defaults.isForced(GlobalKeyCode));
        QCOMPARE(defaults.valueForLumexKey(GlobalKeyCode), 120);
    }

    void damagedStoreCountsAsEmptyAndIsKept()
    {
        const QByteArray damaged = "<?xml version=\"1.0\"?><plist><dict><key>loginPanelLastLoginHost";
        QVERIFY(writeBytes(store(), damaged));
        Log::Capture log;
        LXUserDefaults defaults(store(), kiosk());
        QVERIFY(defaults.valueForLumexKey(LoginPanelLastLoginHost).isNull());
        QVERIFY(!log.lines().isEmpty());
        QVERIFY(defaults.synchronize());
        QCOMPARE(readBytes(store()), damaged); // reading and synchronising alone never overwrite it
        defaults.setValue(QStringLiteral("ann"), LoginPanelLastLoginUsername);
        QCOMPARE(PropertyList::readFile(store()).toMap(), (QVariantMap { { LoginPanelLastLoginUsername.key, "ann" } }));
        const QDir folder = QFileInfo(store()).absoluteDir();
        const QStringList aside = folder.entryList({ QStringLiteral("com.tarn.Lumex.plist.corrupt-*") });
        QCOMPARE(aside.size(), 1);
        QCOMPARE(readBytes(folder.filePath(aside.first())), damaged);
    }

    void unwritableStoreKeepsValuesInMemory()
    {
        QVERIFY(QDir().mkpath(store())); // a folder where the file should be
        Log::Capture log;
        LXUserDefaults defaults(store(), kiosk());
        defaults.setValue(QStringLiteral("ann"), LoginPanelLastLoginUsername);
        QCOMPARE(defaults.valueForLumexKey(LoginPanelLastLoginUsername), QStringLiteral("ann"));
        QVERIFY(!defaults.synchronize());
        QVERIFY(!log.lines().isEmpty());
        QVERIFY(QFileInfo(store()).isDir());
    }
};

QTEST_GUILESS_MAIN(TestUserDefaults)
#include "tst_userdefaults.moc"
