// The process layer against real children: runExecutable with /bin/sh
// scripts and the simulator's server tool (floods), and the real pkexec and
// pkcheck on a private system bus for the privileged launcher's statuses.

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

using namespace Qt::StringLiterals;

class TestProcessRunner : public QObject
{
    Q_OBJECT

    std::unique_ptr<SimSandbox> m_sim;
    std::unique_ptr<PolkitBus> m_polkit; // started by the first test that needs it

    QString scratch(const QString &name) const { return m_sim->path() + u"/scratch/"_s + name; }
    QString script(const QString &name, const QByteArray &body) const
    {
        SimSandbox::writeFile(scratch(name), "#!/bin/sh\n" + body);
        QFile::setPermissions(scratch(name), QFile::ReadOwner | QFile::ExeOwner);
        return scratch(name);
    }
    static int32_t sh(const QString &script, const QString &input, QByteArray *out, QString *err)
    {
        return runExecutable(u"/bin/sh"_s, QStringList { u"-c"_s, script }, input, out, err);
    }

private slots:
    void initTestCase() { m_sim = std::make_unique<SimSandbox>(); }
    void cleanupTestCase() { m_polkit.reset(); }
    void init()
    {
        m_sim->clearFaults();
        QVERIFY(m_sim->installTools());
    }

    void argumentsInputAndStatus_data()
    {
        QTest::addColumn<std::optional<QStringList>>("arguments");
        QTest::addColumn<QString>("input");
        QTest::addColumn<QString>("end");
        QTest::addColumn<QByteArray>("output");
        QTest::addColumn<int>("status");
        const auto none = std::optional<QStringList>();
        QTest::newRow("no arguments, null input is /dev/null")
            << none << QString() << u"exit 0"_s << QByteArray("0:\n/dev/null\n") << 0;
        QTest::newRow("empty arguments, empty input is a pipe at its end")
            << std::optional(QStringList {}) << u""_s << u"exit 1"_s << QByteArray("0:\npipe\n") << 1;
        QTest::newRow("spaces and empties, text written once with no line end")
            << std::optional(QStringList { u"a b"_s, QString(), u"--x=\"y\""_s }) << u"s\u00e9cret pass"_s
            << u"exit 255"_s
            << QByteArray("3:[a b][][--x=\"y\"]\npipe\ns\xc3\xa9"
                          "cret pass")
            << 255;
        QTest::newRow("exit 26") << none << QString() << u"exit 26"_s << QByteArray("0:\n/dev/null\n") << 26;
        // A crash is never reported as success: the signal number comes back.
        for (int signal : { SIGKILL, SIGTERM, SIGSEGV })
            QTest::addRow("signal %d", signal)
                << none << QString() << u"kill -%1 $$"_s.arg(signal) << QByteArray("0:\n/dev/null\n") << signal;
    }

    void argumentsInputAndStatus()
    {
        QFETCH(std::optional<QStringList>, arguments);
        QFETCH(QString, input);
        QFETCH(QString, end);
        QFETCH(QByteArray, output);
        QFETCH(int, status);
        const QString tool = script(u"tool.sh"_s,
            "printf '%s:' \"$#\"; for a in \"$@\"; do printf '[%s]' \"$a\"; done; echo\n"
            "case $(readlink /proc/self/fd/0) in pipe:*) echo pipe;; *) readlink /proc/self/fd/0;; esac\n"
            "cat; echo e >&2; "
                + end.toUtf8() + "\n");
        QByteArray out;
        QString err;
        QCOMPARE(runExecutable(tool, arguments, input, &out, &err), status);
        QCOMPARE(out, output);
        QCOMPARE(err, u"e\n"_s);
    }

    void childGetsOnlyItsStreamsAndDefaultSigpipe()
    {
        // A descriptor someone opened without close-on-exec must not leak.
        const int stray = ::open("/dev/null", O_RDONLY);
        const QString where = scratch(u"fds"_s);
        const QString script
            = QStringLiteral("o=$(readlink /proc/$$/fd/1); e=$(readlink /proc/$$/fd/2);"
                             " f=$(ls /proc/$$/fd); s=$(awk '/^SigIgn/ {print $2}' /proc/$$/status);"
                             " printf '%s\\n' \"$s\" \"$o\" \"$e\" \"$f\" > '%1'; echo out; echo err >&2")
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
        QCOMPARE(sh(script, QString(), &out, nullptr) + sh(script, QString(), nullptr, &err), 0);
        QCOMPARE(out + err.toUtf8(), QByteArray("out\nerr\n"));
    }

