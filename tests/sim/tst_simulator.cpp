// The bundled server simulator, driven as the client drives it: real child
// processes, real argument vectors, the password on standard input, and
// property lists read back from the tools' output and state files.

#include "PropertyList.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>

namespace {

const QString kServer = QStringLiteral("https://media.example.edu:8170/orvane");
const QStringList kTools { QStringLiteral("orvxexec"), QStringLiteral("orvxctlexec"), QStringLiteral("orvxagentd") };

struct Result
{
    int status = -1;
    bool crashed = false;
    QByteArray out;
    QByteArray err;

    QString text() const { return QString::fromUtf8(out); }
    QString errorText() const { return QString::fromUtf8(err); }
    QString firstLine() const { return text().section(QLatin1Char('\n'), 0, 0); }
    QVariantMap plist() const { return findPropertyList(text()).toMap(); }
};

QVariantMap readPlist(const QString &path)
{
    return PropertyList::readFile(path).toMap();
}

void writePlist(const QString &path, const QVariantMap &contents)
{
    QVERIFY(QDir().mkpath(QFileInfo(path).absolutePath()));
    QVERIFY(PropertyList::writeFile(path, contents, true));
}

} // namespace

class TestSimulator : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void authentication_data();
    void authentication();
    void malformedCommandLines_data();
    void malformedCommandLines();
    void listings();
    void remoteRecordingStateMachine();
    void submissionQueuesAndAdvances();
    void submissionRejectsBadInput();
    void setConfigPicksTheFile();
    void bindingAndAgentControl();
    void faultTextsStatusAndCountdown();
    void faultBeforeOrAfterAuthentication();
    void faultFloodSignalAndMissingPlist();
    void agentRecordsAMovie();
    void agentFault();

private:
    QString tool(const QString &name) const { return m_root + QStringLiteral("/usr/libexec/orvane/") + name; }
    QString state(const QString &name) const { return m_root + QStringLiteral("/var/lib/orvane-sim/") + name; }
    QString globalConfig() const { return m_root + QStringLiteral("/Library/Preferences/com.tarn.orvxagentd.plist"); }
    QString userConfig() const { return m_home + QStringLiteral("/Library/Preferences/com.tarn.orvxagentd.plist"); }
    QString writeMetadata(const QString &title) const;

    QProcessEnvironment environment(bool privileged = false) const;
    Result run(const QString &name, const QStringList &arguments, const QByteArray &input = QByteArray(),
        const QProcessEnvironment &env = QProcessEnvironment()) const;
    // A server command as the client sends it, password on standard input.
    Result server(const QStringList &command, const QByteArray &password = "lumex\n",
        const QString &user = QStringLiteral("demo")) const;
    void setFaults(const QVariantMap &faults) const { writePlist(state(QStringLiteral("faults.plist")), faults); }

    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_root;
    QString m_home;
};

void TestSimulator::init()
{
    // Each test gets its own installed copy of the tools, so its state
    // folder (derived from the tools' location) is its own too.
    const QString base = qEnvironmentVariable("LUMEX_TEST_TMP", QDir::tempPath());
    QDir().mkpath(base);
    m_dir = std::make_unique<QTemporaryDir>(base + QStringLiteral("/tst_simulator-XXXXXX"));
    QVERIFY(m_dir->isValid());
    m_root = m_dir->path() + QStringLiteral("/root");
    m_home = m_dir->path() + QStringLiteral("/home");
    QVERIFY(QDir().mkpath(m_home));
    QVERIFY(QDir().mkpath(m_root + QStringLiteral("/usr/libexec/orvane")));

    // The build places the tools in sim-root next to the test's bin folder.
    const QString built = QCoreApplication::applicationDirPath() + QStringLiteral("/../sim-root/usr/libexec/orvane/");
    for (const QString &name : kTools) {
        QVERIFY2(QFile::copy(built + name, tool(name)), qPrintable(built + name));
        QFile::setPermissions(tool(name), QFile::permissions(built + name));
    }
}

void TestSimulator::cleanup()
{
    m_dir.reset();
}

