// The command line of every server command and the read-only queries
// (workflows, cameras, preview, upload queue), run against the simulator's
// tool or a recording shell script standing in its place.

#include "SimSandbox.h"

#include "Log.h"
#include "OrvaneServerInterface.h"

#include <QThread>
#include <QTimer>

namespace {

const QString kPassword = QStringLiteral("lumex");

std::shared_ptr<OrvaneServerInterface> makeInterface(
    const QVariant &password = kPassword, const QString &user = QStringLiteral("demo"))
{
    QVariantMap credentials { { QStringLiteral("server"), SimSandbox::kServerHost }, { QStringLiteral("user"), user } };
    if (password.isValid())
        credentials.insert(QStringLiteral("password"), password);
    return OrvaneServerInterface::create(credentials, std::make_shared<PodcastJob>());
}

QString progressLine()
{
    return QStringLiteral("Connecting to %1 ...\n").arg(SimSandbox::kServerURL);
}

bool logHasPrefix(const Log::Capture &log, const QString &prefix)
{
    for (const QString &line : log.lines()) {
        if (line.startsWith(prefix))
            return true;
    }
    return false;
}

} // namespace

class TestServerQueries : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void commandLineOrder_data();
    void commandLineOrder();
    void passwordOnlyOnStandardInput_data();
    void passwordOnlyOnStandardInput();
    void failureLogLineOnlyWithErrorText_data();
    void failureLogLineOnlyWithErrorText();
    void missingToolGivesStatusTenAndLeavesErrorText();

    void workflowsComeInServerOrder();
    void emptyWorkflowListIsAValidResult();
    void listWithoutItsEntryIsNilWithoutError();
    void toolFailureTexts_data();
    void toolFailureTexts();
    void wrongPasswordIsAuthenticationError();
    void outputWithoutPropertyListIsNilAndLogged_data();
    void outputWithoutPropertyListIsNilAndLogged();
    void missingToolForQueries();

    void uploadQueueCommandLinesCarryNoCredentials();
    void uploadQueueListsSubmissionAndClears();
    void uploadQueueFailuresAreLogged();
    void previewRequest();

    void asyncQueriesReportOnMainThread();
    void asyncParseFailureReportsNeitherListNorError();
    void asyncDelegateGoneGetsNothing();
    void passwordNeverLeavesStandardInputWhileToolRuns();

private:
    std::unique_ptr<SimSandbox> m_sim;
    QString tool() const { return m_sim->tool(QStringLiteral("orvxexec")); }
};

void TestServerQueries::initTestCase()
{
    m_sim = std::make_unique<SimSandbox>();
    QVERIFY(m_sim->installTools());
}

void TestServerQueries::init()
{
    m_sim->clearFaults();
    m_sim->clearRecord();
    QVERIFY(m_sim->installTools());
}

void TestServerQueries::commandLineOrder_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<std::optional<QStringList>>("args");
    QTest::addColumn<QStringList>("further");

    QTest::newRow("no further arguments (null)")
        << QStringLiteral("--listworkflows") << std::optional<QStringList>() << QStringList {};
    QTest::newRow("no further arguments (empty)")
        << QStringLiteral("--listworkflows") << std::optional<QStringList>(QStringList {}) << QStringList {};
    QTest::newRow("camera with a space stays one argument")
        << QStringLiteral("--pause") << std::optional<QStringList>(QStringList { QStringLiteral("Studio 2") })
        << QStringList { QStringLiteral("Studio 2") };
    QTest::newRow("order kept") << QStringLiteral("--status")
                                << std::optional<QStringList>(QStringList {
                                       QStringLiteral("Seminar Room"), QStringLiteral("--update_preview") })
                                << QStringList { QStringLiteral("Seminar Room"), QStringLiteral("--update_preview") };
}

void TestServerQueries::commandLineOrder()
{
    QFETCH(QString, command);
    QFETCH(std::optional<QStringList>, args);
    QFETCH(QStringList, further);

    m_sim->installRecordingTool();
    m_sim->setReply("said \xc3\xbc\n", "", 0);
    auto interface = makeInterface();
    QString output, error;
    QCOMPARE(interface->launchCommand(command, args, &output, &error), 0);
    QCOMPARE(m_sim->recordedArguments(),
        QStringList({ QStringLiteral("--server"), SimSandbox::kServerURL, QStringLiteral("--user"),
            QStringLiteral("demo"), command })
            + further);
    QCOMPARE(output, QStringLiteral("said \u00fc\n"));
    QCOMPARE(error, QStringLiteral(""));
}