    void largeStderrBeforeStdoutArrivesWhole()
    {
        // 8 MB on standard error before a single byte of output: a runner that
        // reads output to its end first would never finish.
        const qint64 errBytes = 8 * 1024 * 1024, outBytes = 3 * 1024 * 1024 + 17;
        m_sim->setFaults({ { u"--list_uploads"_s,
            QVariantMap { { u"stderr_flood"_s, errBytes }, { u"stdout_flood"_s, outBytes }, { u"status"_s, 4 } } } });
        QByteArray out;
        QString err;
        QCOMPARE(
            runExecutable(m_sim->tool(u"orvxexec"_s), QStringList { u"--list_uploads"_s }, QString(), &out, &err), 4);
        QCOMPARE(qint64(out.size()), outBytes);
        QCOMPARE(qint64(err.size()), errBytes);
        QCOMPARE(err.count(u'x') + err.count(u'\n'), qsizetype(errBytes));
    }

    void largeInputToChildThatQuitsOrEchoes()
    {
        const QString input(2 * 1024 * 1024, u'p');
        // A child that never reads its input: no SIGPIPE ends us.
        QByteArray out;
        QCOMPARE(sh(u"echo gone"_s, input, &out, nullptr), 0);
        QCOMPARE(out, QByteArray("gone\n"));

        // A child that echoes while we write. On a thread, so that a deadlock
        // is reported (and the child ended) instead of hanging.
        std::atomic<int32_t> status = -100;
        std::thread worker([&] { status = runExecutable(u"/bin/cat"_s, std::nullopt, input, &out, nullptr); });
        const bool finished = QTest::qWaitFor([&] { return status != -100; }, 5000);
        for (qint64 pid : childrenRunning(QFileInfo(u"/bin/cat"_s).canonicalFilePath()))
            ::kill(pid_t(pid), SIGKILL);
        worker.join();
        QVERIFY2(finished, "runExecutable deadlocked writing input while the child's output pipe was full");
        QCOMPARE(status.load(), 0);
        QCOMPARE(out.size(), input.size());
    }