QProcessEnvironment TestSimulator::environment(bool privileged) const
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("PKEXEC_UID"));
    env.remove(QStringLiteral("ORVANE_PRIVILEGED_RUN"));
    env.insert(QStringLiteral("HOME"), m_home);
    env.insert(QStringLiteral("LUMEX_SYSROOT"), m_root);
    if (privileged)
        env.insert(QStringLiteral("ORVANE_PRIVILEGED_RUN"), QStringLiteral("1"));
    return env;
}

Result TestSimulator::run(
    const QString &name, const QStringList &arguments, const QByteArray &input, const QProcessEnvironment &env) const
{
    QProcess process;
    process.setProcessEnvironment(env.isEmpty() ? environment() : env);
    if (input.isNull())
        process.setStandardInputFile(QProcess::nullDevice());
    process.start(tool(name), arguments);
    Result result;
    if (!process.waitForStarted())
        return result;
    if (!input.isNull()) {
        process.write(input);
        process.closeWriteChannel();
    }
    process.waitForFinished(60000);
    result.crashed = process.exitStatus() == QProcess::CrashExit;
    result.status = process.exitCode();
    result.out = process.readAllStandardOutput();
    result.err = process.readAllStandardError();
    return result;
}

Result TestSimulator::server(const QStringList &command, const QByteArray &password, const QString &user) const
{
    return run(QStringLiteral("orvxexec"),
        QStringList { QStringLiteral("--server"), kServer, QStringLiteral("--user"), user } + command, password);
}

QString TestSimulator::writeMetadata(const QString &title) const
{
    const QString path = m_home + QStringLiteral("/submission-%1.plist").arg(title);
    PropertyList::writeFile(path, QVariantMap { { QStringLiteral("Title"), title } }, false);
    return path;
}

void TestSimulator::authentication_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QByteArray>("password");
    QTest::addColumn<int>("status");

    QTest::newRow("demo with line end") << "demo" << QByteArray("lumex\n") << 0;
    QTest::newRow("demo without line end") << "demo" << QByteArray("lumex") << 0;
    QTest::newRow("second user") << "lecturer" << QByteArray("chalkboard") << 0;
    QTest::newRow("wrong password") << "demo" << QByteArray("lumex2\n") << 26;
    QTest::newRow("other user's password") << "demo" << QByteArray("chalkboard") << 26;
    QTest::newRow("two line ends") << "demo" << QByteArray("lumex\n\n") << 26;
    QTest::newRow("unknown user") << "nobody" << QByteArray("lumex") << 26;
    QTest::newRow("empty input") << "demo" << QByteArray("") << 26;
}

void TestSimulator::authentication()
{
    QFETCH(QString, user);
    QFETCH(QByteArray, password);
    QFETCH(int, status);

    const Result r = server({ QStringLiteral("--listworkflows") }, password, user);
    QCOMPARE(r.status, status);
    if (status == 26) {
        QCOMPARE(r.errorText(), QStringLiteral("Authentication failed for user %1.\n").arg(user));
        QVERIFY(!r.text().contains(QLatin1String("<?xml")));
    }
    // The password must never be kept or echoed.
    QFile users(state(QStringLiteral("users.plist")));
    QVERIFY(users.open(QIODevice::ReadOnly));
    const QByteArray stored = users.readAll();
    QVERIFY(!stored.contains("lumex") && !stored.contains("chalkboard"));
    QVERIFY(!r.out.contains("lumex") && !r.err.contains("lumex"));
}

void TestSimulator::malformedCommandLines_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("http scheme") << QStringList { "--server", "http://h:8170/orvane", "--user", "demo",
        "--listcameras" };
    QTest::newRow("wrong port") << QStringList { "--server", "https://h:8171/orvane", "--user", "demo",
        "--listcameras" };
    QTest::newRow("no user") << QStringList { "--server", kServer, "--listcameras" };
    QTest::newRow("unknown option") << QStringList { "--server", kServer, "--user", "demo", "--frobnicate" };
    QTest::newRow("stray argument") << QStringList { "--server", kServer, "--user", "demo", "--pause", "Studio 2",
        "x" };
    QTest::newRow("stop without workflow")
        << QStringList { "--server", kServer, "--user", "demo", "--stop", "Studio 2", "--metadata", "/m" };
    QTest::newRow("setconfig without =") << QStringList { "--setconfig", "Capture" };
    QTest::newRow("setconfig with empty key") << QStringList { "--setconfig", "=x" };
    QTest::newRow("nothing") << QStringList {};
}

