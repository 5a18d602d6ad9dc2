#pragma once

#include "TestSupport.h"

#include "PropertyList.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QStringList>
#include <QtTest>

#include <unistd.h>

#ifndef LUMEX_SIM_ROOT
#error "LUMEX_SIM_ROOT must name the build's simulator tree"
#endif

// A TestSandbox (private HOME and LUMEX_SYSROOT) with the simulator's three
// built tools installed under its sysroot, so the simulator's state and fault
// file belong to this test alone. One per test executable: the job data
// folder is computed once per process from HOME.
class SimSandbox final
{
public:
    static inline const QStringList kTools { QStringLiteral("orvxexec"), QStringLiteral("orvxctlexec"),
        QStringLiteral("orvxagentd") };
    static inline const QString kServerHost = QStringLiteral("media.example.edu");
    static inline const QString kServerURL = QStringLiteral("https://media.example.edu:8170/orvane");

    SimSandbox() { QDir().mkpath(recordDir()); }

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
        removeTool(name);
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
        writeFile(tool(name), script.toUtf8());
        QFile::setPermissions(tool(name), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    // Replaces the recording agent with a script that behaves like it towards
    // the client (-f MOVIE; SIGUSR1, SIGUSR2, SIGTERM) but records text: the
    // "Capture" value it finds in the user's agent configuration, then a
    // line per signal. Tests of the client's side need no devices this way.
    void installStandInAgent() const
    {
        removeTool(QStringLiteral("orvxagentd"));
        const QString script
            = QStringLiteral("#!/bin/sh\n"
                             "[ \"$1\" = -f ] || exit 2\n"
                             "f=\"$2\"\n"
                             "capture=$(python3 -c 'import plistlib,sys; "
                             "print(plistlib.load(open(sys.argv[1],\"rb\")).get(\"Capture\",\"\"))' "
                             "\"$HOME/Library/Preferences/com.tarn.orvxagentd.plist\" 2>/dev/null)\n"
                             "printf 'orvxagentd placeholder recording\\nCapture: %s\\n' \"$capture\" > \"$f\"\n"
                             "trap 'echo paused >> \"$f\"' USR1\n"
                             "trap 'echo resumed >> \"$f\"' USR2\n"
                             "trap 'echo stopped >> \"$f\"; exit 0' TERM\n"
                             "while :; do sleep 0.05; done\n");
        writeFile(tool(QStringLiteral("orvxagentd")), script.toUtf8());
        QFile::setPermissions(
            tool(QStringLiteral("orvxagentd")), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
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

    void setFaults(const QVariantMap &faults) const
    {
        QDir().mkpath(QFileInfo(state(QStringLiteral("faults.plist"))).absolutePath());
        PropertyList::writeFile(state(QStringLiteral("faults.plist")), faults, true);
    }
    void clearFaults() const { QFile::remove(state(QStringLiteral("faults.plist"))); }

    static QByteArray readFile(const QString &path)
    {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    static bool writeFile(const QString &path, const QByteArray &contents)
    {
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile f(path);
        return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(contents) == contents.size();
    }

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
