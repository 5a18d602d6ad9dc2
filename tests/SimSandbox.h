#pragma once

#include "TestSupport.h"

#include "OrvaneServerInterface.h"
#include "PropertyList.h"

#include <QDirIterator>

#include <unistd.h>

#ifndef LUMEX_SIM_ROOT
#error "LUMEX_SIM_ROOT must name the build's simulator tree"
#endif

// What one run of a tool left: exit status, whether it crashed, its output.
struct ToolRun
{
    int status = -1;
    bool crashed = false;
    QByteArray out;
    QByteArray err;

    QString text() const { return QString::fromUtf8(out); }
    QString errorText() const { return QString::fromUtf8(err); }
    QString firstLine() const { return text().section(QLatin1Char('\n'), 0, 0); }
    // The property list in the output; empty when there is none.
    QVariantMap plist() const
    {
        try {
            return findPropertyList(text()).toMap();
        } catch (const PropertyList::ParseError &) {
            return {};
        }
    }
};

// The one fixture of every test that meets the simulator: a TestSandbox
// (private HOME and LUMEX_SYSROOT) with the simulator's three built tools
// installed under its sysroot, so the simulator's state and fault file
// belong to this test alone; stand-ins for the tools; the server interface
// signed in with the demo account. One per test executable: the job data
// folder is computed once per process from HOME.
class SimSandbox final
{
public:
    static inline const QString kUser = QStringLiteral("demo");
    static inline const QString kPassword = QStringLiteral("lumex");
    static inline const QStringList kTools { QStringLiteral("orvxexec"), QStringLiteral("orvxctlexec"),
        QStringLiteral("orvxagentd") };
    static inline const QString kServerHost = QStringLiteral("media.example.edu");
    static inline const QString kServerURL = QStringLiteral("https://media.example.edu:8170/orvane");

    SimSandbox() { QDir().mkpath(recordDir()); }

    // The server interface as the application creates it after a login; an
    // invalid password leaves the key out.
    static std::shared_ptr<OrvaneServerInterface> makeInterface(
        const QVariant &password = kPassword, const QString &user = kUser)
    {
        return OrvaneServerInterface::create(
            Credentials { user, password.isValid() ? password.toString() : QString(), kServerHost },
            std::make_shared<PodcastJob>());
    }
    // The tool's first line of output for every server command.
    static QString progressLine() { return QStringLiteral("Connecting to %1 ...\n").arg(kServerURL); }
    // What precedes every server command on the tool's command line.
    static QStringList serverArguments()
    {
        return { QStringLiteral("--server"), kServerURL, QStringLiteral("--user"), kUser };
    }

    // The start of each test: the real tools, no faults, nothing recorded.
    bool reset() const
    {
        clearFaults();
        clearRecord();
        return installTools();
    }
    // Also forgets everything the simulator and the agent configuration hold.
    bool resetState() const
    {
        QDir(state(QString())).removeRecursively();
        QFile::remove(globalConfig());
        QFile::remove(userConfig());
        return reset();
    }

    QString home() const { return m_sandbox.home(); }
    QString sysroot() const { return m_sandbox.sysroot(); }
    QString path() const { return m_sandbox.path(); }
    QString toolDir() const { return sysroot() + QStringLiteral("/usr/libexec/orvane"); }
    QString tool(const QString &name) const { return toolDir() + QLatin1Char('/') + name; }
    QString state(const QString &name) const { return sysroot() + QStringLiteral("/var/lib/orvane-sim/") + name; }
    QString globalConfig() const
    {
        return sysroot() + QStringLiteral("/Library/Preferences/com.tarn.orvxagentd.plist");
    }
    QString userConfig() const { return home() + QStringLiteral("/Library/Preferences/com.tarn.orvxagentd.plist"); }
    QString jobDataFolder() const { return home() + QStringLiteral("/Library/Application Support/Lumex"); }
    // Where the recording tool (installRecordingTool) leaves what it saw.
    QString recordDir() const { return m_sandbox.path() + QStringLiteral("/record"); }

    // Puts the real built tools in place (again), replacing stand-ins.
    bool installTools() const
    {
        QDir().mkpath(toolDir());
        const QString built = QStringLiteral(LUMEX_SIM_ROOT "/usr/libexec/orvane/");
        for (const QString &name : kTools) {
            removeTool(name);
            if (!QFile::copy(built + name, tool(name)))
                return false;
            QFile::setPermissions(tool(name), QFile::permissions(built + name));
        }
        return true;
    }