void TestSimulator::malformedCommandLines()
{
    QFETCH(QStringList, arguments);
    const Result r = run(QStringLiteral("orvxexec"), arguments, "lumex");
    QCOMPARE(r.status, 2);
    QVERIFY(r.errorText().contains(QLatin1String("usage:")));
    QVERIFY(r.out.isEmpty());
}

void TestSimulator::listings()
{
    const Result workflows = server({ QStringLiteral("--listworkflows") });
    QCOMPARE(workflows.status, 0);
    QCOMPARE(workflows.firstLine(), QStringLiteral("Connecting to %1 ...").arg(kServer));
    const QVariantList list = workflows.plist().value(QStringLiteral("workflows")).toList();
    QVERIFY(list.size() >= 4);
    QStringList titles;
    bool tooltip = false;
    for (const QVariant &v : list) {
        const QVariantMap w = v.toMap();
        QVERIFY(!w.value(QStringLiteral("name")).toString().isEmpty());
        QVERIFY(!w.value(QStringLiteral("description")).toString().isEmpty());
        const QString uuid = w.value(QStringLiteral("uuid")).toString();
        QVERIFY(
            QRegularExpression(QStringLiteral("^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$")).match(uuid).hasMatch());
        const QString title = w.value(QStringLiteral("title")).toString();
        tooltip = tooltip || title.contains(QLatin1String("\n$$$$\n"));
        titles.append(title);
    }
    QVERIFY(tooltip);
    QVERIFY(titles.removeDuplicates() > 0);

    const Result cameras = server({ QStringLiteral("--listcameras") });
    QCOMPARE(cameras.status, 0);
    const QVariantList rooms = cameras.plist().value(QStringLiteral("cameras")).toList();
    QCOMPARE(rooms.size(), 3);
    for (const QVariant &v : rooms) {
        const QVariantMap c = v.toMap();
        QCOMPARE(c.value(QStringLiteral("in_use")).toString(), QStringLiteral("false"));
        QVERIFY(c.value(QStringLiteral("preview_url"))
                    .toString()
                    .startsWith(QLatin1String("https://127.0.0.1:8171/preview/")));
    }
    QCOMPARE(rooms[0].toMap().value(QStringLiteral("preview_url")).toString(),
        QStringLiteral("https://127.0.0.1:8171/preview/Lecture%20Hall%20A.jpg"));

    QCOMPARE(
        server({ QStringLiteral("--status"), QStringLiteral("Studio 2"), QStringLiteral("--update_preview") }).status,
        0);
    QVERIFY(readPlist(state(QStringLiteral("recordings.plist")))
                .value(QStringLiteral("Studio 2"))
                .toMap()
                .contains(QStringLiteral("preview_requested_at")));
    const Result unknown
        = server({ QStringLiteral("--status"), QStringLiteral("Attic"), QStringLiteral("--update_preview") });
    QCOMPARE(unknown.status, 1);
    QCOMPARE(unknown.errorText(), QStringLiteral("No such camera: Attic\n"));
}

