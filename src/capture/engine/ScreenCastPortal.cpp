#include "ScreenCastPortal.h"

#include "Log.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>

#include <fcntl.h>
#include <unistd.h>

namespace {

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kScreenCast = QStringLiteral("org.freedesktop.portal.ScreenCast");
const QString kRequest = QStringLiteral("org.freedesktop.portal.Request");
const QString kSession = QStringLiteral("org.freedesktop.portal.Session");

constexpr uint kMonitorSource = 1;
constexpr uint kEmbeddedCursor = 2;
// Kept until the user revokes it, so a later run may restore the choice.
constexpr uint kPersistUntilRevoked = 2;

// Where the portal will publish a request's response: its documented
// path, so the signal is watched before the call that may answer at once.
QString requestPath(const QDBusConnection &bus, const QString &token)
{
    QString sender = bus.baseService().mid(1);
    sender.replace(QLatin1Char('.'), QLatin1Char('_'));
    return QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2").arg(sender, token);
}

QString newToken()
{
    static int counter = 0;
    return QStringLiteral("lumex%1_%2").arg(QCoreApplication::applicationPid()).arg(++counter);
}

// The first stream of a Start response: (node id, properties) records.
std::optional<ScreenCastPortal::Stream> firstStream(const QVariant &streams)
{
    const QDBusArgument argument = streams.value<QDBusArgument>();
    if (argument.currentType() != QDBusArgument::ArrayType)
        return std::nullopt;
    std::optional<ScreenCastPortal::Stream> first;
    argument.beginArray();
    while (!argument.atEnd()) {
        uint node = 0;
        QVariantMap properties;
        argument.beginStructure();
        argument >> node >> properties;
        argument.endStructure();
        if (first)
            continue;
        first = ScreenCastPortal::Stream { -1, node, QSize() };
        const QDBusArgument size = properties.value(QStringLiteral("size")).value<QDBusArgument>();
        if (size.currentType() == QDBusArgument::StructureType) {
            int width = 0;
            int height = 0;
            size.beginStructure();
            size >> width >> height;
            size.endStructure();
            first->size = QSize(width, height);
        }
    }
    argument.endArray();
    return first;
}

} // namespace

const QString ScreenCastPortal::kErrorDomain = QStringLiteral("com.tarn.Lumex.ScreenCast");

ScreenCastPortal::ScreenCastPortal(const QDBusConnection &bus, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
{ }

ScreenCastPortal::~ScreenCastPortal()
{
    closeSession();
}

void ScreenCastPortal::requestStream(Completion done)
{
    if (m_step == Step::Ready) {
        QMetaObject::invokeMethod(
            this, [done = std::move(done)] { done(std::nullopt); }, Qt::QueuedConnection);
        return;
    }
    m_waiting.push_back(std::move(done));
    if (m_step == Step::Idle)
        callVersion();
}

void ScreenCastPortal::callVersion()
{
    m_step = Step::Version;
    if (!m_bus.isConnected()) {
        // No call can be made, so none would answer: fail on the next turn
        // of the event loop, as an answer would.
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (m_step == Step::Version)
                    fail(NoPortal, QStringLiteral("no session bus (%1)").arg(m_bus.lastError().message()));
            },
            Qt::QueuedConnection);
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        kService, kPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("GetAll"));
    call << kScreenCast;
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *finished) {
        finished->deleteLater();
        const QDBusPendingReply<QVariantMap> reply = *finished;
        if (m_step != Step::Version)
            return;
        if (reply.isError() || !reply.value().contains(QStringLiteral("version"))) {
            fail(NoPortal, reply.isError() ? reply.error().message() : QStringLiteral("no screen cast interface"));
            return;
        }
        const QVariantMap properties = reply.value();
        m_version = properties.value(QStringLiteral("version")).toUInt();
        m_cursorModes = properties.value(QStringLiteral("AvailableCursorModes")).toUInt();
        callRequest(Step::CreateSession, QStringLiteral("CreateSession"), {},
            { { QStringLiteral("session_handle_token"), newToken() } });
    });
}

