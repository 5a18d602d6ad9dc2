#include "ServerTool.h"

#include "AgentConfig.h"
#include "Console.h"
#include "FaultFile.h"
#include "OrvaneKeys.h"
#include "Paths.h"
#include "PropertyList.h"
#include "RemoteCameras.h"
#include "StateLock.h"
#include "ToolFailure.h"
#include "UploadQueue.h"
#include "UserDirectory.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QUuid>

#include <cerrno>
#include <unistd.h>

namespace {

ToolFailure refused(const QString &text)
{
    return ToolFailure(ToolFailure::kRefused, text + QLatin1Char('\n'));
}

QString newUuid()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}

QString isoTime(double secondsSinceEpoch)
{
    return QDateTime::fromMSecsSinceEpoch(qint64(secondsSinceEpoch * 1000)).toString(Qt::ISODate);
}

void saveFile(const QString &path, const QByteArray &contents)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size() || !file.commit())
        throw refused(QStringLiteral("Error: cannot write %1: %2").arg(path, file.errorString()));
}

// A name inside the upload's folder that no earlier file of the same
// submission took: two movies from different folders may share a name.
QString freeName(const QDir &folder, const QString &name)
{
    QString candidate = name;
    for (int n = 2; folder.exists(candidate); ++n)
        candidate = QStringLiteral("%1-%2").arg(n).arg(name);
    return candidate;
}

} // namespace

ServerTool::ServerTool(const SimEnvironment &environment)
    : m_environment(environment)
    , m_store(environment.stateFolder())
{ }

int ServerTool::run(const QStringList &arguments)
{
    try {
        const ServerCommandLine line = ServerCommandLine::parse(arguments);
        m_environment.adoptSysroot();
        m_store.ensureFolder();
        {
            StateLock lock(m_store.lockFile());
            m_store.ensureSeeded();
        }

        const FaultFile faults(m_store);
        const QString command = line.command();
        if (line.needsLogin()) {
            const QByteArray password = readPassword();
            if (const auto status = applyFault(faults.take(command, FaultFile::Phase::BeforeAuthentication)))
                return *status;
            // A submission's first line is its upload identifier.
            if (command != QLatin1String("--submit"))
                printProgress(line);
            authenticate(line, password);
            if (const auto status = applyFault(faults.take(command, FaultFile::Phase::AfterAuthentication)))
                return *status;
        } else if (const auto status = applyFault(faults.take(command, FaultFile::Phase::Any))) {
            return *status;
        }
        return execute(line);
    } catch (const ToolFailure &failure) {
        Console::err(failure.message());
        return failure.status();
    }
}

std::optional<int> ServerTool::applyFault(const Fault &fault)
{
    if (fault.isNull())
        return std::nullopt;
    m_fault = fault;
    fault.perform();
    return fault.exitStatus();
}

int ServerTool::execute(const ServerCommandLine &line)
{
    const QString c = line.command();
    StateLock lock(m_store.lockFile());
    if (c == QLatin1String("--listworkflows"))
        listWorkflows();
    else if (c == QLatin1String("--listcameras"))
        listCameras();
    else if (c == QLatin1String("--status"))
        requestStatus(line);
    else if (c == QLatin1String("--start") || c == QLatin1String("--pause") || c == QLatin1String("--resume")
        || c == QLatin1String("--cancel"))
        controlRecording(line);
    else if (c == QLatin1String("--stop"))
        stopRecording(line);
    else if (c == QLatin1String("--submit"))
        submit(line);
    else if (c == QLatin1String("--bind"))
        bind(line);
    else if (c == QLatin1String("--unbind"))
        unbind(line);
    else if (c == QLatin1String("--setconfig"))
        setConfig(line);
    else if (c == QLatin1String("--list_uploads"))
        listUploads();
    else if (c == QLatin1String("--clear_completed_uploads"))
        clearCompletedUploads();
    return 0;
}

void ServerTool::authenticate(const ServerCommandLine &line, const QByteArray &password) const
{
    // Hosts under ".invalid" never resolve; they give clients a server that
    // cannot be reached.
    if (line.host().endsWith(QLatin1String(".invalid")))
        throw refused(QStringLiteral("Error: could not connect to %1: host not found.").arg(line.serverUrl()));

    const UserDirectory users(m_store.read(StateStore::kUsers));
    if (!users.authenticate(line.user(), password))
        throw ToolFailure(ToolFailure::kAuthenticationFailed,
            QStringLiteral("Authentication failed for user %1.\n").arg(line.user()));
}

void ServerTool::printProgress(const ServerCommandLine &line) const
{
    Console::out(QStringLiteral("Connecting to %1 ...\n").arg(line.serverUrl()));
}

void ServerTool::printPropertyList(const QVariantMap &root) const
{
    if (m_fault.suppressesPropertyList())
        return;
    Console::outUtf8(PropertyList::toXml(root));
}

void ServerTool::listWorkflows()
{
    const QVariantList workflows = m_store.read(StateStore::kWorkflows).value(OrvaneKeys::Workflows).toList();
    printPropertyList({ { OrvaneKeys::Workflows, workflows } });
}

