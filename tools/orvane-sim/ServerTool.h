#pragma once

#include "Fault.h"
#include "ServerCommandLine.h"
#include "SimEnvironment.h"
#include "StateStore.h"

#include <QStringList>

#include <optional>

// orvxexec: the server's command-line tool, simulated against the state
// folder. A server command reads the password from standard input, prints a
// progress line, checks the credentials and then does its work; the local
// commands (upload queue, agent configuration) need no login.
class ServerTool final
{
public:
    explicit ServerTool(const SimEnvironment &environment);

    // Returns the exit status.
    int run(const QStringList &arguments);

private:
    // Carries out `fault` and returns the status to exit with, if any.
    std::optional<int> applyFault(const Fault &fault);
    int execute(const ServerCommandLine &line);
    void authenticate(const ServerCommandLine &line, const QByteArray &password) const;
    void printProgress(const ServerCommandLine &line) const;
    void printPropertyList(const QVariantMap &root) const;

    void listWorkflows();
    void listCameras();
    void requestStatus(const ServerCommandLine &line);
    void controlRecording(const ServerCommandLine &line);
    void stopRecording(const ServerCommandLine &line);
    void submit(const ServerCommandLine &line);
    void bind(const ServerCommandLine &line);
    void unbind(const ServerCommandLine &line);
    void setConfig(const ServerCommandLine &line);
    void listUploads();
    void clearCompletedUploads();

    QVariantMap findWorkflow(const QString &name) const;
    QByteArray readMetadata(const QString &path) const;
    QString newLibraryEntry() const;

    static QByteArray readPassword();
    static double now();

    SimEnvironment m_environment;
    StateStore m_store;
    Fault m_fault;
};
