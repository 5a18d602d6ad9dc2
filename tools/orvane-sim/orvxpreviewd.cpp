// orvxpreviewd [--port N]: the simulated server's HTTPS snapshot host (see
// PreviewServer). Listens on 127.0.0.1, port 8171 unless told otherwise (0:
// any free port, recorded in the state folder); runs until it is killed.
#include "PreviewServer.h"
#include "RemoteCameras.h"
#include "SimEnvironment.h"

#include <QCommandLineParser>
#include <QFile>
#include <QGuiApplication>
#include <QSslCertificate>
#include <QSslKey>

#include <cstdio>

int main(int argc, char **argv)
{
    // The pictures are drawn off screen, with no display needed.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QCommandLineParser options;
    options.addOption({ QStringLiteral("port"), QStringLiteral("TCP port on 127.0.0.1 (0: any)"), QStringLiteral("N"),
        QString::number(RemoteCameras::kDefaultPreviewPort) });
    options.addHelpOption();
    options.process(app);

    const SimEnvironment env = SimEnvironment::detect();
    const QString tlsFolder = env.root() + QStringLiteral("/etc/orvane-sim/");
    QFile certificateFile(tlsFolder + QStringLiteral("preview.crt"));
    QFile keyFile(tlsFolder + QStringLiteral("preview.key"));
    if (!certificateFile.open(QIODevice::ReadOnly) || !keyFile.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "orvxpreviewd: no certificate in %s\n", qPrintable(tlsFolder));
        return 1;
    }
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setLocalCertificate(QSslCertificate(&certificateFile));
    tls.setPrivateKey(QSslKey(&keyFile, QSsl::Ec));
    tls.setPeerVerifyMode(QSslSocket::VerifyNone);

    PreviewServer server(StateStore(env.stateFolder()), tls);
    QString error;
    if (!server.listen(quint16(options.value(QStringLiteral("port")).toUInt()), &error)) {
        std::fprintf(stderr, "orvxpreviewd: %s\n", qPrintable(error));
        return 1;
    }
    return app.exec();
}
