// runExecutable against real child processes: /bin/sh scripts and the
// simulator's server tool, with the simulator's faults for floods, signals
// and hangs.

#include "SimSandbox.h"

#include "Log.h"
#include "OrvaneServerInterface.h"
#include "ProcessRunner.h"

#include <QSignalSpy>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <csignal>
#include <thread>

class TestProcessRunner : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void standardInputKinds_data();
    void standardInputKinds();
    void unwantedStreamsGoToDevNullAndAreNotMerged();
    void argumentsNullEmptyAndGiven_data();
    void argumentsNullEmptyAndGiven();
    void environmentReplacesOursWhenGiven();
    void exitStatusPassesThrough_data();
    void exitStatusPassesThrough();
    void killedBySignalGivesSignalNumber_data();
    void killedBySignalGivesSignalNumber();
    void largeStderrBeforeStdoutArrivesWhole();
    void largeInputToChildThatQuitsOrEchoes();
    void cannotRunGivesMinusOne_data();
    void cannotRunGivesMinusOne();
    void folderAtToolPathThrows();
    void folderAtToolPathReachesDelegateAsError();

private:
    QString m_scratch;
    std::unique_ptr<SimSandbox> m_sim;
};

namespace {

const QString kSh = QStringLiteral("/bin/sh");

int32_t sh(const QString &script, const QString &input, QByteArray *out, QString *err)
{
    return runExecutable(kSh, QStringList { QStringLiteral("-c"), script }, input, out, err);
}

} // namespace

void TestProcessRunner::initTestCase()
{
    m_sim = std::make_unique<SimSandbox>();
    QVERIFY(m_sim->installTools());
    m_scratch = m_sim->path() + QStringLiteral("/scratch");
    QVERIFY(QDir().mkpath(m_scratch));
}

void TestProcessRunner::init()
{
    m_sim->clearFaults();
    QVERIFY(m_sim->installTools());
}

void TestProcessRunner::standardInputKinds_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QByteArray>("read");

    QTest::newRow("null input is /dev/null") << QString() << QStringLiteral("/dev/null") << QByteArray();
    QTest::newRow("empty input is a pipe at end of file")
        << QStringLiteral("") << QStringLiteral("pipe:") << QByteArray();
    QTest::newRow("text is written once, no line end")
        << QStringLiteral("s\u00e9cret pass") << QStringLiteral("pipe:") << QStringLiteral("s\u00e9cret pass").toUtf8();
}

void TestProcessRunner::standardInputKinds()
{
    QFETCH(QString, input);
    QFETCH(QString, kind);
    QFETCH(QByteArray, read);

    QByteArray out;
    QString err;
    const int32_t status = sh(QStringLiteral("readlink /proc/self/fd/0; cat"), input, &out, &err);
    QCOMPARE(status, 0);
    QCOMPARE(err, QString());
    const QByteArray link = out.left(out.indexOf('\n'));
    QVERIFY2(link.startsWith(kind.toUtf8()), link.constData());
    QCOMPARE(out.mid(out.indexOf('\n') + 1), read);
}

void TestProcessRunner::unwantedStreamsGoToDevNullAndAreNotMerged()
{
    const QString where = m_scratch + QStringLiteral("/fds");
    const QString script = QStringLiteral(
        "o=$(readlink /proc/$$/fd/1); e=$(readlink /proc/$$/fd/2); printf '%s\\n%s\\n' \"$o\" \"$e\" > '%1';"
        " echo to-out; echo to-err >&2")
                               .arg(where);

    // Neither place given: both streams are /dev/null.
    QCOMPARE(sh(script, QString(), nullptr, nullptr), 0);
    QCOMPARE(SimSandbox::readFile(where), QByteArray("/dev/null\n/dev/null\n"));

    // Only output wanted: standard error is not mixed into it.
    QByteArray out;
    QCOMPARE(sh(script, QString(), &out, nullptr), 0);
    QCOMPARE(out, QByteArray("to-out\n"));
    QVERIFY(SimSandbox::readFile(where).endsWith("\n/dev/null\n"));

    // Only the error text wanted.
    QString err;
    QCOMPARE(sh(script, QString(), nullptr, &err), 0);
    QCOMPARE(err, QStringLiteral("to-err\n"));
    QVERIFY(SimSandbox::readFile(where).startsWith("/dev/null\n"));
}

void TestProcessRunner::argumentsNullEmptyAndGiven_data()
{
    QTest::addColumn<std::optional<QStringList>>("arguments");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("null") << std::optional<QStringList>() << QByteArray("0:");
    QTest::newRow("empty") << std::optional<QStringList>(QStringList {}) << QByteArray("0:");
    QTest::newRow("with spaces and empties")
        << std::optional<QStringList>(QStringList { QStringLiteral("a b"), QString(), QStringLiteral("--x=\"y\"") })
        << QByteArray("3:[a b][][--x=\"y\"]");
}

