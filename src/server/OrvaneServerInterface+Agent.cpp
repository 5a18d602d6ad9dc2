#include "OrvaneServerInterface.h"

#include "Format.h"
#include "Log.h"
#include "Paths.h"
#include "Process.h"
#include "ProcessRunner.h"
#include "PropertyList.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

void setNoCameraError(Error *error)
{
    setError(error, kServerInterfaceErrorDomain, -1,
        QStringLiteral("Unexpected internal error. No Camera Identifier specified."));
}

// Runs a privileged helper. A missing authorization is refused the way the
// platform refused an invalid reference.
int32_t runPrivileged(const std::shared_ptr<Authorization> &authorization, const QString &helper,
    const QStringList &arguments, const QByteArray *input, QString *output)
{
    if (!authorization)
        return PrivilegedLauncher::kInvalidAuthorization;
    QByteArray bytes;
    const int32_t status = authorization->launcher().execute(helper, arguments, input, &bytes);
    if (output)
        *output = QString::fromUtf8(bytes);
    return status;
}

QString errnoText(int code)
{
    return QString::fromLocal8Bit(std::strerror(code));
}

// The configuration files are read and written with the system calls
// themselves so that a failure reports the error number of the step that
// failed. Each returns 0 or that number.
int readWholeFile(const QString &path, QByteArray *bytes)
{
    const FileDescriptor fd(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC));
    if (!fd.valid())
        return errno;
    char buffer[16384];
    for (;;) {
        const ssize_t r = ::read(fd.get(), buffer, sizeof buffer);
        if (r < 0 && errno == EINTR)
            continue;
        if (r < 0)
            return errno;
        if (r == 0)
            return 0;
        bytes->append(buffer, r);
    }
}

int writeAll(int fd, const QByteArray &bytes)
{
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t w = ::write(fd, bytes.constData() + written, bytes.size() - written);
        if (w < 0 && errno == EINTR)
            continue;
        if (w < 0)
            return errno;
        written += w;
    }
    return 0;
}

// Through a temporary file beside `path` that replaces it only once it is
// complete and on disk, keeping the old file's permissions.
int replaceFile(const QString &path, const QByteArray &bytes)
{
    const QByteArray target = QFile::encodeName(path);
    QByteArray temporary = target + ".XXXXXX";
    const FileDescriptor fd(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!fd.valid())
        return errno;
    struct stat old = {};
    const mode_t mode = ::stat(target.constData(), &old) == 0 ? (old.st_mode & 07777) : 0644;
    int code = ::fchmod(fd.get(), mode) == 0 ? 0 : errno;
    if (code == 0)
        code = writeAll(fd.get(), bytes);
    if (code == 0 && ::fsync(fd.get()) != 0)
        code = errno;
    if (code == 0 && ::rename(temporary.constData(), target.constData()) != 0)
        code = errno;
    if (code != 0)
        ::unlink(temporary.constData());
    return code;
}

} // namespace

int32_t OrvaneServerInterface::bindCameraError(Error *error)
{
    const QString camera = cameraName();
    if (camera.isNull()) {
        setNoCameraError(error);
        return -1;
    }
    return runRemoteCommand(QStringLiteral("--bind"), { camera }, error);
}

int32_t OrvaneServerInterface::bindCameraWithAuthorization(
    const std::shared_ptr<Authorization> &authorization, Error *error)
{
    return bindOrUnbindWithAuthorization(true, authorization, error);
}

int32_t OrvaneServerInterface::unbindCameraWithAuthorization(
    const std::shared_ptr<Authorization> &authorization, Error *error)
{
    return bindOrUnbindWithAuthorization(false, authorization, error);
}

int32_t OrvaneServerInterface::bindOrUnbindWithAuthorization(
    bool bind, const std::shared_ptr<Authorization> &authorization, Error *error)
{
    const QString camera = cameraName();
    if (camera.isNull()) {
        setNoCameraError(error);
        return -1;
    }
    const QStringList arguments { QStringLiteral("--server"), serverURL(), QStringLiteral("--user"), user(),
        bind ? QStringLiteral("--bind") : QStringLiteral("--unbind"), camera };
    const QByteArray secret = password().toUtf8();
    QString output;
    const int32_t status = runPrivileged(authorization, Paths::orvxexec(), arguments, &secret, &output);
    if (status != 0)
        setError(error, kServerInterfaceErrorDomain, status, output);
    // Only the helper's own word counts; this replaces any error above.
    const QString success = bind ? QStringLiteral("Successfully bound") : QStringLiteral("Successfully unbound");
    if (!output.contains(success))
        setError(error, kServerInterfaceErrorDomain, status, output);
    return status;
}

void OrvaneServerInterface::bindCameraWithDelegate(QObject *delegate, JobCallback didEnd)
{
    auto self = shared_from_this();
    runWithErrorInBackground(
        [self](Error *error) { return self->bindCameraError(error); }, delegate, std::move(didEnd));
}