void TestServerQueries::passwordOnlyOnStandardInput_data()
{
    QTest::addColumn<QVariant>("password");
    QTest::addColumn<QString>("stdinKind");
    QTest::addColumn<QByteArray>("stdinBytes");

    QTest::newRow("password") << QVariant(QStringLiteral("p\u00e4ss word")) << QStringLiteral("pipe:")
                              << QStringLiteral("p\u00e4ss word").toUtf8();
    QTest::newRow("empty password is an empty pipe")
        << QVariant(QStringLiteral("")) << QStringLiteral("pipe:") << QByteArray();
    QTest::newRow("no password is /dev/null") << QVariant() << QStringLiteral("/dev/null") << QByteArray();
}

void TestServerQueries::passwordOnlyOnStandardInput()
{
    QFETCH(QVariant, password);
    QFETCH(QString, stdinKind);
    QFETCH(QByteArray, stdinBytes);

    m_sim->installRecordingTool();
    auto interface = makeInterface(password);
    QString output, error;
    QCOMPARE(interface->launchCommand(QStringLiteral("--listcameras"), std::nullopt, &output, &error), 0);
    QVERIFY2(m_sim->recordedStdinKind().startsWith(stdinKind), qPrintable(m_sim->recordedStdinKind()));
    QCOMPARE(m_sim->recordedStdin(), stdinBytes);
    if (!stdinBytes.isEmpty()) {
        for (const QString &arg : m_sim->recordedArguments())
            QVERIFY(!arg.contains(password.toString()));
    }
}

void TestServerQueries::failureLogLineOnlyWithErrorText_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("stderrText");
    QTest::addColumn<bool>("logged");

    QTest::newRow("failure with error text") << 3 << QByteArray("it broke\n") << true;
    QTest::newRow("failure without error text") << 3 << QByteArray() << false;
    QTest::newRow("success with error text") << 0 << QByteArray("just a warning\n") << false;
}

void TestServerQueries::failureLogLineOnlyWithErrorText()
{
    QFETCH(int, status);
    QFETCH(QByteArray, stderrText);
    QFETCH(bool, logged);

    m_sim->installRecordingTool();
    m_sim->setReply("out\n", stderrText, status);
    auto interface = makeInterface();
    Log::Capture log;
    QString output, error;
    QCOMPARE(interface->launchCommand(
                 QStringLiteral("--cancel"), QStringList { QStringLiteral("Studio 2") }, &output, &error),
        status);
    QCOMPARE(output, QStringLiteral("out\n"));
    QCOMPARE(error, QString::fromUtf8(stderrText));
    const QString line = QStringLiteral("/usr/bin/orvx (--cancel) error (%1):\n%2").arg(status).arg(error);
    QCOMPARE(log.contains(line), logged);
    if (!logged)
        QVERIFY2(!logHasPrefix(log, QStringLiteral("/usr/bin/orvx")), qPrintable(log.lines().join('|')));
}

void TestServerQueries::missingToolGivesStatusTenAndLeavesErrorText()
{
    m_sim->removeTool(QStringLiteral("orvxexec"));
    auto interface = makeInterface();
    Log::Capture log;
    QString output, error;
    QCOMPARE(interface->launchCommand(QStringLiteral("--listworkflows"), std::nullopt, &output, &error), 10);
    QCOMPARE(output, tool() + QStringLiteral(" tool cannot be found."));
    QVERIFY(error.isNull());
    QString kept = QStringLiteral("kept");
    QCOMPARE(interface->launchCommand(QStringLiteral("--listworkflows"), std::nullopt, &output, &kept), 10);
    QCOMPARE(kept, QStringLiteral("kept"));
    QVERIFY(log.lines().isEmpty());
}

