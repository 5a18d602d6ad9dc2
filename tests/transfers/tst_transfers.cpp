#include "SimSandbox.h"
#include "TransferCell.h"
#include "TransfersController.h"

#include <QApplication>

// The transfers window polling the simulator's upload queue.
class TestTransfers : public QObject, public TransfersControllerDelegate
{
    Q_OBJECT

    SimSandbox m_sim;
    int m_updates = 0;
    void updateSubmissionStatus() override { ++m_updates; }

    // Queues an upload in the simulator's state, `age` seconds old; a
    // failing one ends in "error" halfway.
    void queue(const QString &uuid, double age, const QVariantMap &metadata = {}, bool fails = false)
    {
        const QString file = m_sim.path() + QStringLiteral("/meta-%1.plist").arg(uuid);
        if (!metadata.isEmpty())
            SimSandbox::writePlist(file, metadata);
        QVariantMap uploads = SimSandbox::readPlist(m_sim.state(QStringLiteral("uploads.plist")));
        uploads.insert(uuid,
            QVariantMap { { "upload_uuid", uuid }, { "user", SimSandbox::kUser },
                { "submitted_at", QDateTime::currentDateTimeUtc().addMSecs(qint64(-age * 1000)) },
                { "total_bytes", 400.0 * 1024 * 1024 }, { "cached_metadata_file", file },
                { "content_paths", QVariantList { QStringLiteral("/spool/%1.mov").arg(uuid) } },
                { "simulated_failure", fails } });
        SimSandbox::writePlist(m_sim.state(QStringLiteral("uploads.plist")), uploads);
    }

private slots:
    void init()
    {
        QVERIFY(m_sim.resetState());
        m_updates = 0;
    }

    void rowDisplay_data()
    {
        QTest::addColumn<QVariantMap>("row");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("status");
        const QVariantMap titled { { "Title", "Talk" }, { "UserMetadata_Title", "Other" } };
        auto row = [](const QString &status, double percent, double left, const QVariant &metadata) {
            return QVariantMap { { "status", status }, { "percent_done", percent }, { "estimated_time_left", left },
                { "user", "ann" }, { "metadata", metadata } };
        };
        QTest::newRow("pending") << row("pending", 0, 9, titled) << "'Talk' by ann"
                                 << "Pending";
        QTest::newRow("error") << row("error", 50, 0, titled) << "'Talk' by ann"
                               << "Error";
        QTest::newRow("completed") << row("completed", 100, 0, titled) << "'Talk' by ann"
                                   << "Completed";
        QTest::newRow("uploading, no estimate") << row("uploading", 42.9, 0, titled) << "'Talk' by ann"
                                                << "42% done";
        QTest::newRow("uploading, minutes left")
            << row("uploading", 7, 150, QVariantMap { { "UserMetadata_Title", "Fallback" } }) << "'Fallback' by ann"
            << "7% done \u2014 3 minutes remaining";
        QTest::newRow("no metadata: nil title, unknown status") << row("paused", 3, 5, QVariant()) << "'(null)' by ann"
                                                                << "";
    }
    void rowDisplay()
    {
        QFETCH(QVariantMap, row);
        QFETCH(QString, title);
        QFETCH(QString, status);
        TransferCell cell;
        cell.setObjectValue(QVariantMap { { "fileIcon", "video-x-generic" } });
        cell.setObjectValue(row);
        QCOMPARE(cell.titleAndAuthor(), title);
        QCOMPARE(cell.status(), status);
        QCOMPARE(cell.percentShown(), int(row.value("percent_done").toDouble()));
        QCOMPARE(cell.iconName(), QStringLiteral("video-x-generic")); // kept when a row has none
        cell.setObjectValue(QStringLiteral("not a row"));
        QCOMPARE(cell.status(), status);
    }

    // Counts, rows in the tool's order, statuses by UUID, and views that
    // follow the rows as uploads come and go.
    void pollsWhileShown()
    {
        TransfersController transfers;
        transfers.setController(this);
        QCOMPARE(transfers.transferStatusForUUID("A"), QString()); // before any poll
        QWidget *window = transfers.window();
        window->show();
        transfers.startPollingSubmissions();
        QCOMPARE(transfers.numberOfTransfersText(), QStringLiteral("No Transfers"));
        QVERIFY(!transfers.clearButtonEnabled());
        QCOMPARE(m_updates, 1);

        queue("A", 3600, { { "Title", "Old talk" } });
        transfers.refreshTransfers();
        QCOMPARE(transfers.numberOfTransfersText(), QStringLiteral("1 Transfer"));
        QVERIFY(transfers.clearButtonEnabled());
        queue("B", 2);
        queue("C", 3000, {}, true);
        QTRY_COMPARE_WITH_TIMEOUT(m_updates, 3, 10000); // the timer's poll
        QCOMPARE(transfers.numberOfTransfersText(), QStringLiteral("3 Transfers"));
        QCOMPARE(transfers.numberOfRows(), 3);
        QCOMPARE(transfers.transferStatusForUUID("A"), QStringLiteral("completed"));
        QCOMPARE(transfers.transferStatusForUUID("B"), QStringLiteral("uploading"));
        QCOMPARE(transfers.transferStatusForUUID("C"), QStringLiteral("error"));
        QCOMPARE(transfers.transferStatusForUUID("D"), QString());
        // The tool lists by submission, not by key: A, C, B.
        QCOMPARE(transfers.cellForRow(0)->titleAndAuthor(), QStringLiteral("'Old talk' by demo"));
        QCOMPARE(transfers.cellForRow(1)->status(), QStringLiteral("Error"));
        QVERIFY(transfers.cellForRow(2)->status().contains(QStringLiteral(" remaining")));
        QCOMPARE(transfers.cellForRow(0)->iconName(), QStringLiteral("video-quicktime"));

        transfers.clearTransfers();
        QCOMPARE(transfers.numberOfRows(), 3); // rows change only at the next poll
        transfers.refreshTransfers();
        QCOMPARE(transfers.numberOfRows(), 2);
        QCOMPARE(transfers.cellForRow(0)->status(), QStringLiteral("Error"));
        QTRY_COMPARE(window->findChildren<TransferCell *>().size(), 2);

        transfers.stopPollingSubmissions(); // ignored while shown
        QVERIFY(transfers.isPolling());
        window->close(); // the close overrides visibility
        QVERIFY(!transfers.isPolling());
        QCOMPARE(transfers.transferStatusForUUID("C"), QString());
    }

    // A submission watched with the window hidden: polling until told to stop.
    void followsASubmissionWithoutTheWindow()
    {
        TransfersController transfers;
        transfers.setController(this);
        queue("W", -3); // pending for seconds to come, however loaded the machine
        transfers.startPollingSubmissions();
        transfers.startPollingSubmissions(); // one timer only
        QCOMPARE(m_updates, 1);
        QCOMPARE(transfers.transferStatusForUUID("W"), QStringLiteral("pending"));
        QTRY_COMPARE_WITH_TIMEOUT(transfers.transferStatusForUUID("W"), QStringLiteral("uploading"), 20000);
        transfers.stopPollingSubmissions();
        QVERIFY(!transfers.isPolling());
        QVERIFY(!transfers.transfers().has_value());
    }
};

QTEST_MAIN(TestTransfers)
#include "tst_transfers.moc"
