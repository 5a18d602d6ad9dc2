// Binding the local camera agent, starting and stopping it, and its two
// configuration files: privileged runs go through the direct launcher, which
// marks them in the helper's environment, to the simulator's real tools or a
// recording shell script.

#include "SimSandbox.h"

#include "Log.h"
#include "OrvaneServerInterface.h"

#include <QThread>

namespace {

const QString kNoCamera = QStringLiteral("Unexpected internal error. No Camera Identifier specified.");

std::shared_ptr<Authorization> directAuthorization()
{
    return std::make_shared<Authorization>(std::make_shared<DirectLauncher>());
}

} // namespace

class TestAgentBinding : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void noCameraNameRunsNothing_data();
    void noCameraNameRunsNothing();
    void bindWithoutRights();
    void privilegedCommandLines_data();
    void privilegedCommandLines();
    void successLineDecides_data();
    void successLineDecides();
    void bindAndUnbindWithRightsAgainstSimulator();
    void agentStartStop();
    void agentControlOutput_data();
    void agentControlOutput();
    void agentControlHelperMissing();
    void machineWideConfiguration();
    void setConfigPassesValueAsOneArgument();
    void asyncFormsReportOnMainThread();

private:
    std::shared_ptr<OrvaneServerInterface> makeInterface(const QString &camera = QStringLiteral("Office Mac"))
    {
        auto interface = OrvaneServerInterface::create(
            { { QStringLiteral("server"), SimSandbox::kServerHost }, { QStringLiteral("user"), QStringLiteral("demo") },
                { QStringLiteral("password"), QStringLiteral("lumex") } },
            std::make_shared<PodcastJob>());
        interface->setCameraName(camera);
        return interface;
    }
    QVariantMap globalConfig() const { return PropertyList::readFile(m_sim->globalConfig()).toMap(); }

    std::unique_ptr<SimSandbox> m_sim;
};

void TestAgentBinding::initTestCase()
{
    m_sim = std::make_unique<SimSandbox>();
    QVERIFY(m_sim->installTools());
}

void TestAgentBinding::init()
{
    m_sim->clearFaults();
    m_sim->clearRecord();
    QVERIFY(m_sim->installTools());
    QFile::remove(m_sim->globalConfig());
    QFile::remove(m_sim->userConfig());
    QFile::remove(m_sim->state(QStringLiteral("agent.plist")));
}

void TestAgentBinding::noCameraNameRunsNothing_data()
{
    QTest::addColumn<int>("which");
    QTest::newRow("bind without rights") << 0;
    QTest::newRow("bind with rights") << 1;
    QTest::newRow("unbind with rights") << 2;
}

void TestAgentBinding::noCameraNameRunsNothing()
{
    QFETCH(int, which);
    m_sim->installRecordingTool();
    auto interface = makeInterface(QString());
    Error error;
    const int32_t status = which == 0 ? interface->bindCameraError(&error)
        : which == 1                  ? interface->bindCameraWithAuthorization(directAuthorization(), &error)
                                      : interface->unbindCameraWithAuthorization(directAuthorization(), &error);
    QCOMPARE(status, -1);
    QCOMPARE(error.domain, kServerInterfaceErrorDomain);
    QCOMPARE(error.code, -1);
    QCOMPARE(error.localizedDescription, kNoCamera);
    QVERIFY(!QFileInfo::exists(m_sim->recordDir() + QStringLiteral("/args")));
}

void TestAgentBinding::bindWithoutRights()
{
    auto interface = makeInterface(QStringLiteral("Office Mac"));
    Error error;
    QCOMPARE(interface->bindCameraError(&error), 0);
    QVERIFY(error.domain.isEmpty());
    QCOMPARE(globalConfig().value(QStringLiteral("CameraName")).toString(), QStringLiteral("Office Mac"));
    QCOMPARE(globalConfig().value(QStringLiteral("TunnelHost")).toString(), SimSandbox::kServerHost);

    // The tool's refusal: status as code, output then error text.
    m_sim->setFaults({ { QStringLiteral("--bind"),
        QVariantMap { { QStringLiteral("stderr"), QStringLiteral("no seat\n") }, { QStringLiteral("status"), 4 } } } });
    QCOMPARE(interface->bindCameraError(&error), 4);
    QCOMPARE(error.code, 4);
    QCOMPARE(
        error.localizedDescription, QStringLiteral("Connecting to %1 ...\n\nno seat\n").arg(SimSandbox::kServerURL));

    // It runs through the ordinary command line, password on standard input.
    m_sim->installRecordingTool();
    error = {};
    m_sim->setReply("Successfully bound\n", "", 0);
    QCOMPARE(interface->bindCameraError(&error), 0);
    QCOMPARE(m_sim->recordedArguments(),
        (QStringList { QStringLiteral("--server"), SimSandbox::kServerURL, QStringLiteral("--user"),
            QStringLiteral("demo"), QStringLiteral("--bind"), QStringLiteral("Office Mac") }));
    QCOMPARE(m_sim->recordedStdin(), QByteArray("lumex"));
    QVERIFY(!m_sim->recordedEnvironment().contains("ORVANE_PRIVILEGED_RUN=1"));
}

