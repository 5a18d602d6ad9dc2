#include "LXApplication.h"

#include "GlobalHotKey.h"
#include "LXNotificationCenter.h"
#include "Log.h"

#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLocale>
#include <QPalette>
#include <QSocketNotifier>
#include <QStyleFactory>
#include <QTranslator>

#include <cstdio>
#include <exception>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <sys/socket.h>
#include <unistd.h>

LXApplication::LXApplication(int &argc, char **argv)
    : QApplication(argc, argv)
{
    setApplicationName(QStringLiteral("Lumex"));
    setApplicationDisplayName(QStringLiteral("Lumex"));
    setApplicationVersion(QStringLiteral(LUMEX_VERSION));
    setOrganizationDomain(QStringLiteral("tarn.com"));
    setDesktopFileName(QStringLiteral("com.tarn.Lumex"));
    setQuitOnLastWindowClosed(false); // the controller decides
    applyLook(*this);
    installTranslations(*this);
    installNativeEventFilter(this);
}

void LXApplication::installTranslations(QCoreApplication &app)
{
    // The compiled tables sit at the same place relative to the executable
    // in the build tree, in an installation and in an unpacked package.
    const QString folder
        = QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral(LUMEX_TRANSLATIONS_FROM_BIN));
    for (QString language : QLocale().uiLanguages()) {
        if (language == QLatin1String("en") || language.startsWith(QLatin1String("en-")))
            return;
        language.replace(QLatin1Char('-'), QLatin1Char('_'));
        auto *own = new QTranslator(&app);
        if (!own->load(QStringLiteral("lumex_") + language, folder)) {
            delete own;
            continue;
        }
        auto *qt = new QTranslator(&app);
        if (qt->load(QStringLiteral("qtbase_") + language, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
            app.installTranslator(qt);
        else
            delete qt;
        app.installTranslator(own);
        return;
    }
}

int LXApplication::answerInformationRequest(int &argc, char **argv)
{
    for (int i = 1; i < argc; ++i) {
        const QByteArray argument(argv[i]);
        if (argument == "--version") {
            std::printf("Lumex %s\n", LUMEX_VERSION);
            return 0;
        }
        if (argument == "--help" || argument == "-h") {
            QCoreApplication app(argc, argv);
            installTranslations(app);
            std::fputs(tr("Usage: lumex [FILE…]\n"
                          "Records from a server's camera, this computer's camera and microphone or the screen,\n"
                          "and publishes to a media server. Movie files named are offered for submission; with\n"
                          "Lumex already running, they are handed to it.\n"
                          "\n"
                          "  --version  print the version and exit\n"
                          "  --help     print this text and exit\n")
                           .toLocal8Bit()
                           .constData(),
                stdout);
            return 0;
        }
    }
    return -1;
}

bool LXApplication::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (GlobalHotKey::instance().hotKeyForNativeEvent(eventType, message) == GlobalHotKey::kRecordPauseHotKeyID)
        LXNotificationCenter::defaultCenter().post(
            kRecordPauseKeyShortcutTriggered, QVariant::fromValue<QObject *>(this));
    // The event goes on to its normal handling either way.
    return false;
}

bool LXApplication::notify(QObject *receiver, QEvent *event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (const std::exception &e) {
        Log::format(QStringLiteral("Uncaught exception in event handling: %@"), { QString::fromLocal8Bit(e.what()) });
    } catch (...) {
        Log::write(QStringLiteral("Uncaught exception in event handling"));
    }
    return false;
}

void LXApplication::applyLook(QApplication &app)
{
    app.setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QPalette p;
    const QColor window(38, 39, 44);
    const QColor base(26, 26, 30);
    const QColor text(232, 232, 236);
    // Every text colour keeps at least 4.5:1 against the background it is
    // drawn on (white on the accent too), as low-vision users need.
    const QColor accent(206, 52, 44);
    p.setColor(QPalette::Window, window);
    p.setColor(QPalette::WindowText, text);
    p.setColor(QPalette::Base, base);
    p.setColor(QPalette::AlternateBase, window);
    p.setColor(QPalette::ToolTipBase, QColor(20, 20, 24));
    p.setColor(QPalette::ToolTipText, text);
    p.setColor(QPalette::PlaceholderText, QColor(146, 146, 154));
    p.setColor(QPalette::Text, text);
    p.setColor(QPalette::Button, QColor(52, 53, 60));
    p.setColor(QPalette::ButtonText, text);
    p.setColor(QPalette::BrightText, Qt::white);
    p.setColor(QPalette::Highlight, accent);
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::Link, QColor(255, 120, 100));
    for (QPalette::ColorRole role : { QPalette::WindowText, QPalette::Text, QPalette::ButtonText })
        p.setColor(QPalette::Disabled, role, QColor(120, 120, 128));
    app.setPalette(p);
}

