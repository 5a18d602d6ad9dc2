// lumex-cli: every server operation from a shell, over the same interface the
// application uses. The password, where a command sends one, is the first
// line of standard input.
#include "OrvaneKeys.h"
#include "OrvaneServerInterface.h"
#include "ProcessRunner.h"
#include "PropertyList.h"

#include <QCoreApplication>
#include <QFile>
#include <QTextStream>

#include <cstdio>
#include <iostream>
#include <string>

namespace {

const char *const kUsage = "usage: lumex-cli [--server HOST --user NAME] COMMAND [ARGS...]\n"
                           "\n"
                           "Commands that send the password read it from the first line of standard input:\n"
                           "  workflows                      list the workflows (XML property list)\n"
                           "  cameras                        list the cameras (XML property list)\n"
                           "  preview CAMERA                 ask a camera to refresh its preview\n"
                           "  start CAMERA [--audio]         start a remote recording\n"
                           "  pause CAMERA | resume CAMERA | cancel CAMERA\n"
                           "  stop CAMERA --workflow NAME [--title T] [--description D]\n"
                           "  submit --workflow NAME [--title T] [--description D] [--delete] FILE...\n"
                           "                                 upload files; prints the upload UUID\n"
                           "  bind CAMERA                    bind the local camera agent\n"
                           "Commands without a password:\n"
                           "  uploads                        list the upload queue (XML property list)\n"
                           "  clear-uploads                  remove finished uploads\n"
                           "  setconfig KEY VALUE            set a value in your camera agent configuration\n"
                           "\n"
                           "LUMEX_SYSROOT points at the tree holding usr/libexec/orvane (the simulator's\n"
                           "build/sim-root); unset, the helpers installed under /usr/libexec/orvane are used.\n";

int usage()
{
    std::fputs(kUsage, stderr);
    return 2;
}

int fail(const Error &error)
{
    std::fprintf(stderr, "error: %s %lld: %s\n", qPrintable(error.domain), static_cast<long long>(error.code),
        error.localizedDescription.toUtf8().constData());
    return 1;
}

int failStatus(int32_t status, const Error &error)
{
    if (!error.domain.isEmpty())
        return fail(error);
    std::fprintf(stderr, "error: %s %d: \n", qPrintable(kServerInterfaceErrorDomain), status);
    return 1;
}

int printPropertyList(const QVariant &value)
{
    QString error;
    const QByteArray xml = PropertyList::toXml(value, &error);
    if (xml.isNull()) {
        std::fprintf(stderr, "error: %s\n", qPrintable(error));
        return 1;
    }
    std::fwrite(xml.constData(), 1, size_t(xml.size()), stdout);
    return 0;
}

QString readPassword()
{
    std::string line;
    if (!std::getline(std::cin, line))
        return QString();
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return QString::fromStdString(line);
}

// Options of the job commands: --workflow, --title, --description, --delete,
// --audio; everything else is positional.
struct JobOptions
{
    QString workflow, title, description;
    bool deleteFiles = false;
    bool audio = false;
    QStringList positional;
    bool valid = true;
};

JobOptions parseJobOptions(const QStringList &args)
{
    JobOptions o;
    for (int i = 0; i < args.size(); ++i) {
        const QString &a = args.at(i);
        auto value = [&](QString &into) {
            if (i + 1 >= args.size())
                o.valid = false;
            else
                into = args.at(++i);
        };
        if (a == QLatin1String("--workflow"))
            value(o.workflow);
        else if (a == QLatin1String("--title"))
            value(o.title);
        else if (a == QLatin1String("--description"))
            value(o.description);
        else if (a == QLatin1String("--delete"))
            o.deleteFiles = true;
        else if (a == QLatin1String("--audio"))
            o.audio = true;
        else
            o.positional << a;
    }
    return o;
}

int run(const QStringList &all)
{
    QString server, user;
    int i = 0;
    for (; i + 1 < all.size(); i += 2) {
        if (all.at(i) == QLatin1String("--server"))
            server = all.at(i + 1);
        else if (all.at(i) == QLatin1String("--user"))
            user = all.at(i + 1);
        else
            break;
    }
    if (i >= all.size())
        return usage();
    const QString command = all.at(i);
    const JobOptions o = parseJobOptions(all.mid(i + 1));
    if (!o.valid)
        return usage();

    static const QStringList withPassword { QStringLiteral("workflows"), QStringLiteral("cameras"),
        QStringLiteral("preview"), QStringLiteral("start"), QStringLiteral("pause"), QStringLiteral("resume"),
        QStringLiteral("cancel"), QStringLiteral("stop"), QStringLiteral("submit"), QStringLiteral("bind") };
    Credentials credentials { user, QString(), server };
    if (withPassword.contains(command))
        credentials.password = readPassword();

    auto job = std::make_shared<PodcastJob>();
    job->setUser(user.isEmpty() ? QString() : user);
    job->setServer(server.isEmpty() ? QString() : server);
    if (!o.title.isNull())
        job->setTitle(o.title);
    if (!o.description.isNull())
        job->setJobDescription(o.description);
    if (!o.workflow.isNull())
        job->setWorkflow({ { OrvaneKeys::Name, o.workflow } });
    auto interface = OrvaneServerInterface::create(credentials, job);

    const QString first = o.positional.value(0);
    auto needsOne = [&] { return o.positional.size() == 1; };
    Error error;

    if (command == QLatin1String("workflows") || command == QLatin1String("cameras")) {
        const auto list = command == QLatin1String("workflows") ? interface->getWorkflowsError(&error)
                                                                : interface->getCamerasError(&error);
        if (!error.domain.isEmpty())
            return fail(error);
        if (!list) {
            std::fputs("error: no result\n", stderr);
            return 1;
        }
        return printPropertyList(*list);
    }
    if (command == QLatin1String("uploads")) {
        const auto uploads = OrvaneServerInterface::transferStatuses();
        if (!uploads) {
            std::fputs("error: no result\n", stderr);
            return 1;
        }
        QVariantMap root;
        for (const auto &[uuid, record] : *uploads)
            root.insert(uuid, record);
        return printPropertyList(root);
    }
    if (command == QLatin1String("clear-uploads")) {
        OrvaneServerInterface::clearCompletedTransferStatuses();
        return 0;
    }
    if (command == QLatin1String("setconfig")) {
        if (o.positional.size() != 2)
            return usage();
        interface->setLocalAgentConfigValue(o.positional.at(1), o.positional.at(0));
        return 0;
    }
    if (command == QLatin1String("preview")) {
        if (!needsOne())
            return usage();
        interface->requestPreviewUpdateInThreadForCamera(first);
        return 0;
    }
    if (command == QLatin1String("bind")) {
        if (!needsOne())
            return usage();
        interface->setCameraName(first);
        const int32_t status = interface->bindCameraError(&error);
        return status == 0 && error.domain.isEmpty() ? 0 : failStatus(status, error);
    }
    if (command == QLatin1String("submit")) {
        if (o.workflow.isNull())
            return usage();
        job->setMovieFilePaths(o.positional);
        const int32_t status = o.deleteFiles ? interface->submitAndDeleteJobFiles(job.get(), &error)
                                             : interface->submitJobFiles(job.get(), &error);
        if (status != 0)
            return failStatus(status, error);
        std::printf("%s\n", qPrintable(job->uploadUUID()));
        return 0;
    }

    using Operation = int32_t (OrvaneServerInterface::*)(PodcastJob *, Error *);
    Operation operation = nullptr;
    if (command == QLatin1String("start"))
        operation = o.audio ? &OrvaneServerInterface::startRemoteAudioJob : &OrvaneServerInterface::startRemoteVideoJob;
    else if (command == QLatin1String("pause"))
        operation = &OrvaneServerInterface::pauseRemoteJob;
    else if (command == QLatin1String("resume"))
        operation = &OrvaneServerInterface::resumeRemoteJob;
    else if (command == QLatin1String("cancel"))
        operation = &OrvaneServerInterface::cancelRemoteJob;
    else if (command == QLatin1String("stop") && !o.workflow.isNull())
        operation = &OrvaneServerInterface::stopRemoteJob;
    if (!operation || !needsOne())
        return usage();
    job->setCamera({ { OrvaneKeys::Name, first } });
    const int32_t status = (interface.get()->*operation)(job.get(), &error);
    return status == 0 ? 0 : failStatus(status, error);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QStringList args = QCoreApplication::arguments().mid(1);
    if (!args.isEmpty() && (args.first() == QLatin1String("--help") || args.first() == QLatin1String("-h"))) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    if (args.isEmpty())
        return usage();
    try {
        return run(args);
    } catch (const std::exception &e) {
        std::fprintf(stderr, "error: %s\n", e.what());
        return 1;
    }
}
