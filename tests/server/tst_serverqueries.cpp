// The command line of every server command and the read-only queries
// (workflows, cameras, preview, upload queue), run against the simulator's
// tool or a recording shell script standing in its place.

#include "SimSandbox.h"

#include <QThread>
#include <QTimer>

using Args = std::optional<QStringList>;
using List = std::optional<QVariantList>;

// One launch of the tool: the command, its further arguments, the password
// and what the tool's standard input should then be, the tool's status and
// error text, and whether that failure is logged.
struct Launch
{
    QString command;
    Args args;
    QVariant password = SimSandbox::kPassword;
    QString stdinKind = QStringLiteral("pipe:");
    int status = 0;
    QByteArray err = {};
    bool logged = false;
};
Q_DECLARE_METATYPE(Launch)

// A failed list query: which list, the fault the tool is given, the error
// (code 0: none) and the log line (the start of one when there is no error).
struct Failure
{
    bool cameras;
    QVariantMap fault;
    int code;
    QString text, log;
    QString password = SimSandbox::kPassword;
};
Q_DECLARE_METATYPE(Failure)

class TestServerQueries : public QObject
{
    Q_OBJECT

    SimSandbox m_sim;
    QString tool() const { return m_sim.tool(QStringLiteral("orvxexec")); }

private slots:
    void init() { QVERIFY(m_sim.reset()); }

    void launchCommand_data()
    {
        QTest::addColumn<Launch>("c");
        const QString studio = QStringLiteral("Studio 2");
        QTest::newRow("null arguments") << Launch { "--listworkflows", {} };
        QTest::newRow("empty arguments") << Launch { "--listworkflows", QStringList {} };
        QTest::newRow("camera with a space") << Launch { "--pause", QStringList { studio } };
        QTest::newRow("order kept") << Launch { "--status", QStringList { "Seminar Room", "--update_preview" } };
        QTest::newRow("password") << Launch { "--listcameras", {}, QStringLiteral("p\u00e4ss word") };
        QTest::newRow("empty password is an empty pipe") << Launch { "--listcameras", {}, QStringLiteral("") };
        QTest::newRow("no password is /dev/null") << Launch { "--listcameras", {}, QVariant(), "/dev/null" };
        QTest::newRow("failure with error text is logged")
            << Launch { "--cancel", QStringList { studio }, "lumex", "pipe:", 3, "it broke\n", true };
        QTest::newRow("failure without error text")
            << Launch { "--cancel", QStringList { studio }, "lumex", "pipe:", 3 };
        QTest::newRow("success with error text") << Launch { "--cancel", {}, "lumex", "pipe:", 0, "just a warning\n" };
    }
    void launchCommand()
    {
        QFETCH(Launch, c);
        m_sim.installRecordingTool();
        m_sim.setReply("said \xc3\xbc\n", c.err, c.status);
        Log::Capture log;
        QString output, error;
        QCOMPARE(SimSandbox::makeInterface(c.password)->launchCommand(c.command, c.args, &output, &error), c.status);
        QCOMPARE(m_sim.recordedArguments(),
            SimSandbox::serverArguments() + QStringList(c.command) + c.args.value_or(QStringList()));
        // The password goes to standard input and nowhere else.
        QVERIFY2(m_sim.recordedStdinKind().startsWith(c.stdinKind), qPrintable(m_sim.recordedStdinKind()));
        QCOMPARE(m_sim.recordedStdin(), c.password.toString().toUtf8());
        QCOMPARE(m_sim.recordedArguments().filter(QStringLiteral("p\u00e4ss")), QStringList());
        QCOMPARE(output, QStringLiteral("said \u00fc\n"));
        QCOMPARE(error, QString::fromUtf8(c.err));
        // A log line only for a failure with error text.
        const QString line
            = QStringLiteral("/usr/bin/orvx (%1) error (%2):\n%3").arg(c.command).arg(c.status).arg(error);
        QCOMPARE(log.contains(line), c.logged);
        QVERIFY2(c.logged || !logHasPrefix(log, QStringLiteral("/usr/bin/orvx")), LOG_LINES(log));
    }