void TestServerQueries::workflowsComeInServerOrder()
{
    // A list whose order is neither alphabetical nor by title.
    QVariantList workflows;
    for (const char *name : { "zeta", "alpha", "mid" }) {
        workflows << QVariantMap { { QStringLiteral("name"), QString::fromLatin1(name) },
            { QStringLiteral("title"), QStringLiteral("T ") + QString::fromLatin1(name) },
            { QStringLiteral("description"), QStringLiteral("d") },
            { QStringLiteral("uuid"), QStringLiteral("U-") + QString::fromLatin1(name) },
            { QStringLiteral("extra"), 42 } };
    }
    QVERIFY(QDir().mkpath(m_sim->state(QString())));
    QVERIFY(PropertyList::writeFile(m_sim->state(QStringLiteral("workflows.plist")),
        QVariantMap { { QStringLiteral("workflows"), workflows } }, true));
    auto interface = makeInterface();
    Error error;
    const auto list = interface->getWorkflowsError(&error);
    QVERIFY(error.domain.isEmpty());
    QVERIFY(list);
    QCOMPARE(*list, workflows);
    QFile::remove(m_sim->state(QStringLiteral("workflows.plist")));
}

void TestServerQueries::emptyWorkflowListIsAValidResult()
{
    QVERIFY(QDir().mkpath(m_sim->state(QString())));
    QVERIFY(PropertyList::writeFile(m_sim->state(QStringLiteral("workflows.plist")),
        QVariantMap { { QStringLiteral("workflows"), QVariantList {} } }, true));
    auto interface = makeInterface();
    Error error;
    const auto list = interface->getWorkflowsError(&error);
    QFile::remove(m_sim->state(QStringLiteral("workflows.plist")));
    QVERIFY(error.domain.isEmpty());
    QVERIFY(list);
    QVERIFY(list->isEmpty());
}

void TestServerQueries::listWithoutItsEntryIsNilWithoutError()
{
    m_sim->installRecordingTool();
    m_sim->setReply(
        "progress\n" + PropertyList::toXml(QVariantMap { { QStringLiteral("cameras"), QVariantList {} } }), "", 0);
    auto interface = makeInterface();
    Log::Capture log;
    Error error;
    QVERIFY(!interface->getWorkflowsError(&error));
    QVERIFY(error.domain.isEmpty());
    // The same output is a valid (empty) camera list.
    const auto cameras = interface->getCamerasError(&error);
    QVERIFY(error.domain.isEmpty());
    QVERIFY(cameras);
    QVERIFY(cameras->isEmpty());
}

void TestServerQueries::toolFailureTexts_data()
{
    QTest::addColumn<bool>("cameras");
    QTest::addColumn<QString>("stderrText");

    QTest::newRow("workflows") << false << QStringLiteral("trouble ahead\n");
    QTest::newRow("workflows, empty error text") << false << QString();
    QTest::newRow("cameras") << true << QStringLiteral("trouble ahead\n");
    QTest::newRow("cameras, empty error text") << true << QString();
}

void TestServerQueries::toolFailureTexts()
{
    QFETCH(bool, cameras);
    QFETCH(QString, stderrText);

    const QString command = cameras ? QStringLiteral("--listcameras") : QStringLiteral("--listworkflows");
    QVariantMap settings { { QStringLiteral("stdout"), QStringLiteral("partial\n") }, { QStringLiteral("status"), 7 } };
    if (!stderrText.isEmpty())
        settings.insert(QStringLiteral("stderr"), stderrText);
    m_sim->setFaults({ { command, settings } });

    auto interface = makeInterface();
    Log::Capture log;
    Error error;
    const auto list = cameras ? interface->getCamerasError(&error) : interface->getWorkflowsError(&error);
    QVERIFY(!list);
    QCOMPARE(error.domain, kServerInterfaceErrorDomain);
    QCOMPARE(error.code, 7);
    const QString output = progressLine() + QStringLiteral("partial\n");
    if (cameras) {
        QCOMPARE(error.localizedDescription, stderrText.isNull() ? QStringLiteral("") : stderrText);
        QVERIFY(!error.localizedDescription.isNull());
        QVERIFY2(log.contains(QStringLiteral("OrvaneServerInterface error: ") + error.localizedDescription),
            qPrintable(log.lines().join('|')));
    } else {
        QCOMPARE(error.localizedDescription, output + QLatin1Char('\n') + stderrText);
        QVERIFY2(
            log.contains(QStringLiteral("OrvaneServerInterface error: Error Domain=PodcastServerInteraceErrorDomain "
                                        "Code=7 \"%1\"")
                             .arg(error.localizedDescription)),
            qPrintable(log.lines().join('|')));
    }
}

