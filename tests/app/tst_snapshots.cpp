#include "LXController.h"
#include "LXMainWindow.h"
#include "SimSandbox.h"
#include "app/SignIn.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSslConfiguration>

// Snapshots from the simulator's HTTPS host, whose log tells what each
// request carried: "HOST:PORT credentials|none TARGET".
class TestSnapshots : public QObject
{
    Q_OBJECT
    SimSandbox m_sim;
    QProcess m_host;
    std::unique_ptr<LXController> m_controller;
    const QSslConfiguration m_tls = QSslConfiguration::defaultConfiguration();
    QVariantMap camera(int i) const { return m_controller->remoteCameras().value(i).toMap(); }
    bool hasSnapshot(int i) const { return !QImage::fromData(camera(i)["previewData"].toByteArray()).isNull(); }

private slots:
    void initTestCase() { QVERIFY(m_sim.installTools() && m_sim.startPreviewHost(m_host)); }
    void cleanupTestCase() { m_host.kill(), m_host.waitForFinished(); }
    void cleanup() { m_controller.reset(), QSslConfiguration::setDefaultConfiguration(m_tls); }
    void init()
    {
        QFile::remove(m_sim.state("users.plist")); // seeded again
        m_controller = std::make_unique<LXController>();
        m_controller->awakeFromNib();
        signInAsDemo(m_controller->loginPanel());
        // Signing in fetches every camera of the server's list.
        QTRY_VERIFY_WITH_TIMEOUT(hasSnapshot(0) && hasSnapshot(1) && hasSnapshot(2), 20000);
        m_controller->remoteCameraSnapshotRefreshTimer()->stop();
        QFile::remove(m_sim.state("preview-requests.log"));
    }

    void downloads_data()
    {
        QTest::addColumn<QStringList>("row"); // url, setup, snapshot, log line, requests
        const QString path = "/preview/Studio%202.jpg", image = "https://127.0.0.1:PORT" + path;
        const QString redirect = "https://127.0.0.1:PORT/redirect?to=https://localhost:PORT/preview/Studio%25202.jpg";
        const QString failed = "Image Preview Download Connection failed! Error - "; // and a cleared snapshot
        // The downloads at sign-in stored the credentials for 127.0.0.1, which later ones send at once.
        const QString sent = "127.0.0.1 credentials " + path,
                      hop = "127.0.0.1 credentials " + redirect.mid(22).remove(":PORT");
        QTest::newRow("good") << QStringList { image, "", "new", "", sent };
        QTest::newRow("wrong password") << QStringList { "https://localhost:PORT" + path, "wrong", "none",
            "connection error when retrieving preview images, cannot authenticate to server with logged in credentials",
            "localhost none " + path + "|localhost credentials " + path };
        QTest::newRow("no url") << QStringList { {}, "", "old", "no preview url available for camera Studio 2 (S2)",
            "" };
        QTest::newRow("other host's certificate") << QStringList { redirect, "", "none", failed, hop };
        QTest::newRow("redirect elsewhere")
            << QStringList { redirect, "trusted", "none", failed, hop + "|localhost none " + path };
        QTest::newRow("local device chosen") << QStringList { image, "local", "old", "", "" };
        // The uuid search takes the last camera, twice; the first download then finds no camera.
        QTest::newRow("one uuid twice") << QStringList { image, "twin", "new",
            "couldn't find camera dictionary for NSURLConnection: <QNetworkReply: 0x", sent + "|" + sent };
    }

    void downloads()
    {
        QFETCH(QStringList, row);
        const QString port = m_sim.readFile(m_sim.state("preview-port")), setup = row[1], snapshot = row[2],
                      logged = row[3];
        QVariantMap studio { { "name", "Studio 2" }, { "uuid", "S2" }, { "previewData", QByteArray("old") } };
        if (!row[0].isNull())
            studio.insert("preview_url", row[0].replace("PORT", port));
        m_controller->setRemoteCameras(
            QVariantList { QVariantMap { { "name", "Twin" }, { "uuid", "S2" } }, studio }.mid(setup != "twin"));
        m_controller->setMode(LXController::Mode::Video); // the page that shows a camera's picture
        m_controller->setJobCamera(studio);
        m_controller->setLocalRecordingChosen(setup == "local");
        const QString users = m_sim.state("users.plist"); // the account may take the other one's password
        if (setup == "wrong")
            SimSandbox::writePlist(users, QVariantMap { { "demo", SimSandbox::readPlist(users)["lecturer"] } });
        QSslConfiguration tls = m_tls;
        if (setup == "trusted")
            tls.addCaCertificates(m_sim.sysroot() + "/etc/orvane-sim/preview.crt");
        QSslConfiguration::setDefaultConfiguration(tls);
        Log::Capture log;
        m_controller->refreshAllCameraPreviewImages();
        const auto camera = [&] { return m_controller->remoteCameras().last().toMap(); };
        QTRY_VERIFY(!camera().contains("previewConnection") && !camera().contains("previewTemporaryData"));
        QTRY_VERIFY2(logged.isEmpty() ? log.lines().isEmpty() : logHasPrefix(log, logged), LOG_LINES(log));
        // A failed download clears the old snapshot; one never started keeps it.
        const QByteArray data = camera()["previewData"].toByteArray();
        QCOMPARE(QString(data == "old" ? "old" : QImage::fromData(data).isNull() ? "none" : "new"), snapshot);
        QCOMPARE(m_controller->window()->findChild<QLabel *>("previewImage")->pixmap().isNull(), snapshot != "new");
        QString hostLog = m_sim.readFile(m_sim.state("preview-requests.log"));
        QStringList requests = hostLog.remove(":" + port).split('\n', Qt::SkipEmptyParts);
        // Two downloads at once may take a second connection, which learns the
        // stored credentials only from a challenge of its own.
        if (setup == "twin")
            requests.removeAll("127.0.0.1 none /preview/Studio%202.jpg");
        QCOMPARE(requests.join('|'), row[4]);
    }

    void aSecondUserIsAnsweredWithTheirOwnCredentials()
    {
        // A new recording begins at the login panel, where the lecturer signs in after the demo user.
        QFile::remove(m_sim.state("preview-users.log"));
        m_controller->job()->setTitle("Done");
        m_controller->newPodcastClicked();
        LXUserLoginPanelController *panel = m_controller->loginPanel();
        panel->usernameField()->setText("lecturer");
        panel->passwordField()->setText("chalkboard");
        QTest::mouseClick(panel->connectButton(), Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(m_controller->credentials().user, QStringLiteral("lecturer"), 10000);
        QTRY_VERIFY_WITH_TIMEOUT(m_sim.readFile(m_sim.state("preview-users.log")).count('\n') >= 3, 20000);
        QCOMPARE(
            QString(m_sim.readFile(m_sim.state("preview-users.log"))).split('\n', Qt::SkipEmptyParts).filter("demo"),
            QStringList());
    }
};

QTEST_MAIN(TestSnapshots)
#include "tst_snapshots.moc"
