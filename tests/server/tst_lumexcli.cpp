// lumex-cli as a child process against a private copy of the simulator:
// what a shell user sees for a few commands.

#include "SimSandbox.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QRegularExpression>

#ifndef LUMEX_CLI
#error "LUMEX_CLI must name the built lumex-cli"
#endif

namespace {

struct CliResult
{
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

CliResult cli(const QStringList &arguments, const QByteArray &input = QByteArray())
{
    QProcess process;
    process.start(QStringLiteral(LUMEX_CLI),
        QStringList {
            QStringLiteral("--server"), SimSandbox::kServerHost, QStringLiteral("--user"), QStringLiteral("demo") }
            + arguments);
    process.waitForStarted();
    process.write(input);
    process.closeWriteChannel();
    process.waitForFinished(20000);
    CliResult result;
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.out = process.readAllStandardOutput();
    result.err = process.readAllStandardError();
    return result;
}

} // namespace

class TestLumexCli : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void workflowsPrintAPropertyList();
    void wrongPasswordExitsWithTheError_data();
    void wrongPasswordExitsWithTheError();
    void submitPrintsTheUploadThatUploadsLists();

private:
    std::unique_ptr<SimSandbox> m_sim;
};

void TestLumexCli::initTestCase()
{
    m_sim = std::make_unique<SimSandbox>(); // the child inherits HOME and LUMEX_SYSROOT
    QVERIFY(m_sim->installTools());
}

void TestLumexCli::workflowsPrintAPropertyList()
{
    const CliResult r = cli({ QStringLiteral("workflows") }, "lumex\n");
    QCOMPARE(r.exitCode, 0);
    int exitCode = -1;
    const QByteArray json = runPython(QStringLiteral("import plistlib,json,sys; print(json.dumps([w['name'] for w in "
                                                     "plistlib.loads(sys.stdin.buffer.read())]))"),
        r.out, &exitCode);
    QCOMPARE(exitCode, 0);
    const QJsonArray names = QJsonDocument::fromJson(json).array();
    QCOMPARE(names.size(), 5);
    QCOMPARE(names.first().toString(), QStringLiteral("lecture-capture"));
}

void TestLumexCli::wrongPasswordExitsWithTheError_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("text");

    const QString failed = QStringLiteral("Authentication failed for user demo.\n");
    QTest::newRow("workflows: output and error") << QStringLiteral(
        "workflows") << QStringLiteral("Connecting to %1 ...\n\n").arg(SimSandbox::kServerURL) + failed;
    QTest::newRow("cameras: error alone") << QStringLiteral("cameras") << failed;
}

void TestLumexCli::wrongPasswordExitsWithTheError()
{
    QFETCH(QString, command);
    QFETCH(QString, text);
    const CliResult r = cli({ command }, "not-lumex\n");
    QCOMPARE(r.exitCode, 1);
    QVERIFY(r.out.isEmpty());
    QCOMPARE(QString::fromUtf8(r.err),
        QStringLiteral("error: PodcastServerInteraceErrorDomain 26: ") + text + QLatin1Char('\n'));
}

void TestLumexCli::submitPrintsTheUploadThatUploadsLists()
{
    const QString movie = m_sim->path() + QStringLiteral("/lecture.mov");
    QVERIFY(SimSandbox::writeFile(movie, "movie bytes"));
    const CliResult r = cli({ QStringLiteral("submit"), QStringLiteral("--workflow"), QStringLiteral("archive-only"),
                                QStringLiteral("--title"), QStringLiteral("From the shell"), movie },
        "lumex\n");
    QCOMPARE(r.exitCode, 0);
    const QString uuid = QString::fromUtf8(r.out).trimmed();
    QVERIFY2(QRegularExpression(QStringLiteral("^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$")).match(uuid).hasMatch(),
        r.out.constData());
    QVERIFY(QFileInfo::exists(movie)); // no --delete

    const CliResult uploads = cli({ QStringLiteral("uploads") });
    QCOMPARE(uploads.exitCode, 0);
    const QVariantMap listing = PropertyList::fromXml(uploads.out).toMap();
    bool found = false;
    for (const QVariant &u : listing) {
        const QVariantMap record = u.toMap();
        if (record.value(QStringLiteral("upload_uuid")).toString() == uuid) {
            found = true;
            QCOMPARE(record.value(QStringLiteral("workflow")).toString(), QStringLiteral("archive-only"));
        }
    }
    QVERIFY2(found, uploads.out.constData());

    // A workflow the server does not know: the tool's text, exit 1.
    const CliResult bad
        = cli({ QStringLiteral("submit"), QStringLiteral("--workflow"), QStringLiteral("nope"), movie }, "lumex\n");
    QCOMPARE(bad.exitCode, 1);
    QVERIFY2(bad.err.startsWith("error: PodcastServerInteraceErrorDomain 1: "), bad.err.constData());
    QVERIFY(bad.err.contains("Unknown workflow: nope"));
}

QTEST_GUILESS_MAIN(TestLumexCli)
#include "tst_lumexcli.moc"
