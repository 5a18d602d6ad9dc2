#include "DesktopNotifier.h"
#include "LXController.h"
#include "LXMainWindow.h"
#include "TransferCell.h"
#include "TransfersController.h"

#include "SimSandbox.h"
#include "app/SignIn.h"
#include "capture/MovieInspection.h"

#include <QDBusConnection>
#include <QLineEdit>
#include <QPushButton>

// The desktop's notification service: what it was asked to show.
class NotificationStandIn final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")
public:
    QStringList shown; // "summary\nbody"
public slots:
    uint Notify(const QString &, uint, const QString &, const QString &summary, const QString &body,
        const QStringList &, const QVariantMap &, int)
    {
        return shown << summary + QLatin1Char('\n') + body, uint(shown.size());
    }
};

class TestUploads : public QObject
{
    Q_OBJECT

    std::unique_ptr<SimSandbox> m_sim;
    std::unique_ptr<LXController> m_controller;
    QProcess m_bus;
    NotificationStandIn m_notices;

    void signIn()
    {
        signInAsDemo(m_controller->loginPanel());
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->signedInServer(), 10000);
    }

private slots:
    void initTestCase()
    {
        m_sim = std::make_unique<SimSandbox>();
        // A session bus of our own, on which the notification service is ours.
        const QString config = m_sim->path() + QStringLiteral("/session.conf");
        writeBytes(config,
            "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen><auth>EXTERNAL</auth>"
            "<policy context=\"default\"><allow send_destination=\"*\"/><allow receive_sender=\"*\"/>"
            "<allow own=\"*\"/></policy></busconfig>");
        m_bus.start(QStringLiteral("dbus-daemon"),
            { "--config-file=" + config, "--address=unix:dir=" + m_sim->path(), "--nofork", "--print-address" });
        QVERIFY(m_bus.waitForReadyRead(10000));
        const QString address = QString::fromUtf8(m_bus.readLine()).trimmed();
        qputenv("DBUS_SESSION_BUS_ADDRESS", address.toUtf8());
        QDBusConnection standIn = QDBusConnection::connectToBus(address, QStringLiteral("stand-in"));
        QVERIFY(standIn.registerObject(DesktopNotifier::kPath, &m_notices, QDBusConnection::ExportAllSlots));
        Log::Capture log; // before the service is there: one log line, nothing else
        DesktopNotifier().notifyUploadEnded(QStringLiteral("Quiet Talk"), true);
        QTRY_VERIFY(logHasPrefix(log, QStringLiteral("No desktop notification service: ")) && log.lines().size() == 1);
        QVERIFY(standIn.registerService(DesktopNotifier::kService) && m_notices.shown.isEmpty());
    }
    void cleanupTestCase() { m_bus.terminate(), m_bus.waitForFinished(); }

    void init()
    {
        QVERIFY(m_sim->resetState());
        m_controller = std::make_unique<LXController>();
        m_controller->awakeFromNib();
    }
    void cleanup() { m_controller.reset(), QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

    void failedUploadIsNotifiedAndRetriedFromItsRowToCompletion()
    {
        signIn();
        const QString movie = m_sim->path() + QStringLiteral("/talk.mov");
        QVERIFY(writeBytes(movie, QByteArray(200000, 'm')));
        m_sim->setFault(QStringLiteral("--submit"), { { "upload_error", true }, { "remaining", 1 } });
        m_controller->prepareToSubmitFiles({ movie });
        m_controller->job()->setTitle(QStringLiteral("Failing Talk"));
        m_controller->submitClicked();
        QTRY_VERIFY_WITH_TIMEOUT(m_notices.shown.size() == 1
                && m_notices.shown.first().contains(QStringLiteral("\"Failing Talk\" could not be uploaded.")),
            20000);
        m_controller->showTransfersWindow();
        TransfersController *transfers = m_controller->transfersController();
        auto retryButton = [&](int row) { return transfers->cellForRow(row)->findChild<QPushButton *>("retryButton"); };
        QPushButton *retry = retryButton(0);
        QVERIFY(retry->isVisible() && retry->accessibleName() == QStringLiteral("Retry Upload")
            && transfers->cellForRow(0)->status() == QStringLiteral("Error"));
        // Files gone: the user is told which, and nothing is queued or deleted.
        const QString file = transfers->transfers()->first().toMap().value("content_paths").toList().first().toString();
        QVERIFY(QFile::rename(file, file + ".away"));
        QTest::mouseClick(retry, Qt::LeftButton);
        auto *alert = transfers->window()->findChild<QMessageBox *>();
        QVERIFY(alert && alert->isVisible() && alert->informativeText().contains(file)
            && alert->text() == QStringLiteral("This upload can no longer be retried."));
        alert->accept();
        QVERIFY(QFile::rename(file + ".away", file));
        const QString failed = m_controller->job()->uploadUUID();
        QTest::mouseClick(retry, Qt::LeftButton);
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->job()->uploadUUID() != failed, 10000);
        QVERIFY(!retryButton(0)->isVisible() && !retryButton(1)->isVisible()); // one retry per failed upload
        QTRY_VERIFY_WITH_TIMEOUT(m_notices.shown.size() == 2
                && m_notices.shown.last().contains(QStringLiteral("\"Failing Talk\" has been uploaded.")),
            20000);
        QCOMPARE(
            readBytes(m_sim->state("library/" + m_controller->job()->uploadUUID() + "/talk.mov")), readBytes(movie));
        QVERIFY(QFile::exists(file)); // the failed upload's files stay
    }

    void interruptedRecordingsAreOfferedAfterLoginOldestFirst()
    {
        // A recording killed while its fragments were written, and a copy.
        const QString older = m_sim->jobDataFolder() + QStringLiteral("/LocalVideo-2026-11-23-101500.mov");
        const QString movie = m_sim->jobDataFolder() + QStringLiteral("/LocalVideo-2026-11-23-111500.mov");
        const QString recording = m_sim->path() + QStringLiteral("/killed.mov");
        QProcess recorder;
        recorder.startCommand(
            QStringLiteral("gst-launch-1.0 -q videotestsrc is-live=true ! x264enc tune=zerolatency "
                           "speed-preset=ultrafast key-int-max=15 ! qtmux fragment-duration=300 ! filesink location=")
            + recording);
        QTRY_VERIFY_WITH_TIMEOUT(readBytes(recording).count("moof") >= 8, 20000);
        recorder.kill(), recorder.waitForFinished();
        QVERIFY(
            QDir().mkpath(m_sim->jobDataFolder()) && QFile::copy(recording, older) && QFile::rename(recording, movie));
        const double recorded = inspectMovie(movie).videoEnd;
        const QDateTime interrupted(QDate(2026, 11, 23), QTime(11, 20));
        QCOMPARE(QProcess::execute("touch", { "-d", "2026-11-23 10:20", older }), 0);
        QCOMPARE(QProcess::execute("touch", { "-d", "2026-11-23 11:20", movie }), 0);
        const QString queued = m_sim->jobDataFolder() + QStringLiteral("/LocalAudio-2026-11-23-091000.mov");
        QVERIFY(writeBytes(queued, "queued")); // one that an upload holds is not offered
        const QVariantMap upload { { "upload_uuid", "Q" }, { "content_paths", QStringList { queued } } };
        QVERIFY(SimSandbox::writePlist(m_sim->state("uploads.plist"), QVariantMap { { "Q", upload } }));

        signIn(); // the older one is declined, the other published
        auto asked = [&] { return m_controller->interruptedRecordingQuestion(); };
        for (const QDateTime &time : { interrupted.addSecs(-3600), interrupted }) {
            const QString text = QLocale().toString(time, QLocale::ShortFormat);
            QTRY_COMPARE_WITH_TIMEOUT(
                asked() ? asked()->text() : QString(), "Publish the recording interrupted on " + text + "?", 30000);
            QTest::mouseClick(time < interrupted ? asked()->escapeButton() : asked()->defaultButton(), Qt::LeftButton);
        }
        QTRY_VERIFY(!asked()); // the queued one is not asked
        QCOMPARE(m_controller->window()->currentPage(), LXMainWindow::Page::Metadata);
        QCOMPARE(m_controller->job()->movieFilePaths(), QStringList { movie });
        QCOMPARE(m_controller->job()->startedAt(), interrupted.addSecs(-300)); // from the name
        QCOMPARE(m_controller->job()->stoppedAt(), interrupted);
        const MovieInspection plain = inspectMovie(movie);
        QVERIFY(!plain.topLevelAtoms.contains("moof") && qAbs(plain.containerDuration - recorded) < 0.1);
        QVERIFY(QFile::exists(older)); // declined: kept, and not asked again in this run
        m_controller->job()->setTitle(QStringLiteral("Recovered"));
        m_controller->submitClicked(); // published, it leaves the spool folder as any recording does
        QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(movie), 20000);
        m_controller->lookForInterruptedRecordings();
        QTRY_VERIFY(!m_controller->isLookingForInterruptedRecordings());
        QVERIFY(!asked());
    }
};

QTEST_MAIN(TestUploads)
#include "tst_uploads.moc"