QString LXApplication::instanceSocketName()
{
    QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (folder.isEmpty() || !QFileInfo(folder).isDir())
        folder = QDir::tempPath();
    return QStringLiteral("%1/lumex-%2.socket").arg(folder).arg(::getuid());
}

QStringList LXApplication::filesFromArguments(const QStringList &arguments)
{
    QStringList files;
    for (const QString &argument : arguments.mid(1))
        if (!argument.startsWith(QLatin1Char('-')))
            files << QFileInfo(argument).absoluteFilePath();
    return files;
}

bool LXApplication::handOverToRunningInstance(const QStringList &files)
{
    QLocalSocket socket;
    socket.connectToServer(instanceSocketName());
    if (!socket.waitForConnected(1000))
        return false;
    for (const QString &file : files)
        socket.write(file.toUtf8() + '\n');
    socket.disconnectFromServer();
    if (socket.state() != QLocalSocket::UnconnectedState)
        socket.waitForDisconnected(5000);
    return true;
}

QLocalServer *LXApplication::listenForOtherInstances(QObject *owner, std::function<void(const QStringList &)> open)
{
    auto *server = new QLocalServer(owner);
    server->setSocketOptions(QLocalServer::UserAccessOption);
    // A socket left by an instance that crashed answers no one.
    if (!server->listen(instanceSocketName())) {
        QLocalServer::removeServer(instanceSocketName());
        if (!server->listen(instanceSocketName())) {
            Log::format(QStringLiteral("Cannot listen for other instances: %@"), { server->errorString() });
            delete server;
            return nullptr;
        }
    }
    connect(server, &QLocalServer::newConnection, server, [server, open] {
        while (QLocalSocket *socket = server->nextPendingConnection()) {
            // The other launch writes its paths and hangs up.
            auto finish = [socket, open] {
                if (socket->property("handled").toBool())
                    return;
                socket->setProperty("handled", true);
                QStringList files;
                for (const QByteArray &line : socket->readAll().split('\n'))
                    if (!line.isEmpty())
                        files << QString::fromUtf8(line);
                socket->deleteLater();
                open(files);
            };
            connect(socket, &QLocalSocket::disconnected, socket, finish);
            if (socket->state() == QLocalSocket::UnconnectedState)
                finish();
        }
    });
    return server;
}

namespace {

int s_signalPipe[2] = { -1, -1 };

void writeSignal(int signal)
{
    const int saved = errno;
    const unsigned char byte = static_cast<unsigned char>(signal);
    // Nothing more can be done in a handler when the pipe is full.
    [[maybe_unused]] const ssize_t written = ::write(s_signalPipe[1], &byte, 1);
    errno = saved;
}

} // namespace

void LXApplication::catchTerminationSignals(QObject *owner, std::function<void(int)> handle)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, s_signalPipe) != 0) {
        Log::format(
            QStringLiteral("Cannot catch termination signals: %@"), { QString::fromLocal8Bit(strerror(errno)) });
        return;
    }
    auto *notifier = new QSocketNotifier(s_signalPipe[0], QSocketNotifier::Read, owner);
    QObject::connect(notifier, &QSocketNotifier::activated, owner, [handle = std::move(handle)] {
        unsigned char byte = 0;
        while (::read(s_signalPipe[0], &byte, 1) == 1)
            handle(byte);
    });
    struct sigaction action
    {
    };
    action.sa_handler = writeSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (int signal : { SIGTERM, SIGINT, SIGHUP })
        ::sigaction(signal, &action, nullptr);
}