void TestServerQueries::wrongPasswordIsAuthenticationError()
{
    auto interface = makeInterface(QStringLiteral("not-the-password"));
    Error error;
    QVERIFY(!interface->getWorkflowsError(&error));
    QCOMPARE(error.code, 26);
    QCOMPARE(error.localizedDescription, progressLine() + QStringLiteral("\nAuthentication failed for user demo.\n"));
}

void TestServerQueries::outputWithoutPropertyListIsNilAndLogged_data()
{
    QTest::addColumn<bool>("cameras");
    QTest::newRow("workflows") << false;
    QTest::newRow("cameras") << true;
}

void TestServerQueries::outputWithoutPropertyListIsNilAndLogged()
{
    QFETCH(bool, cameras);
    const QString command = cameras ? QStringLiteral("--listcameras") : QStringLiteral("--listworkflows");
    m_sim->setFaults({ { command, QVariantMap { { QStringLiteral("no_plist"), true } } } });
    auto interface = makeInterface();
    Log::Capture log;
    Error error;
    const auto list = cameras ? interface->getCamerasError(&error) : interface->getWorkflowsError(&error);
    QVERIFY(!list);
    QVERIFY(error.domain.isEmpty());
    const QString prefix = cameras
        ? QStringLiteral("OrvaneServerInterface error. Could not parse camera plist data. Reason: ")
        : QStringLiteral("OrvaneServerInterface error. Could not parse workflows plist data. Reason: ");
    QVERIFY2(logHasPrefix(log, prefix), qPrintable(log.lines().join('|')));
}

void TestServerQueries::missingToolForQueries()
{
    m_sim->removeTool(QStringLiteral("orvxexec"));
    auto interface = makeInterface();
    Error error;
    QVERIFY(!interface->getWorkflowsError(&error));
    QCOMPARE(error.code, 10);
    QCOMPARE(error.localizedDescription, tool() + QStringLiteral(" tool cannot be found.\n(null)"));

    Error cameraError;
    QVERIFY(!interface->getCamerasError(&cameraError));
    QCOMPARE(cameraError.domain, kServerInterfaceErrorDomain);
    QCOMPARE(cameraError.code, 10);
    QVERIFY(cameraError.localizedDescription.isNull());
}

void TestServerQueries::uploadQueueCommandLinesCarryNoCredentials()
{
    m_sim->installRecordingTool();
    m_sim->setReply("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict/></plist>\n", "", 0);
    const auto statuses = OrvaneServerInterface::transferStatuses();
    QVERIFY(statuses);
    QVERIFY(statuses->isEmpty());
    QCOMPARE(m_sim->recordedArguments(), QStringList { QStringLiteral("--list_uploads") });
    QCOMPARE(m_sim->recordedStdinKind(), QStringLiteral("/dev/null"));

    OrvaneServerInterface::clearCompletedTransferStatuses();
    QCOMPARE(m_sim->recordedArguments(), QStringList { QStringLiteral("--clear_completed_uploads") });
    QCOMPARE(m_sim->recordedStdinKind(), QStringLiteral("/dev/null"));
}

void TestServerQueries::uploadQueueListsSubmissionAndClears()
{
    auto interface = makeInterface();
    const QString movie = m_sim->path() + QStringLiteral("/movie one.mov");
    QVERIFY(SimSandbox::writeFile(movie, "not really a movie"));
    auto job = interface->job();
    job->setTitle(QStringLiteral("Queued"));
    job->setWorkflow({ { QStringLiteral("name"), QStringLiteral("archive-only") } });
    job->setMovieFilePaths(QStringList { movie });
    Error error;
    QCOMPARE(interface->submitJobFiles(job.get(), &error), 0);
    QVERIFY(!job->uploadUUID().isEmpty());

    const auto statuses = OrvaneServerInterface::transferStatuses();
    QVERIFY(statuses);
    bool found = false;
    for (const QVariant &upload : *statuses) {
        const QVariantMap record = upload.toMap();
        if (record.value(QStringLiteral("upload_uuid")).toString() == job->uploadUUID()) {
            found = true;
            QCOMPARE(record.value(QStringLiteral("user")).toString(), QStringLiteral("demo"));
            QVERIFY(!record.value(QStringLiteral("status")).toString().isEmpty());
        }
    }
    QVERIFY(found);

    Log::Capture log;
    OrvaneServerInterface::clearCompletedTransferStatuses();
    QVERIFY(log.lines().isEmpty());
}

