// The main thread's longest stall while the transfers window polls a queue
// of 1,000 uploads in the bundled simulator: the tool's run alone, the first
// poll (which fills the list's model), the polls after it, and the longest gap
// a 1 ms timer sees in the event loop while the window polls on its own.
#include "OrvaneServerInterface.h"
#include "PropertyList.h"
#include "TransfersController.h"

#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr int kUploads = 1000;

// Copies the simulator's tool under `root` and queues the uploads in its
// state: a spread of ages, so the queue holds every status.
void seed(const QString &root)
{
    const QString tools = root + QStringLiteral("/usr/libexec/orvane");
    QDir().mkpath(tools);
    QFile::copy(QStringLiteral(LUMEX_SIM_ROOT "/usr/libexec/orvane/orvxexec"), tools + QStringLiteral("/orvxexec"));
    QFile::setPermissions(tools + QStringLiteral("/orvxexec"), QFile::ReadOwner | QFile::ExeOwner);
    const QString state = root + QStringLiteral("/var/lib/orvane-sim");
    QDir().mkpath(state + QStringLiteral("/meta"));
    QVariantMap uploads;
    const QDateTime now = QDateTime::currentDateTimeUtc();
    for (int i = 0; i < kUploads; ++i) {
        const QString uuid = QStringLiteral("%1-UPLOAD").arg(i, 5, 10, QLatin1Char('0'));
        const QString metadata = state + QStringLiteral("/meta/%1.plist").arg(uuid);
        PropertyList::writeFile(metadata,
            QVariantMap { { QStringLiteral("Title"), QStringLiteral("Lecture %1").arg(i) },
                { QStringLiteral("Description"), QStringLiteral("Week %1").arg(i % 14) } },
            false);
        uploads.insert(uuid,
            QVariantMap { { QStringLiteral("upload_uuid"), uuid }, { QStringLiteral("user"), QStringLiteral("demo") },
                { QStringLiteral("submitted_at"), now.addSecs(-(i % 600)) },
                { QStringLiteral("total_bytes"), 1024.0 * 1024 * (50 + i % 500) },
                { QStringLiteral("cached_metadata_file"), metadata },
                { QStringLiteral("content_paths"),
                    QVariantList { QStringLiteral("/spool/LocalVideo-%1.mov").arg(uuid) } },
                { QStringLiteral("simulated_failure"), i % 50 == 0 } });
    }
    PropertyList::writeFile(state + QStringLiteral("/uploads.plist"), uploads, true);
}

double msecs(const std::function<void()> &work)
{
    QElapsedTimer t;
    t.start();
    work();
    return t.nsecsElapsed() / 1e6;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QTemporaryDir root;
    seed(root.path());
    qputenv("LUMEX_SYSROOT", root.path().toUtf8());
    qputenv("HOME", root.path().toUtf8());

    // Medians show the cost; the worst shows what a loaded machine adds.
    constexpr int kRuns = 20;
    std::vector<double> tool;
    for (int i = 0; i < kRuns; ++i)
        tool.push_back(msecs([] { OrvaneServerInterface::transferStatuses(); }));

    TransfersController transfers;
    QWidget *window = transfers.window();
    window->resize(420, 600);
    window->show();
    const double first = msecs([&] { transfers.startPollingSubmissions(); });
    if (transfers.numberOfRows() != kUploads) {
        std::fprintf(stderr, "expected %d rows, got %d\n", kUploads, transfers.numberOfRows());
        return 1;
    }
    std::vector<double> polls;
    for (int i = 0; i < kRuns; ++i) {
        QApplication::processEvents();
        polls.push_back(msecs([&] { transfers.refreshTransfers(); }));
    }

    // The window on its own timer for five polls, a 1 ms timer measuring
    // how long the event loop goes unanswered.
    QElapsedTimer sinceTick;
    double stall = 0;
    QTimer ticker;
    ticker.setTimerType(Qt::PreciseTimer);
    QObject::connect(&ticker, &QTimer::timeout, [&] {
        stall = std::max(stall, sinceTick.nsecsElapsed() / 1e6);
        sinceTick.restart();
    });
    sinceTick.start();
    ticker.start(1);
    QTimer::singleShot(5 * TransfersController::kRefreshMsec + 500, &app, &QApplication::quit);
    app.exec();

    std::sort(tool.begin(), tool.end());
    std::sort(polls.begin(), polls.end());
    std::printf("uploads in the queue: %d\n", kUploads);
    std::printf("tool run (--list_uploads + parse): median %.1f ms, worst %.1f ms of %d\n", tool[kRuns / 2],
        tool.back(), kRuns);
    std::printf("first poll (fills the list with %d rows): %.1f ms\n", kUploads, first);
    std::printf(
        "later polls: median %.1f ms, worst %.1f ms of %d (target <= 50 ms)\n", polls[kRuns / 2], polls.back(), kRuns);
    std::printf("longest main-thread stall while the window polls: %.1f ms\n", stall);
    return 0;
}