void OrvaneServerInterface::bindCameraWithAuthorization(
    const std::shared_ptr<Authorization> &authorization, QObject *delegate, JobCallback didEnd)
{
    auto self = shared_from_this();
    runWithErrorInBackground(
        [self, authorization](Error *error) { return self->bindCameraWithAuthorization(authorization, error); },
        delegate, std::move(didEnd));
}

void OrvaneServerInterface::unbindCameraWithAuthorization(
    const std::shared_ptr<Authorization> &authorization, QObject *delegate, JobCallback didEnd)
{
    auto self = shared_from_this();
    runWithErrorInBackground(
        [self, authorization](Error *error) { return self->unbindCameraWithAuthorization(authorization, error); },
        delegate, std::move(didEnd));
}

int32_t OrvaneServerInterface::setAgentRunning(
    bool running, const std::shared_ptr<Authorization> &authorization, Error *error)
{
    const QString helper = Paths::orvxctlexec();
    if (!isExecutableFile(helper)) {
        setError(error, kServerInterfaceErrorDomain, 10, lxFormat(tr("%@ tool cannot be found."), { helper }));
        return 10;
    }
    QString output;
    const int32_t status = runPrivileged(authorization, helper,
        { QStringLiteral("agent"), running ? QStringLiteral("start") : QStringLiteral("stop") }, nullptr, &output);
    if (status != 0)
        setError(error, kServerInterfaceErrorDomain, status, output);
    if (output.startsWith(QLatin1String("Error:")))
        setError(error, kServerInterfaceErrorDomain, 2, output);
    return status;
}

void OrvaneServerInterface::setAgentRunning(
    bool running, const std::shared_ptr<Authorization> &authorization, QObject *delegate, JobCallback didEnd)
{
    auto self = shared_from_this();
    runWithErrorInBackground(
        [self, running, authorization](Error *error) { return self->setAgentRunning(running, authorization, error); },
        delegate, std::move(didEnd));
}

std::optional<QVariantMap> OrvaneServerInterface::getCameraAgentConfigurationError(Error *error)
{
    const QString path = Paths::globalAgentConfig();
    QByteArray bytes;
    if (const int code = readWholeFile(path, &bytes); code != 0) {
        setError(error, kPosixErrorDomain, code,
            lxFormat(tr("The camera agent configuration could not be read from %@: %@"), { path, errnoText(code) }));
        return std::nullopt;
    }
    QString parseError;
    const QVariant root = PropertyList::fromXml(bytes, &parseError);
    if (root.typeId() != QMetaType::QVariantMap) {
        setError(error, kServerInterfaceErrorDomain, -1,
            parseError.isEmpty() ? QStringLiteral("the configuration is not a dictionary") : parseError);
        return std::nullopt;
    }
    return root.toMap();
}

std::optional<Error> OrvaneServerInterface::setCameraAgentConfiguration(const QVariantMap &configuration)
{
    const QString path = Paths::globalAgentConfig();
    QString serialiserError;
    const QByteArray xml = PropertyList::toXml(configuration, &serialiserError);
    if (xml.isNull()) {
        return Error { kServerInterfaceErrorDomain, -1,
            lxFormat(tr("The camera agent configuration could not be saved to %@: %@"), { path, serialiserError }) };
    }
    const int code = replaceFile(path, xml);
    if (code == 0)
        return std::nullopt;
    return Error { kPosixErrorDomain, code,
        lxFormat(tr("The camera agent configuration could not be saved to %@: %@"), { path, errnoText(code) }) };
}

std::optional<QVariantMap> OrvaneServerInterface::localCameraAgentConfiguration()
{
    const QVariant root = PropertyList::readFile(Paths::userAgentConfig());
    if (root.typeId() != QMetaType::QVariantMap)
        return std::nullopt;
    return root.toMap();
}

void OrvaneServerInterface::setGlobalAgentConfigValue(
    const QString &value, const QString &key, const std::shared_ptr<Authorization> &authorization)
{
    // Reports nothing, by design: the window reads the configuration back.
    runPrivileged(authorization, Paths::orvxexec(),
        { QStringLiteral("--setconfig"), lxFormat(QStringLiteral("%@=%@"), { key, value }) }, nullptr, nullptr);
}

void OrvaneServerInterface::setLocalAgentConfigValue(const QString &value, const QString &key)
{
    const int32_t status = runExecutable(Paths::orvxexec(),
        QStringList { QStringLiteral("--setconfig"), lxFormat(QStringLiteral("%@=%@"), { key, value }) }, QString(),
        nullptr, nullptr);
    if (status != 0) {
        // The quotes appear in the log line only, never in the argument.
        Log::format(
            QStringLiteral("Error %d when attempting to set local config value %@ to %@ with command: orvx %@ %@"),
            { status, key, value, QStringLiteral("--setconfig"),
                lxFormat(QStringLiteral("%@=\"%@\""), { key, value }) });
    }
}
