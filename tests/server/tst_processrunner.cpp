// The process layer against real children: runExecutable with /bin/sh
// scripts and the simulator's server tool (floods, hangs), and the real
// pkexec on a private system bus for the privileged launcher's statuses.

#include "PolkitBus.h"
#include "SimSandbox.h"

#include "Log.h"
#include "OrvaneServerInterface.h"
#include "ProcessRunner.h"

#include <QThread>

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <thread>

namespace {

int32_t sh(const QString &script, const QString &input, QByteArray *out, QString *err)
{
    return runExecutable(QStringLiteral("/bin/sh"), QStringList { QStringLiteral("-c"), script }, input, out, err);
}

} // namespace

class TestProcessRunner : public QObject
{
    Q_OBJECT

    QString m_scratch;
    std::unique_ptr<SimSandbox> m_sim;
    std::unique_ptr<PolkitBus> m_polkit; // started by the first test that needs it

    QString script(const QString &name, const QByteArray &body) const
    {
        const QString path = m_scratch + QLatin1Char('/') + name;
        if (!SimSandbox::writeFile(path, "#!/bin/sh\n" + body))
            return QString();
        QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner);
        return path;
    }

private slots:
    void initTestCase()
    {
        m_sim = std::make_unique<SimSandbox>();
        m_scratch = m_sim->path() + QStringLiteral("/scratch");
        QVERIFY(QDir().mkpath(m_scratch));
    }

    void cleanupTestCase() { m_polkit.reset(); }

    void init()
    {
        m_sim->clearFaults();
        QVERIFY(m_sim->installTools());
    }

    void standardInput_data()
    {
        QTest::addColumn<QString>("input");
        QTest::addColumn<QString>("kind");
        QTest::newRow("null input is /dev/null") << QString() << QStringLiteral("/dev/null");
        QTest::newRow("empty input is a pipe at end of file") << QStringLiteral("") << QStringLiteral("pipe:");
        QTest::newRow("text is written once, no line end")
            << QStringLiteral("s\u00e9cret pass") << QStringLiteral("pipe:");
    }

    void standardInput()
    {
        QFETCH(QString, input);
        QFETCH(QString, kind);
        QByteArray out;
        QString err;
        QCOMPARE(sh(QStringLiteral("readlink /proc/self/fd/0; cat"), input, &out, &err), 0);
        QCOMPARE(err, QString());
        QVERIFY2(out.startsWith(kind.toUtf8()), out.constData());
        QCOMPARE(out.mid(out.indexOf('\n') + 1), input.toUtf8());
    }

    void childGetsOnlyItsStreamsAndDefaultSigpipe()
    {
        // A descriptor someone opened without close-on-exec must not leak.
        const int stray = ::open("/dev/null", O_RDONLY);
        const QString where = m_scratch + QStringLiteral("/fds");
        const QString script
            = QStringLiteral("o=$(readlink /proc/$$/fd/1); e=$(readlink /proc/$$/fd/2);"
                             " f=$(ls /proc/$$/fd); s=$(awk '/^SigIgn/ {print $2}' /proc/$$/status);"
                             " printf '%s\\n' \"$s\" \"$o\" \"$e\" \"$f\" > '%1'; echo to-out; echo to-err >&2")
                  .arg(where);

        QCOMPARE(sh(script, QString(), nullptr, nullptr), 0);
        ::close(stray);
        const QList<QByteArray> seen = SimSandbox::readFile(where).split('\n');
        // 3 is the shell's own pipe reading the "$(ls)".
        QCOMPARE(seen.mid(1), (QList<QByteArray> { "/dev/null", "/dev/null", "0", "1", "2", "3", "" }));
        // SIGPIPE is ignored here, but the child must have it back.
        QCOMPARE(seen.at(0).toULongLong(nullptr, 16) & (1ULL << (SIGPIPE - 1)), 0ULL);

        // Standard error is never mixed into the output, nor the reverse.
        QByteArray out;
        QString err;
        QCOMPARE(sh(script, QString(), &out, nullptr), 0);
        QCOMPARE(out, QByteArray("to-out\n"));
        QCOMPARE(sh(script, QString(), nullptr, &err), 0);
        QCOMPARE(err, QStringLiteral("to-err\n"));
    }

    void arguments_data()
    {
        QTest::addColumn<std::optional<QStringList>>("arguments");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("null") << std::optional<QStringList>() << QByteArray("0:");
        QTest::newRow("empty") << std::optional<QStringList>(QStringList {}) << QByteArray("0:");
        QTest::newRow("with spaces and empties")
            << std::optional<QStringList>(QStringList { QStringLiteral("a b"), QString(), QStringLiteral("--x=\"y\"") })
            << QByteArray("3:[a b][][--x=\"y\"]");
    }

    void arguments()
    {
        QFETCH(std::optional<QStringList>, arguments);
        QFETCH(QByteArray, expected);
        const QString argv = script(
            QStringLiteral("argv.sh"), "printf '%s:' \"$#\"; for a in \"$@\"; do printf '[%s]' \"$a\"; done\n");
        QByteArray out;
        QCOMPARE(runExecutable(argv, arguments, QString(), &out, nullptr), 0);
        QCOMPARE(out, expected);
    }

    void environmentReplacesOursWhenGiven()
    {
        qputenv("LUMEX_RUNNER_PROBE", "inherited");
        const QString env = QStringLiteral("/usr/bin/env");
        QByteArray out;
        QCOMPARE(
            runExecutable(env, std::nullopt, QString(), &out, nullptr, QStringList { QStringLiteral("ONLY=this one") }),
            0);
        QCOMPARE(out, QByteArray("ONLY=this one\n"));
        QCOMPARE(runExecutable(env, std::nullopt, QString(), &out, nullptr), 0);
        QVERIFY(out.contains("LUMEX_RUNNER_PROBE=inherited\n"));
        qunsetenv("LUMEX_RUNNER_PROBE");
    }

    void exitStatusOrSignalNumber_data()
    {
        QTest::addColumn<QString>("end");
        QTest::addColumn<int>("status");
        for (int status : { 0, 1, 26, 255 })
            QTest::addRow("exit %d", status) << QStringLiteral("exit %1").arg(status) << status;
        // A crash is never reported as success.
        for (int signal : { SIGKILL, SIGTERM, SIGSEGV })
            QTest::addRow("signal %d", signal) << QStringLiteral("kill -%1 $$").arg(signal) << signal;
    }

    void exitStatusOrSignalNumber()
    {
        QFETCH(QString, end);
        QFETCH(int, status);
        QByteArray out;
        QString err;
        QCOMPARE(sh(QStringLiteral("echo o; echo e >&2; ") + end, QString(), &out, &err), status);
        QCOMPARE(out, QByteArray("o\n"));
        QCOMPARE(err, QStringLiteral("e\n"));
    }

    void largeStderrBeforeStdoutArrivesWhole()
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
        QCOMPARE(runExecutable(m_sim->tool(QStringLiteral("orvxexec")),
                     QStringList { QStringLiteral("--list_uploads") }, QString(), &out, &err),
            4);
        QCOMPARE(qint64(err.size()), errBytes);
        QCOMPARE(qint64(out.size()), outBytes);
        QCOMPARE(err.count(QLatin1Char('x')) + err.count(QLatin1Char('\n')), qsizetype(errBytes));
    }

    void largeInputToChildThatQuitsOrEchoes()
    {
        const QString input(2 * 1024 * 1024, QLatin1Char('p'));
        // A child that never reads its input: no SIGPIPE ends us.
        QByteArray out;
        QCOMPARE(sh(QStringLiteral("echo gone"), input, &out, nullptr), 0);
        QCOMPARE(out, QByteArray("gone\n"));

        // A child that echoes while we write. On a thread, so that a deadlock
        // is reported (and the child ended) instead of hanging.
        std::atomic<bool> done = false;
        int32_t status = -100;
        std::thread worker([&] {
            status = runExecutable(QStringLiteral("/bin/cat"), std::nullopt, input, &out, nullptr);
            done = true;
        });
        const bool finished = QTest::qWaitFor([&] { return done.load(); }, 5000);
        if (!finished) {
            for (qint64 pid : childrenRunning(QFileInfo(QStringLiteral("/bin/cat")).canonicalFilePath()))
                ::kill(pid_t(pid), SIGKILL);
        }
        worker.join();
        QVERIFY2(finished, "runExecutable deadlocked writing input while the child's output pipe was full");
        QCOMPARE(status, 0);
        QCOMPARE(out.size(), input.size());
    }

    void cannotRun_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("throws");
        QTest::newRow("null path") << QString() << false;
        QTest::newRow("empty path") << QStringLiteral("") << false;
        QTest::newRow("missing file") << m_scratch + QStringLiteral("/no-such-tool") << false;
        const QString plain = m_scratch + QStringLiteral("/plain-file");
        SimSandbox::writeFile(plain, "#!/bin/sh\nexit 0\n");
        QFile::setPermissions(plain, QFile::ReadOwner | QFile::WriteOwner);
        QTest::newRow("not executable") << plain << false;
        // A searchable folder passes the executable test but cannot start.
        QDir().mkpath(m_scratch + QStringLiteral("/a-folder"));
        QTest::newRow("folder") << m_scratch + QStringLiteral("/a-folder") << true;
    }

    void cannotRun()
    {
        QFETCH(QString, path);
        QFETCH(bool, throws);
        QByteArray out = "untouched";
        QString err;
        const auto run = [&] {
            return runExecutable(path, QStringList { QStringLiteral("x") }, QStringLiteral("pw"), &out, &err);
        };
        if (throws)
            QVERIFY_THROWS_EXCEPTION(ProcessStartError, run());
        else
            QCOMPARE(run(), -1);
        QCOMPARE(out, QByteArray("untouched"));
    }

    void folderAtToolPathReachesCallbacksAsError()
    {
        m_sim->removeTool(QStringLiteral("orvxexec"));
        QVERIFY(QDir().mkpath(m_sim->tool(QStringLiteral("orvxexec"))));
        Log::Capture log;
        auto interface = OrvaneServerInterface::create(
            { { QStringLiteral("server"), SimSandbox::kServerHost }, { QStringLiteral("user"), QStringLiteral("demo") },
                { QStringLiteral("password"), QStringLiteral("lumex") } },
            std::make_shared<PodcastJob>());
        interface->job()->setCamera({ { QStringLiteral("name"), QStringLiteral("Studio 2") } });

        QObject delegate;
        int calls = 0;
        bool onMainThread = true;
        std::optional<QVariantList> list = QVariantList {};
        QList<std::optional<Error>> errors;
        interface->getWorkflowsForDelegate(
            &delegate, [&](const std::optional<QVariantList> &l, const std::optional<Error> &e) {
                ++calls;
                onMainThread = QThread::currentThread() == qApp->thread();
                list = l;
                errors << e;
            });
        // The job pattern catches it the same way.
        interface->pauseRemoteJobWithDelegate(&delegate, [&](const std::optional<Error> &e) {
            ++calls;
            errors << e;
        });
        QTRY_COMPARE(calls, 2);
        QVERIFY(onMainThread);
        QVERIFY(!list);
        for (const std::optional<Error> &error : errors) {
            QVERIFY(error);
            QCOMPARE(error->domain, kServerInterfaceErrorDomain);
            QCOMPARE(error->code, -1);
        }
        QVERIFY(errors.at(0)->localizedDescription.contains(m_sim->tool(QStringLiteral("orvxexec"))));
        QVERIFY2(
            log.lines().filter(QRegularExpression(QStringLiteral("^Uncaught exception in a worker thread: "))).size()
                >= 1,
            qPrintable(log.lines().join(QLatin1Char('\n'))));
    }

    void pkexecStatuses_data()
    {
        QTest::addColumn<QString>("pkexec");
        QTest::addColumn<int>("helperStatus");
        QTest::addColumn<int>("status");
        const QString real = QStringLiteral("/usr/bin/pkexec");
        QTest::newRow("helper ran") << real << 0 << 0;
        QTest::newRow("helper failed: its output decides") << real << 3 << 0;
        QTest::newRow("127: not authorised") << real << 127 << int(PrivilegedLauncher::kNotAuthorized);
        QTest::newRow("126: dismissed") << real << 126 << int(PrivilegedLauncher::kCanceled);
        QTest::newRow("pkexec cannot start")
            << m_scratch + QStringLiteral("/no-pkexec") << 0 << int(PrivilegedLauncher::kCannotLaunch);
    }

    void pkexecStatuses()
    {
        QFETCH(QString, pkexec);
        QFETCH(int, helperStatus);
        QFETCH(int, status);
        if (QFile::exists(pkexec)) {
            if (!m_polkit)
                m_polkit = std::make_unique<PolkitBus>();
            if (!m_polkit->running())
                QSKIP(m_polkit->skipReason().constData());
        }
        const QString helper
            = script(QStringLiteral("helper.sh"), QByteArray("id -u; cat; exit ") + QByteArray::number(helperStatus));
        const QByteArray input = "pass word";
        QByteArray output = "untouched";
        QCOMPARE(PkexecLauncher(pkexec).execute(helper, {}, &input, &output), status);
        // Through pkexec, the helper runs as root and gets the pipe.
        if (QFile::exists(pkexec))
            QCOMPARE(output, QByteArray("0\npass word"));
    }
};

QTEST_GUILESS_MAIN(TestProcessRunner)
#include "tst_processrunner.moc"