void TestProcessRunner::argumentsNullEmptyAndGiven()
{
    QFETCH(std::optional<QStringList>, arguments);
    QFETCH(QByteArray, expected);

    const QString script = m_scratch + QStringLiteral("/argv.sh");
    QVERIFY(SimSandbox::writeFile(
        script, "#!/bin/sh\nprintf '%s:' \"$#\"; for a in \"$@\"; do printf '[%s]' \"$a\"; done\n"));
    QFile::setPermissions(script, QFile::ReadOwner | QFile::ExeOwner);
    QByteArray out;
    QCOMPARE(runExecutable(script, arguments, QString(), &out, nullptr), 0);
    QCOMPARE(out, expected);
}

void TestProcessRunner::environmentReplacesOursWhenGiven()
{
    qputenv("LUMEX_RUNNER_PROBE", "inherited");
    QByteArray out;
    QCOMPARE(runExecutable(QStringLiteral("/usr/bin/env"), std::nullopt, QString(), &out, nullptr,
                 QStringList { QStringLiteral("ONLY=this one") }),
        0);
    QCOMPARE(out, QByteArray("ONLY=this one\n"));

    QCOMPARE(runExecutable(QStringLiteral("/usr/bin/env"), std::nullopt, QString(), &out, nullptr), 0);
    QVERIFY(out.contains("LUMEX_RUNNER_PROBE=inherited\n"));
    qunsetenv("LUMEX_RUNNER_PROBE");
}

void TestProcessRunner::exitStatusPassesThrough_data()
{
    QTest::addColumn<int>("status");
    QTest::newRow("0") << 0;
    QTest::newRow("1") << 1;
    QTest::newRow("26") << 26;
    QTest::newRow("255") << 255;
}

void TestProcessRunner::exitStatusPassesThrough()
{
    QFETCH(int, status);
    QByteArray out;
    QString err;
    QCOMPARE(sh(QStringLiteral("echo o; echo e >&2; exit %1").arg(status), QString(), &out, &err), status);
    QCOMPARE(out, QByteArray("o\n"));
    QCOMPARE(err, QStringLiteral("e\n"));
}

void TestProcessRunner::killedBySignalGivesSignalNumber_data()
{
    QTest::addColumn<int>("signalNumber");
    QTest::newRow("SIGKILL") << int(SIGKILL);
    QTest::newRow("SIGTERM") << int(SIGTERM);
    QTest::newRow("SIGSEGV") << int(SIGSEGV);
}

void TestProcessRunner::killedBySignalGivesSignalNumber()
{
    QFETCH(int, signalNumber);
    m_sim->setFaults({ { QStringLiteral("--list_uploads"),
        QVariantMap {
            { QStringLiteral("stdout"), QStringLiteral("never") }, { QStringLiteral("signal"), signalNumber } } } });
    QByteArray out;
    QString err;
    const int32_t status = runExecutable(m_sim->tool(QStringLiteral("orvxexec")),
        QStringList { QStringLiteral("--list_uploads") }, QString(), &out, &err);
    QCOMPARE(status, signalNumber);
    QVERIFY(out.isEmpty());
}

void TestProcessRunner::largeStderrBeforeStdoutArrivesWhole()
{
    // 8 MB on standard error before a single byte of output: a runner that
    // reads output to its end first would never finish.
    const qint64 errBytes = 8 * 1024 * 1024;
    const qint64 outBytes = 3 * 1024 * 1024 + 17;
    m_sim->setFaults({ { QStringLiteral("--list_uploads"),
        QVariantMap { { QStringLiteral("stderr_flood"), errBytes }, { QStringLiteral("stdout_flood"), outBytes },
            { QStringLiteral("status"), 4 } } } });
    QByteArray out;
    QString err;
    const int32_t status = runExecutable(m_sim->tool(QStringLiteral("orvxexec")),
        QStringList { QStringLiteral("--list_uploads") }, QString(), &out, &err);
    QCOMPARE(status, 4);
    QCOMPARE(qint64(err.size()), errBytes);
    QCOMPARE(qint64(out.size()), outBytes);
    QVERIFY(err.endsWith(QLatin1Char('\n')));
    QCOMPARE(err.count(QLatin1Char('x')) + err.count(QLatin1Char('\n')), qsizetype(errBytes));
}

