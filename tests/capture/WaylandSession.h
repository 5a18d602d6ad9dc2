#pragma once

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDeadlineTimer>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <functional>
#include <list>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

// A headless Wayland desktop for one test, up in about a second: sway
// (headless, pixman) on a runtime folder and session bus of its own, with
// PipeWire, WirePlumber and the desktop portal on xdg-desktop-portal-wlr,
// whose "none" chooser shares the one output without asking.
//
// As root (as CI runs) sway refuses to start, so it runs as "nobody"
// (setpriv), owning the runtime folder; the rest stays root and reaches its
// socket anyway. The portals are started here, not activated by the bus,
// which would start them without WAYLAND_DISPLAY (xdg-desktop-portal-wlr then
// exits at once); the frontend needs XDG_CURRENT_DESKTOP=sway to pick wlr.
class WaylandSession final
{
public:
    explicit WaylandSession(const QSize &size)
        : m_skipReason(startDesktop(size))
    { }
    ~WaylandSession()
    {
        QDBusConnection::disconnectFromBus(m_dir.path());
        for (QProcess &process : m_processes) { // daemons of a throw-away session: no need to be gentle
            process.kill();
            process.waitForFinished();
        }
    }

    bool isReady() const { return m_skipReason.isEmpty(); }
    QString skipReason() const { return QStringLiteral("no headless Wayland desktop: ") + m_skipReason; }
    // Why the portal shared no output when that is a known limit of Debian
    // 12's parts, not the caller's fault; empty otherwise. Its
    // xdg-desktop-portal-wlr 0.7 insists on a DMA-BUF format once the
    // compositor offers screencopy version 3, and pixman gives none.
    QString sharingRefusal() const
    {
        QFile log(m_dir.filePath(QStringLiteral("xdg-desktop-portal-wlr.log")));
        if (log.open(QIODevice::ReadOnly) && log.readAll().contains("unable to receive a valid format"))
            return QStringLiteral("xdg-desktop-portal-wlr shares no pixman-rendered output (it wants a DMA-BUF "
                                  "format, which needs a GPU render node)");
        return {};
    }
    QDBusConnection bus() const { return QDBusConnection(m_dir.path()); }
    // A connection to the session's PipeWire, as the portal's remote is
    // (-1: none); the caller closes it.
    int pipeWireRemote() const
    {
        const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_un address {};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, QFile::encodeName(m_env.value(QStringLiteral("XDG_RUNTIME_DIR")) + "/pipewire-0"),
            sizeof address.sun_path);
        if (::connect(fd, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0)
            return fd;
        ::close(fd);
        return -1;
    }
    // A PipeWire video stream of the session's shape, as the portal's screen
    // cast is: test bars with the running time on them. Its node id once it
    // is there (0: never).
    quint32 startScreenStream(const QSize &size)
    {
        start({ QStringLiteral("gst-launch-1.0"), QStringLiteral("videotestsrc"), QStringLiteral("is-live=true"),
            QStringLiteral("pattern=smpte"), QStringLiteral("!"),
            QStringLiteral("video/x-raw,format=BGRx,width=%1,height=%2").arg(size.width()).arg(size.height()),
            QStringLiteral("!"), QStringLiteral("pipewiresink"), QStringLiteral("mode=provide"),
            QStringLiteral("stream-properties=p,media.class=Video/Source,node.name=lumex-screen") });
        for (QDeadlineTimer deadline(10000); !deadline.hasExpired(); QThread::msleep(50)) {
            QProcess dump;
            dump.setProcessEnvironment(m_env);
            dump.start(QStringLiteral("pw-dump"), {});
            dump.waitForFinished();
            for (const QJsonValue object : QJsonDocument::fromJson(dump.readAllStandardOutput()).array())
                if (object[QStringLiteral("info")][QStringLiteral("props")][QStringLiteral("node.name")]
                    == QStringLiteral("lumex-screen"))
                    return quint32(object[QStringLiteral("id")].toInt());
        }
        return 0;
    }
    // WAYLAND_DISPLAY, XDG_RUNTIME_DIR, XDG_SESSION_TYPE and the bus.
    QProcessEnvironment environment() const { return m_env; }

private:
    QString startDesktop(const QSize &size)
    {
        const QString run = m_dir.filePath(QStringLiteral("run"));
        QDir().mkpath(run);
        QFile::setPermissions(m_dir.path(), QFile::permissions(m_dir.path()) | QFile::ExeOther | QFile::ReadOther);
        for (const auto &[name, text] : { std::pair { "sway.conf",
                                              QStringLiteral("output HEADLESS-1 resolution %1x%2\n"
                                                             "xwayland disable\n")
                                                  .arg(size.width())
                                                  .arg(size.height()) },
                 { "xdpw.conf", QStringLiteral("[screencast]\nchooser_type=none\noutput_name=HEADLESS-1\n") } }) {
            QFile file(m_dir.filePath(QLatin1String(name)));
            if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0)
                return QStringLiteral("cannot write ") + file.fileName();
        }
        const QString address = QStringLiteral("unix:path=%1/bus").arg(run);
        m_env = QProcessEnvironment::systemEnvironment();
        m_env.remove(QStringLiteral("DISPLAY"));
        for (const auto &[name, value] : { std::pair { "XDG_RUNTIME_DIR", run }, { "HOME", m_dir.path() },
                 { "XDG_CURRENT_DESKTOP", QStringLiteral("sway") }, { "XDG_SESSION_TYPE", QStringLiteral("wayland") },
                 { "DBUS_SESSION_BUS_ADDRESS", address } })
            m_env.insert(QString::fromLatin1(name), value);
        start({ QStringLiteral("dbus-daemon"), QStringLiteral("--session"), QStringLiteral("--nofork"),
            QStringLiteral("--address=") + address });
        if (!waitUntil([&] { return QFile::exists(run + QStringLiteral("/bus")); }))
            return QStringLiteral("dbus-daemon did not start");