void TestAgentBinding::privilegedCommandLines_data()
{
    QTest::addColumn<bool>("bind");
    QTest::newRow("bind") << true;
    QTest::newRow("unbind") << false;
}

void TestAgentBinding::privilegedCommandLines()
{
    QFETCH(bool, bind);
    m_sim->installRecordingTool();
    m_sim->setReply(bind ? "Successfully bound\n" : "Successfully unbound\n", "", 0);
    auto interface = makeInterface(QStringLiteral("Room 101"));
    Error error;
    const int32_t status = bind ? interface->bindCameraWithAuthorization(directAuthorization(), &error)
                                : interface->unbindCameraWithAuthorization(directAuthorization(), &error);
    QCOMPARE(status, 0);
    QVERIFY(error.domain.isEmpty());
    QCOMPARE(m_sim->recordedArguments(),
        (QStringList { QStringLiteral("--server"), SimSandbox::kServerURL, QStringLiteral("--user"),
            QStringLiteral("demo"), bind ? QStringLiteral("--bind") : QStringLiteral("--unbind"),
            QStringLiteral("Room 101") }));
    // The password travels over the pipe, never in the environment.
    QCOMPARE(m_sim->recordedStdin(), QByteArray("lumex"));
    const QByteArray env = m_sim->recordedEnvironment();
    QVERIFY(env.contains("ORVANE_PRIVILEGED_RUN=1\n"));
    QVERIFY(!env.contains("=lumex\n"));
}

void TestAgentBinding::successLineDecides_data()
{
    QTest::addColumn<bool>("bind");
    QTest::addColumn<QByteArray>("output");
    QTest::addColumn<bool>("fails");

    QTest::newRow("bind: success line among warnings") << true
                                                       << QByteArray("Warning: slow link\nSuccessfully bound camera X\n"
                                                                     "Warning: again\n")
                                                       << false;
    QTest::newRow("bind: no success line") << true << QByteArray("Bound, more or less\n") << true;
    QTest::newRow("bind: no output at all") << true << QByteArray() << true;
    QTest::newRow("unbind: says bound only") << false << QByteArray("Successfully bound camera X\n") << true;
    QTest::newRow("unbind: success") << false << QByteArray("Successfully unbound camera X\n") << false;
}

void TestAgentBinding::successLineDecides()
{
    QFETCH(bool, bind);
    QFETCH(QByteArray, output);
    QFETCH(bool, fails);

    m_sim->installRecordingTool();
    m_sim->setReply(output, "", 0);
    auto interface = makeInterface();
    Error error;
    const int32_t status = bind ? interface->bindCameraWithAuthorization(directAuthorization(), &error)
                                : interface->unbindCameraWithAuthorization(directAuthorization(), &error);
    QCOMPARE(status, 0); // the launch itself succeeded
    if (!fails) {
        QVERIFY(error.domain.isEmpty());
        return;
    }
    QCOMPARE(error.domain, kServerInterfaceErrorDomain);
    QCOMPARE(error.code, 0);
    QCOMPARE(error.localizedDescription, QString::fromUtf8(output));
}

void TestAgentBinding::bindAndUnbindWithRightsAgainstSimulator()
{
    auto interface = makeInterface(QStringLiteral("Lab Mac"));
    const auto authorization = directAuthorization();
    Error error;
    QCOMPARE(interface->bindCameraWithAuthorization(authorization, &error), 0);
    QVERIFY2(error.domain.isEmpty(), qPrintable(error.localizedDescription));
    QCOMPARE(globalConfig().value(QStringLiteral("CameraName")).toString(), QStringLiteral("Lab Mac"));

    // Unbinding under another name is refused by the tool; the launch still
    // succeeded, so the status is 0 and the error carries the output.
    interface->setCameraName(QStringLiteral("Other Mac"));
    QCOMPARE(interface->unbindCameraWithAuthorization(authorization, &error), 0);
    QCOMPARE(error.code, 0);
    QVERIFY(!error.localizedDescription.contains(QLatin1String("Successfully unbound")));

    error = {};
    interface->setCameraName(QStringLiteral("Lab Mac"));
    QCOMPARE(interface->unbindCameraWithAuthorization(authorization, &error), 0);
    QVERIFY2(error.domain.isEmpty(), qPrintable(error.localizedDescription));
    QVERIFY(!globalConfig().contains(QStringLiteral("CameraName")));

    // The helper cannot be launched at all: the launch status is the code.
    m_sim->removeTool(QStringLiteral("orvxexec"));
    error = {};
    QCOMPARE(interface->bindCameraWithAuthorization(authorization, &error), PrivilegedLauncher::kCannotLaunch);
    QCOMPARE(error.code, PrivilegedLauncher::kCannotLaunch);
    QCOMPARE(error.localizedDescription, QString(""));
    QVERIFY(m_sim->installTools());

    // A missing authorization is refused without running anything.
    QVERIFY(interface->bindCameraWithAuthorization(nullptr, &error) != 0);
    QCOMPARE(error.domain, kServerInterfaceErrorDomain);
}

