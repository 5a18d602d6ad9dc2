#include "AgentRecorder.h"
#include "SimEnvironment.h"

#include <QCoreApplication>
#include <QStringList>

#include <csignal>

int main(int argc, char **argv)
{
    AgentRecorder::blockControlSignals();
    // A recorder outlives whoever read its messages (the client that started
    // it may be gone): a message to a closed pipe is lost, not the movie.
    std::signal(SIGPIPE, SIG_IGN);
    QCoreApplication app(argc, argv);
    return AgentRecorder(SimEnvironment::detect()).run(app.arguments().mid(1));
}