    void missingTool()
    {
        m_sim.removeTool(QStringLiteral("orvxexec"));
        auto interface = SimSandbox::makeInterface();
        Log::Capture log;
        QString output, error, kept = QStringLiteral("kept");
        QCOMPARE(interface->launchCommand(QStringLiteral("--listworkflows"), std::nullopt, &output, &error), 10);
        QCOMPARE(output, tool() + QStringLiteral(" tool cannot be found."));
        QVERIFY(error.isNull());
        QCOMPARE(interface->launchCommand(QStringLiteral("--listworkflows"), std::nullopt, &output, &kept), 10);
        QCOMPARE(kept, QStringLiteral("kept"));
        QVERIFY(log.lines().isEmpty());

        Error workflows, cameras, resume;
        QVERIFY(!interface->getWorkflowsError(&workflows));
        QCOMPARE(workflows, (Error { kServerInterfaceErrorDomain, 10, output + QStringLiteral("\n(null)") }));
        QVERIFY(!interface->getCamerasError(&cameras));
        QCOMPARE(cameras.code, 10);
        QVERIFY(cameras.localizedDescription.isNull());
        interface->job()->setCamera({ { QStringLiteral("name"), QStringLiteral("Studio 2") } });
        QCOMPARE(interface->resumeRemoteJob(interface->job().get(), &resume), 10);
        QCOMPARE(resume, workflows);
    }

    void listsComeAsTheServerListsThem_data()
    {
        QTest::addColumn<QVariantMap>("reply"); // printed by the tool after a progress line
        QTest::addColumn<bool>("cameras");
        QTest::addColumn<List>("expected"); // null: no list, and no error either
        QVariantList unsorted; // neither by name nor by title
        for (const QString name : { "zeta", "alpha", "mid" }) {
            unsorted << QVariantMap { { "name", name }, { "title", "T " + name }, { "description", "d" },
                { "uuid", "U-" + name }, { "extra", 42 } };
        }
        const QVariantMap onlyCameras { { "cameras", QVariantList {} } };
        QTest::newRow("server order") << QVariantMap { { "workflows", unsorted } } << false << List(unsorted);
        QTest::newRow("empty list") << QVariantMap { { "workflows", QVariantList {} } } << false
                                    << List(QVariantList {});
        QTest::newRow("workflows missing") << onlyCameras << false << List();
        QTest::newRow("no cameras") << onlyCameras << true << List(QVariantList {});
    }
    void listsComeAsTheServerListsThem()
    {
        QFETCH(QVariantMap, reply);
        QFETCH(bool, cameras);
        QFETCH(List, expected);
        m_sim.installRecordingTool();
        m_sim.setReply("progress\n" + PropertyList::toXml(reply), "", 0);
        Error error;
        auto interface = SimSandbox::makeInterface();
        QCOMPARE(cameras ? interface->getCamerasError(&error) : interface->getWorkflowsError(&error), expected);
        QVERIFY(error.domain.isEmpty());

        // The same through the asynchronous form, on the main thread; the
        // worker keeps the interface alive after the caller lets it go.
        QObject delegate;
        std::optional<std::optional<Error>> reported;
        List list;
        const auto keep = [&](const List &l, const std::optional<Error> &e) {
            QVERIFY(QThread::currentThread() == qApp->thread());
            list = l;
            reported = e;
        };
        if (cameras)
            SimSandbox::makeInterface()->getCamerasForDelegate(&delegate, keep);
        else
            SimSandbox::makeInterface()->getWorkflowsForDelegate(&delegate, keep);
        QTRY_VERIFY(reported);
        QVERIFY(!*reported);
        QCOMPARE(list, expected);
    }