void ServerTool::listCameras()
{
    const RemoteCameras cameras(m_store);
    printPropertyList({ { OrvaneKeys::Cameras, cameras.listing() } });
}

void ServerTool::requestStatus(const ServerCommandLine &line)
{
    RemoteCameras cameras(m_store);
    if (!cameras.contains(line.camera()))
        throw refused(QStringLiteral("No such camera: %1").arg(line.camera()));
    if (line.updatePreview()) {
        cameras.requestPreview(line.camera(), now());
        cameras.save();
        Console::out(QStringLiteral("Requested a new preview image from camera %1.\n").arg(line.camera()));
    } else {
        Console::out(QStringLiteral("Camera %1 is known to the server.\n").arg(line.camera()));
    }
}

void ServerTool::controlRecording(const ServerCommandLine &line)
{
    RemoteCameras cameras(m_store);
    const QString c = line.command();
    const QString camera = line.camera();
    QString report;
    if (c == QLatin1String("--start")) {
        cameras.start(camera, line.audioOnly(), line.delaySeconds(), line.user(), now());
        report = QStringLiteral("Recording %1on camera %2 starts in %3 seconds.")
                     .arg(line.audioOnly() ? QStringLiteral("(audio only) ") : QString(), camera)
                     .arg(line.delaySeconds());
    } else if (c == QLatin1String("--pause")) {
        cameras.pause(camera, now());
        report = QStringLiteral("Recording on camera %1 paused.").arg(camera);
    } else if (c == QLatin1String("--resume")) {
        cameras.resume(camera, now());
        report = QStringLiteral("Recording on camera %1 resumed.").arg(camera);
    } else {
        cameras.finish(camera, QStringLiteral("cancel"), now());
        report = QStringLiteral("Recording on camera %1 cancelled.").arg(camera);
    }
    cameras.save();
    Console::out(report + QLatin1Char('\n'));
}

void ServerTool::stopRecording(const ServerCommandLine &line)
{
    RemoteCameras cameras(m_store);
    const double stoppedAt = now();
    // Ends the session in memory only; nothing is saved if what follows fails.
    const QVariantMap session = cameras.finish(line.camera(), QStringLiteral("stop"), stoppedAt);
    findWorkflow(line.workflow());
    const QByteArray metadata = readMetadata(line.metadataFile());

    const QString uuid = newLibraryEntry();
    const QString folder = m_store.libraryFolder() + QLatin1Char('/') + uuid;
    const double seconds = session.value(QStringLiteral("recorded_seconds")).toDouble();
    const QString description
        = QStringLiteral("camera: %1\nuser: %2\naudio_only: %3\nworkflow: %4\nstarted_at: %5\nstopped_at: %6\n"
                         "recorded_seconds: %7\n")
              .arg(line.camera(), session.value(QStringLiteral("user")).toString(),
                  session.value(QStringLiteral("audio_only")).toBool() ? QStringLiteral("true")
                                                                       : QStringLiteral("false"),
                  line.workflow(), isoTime(session.value(QStringLiteral("started_at")).toDouble()), isoTime(stoppedAt))
              .arg(seconds, 0, 'f', 1);
    saveFile(folder + QStringLiteral("/metadata.plist"), metadata);
    saveFile(folder + QStringLiteral("/recording.txt"), description.toUtf8());
    cameras.save();

    Console::out(QStringLiteral("Recording on camera %1 stopped after %2 seconds.\n"
                                "Sent to workflow %3 as recording %4.\n")
                     .arg(line.camera())
                     .arg(seconds, 0, 'f', 1)
                     .arg(line.workflow(), uuid));
}

void ServerTool::submit(const ServerCommandLine &line)
{
    findWorkflow(line.workflow());
    const QByteArray metadata = readMetadata(line.metadataFile());
    qint64 totalBytes = 0;
    for (const QString &path : line.files()) {
        const QFileInfo info(path);
        if (!info.isFile() || !info.isReadable())
            throw refused(QStringLiteral("Cannot read file: %1").arg(path));
        totalBytes += info.size();
    }

    const QString uuid = newLibraryEntry();
    const QDir folder(m_store.libraryFolder() + QLatin1Char('/') + uuid);
    QStringList contentPaths;
    for (const QString &path : line.files()) {
        const QString target = folder.filePath(freeName(folder, QFileInfo(path).fileName()));
        if (!QFile::copy(path, target)) {
            QDir(folder).removeRecursively();
            throw refused(QStringLiteral("Error: could not copy %1 for upload.").arg(path));
        }
        contentPaths.append(target);
    }
    const QString metadataCopy = folder.filePath(QStringLiteral("metadata.plist"));
    saveFile(metadataCopy, metadata);

    QVariantMap record {
        { OrvaneKeys::Upload::UUID, uuid },
        { OrvaneKeys::Upload::User, line.user() },
        { OrvaneKeys::Upload::Server, line.host() },
        { OrvaneKeys::Upload::Workflow, line.workflow() },
        { OrvaneKeys::Upload::SubmittedAt, QDateTime::currentDateTimeUtc() },
        { OrvaneKeys::Upload::TotalBytes, totalBytes },
        { OrvaneKeys::Upload::CachedMetadataFile, metadataCopy },
        { OrvaneKeys::Upload::ContentPaths, contentPaths },
    };
    if (m_fault.failsUpload())
        record.insert(QStringLiteral("simulated_failure"), true);
    UploadQueue queue(m_store);
    queue.add(record);
    queue.save();

    Console::out(QStringLiteral("Upload UUID: %1\n").arg(uuid));
    printProgress(line);
    Console::out(QStringLiteral("Queued %1 file(s), %2 bytes, for workflow %3.\n")
                     .arg(contentPaths.size())
                     .arg(totalBytes)
                     .arg(line.workflow()));

    // Only once the copies are safely queued may the originals go.
    if (line.deleteFiles()) {
        for (const QString &path : line.files()) {
            if (!QFile::remove(path))
                Console::err(QStringLiteral("Warning: could not delete %1 after queuing it.\n").arg(path));
        }
    }
}

