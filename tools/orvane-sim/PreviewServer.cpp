#include "PreviewServer.h"

#include "RemoteCameras.h"
#include "StateLock.h"
#include "UserDirectory.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSaveFile>
#include <QSslSocket>
#include <QUrl>
#include <QUrlQuery>

namespace {

QByteArray reply(const QByteArray &status, const QByteArray &headers = {}, const QByteArray &body = {},
    const QByteArray &type = "text/plain")
{
    return "HTTP/1.1 " + status + "\r\nContent-Type: " + type + "\r\nContent-Length: " + QByteArray::number(body.size())
        + "\r\n" + headers + "\r\n" + body;
}

// The value of header `name` (lower case) in a request head, or null.
QByteArray headerValue(const QList<QByteArray> &lines, const QByteArray &name)
{
    for (const QByteArray &line : lines) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0 && line.left(colon).trimmed().toLower() == name)
            return line.mid(colon + 1).trimmed();
    }
    return {};
}

} // namespace

PreviewServer::PreviewServer(StateStore store, QSslConfiguration tls, QObject *parent)
    : QObject(parent)
    , m_store(std::move(store))
{
    m_server.setSslConfiguration(tls);
    connect(&m_server, &QTcpServer::pendingConnectionAvailable, this, [this] {
        while (auto *socket = qobject_cast<QSslSocket *>(m_server.nextPendingConnection())) {
            socket->setParent(this);
            connect(socket, &QSslSocket::readyRead, this, [this, socket] { answer(socket); });
            connect(socket, &QSslSocket::disconnected, socket, &QObject::deleteLater);
            // A client that gives up on the certificate just goes away.
            connect(socket, &QSslSocket::sslErrors, socket, &QObject::deleteLater);
        }
    });
}

bool PreviewServer::listen(quint16 port, QString *error)
{
    if (!m_server.listen(QHostAddress::LocalHost, port)) {
        *error = m_server.errorString();
        return false;
    }
    m_store.ensureFolder();
    QSaveFile file(m_store.filePath(StateStore::kPreviewPort));
    if (!file.open(QIODevice::WriteOnly) || file.write(QByteArray::number(m_server.serverPort())) < 0
        || !file.commit()) {
        *error = file.errorString();
        return false;
    }
    return true;
}

void PreviewServer::answer(QSslSocket *socket)
{
    // Connections are kept open, as a real web server's are: a client that
    // fetches every few seconds pays for one TLS handshake, not one a
    // request. Requests here carry no body.
    QByteArray pending = socket->property("pending").toByteArray() + socket->readAll();
    qsizetype end;
    while ((end = pending.indexOf("\r\n\r\n")) >= 0) {
        const QByteArray head = pending.left(end);
        pending.remove(0, end + 4);
        socket->write(respond(head));
        if (headerValue(head.split('\n'), "connection").toLower() == "close") {
            socket->disconnectFromHost();
            return;
        }
    }
    if (pending.size() > 64 * 1024)
        socket->abort();
    else
        socket->setProperty("pending", pending);
}

QByteArray PreviewServer::respond(const QByteArray &head)
{
    const QList<QByteArray> lines = head.split('\n');
    const QList<QByteArray> request = lines.value(0).trimmed().split(' ');
    if (request.size() != 3 || request[0] != "GET")
        return reply("405 Method Not Allowed");
    const QUrl url(QString::fromLatin1(request[1]));
    logRequest(headerValue(lines, "host"), !headerValue(lines, "authorization").isNull(), request[1]);

    if (url.path() == QLatin1String("/redirect")) {
        const QByteArray to = QUrlQuery(url).queryItemValue(QStringLiteral("to"), QUrl::FullyDecoded).toUtf8();
        return reply("302 Found", "Location: " + to + "\r\n");
    }

    const QByteArray authorization = headerValue(lines, "authorization");
    const QByteArray credentials
        = authorization.startsWith("Basic ") ? QByteArray::fromBase64(authorization.mid(6)) : QByteArray();
    const qsizetype colon = credentials.indexOf(':');
    bool authenticated = false;
    {
        StateLock lock(m_store.lockFile());
        m_store.ensureSeeded();
        authenticated = colon > 0
            && UserDirectory(m_store.read(StateStore::kUsers))
                   .authenticate(QString::fromUtf8(credentials.left(colon)), credentials.mid(colon + 1));
    }
    if (!authenticated)
        return reply("401 Unauthorized", "WWW-Authenticate: Basic realm=\"orvane\"\r\n");
    if (QFile users(m_store.filePath(StateStore::kPreviewUsers)); users.open(QIODevice::Append))
        users.write(credentials.left(colon) + '\n');

    const QString path = url.path(QUrl::FullyDecoded);
    if (!path.startsWith(QLatin1String("/preview/")) || !path.endsWith(QLatin1String(".jpg")))
        return reply("404 Not Found");
    const QString camera = path.mid(9, path.size() - 9 - 4);
    const QByteArray jpeg = snapshot(camera);
    if (jpeg.isNull())
        return reply("404 Not Found");
    return reply("200 OK", {}, jpeg, "image/jpeg");
}

void PreviewServer::logRequest(const QByteArray &host, bool authorization, const QByteArray &target) const
{
    QFile log(m_store.filePath(StateStore::kPreviewRequests));
    if (log.open(QIODevice::Append))
        log.write(host + (authorization ? " credentials " : " none ") + target + '\n');
}

QByteArray PreviewServer::snapshot(const QString &camera) const
{
    double requestedAt = 0;
    {
        StateLock lock(m_store.lockFile());
        const RemoteCameras cameras(m_store);
        if (!cameras.contains(camera))
            return {};
        requestedAt = cameras.previewRequestedAt(camera);
    }

    // A picture of its own for each camera, that moves on with every
    // snapshot the server is asked to take.
    const uint seed = qHash(camera);
    QImage image(320, 240, QImage::Format_RGB32);
    image.fill(QColor::fromHsv(int(seed % 360), 90, 110));
    QPainter painter(&image);
    painter.setPen(Qt::white);
    painter.drawText(image.rect().adjusted(8, 8, -8, -8), Qt::AlignLeft | Qt::AlignTop, camera);
    painter.drawText(image.rect().adjusted(8, 8, -8, -8), Qt::AlignRight | Qt::AlignBottom,
        QStringLiteral("snapshot %1").arg(qint64(requestedAt)));
    const int x = int(qint64(requestedAt) % 280);
    painter.fillRect(20 + x % 260, 110, 20, 20, Qt::white);
    painter.end();

    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG", 80);
    return jpeg;
}