void TestAgentBinding::agentStartStop()
{
    auto interface = makeInterface(QStringLiteral("Lab Mac"));
    const auto authorization = directAuthorization();
    Error error;
    // Not bound yet: the helper's "Error:" text gives error 2 while the
    // status stays 0.
    QCOMPARE(interface->setAgentRunning(true, authorization, &error), 0);
    QCOMPARE(error.code, 2);
    QCOMPARE(error.localizedDescription, QStringLiteral("Error: the agent is not bound to a server.\n"));

    error = {};
    QCOMPARE(interface->bindCameraWithAuthorization(authorization, &error), 0);
    QCOMPARE(interface->setAgentRunning(true, authorization, &error), 0);
    QVERIFY2(error.domain.isEmpty(), qPrintable(error.localizedDescription));
    QVERIFY(PropertyList::readFile(m_sim->state(QStringLiteral("agent.plist")))
                .toMap()
                .value(QStringLiteral("running"))
                .toBool());

    QCOMPARE(interface->setAgentRunning(false, authorization, &error), 0);
    QVERIFY(error.domain.isEmpty());
    QCOMPARE(interface->setAgentRunning(false, authorization, &error), 0);
    QCOMPARE(error.code, 2);
    QCOMPARE(error.localizedDescription, QStringLiteral("Error: agent is not running.\n"));
}

void TestAgentBinding::agentControlOutput_data()
{
    QTest::addColumn<bool>("start");
    QTest::addColumn<QByteArray>("output");
    QTest::addColumn<bool>("fails");

    QTest::newRow("start, fine") << true << QByteArray("Agent started.\n") << false;
    QTest::newRow("stop, Error: first") << false << QByteArray("Error: busy\n") << true;
    QTest::newRow("Error: not at the start") << true << QByteArray("Note\nError: later\n") << false;
}

void TestAgentBinding::agentControlOutput()
{
    QFETCH(bool, start);
    QFETCH(QByteArray, output);
    QFETCH(bool, fails);

    m_sim->installRecordingTool(QStringLiteral("orvxctlexec"));
    m_sim->setReply(output, "", 0);
    auto interface = makeInterface();
    Error error;
    QCOMPARE(interface->setAgentRunning(start, directAuthorization(), &error), 0);
    QCOMPARE(m_sim->recordedArguments(),
        (QStringList { QStringLiteral("agent"), start ? QStringLiteral("start") : QStringLiteral("stop") }));
    QCOMPARE(m_sim->recordedStdin(), QByteArray()); // nothing is written to it
    if (fails) {
        QCOMPARE(error.code, 2);
        QCOMPARE(error.localizedDescription, QString::fromUtf8(output));
    } else {
        QVERIFY(error.domain.isEmpty());
    }
}

void TestAgentBinding::agentControlHelperMissing()
{
    m_sim->removeTool(QStringLiteral("orvxctlexec"));
    auto interface = makeInterface();
    Error error;
    QCOMPARE(interface->setAgentRunning(true, directAuthorization(), &error), 10);
    QCOMPARE(error.domain, kServerInterfaceErrorDomain);
    QCOMPARE(error.code, 10);
    QCOMPARE(error.localizedDescription,
        m_sim->tool(QStringLiteral("orvxctlexec")) + QStringLiteral(" tool cannot be found."));
}

