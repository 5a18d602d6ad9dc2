#pragma once

#include "StateStore.h"

#include <QByteArray>
#include <QSslConfiguration>
#include <QSslServer>

class QSslSocket;

// The simulated server's snapshot host: HTTPS on 127.0.0.1 with a
// self-signed certificate, the simulator's accounts as Basic credentials,
// and one JPEG per camera at "/preview/NAME.jpg" (NAME percent-encoded, as
// "--listcameras" gives it in "preview_url"). The picture changes each time
// "--update_preview" asks the camera for a new snapshot.
//
// "/redirect?to=URL" answers 302 to URL, so a client's handling of a
// redirect to another host can be tried for real. Every request leaves a
// line in "preview-requests.log": the Host it named, whether it carried
// credentials, and its target.
class PreviewServer final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PreviewServer)

public:
    PreviewServer(StateStore store, QSslConfiguration tls, QObject *parent = nullptr);

    // Listens on 127.0.0.1:`port` (0: any free port) and records the port in
    // the state folder, where "--listcameras" reads it.
    bool listen(quint16 port, QString *error);

private:
    void answer(QSslSocket *socket);
    QByteArray respond(const QByteArray &head);
    QByteArray snapshot(const QString &camera) const;
    void logRequest(const QByteArray &host, bool authorization, const QByteArray &target) const;

    StateStore m_store;
    QSslServer m_server;
};
