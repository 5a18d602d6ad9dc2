#include "ServerCommandLine.h"

#include "ToolFailure.h"

#include <QRegularExpression>

namespace {

const QStringList kServerCommands {
    QStringLiteral("--listworkflows"),
    QStringLiteral("--listcameras"),
    QStringLiteral("--status"),
    QStringLiteral("--start"),
    QStringLiteral("--pause"),
    QStringLiteral("--resume"),
    QStringLiteral("--cancel"),
    QStringLiteral("--stop"),
    QStringLiteral("--submit"),
    QStringLiteral("--bind"),
    QStringLiteral("--unbind"),
};

const QStringList kLocalCommands {
    QStringLiteral("--list_uploads"),
    QStringLiteral("--clear_completed_uploads"),
    QStringLiteral("--setconfig"),
};

[[noreturn]] void fail(const QString &problem)
{
    throw ToolFailure(ToolFailure::kUsage, QStringLiteral("orvxexec: %1\n%2").arg(problem, ServerCommandLine::usage()));
}

QString takeValue(QStringList &rest, const QString &option)
{
    if (rest.isEmpty())
        fail(QStringLiteral("%1 needs a value").arg(option));
    return rest.takeFirst();
}

} // namespace

QString ServerCommandLine::usage()
{
    return QStringLiteral("usage: orvxexec --server https://HOST:8170/orvane --user NAME COMMAND [ARGUMENTS]\n"
                          "       (the password is read from standard input)\n"
                          "  --listworkflows | --listcameras\n"
                          "  --status CAMERA [--update_preview]\n"
                          "  --start CAMERA [--audio_only] [--delay SECONDS]\n"
                          "  --pause CAMERA | --resume CAMERA | --cancel CAMERA\n"
                          "  --stop CAMERA --metadata FILE --workflow NAME\n"
                          "  --submit [--file PATH]... --metadata FILE --workflow NAME [--delete]\n"
                          "  --bind CAMERA | --unbind CAMERA\n"
                          "usage: orvxexec --list_uploads | --clear_completed_uploads | --setconfig KEY=VALUE\n");
}

ServerCommandLine ServerCommandLine::parse(const QStringList &arguments)
{
    ServerCommandLine line;
    QStringList rest = arguments;
    while (!rest.isEmpty() && line.m_command.isEmpty()) {
        const QString option = rest.takeFirst();
        if (option == QLatin1String("--server"))
            line.m_serverUrl = takeValue(rest, option);
        else if (option == QLatin1String("--user"))
            line.m_user = takeValue(rest, option);
        else if (kServerCommands.contains(option) || kLocalCommands.contains(option))
            line.m_command = option;
        else
            fail(QStringLiteral("unknown option %1").arg(option));
    }
    if (line.m_command.isEmpty())
        fail(QStringLiteral("no command given"));

    if (line.needsLogin()) {
        if (line.m_serverUrl.isEmpty() || line.m_user.isEmpty())
            fail(QStringLiteral("%1 needs --server and --user").arg(line.m_command));
        static const QRegularExpression url(
            QStringLiteral("^https://([A-Za-z0-9.-]+|\\[[0-9A-Fa-f:.]+\\]):8170/orvane$"));
        const QRegularExpressionMatch match = url.match(line.m_serverUrl);
        if (!match.hasMatch())
            fail(QStringLiteral("malformed server URL %1 (expected https://HOST:8170/orvane)").arg(line.m_serverUrl));
        line.m_host = match.captured(1);
    }
    line.parseCommandArguments(rest);
    return line;
}

bool ServerCommandLine::needsLogin() const
{
    return kServerCommands.contains(m_command);
}

bool ServerCommandLine::printsPropertyList() const
{
    return m_command == QLatin1String("--listworkflows") || m_command == QLatin1String("--listcameras")
        || m_command == QLatin1String("--list_uploads");
}

void ServerCommandLine::parseCommandArguments(QStringList rest)
{
    const QString &c = m_command;
    const bool takesCamera = c == QLatin1String("--status") || c == QLatin1String("--start")
        || c == QLatin1String("--pause") || c == QLatin1String("--resume") || c == QLatin1String("--cancel")
        || c == QLatin1String("--stop") || c == QLatin1String("--bind") || c == QLatin1String("--unbind");
    if (takesCamera) {
        m_camera = takeValue(rest, c);
        if (m_camera.isEmpty())
            fail(QStringLiteral("%1 needs a camera name").arg(c));
    }

    if (c == QLatin1String("--setconfig")) {
        const QString pair = takeValue(rest, c);
        const qsizetype equals = pair.indexOf(QLatin1Char('='));
        if (equals <= 0)
            fail(QStringLiteral("--setconfig needs KEY=VALUE, got \"%1\"").arg(pair));
        m_configKey = pair.left(equals);
        m_configValue = pair.mid(equals + 1);
    }

    while (!rest.isEmpty()) {
        const QString option = rest.takeFirst();
        if (c == QLatin1String("--status") && option == QLatin1String("--update_preview")) {
            m_updatePreview = true;
        } else if (c == QLatin1String("--start") && option == QLatin1String("--audio_only")) {
            m_audioOnly = true;
        } else if (c == QLatin1String("--start") && option == QLatin1String("--delay")) {
            bool ok = false;
            m_delaySeconds = takeValue(rest, option).toInt(&ok);
            if (!ok || m_delaySeconds < 0)
                fail(QStringLiteral("--delay needs a number of seconds"));
        } else if ((c == QLatin1String("--stop") || c == QLatin1String("--submit"))
            && option == QLatin1String("--metadata")) {
            m_metadataFile = takeValue(rest, option);
        } else if ((c == QLatin1String("--stop") || c == QLatin1String("--submit"))
            && option == QLatin1String("--workflow")) {
            m_workflow = takeValue(rest, option);
        } else if (c == QLatin1String("--submit") && option == QLatin1String("--file")) {
            m_files.append(takeValue(rest, option));
        } else if (c == QLatin1String("--submit") && option == QLatin1String("--delete")) {
            m_deleteFiles = true;
        } else {
            fail(QStringLiteral("unexpected argument %1 for %2").arg(option, c));
        }
    }

    if ((c == QLatin1String("--stop") || c == QLatin1String("--submit"))
        && (m_metadataFile.isEmpty() || m_workflow.isEmpty()))
        fail(QStringLiteral("%1 needs --metadata and --workflow").arg(c));
}
