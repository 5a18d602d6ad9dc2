// Binding the local camera agent, starting and stopping it, and its two
// configuration files: privileged runs go through the direct launcher, which
// marks them in the helper's environment, to the simulator's real tools or a
// recording shell script.

#include "SimSandbox.h"

#include "Log.h"
#include "OrvaneServerInterface.h"

#include <QThread>

#include <cerrno>
#include <cstring>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

const QString kNoCamera = u"Unexpected internal error. No Camera Identifier specified."_s;

std::shared_ptr<Authorization> direct()
{
    return std::make_shared<Authorization>(std::make_shared<DirectLauncher>());
}

} // namespace

class TestAgentBinding : public QObject
{
    Q_OBJECT

    std::unique_ptr<SimSandbox> m_sim;

    std::shared_ptr<OrvaneServerInterface> makeInterface(const QString &camera = u"Office Mac"_s)
    {
        auto interface = OrvaneServerInterface::create(
            Credentials { u"demo"_s, u"lumex"_s, SimSandbox::kServerHost }, std::make_shared<PodcastJob>());
        interface->setCameraName(camera);
        return interface;
    }
    QVariantMap globalConfig() const { return PropertyList::readFile(m_sim->globalConfig()).toMap(); }
    QStringList bindLine(bool bind, const QString &camera) const
    {
        return { u"--server"_s, SimSandbox::kServerURL, u"--user"_s, u"demo"_s, bind ? u"--bind"_s : u"--unbind"_s,
            camera };
    }

private slots:
    void initTestCase()
    {
        m_sim = std::make_unique<SimSandbox>();
        QVERIFY(m_sim->installTools());
    }

    void init()
    {
        m_sim->clearFaults();
        m_sim->clearRecord();
        QVERIFY(m_sim->installTools());
        QFile::remove(m_sim->globalConfig());
        QFile::remove(m_sim->userConfig());
        QFile::remove(m_sim->state(u"agent.plist"_s));
    }

    void noCameraNameRunsNothing()
    {
        m_sim->installRecordingTool();
        auto interface = makeInterface(QString());
        for (int which : { 0, 1, 2 }) {
            Error error;
            QCOMPARE(which == 0  ? interface->bindCameraError(&error)
                    : which == 1 ? interface->bindCameraWithAuthorization(direct(), &error)
                                 : interface->unbindCameraWithAuthorization(direct(), &error),
                -1);
            QCOMPARE(error, (Error { kServerInterfaceErrorDomain, -1, kNoCamera }));
        }
        QVERIFY(!QFileInfo::exists(m_sim->recordDir() + u"/args"_s));
    }

    void bindWithoutRights()
    {
        auto interface = makeInterface();
        Error error;
        QCOMPARE(interface->bindCameraError(&error), 0);
        QVERIFY(error.domain.isEmpty());
        QCOMPARE(globalConfig().value(u"CameraName"_s).toString(), u"Office Mac"_s);
        QCOMPARE(globalConfig().value(u"TunnelHost"_s).toString(), SimSandbox::kServerHost);

        // The tool's refusal: status as code, output then error text.
        m_sim->setFaults({ { u"--bind"_s, QVariantMap { { u"stderr"_s, u"no seat\n"_s }, { u"status"_s, 4 } } } });
        QCOMPARE(interface->bindCameraError(&error), 4);
        QCOMPARE(error.code, 4);
        QCOMPARE(error.localizedDescription, u"Connecting to %1 ...\n\nno seat\n"_s.arg(SimSandbox::kServerURL));

        // It runs through the ordinary command line, password on standard input.
        m_sim->installRecordingTool();
        error = {};
        m_sim->setReply("Successfully bound\n", "", 0);
        QCOMPARE(interface->bindCameraError(&error), 0);
        QCOMPARE(m_sim->recordedArguments(), bindLine(true, u"Office Mac"_s));
        QCOMPARE(m_sim->recordedStdin(), QByteArray("lumex"));
        QVERIFY(!m_sim->recordedEnvironment().contains("ORVANE_PRIVILEGED_RUN=1"));
    }

