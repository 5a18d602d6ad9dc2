#include "RemoteCameraPreviews.h"

#include "Log.h"
#include "OrvaneServerInterface.h"

#include <QAuthenticator>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>
#include <QUrl>

namespace {

const QString kName = QStringLiteral("name");
const QString kUUID = QStringLiteral("uuid");
const QString kPreviewURL = QStringLiteral("preview_url");
const QString kPreviewConnection = QStringLiteral("previewConnection");
const QString kPreviewTemporaryData = QStringLiteral("previewTemporaryData");
const QString kPreviewData = QStringLiteral("previewData");

// Set on every snapshot download: the host its address named, the only one
// that gets the user's password and has its certificate taken on trust, and
// how many challenges it has met.
const char *const kPreviewHostProperty = "lumexPreviewHost";
const char *const kChallengesProperty = "lumexPreviewChallenges";
const char *const kRedirectsProperty = "lumexPreviewRedirects";
constexpr int kMaxRedirects = 16;

bool isRedirect(const QNetworkReply *reply)
{
    return reply->attribute(QNetworkRequest::RedirectionTargetAttribute).isValid();
}

// How a download reads in the log.
QString describe(const QNetworkReply *reply)
{
    return QStringLiteral("<QNetworkReply: 0x%1 %2>")
        .arg(quintptr(reply), 0, 16)
        .arg(reply->request().url().toString(QUrl::RemoveUserInfo));
}

} // namespace

RemoteCameraPreviews::RemoteCameraPreviews(QObject *parent)
    : QObject(parent)
{ }

RemoteCameraPreviews::~RemoteCameraPreviews() = default;

void RemoteCameraPreviews::setSession(const std::shared_ptr<OrvaneServerInterface> &session)
{
    m_session = session;
    // A network access object keeps the credentials it was given per host
    // for its whole life: each sign-in gets its own, so the next user's are
    // the ones offered.
    if (m_network) {
        for (QNetworkReply *reply : m_network->findChildren<QNetworkReply *>()) {
            reply->disconnect(this);
            reply->abort();
        }
        m_network->disconnect(this);
        m_network->deleteLater();
    }
    m_network = new QNetworkAccessManager(this);
    // Each redirect is followed as a request of its own: the trust given to
    // one host's certificate would otherwise travel with the request to the
    // next host.
    m_network->setRedirectPolicy(QNetworkRequest::ManualRedirectPolicy);
    connect(m_network, &QNetworkAccessManager::authenticationRequired, this,
        &RemoteCameraPreviews::previewDownloadDidReceiveAuthenticationChallenge);
}

void RemoteCameraPreviews::refreshAllCameraPreviewImages()
{
    // Uuids first: a download started here may not change the list, but the
    // walk must not depend on that.
    QStringList uuids;
    for (const QVariant &camera : std::as_const(m_remoteCameras))
        uuids << camera.toMap().value(kUUID).toString();
    for (const QString &uuid : std::as_const(uuids))
        refreshCameraPreviewImageForUUID(uuid);
}

void RemoteCameraPreviews::refreshCameraPreviewImageForUUID(const QString &uuid)
{
    if (uuid.isNull() || !m_network)
        return;
    // Every camera of that uuid is looked at, so the last one wins.
    qsizetype index = -1;
    for (qsizetype i = 0; i < m_remoteCameras.size(); ++i) {
        if (m_remoteCameras.at(i).toMap().value(kUUID).toString() == uuid)
            index = i;
    }
    if (index < 0)
        return;
    QVariantMap camera = m_remoteCameras.at(index).toMap();

    const QUrl url(camera.value(kPreviewURL).toString(), QUrl::StrictMode);
    if (!url.isValid() || url.isRelative() || url.host().isEmpty()) {
        Log::format(QStringLiteral("no preview url available for camera %@ (%@)"),
            { camera.value(kName), camera.value(kUUID) });
        return;
    }

    QNetworkReply *reply = startPreviewDownload(url, url.host(), 0);
    if (!reply) {
        Log::format(QStringLiteral("could not create a NSURLConnection for getting the cmaera preview for %@"),
            { camera.value(kName) });
        return;
    }
    // A download still running for this camera is simply forgotten here.
    camera.insert(kPreviewTemporaryData, QByteArray(""));
    camera.insert(kPreviewConnection, QVariant::fromValue(reply));
    m_remoteCameras[index] = camera;
}

