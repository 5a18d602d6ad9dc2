#pragma once

#include <QString>
#include <QStringList>

// The argument vector of orvxexec, checked and taken apart. Server commands
// read "--server URL --user NAME <command> [arguments]"; the local ones
// ("--list_uploads", "--clear_completed_uploads", "--setconfig") stand alone.
class ServerCommandLine final
{
public:
    // Throws ToolFailure with the usage status for anything it does not
    // understand.
    static ServerCommandLine parse(const QStringList &arguments);

    static QString usage();

    QString command() const { return m_command; }
    // True for the commands that go to the server and take a password.
    bool needsLogin() const;
    bool printsPropertyList() const;

    QString serverUrl() const { return m_serverUrl; }
    QString host() const { return m_host; }
    QString user() const { return m_user; }
    QString camera() const { return m_camera; }
    bool audioOnly() const { return m_audioOnly; }
    int delaySeconds() const { return m_delaySeconds; }
    bool updatePreview() const { return m_updatePreview; }
    QString metadataFile() const { return m_metadataFile; }
    QString workflow() const { return m_workflow; }
    QStringList files() const { return m_files; }
    bool deleteFiles() const { return m_deleteFiles; }
    QString configKey() const { return m_configKey; }
    QString configValue() const { return m_configValue; }

private:
    ServerCommandLine() = default;

    void parseCommandArguments(QStringList rest);

    QString m_command;
    QString m_serverUrl;
    QString m_host;
    QString m_user;
    QString m_camera;
    bool m_audioOnly = false;
    int m_delaySeconds = 0;
    bool m_updatePreview = false;
    QString m_metadataFile;
    QString m_workflow;
    QStringList m_files;
    bool m_deleteFiles = false;
    QString m_configKey;
    QString m_configValue;
};
