#include "SimSandbox.h"
#include "TransferCell.h"
#include "TransfersController.h"
#include "TransfersModel.h"

#include <QAccessible>
#include <QApplication>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>

// The transfers window polling the simulator's upload queue.
class TestTransfers : public QObject, public TransfersControllerDelegate
{
    Q_OBJECT

    SimSandbox m_sim;
    int m_updates = 0;
    QStringList m_retried; // "failed>new"
    void updateSubmissionStatus() override { ++m_updates; }
    std::shared_ptr<OrvaneServerInterface> signedInServer() override { return SimSandbox::makeInterface(); }
    void transferWasRetried(const QString &failed, const QString &newUUID) override
    {
        m_retried << failed + QLatin1Char('>') + newUUID;
    }

    // Queues an upload in the simulator's state, `age` seconds old; a
    // failing one ends in "error" halfway. Its movie exists when `real`.
    void queue(const QString &uuid, double age, const QVariantMap &metadata = {}, bool fails = false, bool real = false)
    {
        const QString file = m_sim.path() + QStringLiteral("/meta-%1.plist").arg(uuid);
        if (!metadata.isEmpty())
            SimSandbox::writePlist(file, metadata);
        const QString movie = (real ? m_sim.path() : QStringLiteral("/spool")) + QStringLiteral("/%1.mov").arg(uuid);
        if (real)
            SimSandbox::writeFile(movie, "movie");
        QVariantMap uploads = SimSandbox::readPlist(m_sim.state(QStringLiteral("uploads.plist")));
        uploads.insert(uuid,
            QVariantMap { { "upload_uuid", uuid }, { "user", SimSandbox::kUser },
                { "submitted_at", QDateTime::currentDateTimeUtc().addMSecs(qint64(-age * 1000)) },
                { "total_bytes", 400.0 * 1024 * 1024 }, { "cached_metadata_file", file },
                { "content_paths", QVariantList { movie } }, { "workflow", "lecture-capture" },
                { "simulated_failure", fails } });
        SimSandbox::writePlist(m_sim.state(QStringLiteral("uploads.plist")), uploads);
    }
    // What a screen reader hears of each row: "name | description".
    static QStringList spokenRows(QListView *list)
    {
        QAccessibleInterface *table = QAccessible::queryAccessibleInterface(list);
        QStringList rows;
        for (int i = 0; table && i < table->childCount(); ++i) {
            QAccessibleInterface *row = table->child(i);
            if (row->role() == QAccessible::ListItem)
                rows << row->text(QAccessible::Name) + QStringLiteral(" | ") + row->text(QAccessible::Description);
        }
        return rows;
    }

private slots:
    void init()
    {
        QVERIFY(m_sim.resetState());
        m_updates = 0;
        m_retried.clear();
    }

    void rowDisplay_data()
    {
        QTest::addColumn<QVariantMap>("row");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("status");
        QTest::addColumn<QString>("description");
        const QVariantMap titled { { "Title", "Talk" }, { "UserMetadata_Title", "Other" } };
        auto row = [](const QString &status, double percent, double left, const QVariant &metadata) {
            return QVariantMap { { "status", status }, { "percent_done", percent }, { "estimated_time_left", left },
                { "user", "ann" }, { "metadata", metadata } };
        };
        QTest::newRow("pending") << row("pending", 0, 9, titled) << "'Talk' by ann"
                                 << "Pending"
                                 << "Pending, progress 0 %";
        QTest::newRow("error") << row("error", 50, 0, titled) << "'Talk' by ann"
                               << "Error"
                               << "Error, progress 50 %. Press Return to retry the upload.";
        QTest::newRow("completed") << row("completed", 100, 0, titled) << "'Talk' by ann"
                                   << "Completed"
                                   << "Completed, progress 100 %";
        QTest::newRow("uploading, no estimate") << row("uploading", 42.9, 0, titled) << "'Talk' by ann"
                                                << "42% done"
                                                << "42% done, progress 42 %";
        QTest::newRow("uploading, minutes left")
            << row("uploading", 7, 150, QVariantMap { { "UserMetadata_Title", "Fallback" } }) << "'Fallback' by ann"
            << "7% done \u2014 3 minutes remaining"
            << "7% done \u2014 3 minutes remaining, progress 7 %";
        QTest::newRow("no metadata: nil title, unknown status") << row("paused", 3, 5, QVariant()) << "'(null)' by ann"
                                                                << ""
                                                                << "progress 3 %";
    }
    void rowDisplay()
    {
        QFETCH(QVariantMap, row);
        QFETCH(QString, title);
        QFETCH(QString, status);
        QFETCH(QString, description);
        TransfersModel model;
        model.setRetryablePredicate([](const QString &) { return true; });
        model.setTransfers({ QVariantMap { { "fileIcon", "video-x-generic" } } }, { "K" });
        model.setTransfers({ row }, { "K" });
        const QModelIndex index = model.index(0);
        QCOMPARE(index.data(Qt::AccessibleTextRole).toString(), title);
        QCOMPARE(index.data(TransfersModel::StatusLineRole).toString(), status);
        QCOMPARE(index.data(Qt::AccessibleDescriptionRole).toString(), description);
        QCOMPARE(index.data(TransfersModel::IconNameRole).toString(), "video-x-generic"); // kept when a row has none
    }

