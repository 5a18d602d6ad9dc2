#include "RemoteCameras.h"

#include "OrvaneKeys.h"
#include "ToolFailure.h"

#include <QFile>
#include <QUrl>
#include <QUuid>

namespace {

const QString kState = QStringLiteral("state");
const QString kAudioOnly = QStringLiteral("audio_only");
const QString kUser = QStringLiteral("user");
const QString kStartedAt = QStringLiteral("started_at");
const QString kSegmentStartedAt = QStringLiteral("segment_started_at");
const QString kRecordedSeconds = QStringLiteral("recorded_seconds");
const QString kPreviewRequestedAt = QStringLiteral("preview_requested_at");
const QUuid kCameraNamespace(QStringLiteral("{5B0E3C1A-8F47-4D2B-9C6E-2A71D4F09E38}"));

ToolFailure refused(const QString &text)
{
    return ToolFailure(ToolFailure::kRefused, text + QLatin1Char('\n'));
}

} // namespace

RemoteCameras::RemoteCameras(const StateStore &store)
    : m_store(store)
{
    m_rooms = store.read(StateStore::kCameras).value(OrvaneKeys::Cameras).toList();
    const QVariantMap agent = store.read(StateStore::kAgent);
    m_agentCamera = agent.value(QStringLiteral("bound_camera")).toString();
    m_agentRunning = agent.value(QStringLiteral("running")).toBool();
    m_sessions = store.read(StateStore::kRecordings);
    QFile portFile(store.filePath(StateStore::kPreviewPort));
    if (portFile.open(QIODevice::ReadOnly)) {
        const uint port = portFile.readAll().trimmed().toUInt();
        if (port > 0 && port < 65536)
            m_previewPort = quint16(port);
    }
}

double RemoteCameras::previewRequestedAt(const QString &name) const
{
    return session(name).value(kPreviewRequestedAt).toDouble();
}

bool RemoteCameras::contains(const QString &name) const
{
    return (!name.isEmpty() && name == m_agentCamera) || isRoom(name);
}

bool RemoteCameras::isRoom(const QString &name) const
{
    for (const QVariant &room : m_rooms) {
        if (room.toMap().value(OrvaneKeys::Name).toString() == name)
            return true;
    }
    return false;
}

QVariantList RemoteCameras::listing() const
{
    QVariantList rooms = m_rooms;
    if (!m_agentCamera.isEmpty() && !isRoom(m_agentCamera))
        rooms.append(QVariantMap { { OrvaneKeys::Name, m_agentCamera },
            { QStringLiteral("location"), QStringLiteral("Local capture agent") } });

    QVariantList cameras;
    for (const QVariant &room : rooms) {
        QVariantMap camera = room.toMap();
        const QString name = camera.value(OrvaneKeys::Name).toString();
        const State current = state(name);
        const char *status = !isOnline(name) ? "offline"
            : current == State::Recording    ? "recording"
            : current == State::Paused       ? "paused"
                                             : "idle";
        // A stable identifier per name, unless the room names its own.
        if (!camera.contains(OrvaneKeys::Camera::UUID))
            camera.insert(OrvaneKeys::Camera::UUID,
                QUuid::createUuidV5(kCameraNamespace, name).toString(QUuid::WithoutBraces).toUpper());
        camera.insert(
            OrvaneKeys::Camera::InUse, current == State::Idle ? QStringLiteral("false") : QStringLiteral("true"));
        camera.insert(OrvaneKeys::Camera::Status, QString::fromLatin1(status));
        // The snapshot server decodes the name again; spaces must not reach
        // the URL as they are.
        camera.insert(OrvaneKeys::Camera::PreviewURL,
            QStringLiteral("https://127.0.0.1:%1/preview/%2.jpg")
                .arg(m_previewPort)
                .arg(QString::fromLatin1(QUrl::toPercentEncoding(name))));
        cameras.append(camera);
    }
    return cameras;
}

void RemoteCameras::requestPreview(const QString &name, double now)
{
    requireKnown(name);
    QVariantMap s = session(name);
    s.insert(kPreviewRequestedAt, now);
    m_sessions.insert(name, s);
}

void RemoteCameras::start(const QString &name, bool audioOnly, int delaySeconds, const QString &user, double now)
{
    requireKnown(name);
    if (!isOnline(name))
        throw refused(QStringLiteral("Camera %1 is offline.").arg(name));
    if (state(name) != State::Idle)
        throw refused(QStringLiteral("Camera %1 is already recording.").arg(name));

    // The camera starts capturing only when the delay has run out.
    const double begin = now + delaySeconds;
    QVariantMap s = session(name);
    setState(s, State::Recording);
    s.insert(kAudioOnly, audioOnly);
    s.insert(kUser, user);
    s.insert(kStartedAt, begin);
    s.insert(kSegmentStartedAt, begin);
    s.insert(kRecordedSeconds, 0.0);
    m_sessions.insert(name, s);
}

void RemoteCameras::pause(const QString &name, double now)
{
    requireKnown(name);
    if (state(name) != State::Recording)
        throw refused(QStringLiteral("Camera %1 is not recording.").arg(name));
    QVariantMap s = session(name);
    s.insert(kRecordedSeconds, elapsed(s, now));
    setState(s, State::Paused);
    m_sessions.insert(name, s);
}

void RemoteCameras::resume(const QString &name, double now)
{
    requireKnown(name);
    if (state(name) != State::Paused)
        throw refused(QStringLiteral("Camera %1 is not paused.").arg(name));
    QVariantMap s = session(name);
    s.insert(kSegmentStartedAt, now);
    setState(s, State::Recording);
    m_sessions.insert(name, s);
}

QVariantMap RemoteCameras::finish(const QString &name, const QString &verb, double now)
{
    requireKnown(name);
    if (state(name) == State::Idle)
        throw refused(QStringLiteral("Camera %1 has no recording to %2.").arg(name, verb));
    QVariantMap s = session(name);
    const QVariantMap finished {
        { kAudioOnly, s.value(kAudioOnly).toBool() },
        { kUser, s.value(kUser) },
        { kStartedAt, s.value(kStartedAt) },
        { kRecordedSeconds, elapsed(s, now) },
    };
    setState(s, State::Idle);
    for (const QString &key : { kAudioOnly, kUser, kStartedAt, kSegmentStartedAt, kRecordedSeconds })
        s.remove(key);
    m_sessions.insert(name, s);
    return finished;
}

void RemoteCameras::save() const
{
    m_store.write(StateStore::kRecordings, m_sessions);
}

RemoteCameras::State RemoteCameras::state(const QString &name) const
{
    const QString text = session(name).value(kState).toString();
    if (text == QLatin1String("recording"))
        return State::Recording;
    if (text == QLatin1String("paused"))
        return State::Paused;
    return State::Idle;
}

bool RemoteCameras::isOnline(const QString &name) const
{
    return name != m_agentCamera || m_agentRunning;
}

void RemoteCameras::requireKnown(const QString &name) const
{
    if (!contains(name))
        throw refused(QStringLiteral("No such camera: %1").arg(name));
}

void RemoteCameras::setState(QVariantMap &session, State state) const
{
    const char *text = state == State::Recording ? "recording" : state == State::Paused ? "paused" : "idle";
    session.insert(kState, QString::fromLatin1(text));
}

double RemoteCameras::elapsed(const QVariantMap &session, double now)
{
    double seconds = session.value(kRecordedSeconds).toDouble();
    if (session.value(kState).toString() == QLatin1String("recording"))
        seconds += qMax(0.0, now - session.value(kSegmentStartedAt).toDouble());
    return seconds;
}