void TestSimulator::remoteRecordingStateMachine()
{
    const QString cam = QStringLiteral("Seminar Room");
    const auto step = [&](const QStringList &command) { return server(command).status; };
    const auto inUse = [&] {
        for (const QVariant &v :
            server({ QStringLiteral("--listcameras") }).plist().value(QStringLiteral("cameras")).toList()) {
            if (v.toMap().value(QStringLiteral("name")) == cam)
                return v.toMap().value(QStringLiteral("in_use")).toString();
        }
        return QString();
    };
    const QString metadata = writeMetadata(QStringLiteral("Remote"));

    QCOMPARE(step({ "--pause", cam }), 1);
    QCOMPARE(step({ "--stop", cam, "--metadata", metadata, "--workflow", "archive-only" }), 1);
    QCOMPARE(step({ "--start", cam, "--audio_only", "--delay", "3" }), 0);
    QCOMPARE(inUse(), QStringLiteral("true"));
    QCOMPARE(step({ "--start", cam, "--delay", "3" }), 1);
    QCOMPARE(step({ "--resume", cam }), 1);
    QCOMPARE(step({ "--pause", cam }), 0);
    QCOMPARE(step({ "--pause", cam }), 1);
    QCOMPARE(inUse(), QStringLiteral("true"));
    QCOMPARE(step({ "--resume", cam }), 0);

    // A refused stop leaves the recording running.
    const Result badWorkflow = server({ "--stop", cam, "--metadata", metadata, "--workflow", "no-such-flow" });
    QCOMPARE(badWorkflow.status, 1);
    QCOMPARE(badWorkflow.errorText(), QStringLiteral("Unknown workflow: no-such-flow\n"));
    QCOMPARE(step({ "--stop", cam, "--metadata", m_home + "/missing.plist", "--workflow", "archive-only" }), 1);
    QCOMPARE(inUse(), QStringLiteral("true"));

    QCOMPARE(step({ "--stop", cam, "--metadata", metadata, "--workflow", "archive-only" }), 0);
    QCOMPARE(inUse(), QStringLiteral("false"));
    QCOMPARE(step({ "--cancel", cam }), 1);

    const QStringList entries = QDir(state(QStringLiteral("library"))).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    QCOMPARE(entries.size(), 1);
    const QString entry = state(QStringLiteral("library/") + entries.first());
    QCOMPARE(readPlist(entry + QStringLiteral("/metadata.plist")).value(QStringLiteral("Title")).toString(),
        QStringLiteral("Remote"));
    QFile description(entry + QStringLiteral("/recording.txt"));
    QVERIFY(description.open(QIODevice::ReadOnly));
    const QByteArray text = description.readAll();
    QVERIFY(text.contains("camera: Seminar Room\n"));
    QVERIFY(text.contains("audio_only: true\n"));
    QVERIFY(text.contains("workflow: archive-only\n"));

    // Cancelling ends a recording without a library entry.
    QCOMPARE(step({ "--start", cam, "--delay", "3" }), 0);
    QCOMPARE(step({ "--cancel", cam }), 0);
    QCOMPARE(inUse(), QStringLiteral("false"));
    QCOMPARE(QDir(state(QStringLiteral("library"))).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 1);
}