void TestServerQueries::uploadQueueFailuresAreLogged()
{
    Log::Capture log;
    m_sim->setFaults({ { QStringLiteral("--list_uploads"), QVariantMap { { QStringLiteral("status"), 5 } } } });
    QVERIFY(!OrvaneServerInterface::transferStatuses());
    QVERIFY2(
        log.contains(QStringLiteral("orvx --listuploads returned with code 5")), qPrintable(log.lines().join('|')));

    m_sim->setFaults({ { QStringLiteral("--list_uploads"), QVariantMap { { QStringLiteral("no_plist"), true } } } });
    log.clear();
    QVERIFY(!OrvaneServerInterface::transferStatuses());
    QVERIFY(
        logHasPrefix(log, QStringLiteral("OrvaneServerInterface error. Could not parse uploads plist data. Reason: ")));

    m_sim->setFaults(
        { { QStringLiteral("--clear_completed_uploads"), QVariantMap { { QStringLiteral("status"), 3 } } } });
    log.clear();
    OrvaneServerInterface::clearCompletedTransferStatuses();
    QCOMPARE(log.lines(), QStringList { QStringLiteral("'orvx --clear_completed_uploads' failed, return code 3") });
}

void TestServerQueries::previewRequest()
{
    auto interface = makeInterface();
    Log::Capture log;
    interface->requestPreviewUpdateInThreadForCamera(QStringLiteral("Studio 2"));
    QVERIFY2(!logHasPrefix(log, QStringLiteral("Error: return code")), qPrintable(log.lines().join('|')));

    interface->requestPreviewUpdateInThreadForCamera(QStringLiteral("Nowhere Hall"));
    QVERIFY(
        log.contains(QStringLiteral("Error: return code 1 when calling orvx --status Nowhere Hall --update_preview")));

    // The asynchronous form returns at once and only logs.
    log.clear();
    m_sim->installRecordingTool();
    m_sim->setReply("", "", 4);
    interface->requestPreviewUpdateForCameraName(QStringLiteral("Seminar Room"));
    QTRY_VERIFY(
        log.contains(QStringLiteral("Error: return code 4 when calling orvx --status Seminar Room --update_preview")));
    QCOMPARE(m_sim->recordedArguments().mid(4),
        (QStringList {
            QStringLiteral("--status"), QStringLiteral("Seminar Room"), QStringLiteral("--update_preview") }));
}

void TestServerQueries::asyncQueriesReportOnMainThread()
{
    auto interface = makeInterface();
    QObject delegate;
    int calls = 0;
    bool onMainThread = true;
    std::optional<QVariantList> workflows, cameras;
    std::optional<Error> workflowError, cameraError;
    interface->getWorkflowsForDelegate(&delegate, [&](const auto &list, const auto &error) {
        ++calls;
        onMainThread = onMainThread && QThread::currentThread() == qApp->thread();
        workflows = list;
        workflowError = error;
    });
    interface->getCamerasForDelegate(&delegate, [&](const auto &list, const auto &error) {
        ++calls;
        onMainThread = onMainThread && QThread::currentThread() == qApp->thread();
        cameras = list;
        cameraError = error;
    });
    QTRY_COMPARE(calls, 2);
    QVERIFY(onMainThread);
    QVERIFY(!workflowError);
    QVERIFY(!cameraError);
    QVERIFY(workflows && !workflows->isEmpty());
    QVERIFY(cameras && !cameras->isEmpty());
    QCOMPARE(cameras->first().toMap().value(QStringLiteral("name")).toString(), QStringLiteral("Lecture Hall A"));

    // The worker keeps the interface alive after the caller lets it go.
    bool orphanCalled = false;
    std::optional<QVariantList> orphanList;
    {
        auto transient = makeInterface();
        transient->getWorkflowsForDelegate(&delegate, [&](const auto &list, const auto &) {
            orphanCalled = true;
            orphanList = list;
        });
    }
    QTRY_VERIFY(orphanCalled);
    QVERIFY(orphanList && orphanList->size() == workflows->size());

    // A failure arrives as (nil, error).
    bool failed = false;
    std::optional<QVariantList> failedList = QVariantList {};
    std::optional<Error> failure;
    auto wrong = makeInterface(QStringLiteral("wrong"));
    wrong->getCamerasForDelegate(&delegate, [&](const auto &list, const auto &error) {
        failed = true;
        failedList = list;
        failure = error;
    });
    QTRY_VERIFY(failed);
    QVERIFY(!failedList);
    QVERIFY(failure);
    QCOMPARE(failure->code, 26);
    QCOMPARE(failure->localizedDescription, QStringLiteral("Authentication failed for user demo.\n"));
}