        QProcessEnvironment swayEnv = m_env;
        for (const auto &[name, value] : { std::pair { "WLR_BACKENDS", "headless" }, { "WLR_RENDERER", "pixman" },
                 { "WLR_LIBINPUT_NO_DEVICES", "1" } })
            swayEnv.insert(QString::fromLatin1(name), QString::fromLatin1(value));
        QStringList sway { QStringLiteral("sway"), QStringLiteral("-c"), m_dir.filePath(QStringLiteral("sway.conf")) };
        if (::geteuid() == 0 && ::chown(run.toLocal8Bit().constData(), 65534, 65534) == 0)
            sway = QStringLiteral("setpriv --reuid=65534 --regid=65534 --clear-groups").split(QLatin1Char(' ')) + sway;
        start(sway, swayEnv);
        QStringList sockets;
        if (!waitUntil([&] {
                return !(sockets = QDir(run).entryList({ QStringLiteral("wayland-?") }, QDir::System)).isEmpty();
            }))
            return QStringLiteral("sway did not start (installed? scripts/install-deps)");
        m_env.insert(QStringLiteral("WAYLAND_DISPLAY"), sockets.first());

        start({ QStringLiteral("pipewire") });
        if (!waitUntil([&] { return QFile::exists(run + QStringLiteral("/pipewire-0")); }))
            return QStringLiteral("pipewire did not start");
        start({ QStringLiteral("wireplumber") });
        const QDBusConnection bus = QDBusConnection::connectToBus(address, m_dir.path());
        const QString xdpwConf = m_dir.filePath(QStringLiteral("xdpw.conf"));
        for (const QStringList &portal :
            { QStringList { QStringLiteral("xdg-desktop-portal-wlr"),
                  QStringLiteral("org.freedesktop.impl.portal.desktop.wlr"), QStringLiteral("-l"),
                  QStringLiteral("INFO"), QStringLiteral("-c"), xdpwConf },
                QStringList {
                    QStringLiteral("xdg-desktop-portal"), QStringLiteral("org.freedesktop.portal.Desktop") } }) {
            start(QStringList { QStringLiteral("/usr/libexec/") + portal[0] } + portal.mid(2));
            if (!waitUntil([&] { return bus.interface()->isServiceRegistered(portal[1]).value(); }))
                return portal[0] + QStringLiteral(" did not start");
        }
        return {};
    }
    void start(QStringList command, const QProcessEnvironment &env = {})
    {
        QProcess &process = m_processes.emplace_back();
        process.setProcessEnvironment(env.isEmpty() ? m_env : env);
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.setStandardOutputFile(m_dir.filePath(QFileInfo(command.first()).fileName() + QStringLiteral(".log")));
        process.start(command.takeFirst(), command);
    }
    static bool waitUntil(const std::function<bool()> &ready)
    {
        for (QDeadlineTimer deadline(10000); !deadline.hasExpired(); QThread::msleep(20))
            if (ready())
                return true;
        return false;
    }

    QTemporaryDir m_dir;
    QProcessEnvironment m_env;
    std::list<QProcess> m_processes;
    QString m_skipReason;
};
