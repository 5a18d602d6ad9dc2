#include "LXApplication.h"
#include "LXController.h"
#include "ResidentMemory.h"

#include <QWidget>

#include <cstdio>
#include <cstdlib>

namespace {

// LUMEX_STARTUP_PROBE=1: print "painted RSS_KB" once the login panel has
// first been painted, then exit. The start-up benchmark times exec to here.
class StartupProbe final : public QObject
{
protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && watched->objectName() == QLatin1String("LoginPanel")) {
            qApp->removeEventFilter(this);
            QMetaObject::invokeMethod(
                qApp,
                [] {
                    std::printf("painted %ld\n", residentMemoryKiB());
                    std::fflush(stdout);
                    std::_Exit(0);
                },
                Qt::QueuedConnection);
        }
        return false;
    }
};

} // namespace

int main(int argc, char *argv[])
{
    if (const int status = LXApplication::answerInformationRequest(argc, argv); status >= 0)
        return status;
    LXApplication app(argc, argv);
    const QStringList files = LXApplication::filesFromArguments(app.arguments());
    if (LXApplication::handOverToRunningInstance(files))
        return 0;
    StartupProbe probe;
    if (qEnvironmentVariable("LUMEX_STARTUP_PROBE") == QLatin1String("1"))
        app.installEventFilter(&probe);
    LXController controller;
    QObject::connect(&controller, &LXController::terminateRequested, &app, &QApplication::quit, Qt::QueuedConnection);
    LXApplication::catchTerminationSignals(&controller, [&controller](int) { controller.endWithoutAsking(); });
    controller.awakeFromNib();
    LXApplication::listenForOtherInstances(
        &app, [&controller](const QStringList &handed) { controller.openFilesFromDesktop(handed); });
    if (!files.isEmpty())
        controller.openFilesFromDesktop(files);
    return app.exec();
}
