#pragma once

#include <QString>

// Thrown by a command when it cannot go on: the tool prints the message on
// standard error and exits with the status.
class ToolFailure final
{
public:
    // The status of every refused request (unknown camera, wrong state...).
    static constexpr int kRefused = 1;
    // A command line the tool does not understand.
    static constexpr int kUsage = 2;
    // The server turned the user's credentials down.
    static constexpr int kAuthenticationFailed = 26;

    ToolFailure(int status, QString message)
        : m_status(status)
        , m_message(std::move(message))
    { }

    int status() const { return m_status; }
    const QString &message() const { return m_message; }

private:
    int m_status;
    QString m_message;
};
