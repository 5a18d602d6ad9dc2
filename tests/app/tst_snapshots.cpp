#include "LXController.h"
#include "LXMainWindow.h"

#include "SimSandbox.h"

#include <QLabel>
#include <QLineEdit>
#include <QSslConfiguration>

// Remote camera snapshots against the simulator's HTTPS host, whose log
// says what each request carried: "HOST credentials|none TARGET".
class TestSnapshots : public QObject
{
    Q_OBJECT

    SimSandbox m_sim;
    QProcess m_host;
    QString m_port;
    std::unique_ptr<LXController> m_controller;
    const QSslConfiguration m_tls = QSslConfiguration::defaultConfiguration();

    QVariantMap camera(int i = 0) const { return m_controller->remoteCameras().value(i).toMap(); }
    QStringList requests() const
    {
        return QString::fromUtf8(m_sim.readFile(m_sim.state(QStringLiteral("preview-requests.log"))))
            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_sim.installTools());
        m_port = QString::number(m_sim.startPreviewHost(m_host));
        QVERIFY(m_port != QLatin1String("0"));
    }

    void init()
    {
        m_controller = std::make_unique<LXController>();
        m_controller->awakeFromNib();
        LXUserLoginPanelController *panel = m_controller->loginPanel();
        panel->hostnameField()->setText(SimSandbox::kServerHost);
        panel->usernameField()->setText(SimSandbox::kUser);
        panel->passwordField()->setText(SimSandbox::kPassword);
        m_controller->loginPanelDidClickConnect(panel);
        // Signing in fetches every camera of the server's list.
        QTRY_VERIFY_WITH_TIMEOUT(camera(2).contains(QStringLiteral("uuid")), 20000);
        for (int i = 0; i < 3; ++i)
            QTRY_VERIFY(!QImage::fromData(camera(i).value(QStringLiteral("previewData")).toByteArray()).isNull());
        m_controller->remoteCameraSnapshotRefreshTimer()->stop();
        QFile::remove(m_sim.state(QStringLiteral("preview-requests.log")));
    }

    void cleanupTestCase()
    {
        m_host.kill();
        m_host.waitForFinished();
    }

    void cleanup()
    {
        m_controller.reset();
        QSslConfiguration::setDefaultConfiguration(m_tls);
        QFile::remove(m_sim.state(QStringLiteral("users.plist"))); // seeded again
    }

    void downloads_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<bool>("wrongPassword");
        QTest::addColumn<bool>("trusted");
        QTest::addColumn<bool>("local");
        QTest::addColumn<bool>("filled");
        QTest::addColumn<QString>("logged");
        QTest::addColumn<QStringList>("requests");
        const QString image = QStringLiteral("https://%2:%1/preview/Studio%202.jpg");
        const QString elsewhere
            = QStringLiteral("https://127.0.0.1:%1/redirect?to=https://localhost:%1/preview/Studio%25202.jpg");
        const QString redirect
            = QStringLiteral("127.0.0.1:%1 credentials /redirect?to=https://localhost:%1/preview/Studio%25202.jpg");
        const QString failed = QStringLiteral("Image Preview Download Connection failed! Error - ");
        const QString refused = QStringLiteral("connection error when retrieving preview images, cannot authenticate "
                                               "to server with logged in credentials");
        // The first download from 127.0.0.1 (at sign-in) stored the credentials, which later ones send at once.
        QTest::newRow("good") << image.arg("%1", "127.0.0.1") << false << false << false << true << QString()
                              << QStringList { "127.0.0.1:%1 credentials /preview/Studio%202.jpg" };
        QTest::newRow("wrong password") << image.arg("%1", "localhost") << true << false << false << false << refused
                                        << QStringList { "localhost:%1 none /preview/Studio%202.jpg",
                                               "localhost:%1 credentials /preview/Studio%202.jpg" };
        QTest::newRow("wrong stored password")
            << image.arg("%1", "127.0.0.1") << true << false << false << false << refused
            << QStringList { "127.0.0.1:%1 credentials /preview/Studio%202.jpg" };
        QTest::newRow("not found") << QStringLiteral("https://127.0.0.1:%1/preview/Nowhere.jpg") << false << false
                                   << false << false << failed
                                   << QStringList { "127.0.0.1:%1 credentials /preview/Nowhere.jpg" };
        QTest::newRow("no address") << QString() << false << false << false << false
                                    << "no preview url available for camera Studio 2 (S2)" << QStringList();
        QTest::newRow("other host's certificate")
            << elsewhere << false << false << false << false << failed << QStringList { redirect };
        QTest::newRow("redirect to other host")
            << elsewhere << false << true << false << false << failed
            << QStringList { redirect, "localhost:%1 none /preview/Studio%202.jpg" };
        QTest::newRow("local device chosen")
            << image.arg("%1", "127.0.0.1") << false << false << true << false << QString() << QStringList();
    }

    void downloads()
    {
        QFETCH(QString, url);
        QFETCH(bool, wrongPassword);
        QFETCH(bool, trusted);
        QFETCH(bool, local);
        QFETCH(bool, filled);
        QFETCH(QString, logged);
        QFETCH(QStringList, requests);
        QVariantMap studio { { "name", "Studio 2" }, { "uuid", "S2" }, { "previewData", QByteArray("old") } };
        if (!url.isNull())
            studio.insert(QStringLiteral("preview_url"), url.arg(m_port));
        m_controller->setRemoteCameras({ studio });
        m_controller->setJobCamera(studio);
        m_controller->setLocalRecordingChosen(local);
        if (wrongPassword) { // the account now has the other user's password
            const QVariantMap users = SimSandbox::readPlist(m_sim.state(QStringLiteral("users.plist")));
            SimSandbox::writePlist(
                m_sim.state(QStringLiteral("users.plist")), QVariantMap { { "demo", users.value("lecturer") } });
        }
        if (trusted) {
            QSslConfiguration tls = m_tls;
            tls.addCaCertificates(m_sim.sysroot() + QStringLiteral("/etc/orvane-sim/preview.crt"));
            QSslConfiguration::setDefaultConfiguration(tls);
        }
        Log::Capture log;
        m_controller->refreshAllCameraPreviewImages();
        QTRY_VERIFY(!camera().contains(QStringLiteral("previewConnection")));
        QVERIFY(!camera().contains(QStringLiteral("previewTemporaryData")));
        // A failed download clears the old snapshot; one that did not start keeps it.
        QCOMPARE(camera().value(QStringLiteral("previewData")).toByteArray() == "old", url.isNull() || local);
        QCOMPARE(!QImage::fromData(camera().value(QStringLiteral("previewData")).toByteArray()).isNull(), filled);
        QCOMPARE(
            m_controller->window()->findChild<QLabel *>(QStringLiteral("previewImage"))->pixmap().isNull(), !filled);
        QVERIFY2(logged.isEmpty() ? log.lines().isEmpty() : logHasPrefix(log, logged), LOG_LINES(log));
        for (QString &line : requests)
            line = line.arg(m_port);
        QCOMPARE(this->requests(), requests);
    }

    void aNewDownloadReplacesTheRunningOne()
    {
        // Two cameras of one uuid: the last of them is fetched, twice at once.
        const QVariantMap studio = camera(1);
        const QString uuid = studio.value(QStringLiteral("uuid")).toString();
        m_controller->setRemoteCameras({ QVariantMap { { "name", "Twin" }, { "uuid", uuid } }, studio });
        Log::Capture log;
        m_controller->refreshCameraPreviewImageForUUID(uuid);
        m_controller->refreshCameraPreviewImageForUUID(uuid);
        QTRY_VERIFY(!camera(1).contains(QStringLiteral("previewConnection")));
        QTRY_VERIFY(logHasPrefix(
            log, QStringLiteral("couldn't find camera dictionary for NSURLConnection: <QNetworkReply: 0x")));
        QVERIFY(camera(1).contains(QStringLiteral("previewData")));
        QCOMPARE(camera(0).keys(), QStringList({ "name", "uuid" }));
    }
};

QTEST_MAIN(TestSnapshots)
#include "tst_snapshots.moc"