QNetworkReply *RemoteCameraPreviews::startPreviewDownload(const QUrl &url, const QString &previewHost, int redirects)
{
    QNetworkReply *reply = m_network->get(QNetworkRequest(url));
    if (!reply)
        return nullptr;
    reply->setProperty(kPreviewHostProperty, previewHost);
    reply->setProperty(kRedirectsProperty, redirects);
    // The snapshot host's certificate is taken on trust, but only its own:
    // another host has to present a certificate that holds.
    connect(reply, &QNetworkReply::sslErrors, this, [reply, previewHost](const QList<QSslError> &errors) {
        if (reply->url().host() == previewHost)
            reply->ignoreSslErrors(errors);
    });
    connect(reply, &QNetworkReply::metaDataChanged, this, [this, reply] {
        if (!isRedirect(reply))
            previewDownloadDidReceiveResponse(reply);
    });
    connect(reply, &QNetworkReply::readyRead, this, [this, reply] {
        if (!isRedirect(reply))
            previewDownloadDidReceiveData(reply);
    });
    connect(reply, &QNetworkReply::finished, this, [this, reply] {
        previewDownloadDidFinish(reply);
        reply->deleteLater();
    });
    return reply;
}

void RemoteCameraPreviews::previewDownloadDidFinish(QNetworkReply *reply)
{
    if (reply->error() != QNetworkReply::NoError) {
        previewDownloadDidFailWithError(reply, reply->errorString());
        return;
    }
    if (!isRedirect(reply)) {
        previewDownloadDidFinishLoading(reply);
        return;
    }
    const QUrl next = reply->url().resolved(reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl());
    const int redirects = reply->property(kRedirectsProperty).toInt() + 1;
    const bool lessSafe = next.scheme() != QLatin1String("https")
        && (reply->url().scheme() == QLatin1String("https") || next.scheme() != QLatin1String("http"));
    if (redirects > kMaxRedirects || lessSafe) {
        previewDownloadDidFailWithError(reply, QStringLiteral("Redirect to %1 not followed").arg(next.toString()));
        return;
    }
    const qsizetype index = cameraDictionaryForNetworkReply(reply);
    if (index < 0)
        return;
    QNetworkReply *follow = startPreviewDownload(next, reply->property(kPreviewHostProperty).toString(), redirects);
    if (!follow) {
        previewDownloadDidFailWithError(reply, QStringLiteral("Redirect to %1 not followed").arg(next.toString()));
        return;
    }
    QVariantMap camera = m_remoteCameras.at(index).toMap();
    camera.insert(kPreviewConnection, QVariant::fromValue(follow));
    m_remoteCameras[index] = camera;
}

qsizetype RemoteCameraPreviews::cameraDictionaryForNetworkReply(QNetworkReply *reply)
{
    // The first match, unlike the uuid search.
    for (qsizetype i = 0; i < m_remoteCameras.size(); ++i) {
        if (m_remoteCameras.at(i).toMap().value(kPreviewConnection).value<QNetworkReply *>() == reply)
            return i;
    }
    Log::format(QStringLiteral("couldn't find camera dictionary for NSURLConnection: %@"), { describe(reply) });
    return -1;
}

void RemoteCameraPreviews::previewDownloadDidReceiveAuthenticationChallenge(
    QNetworkReply *reply, QAuthenticator *authenticator)
{
    const QVariant host = reply->property(kPreviewHostProperty);
    if (!host.isValid())
        return;
    // Leaving the authenticator empty cancels the challenge. Another host,
    // reached through a redirect, never learns the password.
    if (reply->url().host() != host.toString())
        return;
    const int challenges = reply->property(kChallengesProperty).toInt();
    reply->setProperty(kChallengesProperty, challenges + 1);
    // Credentials already in the authenticator were the stored ones, sent
    // for this request and refused.
    const int previousFailures = challenges + (authenticator->user().isEmpty() ? 0 : 1);
    if (previousFailures != 0) {
        Log::write(QStringLiteral("connection error when retrieving preview images, cannot authenticate to server "
                                  "with logged in credentials"));
        return;
    }
    if (!m_session)
        return;
    authenticator->setUser(m_session->user());
    authenticator->setPassword(m_session->password());
}

