// A smoke test of the bundled server simulator itself: its login, its
// command-line check and its privileged configuration. The rest of it (the
// fault file too) is exercised by every integration test of the client.

#include "SimSandbox.h"

class TestSimulator : public QObject
{
    Q_OBJECT

    SimSandbox m_sim;

private slots:
    void init() { QVERIFY(m_sim.resetState()); }

    void login_data()
    {
        QTest::addColumn<QString>("user");
        QTest::addColumn<QByteArray>("password");
        QTest::addColumn<int>("status");
        QTest::newRow("second user, no line end") << "lecturer" << QByteArray("chalkboard") << 0;
        QTest::newRow("other user's password") << "demo" << QByteArray("chalkboard") << 26;
        QTest::newRow("two line ends") << "demo" << QByteArray("lumex\n\n") << 26;
    }
    void login()
    {
        QFETCH(QString, user);
        QFETCH(QByteArray, password);
        QFETCH(int, status);
        const ToolRun r = m_sim.server({ QStringLiteral("--listworkflows") }, password, user);
        QCOMPARE(r.status, status);
        QCOMPARE(r.firstLine(), SimSandbox::progressLine().chopped(1));
        QCOMPARE(r.plist().isEmpty(), status != 0);
        if (status != 0)
            QCOMPARE(r.errorText(), QStringLiteral("Authentication failed for user %1.\n").arg(user));
        // The password is never kept or echoed.
        QVERIFY(!SimSandbox::readFile(m_sim.state(QStringLiteral("users.plist"))).contains(password.trimmed()));
        QVERIFY(!r.out.contains(password.trimmed()) && !r.err.contains(password.trimmed()));
    }

    void malformedCommandLinesAreUsageErrors()
    {
        for (const QStringList &args : { QStringList { "--server", "http://h:8170/orvane", "--user", "demo" },
                 QStringList { "--server", SimSandbox::kServerURL, "--listcameras" },
                 QStringList { "--setconfig", "=x" }, QStringList {} }) {
            const ToolRun r = m_sim.run(QStringLiteral("orvxexec"), args, "lumex");
            QCOMPARE(r.status, 2);
            QVERIFY2(r.errorText().contains(QLatin1String("usage:")) && r.out.isEmpty(), qPrintable(args.join(' ')));
        }
    }

    void privilegedConfigurationLandsInTheToolsTree()
    {
        // pkexec leaves nothing of the caller's environment.
        QProcessEnvironment bare;
        bare.insert(QStringLiteral("PKEXEC_UID"), QStringLiteral("1000"));
        bare.insert(QStringLiteral("PATH"), QStringLiteral("/usr/bin:/bin"));
        QCOMPARE(m_sim.run(QStringLiteral("orvxexec"), { "--setconfig", "AudioDevice=hw:1" }, {}, bare).status, 0);
        QCOMPARE(m_sim.run(QStringLiteral("orvxexec"), { "--setconfig", "Capture=Audio: a=b" }).status, 0);
        QCOMPARE(SimSandbox::readPlist(m_sim.globalConfig()), (QVariantMap { { "AudioDevice", "hw:1" } }));
        QCOMPARE(SimSandbox::readPlist(m_sim.userConfig()), (QVariantMap { { "Capture", "Audio: a=b" } }));
    }
};

QTEST_GUILESS_MAIN(TestSimulator)
#include "tst_simulator.moc"