    // Counts, rows in the tool's order as a screen reader hears them,
    // statuses by UUID, and live parts only for failed rows as uploads come
    // and go.
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
        QCOMPARE(transfers.transferStatusForUUID("A"), QStringLiteral("completed"));
        QCOMPARE(transfers.transferStatusForUUID("B"), QStringLiteral("uploading"));
        QCOMPARE(transfers.transferStatusForUUID("C"), QStringLiteral("error"));
        QCOMPARE(transfers.transferStatusForUUID("D"), QString());
        // The tool lists by submission, not by key: A, C, B.
        auto *list = window->findChild<QListView *>();
        const QStringList spoken = spokenRows(list);
        QCOMPARE(spoken.size(), 3);
        QCOMPARE(spoken[0], QStringLiteral("'Old talk' by demo | Completed, progress 100 %"));
        QCOMPARE(
            spoken[1], QStringLiteral("'(null)' by demo | Error, progress 50 %. Press Return to retry the upload."));
        QVERIFY(spoken[2].contains(QStringLiteral(" remaining, progress ")));
        QCOMPARE(transfers.model()->index(0).data(TransfersModel::IconNameRole), QStringLiteral("video-quicktime"));
        QCOMPARE(window->findChildren<TransferCell *>().size(), 1); // only the failed row is live
        QPushButton *retry = window->findChild<TransferCell *>()->findChild<QPushButton *>();
        QVERIFY(retry->isVisible() && retry->accessibleName() == QStringLiteral("Retry Upload"));

        transfers.clearTransfers();
        QCOMPARE(transfers.numberOfRows(), 3); // rows change only at the next poll
        list->setCurrentIndex(transfers.model()->index(1));
        transfers.refreshTransfers();
        QCOMPARE(transfers.numberOfRows(), 2);
        QCOMPARE(list->currentIndex().row(), 0); // the selection followed its row
        QCOMPARE(transfers.cellForRow(0)->status(), QStringLiteral("Error"));
        QCOMPARE(window->findChildren<TransferCell *>().size(), 1);

        // Return on the failed row retries it; its files are gone, and it says so.
        QTest::keyClick(list, Qt::Key_Return);
        QTRY_VERIFY(window->findChild<QMessageBox *>());
        QCOMPARE(window->findChild<QMessageBox *>()->text(), QStringLiteral("This upload can no longer be retried."));

        transfers.stopPollingSubmissions(); // ignored while shown
        QVERIFY(transfers.isPolling());
        window->close(); // the close overrides visibility
        QVERIFY(!transfers.isPolling());
        QCOMPARE(transfers.transferStatusForUUID("C"), QString());
    }

    // A failed upload whose files are there is queued again once: its
    // button goes, and the new upload is reported.
    void retriesAFailedUploadOnce()
    {
        queue("F", 3000, { { "Title", "Talk" } }, true, true);
        TransfersController transfers;
        transfers.setController(this);
        transfers.window()->show();
        transfers.startPollingSubmissions();
        QPushButton *retry = transfers.cellForRow(0)->findChild<QPushButton *>();
        QVERIFY(retry->isVisible());
        QTest::mouseClick(retry, Qt::LeftButton);
        QVERIFY(!retry->isVisible());
        QTRY_COMPARE_WITH_TIMEOUT(m_retried.size(), 1, 10000);
        QVERIFY(m_retried.first().startsWith(QStringLiteral("F>")));
        QTRY_COMPARE_WITH_TIMEOUT(transfers.numberOfRows(), 2, 10000);
        QVERIFY(!transfers.model()->index(0).data(TransfersModel::RetryOfferedRole).toBool());
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