void TestProcessRunner::largeInputToChildThatQuitsOrEchoes()
{
    const QString input(2 * 1024 * 1024, QLatin1Char('p'));

    // A child that never reads its input: no SIGPIPE ends us.
    QByteArray out;
    QCOMPARE(sh(QStringLiteral("echo gone"), input, &out, nullptr), 0);
    QCOMPARE(out, QByteArray("gone\n"));

    // A child that echoes its input while we write it. Run on a thread so
    // that a deadlock is reported (and the child ended) instead of hanging.
    std::atomic<bool> done = false;
    int32_t status = -100;
    QByteArray echoed;
    std::thread worker([&] {
        status = runExecutable(QStringLiteral("/bin/cat"), std::nullopt, input, &echoed, nullptr);
        done = true;
    });
    (void)QTest::qWaitFor([&] { return done.load(); }, 5000);
    const bool finished = done.load();
    if (!finished) {
        for (qint64 pid : childrenRunning(QFileInfo(QStringLiteral("/bin/cat")).canonicalFilePath()))
            ::kill(pid_t(pid), SIGKILL);
    }
    worker.join();
    QVERIFY2(finished, "runExecutable deadlocked writing input while the child's output pipe was full");
    QCOMPARE(status, 0);
    QCOMPARE(echoed.size(), input.size());
}

void TestProcessRunner::cannotRunGivesMinusOne_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("null path") << QStringLiteral("null");
    QTest::newRow("empty path") << QStringLiteral("empty");
    QTest::newRow("missing file") << QStringLiteral("missing");
    QTest::newRow("not executable") << QStringLiteral("noexec");
}

void TestProcessRunner::cannotRunGivesMinusOne()
{
    QFETCH(QString, kind);
    QString path;
    if (kind == QLatin1String("empty"))
        path = QStringLiteral("");
    else if (kind == QLatin1String("missing"))
        path = m_scratch + QStringLiteral("/no-such-tool");
    else if (kind == QLatin1String("noexec")) {
        path = m_scratch + QStringLiteral("/plain-file");
        QVERIFY(SimSandbox::writeFile(path, "#!/bin/sh\nexit 0\n"));
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
    }
    QByteArray out = "untouched";
    QString err = QStringLiteral("untouched");
    QCOMPARE(runExecutable(path, QStringList { QStringLiteral("x") }, QStringLiteral("pw"), &out, &err), -1);
    QCOMPARE(out, QByteArray("untouched"));
}

void TestProcessRunner::folderAtToolPathThrows()
{
    const QString folder = m_scratch + QStringLiteral("/a-folder");
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(isExecutableFile(folder)); // a searchable folder passes the test
    QByteArray out;
    QString err;
    QVERIFY_THROWS_EXCEPTION(ProcessStartError, runExecutable(folder, std::nullopt, QStringLiteral("pw"), &out, &err));
}

void TestProcessRunner::folderAtToolPathReachesDelegateAsError()
{
    m_sim->removeTool(QStringLiteral("orvxexec"));
    QVERIFY(QDir().mkpath(m_sim->tool(QStringLiteral("orvxexec"))));

    Log::Capture log;
    auto interface = OrvaneServerInterface::create(
        { { QStringLiteral("server"), SimSandbox::kServerHost }, { QStringLiteral("user"), QStringLiteral("demo") },
            { QStringLiteral("password"), QStringLiteral("lumex") } },
        std::make_shared<PodcastJob>());

    QObject delegate;
    bool called = false;
    bool onMainThread = false;
    std::optional<QVariantList> list = QVariantList {};
    std::optional<Error> error;
    interface->getWorkflowsForDelegate(
        &delegate, [&](const std::optional<QVariantList> &l, const std::optional<Error> &e) {
            called = true;
            onMainThread = QThread::currentThread() == qApp->thread();
            list = l;
            error = e;
        });
    QTRY_VERIFY(called);
    QVERIFY(onMainThread);
    QVERIFY(!list);
    QVERIFY(error);
    QCOMPARE(error->domain, kServerInterfaceErrorDomain);
    QCOMPARE(error->code, -1);
    QVERIFY(error->localizedDescription.contains(m_sim->tool(QStringLiteral("orvxexec"))));
    bool logged = false;
    for (const QString &line : log.lines())
        logged = logged || line.startsWith(QLatin1String("Uncaught exception in a worker thread: "));
    QVERIFY2(logged, qPrintable(log.lines().join(QLatin1Char('\n'))));

    // The job pattern catches it the same way.
    bool jobCalled = false;
    std::optional<Error> jobError;
    interface->job()->setCamera({ { QStringLiteral("name"), QStringLiteral("Studio 2") } });
    interface->pauseRemoteJobWithDelegate(&delegate, [&](const std::optional<Error> &e) {
        jobCalled = true;
        jobError = e;
    });
    QTRY_VERIFY(jobCalled);
    QVERIFY(jobError);
    QCOMPARE(jobError->code, -1);
}

QTEST_GUILESS_MAIN(TestProcessRunner)
#include "tst_processrunner.moc"