void RemoteCameraPreviews::previewDownloadDidReceiveResponse(QNetworkReply *reply)
{
    const qsizetype index = cameraDictionaryForNetworkReply(reply);
    if (index < 0)
        return;
    QVariantMap camera = m_remoteCameras.at(index).toMap();
    camera.insert(kPreviewTemporaryData, QByteArray(""));
    m_remoteCameras[index] = camera;
}

void RemoteCameraPreviews::previewDownloadDidReceiveData(QNetworkReply *reply)
{
    const QByteArray bytes = reply->readAll();
    const qsizetype index = cameraDictionaryForNetworkReply(reply);
    if (index < 0)
        return;
    QVariantMap camera = m_remoteCameras.at(index).toMap();
    camera.insert(kPreviewTemporaryData, camera.value(kPreviewTemporaryData).toByteArray() + bytes);
    m_remoteCameras[index] = camera;
}

void RemoteCameraPreviews::previewDownloadDidFinishLoading(QNetworkReply *reply)
{
    const QByteArray rest = reply->readAll();
    const qsizetype index = cameraDictionaryForNetworkReply(reply);
    if (index < 0)
        return;
    QVariantMap camera = m_remoteCameras.at(index).toMap();
    camera.insert(kPreviewData, camera.value(kPreviewTemporaryData).toByteArray() + rest);
    camera.remove(kPreviewConnection);
    camera.remove(kPreviewTemporaryData);
    m_remoteCameras[index] = camera;
    emit snapshotChanged(camera.value(kName).toString());
}

void RemoteCameraPreviews::previewDownloadDidFailWithError(QNetworkReply *reply, const QString &error)
{
    const qsizetype index = cameraDictionaryForNetworkReply(reply);
    if (index >= 0) {
        QVariantMap camera = m_remoteCameras.at(index).toMap();
        camera.remove(kPreviewConnection);
        camera.remove(kPreviewTemporaryData);
        camera.remove(kPreviewData);
        m_remoteCameras[index] = camera;
        emit snapshotChanged(camera.value(kName).toString());
    }
    Log::format(QStringLiteral("Image Preview Download Connection failed! Error - %@ %@"),
        { error, reply->url().toString(QUrl::RemoveUserInfo) });
}

QImage RemoteCameraPreviews::snapshotOfCameraNamed(const QString &name) const
{
    if (name.isNull())
        return QImage();
    for (const QVariant &entry : m_remoteCameras) {
        const QVariantMap camera = entry.toMap();
        if (camera.value(kName).toString() == name)
            return QImage::fromData(camera.value(kPreviewData).toByteArray());
    }
    return QImage();
}

void RemoteCameraPreviews::startRefreshing(std::function<bool()> wanted, std::function<QString()> chosenCamera)
{
    stopRefreshing();
    m_wanted = std::move(wanted);
    m_chosenCamera = std::move(chosenCamera);
    auto repeat = [this](int milliseconds, void (RemoteCameraPreviews::*tick)()) {
        auto *timer = new QTimer(this);
        timer->setInterval(milliseconds);
        connect(timer, &QTimer::timeout, this, tick);
        timer->start();
        (this->*tick)();
        return timer;
    };
    m_refreshTimer = repeat(2000, &RemoteCameraPreviews::refreshIfWanted);
    m_chosenCameraUpdateTimer = repeat(5000, &RemoteCameraPreviews::requestUpdateOfChosenCamera);
}

void RemoteCameraPreviews::stopRefreshing()
{
    for (QTimer **timer : { &m_refreshTimer, &m_chosenCameraUpdateTimer }) {
        if (*timer) {
            (*timer)->stop();
            (*timer)->deleteLater();
            *timer = nullptr;
        }
    }
}

void RemoteCameraPreviews::refreshIfWanted()
{
    if (!m_wanted || m_wanted())
        refreshAllCameraPreviewImages();
}

void RemoteCameraPreviews::requestUpdateOfChosenCamera()
{
    if (!m_session || (m_wanted && !m_wanted()) || !m_chosenCamera)
        return;
    const QString name = m_chosenCamera();
    if (!name.isNull())
        m_session->requestPreviewUpdateForCameraName(name);
}
