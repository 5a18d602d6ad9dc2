#pragma once

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <cerrno>
#include <cstring>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

// A private system bus with polkitd on it, so that the real pkexec can run.
//
// pkexec clears its environment before it looks for the bus, so only the
// fixed socket path reaches it: this process moves into a mount namespace of
// its own and puts a private folder over "/run/dbus", where the bus listens.
// Nothing outside this process sees either. Only threads and children
// started after construction share the namespace: construct it in
// initTestCase, before any worker thread. Root is authorised without a
// dialog, so pkexec then runs its program.
class PolkitBus final
{
public:
    PolkitBus() { m_skipReason = start(); }
    ~PolkitBus()
    {
        for (QProcess *p : { &m_polkitd, &m_bus }) {
            p->kill();
            p->waitForFinished(5000);
        }
        if (m_mounted)
            ::umount2("/run/dbus", MNT_DETACH);
        qunsetenv("DBUS_SYSTEM_BUS_ADDRESS");
    }

    bool running() const { return m_skipReason.isEmpty(); }
    // Why pkexec cannot be tested here, for QSKIP.
    QByteArray skipReason() const { return "pkexec not testable: " + m_skipReason.toUtf8(); }

private:
    QString start()
    {
        const auto failed
            = [](const char *what) { return QString::fromUtf8(what) + QString::fromLocal8Bit(strerror(errno)); };
        if (::geteuid() != 0)
            return QStringLiteral("only root is authorised without a dialog");
        const QString polkitd = QFile::exists(QStringLiteral("/usr/libexec/polkitd"))
            ? QStringLiteral("/usr/libexec/polkitd")
            : QStringLiteral("/usr/lib/polkit-1/polkitd");
        const QString daemon = QStandardPaths::findExecutable(QStringLiteral("dbus-daemon"));
        for (const QString &needed : { QStringLiteral("/usr/bin/pkexec"), polkitd, daemon }) {
            if (needed.isEmpty() || !QFile::exists(needed))
                return QStringLiteral("%1 is not installed (packages pkexec, polkitd, dbus)").arg(needed);
        }
        // polkitd drops to a user of its own and must still reach the socket.
        if (!m_dir.isValid() || !QFile::setPermissions(m_dir.path(), QFile::permissions(QStringLiteral("/tmp"))))
            return QStringLiteral("no temporary folder");
        if (::unshare(CLONE_NEWNS) != 0 || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
            return failed("no private mount namespace: ");
        ::mkdir("/run/dbus", 0755);
        if (::mount(QFile::encodeName(m_dir.path()).constData(), "/run/dbus", nullptr, MS_BIND, nullptr) != 0)
            return failed("cannot mount over /run/dbus: ");
        m_mounted = true;

        // polkitd must be allowed to own its name; everyone may talk to anyone.
        QFile config(m_dir.filePath(QStringLiteral("bus.conf")));
        if (!config.open(QIODevice::WriteOnly)
            || config.write("<busconfig><type>system</type><listen>unix:path=/run/dbus/system_bus_socket</listen>"
                            "<auth>EXTERNAL</auth><policy context=\"default\"><allow user=\"*\"/><allow own=\"*\"/>"
                            "<allow send_destination=\"*\"/><allow receive_sender=\"*\"/></policy></busconfig>\n")
                < 0)
            return QStringLiteral("cannot write the bus configuration");
        config.close();
        m_bus.start(daemon,
            { QStringLiteral("--config-file=") + config.fileName(), QStringLiteral("--nofork"),
                QStringLiteral("--print-address") });
        QByteArray address;
        while (!address.contains('\n') && m_bus.waitForReadyRead(10000))
            address += m_bus.readAllStandardOutput();
        if (address.trimmed().isEmpty())
            return QStringLiteral("dbus-daemon did not start: ") + QString::fromLocal8Bit(m_bus.readAllStandardError());
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", address.trimmed());

        m_polkitd.start(polkitd, { QStringLiteral("--no-debug") });
        const bool owned = m_polkitd.waitForStarted(10000)
            && QTest::qWaitFor(
                [&] {
                    QProcess ask;
                    ask.start(QStringLiteral("dbus-send"),
                        { QStringLiteral("--system"), QStringLiteral("--print-reply"),
                            QStringLiteral("--dest=org.freedesktop.DBus"), QStringLiteral("/"),
                            QStringLiteral("org.freedesktop.DBus.NameHasOwner"),
                            QStringLiteral("string:org.freedesktop.PolicyKit1") });
                    ask.waitForFinished(5000);
                    return m_polkitd.state() == QProcess::NotRunning
                        || ask.readAllStandardOutput().contains("boolean true");
                },
                15000);
        if (!owned || m_polkitd.state() != QProcess::Running)
            return QStringLiteral("polkitd did not come up: ")
                + QString::fromLocal8Bit(m_polkitd.readAllStandardError());
        return QString();
    }

    QTemporaryDir m_dir;
    QProcess m_bus;
    QProcess m_polkitd;
    QString m_skipReason;
    bool m_mounted = false;
};
