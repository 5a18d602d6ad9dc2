#include "PlaceholderRecorder.h"
#include "SimEnvironment.h"

#include <QStringList>

int main(int argc, char **argv)
{
    PlaceholderRecorder::blockControlSignals();
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return PlaceholderRecorder(SimEnvironment::detect()).run(arguments);
}
