#include "AgentRecorder.h"
#include "SimEnvironment.h"

#include <QCoreApplication>
#include <QStringList>

int main(int argc, char **argv)
{
    AgentRecorder::blockControlSignals();
    QCoreApplication app(argc, argv);
    return AgentRecorder(SimEnvironment::detect()).run(app.arguments().mid(1));
}