void ScreenCastPortal::callRequest(
    Step step, const QString &method, const QList<QVariant> &arguments, QVariantMap options)
{
    const QString token = newToken();
    options.insert(QStringLiteral("handle_token"), token);
    m_step = step;
    m_requestPath = requestPath(m_bus, token);
    m_bus.connect(
        kService, m_requestPath, kRequest, QStringLiteral("Response"), this, SLOT(handleResponse(QDBusMessage)));
    QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kScreenCast, method);
    call.setArguments(arguments + QList<QVariant> { options });
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    const int generation = m_generation;
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
        [this, step, method, generation](QDBusPendingCallWatcher *finished) {
            finished->deleteLater();
            const QDBusPendingReply<QDBusObjectPath> reply = *finished;
            if (m_step != step || m_generation != generation)
                return;
            if (reply.isError()) {
                fail(Failed, QStringLiteral("%1: %2").arg(method, reply.error().message()));
                return;
            }
            // A portal older than handle tokens answers on a path of its own.
            const QString handle = reply.value().path();
            if (handle != m_requestPath) {
                m_bus.disconnect(kService, m_requestPath, kRequest, QStringLiteral("Response"), this,
                    SLOT(handleResponse(QDBusMessage)));
                m_requestPath = handle;
                m_bus.connect(kService, m_requestPath, kRequest, QStringLiteral("Response"), this,
                    SLOT(handleResponse(QDBusMessage)));
            }
        });
}

void ScreenCastPortal::handleResponse(const QDBusMessage &message)
{
    if (message.path() != m_requestPath || message.arguments().size() < 2)
        return;
    m_bus.disconnect(
        kService, m_requestPath, kRequest, QStringLiteral("Response"), this, SLOT(handleResponse(QDBusMessage)));
    m_requestPath.clear();
    const uint response = message.arguments().at(0).toUInt();
    const QVariantMap results = qdbus_cast<QVariantMap>(message.arguments().at(1));
    if (response == 1)
        fail(Declined, QStringLiteral("the user declined to share the screen"));
    else if (response != 0)
        fail(Failed, QStringLiteral("the portal ended the request (response %1)").arg(response));
    else
        afterResponse(m_step, results);
}

void ScreenCastPortal::afterResponse(Step step, const QVariantMap &results)
{
    switch (step) {
    case Step::CreateSession: {
        m_sessionHandle = results.value(QStringLiteral("session_handle")).toString();
        if (m_sessionHandle.isEmpty()) {
            fail(Failed, QStringLiteral("CreateSession gave no session"));
            return;
        }
        m_bus.connect(kService, m_sessionHandle, kSession, QStringLiteral("Closed"), this, SLOT(handleSessionClosed()));
        QVariantMap options { { QStringLiteral("types"), kMonitorSource }, { QStringLiteral("multiple"), false } };
        if (m_cursorModes & kEmbeddedCursor)
            options.insert(QStringLiteral("cursor_mode"), kEmbeddedCursor);
        if (m_version >= 4) {
            options.insert(QStringLiteral("persist_mode"), kPersistUntilRevoked);
            if (!m_restoreToken.isEmpty())
                options.insert(QStringLiteral("restore_token"), m_restoreToken);
        }
        callRequest(Step::SelectSources, QStringLiteral("SelectSources"),
            { QVariant::fromValue(QDBusObjectPath(m_sessionHandle)) }, options);
        return;
    }
    case Step::SelectSources:
        // No parent window: the portal cannot place its question over ours
        // on Wayland without an exported handle, and works without one.
        callRequest(Step::Start, QStringLiteral("Start"),
            { QVariant::fromValue(QDBusObjectPath(m_sessionHandle)), QString() }, {});
        return;
    case Step::Start: {
        m_stream = firstStream(results.value(QStringLiteral("streams")));
        if (!m_stream) {
            fail(Failed, QStringLiteral("Start gave no stream"));
            return;
        }
        const QString token = results.value(QStringLiteral("restore_token")).toString();
        if (!token.isEmpty() && token != m_restoreToken) {
            m_restoreToken = token;
            emit restoreTokenChanged(token);
        }
        openRemote();
        return;
    }
    default:
        return;
    }
}

