#include "app/LXApplication.h"
#include "app/LXController.h"

int main(int argc, char *argv[])
{
    LXApplication app(argc, argv);
    LXController controller;
    QObject::connect(&controller, &LXController::terminateRequested, &app, &QApplication::quit, Qt::QueuedConnection);
    controller.awakeFromNib();
    return app.exec();
}
