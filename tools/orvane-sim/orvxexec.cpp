#include "ServerTool.h"
#include "SimEnvironment.h"

#include <QStringList>

int main(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return ServerTool(SimEnvironment::detect()).run(arguments);
}