void ScreenCastPortal::openRemote()
{
    m_step = Step::OpenRemote;
    QDBusMessage call
        = QDBusMessage::createMethodCall(kService, kPath, kScreenCast, QStringLiteral("OpenPipeWireRemote"));
    call << QVariant::fromValue(QDBusObjectPath(m_sessionHandle)) << QVariantMap();
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    const int generation = m_generation;
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, generation](QDBusPendingCallWatcher *finished) {
        finished->deleteLater();
        const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *finished;
        if (m_step != Step::OpenRemote || m_generation != generation)
            return;
        // The reply's descriptor closes with the reply; the stream keeps a
        // copy of its own for the session's life.
        const int fd = reply.isError() ? -1 : ::fcntl(reply.value().fileDescriptor(), F_DUPFD_CLOEXEC, 3);
        if (fd < 0) {
            fail(Failed,
                QStringLiteral("OpenPipeWireRemote: %1")
                    .arg(reply.isError() ? reply.error().message() : QStringLiteral("no descriptor")));
            return;
        }
        m_stream->fd = fd;
        m_step = Step::Ready;
        Log::format(QStringLiteral("Sharing the screen through the desktop portal: PipeWire node %@, %@x%@"),
            { qint64(m_stream->nodeId), qint64(m_stream->size.width()), qint64(m_stream->size.height()) });
        finish(std::nullopt);
    });
}

void ScreenCastPortal::fail(Code code, const QString &detail)
{
    Log::format(QStringLiteral("Screen sharing through the desktop portal failed: %@"), { detail });
    QString text;
    switch (code) {
    case NoPortal:
        text = tr("Lumex cannot see the screen: this desktop offers no screen sharing service (the desktop portal "
                  "is not running).");
        break;
    case Declined:
        text = tr("Lumex cannot see the screen because sharing it was declined. Choose the screen again to be "
                  "asked once more.");
        break;
    case Failed:
        text = tr("Lumex cannot see the screen: the desktop's screen sharing failed (%1).").arg(detail);
        break;
    }
    finish(Error { kErrorDomain, code, text });
}

void ScreenCastPortal::finish(const std::optional<Error> &error)
{
    if (error)
        closeSession();
    std::vector<Completion> waiting;
    waiting.swap(m_waiting);
    for (const Completion &done : waiting)
        done(error);
}

void ScreenCastPortal::handleSessionClosed()
{
    Log::format(QStringLiteral("The desktop ended the screen sharing session"));
    m_sessionHandle.clear(); // gone already: nothing to close
    if (!m_waiting.empty())
        fail(Failed, QStringLiteral("the session was closed"));
    else
        closeSession();
}

void ScreenCastPortal::closeSession()
{
    ++m_generation;
    if (!m_requestPath.isEmpty())
        m_bus.disconnect(
            kService, m_requestPath, kRequest, QStringLiteral("Response"), this, SLOT(handleResponse(QDBusMessage)));
    m_requestPath.clear();
    if (!m_sessionHandle.isEmpty()) {
        m_bus.disconnect(
            kService, m_sessionHandle, kSession, QStringLiteral("Closed"), this, SLOT(handleSessionClosed()));
        m_bus.send(QDBusMessage::createMethodCall(kService, m_sessionHandle, kSession, QStringLiteral("Close")));
        m_sessionHandle.clear();
    }
    if (m_stream && m_stream->fd >= 0)
        ::close(m_stream->fd);
    m_stream.reset();
    m_step = Step::Idle;
}