    // Removes whatever stands at a tool's path (file or folder).
    void removeTool(const QString &name) const
    {
        const QFileInfo info(tool(name));
        if (info.isDir() && !info.isSymLink())
            QDir(tool(name)).removeRecursively();
        else
            QFile::remove(tool(name));
    }

    // Replaces a tool with a shell script that records its arguments
    // (NUL-separated), what its standard input is and what it read there,
    // then prints the replies set with setReply() and exits with the status.
    void installRecordingTool(const QString &name = QStringLiteral("orvxexec")) const
    {
        const QString d = recordDir();
        const QString script = QStringLiteral("#!/bin/sh\n"
                                              "d='%1'\n"
                                              "printf '%s\\0' \"$@\" > \"$d/args\"\n"
                                              "printf '%s' \"$#\" > \"$d/argc\"\n"
                                              "readlink /proc/self/fd/0 > \"$d/stdin-kind\"\n"
                                              "env > \"$d/env\"\n"
                                              "cat > \"$d/stdin\"\n"
                                              "[ -f \"$d/reply-out\" ] && cat \"$d/reply-out\"\n"
                                              "[ -f \"$d/reply-err\" ] && cat \"$d/reply-err\" >&2\n"
                                              "exit $(cat \"$d/reply-status\" 2>/dev/null || echo 0)\n")
                                   .arg(d);
        installScript(name, script);
    }
    // Puts an executable script where a tool belongs.
    void installScript(const QString &name, const QString &script) const
    {
        removeTool(name);
        writeFile(tool(name), script.toUtf8());
        QFile::setPermissions(tool(name), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    // Replaces the recording agent with a script that behaves like it towards
    // the client (-f MOVIE; SIGUSR1, SIGUSR2, SIGTERM) but records text: the
    // "Capture" value it finds in the user's agent configuration, then a
    // line per signal; the first line appears once it answers signals. Tests
    // of the client's side need no devices this way.
    void installStandInAgent() const
    {
        installScript(QStringLiteral("orvxagentd"),
            QStringLiteral("#!/bin/sh\n"
                           "[ \"$1\" = -f ] || exit 2\n"
                           "f=\"$2\"\n"
                           "trap 'echo paused >> \"$f\"' USR1\n"
                           "trap 'echo resumed >> \"$f\"' USR2\n"
                           "trap 'echo stopped >> \"$f\"; exit 0' TERM\n"
                           "capture=$(python3 -c 'import plistlib,sys; "
                           "print(plistlib.load(open(sys.argv[1],\"rb\")).get(\"Capture\",\"\"))' "
                           "\"$HOME/Library/Preferences/com.tarn.orvxagentd.plist\" 2>/dev/null)\n"
                           "printf 'orvxagentd placeholder recording\\nCapture: %s\\n' \"$capture\" > \"$f\"\n"
                           "while :; do sleep 0.05; done\n"));
    }

    void setReply(const QByteArray &out, const QByteArray &err, int status) const
    {
        writeFile(recordDir() + QStringLiteral("/reply-out"), out);
        writeFile(recordDir() + QStringLiteral("/reply-err"), err);
        writeFile(recordDir() + QStringLiteral("/reply-status"), QByteArray::number(status));
    }

    void clearRecord() const
    {
        QDir(recordDir()).removeRecursively();
        QDir().mkpath(recordDir());
    }

    // True when no stand-in tool has run since clearRecord().
    bool recordedNothing() const { return !QFileInfo::exists(recordDir() + QStringLiteral("/args")); }
    QStringList recordedArguments() const
    {
        QByteArray raw = readFile(recordDir() + QStringLiteral("/args"));
        if (raw.endsWith('\0'))
            raw.chop(1);
        if (readFile(recordDir() + QStringLiteral("/argc")) == "0")
            return {};
        QStringList args;
        for (const QByteArray &a : raw.split('\0'))
            args << QString::fromUtf8(a);
        return args;
    }
    QByteArray recordedEnvironment() const { return readFile(recordDir() + QStringLiteral("/env")); }
    QByteArray recordedStdin() const { return readFile(recordDir() + QStringLiteral("/stdin")); }
    QString recordedStdinKind() const
    {
        return QString::fromUtf8(readFile(recordDir() + QStringLiteral("/stdin-kind"))).trimmed();
    }

    void setFaults(const QVariantMap &faults) const { writePlist(state(QStringLiteral("faults.plist")), faults); }
    // One fault for one command (or "orvxagentd").
    void setFault(const QString &command, const QVariantMap &settings) const { setFaults({ { command, settings } }); }
    void clearFaults() const { QFile::remove(state(QStringLiteral("faults.plist"))); }
    QVariantMap faults() const { return readPlist(state(QStringLiteral("faults.plist"))); }

    // The job data files ("submission-*.plist") written so far.
    QStringList jobDataFiles() const
    {
        return QDir(jobDataFolder()).entryList({ QStringLiteral("submission-*.plist") }, QDir::Files);
    }

    // The environment the client gives the tools; `privileged` as under pkexec.
    QProcessEnvironment environment(bool privileged = false) const
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.remove(QStringLiteral("PKEXEC_UID"));
        env.remove(QStringLiteral("ORVANE_PRIVILEGED_RUN"));
        env.insert(QStringLiteral("HOME"), home());
        env.insert(QStringLiteral("LUMEX_SYSROOT"), sysroot());
        if (privileged)
            env.insert(QStringLiteral("ORVANE_PRIVILEGED_RUN"), QStringLiteral("1"));
        return env;
    }
    // Runs a program (a tool's name: the installed tool) to its end; a null
    // `input` gives it /dev/null as its standard input.
    ToolRun run(const QString &program, const QStringList &arguments, const QByteArray &input = QByteArray(),
        const QProcessEnvironment &env = QProcessEnvironment()) const
    {
        QProcess process;
        process.setProcessEnvironment(env.isEmpty() ? environment() : env);
        if (input.isNull())
            process.setStandardInputFile(QProcess::nullDevice());
        process.start(kTools.contains(program) ? tool(program) : program, arguments);
        ToolRun result;
        if (!process.waitForStarted())
            return result;
        if (!input.isNull()) {
            process.write(input);
            process.closeWriteChannel();
        }
        process.waitForFinished(60000);
        result.crashed = process.exitStatus() == QProcess::CrashExit;
        result.status = result.crashed ? -1 : process.exitCode();
        result.out = process.readAllStandardOutput();
        result.err = process.readAllStandardError();
        return result;
    }
    // A server command as the client sends it, the password on standard input.
    ToolRun server(
        const QStringList &command, const QByteArray &password = "lumex\n", const QString &user = kUser) const
    {
        return run(
            QStringLiteral("orvxexec"), QStringList { "--server", kServerURL, "--user", user } + command, password);
    }

    static QVariantMap readPlist(const QString &path) { return PropertyList::readFile(path).toMap(); }
    static bool writePlist(const QString &path, const QVariant &contents)
    {
        QDir().mkpath(QFileInfo(path).absolutePath());
        return PropertyList::writeFile(path, contents, true);
    }

    static QByteArray readFile(const QString &path) { return readBytes(path); }
    static bool writeFile(const QString &path, const QByteArray &contents) { return writeBytes(path, contents); }

    // Every regular file under the sandbox whose contents hold `needle`.
    QStringList filesContaining(const QByteArray &needle) const
    {
        QStringList hits;
        QDirIterator it(path(), QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString file = it.next();
            if (readFile(file).contains(needle))
                hits << file;
        }
        return hits;
    }

    // Starts the snapshot host from this sysroot on a free port, which
    // "--listcameras" then names; returns the port (0: it did not start).
    quint16 startPreviewHost(QProcess &host) const
    {
        for (const QString file :
            { "/usr/libexec/orvane/orvxpreviewd", "/etc/orvane-sim/preview.crt", "/etc/orvane-sim/preview.key" })
            QDir().mkpath(QFileInfo(sysroot() + file).path()), QFile::copy(LUMEX_SIM_ROOT + file, sysroot() + file);
        host.start(tool("orvxpreviewd"), { "--port", "0" });
        const QString port = state("preview-port");
        return QTest::qWaitFor([&] { return QFile::exists(port); }, 10000) ? readFile(port).toUInt() : 0;
    }

private:
    TestSandbox m_sandbox;
};

// Process ids of our children that run `executable`.
inline QList<qint64> childrenRunning(const QString &executable)
{
    QList<qint64> pids;
    const QString self = QString::number(::getpid());
    const QStringList entries = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &entry : entries) {
        bool ok = false;
        const qint64 pid = entry.toLongLong(&ok);
        if (!ok)
            continue;
        const QByteArray stat = SimSandbox::readFile(QStringLiteral("/proc/%1/stat").arg(pid));
        const qsizetype close = stat.lastIndexOf(')');
        if (close < 0)
            continue;
        const QList<QByteArray> fields = stat.mid(close + 2).split(' ');
        if (fields.size() < 2 || fields.at(1) != self.toLatin1())
            continue;
        if (QFileInfo(QStringLiteral("/proc/%1/exe").arg(pid)).symLinkTarget() == executable)
            pids << pid;
    }
    return pids;
}
