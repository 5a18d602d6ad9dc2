// lumex-cli as a child process against a private copy of the simulator:
// what a shell user sees for a few commands.

#include "SimSandbox.h"

#include <QRegularExpression>

#ifndef LUMEX_CLI
#error "LUMEX_CLI must name the built lumex-cli"
#endif

class TestLumexCli : public QObject
{
    Q_OBJECT

    SimSandbox m_sim;
    ToolRun cli(const QStringList &arguments, const QByteArray &input = "lumex\n") const
    {
        return m_sim.run(QStringLiteral(LUMEX_CLI),
            QStringList { QStringLiteral("--server"), SimSandbox::kServerHost, QStringLiteral("--user"), "demo" }
                + arguments,
            input);
    }

private slots:
    void initTestCase() { QVERIFY(m_sim.reset()); }

    void workflowsPrintAPropertyList()
    {
        const ToolRun r = cli({ QStringLiteral("workflows") });
        QCOMPARE(r.status, 0);
        int exitCode = -1;
        const QByteArray names = runPython(
            QStringLiteral("import plistlib,sys; "
                           "n=[w['name'] for w in plistlib.loads(sys.stdin.buffer.read())]; print(len(n), n[0])"),
            r.out, &exitCode);
        QCOMPARE(exitCode, 0);
        QCOMPARE(names, QByteArray("5 lecture-capture\n"));
    }

    void wrongPasswordExitsWithTheError_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("text");
        const QString failed = QStringLiteral("Authentication failed for user demo.\n");
        QTest::newRow("workflows: output and error") << "workflows" << SimSandbox::progressLine() + "\n" + failed;
        QTest::newRow("cameras: error alone") << "cameras" << failed;
    }
    void wrongPasswordExitsWithTheError()
    {
        QFETCH(QString, command);
        QFETCH(QString, text);
        const ToolRun r = cli({ command }, "not-lumex\n");
        QCOMPARE(r.status, 1);
        QVERIFY(r.out.isEmpty());
        QCOMPARE(r.errorText(), "error: PodcastServerInteraceErrorDomain 26: " + text + '\n');
    }

    void submitPrintsTheUploadThatUploadsLists()
    {
        const QString movie = m_sim.path() + QStringLiteral("/lecture.mov");
        QVERIFY(SimSandbox::writeFile(movie, "movie bytes"));
        const ToolRun r = cli({ "submit", "--workflow", "archive-only", "--title", "From the shell", movie });
        QCOMPARE(r.status, 0);
        const QString uuid = r.text().trimmed();
        QVERIFY2(QRegularExpression("^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$").match(uuid).hasMatch(),
            r.out.constData());
        QVERIFY(QFileInfo::exists(movie)); // no --delete
        const ToolRun uploads = cli({ QStringLiteral("uploads") }, QByteArray());
        QCOMPARE(uploads.status, 0);
        const QVariantMap record = PropertyList::fromXml(uploads.out).toMap().value(uuid).toMap();
        QCOMPARE(record.value("workflow").toString(), QStringLiteral("archive-only"));
        // The server got the job data with the movie.
        QCOMPARE(SimSandbox::readPlist(record.value("cached_metadata_file").toString()).value("Title").toString(),
            QStringLiteral("From the shell"));

        // A workflow the server does not know: the tool's text, exit 1.
        const ToolRun bad = cli({ "submit", "--workflow", "nope", movie });
        QCOMPARE(bad.status, 1);
        QVERIFY2(bad.err.startsWith("error: PodcastServerInteraceErrorDomain 1: "), bad.err.constData());
        QVERIFY(bad.err.contains("Unknown workflow: nope"));
    }
};

QTEST_GUILESS_MAIN(TestLumexCli)
#include "tst_lumexcli.moc"