void TestSimulator::submissionQueuesAndAdvances()
{
    // Two movies with the same name from different folders must both survive.
    QStringList movies;
    for (const QString &folder : { QStringLiteral("/a"), QStringLiteral("/b") }) {
        QDir().mkpath(m_home + folder);
        QFile movie(m_home + folder + QStringLiteral("/LocalAudio.mov"));
        QVERIFY(movie.open(QIODevice::WriteOnly));
        movie.write(folder.toUtf8().repeated(1000));
        movies.append(movie.fileName());
    }
    const QString metadata = writeMetadata(QStringLiteral("Local"));

    const Result r = server({ "--submit", "--file", movies[0], "--file", movies[1], "--metadata", metadata,
        "--workflow", "podcast-publishing", "--delete" });
    QCOMPARE(r.status, 0);
    const QRegularExpressionMatch first
        = QRegularExpression(QStringLiteral("^Upload UUID: ([0-9A-F-]{36})$")).match(r.firstLine());
    QVERIFY2(first.hasMatch(), qPrintable(r.text()));
    const QString uuid = first.captured(1);
    QVERIFY(!QFile::exists(movies[0]) && !QFile::exists(movies[1]));

    const auto upload = [&] {
        const Result list = run(QStringLiteral("orvxexec"), { QStringLiteral("--list_uploads") });
        return list.plist().value(uuid).toMap();
    };
    QVariantMap record = upload();
    QCOMPARE(record.value(QStringLiteral("upload_uuid")).toString(), uuid);
    QCOMPARE(record.value(QStringLiteral("status")).toString(), QStringLiteral("pending"));
    QCOMPARE(record.value(QStringLiteral("user")).toString(), QStringLiteral("demo"));
    const QStringList content = record.value(QStringLiteral("content_paths")).toStringList();
    QCOMPARE(content.size(), 2);
    QVERIFY(content[0] != content[1]);
    for (const QString &path : content)
        QVERIFY(QFileInfo(path).size() == 2000);
    QCOMPARE(readPlist(record.value(QStringLiteral("cached_metadata_file")).toString()).value(QStringLiteral("Title")),
        QVariant(QStringLiteral("Local")));

    // Back-date the submission rather than wait for the simulated upload.
    const auto submittedSecondsAgo = [&](int seconds) {
        QVariantMap uploads = readPlist(state(QStringLiteral("uploads.plist")));
        QVariantMap stored = uploads.value(uuid).toMap();
        stored.insert(QStringLiteral("submitted_at"), QDateTime::currentDateTimeUtc().addSecs(-seconds));
        uploads.insert(uuid, stored);
        writePlist(state(QStringLiteral("uploads.plist")), uploads);
    };
    submittedSecondsAgo(4);
    record = upload();
    QCOMPARE(record.value(QStringLiteral("status")).toString(), QStringLiteral("uploading"));
    const double percent = record.value(QStringLiteral("percent_done")).toDouble();
    QVERIFY2(percent > 0 && percent < 100, qPrintable(QString::number(percent)));
    QVERIFY(record.value(QStringLiteral("estimated_time_left")).toDouble() > 0);

    QCOMPARE(run(QStringLiteral("orvxexec"), { QStringLiteral("--clear_completed_uploads") }).status, 0);
    QVERIFY(!upload().isEmpty());

    submittedSecondsAgo(60);
    record = upload();
    QCOMPARE(record.value(QStringLiteral("status")).toString(), QStringLiteral("completed"));
    QCOMPARE(record.value(QStringLiteral("percent_done")).toDouble(), 100.0);
    QCOMPARE(run(QStringLiteral("orvxexec"), { QStringLiteral("--clear_completed_uploads") }).status, 0);
    QVERIFY(upload().isEmpty());
}

void TestSimulator::submissionRejectsBadInput()
{
    const QString metadata = writeMetadata(QStringLiteral("Bad"));
    const QString movie = m_home + QStringLiteral("/movie.mov");
    QFile file(movie);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("movie");
    file.close();

    Result r = server({ "--submit", "--file", movie, "--metadata", metadata, "--workflow", "nope", "--delete" });
    QCOMPARE(r.status, 1);
    QCOMPARE(r.errorText(), QStringLiteral("Unknown workflow: nope\n"));

    const QString missing = m_home + QStringLiteral("/gone.mov");
    r = server({ "--submit", "--file", movie, "--file", missing, "--metadata", metadata, "--workflow", "archive-only",
        "--delete" });
    QCOMPARE(r.status, 1);
    QVERIFY(r.errorText().contains(missing));
    QVERIFY(!r.text().contains(QLatin1String("Upload UUID")));
    QVERIFY(QFile::exists(movie));

    r = server({ "--submit", "--file", movie, "--metadata", movie, "--workflow", "archive-only" });
    QCOMPARE(r.status, 1);

    // No files at all is a valid submission.
    r = server({ "--submit", "--metadata", metadata, "--workflow", "archive-only" });
    QCOMPARE(r.status, 0);
    QVERIFY(r.firstLine().startsWith(QLatin1String("Upload UUID: ")));
    QCOMPARE(readPlist(state(QStringLiteral("uploads.plist"))).size(), 1);
}

