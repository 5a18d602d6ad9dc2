// The base layer's texts: the system's format directives, error
// descriptions, the log capture the other tests rely on, where the system
// paths go under a sysroot, and work handed from a worker to the main thread.

#include "Error.h"
#include "Format.h"
#include "Log.h"
#include "Paths.h"
#include "Threads.h"

#include <QtTest>
#include <future>
#include <stdexcept>
#include <thread>

class TestBase : public QObject
{
    Q_OBJECT

private slots:
    void formatsTheSystemsTexts()
    {
        QCOMPARE(lxFormat("%@\n%@", { QStringLiteral("out"), QString() }), "out\n(null)"); // nil object
        QCOMPARE(lxFormat("[%@]", { QStringLiteral("") }), "[]"); // empty is not nil
        QCOMPARE(lxFormat("status: %d.", { -1 }), "status: -1.");
        QCOMPARE(lxFormat("%02d:%02d:%02d", { 1, 2, 3 }), "01:02:03");
        QCOMPARE(lxFormat("%ld/%lu/%lld", { 7, 8u, 9LL }), "7/8/9");
        QCOMPARE(lxFormat("100%% done %@", { QStringLiteral("x") }), "100% done x");
        QCOMPARE(lxFormat("a %@ b %d", { QStringLiteral("x") }), "a x b 0"); // missing argument
        QCOMPARE(lxFormat("%@=\"%@\"", { QStringLiteral("Key"), QStringLiteral("a b") }), "Key=\"a b\"");
        QCOMPARE(lxFormat(QStringLiteral("Grüße %@"), { QStringLiteral("Zoë") }), QStringLiteral("Grüße Zoë"));
    }

    void describesErrors()
    {
        const QString text
            = describeError({ kServerInterfaceErrorDomain, 26, QStringLiteral("Authentication failed") });
        QVERIFY(
            text.contains(QStringLiteral("PodcastServerInteraceErrorDomain")) && text.contains(QStringLiteral("26")));
        Error out;
        setError(&out, kLumexErrorDomain, 1, QStringLiteral("x"));
        QCOMPARE(out, (Error { QStringLiteral("com.tarn.Lumex"), 1, QStringLiteral("x") }));
        setError(nullptr, kLumexErrorDomain, 1, QStringLiteral("x")); // no place given: nothing happens
    }

    void captureCollectsLinesFromEveryThread()
    {
        Log::Capture outer;
        {
            Log::Capture inner;
            std::thread worker([] { Log::format(QStringLiteral("worker %d"), { 7 }); });
            worker.join();
            Log::write(QStringLiteral("main"));
            QCOMPARE(inner.lines(), (QStringList { QStringLiteral("worker 7"), QStringLiteral("main") }));
        }
        Log::write(QStringLiteral("after"));
        QCOMPARE(outer.lines().size(), 3);
    }

    void sysrootPrefixesSystemPathsOnly()
    {
        qputenv("LUMEX_SYSROOT", "/tmp/sim-root/");
        qputenv("HOME", "/home/ann");
        QCOMPARE(Paths::orvxexec(), QStringLiteral("/tmp/sim-root/usr/libexec/orvane/orvxexec"));
        QCOMPARE(Paths::mkdirTool(), QStringLiteral("/bin/mkdir"));
        QCOMPARE(Paths::userDefaultsFile(), QStringLiteral("/home/ann/Library/Preferences/com.tarn.Lumex.plist"));
        qunsetenv("LUMEX_SYSROOT");
        QCOMPARE(Paths::kioskFile(), QStringLiteral("/Library/Preferences/com.tarn.Lumex.kiosk.plist"));
        QCOMPARE(Paths::expandTilde(QStringLiteral("~notme/x")), QStringLiteral("~notme/x"));
        QCOMPARE(Paths::expandTilde(QStringLiteral("/abs/~")), QStringLiteral("/abs/~"));

        // The job data folder is computed once per process.
        const QString first = Paths::jobDataFolder();
        QCOMPARE(first, QStringLiteral("/home/ann/Library/Application Support/Lumex"));
        qputenv("HOME", "/home/second");
        QCOMPARE(Paths::jobDataFolder(), first);
    }

    void runInBackgroundDeliversToALiveContextOnly_data()
    {
        QTest::addColumn<bool>("throws");
        QTest::addColumn<bool>("contextGone");
        QTest::addColumn<QString>("delivered");
        QTest::newRow("result to its context") << false << false << "42";
        QTest::newRow("context gone: dropped") << false << true << "";
        QTest::newRow("exception: logged, fallback delivered") << true << false << "fallback: boom";
    }
    void runInBackgroundDeliversToALiveContextOnly()
    {
        QFETCH(bool, throws);
        QFETCH(bool, contextGone);
        QFETCH(QString, delivered);
        Log::Capture log;
        auto context = std::make_unique<QObject>();
        QObject *const expected = context.get();
        std::promise<void> go;
        // Gone once the worker has ended and its result is delivered or dropped.
        auto result = std::make_shared<QString>(QStringLiteral("42"));
        const std::weak_ptr<QString> watch = result;
        QString got;
        bool onMainThread = false;
        runInBackground(
            context.get(),
            [result, ready = go.get_future().share(), throws] {
                ready.wait();
                if (throws)
                    throw std::runtime_error("boom");
                return result;
            },
            [&](QObject *self, const std::shared_ptr<QString> &value) {
                onMainThread = QThread::currentThread() == qApp->thread() && self == expected;
                got = *value;
            },
            [](const QString &failure) { return std::make_shared<QString>(QStringLiteral("fallback: ") + failure); });
        result.reset();
        if (contextGone)
            context.reset();
        go.set_value();
        QTRY_VERIFY(watch.expired());
        QCoreApplication::sendPostedEvents();
        QCOMPARE(got, delivered);
        QCOMPARE(onMainThread, !delivered.isEmpty());
        QCOMPARE(log.lines().contains(QStringLiteral("Uncaught exception in a worker thread: boom")), throws);
    }
};

QTEST_GUILESS_MAIN(TestBase)
#include "tst_base.moc"