    void privilegedHelpersOutputDecides_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QByteArray>("output"); // null: no helper at all
        QTest::addColumn<int>("status");
        QTest::addColumn<Error>("error");
        const auto failed = [](qint64 code, const QByteArray &text) {
            return Error { kServerInterfaceErrorDomain, code, QString::fromUtf8(text) };
        };
        const QByteArray warned = "Warning: slow link\nSuccessfully bound camera X\nWarning: again\n";
        QTest::newRow("bind: success line among warnings") << u"bind"_s << warned << 0 << Error {};
        // The launch itself succeeded: the status is 0 and the error has the output.
        QTest::newRow("bind: no success line")
            << u"bind"_s << QByteArray("Bound, more or less\n") << 0 << failed(0, "Bound, more or less\n");
        QTest::newRow("bind: no output at all") << u"bind"_s << QByteArray("") << 0 << failed(0, "");
        QTest::newRow("unbind: says bound only") << u"unbind"_s << QByteArray("Successfully bound camera X\n") << 0
                                                 << failed(0, "Successfully bound camera X\n");
        QTest::newRow("unbind: success") << u"unbind"_s << QByteArray("Successfully unbound camera X\n") << 0
                                         << Error {};
        QTest::newRow("bind: helper cannot launch")
            << u"bind"_s << QByteArray() << int(PrivilegedLauncher::kCannotLaunch)
            << failed(PrivilegedLauncher::kCannotLaunch, "");
        QTest::newRow("start, fine") << u"start"_s << QByteArray("Agent started.\n") << 0 << Error {};
        QTest::newRow("stop, Error: first")
            << u"stop"_s << QByteArray("Error: busy\n") << 0 << failed(2, "Error: busy\n");
        QTest::newRow("start, Error: later") << u"start"_s << QByteArray("Note\nError: later\n") << 0 << Error {};
        QTest::newRow("start, helper missing")
            << u"start"_s << QByteArray() << 10
            << failed(10, (m_sim->tool(u"orvxctlexec"_s) + u" tool cannot be found."_s).toUtf8());
    }

    void privilegedHelpersOutputDecides()
    {
        QFETCH(QString, action);
        QFETCH(QByteArray, output);
        QFETCH(int, status);
        QFETCH(Error, error);
        const bool binding = action.endsWith(u"bind"_s);
        const QString tool = binding ? u"orvxexec"_s : u"orvxctlexec"_s;
        if (output.isNull())
            m_sim->removeTool(tool);
        else
            m_sim->installRecordingTool(tool);
        m_sim->setReply(output, "", 0);
        auto interface = makeInterface(u"Room 101"_s);
        Error got;
        QCOMPARE(action == u"bind"_s    ? interface->bindCameraWithAuthorization(direct(), &got)
                : action == u"unbind"_s ? interface->unbindCameraWithAuthorization(direct(), &got)
                                        : interface->setAgentRunning(action == u"start"_s, direct(), &got),
            status);
        QCOMPARE(got, error);
        if (output.isNull())
            return;
        QCOMPARE(m_sim->recordedArguments(),
            (binding ? bindLine(action == u"bind"_s, u"Room 101"_s) : QStringList { u"agent"_s, action }));
        // The password travels over the pipe, never in the environment.
        QCOMPARE(m_sim->recordedStdin(), binding ? QByteArray("lumex") : QByteArray());
        QVERIFY(m_sim->recordedEnvironment().contains("ORVANE_PRIVILEGED_RUN=1\n"));
        QVERIFY(!m_sim->recordedEnvironment().contains("=lumex\n"));
    }

    void machineWideConfiguration_data()
    {
        QTest::addColumn<QString>("folderAt");
        QTest::addColumn<QString>("fileAt");
        QTest::addColumn<Error>("readError"); // code and domain only
        QTest::addColumn<int>("writeErrno");
        const QString file = m_sim->globalConfig();
        QTest::newRow("missing file") << QString() << QString() << Error { kPosixErrorDomain, ENOENT, {} } << 0;
        QTest::newRow("not a property list") << QString() << file << Error { kServerInterfaceErrorDomain, -1, {} } << 0;
        // Permissions do not stop root: folders and files in the way do.
        QTest::newRow("folder at the file's path")
            << file << QString() << Error { kPosixErrorDomain, EISDIR, {} } << EISDIR;
        QTest::newRow("file where the folder should be")
            << QString() << QFileInfo(file).path() << Error { kPosixErrorDomain, ENOTDIR, {} } << ENOTDIR;
    }

    void machineWideConfiguration()
    {
        QFETCH(QString, folderAt);
        QFETCH(QString, fileAt);
        QFETCH(Error, readError);
        QFETCH(int, writeErrno);
        const QString folder = QFileInfo(m_sim->globalConfig()).path();
        const auto reset = [&] {
            QDir(folder).removeRecursively();
            QFile::remove(folder);
            return QDir().mkpath(folder);
        };
        QVERIFY(reset());
        QVERIFY(folderAt.isEmpty() || QDir().mkpath(folderAt));
        QVERIFY(
            fileAt.isEmpty() || (QDir(fileAt).removeRecursively() && SimSandbox::writeFile(fileAt, "<not a plist")));

        auto interface = makeInterface();
        Error error;
        QVERIFY(!interface->getCameraAgentConfigurationError(&error));
        QCOMPARE(error.domain, readError.domain);
        QCOMPARE(error.code, readError.code);
        if (readError.domain == kPosixErrorDomain)
            QCOMPARE(error.localizedDescription,
                u"The camera agent configuration could not be read from %1: %2"_s.arg(
                    m_sim->globalConfig(), QString::fromLocal8Bit(std::strerror(readError.code))));

        const QVariantMap configuration { { u"CameraName"_s, u"Lab Mac"_s },
            { u"AudioDevice"_s, u"USB \u00c4udio"_s } };
        const std::optional<Error> written = interface->setCameraAgentConfiguration(configuration);
        QCOMPARE(written.value_or(Error { kPosixErrorDomain, 0, {} }).domain, kPosixErrorDomain);
        QCOMPARE(written.value_or(Error {}).code, writeErrno);
        if (!written) {
            QCOMPARE(interface->getCameraAgentConfigurationError(&error).value_or(QVariantMap()), configuration);
            int exitCode = -1;
            const QByteArray name
                = runPython(u"import plistlib,sys; print(plistlib.load(open(sys.stdin.read(),'rb'))['AudioDevice'])"_s,
                    m_sim->globalConfig().toUtf8(), &exitCode);
            QCOMPARE(QString::fromUtf8(name).trimmed(), u"USB \u00c4udio"_s);
        }
        QVERIFY(reset());
    }

    void setConfigPassesValueAsOneArgument()
    {
        auto interface = makeInterface();
        const QString value = u"FaceTime HD Camera (Built-in)"_s;
        interface->setLocalAgentConfigValue(value, u"VideoDevice"_s);
        QCOMPARE(PropertyList::readFile(m_sim->userConfig()).toMap().value(u"VideoDevice"_s).toString(), value);
        QVERIFY(!QFileInfo::exists(m_sim->globalConfig()));

        interface->setGlobalAgentConfigValue(value, u"VideoDevice"_s, direct());
        QCOMPARE(globalConfig().value(u"VideoDevice"_s).toString(), value);

        // A failing machine-wide write reports nothing, not even a log line.
        Log::Capture log;
        m_sim->setFaults({ { u"--setconfig"_s, QVariantMap { { u"status"_s, 5 } } } });
        interface->setGlobalAgentConfigValue(u"x"_s, u"AudioDevice"_s, direct());
        QVERIFY(log.lines().isEmpty());

        m_sim->installRecordingTool();
        interface->setGlobalAgentConfigValue(value, u"VideoDevice"_s, direct());
        QCOMPARE(m_sim->recordedArguments(), (QStringList { u"--setconfig"_s, u"VideoDevice="_s + value }));
        QVERIFY(m_sim->recordedEnvironment().contains("ORVANE_PRIVILEGED_RUN=1\n"));
    }

    void agentLifeAgainstSimulatorThroughAsyncForms()
    {
        auto interface = makeInterface(u"Async Mac"_s);
        QObject delegate;
        bool mainThread = true;
        std::optional<std::optional<Error>> result;
        const auto callback = [&](const std::optional<Error> &e) {
            mainThread = mainThread && QThread::currentThread() == qApp->thread();
            result = e;
        };
        const auto await = [&](const std::function<void()> &start) {
            result.reset();
            start();
            return QTest::qWaitFor([&] { return result.has_value(); }, 10000) ? result->value_or(Error {})
                                                                              : Error { u"no answer"_s, 0, {} };
        };
        const auto agent
            = [&](bool on) { return await([&] { interface->setAgentRunning(on, direct(), &delegate, callback); }); };
        const auto error2 = [](const QString &text) { return Error { kServerInterfaceErrorDomain, 2, text }; };
        // The helper's "Error:" text gives error 2 while the status stays 0.
        QCOMPARE(agent(true), error2(u"Error: the agent is not bound to a server.\n"_s));
        QCOMPARE(await([&] { interface->bindCameraWithAuthorization(direct(), &delegate, callback); }), Error {});
        QCOMPARE(globalConfig().value(u"CameraName"_s).toString(), u"Async Mac"_s);
        QCOMPARE(agent(true), Error {});
        QVERIFY(PropertyList::readFile(m_sim->state(u"agent.plist"_s)).toMap().value(u"running"_s).toBool());
        QCOMPARE(agent(true).code, 2); // already running
        QCOMPARE(agent(false), Error {});
        QCOMPARE(agent(false), error2(u"Error: agent is not running.\n"_s));
        const auto unbind = [&] { interface->unbindCameraWithAuthorization(direct(), &delegate, callback); };
        // The tool refuses to unbind under another name; only its output says so.
        interface->setCameraName(u"Other Mac"_s);
        QCOMPARE(await(unbind).code, 0);
        QVERIFY(!result->value_or(Error {}).localizedDescription.contains(u"Successfully unbound"_s));
        interface->setCameraName(u"Async Mac"_s);
        QCOMPARE(await(unbind), Error {});
        QVERIFY(!globalConfig().contains(u"CameraName"_s));
        // A missing authorization is refused without running anything.
        Error error;
        QVERIFY(interface->bindCameraWithAuthorization(nullptr, &error) != 0);
        QCOMPARE(error.domain, kServerInterfaceErrorDomain);
        interface->setCameraName(QString());
        QCOMPARE(await([&] { interface->bindCameraWithDelegate(&delegate, callback); }),
            (Error { kServerInterfaceErrorDomain, -1, kNoCamera }));
        QVERIFY(mainThread);
    }
};

QTEST_GUILESS_MAIN(TestAgentBinding)
#include "tst_agentbinding.moc"