void TestSimulator::setConfigPicksTheFile()
{
    const QString value = QStringLiteral("Audio: Best quality=yes");
    Result r = run(QStringLiteral("orvxexec"), { QStringLiteral("--setconfig"), QStringLiteral("Capture=") + value });
    QCOMPARE(r.status, 0);
    QCOMPARE(readPlist(userConfig()).value(QStringLiteral("Capture")).toString(), value);
    QVERIFY(!QFile::exists(globalConfig()));

    r = run(QStringLiteral("orvxexec"), { QStringLiteral("--setconfig"), QStringLiteral("VideoDevice=Automatic") },
        QByteArray(), environment(true));
    QCOMPARE(r.status, 0);
    QCOMPARE(readPlist(globalConfig()).value(QStringLiteral("VideoDevice")).toString(), QStringLiteral("Automatic"));
    QVERIFY(!readPlist(userConfig()).contains(QStringLiteral("VideoDevice")));

    // pkexec leaves nothing of the caller's environment: the machine-wide
    // file must still land in the tools' own tree.
    QProcessEnvironment bare;
    bare.insert(QStringLiteral("PKEXEC_UID"), QStringLiteral("1000"));
    bare.insert(QStringLiteral("PATH"), QStringLiteral("/usr/bin:/bin"));
    r = run(QStringLiteral("orvxexec"), { QStringLiteral("--setconfig"), QStringLiteral("AudioDevice=hw:1") },
        QByteArray(), bare);
    QCOMPARE(r.status, 0);
    QCOMPARE(readPlist(globalConfig()).value(QStringLiteral("AudioDevice")).toString(), QStringLiteral("hw:1"));
    QCOMPARE(readPlist(globalConfig()).value(QStringLiteral("VideoDevice")).toString(), QStringLiteral("Automatic"));
}

void TestSimulator::bindingAndAgentControl()
{
    const auto agent = [&](const char *verb, bool privileged = true) {
        return run(QStringLiteral("orvxctlexec"), { QStringLiteral("agent"), QString::fromLatin1(verb) }, QByteArray(),
            environment(privileged));
    };
    Result r = agent("start");
    QCOMPARE(r.status, 1);
    QCOMPARE(r.text(), QStringLiteral("Error: the agent is not bound to a server.\n"));

    r = server({ QStringLiteral("--bind"), QStringLiteral("Office Mac") });
    QCOMPARE(r.status, 0);
    QVERIFY(r.text().contains(QLatin1String("Successfully bound")));
    QVariantMap config = readPlist(globalConfig());
    QCOMPARE(config.value(QStringLiteral("CameraName")).toString(), QStringLiteral("Office Mac"));
    QCOMPARE(config.value(QStringLiteral("TunnelHost")).toString(), QStringLiteral("media.example.edu"));

    const auto agentCamera = [&] {
        const QVariantList list
            = server({ QStringLiteral("--listcameras") }).plist().value(QStringLiteral("cameras")).toList();
        return list.size() == 4 ? list.last().toMap() : QVariantMap();
    };
    QCOMPARE(agentCamera().value(QStringLiteral("status")).toString(), QStringLiteral("offline"));
    QCOMPARE(server({ "--start", "Office Mac", "--delay", "3" }).status, 1);

    r = agent("start", false);
    QCOMPARE(r.status, 1);
    QCOMPARE(r.text(), QStringLiteral("Error: administrator rights are required.\n"));
    r = agent("start");
    QCOMPARE(r.status, 0);
    QCOMPARE(r.text(), QStringLiteral("Agent started.\n"));
    QCOMPARE(agentCamera().value(QStringLiteral("status")).toString(), QStringLiteral("idle"));
    r = agent("start");
    QCOMPARE(r.status, 1);
    QVERIFY(r.text().startsWith(QLatin1String("Error:")));

    r = server({ QStringLiteral("--unbind"), QStringLiteral("Other Mac") });
    QCOMPARE(r.status, 1);
    QVERIFY(!r.text().contains(QLatin1String("Successfully unbound")));

    r = server({ QStringLiteral("--unbind"), QStringLiteral("Office Mac") });
    QCOMPARE(r.status, 0);
    QVERIFY(r.text().contains(QLatin1String("Successfully unbound")));
    config = readPlist(globalConfig());
    QVERIFY(!config.contains(QStringLiteral("CameraName")) && !config.contains(QStringLiteral("TunnelHost")));
    QVERIFY(agentCamera().isEmpty());

    QCOMPARE(agent("stop").text(), QStringLiteral("Agent stopped.\n"));
    r = agent("stop");
    QCOMPARE(r.status, 1);
    QVERIFY(r.text().startsWith(QLatin1String("Error:")));
    QCOMPARE(run(QStringLiteral("orvxctlexec"), { QStringLiteral("agent") }).status, 2);
}

