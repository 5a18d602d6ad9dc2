#include "Error.h"
#include "Format.h"
#include "Log.h"

#include <QtTest>
#include <thread>

class TestFormat : public QObject
{
    Q_OBJECT

private slots:
    void formatsTheSystemsTexts_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("expected");
        QTest::newRow("nil object") << lxFormat(QStringLiteral("%@\n%@"), { QStringLiteral("out"), QString() })
                                    << QStringLiteral("out\n(null)");
        QTest::newRow("empty is not nil")
            << lxFormat(QStringLiteral("[%@]"), { QStringLiteral("") }) << QStringLiteral("[]");
        QTest::newRow("negative status") << lxFormat(QStringLiteral("status: %d."), { -1 })
                                         << QStringLiteral("status: -1.");
        QTest::newRow("padded clock") << lxFormat(QStringLiteral("%02d:%02d:%02d"), { 1, 2, 3 })
                                      << QStringLiteral("01:02:03");
        QTest::newRow("length modifiers")
            << lxFormat(QStringLiteral("%ld/%lu/%lld"), { 7, 8u, 9LL }) << QStringLiteral("7/8/9");
        QTest::newRow("percent") << lxFormat(QStringLiteral("100%% done %@"), { QStringLiteral("x") })
                                 << QStringLiteral("100% done x");
        QTest::newRow("missing argument")
            << lxFormat(QStringLiteral("a %@ b %d"), { QStringLiteral("x") }) << QStringLiteral("a x b 0");
        QTest::newRow("quoted value") << lxFormat(
            QStringLiteral("%@=\"%@\""), { QStringLiteral("Key"), QStringLiteral("a b") })
                                      << QStringLiteral("Key=\"a b\"");
        QTest::newRow("non-ascii") << lxFormat(QStringLiteral("Grüße %@"), { QStringLiteral("Zoë") })
                                   << QStringLiteral("Grüße Zoë");
    }

    void formatsTheSystemsTexts()
    {
        QFETCH(QString, format);
        QFETCH(QString, expected);
        QCOMPARE(format, expected);
    }

    void describesErrors()
    {
        const Error e { kServerInterfaceErrorDomain, 26, QStringLiteral("Authentication failed") };
        const QString text = describeError(e);
        QVERIFY(text.contains(QStringLiteral("PodcastServerInteraceErrorDomain")));
        QVERIFY(text.contains(QStringLiteral("26")));
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
        QVERIFY(outer.contains(QStringLiteral("after")));
    }
};

QTEST_GUILESS_MAIN(TestFormat)
#include "tst_format.moc"