void ServerTool::bind(const ServerCommandLine &line)
{
    AgentConfig(Paths::globalAgentConfig())
        .set({ { OrvaneKeys::Agent::CameraName, line.camera() }, { OrvaneKeys::Agent::TunnelHost, line.host() } });
    QVariantMap agent = m_store.read(StateStore::kAgent);
    agent.insert(QStringLiteral("bound_camera"), line.camera());
    agent.insert(QStringLiteral("bound_host"), line.host());
    m_store.write(StateStore::kAgent, agent);
    Console::out(QStringLiteral("Successfully bound camera %1 to %2.\n").arg(line.camera(), line.host()));
}

void ServerTool::unbind(const ServerCommandLine &line)
{
    const AgentConfig config(Paths::globalAgentConfig());
    const QString bound = config.values().value(OrvaneKeys::Agent::CameraName).toString();
    if (!bound.isEmpty() && bound != line.camera())
        throw refused(QStringLiteral("Error: this agent is bound as \"%1\", not \"%2\".").arg(bound, line.camera()));
    config.remove({ OrvaneKeys::Agent::CameraName, OrvaneKeys::Agent::TunnelHost });
    QVariantMap agent = m_store.read(StateStore::kAgent);
    agent.remove(QStringLiteral("bound_camera"));
    agent.remove(QStringLiteral("bound_host"));
    m_store.write(StateStore::kAgent, agent);
    Console::out(QStringLiteral("Successfully unbound camera %1 from %2.\n").arg(line.camera(), line.host()));
}

void ServerTool::setConfig(const ServerCommandLine &line)
{
    const AgentConfig config(m_environment.isPrivileged() ? Paths::globalAgentConfig() : Paths::userAgentConfig());
    config.set({ { line.configKey(), line.configValue() } });
    Console::out(QStringLiteral("Set %1 in %2.\n").arg(line.configKey(), config.path()));
}

void ServerTool::listUploads()
{
    const UploadQueue queue(m_store);
    if (!m_fault.suppressesPropertyList())
        Console::outUtf8(PropertyList::dictionaryToXml(queue.listing(QDateTime::currentDateTimeUtc())));
}

void ServerTool::clearCompletedUploads()
{
    UploadQueue queue(m_store);
    const int cleared = queue.clearCompleted(QDateTime::currentDateTimeUtc());
    queue.save();
    Console::out(QStringLiteral("Cleared %1 completed upload(s).\n").arg(cleared));
}

QVariantMap ServerTool::findWorkflow(const QString &name) const
{
    const QVariantList workflows = m_store.read(StateStore::kWorkflows).value(OrvaneKeys::Workflows).toList();
    for (const QVariant &workflow : workflows) {
        if (workflow.toMap().value(OrvaneKeys::Name).toString() == name)
            return workflow.toMap();
    }
    throw refused(QStringLiteral("Unknown workflow: %1").arg(name));
}

QByteArray ServerTool::readMetadata(const QString &path) const
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw refused(QStringLiteral("Cannot read metadata file: %1").arg(path));
    const QByteArray contents = file.readAll();
    QString error;
    if (PropertyList::fromXml(contents, &error).metaType().id() != QMetaType::QVariantMap)
        throw refused(QStringLiteral("Metadata file %1 is not a property list: %2").arg(path, error));
    return contents;
}

QString ServerTool::newLibraryEntry() const
{
    const QString uuid = newUuid();
    if (!QDir().mkpath(m_store.libraryFolder() + QLatin1Char('/') + uuid))
        throw refused(QStringLiteral("Error: cannot create the library folder for %1.").arg(uuid));
    return uuid;
}

QByteArray ServerTool::readPassword()
{
    QByteArray input;
    char buffer[4096];
    for (;;) {
        const ssize_t n = ::read(STDIN_FILENO, buffer, sizeof buffer);
        if (n > 0)
            input.append(buffer, n);
        else if (n == 0 || errno != EINTR)
            break;
    }
    if (input.endsWith('\n'))
        input.chop(1);
    return input;
}

double ServerTool::now()
{
    return QDateTime::currentMSecsSinceEpoch() / 1000.0;
}
