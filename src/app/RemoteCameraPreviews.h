#pragma once

#include <QImage>
#include <QObject>
#include <QVariantList>

#include <functional>
#include <memory>

class OrvaneServerInterface;
class QAuthenticator;
class QNetworkAccessManager;
class QNetworkReply;
class QTimer;
class QUrl;

// The server's cameras and their snapshots, downloaded over HTTPS from each
// camera's "preview_url" with the signed-in user's credentials. Each
// download is kept in its camera's record while it runs ("previewConnection",
// "previewTemporaryData") and its picture there once done ("previewData").
// Main thread only.
class RemoteCameraPreviews final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RemoteCameraPreviews)

public:
    explicit RemoteCameraPreviews(QObject *parent = nullptr);
    ~RemoteCameraPreviews() override;

    // A sign-in's session: its credentials, and only its, answer the
    // snapshot hosts from now on. Downloads of an earlier session are
    // forgotten.
    void setSession(const std::shared_ptr<OrvaneServerInterface> &session);

    QVariantList remoteCameras() const { return m_remoteCameras; }
    void setRemoteCameras(const QVariantList &cameras) { m_remoteCameras = cameras; }

    void refreshAllCameraPreviewImages();
    // Downloads the snapshot of the camera with this "uuid" into its record.
    void refreshCameraPreviewImageForUUID(const QString &uuid);
    // The place in remoteCameras of the camera whose snapshot download
    // `reply` is (the first match); -1, logged, when there is none.
    qsizetype cameraDictionaryForNetworkReply(QNetworkReply *reply);
    // The last snapshot of the camera named `name`; null when there is none.
    QImage snapshotOfCameraNamed(const QString &name) const;

    // Every 2 s the snapshots are downloaded again, and every 5 s the server
    // is asked to take a new one of the chosen camera (`chosenCamera`, null
    // for none), while `wanted` says so: a recording made on this computer
    // needs none of it.
    void startRefreshing(std::function<bool()> wanted, std::function<QString()> chosenCamera);
    void stopRefreshing();
    QTimer *refreshTimer() const { return m_refreshTimer; }
    QTimer *chosenCameraUpdateTimer() const { return m_chosenCameraUpdateTimer; }
    void refreshIfWanted();
    void requestUpdateOfChosenCamera();

signals:
    // A download of the camera named `name` ended, with a picture or not.
    void snapshotChanged(const QString &name);

private:
    void previewDownloadDidReceiveAuthenticationChallenge(QNetworkReply *reply, QAuthenticator *authenticator);
    void previewDownloadDidReceiveResponse(QNetworkReply *reply);
    void previewDownloadDidReceiveData(QNetworkReply *reply);
    void previewDownloadDidFinishLoading(QNetworkReply *reply);
    void previewDownloadDidFailWithError(QNetworkReply *reply, const QString &error);
    // Starts one request of a snapshot download; redirects are followed
    // through previewDownloadDidFinish.
    QNetworkReply *startPreviewDownload(const QUrl &url, const QString &previewHost, int redirects);
    void previewDownloadDidFinish(QNetworkReply *reply);

    QVariantList m_remoteCameras;
    std::shared_ptr<OrvaneServerInterface> m_session;
    QNetworkAccessManager *m_network = nullptr;
    QTimer *m_refreshTimer = nullptr;
    QTimer *m_chosenCameraUpdateTimer = nullptr;
    std::function<bool()> m_wanted;
    std::function<QString()> m_chosenCamera;
};