    void queryFailures_data()
    {
        QTest::addColumn<Failure>("c");
        const QVariantMap failed { { "stdout", "partial\n" }, { "status", 7 } };
        QVariantMap withText = failed;
        withText.insert("stderr", "trouble ahead\n");
        const QString out = SimSandbox::progressLine() + "partial\n\n";
        const QString denied = QStringLiteral("Authentication failed for user demo.\n");
        const QString login = SimSandbox::progressLine() + "\n" + denied;
        const QString domain = QStringLiteral("OrvaneServerInterface error: Error Domain="
                                              "PodcastServerInteraceErrorDomain Code=%1 \"%2\"");
        const QString unparsed = QStringLiteral("OrvaneServerInterface error. Could not parse %1 plist data. Reason: ");
        const QString camera = QStringLiteral("OrvaneServerInterface error: ");
        const QVariantMap noPlist { { "no_plist", true } };
        QTest::newRow("workflows") << Failure { false, withText, 7, out + "trouble ahead\n",
            domain.arg(7).arg(out + "trouble ahead\n") };
        QTest::newRow("workflows, no error text") << Failure { false, failed, 7, out, domain.arg(7).arg(out) };
        QTest::newRow("workflows, wrong password")
            << Failure { false, {}, 26, login, domain.arg(26).arg(login), "wrong" };
        QTest::newRow("workflows, no plist") << Failure { false, noPlist, 0, {}, unparsed.arg("workflows") };
        QTest::newRow("cameras") << Failure { true, withText, 7, "trouble ahead\n", camera + "trouble ahead\n" };
        QTest::newRow("cameras, no error text") << Failure { true, failed, 7, "", camera };
        QTest::newRow("cameras, wrong password") << Failure { true, {}, 26, denied, camera + denied, "wrong" };
        QTest::newRow("cameras, no plist") << Failure { true, noPlist, 0, {}, unparsed.arg("camera") };
    }
    void queryFailures()
    {
        QFETCH(Failure, c);
        if (!c.fault.isEmpty())
            m_sim.setFault(c.cameras ? "--listcameras" : "--listworkflows", c.fault);
        auto interface = SimSandbox::makeInterface(c.password);
        const std::optional<Error> expected
            = c.code ? std::optional(Error { kServerInterfaceErrorDomain, c.code, c.text }) : std::nullopt;
        Log::Capture log;
        Error error;
        QVERIFY(!(c.cameras ? interface->getCamerasError(&error) : interface->getWorkflowsError(&error)));
        QCOMPARE(error, expected.value_or(Error {}));
        QVERIFY(!c.code || !error.localizedDescription.isNull());
        QVERIFY2(c.code ? log.contains(c.log) : logHasPrefix(log, c.log), LOG_LINES(log));

        // The asynchronous form hands over the same: no list, the error if any.
        QObject delegate;
        std::optional<std::optional<Error>> reported;
        std::optional<QVariantList> list = QVariantList {};
        const auto keep = [&](const std::optional<QVariantList> &l, const std::optional<Error> &e) {
            list = l;
            reported = e;
        };
        if (c.cameras)
            interface->getCamerasForDelegate(&delegate, keep);
        else
            interface->getWorkflowsForDelegate(&delegate, keep);
        QTRY_VERIFY(reported);
        QVERIFY(!list);
        QCOMPARE(*reported, expected);
    }

    void uploadQueueCommandLinesCarryNoCredentials()
    {
        m_sim.installRecordingTool();
        m_sim.setReply(PropertyList::toXml(QVariantMap {}), "", 0);
        QCOMPARE(OrvaneServerInterface::transferStatuses(), std::optional(OrvaneServerInterface::TransferStatuses {}));
        QCOMPARE(m_sim.recordedArguments(), QStringList { QStringLiteral("--list_uploads") });
        QCOMPARE(m_sim.recordedStdinKind(), QStringLiteral("/dev/null"));
        OrvaneServerInterface::clearCompletedTransferStatuses();
        QCOMPARE(m_sim.recordedArguments(), QStringList { QStringLiteral("--clear_completed_uploads") });
        QCOMPARE(m_sim.recordedStdinKind(), QStringLiteral("/dev/null"));
    }

    void uploadQueueFailuresAreLogged()
    {
        Log::Capture log;
        m_sim.setFault(QStringLiteral("--list_uploads"), { { "status", 5 } });
        QVERIFY(!OrvaneServerInterface::transferStatuses());
        QCOMPARE(log.lines(), QStringList { QStringLiteral("orvx --listuploads returned with code 5") });
        log.clear();
        m_sim.setFault(QStringLiteral("--list_uploads"), { { "no_plist", true } });
        QVERIFY(!OrvaneServerInterface::transferStatuses());
        QVERIFY2(logHasPrefix(log, "OrvaneServerInterface error. Could not parse uploads plist data. Reason: "),
            LOG_LINES(log));
        log.clear();
        m_sim.setFault(QStringLiteral("--clear_completed_uploads"), { { "status", 3 } });
        OrvaneServerInterface::clearCompletedTransferStatuses();
        QCOMPARE(log.lines(), QStringList { QStringLiteral("'orvx --clear_completed_uploads' failed, return code 3") });
    }