void TestServerQueries::asyncParseFailureReportsNeitherListNorError()
{
    m_sim->setFaults({ { QStringLiteral("--listworkflows"), QVariantMap { { QStringLiteral("no_plist"), true } } } });
    auto interface = makeInterface();
    QObject delegate;
    bool called = false;
    std::optional<QVariantList> list = QVariantList {};
    std::optional<Error> error = Error {};
    interface->getWorkflowsForDelegate(&delegate, [&](const auto &l, const auto &e) {
        called = true;
        list = l;
        error = e;
    });
    QTRY_VERIFY(called);
    QVERIFY(!list);
    QVERIFY(!error);
}

void TestServerQueries::asyncDelegateGoneGetsNothing()
{
    m_sim->setFaults({ { QStringLiteral("--listworkflows"), QVariantMap { { QStringLiteral("hang"), 1.0 } } } });
    auto interface = makeInterface();
    auto *delegate = new QObject;
    bool called = false;
    interface->getWorkflowsForDelegate(delegate, [&called](const auto &, const auto &) { called = true; });
    QTRY_VERIFY(!childrenRunning(QFileInfo(tool()).canonicalFilePath()).isEmpty());
    delete delegate;
    // Wait for the tool to end, then give the queued result time to arrive.
    QTRY_VERIFY_WITH_TIMEOUT(childrenRunning(QFileInfo(tool()).canonicalFilePath()).isEmpty(), 10000);
    QTest::qWait(300);
    QVERIFY(!called);
}

void TestServerQueries::passwordNeverLeavesStandardInputWhileToolRuns()
{
    const QString secret = QStringLiteral("Zq7-unmistakable-s3cret");
    // Hang before the login check, so the tool is caught while it runs.
    m_sim->setFaults({ { QStringLiteral("--listworkflows"),
        QVariantMap { { QStringLiteral("hang"), 2.0 }, { QStringLiteral("before_auth"), true } } } });
    auto interface = makeInterface(secret);
    Log::Capture log;
    QObject delegate;
    bool called = false;
    std::optional<Error> error;
    int ticks = 0;
    QTimer timer;
    connect(&timer, &QTimer::timeout, [&ticks] { ++ticks; });
    timer.start(50);

    interface->getWorkflowsForDelegate(&delegate, [&](const auto &, const auto &e) {
        called = true;
        error = e;
    });
    const QString executable = QFileInfo(tool()).canonicalFilePath();
    QTRY_VERIFY(!childrenRunning(executable).isEmpty());
    const qint64 pid = childrenRunning(executable).first();
    const QByteArray cmdline = SimSandbox::readFile(QStringLiteral("/proc/%1/cmdline").arg(pid));
    const QByteArray environ = SimSandbox::readFile(QStringLiteral("/proc/%1/environ").arg(pid));
    QVERIFY(cmdline.contains("--listworkflows"));
    QVERIFY(cmdline.contains(SimSandbox::kServerURL.toUtf8()));
    QVERIFY(!environ.isEmpty());
    QVERIFY(!cmdline.contains(secret.toUtf8()));
    QVERIFY(!environ.contains(secret.toUtf8()));
    const int ticksWhileRunning = ticks;

    QTRY_VERIFY_WITH_TIMEOUT(called, 10000);
    // The main thread's event loop kept running while the tool hung.
    QVERIFY2(ticks - ticksWhileRunning >= 10, qPrintable(QString::number(ticks - ticksWhileRunning)));
    QVERIFY(error);
    QCOMPARE(error->code, 26);
    for (const QString &line : log.lines())
        QVERIFY2(!line.contains(secret), qPrintable(line));
    QCOMPARE(m_sim->filesContaining(secret.toUtf8()), QStringList {});
}

QTEST_GUILESS_MAIN(TestServerQueries)
#include "tst_serverqueries.moc"