void TestSimulator::faultTextsStatusAndCountdown()
{
    setFaults({ { QStringLiteral("--listworkflows"),
        QVariantMap { { QStringLiteral("status"), 7 }, { QStringLiteral("stdout"), QStringLiteral("partial answer\n") },
            { QStringLiteral("stderr"), QStringLiteral("server exploded\n") },
            { QStringLiteral("remaining"), 2 } } } });

    for (int i = 0; i < 2; ++i) {
        const Result r = server({ QStringLiteral("--listworkflows") });
        QCOMPARE(r.status, 7);
        QVERIFY(r.text().endsWith(QLatin1String("partial answer\n")));
        QVERIFY(!r.text().contains(QLatin1String("<?xml")));
        QCOMPARE(r.errorText(), QStringLiteral("server exploded\n"));
    }
    QVERIFY(!readPlist(state(QStringLiteral("faults.plist"))).contains(QStringLiteral("--listworkflows")));
    QCOMPARE(server({ QStringLiteral("--listworkflows") }).status, 0);

    // Faults are keyed by command: other commands run normally.
    setFaults({ { QStringLiteral("--submit"), QVariantMap { { QStringLiteral("status"), 0 } } } });
    QCOMPARE(server({ QStringLiteral("--listcameras") }).status, 0);
    const Result skipped = server({ "--submit", "--metadata", writeMetadata("x"), "--workflow", "archive-only" });
    QCOMPARE(skipped.status, 0);
    QVERIFY(!skipped.text().contains(QLatin1String("Upload UUID")));
}

void TestSimulator::faultBeforeOrAfterAuthentication()
{
    const QVariantMap fault { { QStringLiteral("status"), 5 }, { QStringLiteral("remaining"), 3 } };
    setFaults({ { QStringLiteral("--bind"), fault } });
    // A failed login never reaches the fault, and does not use it up.
    QCOMPARE(server({ QStringLiteral("--bind"), QStringLiteral("X") }, "wrong").status, 26);
    QCOMPARE(readPlist(state(QStringLiteral("faults.plist")))
                 .value(QStringLiteral("--bind"))
                 .toMap()
                 .value(QStringLiteral("remaining"))
                 .toInt(),
        3);
    QCOMPARE(server({ QStringLiteral("--bind"), QStringLiteral("X") }).status, 5);
    QCOMPARE(readPlist(state(QStringLiteral("faults.plist")))
                 .value(QStringLiteral("--bind"))
                 .toMap()
                 .value(QStringLiteral("remaining"))
                 .toInt(),
        2);

    QVariantMap early = fault;
    early.insert(QStringLiteral("before_auth"), true);
    setFaults({ { QStringLiteral("--bind"), early } });
    QCOMPARE(server({ QStringLiteral("--bind"), QStringLiteral("X") }, "wrong").status, 5);
}

