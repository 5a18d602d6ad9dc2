#include "app/LXMainWindow.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Lumex"));
    QApplication::setOrganizationDomain(QStringLiteral("tarn.com"));

    LXMainWindow window;
    window.show();
    return app.exec();
}