void TestAgentBinding::machineWideConfiguration()
{
    auto interface = makeInterface();
    Error error;
    QVERIFY(!interface->getCameraAgentConfigurationError(&error));
    QVERIFY(!error.domain.isEmpty());

    QVERIFY(SimSandbox::writeFile(m_sim->globalConfig(), "this is <not a plist"));
    error = {};
    QVERIFY(!interface->getCameraAgentConfigurationError(&error));
    QCOMPARE(error.domain, kServerInterfaceErrorDomain);
    QCOMPARE(error.code, -1);
    QVERIFY(!error.localizedDescription.isEmpty());

    const QVariantMap configuration { { QStringLiteral("CameraName"), QStringLiteral("Lab Mac") },
        { QStringLiteral("VideoDevice"), QStringLiteral("Automatic") },
        { QStringLiteral("AudioDevice"), QStringLiteral("USB \u00c4udio") } };
    QVERIFY(!interface->setCameraAgentConfiguration(configuration));
    error = {};
    const auto read = interface->getCameraAgentConfigurationError(&error);
    QVERIFY(error.domain.isEmpty());
    QVERIFY(read);
    QCOMPARE(*read, configuration);
    int exitCode = -1;
    const QByteArray name = runPython(
        QStringLiteral("import plistlib,sys; print(plistlib.load(open(sys.stdin.read(),'rb'))['AudioDevice'])"),
        m_sim->globalConfig().toUtf8(), &exitCode);
    QCOMPARE(exitCode, 0);
    QCOMPARE(QString::fromUtf8(name).trimmed(), QStringLiteral("USB \u00c4udio"));

    // Where the file cannot be written, the error comes back.
    const QString prefs = QFileInfo(m_sim->globalConfig()).absolutePath();
    QVERIFY(QDir(prefs).removeRecursively());
    QVERIFY(SimSandbox::writeFile(prefs, "a file where the folder should be"));
    QVERIFY(interface->setCameraAgentConfiguration(configuration));
    QFile::remove(prefs);
}

void TestAgentBinding::setConfigPassesValueAsOneArgument()
{
    auto interface = makeInterface();
    const QString value = QStringLiteral("FaceTime HD Camera (Built-in)");
    interface->setLocalAgentConfigValue(value, QStringLiteral("VideoDevice"));
    QCOMPARE(
        PropertyList::readFile(m_sim->userConfig()).toMap().value(QStringLiteral("VideoDevice")).toString(), value);
    QVERIFY(!QFileInfo::exists(m_sim->globalConfig()));

    interface->setGlobalAgentConfigValue(value, QStringLiteral("VideoDevice"), directAuthorization());
    QCOMPARE(globalConfig().value(QStringLiteral("VideoDevice")).toString(), value);

    // A failing machine-wide write reports nothing, not even a log line.
    Log::Capture log;
    m_sim->setFaults({ { QStringLiteral("--setconfig"), QVariantMap { { QStringLiteral("status"), 5 } } } });
    interface->setGlobalAgentConfigValue(QStringLiteral("x"), QStringLiteral("AudioDevice"), directAuthorization());
    QVERIFY(log.lines().isEmpty());

    m_sim->installRecordingTool();
    interface->setGlobalAgentConfigValue(value, QStringLiteral("VideoDevice"), directAuthorization());
    QCOMPARE(m_sim->recordedArguments(),
        (QStringList { QStringLiteral("--setconfig"), QStringLiteral("VideoDevice=") + value }));
    QVERIFY(m_sim->recordedEnvironment().contains("ORVANE_PRIVILEGED_RUN=1\n"));
}

void TestAgentBinding::asyncFormsReportOnMainThread()
{
    auto interface = makeInterface(QStringLiteral("Async Mac"));
    const auto authorization = directAuthorization();
    QObject delegate;
    int calls = 0;
    bool mainThread = true;
    QList<std::optional<Error>> results;
    auto callback = [&](const std::optional<Error> &e) {
        ++calls;
        mainThread = mainThread && QThread::currentThread() == qApp->thread();
        results << e;
    };
    interface->bindCameraWithAuthorization(authorization, &delegate, callback);
    QTRY_COMPARE(calls, 1);
    interface->setAgentRunning(true, authorization, &delegate, callback);
    QTRY_COMPARE(calls, 2);
    interface->setAgentRunning(true, authorization, &delegate, callback);
    QTRY_COMPARE(calls, 3);
    interface->unbindCameraWithAuthorization(authorization, &delegate, callback);
    QTRY_COMPARE(calls, 4);
    interface->setCameraName(QString());
    interface->bindCameraWithDelegate(&delegate, callback);
    QTRY_COMPARE(calls, 5);

    QVERIFY(mainThread);
    QVERIFY(!results.at(0));
    QVERIFY(!results.at(1));
    QVERIFY(results.at(2));
    QCOMPARE(results.at(2)->code, 2); // already running
    QVERIFY(!results.at(3));
    QVERIFY(results.at(4));
    QCOMPARE(results.at(4)->localizedDescription, kNoCamera);
}

QTEST_GUILESS_MAIN(TestAgentBinding)
#include "tst_agentbinding.moc"