void TestSimulator::faultFloodSignalAndMissingPlist()
{
    constexpr qint64 kFlood = 8 * 1024 * 1024;
    setFaults({ { QStringLiteral("--list_uploads"), QVariantMap { { QStringLiteral("stderr_flood"), kFlood } } },
        { QStringLiteral("--listcameras"), QVariantMap { { QStringLiteral("no_plist"), true } } },
        { QStringLiteral("--pause"), QVariantMap { { QStringLiteral("signal"), SIGSEGV } } },
        { QStringLiteral("--submit"), QVariantMap { { QStringLiteral("upload_error"), true } } } });

    Result r = run(QStringLiteral("orvxexec"), { QStringLiteral("--list_uploads") });
    QCOMPARE(r.status, 0);
    QCOMPARE(qint64(r.err.size()), kFlood);
    QVERIFY(r.err.startsWith("xxxx") && r.err.endsWith('\n'));
    QVERIFY(r.text().contains(QLatin1String("<?xml")));

    r = server({ QStringLiteral("--listcameras") });
    QCOMPARE(r.status, 0);
    QVERIFY(r.text().startsWith(QLatin1String("Connecting to ")));
    QVERIFY(!r.text().contains(QLatin1String("<?xml")));

    r = server({ QStringLiteral("--pause"), QStringLiteral("Studio 2") });
    QVERIFY(r.crashed);

    r = server({ "--submit", "--metadata", writeMetadata("e"), "--workflow", "archive-only" });
    QCOMPARE(r.status, 0);
    const QString uuid = r.firstLine().section(QLatin1Char(' '), -1);
    QVariantMap uploads = readPlist(state(QStringLiteral("uploads.plist")));
    QVariantMap stored = uploads.value(uuid).toMap();
    stored.insert(QStringLiteral("submitted_at"), QDateTime::currentDateTimeUtc().addSecs(-60));
    uploads.insert(uuid, stored);
    writePlist(state(QStringLiteral("uploads.plist")), uploads);
    setFaults({});
    r = run(QStringLiteral("orvxexec"), { QStringLiteral("--list_uploads") });
    QCOMPARE(r.plist().value(uuid).toMap().value(QStringLiteral("status")).toString(), QStringLiteral("error"));
}

void TestSimulator::agentRecordsAMovie()
{
    // The recording itself is checked in tests/capture; here only the
    // contract the client relies on: signals steer it, SIGTERM ends it with
    // status 0 and a movie file.
    writePlist(userConfig(),
        { { QStringLiteral("Capture"), QStringLiteral("Audio:Better") },
            { QStringLiteral("AudioDevice"), QStringLiteral("test:mic1") } });
    const QString movie = m_home + QStringLiteral("/LocalAudio.mov");

    QProcess agent;
    QProcessEnvironment env = environment();
    env.insert(QStringLiteral("LUMEX_CAPTURE_HARDWARE"), QStringLiteral("0"));
    env.insert(QStringLiteral("LUMEX_TEST_DEVICES"), QStringLiteral("microphone:mic1"));
    agent.setProcessEnvironment(env);
    agent.start(tool(QStringLiteral("orvxagentd")), { QStringLiteral("-f"), movie });
    QVERIFY(agent.waitForStarted());
    QTRY_VERIFY(QFileInfo(movie).size() > 0);
    ::kill(pid_t(agent.processId()), SIGUSR1);
    QTest::qWait(300);
    ::kill(pid_t(agent.processId()), SIGUSR2);
    QTest::qWait(700);
    QCOMPARE(agent.state(), QProcess::Running);
    agent.terminate();
    QVERIFY(agent.waitForFinished(20000));
    QCOMPARE(agent.exitStatus(), QProcess::NormalExit);
    QCOMPARE(agent.exitCode(), 0);
    QFile file(movie);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.read(8).mid(4), QByteArray("ftyp"));

    QCOMPARE(run(QStringLiteral("orvxagentd"), { QStringLiteral("movie.mov") }).status, 2);
}

void TestSimulator::agentFault()
{
    QDir().mkpath(state(QString()));
    setFaults({ { QStringLiteral("orvxagentd"), QVariantMap { { QStringLiteral("remaining"), 1 } } } });
    const QString movie = m_home + QStringLiteral("/ScreenCapture.mov");
    const Result r = run(QStringLiteral("orvxagentd"), { QStringLiteral("-f"), movie });
    QCOMPARE(r.status, 3);
    QVERIFY(!r.err.isEmpty());
    QVERIFY(!QFile::exists(movie));
    QVERIFY(readPlist(state(QStringLiteral("faults.plist"))).isEmpty());
}

QTEST_GUILESS_MAIN(TestSimulator)
#include "tst_simulator.moc"