    void cannotRun_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("throws");
        QTest::newRow("null path") << QString() << false;
        QTest::newRow("empty path") << u""_s << false;
        QTest::newRow("missing file") << scratch(u"no-such-tool"_s) << false;
        SimSandbox::writeFile(scratch(u"plain"_s), "#!/bin/sh\nexit 0\n");
        QTest::newRow("not executable") << scratch(u"plain"_s) << false;
        // A searchable folder passes the executable test but cannot start.
        QDir().mkpath(scratch(u"a-folder"_s));
        QTest::newRow("folder") << scratch(u"a-folder"_s) << true;
    }

    void cannotRun()
    {
        QFETCH(QString, path);
        QFETCH(bool, throws);
        QByteArray out = "untouched";
        const auto run = [&] { return runExecutable(path, QStringList { u"x"_s }, u"pw"_s, &out, nullptr); };
        if (throws)
            QVERIFY_THROWS_EXCEPTION(ProcessStartError, run());
        else
            QCOMPARE(run(), -1);
        QCOMPARE(out, QByteArray("untouched"));
    }

    void folderAtToolPathReachesCallbacksAsError()
    {
        m_sim->removeTool(u"orvxexec"_s);
        QVERIFY(QDir().mkpath(m_sim->tool(u"orvxexec"_s)));
        Log::Capture log;
        auto interface = OrvaneServerInterface::create(
            Credentials { u"demo"_s, u"lumex"_s, SimSandbox::kServerHost }, std::make_shared<PodcastJob>());
        interface->job()->setCamera({ { u"name"_s, u"Studio 2"_s } });
        QObject delegate;
        bool onMainThread = true;
        std::optional<QVariantList> list = QVariantList {};
        QList<std::optional<Error>> errors;
        const auto done = [&](const std::optional<Error> &e) {
            onMainThread = onMainThread && QThread::currentThread() == qApp->thread();
            errors << e;
        };
        interface->getWorkflowsForDelegate(&delegate, [&](const std::optional<QVariantList> &l, auto e) {
            list = l;
            done(e);
        });
        interface->pauseRemoteJobWithDelegate(&delegate, done); // the job pattern catches it too
        QTRY_COMPARE(errors.size(), 2);
        QVERIFY(onMainThread);
        QVERIFY(!list);
        for (const std::optional<Error> &error : errors)
            QCOMPARE(error.value_or(Error {}).code, -1);
        QCOMPARE(errors.at(0)->domain, kServerInterfaceErrorDomain);
        QVERIFY(errors.at(0)->localizedDescription.contains(m_sim->tool(u"orvxexec"_s)));
        QVERIFY2(!log.lines().filter(QRegularExpression(u"^Uncaught exception in a worker thread: "_s)).isEmpty(),
            qPrintable(log.lines().join(u'\n')));
    }

    void pkexecStatuses_data()
    {
        QTest::addColumn<QString>("pkexec");
        QTest::addColumn<int>("helperStatus");
        QTest::addColumn<int>("status");
        const QString real = u"/usr/bin/pkexec"_s;
        QTest::newRow("helper ran") << real << 0 << 0;
        QTest::newRow("helper failed: its output decides") << real << 3 << 0;
        QTest::newRow("127: not authorised") << real << 127 << int(PrivilegedLauncher::kNotAuthorized);
        QTest::newRow("126: dismissed") << real << 126 << int(PrivilegedLauncher::kCanceled);
        QTest::newRow("pkexec cannot start") << scratch(u"no-pkexec"_s) << 0 << int(PrivilegedLauncher::kCannotLaunch);
    }

    void pkexecStatuses()
    {
        QFETCH(QString, pkexec);
        QFETCH(int, helperStatus);
        QFETCH(int, status);
        const bool real = QFile::exists(pkexec);
        if (real && !m_polkit)
            m_polkit = std::make_unique<PolkitBus>();
        if (real && !m_polkit->running())
            QSKIP(m_polkit->skipReason().constData());
        const QString helper = script(u"helper.sh"_s, "id -u; cat; exit " + QByteArray::number(helperStatus));
        const QByteArray input = "pass word";
        QByteArray output = "untouched";
        QCOMPARE(PkexecLauncher(pkexec).execute(helper, {}, &input, &output), status);
        // Through pkexec the helper runs as root and has the pipe.
        QCOMPARE(output, real ? QByteArray("0\npass word") : QByteArray("untouched"));
    }

    void pkexecRunsTheSimulatorsAgentHelper()
    {
        if (!m_polkit)
            m_polkit = std::make_unique<PolkitBus>();
        if (!m_polkit->running())
            QSKIP(m_polkit->skipReason().constData());
        // Stops a running agent: 0 only when the helper ran as root and found its sandbox by its own path.
        QVERIFY(SimSandbox::writePlist(m_sim->state(u"agent.plist"_s), QVariantMap { { "running", true } }));
        const QStringList stop { u"agent"_s, u"stop"_s };
        QCOMPARE(
            PkexecLauncher(u"/usr/bin/pkexec"_s).execute(m_sim->tool(u"orvxctlexec"_s), stop, nullptr, nullptr), 0);
    }

    void askingForTheRightsOfAnAction_data()
    {
        QTest::addColumn<QString>("pkcheck"); // empty: the direct launcher
        QTest::addColumn<int>("status");
        QTest::newRow("direct: allowed without polkit") << QString() << 0;
        QTest::newRow("root on the bus: allowed") << u"/usr/bin/pkcheck"_s << 0;
        QTest::newRow("no pkcheck") << scratch(u"no-pkcheck"_s) << int(PrivilegedLauncher::kCannotLaunch);
        QTest::newRow("the asker gone: pkcheck ends, nothing delivered") << u"hang"_s << -1;
    }
    void askingForTheRightsOfAnAction()
    {
        QFETCH(QString, pkcheck);
        QFETCH(int, status);
        if (pkcheck == u"/usr/bin/pkcheck"_s) {
            if (!m_polkit)
                m_polkit = std::make_unique<PolkitBus>();
            if (!m_polkit->running())
                QSKIP(m_polkit->skipReason().constData());
        }
        const QString pidFile = scratch(u"pkcheck.pid"_s);
        if (pkcheck == u"hang"_s)
            pkcheck = script(u"pkcheck.sh"_s, "echo $$ > '" + pidFile.toUtf8() + "'\nexec sleep 60");
        const std::shared_ptr<PrivilegedLauncher> launcher = pkcheck.isEmpty()
            ? std::shared_ptr<PrivilegedLauncher>(std::make_shared<DirectLauncher>())
            : std::make_shared<PkexecLauncher>(u"/usr/bin/pkexec"_s, pkcheck);
        auto context = std::make_unique<QObject>();
        std::optional<ActionRight> answer;
        launcher->askRightToPerform(
            context.get(), u"org.freedesktop.policykit.exec"_s, [&](const ActionRight &right) { answer = right; });
        if (status == -1) {
            QTRY_VERIFY(readBytes(pidFile).trimmed().toInt() > 0);
            const pid_t pid = readBytes(pidFile).trimmed().toInt();
            context.reset();
            QTRY_VERIFY(::kill(pid, 0) != 0); // ended, and reaped
            QCoreApplication::processEvents();
            QVERIFY(!answer);
            return;
        }
        QTRY_VERIFY(answer);
        QCOMPARE(answer->status, status);
        QCOMPARE(answer->reason.isEmpty(), status != PrivilegedLauncher::kCannotLaunch);
    }
};

QTEST_GUILESS_MAIN(TestProcessRunner)
#include "tst_processrunner.moc"