    void previewRequest()
    {
        auto interface = SimSandbox::makeInterface();
        Log::Capture log;
        interface->requestPreviewUpdateInThreadForCamera(QStringLiteral("Studio 2"));
        QVERIFY2(log.lines().isEmpty(), LOG_LINES(log));
        interface->requestPreviewUpdateInThreadForCamera(QStringLiteral("Nowhere Hall"));
        QVERIFY2(log.contains("Error: return code 1 when calling orvx --status Nowhere Hall --update_preview"),
            LOG_LINES(log));

        // The asynchronous form returns at once and only logs.
        log.clear();
        m_sim.installRecordingTool();
        m_sim.setReply("", "", 4);
        interface->requestPreviewUpdateForCameraName(QStringLiteral("Seminar Room"));
        QTRY_VERIFY(log.contains("Error: return code 4 when calling orvx --status Seminar Room --update_preview"));
        QCOMPARE(m_sim.recordedArguments().mid(4), (QStringList { "--status", "Seminar Room", "--update_preview" }));
    }

    void asyncDelegateGoneGetsNothing()
    {
        m_sim.setFault(QStringLiteral("--listworkflows"), { { "hang", 1.0 } });
        auto interface = SimSandbox::makeInterface();
        const std::weak_ptr<OrvaneServerInterface> alive = interface;
        auto *delegate = new QObject;
        bool called = false;
        interface->getWorkflowsForDelegate(delegate, [&called](const auto &, const auto &) { called = true; });
        interface.reset();
        QTRY_VERIFY(!childrenRunning(QFileInfo(tool()).canonicalFilePath()).isEmpty());
        delete delegate;
        // The worker lets the interface go once it has queued its result.
        QTRY_VERIFY_WITH_TIMEOUT(alive.expired(), 20000);
        QCoreApplication::sendPostedEvents();
        QVERIFY(!called);
    }

    void passwordNeverLeavesStandardInputWhileToolRuns()
    {
        const QString secret = QStringLiteral("Zq7-unmistakable-s3cret");
        // Hang before the login check, so the tool is caught while it runs.
        m_sim.setFault(QStringLiteral("--listworkflows"), { { "hang", 2.0 }, { "before_auth", true } });
        Log::Capture log;
        QObject delegate;
        std::optional<Error> error;
        int ticks = 0;
        QTimer timer;
        connect(&timer, &QTimer::timeout, [&ticks] { ++ticks; });
        timer.start(50);
        SimSandbox::makeInterface(secret)->getWorkflowsForDelegate(
            &delegate, [&](const auto &, const auto &e) { error = e; });
        const QString executable = QFileInfo(tool()).canonicalFilePath();
        QTRY_VERIFY(!childrenRunning(executable).isEmpty());
        const qint64 pid = childrenRunning(executable).first();
        const QByteArray cmdline = SimSandbox::readFile(QStringLiteral("/proc/%1/cmdline").arg(pid));
        const QByteArray environ = SimSandbox::readFile(QStringLiteral("/proc/%1/environ").arg(pid));
        QVERIFY(cmdline.contains("--listworkflows") && cmdline.contains(SimSandbox::kServerURL.toUtf8()));
        QVERIFY(!environ.isEmpty());
        QVERIFY(!cmdline.contains(secret.toUtf8()) && !environ.contains(secret.toUtf8()));
        const int ticksWhileRunning = ticks;

        QTRY_VERIFY_WITH_TIMEOUT(error, 20000);
        // The main thread's event loop kept running while the tool hung.
        QVERIFY2(ticks - ticksWhileRunning >= 5, qPrintable(QString::number(ticks - ticksWhileRunning)));
        QCOMPARE(error->code, 26);
        QVERIFY(log.lines().filter(secret).isEmpty());
        QCOMPARE(m_sim.filesContaining(secret.toUtf8()), QStringList {});
    }
};

QTEST_GUILESS_MAIN(TestServerQueries)
#include "tst_serverqueries.moc"
